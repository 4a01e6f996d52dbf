#include "text_form/text_form.h"

#include "model/config_file.h"
#include "text_form/layout.h"
#include "text_form/remainder.h"
#include "text_form/syntax.h"

namespace korvane::text_form {
namespace {

constexpr const char* remainderKey = "remainder";

// What a remainder's offsets count in: all that a file holds behind its channels.
constexpr std::size_t restSize =
    sizeof(ConfigImage) + sizeof(DeviceParamBlock) + sizeof(ServiceDescriptionImage);

std::span<std::uint8_t> restOf(std::vector<std::uint8_t>& file) {
    return std::span(file).last(restSize);
}

std::unique_ptr<Configuration> readFields(const Json& tree) {
    auto read = std::make_unique<Configuration>();
    configuration.read(tree, *read, "");
    return read;
}

Json takeRemainder(Json& tree) {
    Json remainder = Json::array();
    if (!tree.is_object() || !tree.contains(remainderKey)) return remainder;
    remainder = std::move(tree[remainderKey]);
    tree.erase(remainderKey);
    return remainder;
}

// A remainder that was true before the fields were edited may say something else than they do now.
std::unique_ptr<Configuration> complete(std::unique_ptr<Configuration> fields,
                                        const Json& remainder) {
    if (remainder.is_array() && remainder.empty()) return fields;
    std::vector<std::uint8_t> file = config_file::encode(*fields);
    applyRemainder(remainder, restOf(file));
    auto whole = std::make_unique<Configuration>();
    config_file::decode(file, *whole);
    if (configuration.write(*whole) != configuration.write(*fields))
        throw Problem{remainderKey, "contradicts the fields"};
    return whole;
}

void take(Json tree, Configuration& into) {
    const Json remainder = takeRemainder(tree);
    into = std::move(*complete(readFields(tree), remainder));
}

// What `step` throws.
template <class Step>
std::optional<Problem> problemOf(Step step) {
    try {
        step();
        return std::nullopt;
    } catch (Problem& problem) {
        return std::move(problem);
    }
}

}  // namespace

Json toTree(const Configuration& content) {
    Json tree = configuration.write(content);
    std::vector<std::uint8_t> bytes = config_file::encode(content),
                              fields = config_file::encode(*readFields(tree));
    Json remainder = remainderOf(restOf(bytes), restOf(fields));
    if (!remainder.empty()) tree[remainderKey] = std::move(remainder);
    return tree;
}

std::optional<Problem> fromTree(Json tree, Configuration& into) {
    return problemOf([&] { take(std::move(tree), into); });
}

std::string textOf(const Json& tree) {
    constexpr int indent = 2;
    return tree.dump(indent) + '\n';
}

std::string write(const Configuration& content) {
    return textOf(toTree(content));
}

std::optional<Problem> read(std::string_view text, Configuration& into) {
    return problemOf([&] { take(parseTree(text), into); });
}

Json schema() {
    Json definitions = Json::object();
    configuration.schema(*std::make_unique<Configuration>(), definitions);
    Json root = std::move(definitions[configuration.name]);
    definitions.erase(configuration.name);
    root["properties"][remainderKey] = remainderSchema();
    root["$defs"] = std::move(definitions);
    Json head = {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                 {"title", "Korvane configuration"}};
    head.update(root);
    return head;
}

}  // namespace korvane::text_form
