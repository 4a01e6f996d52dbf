#include "cli/command.h"
#include "cli/deployment.h"

namespace korvane::cli {
namespace {

ExitCode send(Context& context, const DeploymentOptions& options) {
    return Deployment(context, options).run();
}

}  // namespace

void describeSend(Arguments arguments) {
    const auto options = std::make_shared<DeploymentOptions>();
    arguments.file("FILE", options->file, "the configuration to send");
    arguments.address(options->address);
    arguments.format("--format", options->format, "of FILE");
    arguments.yes(options->yes);
    arguments.flag("--dry-run", options->dryRun, "compare and check, and send nothing");
    arguments.flag("--force", options->force, "send what has errors, too");
    arguments.flag("--restore-on-failure", options->restoreOnFailure,
                   "write back what the device had if the save fails or reads back differently");
    arguments.text("--keep-in", options->folder, "FOLDER",
                   "takes the file with what the device had (the current one)");
    arguments.does(options, &send);
}

}  // namespace korvane::cli
