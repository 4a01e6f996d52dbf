#include "cli/command.h"
#include "review/differences.h"

namespace korvane::cli {
namespace {

struct Options {
    std::string a, b;
    std::optional<Format> format;
    bool json = false;
};

ExitCode diff(Context& context, const Options& options) {
    const auto a = readConfiguration(context, options.a, options.format);
    const auto b = readConfiguration(context, options.b, options.format);
    const auto differences = differencesOf(*a, *b);
    if (options.json) context.terminal.write(patchOf(*a, *b));
    for (const std::string& line : differences)
        if (!options.json) context.terminal.write(line + '\n');
    return differences.empty() ? ExitCode::Done : ExitCode::No;
}

}  // namespace

void describeDiff(Arguments arguments) {
    const auto options = std::make_shared<Options>();
    arguments.place("A", options->a);
    arguments.place("B", options->b);
    arguments.format("--format", options->format, "of the files");
    arguments.flag("--json", options->json, "as a JSON Patch of A's text form");
    arguments.does(options, &diff);
}

}  // namespace korvane::cli
