#include "editors/ca_system_form.h"

#include <array>

#include "resources/ids.h"

namespace korvane {
namespace {

constexpr CaSystemEntry newEntry{0, 0, 128, 129, 0, 0};
constexpr std::array<std::string_view, 4> transferModes = {"0", "1", "2", "3"};

}  // namespace

CaSystemForm::CaSystemForm(ConfigChecks checks, const std::optional<CaSystemEntry>& edited)
    : checks_(checks),
      edited_(edited),
      entry_(edited.value_or(newEntry)),
      caSystemId_(entry_.caSystemId),
      serviceId_(entry_.serviceId) {}

int CaSystemForm::dialog() const {
    return IDD_CA_SYSTEM;
}

void CaSystemForm::describe(Fields& fields) {
    fields.number(IDC_CA_SYSTEM_ID, caSystemId_);
    fields.number(IDC_SERVICE_ID, serviceId_);
    fields.number(IDC_EMM_UNIT_TYPE, entry_.emmDataUnitType);
    fields.number(IDC_ECM_UNIT_TYPE, entry_.ecmDataUnitType);
    fields.choice(IDC_ECM_TRANSFER_MODE, entry_.ecmTransferMode, transferModes);
}

int CaSystemForm::accept() {
    entry_.caSystemId = static_cast<std::uint16_t>(caSystemId_);
    entry_.serviceId = static_cast<std::uint16_t>(serviceId_);
    if (const int wrong = checkIds()) return wrong;
    if (checks_.checkDataUnitType(entry_.emmDataUnitType) != 0) return IDC_EMM_UNIT_TYPE;
    if (checks_.checkDataUnitType(entry_.ecmDataUnitType) != 0) return IDC_ECM_UNIT_TYPE;
    return 0;
}

// The table holds the edited entry itself, so ids that stayed are no news.
int CaSystemForm::checkIds() {
    const bool newCaId = !edited_ || edited_->caSystemId != entry_.caSystemId;
    const bool newServiceId = !edited_ || edited_->serviceId != entry_.serviceId;
    switch (checks_.checkCaSystem(entry_.caSystemId, entry_.serviceId, newCaId, newServiceId)) {
        case 0:
            return 0;
        case -1:
            return IDC_CA_SYSTEM_ID;
        default:
            return IDC_SERVICE_ID;
    }
}

}  // namespace korvane
