#pragma once

#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "simulator/console.h"
#include "simulator/panel_side.h"
#include "simulator/sample_configuration.h"

namespace korvane::test {

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
