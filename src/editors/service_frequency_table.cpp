#include "editors/service_frequency_table.h"

#include <algorithm>

#include "editors/service_frequency_form.h"
#include "resources/ids.h"

namespace korvane {
namespace {

constexpr std::uint8_t continuousTableId = 3, shortTimeTableId = 5;

TableKind otherThan(TableKind kind) {
    return kind == TableKind::ShortTime ? TableKind::Continuous : TableKind::ShortTime;
}

// The first frame that carries the service, or nullptr.
const MultiplexFrame* carrierOf(std::uint16_t serviceId, const MultiplexTable& table) {
    const auto carries = [serviceId](const MultiplexFrame& frame) {
        return std::ranges::find(frame.services, serviceId, &ServiceRecord::serviceId) !=
               frame.services.end();
    };
    const auto* found = std::ranges::find_if(table.frames, carries);
    return found == table.frames.end() ? nullptr : found;
}

bool isShown(const ServiceFrequencyEntry& entry, const ConfigTables& tables, TableKind kind) {
    return carrierOf(entry.serviceId, tables.table(kind)) ||
           !carrierOf(entry.serviceId, tables.table(otherThan(kind)));
}

ListRow rowOf(const ServiceFrequencyEntry& entry, const MultiplexFrame* carrier) {
    return {std::to_string(entry.serviceId), std::to_string(entry.channelNumber),
            carrier ? std::to_string(carrier->id) : "无效业务"};
}

}  // namespace

std::vector<std::size_t> shownEntries(const ConfigTables& tables, TableKind kind) {
    std::vector<std::size_t> shown;
    const auto& entries = tables.serviceTable(kind).entries;
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (isShown(entries[i], tables, kind)) shown.push_back(i);
    return shown;
}

int ServiceFrequencyTableForm::dialog() const {
    return IDD_SERVICE_FREQUENCY_PAGE;
}

void ServiceFrequencyTableForm::load() {
    tableId_ = kind_ == TableKind::ShortTime ? shortTimeTableId : continuousTableId;
}

void ServiceFrequencyTableForm::describe(Fields& fields) {
    fields.number(IDC_TABLE_ID, tableId_);
}

int ServiceFrequencyTableForm::accept() {
    return taken(model_.setServiceFrequencyTableId(kind_, tableId_), prompts_) ? 0 : IDC_TABLE_ID;
}

std::vector<ListColumn> ServiceFrequencyList::columns() const {
    return {{"业务标识", 80}, {"频点编号", 100}, {"所属复用帧", 100}};
}

std::vector<ListRow> ServiceFrequencyList::rows() const {
    std::vector<ListRow> rows;
    for (const std::size_t index : shownEntries(tables(), kind_)) {
        const ServiceFrequencyEntry& entry = tables().serviceTable(kind_).entries[index];
        rows.push_back(rowOf(entry, carrierOf(entry.serviceId, tables().table(kind_))));
    }
    return rows;
}

std::size_t ServiceFrequencyList::entryAt(int row) const {
    return shownEntries(tables(), kind_).at(static_cast<std::size_t>(row));
}

bool ServiceFrequencyList::add(int before) {
    constexpr int atEnd = -1;
    if (!hasRoom(tables().serviceTable(kind_).entries, "业务频点关联", editing_.prompts))
        return false;
    ServiceFrequencyForm form(checks(), kind_);
    if (!editing_.forms.run(form)) return false;
    const int position = before == noRow ? atEnd : static_cast<int>(entryAt(before));
    return taken(editing_.model.addServiceFrequency(kind_, form.entry(), position),
                 editing_.prompts);
}

bool ServiceFrequencyList::edit(int row) {
    const std::size_t index = entryAt(row);
    ServiceFrequencyForm form(checks(), kind_, tables().serviceTable(kind_).entries[index]);
    return editing_.forms.run(form) &&
           taken(editing_.model.setServiceFrequency(kind_, index, form.entry()), editing_.prompts);
}

bool ServiceFrequencyList::remove(int row) {
    return taken(editing_.model.removeServiceFrequency(kind_, entryAt(row)), editing_.prompts);
}

}  // namespace korvane
