#include <span>

#include "review/rules.h"
#include "review/words.h"
#include "text/gbk.h"

namespace korvane::review {
namespace {

constexpr std::uint32_t leastKbps = 1000, mostKbps = 50000;

const Check<OutputParamBlock> outputChecks[] = {
    {error, "PMS PID", [](const OutputParamBlock& o) { return std::to_string(o.pmsPid); },
     [](ConfigChecks& c, const OutputParamBlock& o) { return c.checkPid(o.pmsPid); }},
};

const Range<OutputParamBlock> outputRanges[] = {
    {error, "update sequence advance", "", 0, 2,
     [](const OutputParamBlock& o) -> Value { return o.updateSequenceAdvance; }},
    {error, "clock source", "", 0, 1,
     [](const OutputParamBlock& o) -> Value { return o.clockSource; }},
    {error, "system bit rate in kbit/s:", "系统码率应在1000Kbps~50000Kbps之间", leastKbps, mostKbps,
     [](const OutputParamBlock& o) -> Value { return o.systemBitRate / 1000; }},
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
