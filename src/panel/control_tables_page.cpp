#include "panel/control_tables_page.h"

#include <array>
#include <stdexcept>
#include <string_view>

#include "resources/ids.h"
#include "ui/controls.h"

namespace korvane {
namespace {

// In the order of the pages.
constexpr std::array<std::string_view, 6> tableNames = {"网络信息表",       "持续业务复用配置表",
                                                        "持续业务配置表",   "短时间业务复用配置表",
                                                        "短时间业务配置表", "加密授权描述表"};

constexpr int pageMargin = 15;  // pixels, on every side

template <class Base>
std::vector<Base*> pointersTo(const std::vector<std::unique_ptr<Page>>& pages) {
    std::vector<Base*> pointers;
    for (const auto& page : pages) pointers.push_back(page.get());
    return pointers;
}

}  // namespace

TableList::TableList(std::vector<std::unique_ptr<Page>> pages)
    : Dialog(IDD_TABLE_LIST),
      pages_(std::move(pages)),
      stack_(pointersTo<Page>(pages_)),
      tables_(pointersTo<PageContent>(pages_)) {}

bool TableList::onInit() {
    stack_.create(hwnd());
    const auto list = control<ListBox>(IDC_TABLES);
    list.setItems(tableNames);
    list.select(static_cast<int>(tables_.selected()));
    placePages();
    stack_.show(tables_.selected());
    return true;
}

bool TableList::onCommand(int id, int notification, HWND) {
    if (id != IDC_TABLES || notification != LBN_SELCHANGE) return false;
    select(control<ListBox>(IDC_TABLES).selected());
    return true;
}

// A page whose entry is refused stays, and the list says so.
void TableList::select(int index) {
    if (tables_.select(static_cast<std::size_t>(index)))
        stack_.show(tables_.selected());
    else
        control<ListBox>(IDC_TABLES).select(static_cast<int>(tables_.selected()));
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
    stack_.place(area);
}

ControlTablesPage::ControlTablesPage(std::vector<std::unique_ptr<Page>> tables)
    : Page(IDD_CONTROL_TABLES_PAGE), tables_(std::move(tables)) {}

bool ControlTablesPage::onInit() {
    if (!tables_.create(hwnd())) throw std::runtime_error("the table list was refused");
    return true;
}

void ControlTablesPage::onSize(int width, int height) {
    if (tables_.hwnd()) tables_.place({0, 0, width, height});
}

}  // namespace korvane
