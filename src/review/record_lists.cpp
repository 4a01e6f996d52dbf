#include "review/record_lists.h"

#include <algorithm>
#include <map>

#include "review/words.h"

namespace korvane::review {
namespace {

const std::vector<ListNames> lists = {
    {"network",
     "otherFrequencyPoints",
     "other frequency point",
     {"channelNumber"},
     {},
     ListNames::Alone},
    {"network", "otherNetworks", "other network", {"networkNumber"}, {}, ListNames::Alone},
    {"continuousMultiplexTable", "frames", "frame", {"id"}, {}, ListNames::Alone},
    {"shortTimeMultiplexTable", "frames", "short-time frame", {"id"}, {}, ListNames::Alone},
    {"frames", "services", "service", {"serviceId"}, {"serviceType"}, ListNames::Roaming},
    {"services", "components", "component", {"channelId"}, {"type", "receiveAddress"}},
    {"continuousServiceTable", "entries", "pair", {"serviceId", "channelNumber"}, {}},
    {"shortTimeServiceTable", "entries", "pair", {"serviceId", "channelNumber"}, {}},
    {"caDescriptionTable", "systems", "CA system", {"caSystemId"}, {}, ListNames::Alone},
    {"", "inputChannels", "input channel", {"channelId"}, {"type", "receiveAddress"}},
    {"", "serviceDescriptions", "description of service", {"serviceId"}, {"serviceName"}},
    {"", "remainder", "bytes of no field at", {"offset"}, {"bytes"}},
};

}  // namespace

const ListNames* namesOf(std::string_view parent, std::string_view key) {
    const auto found = std::ranges::find_if(
        lists, [=](const ListNames& names) { return names.parent == parent && names.key == key; });
    return found == lists.end() ? nullptr : &*found;
}

std::string fieldsText(const Json& record, const std::vector<const char*>& keys) {
    std::string text;
    for (const char* key : keys) text += (text.empty() ? "" : ", ") + valueText(record[key]);
    return text;
}

std::string idOf(const Json& record, const ListNames& names) {
    const std::string id = fieldsText(record, names.ids);
    return std::string(names.noun) + ' ' + (names.ids.size() > 1 ? '(' + id + ')' : id);
}

std::vector<std::string> namesIn(const Json& list, const ListNames& names) {
    std::map<std::string, int> times;
    std::vector<std::string> all;
    for (const Json& record : list) {
        const std::string id = idOf(record, names);
        const int time = ++times[id];
        all.push_back(time == 1 ? id : id + " #" + std::to_string(time));
    }
    return all;
}

std::vector<Move> matchesOf(const std::vector<std::string>& before,
                            const std::vector<std::string>& after) {
    std::map<std::string_view, std::size_t> places;
    for (std::size_t i = 0; i < after.size(); ++i) places[after[i]] = i;
    std::vector<Move> matches;
    for (std::size_t i = 0; i < before.size(); ++i)
        if (const auto found = places.find(before[i]); found != places.end())
            matches.push_back({i, found->second});
    return matches;
}

}  // namespace korvane::review
