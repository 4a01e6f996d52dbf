#pragma once

#include <map>
#include <regex>
#include <string>

#include "text_form/json.h"

namespace korvane::test {

// As much of JSON Schema as our own file uses: a keyword that is not known here violates, too.
class SchemaCheck {
  public:
    using Json = text_form::Json;

    explicit SchemaCheck(Json schema) : root_(std::move(schema)) {}

    // Empty, or the path of the first value that the schema forbids.
    std::string violation(const Json& value) { return check(root_, value, "/"); }

  private:
    std::string check(const Json& schema, const Json& value, const std::string& path) {
        for (const auto& [keyword, argument] : schema.items()) {
            if (keyword == "items" || keyword == "properties") {
                for (const auto& [key, inner] : value.items()) {
                    const bool known = keyword == "items" || argument.contains(key);
                    const Json& rule = keyword == "items" ? argument
                                       : known            ? argument[key]
                                                          : root_;
                    std::string wrong = known ? check(rule, inner, path + key + "/") : "";
                    if (!wrong.empty()) return wrong;
                }
            } else if (!holds(schema, keyword, argument, value)) {
                return path + " " + keyword;
            }
        }
        return "";
    }

    bool holds(const Json& schema, const std::string& keyword, const Json& argument,
               const Json& value) {
        if (keyword == "$ref") {
            const Json::json_pointer place(argument.get<std::string>().substr(1));
            return check(root_[place], value, "").empty();
        }
        if (keyword == "anyOf")
            return std::ranges::any_of(
                argument, [&](const Json& one) { return check(one, value, "").empty(); });
        if (keyword == "const") return value == argument;
        if (keyword == "enum") return std::ranges::find(argument, value) != argument.end();
        if (keyword == "type") return isA(argument.get<std::string>(), value);
        if (keyword == "minimum") return value >= argument;
        if (keyword == "maximum") return value <= argument;
        if (keyword == "maxItems") return value.size() <= argument;
        if (keyword == "maxLength") return length(value.get<std::string>()) <= argument;
        if (keyword == "pattern") return matches(argument, value.get<std::string>());
        if (keyword == "required")
            return std::ranges::all_of(
                argument, [&](const Json& key) { return value.contains(key.get<std::string>()); });
        if (keyword == "additionalProperties")
            return std::ranges::all_of(value.items(), [&](const auto& item) {
                return schema["properties"].contains(item.key());
            });
        return keyword == "$schema" || keyword == "title" || keyword == "$defs";
    }

    static bool isA(const std::string& type, const Json& value) {
        return type == "integer" ? value.is_number_integer() : value.type_name() == type;
    }

    static std::ptrdiff_t length(const std::string& utf8) {
        return std::ranges::count_if(utf8, [](char byte) { return (byte & 0xC0) != 0x80; });
    }

    bool matches(const std::string& pattern, const std::string& text) {
        const auto known = patterns_.try_emplace(pattern, pattern).first;
        return std::regex_search(text, known->second);
    }

    Json root_;
    std::map<std::string, std::regex> patterns_;
};

}  // namespace korvane::test
