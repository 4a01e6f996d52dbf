#include <algorithm>

#include "review/differences.h"
#include "review/record_lists.h"
#include "text_form/text_form.h"

namespace korvane {
namespace review {
namespace {

class Patch {
  public:
    // What is at `path`, by its key and that of what it is in.
    void turn(const std::string& path, std::string_view parent, std::string_view key, const Json& a,
              const Json& b);
    Json take() { return std::move(operations_); }

  private:
    void turnObject(const std::string& path, std::string_view key, const Json& a, const Json& b);
    void turnList(const std::string& path, std::string_view key, std::span<const Move> kept,
                  const Json& a, const Json& b);
    void operation(const char* name, const std::string& path) {
        operations_.push_back({{"op", name}, {"path", path}});
    }
    void operation(const char* name, const std::string& path, const Json& value) {
        operation(name, path);
        operations_.back()["value"] = value;
    }

    Json operations_ = Json::array();
};

// No key of ours holds a character that a path would have to escape.
std::string below(const std::string& path, const std::string& key) {
    return path + '/' + key;
}

std::string below(const std::string& path, std::size_t index) {
    return path + '/' + std::to_string(index);
}

// Values without names are matched by their places.
std::vector<Move> matched(const ListNames* names, const Json& a, const Json& b) {
    if (names) return matchesOf(namesIn(a, *names), namesIn(b, *names));
    std::vector<Move> matches;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) matches.push_back({i, i});
    return matches;
}

// What stays in a list; all else of it is removed and added.
std::vector<Move> keptOf(const ListNames* names, const Json& a, const Json& b) {
    const std::vector<Move> matches = matched(names, a, b);
    const std::vector<bool> stays = staying(matches);
    std::vector<Move> kept;
    for (std::size_t i = 0; i < matches.size(); ++i)
        if (stays[i]) kept.push_back(matches[i]);
    return kept;
}

void Patch::turn(const std::string& path, std::string_view parent, std::string_view key,
                 const Json& a, const Json& b) {
    if (a == b) return;
    if (a.is_object() && b.is_object()) return turnObject(path, key, a, b);
    if (a.is_array() && b.is_array())
        return turnList(path, key, keptOf(namesOf(parent, key), a, b), a, b);
    operation("replace", path, b);
}

// A key that is added comes last, so all that stand behind its place come and go with it.
void Patch::turnObject(const std::string& path, std::string_view parent, const Json& a,
                       const Json& b) {
    auto wanted = b.begin();
    for (const auto& [key, value] : a.items()) {
        if (wanted != b.end() && wanted.key() == key)
            turn(below(path, key), parent, key, value, *wanted++);
        else
            operation("remove", below(path, key));
    }
    for (; wanted != b.end(); ++wanted) operation("add", below(path, wanted.key()), *wanted);
}

// What does not stay goes first, so that each index is that of b when its turn comes.
void Patch::turnList(const std::string& path, std::string_view key, std::span<const Move> kept,
                     const Json& a, const Json& b) {
    auto last = kept.rbegin();
    for (std::size_t i = a.size(); i-- > 0;) {
        if (last != kept.rend() && last->from == i)
            ++last;
        else
            operation("remove", below(path, i));
    }
    auto next = kept.begin();
    for (std::size_t i = 0; i < b.size(); ++i) {
        if (next != kept.end() && next->to == i)
            turn(below(path, i), "", key, a[next++->from], b[i]);
        else
            operation("add", below(path, i), b[i]);
    }
}

}  // namespace
}  // namespace review

std::string patchOf(const Configuration& a, const Configuration& b) {
    review::Patch patch;
    patch.turn("", "", "", text_form::toTree(a), text_form::toTree(b));
    return text_form::textOf(patch.take());
}

}  // namespace korvane
