#include "editors/network_table.h"

#include "editors/frequency_fields.h"
#include "editors/frequency_point_form.h"
#include "editors/neighbour_network_form.h"
#include "model/field_text.h"
#include "model/frequency_text.h"
#include "resources/ids.h"

namespace korvane {
namespace {

constexpr std::uint8_t networkTableId = 1;

}  // namespace

int NetworkTableForm::dialog() const {
    return IDD_NETWORK_PAGE;
}

void NetworkTableForm::load() {
    const NetworkInfo& network = model_.tables().network;
    tableId_ = networkTableId;
    countryCode_ = fieldText(network.countryCode);
    levelIndex_ = levelIndex(network.level);
    networkNumber_ = network.networkNumber;
    name_ = network.name;
    ownFrequency_ = network.ownFrequency;
}

void NetworkTableForm::describe(Fields& fields) {
    fields.number(IDC_NETWORK_TABLE_ID, tableId_);
    fields.text(IDC_COUNTRY_CODE, countryCode_, "国家码");
    fields.choice(IDC_NETWORK_LEVEL, levelIndex_, networkLevelNames);
    fields.number(IDC_NETWORK_NUMBER, networkNumber_);
    fields.text(IDC_NETWORK_NAME, name_, "网络名称");
    describeFrequency(fields, ownFrequency_);
}

// The lists may have changed since the page was filled: only its own fields are the page's.
int NetworkTableForm::accept() {
    ConfigChecks checks(model_, prompts_);
    if (checks.checkCountryCode(countryCode_) != 0) return IDC_COUNTRY_CODE;
    if (checks.checkNetworkName(name_) != 0) return IDC_NETWORK_NAME;
    NetworkInfo network = model_.tables().network;
    enterInto(network);
    return taken(model_.setNetworkInfo(network), prompts_) ? 0 : IDC_NETWORK_NAME;
}

void NetworkTableForm::enterInto(NetworkInfo& network) const {
    network.tableId = tableId_;
    enterText(countryCode_, network.countryCode);
    network.level = levelAt(levelIndex_);
    network.networkNumber = networkNumber_;
    network.name = name_;
    network.ownFrequency = ownFrequency_;
}

std::vector<ListColumn> FrequencyPointList::columns() const {
    return {{"频点编号", 80}, {"中心频率(MHz)", 100}, {"带宽", 45}};
}

std::vector<ListRow> FrequencyPointList::rows() const {
    std::vector<ListRow> rows;
    for (const FrequencyPoint& point : points())
        rows.push_back({std::to_string(point.channelNumber), megahertzText(point.centreFrequency),
                        nameAt(bandwidthNames, point.bandwidth)});
    return rows;
}

// Neither list has an order of its own: always at the end.
bool FrequencyPointList::add(int) {
    if (!hasRoom(points(), "其他频点", editing_.prompts)) return false;
    FrequencyPointForm form(checks());
    return editing_.forms.run(form) &&
           taken(editing_.model.addFrequencyPoint(form.point()), editing_.prompts);
}

bool FrequencyPointList::edit(int row) {
    const auto index = static_cast<std::size_t>(row);
    FrequencyPointForm form(checks(), points()[index]);
    return editing_.forms.run(form) &&
           taken(editing_.model.setFrequencyPoint(index, form.point()), editing_.prompts);
}

bool FrequencyPointList::remove(int row) {
    return taken(editing_.model.removeFrequencyPoint(static_cast<std::size_t>(row)),
                 editing_.prompts);
}

std::vector<ListColumn> NeighbourNetworkList::columns() const {
    return {
        {"网络号", 65}, {"网络级别", 80}, {"频点编号", 80}, {"中心频率(MHz)", 100}, {"带宽", 45}};
}

std::vector<ListRow> NeighbourNetworkList::rows() const {
    std::vector<ListRow> rows;
    for (const NeighbourNetwork& network : networks())
        rows.push_back({std::to_string(network.networkNumber),
                        nameAt(networkLevelNames, levelIndex(network.level)),
                        std::to_string(network.channelNumber),
                        megahertzText(network.centreFrequency),
                        nameAt(bandwidthNames, network.bandwidth)});
    return rows;
}

bool NeighbourNetworkList::add(int) {
    if (!hasRoom(networks(), "其他网络", editing_.prompts)) return false;
    NeighbourNetworkForm form(checks());
    return editing_.forms.run(form) &&
           taken(editing_.model.addNeighbourNetwork(form.network()), editing_.prompts);
}

bool NeighbourNetworkList::edit(int row) {
    const auto index = static_cast<std::size_t>(row);
    NeighbourNetworkForm form(checks(), networks()[index]);
    return editing_.forms.run(form) &&
           taken(editing_.model.setNeighbourNetwork(index, form.network()), editing_.prompts);
}

bool NeighbourNetworkList::remove(int row) {
    return taken(editing_.model.removeNeighbourNetwork(static_cast<std::size_t>(row)),
                 editing_.prompts);
}

}  // namespace korvane
