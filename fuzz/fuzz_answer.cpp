// The answer path of the device client. The input is a peer's whole behaviour: the index of the
// command to ask for, then datagrams, each with its 16-bit little-endian length in front.

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "device/device_client.h"
#include "support/scripted_link.h"

namespace {

using namespace korvane;

void play(test::ScriptedLink& link, const std::uint8_t* data, std::size_t size) {
    while (size >= 2) {
        const std::size_t length = std::min<std::size_t>(data[0] | data[1] << 8, size - 2);
        link.answers(test::Bytes(data + 2, data + 2 + length));
        data += 2 + length;
        size -= 2 + length;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static test::ScriptedLink link;
    static DeviceClient client(link);
    static const bool started = client.Start("10.1.2.3") == 0;
    if (!started) std::abort();
    link = {};
    play(link, data + 1, size - 1);

    const Command& command = commandTable[data[0] % commandTable.size()];
    const std::size_t expected =
        command.answerSize == Command::variable ? 1 + 60 * 120 : command.answerSize;
    // Exactly as long as the command's answer: one byte too many is one past the buffer.
    const auto response = std::make_unique<std::uint8_t[]>(expected);
    client.attempts = 1;
    const int result =
        client.Exchange(static_cast<std::uint32_t>(command.code), {}, {response.get(), expected});
    if (result == 0 && command.rule == AnswerRule::RecordList && response[0] > 60) std::abort();
    return 0;
}
