#include "panel/control_tables_page.h"

#include <stdexcept>
#include <string_view>

#include "resources/ids.h"
#include "ui/controls.h"

namespace korvane {
namespace {

struct Table {
    std::string_view name;
    int dialog;
};

// In the order of the list. Two tables share a dialog: the continuous services' and the short-time
// services' are alike.
constexpr std::array<Table, 6> tables = {{
    {"网络信息表", IDD_NETWORK_PAGE},
    {"持续业务复用配置表", IDD_FRAME_LIST_PAGE},
    {"持续业务配置表", IDD_SERVICE_FREQUENCY_PAGE},
    {"短时间业务复用配置表", IDD_FRAME_LIST_PAGE},
    {"短时间业务配置表", IDD_SERVICE_FREQUENCY_PAGE},
    {"加密授权描述表", IDD_CA_PAGE},
}};

constexpr int pageMargin = 15;  // pixels, on every side

}  // namespace

TableList::TableList() : Dialog(IDD_TABLE_LIST) {
    static_assert(tables.size() == tableCount);
    for (std::size_t i = 0; i < tables.size(); ++i)
        pages_[i] = std::make_unique<Page>(tables[i].dialog);
}

bool TableList::onInit() {
    for (const auto& page : pages_)
        if (!page->create(hwnd())) throw std::runtime_error("a table's page was refused");
    std::array<std::string_view, tableCount> names;
    for (std::size_t i = 0; i < tables.size(); ++i) names[i] = tables[i].name;
    const auto list = control<ListBox>(IDC_TABLES);
    list.setItems(names);
    list.select(selected_);
    placePages();
    pages_[0]->show(true);
    return true;
}

bool TableList::onCommand(int id, int notification, HWND) {
    if (id != IDC_TABLES || notification != LBN_SELCHANGE) return false;
    select(control<ListBox>(IDC_TABLES).selected());
    return true;
}

void TableList::select(int index) {
    if (index < 0 || index >= tableCount || index == selected_) return;
    for (const auto& page : pages_) page->show(false);
    commit();
    selected_ = index;
    refresh();
    pages_[static_cast<std::size_t>(index)]->show(true);
}

void TableList::refresh() {
    pages_[static_cast<std::size_t>(selected_)]->refresh();
}
void TableList::commit() {
    pages_[static_cast<std::size_t>(selected_)]->commit();
}

void TableList::onSize(int width, int height) {
    const auto list = control<ListBox>(IDC_TABLES);
    const auto frame = control<Static>(IDC_PAGE_FRAME);
    RECT listArea = list.area(), frameArea = frame.area();
    listArea.bottom = frameArea.bottom = height;
    frameArea.right = width;
    list.place(listArea);
    frame.place(frameArea);
    placePages();
}

void TableList::placePages() {
    RECT area = control<Static>(IDC_PAGE_FRAME).area();
    const int margin = scaled(pageMargin);
    InflateRect(&area, -margin, -margin);
    for (const auto& page : pages_)
        if (page->hwnd()) page->place(area);
}

ControlTablesPage::ControlTablesPage() : Page(IDD_CONTROL_TABLES_PAGE) {}

bool ControlTablesPage::onInit() {
    if (!tables_.create(hwnd())) throw std::runtime_error("the table list was refused");
    return true;
}

void ControlTablesPage::onSize(int width, int height) {
    if (tables_.hwnd()) tables_.place({0, 0, width, height});
}

}  // namespace korvane
