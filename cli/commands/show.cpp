#include "cli/command.h"
#include "review/summary.h"

namespace korvane::cli {
namespace {

struct Options {
    std::string place;
    std::optional<Format> format;
};

ExitCode show(Context& context, const Options& options) {
    const auto read = readConfiguration(context, options.place, options.format);
    context.terminal.write(summaryOf(*read));
    return ExitCode::Done;
}

}  // namespace

void describeShow(Arguments arguments) {
    const auto options = std::make_shared<Options>();
    arguments.place("FILE", options->place);
    arguments.format("--format", options->format, "of FILE");
    arguments.does(options, &show);
}

}  // namespace korvane::cli
