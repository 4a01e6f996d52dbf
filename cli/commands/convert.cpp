#include "cli/command.h"

namespace korvane::cli {
namespace {

struct Options {
    std::string from, to;
    std::optional<Format> fromFormat, toFormat;
};

ExitCode convert(Context& context, const Options& options) {
    const auto read = readConfigurationFile(context, options.from, options.fromFormat);
    writeConfiguration(context, *read, options.to, options.toFormat);
    return ExitCode::Done;
}

}  // namespace

void describeConvert(Arguments arguments) {
    const auto options = std::make_shared<Options>();
    arguments.file("A", options->from, "the file to read");
    arguments.file("B", options->to, "the file to write");
    arguments.format("--from", options->fromFormat, "of A");
    arguments.format("--format", options->toFormat, "of B");
    arguments.does(options, &convert);
}

}  // namespace korvane::cli
