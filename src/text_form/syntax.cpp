#include "text_form/syntax.h"

#include <algorithm>
#include <vector>

namespace korvane::text_form {
namespace {

bool beginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

// Of the last byte that was read, counted from 1. The end counts as a place of its own.
std::string lineAndColumn(std::string_view text, std::size_t position) {
    const std::string_view before = text.substr(0, position == 0 ? 0 : position - 1);
    const std::size_t newline = before.rfind('\n');
    const std::string_view line = newline == before.npos ? before : before.substr(newline + 1);
    return "line " + std::to_string(std::ranges::count(before, '\n') + 1) + ", column " +
           std::to_string(std::ranges::count_if(line, beginsCharacter) + 1);
}

// The parser's own words, without its place and without what it read, which may be anything.
std::string reasonOf(std::string_view message) {
    constexpr std::string_view placeEnds = ": syntax error ";
    const std::size_t begin = message.find(placeEnds);
    if (begin == message.npos) return "holds a number that is too large";
    message.remove_prefix(begin + placeEnds.size());
    return "has a syntax error " + std::string(message.substr(0, message.find("; last read: ")));
}

// Builds the tree as the parser reports it.
class TreeBuilder final : public nlohmann::json_sax<Json> {
  public:
    explicit TreeBuilder(std::string_view text) : text_(text) {}

    Json take() { return std::move(root_); }

    bool null() override { return scalar(nullptr); }
    bool boolean(bool value) override { return scalar(value); }
    bool number_integer(number_integer_t value) override { return scalar(value); }
    bool number_unsigned(number_unsigned_t value) override { return scalar(value); }
    bool number_float(number_float_t value, const string_t&) override { return scalar(value); }
    bool string(string_t& value) override { return scalar(std::move(value)); }
    bool binary(binary_t& value) override { return scalar(std::move(value)); }
    bool start_object(std::size_t) override { return open(Json::object()); }
    bool start_array(std::size_t) override { return open(Json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(string_t& key) override;
    bool parse_error(std::size_t position, const std::string&,
                     const nlohmann::detail::exception& error) override {
        throw Problem{lineAndColumn(text_, position), reasonOf(error.what())};
    }

  private:
    Json& put(Json value);
    bool scalar(Json value) {
        put(std::move(value));
        return true;
    }
    bool open(Json container);
    bool close() {
        open_.pop_back();
        return true;
    }
    std::string place() const;

    std::string_view text_;
    Json root_;
    std::vector<Json*> open_;  // containers, the innermost last
    std::size_t values_ = 0;
};

// The containers around the innermost one do not change while it is filled: they stay where they
// are.
Json& TreeBuilder::put(Json value) {
    if (++values_ > text_limits::values) throw Problem{"", "has too many values"};
    if (open_.empty()) return root_ = std::move(value);
    Json& container = *open_.back();
    if (container.is_object()) return container.back() = std::move(value);
    container.push_back(std::move(value));
    return container.back();
}

bool TreeBuilder::open(Json container) {
    if (open_.size() == text_limits::depth) throw Problem{place(), "is nested too deeply"};
    open_.push_back(&put(std::move(container)));
    return true;
}

bool TreeBuilder::key(string_t& key) {
    Json& object = *open_.back();
    if (object.contains(key)) {
        const std::string outer = place();
        throw Problem{(outer.empty() ? "" : outer + '.') + shownKey(key), "stands there twice"};
    }
    if (object.size() == text_limits::keys) throw Problem{place(), "has too many keys"};
    object.emplace(std::move(key), nullptr);
    return true;
}

// Of the innermost container: in each of those around it, it is what came last.
std::string TreeBuilder::place() const {
    std::string path;
    for (std::size_t i = 0; i + 1 < open_.size(); ++i) {
        const Json& container = *open_[i];
        if (container.is_array())
            path += '[' + std::to_string(container.size() - 1) + ']';
        else
            path += (path.empty() ? "" : ".") + shownKey(std::prev(container.end()).key());
    }
    return path;
}

}  // namespace

Json parseTree(std::string_view text) {
    if (text.size() > text_limits::bytes) throw Problem{"", "is too long"};
    TreeBuilder builder(text);
    Json::sax_parse(text, &builder);
    return builder.take();
}

std::string shownKey(const std::string& key) {
    constexpr std::size_t longest = 40;
    std::string shown = Json(key).dump();
    shown = shown.substr(1, shown.size() - 2);
    if (shown.size() <= longest) return shown;
    std::size_t end = longest;
    while (!beginsCharacter(shown[end])) --end;
    return shown.substr(0, end) + "...";
}

}  // namespace korvane::text_form
