#include "simulator/dialogue.h"

#include <algorithm>

namespace korvane::test {
namespace {

void append(Bytes& bytes, const std::string& word) {
    const auto number = [&word](std::size_t at) { return std::stoul(word.substr(at)); };
    if (word[0] == '\'') {
        bytes.insert(bytes.end(), word.begin() + 1, word.end() - 1);
    } else if (word[0] == '/') {
        bytes.resize(number(1));
    } else if (word[0] == '^') {
        bytes.resize(number(1), 0xFF);
    } else if (const auto star = word.find('*'); star != std::string::npos) {
        const Bytes part = pattern(number(0), static_cast<std::uint8_t>(number(star + 1)));
        bytes.insert(bytes.end(), part.begin(), part.end());
    } else {
        for (std::size_t at = 0; at < word.size(); at += 2)
            bytes.push_back(static_cast<std::uint8_t>(std::stoul(word.substr(at, 2), nullptr, 16)));
    }
}

Bytes parseBytes(const std::string& text) {
    Bytes bytes;
    std::istringstream words(text);
    for (std::string word; words >> word;) append(bytes, word);
    return bytes;
}

std::string digits(const Bytes& bytes, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        for (const int digit : {bytes[i] >> 4, bytes[i] & 15}) text += "0123456789ABCDEF"[digit];
    return text;
}

// As a script would write them, at most three bytes in front of a pattern or of zeros.
std::string describeBytes(const Bytes& bytes) {
    constexpr std::size_t longestInDigits = 24;
    if (bytes.size() <= longestInDigits) return digits(bytes, bytes.size());
    for (std::size_t at = 0; at < 4; ++at) {
        const Bytes rest(bytes.data() + at, bytes.data() + bytes.size());
        const std::string head = digits(bytes, at) + (at > 0 ? " " : "");
        if (rest == Bytes(rest.size())) return head + "/" + std::to_string(bytes.size());
        if (rest == pattern(rest.size(), rest[0]))
            return head + std::to_string(rest.size()) + "*" + std::to_string(rest[0]);
    }
    return "[" + std::to_string(bytes.size()) + "]";
}

bool take(std::string& text, const std::string& word) {
    if (!text.starts_with(word)) return false;
    text.erase(0, word.size());
    return true;
}

}  // namespace

Reply readReply(std::vector<OutgoingDatagram> datagrams) {
    Bytes message;
    Reply reply{std::move(datagrams), {}, {}, {}};
    for (const OutgoingDatagram& datagram : reply.datagrams) {
        const Bytes& bytes = datagram.bytes;
        if (!reply.announced && bytes.size() == Announcement::size)
            reply.announced = getBigEndian32(bytes.data() + 4);
        else
            message.insert(message.end(), bytes.begin(), bytes.end());
    }
    if (message.size() < CommandFrame::size) return reply;
    reply.frame = CommandFrame::read(message.data());
    reply.payload.assign(message.begin() + CommandFrame::size, message.end());
    return reply;
}

std::vector<OutgoingDatagram> PanelSide::send(const Bytes& datagram) {
    auto answer = device_.receive(datagram, endpoint, nowMs);
    for (const OutgoingDatagram& one : answer) EXPECT_EQ(one.to, endpoint);
    return answer;
}

Reply PanelSide::ask(std::uint32_t code, const Bytes& payload) {
    const Bytes message = frameOf(code, 0, payload);
    if (message.size() <= 65536) return readReply(send(message));
    auto answer = send(announcementOf(static_cast<std::uint32_t>(message.size())));
    for (std::size_t at = 0; at < message.size(); at += 30720) {
        nowMs += at > 0 ? 50 : 0;
        EXPECT_TRUE(answer.empty()) << "answered before the train was complete";
        const std::size_t end = std::min(at + 30720, message.size());
        answer = send(Bytes(message.data() + at, message.data() + end));
    }
    return readReply(std::move(answer));
}

Bytes pattern(std::size_t size, std::uint8_t seed) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(seed + i * 7 + i / 251);
    return bytes;
}

void Dialogue::play(const std::string& script) {
    device.onEvent([this](const DeviceEvent& event) { log_.write(event); });
    for (std::size_t at = 0, end = 0; end < script.size(); at = end + 3) {
        end = std::min(script.find(" | ", at), script.size());
        const std::string step = script.substr(at, end - at);
        const auto arrow = step.find(" -> ");
        const std::string answer = answerTo(step.substr(0, arrow));
        std::string expected = arrow == std::string::npos ? "0" : step.substr(arrow + 4);
        if (take(expected, "~")) {
            EXPECT_NE(answer.find(expected), std::string::npos) << step << "\ngot " << answer;
        } else if (arrow != std::string::npos || std::isdigit(step[0])) {
            EXPECT_EQ(answer, expected) << step;
        }
    }
}

std::string Dialogue::answerTo(const std::string& line) {
    std::string rest = line;
    if (take(rest, "from ")) return fromPort(rest);
    if (take(rest, "raw ")) return describe(readReply(panel.send(parseBytes(rest))), 0);
    if (take(rest, "announce "))
        return describe(readReply(panel.send(announcementOf(std::stoul(rest)))), 0);
    if (take(rest, "+")) return std::to_string(panel.nowMs += std::stoul(rest));
    if (line == "said") return said();
    if (!std::isdigit(line[0])) {
        const std::string told = console_.execute(line, panel.nowMs);
        return told + (console_.quitAsked() ? ", it quits" : "");
    }
    std::size_t end = 0;
    const auto code = static_cast<std::uint32_t>(std::stoul(line, &end));
    return describe(panel.ask(code, parseBytes(line.substr(end))), code);
}

std::string Dialogue::fromPort(const std::string& line) {
    std::size_t end = 0;
    const auto usual = panel.endpoint.port;
    panel.endpoint.port += static_cast<std::uint16_t>(std::stoul(line, &end));
    const std::string answer = answerTo(line.substr(end + 1));
    panel.endpoint.port = usual;
    return answer;
}

std::string Dialogue::describe(const Reply& reply, std::uint32_t code) const {
    if (reply.datagrams.empty()) return "nothing";
    std::ostringstream text;
    if (code != 0 && reply.frame.code != code) text << "code " << reply.frame.code << ' ';
    text << reply.frame.status;
    if (!reply.payload.empty()) text << ' ' << describeBytes(reply.payload);
    const auto odd = [&text](const char* what, std::uint64_t value, std::uint64_t usual) {
        if (value != usual) text << what << value;
    };
    const auto size = CommandFrame::size + reply.payload.size();
    const std::uint64_t first = reply.datagrams[0].sendAtMs, last = reply.datagrams.back().sendAtMs;
    odd(" length ", reply.frame.payloadLength, reply.payload.size());
    odd(" announced ", reply.announced.value_or(size), size);
    odd(" @", first, panel.nowMs);
    odd(" in ", reply.datagrams.size(), 1);
    if (reply.announced && reply.datagrams.size() > 1)
        text << " of " << reply.datagrams[1].bytes.size();
    odd(" over ", last - first, 0);
    return text.str();
}

std::string Dialogue::said() {
    std::string text = told_.str();
    told_.str({});
    if (text.empty()) return "nothing";
    text.pop_back();
    return text;
}

TEST_P(Conversation, GoesAsWritten) {
    Dialogue().play(GetParam().script);
}

}  // namespace korvane::test
