#include "tour_story.h"

#include "tour_editing.h"

namespace korvane::host {

namespace {

enum CaControl : int {
    ecmUnitType = 1016,
    emmUnitType = 1013,
    caSystems = 1048,
    caSystemId = 1049,
    ecmTransferMode = 1073,
    caServiceId = 1096,
    caSectionCount = 1123,
};
constexpr FormVisit caSystem = {"加密授权系统配置", "1095-ca-system"};

}  // namespace

void addCaSystem(Tour& tour) {
    openTable(tour, "加密授权描述表");
    HWND list = onPage(tour, caSystems);
    HWND form = openNew(tour, list, caSystem);
    refuse(tour, form, {{caSystemId, "32600"}, {caServiceId, "106"}, {emmUnitType, "160"}},
           "数据单元类型必须在128~159之间", "refusal-unit-type");
    accept(tour, form, caSystem,
           {{emmUnitType, "140"}, {ecmUnitType, "141"}, {ecmTransferMode, "2"}});
    expectRow(tour, list, 2, {"2", "32600", "106", "140", "141", "2"});
}

void editCaSystem(Tour& tour) {
    HWND list = onPage(tour, caSystems);
    accept(tour, openRow(tour, list, 1, caSystem), caSystem,
           {{emmUnitType, "159"}, {ecmTransferMode, "3"}});
    openByKeys(tour, list, 1, caSystem);
    expectRow(tour, list, 1, {"1", "32514", "201", "159", "131", "3"});
}

// What is typed into the page itself is taken by the save.
void removeCaSystem(Tour& tour) {
    HWND list = onPage(tour, caSystems);
    removeRow(tour, list, 0);
    expectRow(tour, list, 0, {"0", "32514", "201", "159", "131", "3"});
    tour.robot().fill(GetParent(list), {{caSectionCount, "2"}});
    tour.picture(tour.host(), "1036-5-1092-conditional-access-edited");
}

}  // namespace korvane::host
