#include "review/rules.h"

// What refers to services by their ids.

namespace korvane::review {
namespace {

bool isCarried(const Whole& w, std::uint16_t serviceId) {
    return std::ranges::any_of(
        w.services, [serviceId](const ServiceAt& s) { return s.service.serviceId == serviceId; });
}

const Rule<PairAt> pairRules[] = {
    {error, "this pair stands there twice", "已有相同的业务标识和频道号对",
     [](const Whole& w, const PairAt& p) {
         return isRepeated(w.pairs, p, [](const PairAt& a, const PairAt& b) {
             return a.entry.serviceId == b.entry.serviceId &&
                    a.entry.channelNumber == b.entry.channelNumber;
         });
     }},
    {warning, "no frame carries this service", "无效业务",
     [](const Whole& w, const PairAt& p) { return !isCarried(w, p.entry.serviceId); }},
};

const Rule<CaSystemEntry> systemRules[] = {
    {error, "another entry has this CA system id", "已有相同的CA System ID",
     [](const Whole& w, const CaSystemEntry& e) {
         return isRepeated(w.tables->caDescriptions.entries, e, [](const auto& a, const auto& b) {
             return a.caSystemId == b.caSystemId;
         });
     }},
    {error, "another entry has its service id", "已有相同的业务标识",
     [](const Whole& w, const CaSystemEntry& e) {
         return isRepeated(w.tables->caDescriptions.entries, e,
                           [](const auto& a, const auto& b) { return a.serviceId == b.serviceId; });
     }},
    {warning, "no frame carries its service", "",
     [](const Whole& w, const CaSystemEntry& e) { return !isCarried(w, e.serviceId); }},
};

const Check<CaSystemEntry> systemChecks[] = {
    {error, "EMM data unit type",
     [](const CaSystemEntry& e) { return std::to_string(e.emmDataUnitType); },
     [](ConfigChecks& c, const CaSystemEntry& e) {
         return c.checkDataUnitType(e.emmDataUnitType);
     }},
    {error, "ECM data unit type",
     [](const CaSystemEntry& e) { return std::to_string(e.ecmDataUnitType); },
     [](ConfigChecks& c, const CaSystemEntry& e) {
         return c.checkDataUnitType(e.ecmDataUnitType);
     }},
};

const Range<CaSystemEntry> systemRanges[] = {
    {error, "ECM transfer mode", "", 0, 3,
     [](const CaSystemEntry& e) -> Value { return e.ecmTransferMode; }},
};

}  // namespace

void judgeTables(const Whole& whole, std::vector<Finding>& findings) {
    judgeAll(whole, whole.pairs, findings, pairRules);
    judgeAll(whole, whole.tables->caDescriptions.entries, findings, systemRules, systemChecks,
             systemRanges);
}

}  // namespace korvane::review
