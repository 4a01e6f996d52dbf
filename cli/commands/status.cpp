#include "cli/command.h"
#include "cli/failure.h"
#include "cli/status_reader.h"
#include "cli/status_text.h"
#include "cli/table_file.h"

namespace korvane::cli {
namespace {

struct Options {
    std::string address, table;
    std::uint32_t seconds = 0;
};

// Reads once, and tells it. The result of the device link.
int tellOnce(const Context& context, const Options& options, StatusReader& reader) {
    const int result = reader.read();
    const std::string time = context.now();
    if (result == 0 || options.seconds != 0)
        context.terminal.redraw(statusText(reader, time, options.address));
    if (options.table.empty()) return result;
    const TableFile table(pathOf(options.table), statusTableHead());
    if (!table.append(statusTableRow(reader, time)))
        throw Failure(ExitCode::File, options.table + " could not be written");
    return result;
}

// Until it is interrupted, which is how it ends: no failure.
ExitCode watch(Context& context, const Options& options, StatusReader& reader) {
    try {
        for (;;) {
            tellOnce(context, options, reader);
            pause(context, options.seconds * 1000);
        }
    } catch (const Interrupted&) {
        return ExitCode::Done;
    }
}

ExitCode status(Context& context, const Options& options) {
    StatusReader reader(context, options.address);
    if (options.seconds != 0) return watch(context, options, reader);
    reader.device().expect({tellOnce(context, options, reader), "the status queries"});
    return ExitCode::Done;
}

}  // namespace

void describeStatus(Arguments arguments) {
    const auto options = std::make_shared<Options>();
    arguments.address(options->address);
    arguments.seconds("--watch", options->seconds, "read again and again, that far apart");
    arguments.text("--csv", options->table, "FILE", "append a row a reading to this file");
    arguments.does(options, &status);
}

}  // namespace korvane::cli
