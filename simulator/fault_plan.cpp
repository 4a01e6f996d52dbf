#include "simulator/fault_plan.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "device/command_frame.h"
#include "device/command_table.h"

namespace korvane {

namespace {

constexpr std::uint32_t anyNumber = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint32_t longestDelayMs = 600'000;
constexpr std::uint32_t largestPayload = wire::bufferSize - CommandFrame::size;

constexpr std::array<FaultTraits, 12> traitsOfKinds = {{
    {FaultKind::Loss, "loss", 0, 100, "PERCENT",
     "datagrams get lost both ways, each by this chance (100)"},
    {FaultKind::LostAnswer, "lost-answer", 0, 0, "",
     "the request is carried out, its answer is lost"},
    {FaultKind::Silence, "silence", 0, 0, "", "the request is neither carried out nor answered"},
    {FaultKind::Delay, "delay", 0, longestDelayMs, "MS", "the answer leaves later (1000)"},
    {FaultKind::Late, "late", 0, longestDelayMs, "MS",
     "the answer leaves after the panel gave up (3100)"},
    {FaultKind::Duplicate, "duplicate", 1, 10, "TIMES",
     "every datagram of the answer comes again (1)"},
    {FaultKind::WrongCode, "wrong-code", 0, anyNumber, "CODE",
     "the answer carries another code (request's + 1)"},
    {FaultKind::WrongLength, "wrong-length", 0, anyNumber, "BYTES",
     "the answer's length field lies (payload + 1)"},
    {FaultKind::WrongSize, "wrong-size", 0, largestPayload, "BYTES",
     "the payload has this size, cut or filled (its size + 1)"},
    {FaultKind::WrongTotal, "wrong-total", 0, anyNumber, "BYTES",
     "the announcement of a long answer lies (total + 1)"},
    {FaultKind::Refuse, "refuse", 1, anyNumber, "STATUS",
     "not carried out; the answer has this status word (255)"},
    {FaultKind::Cut, "cut", 0, 1000, "DATAGRAMS",
     "a long answer stops after this many of its datagrams (1)"},
}};

const FaultTraits& traitsOf(FaultKind kind) {
    return *std::ranges::find(traitsOfKinds, kind, &FaultTraits::kind);
}

std::optional<std::uint32_t> parseCommand(std::string_view text) {
    for (const Command& command : commandTable)
        if (command.name == text) return static_cast<std::uint32_t>(command.code);
    return parseUnsigned(text);
}

// Cuts `text` at the last `mark` and returns what stood behind it.
std::optional<std::string_view> splitOff(std::string_view& text, char mark) {
    const auto at = text.rfind(mark);
    if (at == std::string_view::npos) return std::nullopt;
    const std::string_view tail = text.substr(at + 1);
    text = text.substr(0, at);
    return tail;
}

bool parseValue(std::string_view text, const FaultTraits& traits, Fault& fault,
                std::string& error) {
    const auto number = parseUnsigned(text);
    const std::string name(traits.name);
    if (traits.most == 0) {
        error = name + " takes no value";
        return false;
    }
    if (!number || *number < traits.least || *number > traits.most) {
        error = name + " takes a number from " + std::to_string(traits.least) + " to " +
                std::to_string(traits.most) + ", not '" + std::string(text) + "'";
        return false;
    }
    fault.value = *number;
    return true;
}

bool parseTarget(std::optional<std::string_view> command, std::optional<std::string_view> count,
                 Fault& fault, std::string& error) {
    if (command) fault.command = parseCommand(*command);
    if (command && !fault.command) {
        error = "no command '" + std::string(*command) + "'";
        return false;
    }
    if (count) fault.remaining = parseUnsigned(*count).value_or(0);
    if (count && fault.remaining == 0) {
        error = "a count must be a number above 0, not '" + std::string(*count) + "'";
        return false;
    }
    return true;
}

}  // namespace

std::span<const FaultTraits> faultTraits() {
    return traitsOfKinds;
}

std::optional<std::uint32_t> parseUnsigned(std::string_view text) {
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, result] = std::from_chars(text.data(), end, number, base);
    if (result != std::errc() || stop != end) return std::nullopt;
    return number;
}

std::optional<Fault> parseFault(std::string_view text, std::string& error) {
    const auto count = splitOff(text, ':');
    const auto command = splitOff(text, '@');
    const auto value = splitOff(text, '=');
    const auto traits = std::ranges::find(traitsOfKinds, text, &FaultTraits::name);
    if (traits == traitsOfKinds.end()) {
        error = "no fault '" + std::string(text) + "'";
        return std::nullopt;
    }
    Fault fault{traits->kind, std::nullopt, std::nullopt, 0};
    if (value && !parseValue(*value, *traits, fault, error)) return std::nullopt;
    if (!parseTarget(command, count, fault, error)) return std::nullopt;
    return fault;
}

std::string describe(const Fault& fault) {
    std::string text(traitsOf(fault.kind).name);
    const auto append = [&text](char mark, std::string_view value) {
        text += mark;
        text += value;
    };
    if (fault.value) append('=', std::to_string(*fault.value));
    if (fault.command) {
        const Command* command = findCommand(*fault.command);
        append('@', command ? std::string(command->name) : std::to_string(*fault.command));
    }
    if (fault.remaining != 0) append(':', std::to_string(fault.remaining));
    return text;
}

std::size_t FaultPlan::clear(FaultKind kind) {
    return std::erase_if(faults_, [kind](const Fault& fault) { return fault.kind == kind; });
}

std::optional<Fault> FaultPlan::take(FaultKind kind, std::uint32_t command) {
    const auto found = std::ranges::find_if(faults_, [=](const Fault& fault) {
        return fault.kind == kind && (!fault.command || *fault.command == command);
    });
    if (found == faults_.end()) return std::nullopt;
    const Fault fault = *found;
    if (found->remaining == 1)
        faults_.erase(found);
    else if (found->remaining > 1)
        --found->remaining;
    return fault;
}

}  // namespace korvane
