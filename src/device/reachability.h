#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace korvane {

// Whether the device answers an ICMP echo. One that is given by name is looked up once, on a thread
// of its own that nobody waits for: that can take the system a quarter of a minute, and cannot be
// interrupted. Used by one thread at a time.
class Reachability {
  public:
    // The address of a host, network byte order; 0xFFFFFFFF when it has none.
    using Lookup = std::uint32_t (*)(const std::string& host);

    explicit Reachability(Lookup lookup) : lookup_(lookup) {}

    // The device from now on: a dotted address or a name.
    void watch(const std::string& host);

    // 0xFFFFFFFF while it is not known, or not known yet.
    std::uint32_t address() const { return address_ ? address_->load() : unknown; }
    // Asks it once, for at most 150 ms. A device whose address is not known does not answer.
    bool answers() const;

    static constexpr std::uint32_t unknown = 0xFFFFFFFF;

  private:
    // Shared with the look-up, which may end long after this object.
    using Address = std::atomic<std::uint32_t>;
    struct Task;

    Lookup lookup_;
    std::shared_ptr<Address> address_;
};

}  // namespace korvane
