#include <span>

#include "model/frequency_text.h"
#include "review/rules.h"
#include "review/words.h"
#include "text/gbk.h"

namespace korvane::review {
namespace {

// 0, which was never set, is shown as the first level.
constexpr std::uint32_t lastLevel = networkLevelNames.size(),
                        lastBandwidth = bandwidthNames.size() - 1;

const Check<NetworkBlock> networkChecks[] = {
    {error, "country code",
     [](const NetworkBlock& n) { return shownText(gbkToUtf8(fieldText(n.countryCode))); },
     [](ConfigChecks& c, const NetworkBlock& n) {
         return c.checkCountryCode(fieldText(n.countryCode));
     }},
};

const Range<NetworkBlock> networkRanges[] = {
    {error, "network level", "", 0, lastLevel,
     [](const NetworkBlock& n) -> Value { return n.level; }},
    {error, "the frequency point's bandwidth", "", 0, lastBandwidth,
     [](const NetworkBlock& n) -> Value { return n.ownFrequency.bandwidth; }},
};

const Rule<FrequencyPoint> pointRules[] = {
    {error, "the network's own frequency point has this channel number",
     "其他频道不能包含当前网络中的频点",
     [](const Whole& w, const FrequencyPoint& p) {
         return p.channelNumber == w.tables->network.ownFrequency.channelNumber;
     }},
    {error, "another frequency point has this channel number", "已有相同频道",
     [](const Whole& w, const FrequencyPoint& p) {
         return isRepeated(w.tables->network.otherFrequencies, p, [](const auto& a, const auto& b) {
             return a.channelNumber == b.channelNumber;
         });
     }},
};

const Range<FrequencyPoint> pointRanges[] = {
    {error, "bandwidth", "", 0, lastBandwidth,
     [](const FrequencyPoint& p) -> Value { return p.bandwidth; }},
};

const Rule<NeighbourNetwork> neighbourRules[] = {
    {error, "another network has this number", "已有相同网络号的网络",
     [](const Whole& w, const NeighbourNetwork& n) {
         return isRepeated(w.tables->network.neighbours, n, [](const auto& a, const auto& b) {
             return a.networkNumber == b.networkNumber;
         });
     }},
};

const Range<NeighbourNetwork> neighbourRanges[] = {
    {error, "network level", "", 0, lastLevel,
     [](const NeighbourNetwork& n) -> Value { return n.level; }},
    {error, "bandwidth", "", 0, lastBandwidth,
     [](const NeighbourNetwork& n) -> Value { return n.bandwidth; }},
};

}  // namespace

void judgeNetwork(const Whole& whole, std::vector<Finding>& findings) {
    const NetworkInfo& network = whole.tables->network;
    judgeAll(whole, std::span(&whole.content.image.network, 1), findings, networkChecks,
             networkRanges);
    judgeAll(whole, network.otherFrequencies, findings, pointRules, pointRanges);
    judgeAll(whole, network.neighbours, findings, neighbourRules, neighbourRanges);
}

}  // namespace korvane::review
