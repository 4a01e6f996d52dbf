#include "ui/controls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "host/robot.h"
#include "ui/list_view.h"
#include "ui/module.h"

namespace korvane {
namespace {

using host::Robot;
using testing::ElementsAre;

// What the wrappers write, the robot reads, and what the robot does, the wrappers and the parent
// see.
class ControlsTest : public testing::Test {
  protected:
    ControlsTest() { SetWindowSubclass(parent_, &onMessage, 0, reinterpret_cast<DWORD_PTR>(this)); }
    ~ControlsTest() override { DestroyWindow(parent_); }

    template <class C>
    C make(const wchar_t* className, DWORD style = 0) {
        return C(CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | style, 0, 0, 300, 120,
                                 parent_, nullptr, nullptr, nullptr));
    }
    ActivationScope activation_;
    const Robot robot_{GetCurrentThreadId()};
    HWND parent_ = CreateWindowExW(0, L"Static", L"", WS_POPUP | WS_VISIBLE, 0, 0, 400, 400,
                                   nullptr, nullptr, nullptr, nullptr);
    const ListView list_ = make<ListView>(WC_LISTVIEWW, LVS_REPORT | LVS_SHOWSELALWAYS);
    const HWND view_ = list_.window();
    std::set<UINT> noted_;  // codes of commands and notifications

  private:
    static LRESULT CALLBACK onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR, DWORD_PTR test) {
        auto& noted = reinterpret_cast<ControlsTest*>(test)->noted_;
        if (message == WM_COMMAND) noted.insert(HIWORD(wParam));
        if (message == WM_NOTIFY) noted.insert(reinterpret_cast<const NMHDR*>(lParam)->code);
        return DefSubclassProc(window, message, wParam, lParam);
    }
};

TEST_F(ControlsTest, ListsSelectByIndex) {
    constexpr std::string_view items[] = {"内部时钟", "外部时钟", "内部时钟"};
    const auto combo = make<Combo>(L"ComboBox", CBS_DROPDOWNLIST);
    const auto list = make<ListBox>(L"ListBox", LBS_NOTIFY);
    for (int round = 0; round < 2; ++round) {  // replaces, never adds
        combo.setItems(items);
        list.setItems(items);
    }
    EXPECT_THAT(robot_.comboItems(combo.window()), testing::ElementsAreArray(items));
    EXPECT_THAT(robot_.listBoxItems(list.window()), testing::ElementsAreArray(items));
    EXPECT_EQ(combo.selected(), -1);
    robot_.selectCombo(combo.window(), 2);
    EXPECT_TRUE(noted_.contains(CBN_SELCHANGE));
    EXPECT_EQ(combo.selected(), 2);
    combo.select(3);
    EXPECT_EQ(robot_.comboSelection(combo.window()), -1);
    combo.select(1);
    EXPECT_EQ(robot_.comboSelection(combo.window()), 1);
    list.select(1);
    EXPECT_EQ(list.selected(), 1);
}

TEST_F(ControlsTest, IpBoxKeepsTheFirstOctetFirst) {
    const auto box = make<IpBox>(WC_IPADDRESSW);
    EXPECT_TRUE(box.blank());
    box.setAddress({10, 1, 2, 3});
    EXPECT_EQ(box.address(), (IpBox::Address{10, 1, 2, 3}));
    EXPECT_EQ(box.text(), "10.1.2.3");
    box.clear();
    EXPECT_TRUE(box.blank());
}

TEST_F(ControlsTest, TreeAndTabHoldTheirTexts) {
    const auto tree = make<Tree>(WC_TREEVIEWW);
    const HTREEITEM service = tree.append(tree.append(nullptr, "复用帧0"), "子帧");
    tree.append(nullptr, "复用帧1");
    tree.setItemText(service, "子帧1");
    EXPECT_EQ(tree.itemText(service), "子帧1");
    std::string rows;
    for (const host::TreeRow& row : robot_.treeRows(tree.window()))
        rows += std::to_string(row.depth) + row.text;
    EXPECT_EQ(rows, "0复用帧01子帧10复用帧1");
    robot_.selectTreeItem(tree.window(), service);
    EXPECT_TRUE(noted_.contains(TVN_SELCHANGEDW));
    tree.clear();
    EXPECT_TRUE(robot_.treeRows(tree.window()).empty());

    const auto tab = make<Tab>(WC_TABCONTROLW);
    for (const char* title : {"业务列表", "图形化监控", "状态"}) tab.append(title);
    EXPECT_THAT(robot_.tabTitles(tab.window()), ElementsAre("业务列表", "图形化监控", "状态"));
    tab.select(1);
    EXPECT_EQ(tab.selected(), 1);
    robot_.selectTab(tab.window(), 2);
    EXPECT_EQ(tab.selected(), 2);
    EXPECT_TRUE(noted_.contains(TCN_SELCHANGE));
}

TEST_F(ControlsTest, ListViewShowsSelectsAndMarksRows) {
    constexpr ListView::Column columns[] = {{"序号", 45}, {"接收地址", 120}};
    list_.setUp(columns, ListView::Marks::CheckBoxes);
    const ListView::Row rows[] = {{"0", "地址"}, {"1", "地址"}, {"2", "地址"}};
    list_.setRows(rows);
    EXPECT_THAT(robot_.listColumns(view_), ElementsAre("序号", "接收地址"));
    EXPECT_THAT(robot_.listRows(view_), testing::ElementsAreArray(rows));
    EXPECT_EQ(robot_.listSelection(view_), -1);
    robot_.selectRow(view_, 0);
    robot_.selectRow(view_, 1);
    EXPECT_EQ(robot_.listSelection(view_), 1);
    EXPECT_EQ(list_.allSelected(), std::vector<int>{1});
    robot_.clearSelection(view_);
    EXPECT_EQ(robot_.listSelection(view_), -1);
    for (const bool marked : {true, false}) {
        list_.setChecked(1, marked);
        robot_.checkRow(view_, 2, marked);
        EXPECT_FALSE(list_.checked(0));
        EXPECT_EQ(robot_.isRowChecked(view_, 1), marked);
        EXPECT_EQ(list_.checked(2), marked);
    }
}

}  // namespace
}  // namespace korvane
