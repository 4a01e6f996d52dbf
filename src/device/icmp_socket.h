#pragma once

#include <string>

namespace korvane {

// Whether a host answers an ICMP echo; Unknown where the system does not let an ordinary program
// ask, or cannot reach so far itself.
enum class Echo { Answered, None, Unknown };

// Asks a dotted address once, for at most 150 ms. Not for Windows, see ping_host.h.
Echo echoOf(const std::string& host);

}  // namespace korvane
