#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "simulator/console.h"

#include "simulator/sample_configuration.h"
#include "simulator/simulated_device.h"
#include "support/scripted_link.h"

namespace korvane::test {

inline constexpr Endpoint panelEndpoint{0x0100007F, 40000};

// What a patient panel makes of the datagrams of one answer.
struct Reply {
    std::vector<OutgoingDatagram> datagrams;  // announcement included
    std::optional<std::uint32_t> announced;   // the total that an announcement told
    CommandFrame frame{};
    Bytes payload;
};
Reply readReply(std::vector<OutgoingDatagram> datagrams);

// One panel that talks to one device.
class PanelSide {
  public:
    explicit PanelSide(SimulatedDevice& device) : device_(device) {}

    std::uint64_t nowMs = 0;
    Endpoint endpoint = panelEndpoint;

    // The answer goes to where the datagram came from, or the test fails.
    std::vector<OutgoingDatagram> send(const Bytes& datagram);

    // The whole request as the panel sends it: announced and in chunks where it is long, then with
    // nowMs moving on.
    Reply ask(std::uint32_t code, const Bytes& payload = {});

  private:
    SimulatedDevice& device_;
};

// `size` bytes that differ from their neighbours and from other seeds.
Bytes pattern(std::size_t size, std::uint8_t seed);

// A simulated device, a panel and a console, who talk as a script says: steps with " | " between
// them, each something said and, behind " -> ", what must come back, or "~" and a part of it.
//
//   4008 02          a request and its payload; without "->" it must be done and answered empty
//   raw 0FA6 …       these bytes as a datagram
//   announce 12      the announcement of that many bytes
//   from 2 …         what follows, from the second port
//   +500             time goes by, in ms
//   said             asks for what the log has told since the last time
//   fault loss:1     anything else is a command of the console
//
// Bytes are written as hexadecimal digits, 'text', SIZE*SEED for a pattern, /SIZE or ^SIZE for
// zeros or ones up to that size. An answer is "nothing", or its status word, its bytes ("[SIZE]"
// when they have no such form) and whatever is odd about it: code CODE, length LENGTH, announced
// TOTAL, @MS of a delay, in DATAGRAMS, of the SIZE, over the MS that a train takes.
class Dialogue {
  public:
    void play(const std::string& script);

    SimulatedDevice device{
        *sampleState("127.0.0.1"), *sampleConfiguration(), {.rebootMs = 1500}, [] {
            return WallTime{2024, 12, 31, 2, 23, 59, 58};
        }};
    PanelSide panel{device};

  private:
    std::string answerTo(const std::string& line);
    std::string fromPort(const std::string& line);
    std::string describe(const Reply& reply, std::uint32_t code) const;
    std::string said();

    std::ostringstream told_;
    EventLog log_{told_, LogLevel::Normal, [] { return std::string("12:00"); }};
    Console console_{device, log_, [](const std::string& path) { return "to '" + path + "'"; }};
};

// A test that plays a script.
struct Scene {
    const char* name;
    std::string script;
    friend void PrintTo(const Scene& scene, std::ostream* out) { *out << scene.script; }
};
class Conversation : public testing::TestWithParam<Scene> {};

inline std::string sceneName(const testing::TestParamInfo<Scene>& info) {
    return info.param.name;
}

}  // namespace korvane::test
