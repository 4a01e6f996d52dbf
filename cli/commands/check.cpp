#include "cli/command.h"
#include "cli/findings_text.h"

namespace korvane::cli {
namespace {

struct Options {
    std::string place;
    std::optional<Format> format;
};

ExitCode check(Context& context, const Options& options) {
    const auto findings = findingsOf(*readConfiguration(context, options.place, options.format));
    context.terminal.write(findingsText(findings));
    return findings.empty() ? ExitCode::Done : ExitCode::No;
}

}  // namespace

void describeCheck(Arguments arguments) {
    const auto options = std::make_shared<Options>();
    arguments.place("FILE", options->place);
    arguments.format("--format", options->format, "of FILE");
    arguments.does(options, &check);
}

}  // namespace korvane::cli
