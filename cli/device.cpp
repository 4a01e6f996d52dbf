#include "cli/device.h"

#include <algorithm>
#include <filesystem>

#include "cli/failure.h"
#include "cli/progress_bar.h"
#include "device/device_manager.h"
#include "device/transfer_sequences.h"

namespace korvane::cli {
namespace {

// Of a setting and of a load, before the time.
constexpr std::string_view settlingRule = "两次设置时间不能小于";

}  // namespace

Device::Device(Context& context, const std::string& address)
    : context_(context), client_(context.link), address_(address) {
    expect({client_.Start(address), "Start"});
    context_.deviceState = "Nothing was changed on " + address + '.';
}

void Device::expect(const Outcome& outcome) const {
    if (outcome.result == 0) return;
    throw Failure(exitCodeOf(outcome.result), failureText(outcome.result, outcome.step, address_));
}

Outcome Device::fetch(Configuration& configuration) {
    settle();
    ProgressBar bar(context_, "reading " + address_, true);
    Progress progress(bar);
    const int result = fetchConfiguration(client_, configuration, progress);
    return {result, std::string(progress.step())};
}

Outcome Device::send(const Configuration& configuration) {
    settle(Interrupts::Wait);
    ProgressBar bar(context_, "sending to " + address_, false);
    Progress progress(bar);
    const int result = sendConfiguration(client_, configuration, progress);
    // One that stopped midway may have reached the device's settings, too.
    noteSetting();
    return {result, std::string(progress.step())};
}

Outcome Device::upgrade(const std::string& file) {
    ProgressBar bar(context_, "upgrading " + address_, false);
    Progress progress(bar);
    const std::filesystem::path path(std::u8string(file.begin(), file.end()));
    const int result = runUpgrade(
        client_, context_.link, path, [this] { return context_.terminal.interrupted(); }, progress);
    return {result, std::string(progress.step())};
}

void Device::settle(Interrupts interrupts) {
    if (!lastSetting_) return;
    const std::uint32_t passed = context_.link.ticks() - *lastSetting_;
    if (passed < settlingMs) settleFor(settlingMs - passed, interrupts);
    lastSetting_.reset();
}

void Device::settleFor(std::uint32_t milliseconds, Interrupts interrupts) {
    constexpr std::uint32_t second = 1000;
    context_.terminal.note("waiting " + std::to_string((milliseconds + second - 1) / second) +
                           " s for the setting to take effect (" + std::string(settlingRule) +
                           std::to_string(settlingSeconds) + "秒)");
    while (milliseconds > 0) {
        const std::uint32_t step = std::min(second, milliseconds);
        context_.terminal.transient(std::to_string((milliseconds + second - 1) / second) + " s");
        if (interrupts == Interrupts::Count)
            pause(context_, step);
        else
            context_.link.sleep(step);
        milliseconds -= step;
    }
}

std::unique_ptr<Configuration> fetchFrom(Context& context, const std::string& address) {
    Device device(context, address);
    auto fetched = std::make_unique<Configuration>();
    device.expect(device.fetch(*fetched));
    return fetched;
}

}  // namespace korvane::cli
