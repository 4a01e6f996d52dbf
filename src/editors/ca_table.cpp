#include "editors/ca_table.h"

#include "editors/ca_system_form.h"
#include "resources/ids.h"

namespace korvane {
namespace {

constexpr std::uint8_t caTableId = 7;

ListRow rowOf(std::size_t index, const CaSystemEntry& entry) {
    ListRow row;
    for (const std::size_t value :
         {index, std::size_t{entry.caSystemId}, std::size_t{entry.serviceId},
          std::size_t{entry.emmDataUnitType}, std::size_t{entry.ecmDataUnitType},
          std::size_t{entry.ecmTransferMode}})
        row.push_back(std::to_string(value));
    return row;
}

}  // namespace

int CaTableForm::dialog() const {
    return IDD_CA_PAGE;
}

void CaTableForm::load() {
    const CaDescriptionTable& table = model_.tables().caDescriptions;
    tableId_ = caTableId;
    sendFlag_ = table.sendFlag;
    sectionCount_ = table.sectionCount;
}

void CaTableForm::describe(Fields& fields) {
    fields.number(IDC_TABLE_ID, tableId_);
    fields.number(IDC_SECTION_COUNT, sectionCount_);
    fields.flag(IDC_SEND_TABLE, sendFlag_);
}

// The list may have changed since the page was filled: only its own fields are the page's.
int CaTableForm::accept() {
    CaDescriptionTable table = model_.tables().caDescriptions;
    table.tableId = tableId_;
    table.sendFlag = sendFlag_;
    table.sectionCount = sectionCount_;
    return taken(model_.setCaTable(table), prompts_) ? 0 : IDC_SECTION_COUNT;
}

std::vector<ListColumn> CaSystemList::columns() const {
    return {{"序号", 50},
            {"CA_System_ID", 90},
            {"业务标识", 70},
            {"EMM数据单元类型", 110},
            {"ECM数据单元类型", 110},
            {"ECM传送方式", 100}};
}

std::vector<ListRow> CaSystemList::rows() const {
    std::vector<ListRow> rows;
    for (const CaSystemEntry& entry : table().entries) rows.push_back(rowOf(rows.size(), entry));
    return rows;
}

// The table has no order of its own: always at the end.
bool CaSystemList::add(int) {
    if (!hasRoom(table().entries, "加密授权系统", editing_.prompts)) return false;
    CaSystemForm form(checks());
    return editing_.forms.run(form) &&
           taken(editing_.model.appendCaSystem(form.entry()), editing_.prompts);
}

bool CaSystemList::edit(int row) {
    const auto index = static_cast<std::size_t>(row);
    CaDescriptionTable changed = table();
    CaSystemForm form(checks(), changed.entries[index]);
    if (!editing_.forms.run(form)) return false;
    changed.entries[index] = form.entry();
    return taken(editing_.model.setCaTable(changed), editing_.prompts);
}

bool CaSystemList::remove(int row) {
    CaDescriptionTable changed = table();
    return changed.entries.erase(static_cast<std::size_t>(row)) &&
           taken(editing_.model.setCaTable(changed), editing_.prompts);
}

}  // namespace korvane
