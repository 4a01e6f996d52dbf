#include <algorithm>

#include "review/differences.h"
#include "text_form/text_form.h"

namespace korvane {
namespace {

using text_form::Json;

class Patch {
  public:
    void turn(const std::string& path, const Json& a, const Json& b);
    Json take() { return std::move(operations_); }

  private:
    void turnObject(const std::string& path, const Json& a, const Json& b);
    void turnList(const std::string& path, const Json& a, const Json& b);
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

void Patch::turn(const std::string& path, const Json& a, const Json& b) {
    if (a == b) return;
    if (a.is_object() && b.is_object()) return turnObject(path, a, b);
    if (a.is_array() && b.is_array()) return turnList(path, a, b);
    operation("replace", path, b);
}

// A key that is added comes last, so all that stand behind its place come and go with it.
void Patch::turnObject(const std::string& path, const Json& a, const Json& b) {
    auto wanted = b.begin();
    for (const auto& [key, value] : a.items()) {
        if (wanted != b.end() && wanted.key() == key)
            turn(below(path, key), value, *wanted++);
        else
            operation("remove", below(path, key));
    }
    for (; wanted != b.end(); ++wanted) operation("add", below(path, wanted.key()), *wanted);
}

std::size_t alikeAtFront(const Json& a, const Json& b) {
    return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first -
                                    a.begin());
}

// Beyond the `front` ones.
std::size_t alikeAtBack(const Json& a, const Json& b, std::size_t front) {
    const std::size_t most = std::min(a.size(), b.size()) - front;
    std::size_t count = 0;
    while (count < most && a[a.size() - 1 - count] == b[b.size() - 1 - count]) ++count;
    return count;
}

void Patch::turnList(const std::string& path, const Json& a, const Json& b) {
    const std::size_t front = alikeAtFront(a, b), back = alikeAtBack(a, b, front);
    const std::size_t endOfA = a.size() - back, endOfB = b.size() - back;
    const std::size_t both = std::min(endOfA, endOfB);
    for (std::size_t i = front; i < both; ++i) turn(below(path, i), a[i], b[i]);
    for (std::size_t i = endOfA; i > both; --i) operation("remove", below(path, i - 1));
    for (std::size_t i = both; i < endOfB; ++i) operation("add", below(path, i), b[i]);
}

}  // namespace

std::string patchOf(const Configuration& a, const Configuration& b) {
    Patch patch;
    patch.turn("", text_form::toTree(a), text_form::toTree(b));
    return text_form::textOf(patch.take());
}

}  // namespace korvane
