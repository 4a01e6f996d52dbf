#include "cli/command.h"
#include "cli/device.h"
#include "cli/failure.h"
#include "model/whole_file.h"

// What the panel's buttons do that need nothing but the device.

namespace korvane::cli {
namespace {

struct Options {
    std::string address, file;
    bool yes = false;
};

ExitCode reboot(Context& context, const Options& options) {
    askUnless(options.yes, context, "Restart " + options.address + "?");
    Device device(context, options.address);
    device.expect({device.client().RebootDevice(), "RebootDevice"});
    context.terminal.note(options.address + " restarts (设备已接收到命令，正在重启中，请稍候!)");
    return ExitCode::Done;
}

// The wait at the end is for whoever comes next: another command knows nothing of this one.
ExitCode restore(Context& context, const Options& options) {
    askUnless(options.yes, context,
              "Restore the defaults of " + options.address + "? Its configuration is lost.");
    Device device(context, options.address);
    device.expect({device.client().RestoreDefaults(), "RestoreDefaults"});
    device.noteSetting();
    context.deviceState = options.address + " has taken the command; give it 10 seconds.";
    context.terminal.note(options.address + " restores its defaults");
    device.settle();
    return ExitCode::Done;
}

// The sequence has results of its own for files; here they are told before.
void requireReadable(const std::string& file) {
    std::vector<std::uint8_t> first;
    if (readFile(pathOf(file), 1, first) != 0)
        throw Failure(ExitCode::File, file + " could not be read");
}

ExitCode upgrade(Context& context, const Options& options) {
    requireReadable(options.file);
    askUnless(options.yes, context, "Upgrade " + options.address + " with " + options.file + "?");
    Device device(context, options.address);
    const Outcome outcome = device.upgrade(options.file);
    context.deviceState = options.address + " was told that no more of " + options.file +
                          " comes, and may have only a part of it.";
    stopIfInterrupted(context);
    device.expect(outcome);
    context.terminal.note(options.address + " has " + options.file);
    return ExitCode::Done;
}

using Run = ExitCode (*)(Context&, const Options&);

void describe(Arguments arguments, Run run, bool withFile = false) {
    const auto options = std::make_shared<Options>();
    if (withFile) arguments.file("FILE", options->file, "the firmware");
    arguments.address(options->address);
    arguments.yes(options->yes);
    arguments.does(options, run);
}

}  // namespace

void describeReboot(Arguments arguments) {
    describe(arguments, &reboot);
}

void describeRestore(Arguments arguments) {
    describe(arguments, &restore);
}

void describeUpgrade(Arguments arguments) {
    describe(arguments, &upgrade, true);
}

}  // namespace korvane::cli
