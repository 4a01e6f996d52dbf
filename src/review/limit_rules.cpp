#include "review/rules.h"

// What there is more of than places: of lists that stand once in a configuration.

namespace korvane::review {
namespace {

struct Limit {
    Finding::Severity severity;
    const char *place, *what, *panel;
    std::size_t most;
    std::size_t (*count)(const Whole& whole);
};

// Those of the continuous table's first frame have no description.
bool isDescribed(const ServiceAt& service) {
    return service.at.kind == TableKind::ShortTime || service.at.index != 0;
}

std::size_t describedServices(const Whole& whole) {
    return static_cast<std::size_t>(std::ranges::count_if(whole.services, isDescribed));
}

bool isAnnounced(const ServiceAt& service) {
    return service.at.kind == TableKind::Continuous && service.at.frame.id != 0;
}

// What the continuous service table comes to with the next change of a frame.
std::size_t neededPairs(const Whole& whole) {
    const std::uint8_t channel = whole.tables->continuous.header[1];
    const auto isForeign = [channel](const PairAt& pair) {
        return pair.kind == TableKind::Continuous && pair.entry.channelNumber != channel;
    };
    return static_cast<std::size_t>(std::ranges::count_if(whole.services, isAnnounced) +
                                    std::ranges::count_if(whole.pairs, isForeign));
}

constexpr const char* tooManyPairs = "持续业务配置表最多支持40项";

const Limit limitRules[] = {
    {error, "network", "other frequency points", "", limits::frequencyPoints,
     [](const Whole& w) -> std::size_t { return w.content.image.network.otherFrequencyCount; }},
    {error, "network", "other networks", "", limits::neighbourNetworks,
     [](const Whole& w) -> std::size_t { return w.content.image.network.neighbourCount; }},
    {error, "continuous multiplex table", "frames", "", limits::frames,
     [](const Whole& w) -> std::size_t { return w.content.image.continuous.frameCount; }},
    {error, "short-time multiplex table", "frames", "", limits::frames,
     [](const Whole& w) -> std::size_t { return w.content.image.shortTime.frameCount; }},
    {error, "continuous service table", "pairs", tooManyPairs, limits::serviceFrequencies,
     [](const Whole& w) -> std::size_t { return w.content.image.continuousServices.entryCount; }},
    {error, "continuous service table", "pairs that its services need", tooManyPairs,
     limits::serviceFrequencies, neededPairs},
    {error, "short-time service table", "pairs", "", limits::serviceFrequencies,
     [](const Whole& w) -> std::size_t { return w.content.image.shortTimeServices.entryCount; }},
    {error, "CA description table", "systems", "", limits::caSystems,
     [](const Whole& w) -> std::size_t { return w.content.image.caDescriptions.entryCount; }},
    {error, "input channels", "channels", "超过支持的最大输入通道数", limits::inputChannels,
     [](const Whole& w) { return w.content.channels.size() + w.content.channelsLeftOut.size(); }},
    {error, "service descriptions", "descriptions", "", limits::serviceDescriptions,
     [](const Whole& w) -> std::size_t { return w.content.descriptions.count; }},
    {warning, "service descriptions", "services that are described", "",
     limits::serviceDescriptions, describedServices},
};

}  // namespace

void judgeLimits(const Whole& whole, std::vector<Finding>& findings) {
    for (const Limit& limit : limitRules) {
        const std::size_t count = limit.count(whole);
        if (count <= limit.most) continue;
        const std::string sentence = "of " + std::to_string(count) + ' ' + limit.what + " only " +
                                     std::to_string(limit.most) + " have a place";
        findings.push_back({limit.severity, limit.place, withPanelsWords(sentence, limit.panel)});
    }
}

}  // namespace korvane::review
