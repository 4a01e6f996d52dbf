#include <set>

#include "model/capacity.h"
#include "model/frame_text.h"
#include "review/rules.h"
#include "review/words.h"

namespace korvane::review {
namespace {

template <class Names>
constexpr std::uint32_t lastOf(const Names& names) {
    return static_cast<std::uint32_t>(names.size() - 1);
}

const Check<FrameAt> checks[] = {
    {error, "id", [](const FrameAt& f) { return std::to_string(f.frame.id); },
     [](ConfigChecks& c, const FrameAt& f) { return c.checkFrameId(f.frame.id); }},
};

const Range<FrameAt> ranges[] = {
    {error, "RS code rate", "", 0, lastOf(rsCodeRateNames),
     [](const FrameAt& f) -> Value { return f.frame.rsRate; }},
    {error, "byte interleaving", "", 0, lastOf(byteInterleaveNames),
     [](const FrameAt& f) -> Value { return f.frame.byteInterleaving; }},
    {error, "LDPC code rate", "", 0, lastOf(ldpcRateNames),
     [](const FrameAt& f) -> Value { return f.frame.ldpcRate; }},
    {error, "modulation", "", 0, lastOf(modulationNames),
     [](const FrameAt& f) -> Value { return f.frame.modulation; }},
    {error, "scrambling", "", 0, lastOf(scramblingModeNames),
     [](const FrameAt& f) -> Value { return f.frame.scrambling; }},
    {error, "its number of time slots", "", 0, limits::timeSlots,
     [](const FrameAt& f) -> Value { return f.head.timeSlotCount; }},
    {error, "its number of services", "已达最大子帧数(8)", 0, limits::services,
     [](const FrameAt& f) -> Value { return f.head.serviceCount; }},
};

const Rule<FrameAt> rules[] = {
    {error, "another frame has this id", "已有相同标识的复用帧",
     [](const Whole& w, const FrameAt& f) {
         return isRepeated(w.frames, f, [](const FrameAt& a, const FrameAt& b) {
             return a.frame.id == b.frame.id;
         });
     }},
    {error, "it has no time slots", "时隙数不能为0",
     [](const Whole&, const FrameAt& f) { return f.frame.timeSlots.empty(); }},
};

// The beginning of a sentence.
std::string slotsAre(const std::set<std::uint8_t>& slots) {
    const std::vector<std::uint8_t> numbers(slots.begin(), slots.end());
    const bool isOne = numbers.size() == 1;
    return (isOne ? "time slot " : "time slots ") + rangesText(numbers) +
           (isOne ? " is " : " are ");
}

// In the editors' words. Their sum wraps at 32 bits; the services need what they need.
std::string overfull(const Whole&, const FrameAt& f) {
    std::int64_t total = 0;
    for (const ServiceRecord& service : f.frame.services) total += service.bandwidth;
    const std::int64_t capacity = frameCapacity(f.frame) * 8;
    if (capacity == 0 || total <= capacity) return "";
    return withPanelsWords("its services need more than it carries",
                           "总业务带宽(" + std::to_string(total) + ")超过信道带宽(" +
                               std::to_string(capacity) + " bps)，溢出带宽(" +
                               std::to_string(total - capacity) + " bps)");
}

std::string beyondLastSlot(const Whole&, const FrameAt& f) {
    std::set<std::uint8_t> beyond;
    for (const std::uint8_t slot : f.frame.timeSlots)
        if (slot >= limits::timeSlots) beyond.insert(slot);
    if (beyond.empty()) return "";
    const std::size_t excess = *beyond.rbegin() - (limits::timeSlots - 1);
    return withPanelsWords(slotsAre(beyond) + "beyond 39",
                           "已达最大时隙数，超出时隙数(" + std::to_string(excess) + ")");
}

std::set<std::uint8_t> sharedSlots(const FrameAt& a, const FrameAt& b) {
    std::set<std::uint8_t> shared;
    for (const std::uint8_t slot : a.frame.timeSlots)
        if (std::ranges::count(b.frame.timeSlots, slot) > (&a == &b ? 1 : 0)) shared.insert(slot);
    return shared;
}

// Of itself, and of the frames before it.
std::string doubledInTable(const Whole& w, const FrameAt& f) {
    std::set<std::uint8_t> doubled;
    for (const FrameAt& other : w.frames) {
        if (other.kind == f.kind) doubled.merge(sharedSlots(f, other));
        if (&other == &f) break;
    }
    return doubled.empty() ? "" : slotsAre(doubled) + "taken twice in its table";
}

// The continuous frames stand before all others.
std::string doubledInOtherTable(const Whole& w, const FrameAt& f) {
    std::set<std::uint8_t> doubled;
    for (const FrameAt& other : w.frames)
        if (other.kind != f.kind && &other < &f) doubled.merge(sharedSlots(f, other));
    return doubled.empty() ? "" : slotsAre(doubled) + "taken by continuous frames, too";
}

const Telling<FrameAt> tellings[] = {
    {error, overfull},
    {error, beyondLastSlot},
    {error, doubledInTable},
    {warning, doubledInOtherTable},
};

}  // namespace

void judgeFrames(const Whole& whole, std::vector<Finding>& findings) {
    judgeAll(whole, whole.frames, findings, checks, rules, ranges, tellings);
}

}  // namespace korvane::review
