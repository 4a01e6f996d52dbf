#include "cli/params_text.h"

#include <algorithm>
#include <memory>

#include "text_form/text_form.h"

namespace korvane::cli {
namespace {

using text_form::Json;

constexpr const char* key = "deviceParameters";

// The text form of a configuration that has nothing else.
Json treeOf(const DeviceParamBlock& params) {
    const auto configuration = std::make_unique<Configuration>();
    configuration->params = params;
    return text_form::toTree(*configuration);
}

// "controlPort.address" as a path into the tree.
Json::json_pointer pointerOf(std::string name) {
    std::ranges::replace(name, '.', '/');
    return Json::json_pointer('/' + name);
}

void addLines(const Json& tree, const std::string& name, std::string& text) {
    if (!tree.is_object()) {
        text += name + '=' + (tree.is_string() ? tree.get<std::string>() : tree.dump()) + '\n';
        return;
    }
    for (const auto& [part, value] : tree.items())
        addLines(value, name.empty() ? part : name + '.' + part, text);
}

}  // namespace

std::string paramsText(const DeviceParamBlock& params) {
    std::string text;
    addLines(treeOf(params)[key], "", text);
    return text;
}

std::optional<std::string> setParam(DeviceParamBlock& params, const std::string& assignment) {
    const std::size_t sign = assignment.find('=');
    const std::string name = assignment.substr(0, sign);
    if (sign == std::string::npos) return "'" + assignment + "' is no NAME=VALUE";
    Json tree = treeOf(params);
    const auto pointer = pointerOf(name);
    if (name.find_first_of("/~") != std::string::npos || !tree[key].contains(pointer))
        return "there is no parameter '" + name + "'";
    tree[key][pointer] = assignment.substr(sign + 1);
    const auto read = std::make_unique<Configuration>();
    if (const auto problem = text_form::fromTree(std::move(tree), *read))
        return problem->sentence();
    params = read->params;
    return std::nullopt;
}

}  // namespace korvane::cli
