#include "ui/controls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/robot.h"
#include "ui/list_view.h"
#include "ui/module.h"

namespace korvane {
namespace {

using host::Robot;
using testing::ElementsAre;

// What the wrappers write, the robot reads, and what the robot does, the wrappers see.
class ControlsTest : public testing::Test {
  protected:
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
    EXPECT_EQ(combo.selected(), 2);
    combo.select(3);
    EXPECT_EQ(robot_.comboSelection(combo.window()), -1);
    combo.select(1);
    EXPECT_EQ(robot_.comboSelection(combo.window()), 1);
    list.select(1);
    EXPECT_EQ(list.selected(), 1);
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
    list_.setRows(rows);
    EXPECT_EQ(robot_.listSelection(view_), 1) << "a refill leaves the rows that stay";
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
