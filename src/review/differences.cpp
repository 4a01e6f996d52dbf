#include "review/differences.h"

#include <algorithm>

#include "review/record_lists.h"
#include "review/words.h"
#include "text_form/text_form.h"

namespace korvane {
namespace review {
namespace {

// One that is in one of the two lists only.
struct Single {
    std::string place, name;  // of its list; its own
    const ListNames* names;
    const Json* record;

    std::string id() const { return idOf(*record, *names); }
};

class Comparison {
  public:
    void compare(const Json& a, const Json& b);
    std::vector<std::string> take() { return std::move(lines_); }

  private:
    void objects(const std::string& place, std::string_view key, const Json& a, const Json& b);
    void fields(const std::string& place, std::string_view parent, const std::string& key,
                const Json& a, const Json& b);
    void values(const std::string& place, const std::string& key, const Json& a, const Json& b);
    void records(std::string place, const ListNames& names, const Json& a, const Json& b);
    void goes(const Single& single);
    void comes(const Single& single);
    void comesOrGoes(const Single& single, const char* what);
    void roamed();
    void roamed(const Single& from, const Single& to);
    void moved(const std::string& place, const std::vector<std::string>& names,
               const std::vector<Move>& moves);

    std::vector<std::string> lines_;
    std::vector<Single> gone_, come_;  // of those that roam
};

const Json absent;

const Json& at(const Json& object, const std::string& key) {
    const auto found = object.find(key);
    return found == object.end() ? absent : *found;
}

std::string joined(const std::string& place, const std::string& name) {
    return place.empty() ? name : place + ", " + name;
}

void Comparison::compare(const Json& a, const Json& b) {
    objects({}, "", a, b);
    roamed();
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
    if (names.kind == ListNames::Alone) place.clear();
    const std::vector<std::string> before = namesIn(a, names), after = namesIn(b, names);
    const std::vector<Move> matches = matchesOf(before, after);
    std::vector<bool> isOld(after.size());
    auto match = matches.begin();
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (match == matches.end() || match->from != i) {
            goes({place, before[i], &names, &a[i]});
            continue;
        }
        objects(joined(place, before[i]), names.key, a[i], b[match->to]);
        isOld[match++->to] = true;
    }
    for (std::size_t i = 0; i < after.size(); ++i)
        if (!isOld[i]) comes({place, after[i], &names, &b[i]});
    moved(place, before, matches);
}

void Comparison::goes(const Single& single) {
    if (single.names->kind == ListNames::Roaming)
        gone_.push_back(single);
    else
        comesOrGoes(single, " removed");
}

void Comparison::comes(const Single& single) {
    if (single.names->kind == ListNames::Roaming)
        come_.push_back(single);
    else
        comesOrGoes(single, " added");
}

void Comparison::comesOrGoes(const Single& single, const char* what) {
    const std::string shown = fieldsText(*single.record, single.names->shown);
    lines_.push_back(joined(single.place, single.name) + (shown.empty() ? "" : " (" + shown + ')') +
                     what);
}

void Comparison::roamed() {
    for (const Single& gone : gone_) {
        const auto to = std::ranges::find(come_, gone.id(), &Single::id);
        if (to == come_.end()) {
            comesOrGoes(gone, " removed");
        } else {
            roamed(gone, *to);
            come_.erase(to);
        }
    }
    for (const Single& come : come_) comesOrGoes(come, " added");
}

void Comparison::roamed(const Single& from, const Single& to) {
    lines_.push_back(to.name + " moved from " + from.place + " to " + to.place);
    objects(joined(to.place, to.name), to.names->key, *from.record, *to.record);
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
