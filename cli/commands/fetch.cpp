#include "cli/command.h"
#include "cli/device.h"

namespace korvane::cli {
namespace {

struct Options {
    std::string address, file;
    std::optional<Format> format;
};

ExitCode fetch(Context& context, const Options& options) {
    const Format format = formatOf(options.file, options.format);
    const auto fetched = fetchFrom(context, options.address);
    writeConfiguration(context, *fetched, options.file, format);
    if (options.file != standardStream)
        context.terminal.note(options.address + " -> " + options.file);
    return ExitCode::Done;
}

}  // namespace

void describeFetch(Arguments arguments) {
    const auto options = std::make_shared<Options>();
    arguments.address(options->address);
    arguments.file("FILE", options->file, "where the configuration goes");
    arguments.format("--format", options->format, "of FILE");
    arguments.does(options, &fetch);
}

}  // namespace korvane::cli
