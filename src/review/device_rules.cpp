#include <span>

#include "review/rules.h"
#include "review/words.h"
#include "text/gbk.h"

namespace korvane::review {
namespace {

const Check<OutputParamBlock> outputChecks[] = {
    {error, "PMS PID", [](const OutputParamBlock& o) { return std::to_string(o.pmsPid); },
     [](ConfigChecks& c, const OutputParamBlock& o) { return c.checkPid(o.pmsPid); }},
    {error, "system bit rate in kbit/s:",
     [](const OutputParamBlock& o) { return std::to_string(o.systemBitRate / 1000); },
     [](ConfigChecks& c, const OutputParamBlock& o) {
         return c.checkSystemBitRate(o.systemBitRate);
     }},
};

const Range<OutputParamBlock> outputRanges[] = {
    {error, "update sequence advance", "", 0, 2,
     [](const OutputParamBlock& o) -> Value { return o.updateSequenceAdvance; }},
    {error, "clock source", "", 0, 1,
     [](const OutputParamBlock& o) -> Value { return o.clockSource; }},
};

std::string macText(const DeviceParamBlock::Text& field) {
    return shownText(gbkToUtf8(fieldText(field)));
}

const Check<DeviceParamBlock> deviceChecks[] = {
    {error, "the control port's MAC address",
     [](const DeviceParamBlock& d) { return macText(d.controlMac); },
     [](ConfigChecks& c, const DeviceParamBlock& d) {
         return c.checkMacAddress(fieldText(d.controlMac));
     }},
    {error, "the service port's MAC address",
     [](const DeviceParamBlock& d) { return macText(d.serviceMac); },
     [](ConfigChecks& c, const DeviceParamBlock& d) {
         return c.checkMacAddress(fieldText(d.serviceMac));
     }},
};

}  // namespace

void judgeDevice(const Whole& whole, std::vector<Finding>& findings) {
    judgeAll(whole, std::span(&whole.content.image.outputParams, 1), findings, outputChecks,
             outputRanges);
    judgeAll(whole, std::span(&whole.content.params, 1), findings, deviceChecks);
}

}  // namespace korvane::review
