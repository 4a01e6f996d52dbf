#include "cli/deployment.h"

#include <algorithm>

#include "cli/failure.h"
#include "cli/findings_text.h"
#include "cli/kept_copy.h"
#include "model/object_bytes.h"
#include "review/differences.h"

namespace korvane::cli {
namespace {

// No device has those of a file.
void clearWhatNeverTravels(Configuration& configuration) {
    configuration.fileReserved = {};
    configuration.channelsLeftOut.clear();
    configuration.hasDescriptions = true;
    configuration.image.reserved = {};
    configuration.image.header.reserved = {};
}

bool sameParams(const Configuration& a, const Configuration& b) {
    return std::ranges::equal(bytesOf(a.params), bytesOf(b.params));
}

// What the device has when a save ended there.
std::string stateAfter(const Outcome& outcome, const std::string& address) {
    if (outcome.step == "ActivateConfig")
        return address +
               " has taken the whole configuration; whether it has taken effect is not "
               "known.";
    if (outcome.step == "SetInputChannels")
        return outcome.result > 0 ? "Nothing was changed on " + address + '.'
                                  : address + " has what it had, or other input channels.";
    return address + " has taken a part of the configuration, up to " + outcome.step +
           ", and was not told to make it take effect.";
}

}  // namespace

Deployment::Deployment(Context& context, const DeploymentOptions& options)
    : context_(context), options_(options), device_(context, options.address) {}

ExitCode Deployment::run() {
    readBoth();
    showDifferences();
    if (!acceptable()) return ExitCode::No;
    if (options_.dryRun) return ExitCode::Done;
    askUnless(options_.yes, context_, "Send " + options_.file + " to " + options_.address + "?");
    keep();
    stopIfInterrupted(context_);
    return commit();
}

void Deployment::readBoth() {
    wanted_ = readConfigurationFile(context_, options_.file, options_.format);
    clearWhatNeverTravels(*wanted_);
    held_ = std::make_unique<Configuration>();
    device_.expect(device_.fetch(*held_));
}

void Deployment::showDifferences() {
    const auto differences = differencesOf(*held_, *wanted_);
    for (const std::string& line : differences) context_.terminal.write(line + '\n');
    if (differences.empty()) context_.terminal.note(options_.address + " has all of this already");
    if (!sameParams(*held_, *wanted_))
        context_.terminal.note("device parameters are compared, but not sent");
    wanted_->params = held_->params;
}

bool Deployment::acceptable() {
    const auto findings = findingsOf(*wanted_);
    context_.terminal.write(findingsText(findings));
    if (!hasErrors(findings) || options_.force) return true;
    context_.terminal.note("korvane: " + options_.file +
                           " has errors; --force sends it all the same");
    return false;
}

void Deployment::keep() {
    kept_ = keepCopy(*held_, options_.folder, options_.address, context_.now());
    context_.terminal.note("what " + options_.address + " has is kept in " + kept_);
}

ExitCode Deployment::commit() {
    const Outcome outcome = device_.send(*wanted_);
    if (outcome.result != 0) return sentInPart(outcome);
    context_.deviceState = options_.address + " has taken " + options_.file +
                           "; it was not read back. What it had is in " + kept_ + '.';
    const ExitCode code = readBack(*wanted_);
    if (code != ExitCode::Done) return backOut(code);
    context_.terminal.note(options_.address + " has " + options_.file + ", read back and compared");
    return ExitCode::Done;
}

ExitCode Deployment::readBack(const Configuration& expected) {
    const auto found = std::make_unique<Configuration>();
    const Outcome outcome = device_.fetch(*found);
    if (outcome.result != 0) return tell(outcome, "It has taken everything, but is not read back.");
    const auto differences = differencesOf(expected, *found);
    if (differences.empty()) return ExitCode::Done;
    context_.terminal.note("korvane: " + options_.address + " holds something else than was sent:");
    for (const std::string& line : differences) context_.terminal.note("  " + line);
    return ExitCode::No;
}

ExitCode Deployment::tell(const Outcome& outcome, const std::string& state) {
    context_.terminal.note("korvane: " +
                           failureText(outcome.result, outcome.step, options_.address));
    context_.terminal.note(state);
    return exitCodeOf(outcome.result);
}

ExitCode Deployment::sentInPart(const Outcome& outcome) {
    return backOut(tell(outcome, stateAfter(outcome, options_.address)));
}

ExitCode Deployment::backOut(ExitCode code) {
    if (wantsBackOut())
        restore();
    else
        context_.terminal.note("What it had is in " + kept_ + "; to write it back: korvane send " +
                               kept_ + ' ' + options_.address);
    return code;
}

// A script that did not ask for it gets no question either.
bool Deployment::wantsBackOut() {
    if (options_.restoreOnFailure) return true;
    return !options_.yes &&
           context_.terminal.confirm("Write back what " + options_.address + " had?");
}

void Deployment::restore() {
    context_.terminal.note("writing back " + kept_);
    const Outcome outcome = device_.send(*held_);
    if (outcome.result != 0) return void(tell(outcome, stateAfter(outcome, options_.address)));
    context_.deviceState = "What " + options_.address + " had was written back, but not read back.";
    if (readBack(*held_) == ExitCode::Done)
        context_.terminal.note(options_.address + " has again what it had, read back and compared");
}

}  // namespace korvane::cli
