#include "cli/command.h"
#include "cli/device.h"
#include "cli/failure.h"
#include "cli/params_text.h"

namespace korvane::cli {
namespace {

struct Options {
    std::string address;
    std::vector<std::string> assignments;
    bool yes = false;
};

DeviceParamBlock paramsOf(Device& device) {
    DeviceParamBlock params{};
    device.expect({device.client().GetDeviceParams(params), "GetDeviceParams"});
    return params;
}

ExitCode get(Context& context, const Options& options) {
    Device device(context, options.address);
    context.terminal.write(paramsText(paramsOf(device)));
    return ExitCode::Done;
}

// Set, and then made to take effect: the device may have another address from then on.
void apply(Context& context, Device& device, const DeviceParamBlock& params) {
    device.expect({device.client().SetDeviceParams(params), "SetDeviceParams"});
    context.deviceState = device.address() + " has the parameters, not yet in effect.";
    stopIfInterrupted(context);
    const int result = device.client().ApplyDeviceParams();
    if (result != 0) context.terminal.note(context.deviceState);
    device.expect({result, "ApplyDeviceParams"});
}

ExitCode set(Context& context, const Options& options) {
    Device device(context, options.address);
    DeviceParamBlock params = paramsOf(device);
    for (const std::string& assignment : options.assignments)
        if (const auto problem = setParam(params, assignment))
            throw Failure(ExitCode::CommandLine, *problem);
    for (const std::string& assignment : options.assignments) context.terminal.note(assignment);
    askUnless(options.yes, context, "Set this on " + options.address + "?");
    apply(context, device, params);
    context.terminal.note(options.address + " has taken them");
    return ExitCode::Done;
}

}  // namespace

void describeParams(Arguments arguments) {
    const auto options = std::make_shared<Options>();
    Arguments getting = arguments.command("get", "print them, NAME=VALUE a line");
    getting.address(options->address);
    getting.does(options, &get);
    Arguments setting = arguments.command("set", "change those that are given, and apply");
    setting.address(options->address);
    setting.list("NAME=VALUE", options->assignments, "as get prints them");
    setting.yes(options->yes);
    setting.does(options, &set);
}

}  // namespace korvane::cli
