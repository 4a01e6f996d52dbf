#include "text_form/fields.h"

#include "text_form/syntax.h"

namespace korvane::text_form {

FieldReader::FieldReader(const Json& json, const std::string& place) : json_(json), place_(place) {
    if (!json.is_object()) throw Problem{place, "is not an object"};
}

std::string FieldReader::placeOf(std::string_view key) const {
    return place_.empty() ? std::string(key) : place_ + '.' + std::string(key);
}

const Json* FieldReader::find(const char* key, bool required) {
    known_.push_back(key);
    const auto found = json_.find(key);
    if (found != json_.end()) return &*found;
    if (required) throw Problem{placeOf(key), "is missing"};
    return nullptr;
}

void requireList(const Json& json, std::size_t most, const std::string& place) {
    if (!json.is_array()) throw Problem{place, "is not a list"};
    if (json.size() <= most) return;
    throw Problem{place, "has " + std::to_string(json.size()) + " entries, and at most " +
                             std::to_string(most) + " have a place"};
}

void FieldReader::finish() const {
    for (const auto& [key, value] : json_.items())
        if (std::ranges::find(known_, key) == known_.end())
            throw Problem{placeOf(shownKey(key)), "is no key that is known here"};
}

Json FieldSchema::take() {
    return {{"type", "object"},
            {"properties", std::move(properties_)},
            {"required", std::move(required_)},
            {"additionalProperties", false}};
}

void FieldSchema::add(const char* key, Json schema) {
    properties_[key] = std::move(schema);
    required_.push_back(key);
}

}  // namespace korvane::text_form
