#include "cli/arguments.h"

#include <algorithm>

#include "CLI/CLI.hpp"
#include "device/udp.h"

namespace korvane::cli {
namespace {

// The system would read 127.1 as 127.0.0.1.
bool isAddress(const std::string& text) {
    return std::ranges::count(text, '.') == 3 && parseIpv4(text.c_str()) != 0xFFFFFFFF;
}

std::string addressProblem(const std::string& text) {
    return isAddress(text) ? "" : "'" + text + "' is no dotted address";
}

std::string placeProblem(const std::string& place) {
    const auto address = deviceIn(place);
    return address ? addressProblem(*address) : "";
}

}  // namespace

void Arguments::address(std::string& value) {
    app_.add_option("ADDRESS", value, "the device's IPv4 address, dotted")
        ->required()
        ->check(&addressProblem);
}

void Arguments::file(const char* name, std::string& value, const char* help) {
    app_.add_option(name, value, help)->required();
}

void Arguments::place(const char* name, std::string& value) {
    app_.add_option(name, value, "a file, - for standard input, or device:ADDRESS")
        ->required()
        ->check(&placeProblem);
}

void Arguments::list(const char* name, std::vector<std::string>& values, const char* help) {
    app_.add_option(name, values, help)->required();
}

void Arguments::flag(const char* names, bool& value, const char* help) {
    app_.add_flag(names, value, help);
}

void Arguments::format(const char* option, std::optional<Format>& value, const char* help) {
    const auto take = [&value](const std::string& name) {
        value = name == "text" ? Format::Text : Format::Binary;
    };
    app_.add_option_function<std::string>(option, take, help)
        ->type_name("text|binary")
        ->check(CLI::IsMember({"text", "binary"}).description(""));
}

void Arguments::text(const char* option, std::string& value, const char* valueName,
                     const char* help) {
    app_.add_option(option, value, help)->type_name(valueName);
}

void Arguments::seconds(const char* option, std::uint32_t& value, const char* help) {
    constexpr std::uint32_t day = 86400;
    app_.add_option(option, value, help)
        ->type_name("SECONDS")
        ->check(CLI::Range(std::uint32_t{1}, day).description(""));
}

Arguments Arguments::command(const char* name, const char* help) {
    app_.require_subcommand(1);
    return {*app_.add_subcommand(name, help), chosen_};
}

void Arguments::act(Action action) {
    app_.callback([&chosen = chosen_, action = std::move(action)] { chosen = action; });
}

}  // namespace korvane::cli
