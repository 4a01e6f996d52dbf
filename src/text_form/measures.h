#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/ipv4.h"
#include "model/records.h"

namespace korvane::text_form {

// Values as people write them. Of a text that is none nothing is to be taken: the answer is false.

// "10.1.2.3".
bool parseAddress(std::string_view text, Ipv4& address);

// What receiveAddress() makes of a channel: "225.1.2.3:5000".
bool parseReceiveAddress(std::string_view text, InputChannelRecord& channel);

// Centre frequencies, which count 10 Hz: "474 MHz", "474.125 MHz". Up to five decimals.
bool parseFrequency(std::string_view text, std::uint32_t& frequency);
std::string frequencyText(std::uint32_t frequency);

}  // namespace korvane::text_form
