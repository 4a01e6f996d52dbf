#include "review/differences.h"

#include <map>

#include "review/moves.h"
#include "review/words.h"
#include "text_form/text_form.h"

namespace korvane {
namespace review {
namespace {

// A list of records: what one of them is called, by which of its fields, and what else is said of
// one that comes or goes.
struct ListNames {
    std::string_view parent, key, noun;
    std::vector<const char*> ids, shown;
    bool standsAlone = false;  // its name says where it is
};

const std::vector<ListNames> lists = {
    {"network", "otherFrequencyPoints", "other frequency point", {"channelNumber"}, {}, true},
    {"network", "otherNetworks", "other network", {"networkNumber"}, {}, true},
    {"continuousMultiplexTable", "frames", "frame", {"id"}, {}, true},
    {"shortTimeMultiplexTable", "frames", "short-time frame", {"id"}, {}, true},
    {"frames", "services", "service", {"serviceId"}, {"serviceType"}},
    {"services", "components", "component", {"channelId"}, {"type", "receiveAddress"}},
    {"continuousServiceTable", "entries", "pair", {"serviceId", "channelNumber"}, {}},
    {"shortTimeServiceTable", "entries", "pair", {"serviceId", "channelNumber"}, {}},
    {"caDescriptionTable", "systems", "CA system", {"caSystemId"}, {}, true},
    {"", "inputChannels", "input channel", {"channelId"}, {"type", "receiveAddress"}},
    {"", "serviceDescriptions", "description of service", {"serviceId"}, {"serviceName"}},
    {"", "remainder", "bytes of no field at", {"offset"}, {"bytes"}},
};

const ListNames* namesOf(std::string_view parent, std::string_view key) {
    const auto found = std::ranges::find_if(
        lists, [=](const ListNames& names) { return names.parent == parent && names.key == key; });
    return found == lists.end() ? nullptr : &*found;
}

// "7", "(101, 20)".
std::string fieldsText(const Json& record, const std::vector<const char*>& keys) {
    std::string text;
    for (const char* key : keys) text += (text.empty() ? "" : ", ") + valueText(record[key]);
    return text;
}

std::string idOf(const Json& record, const ListNames& names) {
    const std::string id = fieldsText(record, names.ids);
    return std::string(names.noun) + ' ' + (names.ids.size() > 1 ? '(' + id + ')' : id);
}

// A second record of the same id is its own, or a difference of the two would be nobody's.
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

class Comparison {
  public:
    void compare(const Json& a, const Json& b) { objects({}, "", a, b); }
    std::vector<std::string> take() { return std::move(lines_); }

  private:
    void objects(const std::string& place, std::string_view key, const Json& a, const Json& b);
    void fields(const std::string& place, std::string_view parent, const std::string& key,
                const Json& a, const Json& b);
    void values(const std::string& place, const std::string& key, const Json& a, const Json& b);
    void records(std::string place, const ListNames& names, const Json& a, const Json& b);
    void comesOrGoes(const std::string& name, const ListNames& names, const Json& record,
                     const char* what);
    void moved(const std::string& place, const std::vector<std::string>& names,
               const std::vector<Move>& moves);

    std::vector<std::string> lines_;
};

const Json absent;

const Json& at(const Json& object, const std::string& key) {
    const auto found = object.find(key);
    return found == object.end() ? absent : *found;
}

std::string joined(const std::string& place, const std::string& name) {
    return place.empty() ? name : place + ", " + name;
}

void Comparison::objects(const std::string& place, std::string_view key, const Json& a,
                         const Json& b) {
    for (const auto& [name, value] : a.items()) fields(place, key, name, value, at(b, name));
    for (const auto& [name, value] : b.items())
        if (!a.contains(name)) fields(place, key, name, absent, value);
}

// Bytes in the place of a text are an object, too.
bool isRecord(const Json& value) {
    return value.is_object() && !value.contains("bytes");
}

void Comparison::fields(const std::string& place, std::string_view parent, const std::string& key,
                        const Json& a, const Json& b) {
    if (a == b) return;
    if (const ListNames* names = namesOf(parent, key))
        records(place, *names, a, b);
    else if (isRecord(a) && isRecord(b))
        objects(joined(place, wordsOf(key)), key, a, b);
    else
        values(place, key, a, b);
}

void Comparison::values(const std::string& place, const std::string& key, const Json& a,
                        const Json& b) {
    lines_.push_back((place.empty() ? "" : place + ": ") + wordsOf(key) + ' ' + valueText(a) +
                     " → " + valueText(b) + unitOf(key));
}

void Comparison::records(std::string place, const ListNames& names, const Json& a, const Json& b) {
    if (names.standsAlone) place.clear();
    const std::vector<std::string> before = namesIn(a, names), after = namesIn(b, names);
    std::map<std::string, std::size_t> news;
    for (std::size_t i = 0; i < after.size(); ++i) news[after[i]] = i;
    std::vector<Move> matches;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const std::string name = joined(place, before[i]);
        if (const auto match = news.extract(before[i])) {
            objects(name, names.key, a[i], b[match.mapped()]);
            matches.push_back({i, match.mapped()});
        } else {
            comesOrGoes(name, names, a[i], " removed");
        }
    }
    for (std::size_t i = 0; i < after.size(); ++i)
        if (news.contains(after[i])) comesOrGoes(joined(place, after[i]), names, b[i], " added");
    moved(place, before, matches);
}

void Comparison::comesOrGoes(const std::string& name, const ListNames& names, const Json& record,
                             const char* what) {
    const std::string shown = fieldsText(record, names.shown);
    lines_.push_back(name + (shown.empty() ? "" : " (" + shown + ')') + what);
}

void Comparison::moved(const std::string& place, const std::vector<std::string>& names,
                       const std::vector<Move>& moves) {
    const std::vector<bool> stays = staying(moves);
    for (std::size_t i = 0; i < moves.size(); ++i) {
        const auto [from, to] = moves[i];
        if (!stays[i])
            lines_.push_back(joined(place, names[from]) + " moved from place " +
                             std::to_string(from + 1) + " to " + std::to_string(to + 1));
    }
}

}  // namespace
}  // namespace review

std::vector<std::string> differencesOf(const Configuration& a, const Configuration& b) {
    review::Comparison comparison;
    comparison.compare(text_form::toTree(a), text_form::toTree(b));
    return comparison.take();
}

}  // namespace korvane
