#include "ui/controls.h"

#include <gtest/gtest.h>

#include "ui/list_view.h"
#include "ui/module.h"

namespace korvane {
namespace {

class ControlsTest : public testing::Test {
  protected:
    template <class C>
    C make(const wchar_t* className, DWORD style = 0) {
        return C(CreateWindowExW(0, className, L"", WS_CHILD | style, 0, 0, 300, 120, parent_,
                                 nullptr, nullptr, nullptr));
    }
    ~ControlsTest() override { DestroyWindow(parent_); }

    ActivationScope activation_;
    HWND parent_ = CreateWindowExW(0, L"Static", L"", WS_OVERLAPPED, 0, 0, 400, 400, nullptr,
                                   nullptr, nullptr, nullptr);
};

TEST_F(ControlsTest, EditTellsNumbersFromOtherText) {
    const auto edit = make<Edit>(L"Edit");
    edit.setNumber(4294967295u);
    EXPECT_EQ(edit.text(), "4294967295");
    EXPECT_EQ(edit.number(), 4294967295u);
    for (const char* text : {"", "4294967296", "-1", "12a", " 5", "5 ", "网"}) {
        edit.setText(text);
        EXPECT_EQ(edit.number(), std::nullopt) << text;
        EXPECT_EQ(edit.text(), text);
    }
}

TEST_F(ControlsTest, ListsSelectByIndex) {
    constexpr std::string_view items[] = {"内部时钟", "外部时钟", "内部时钟"};
    const auto combo = make<Combo>(L"ComboBox", CBS_DROPDOWNLIST);
    combo.setItems(items);
    combo.setItems(items);  // replaces, never adds
    EXPECT_EQ(combo.count(), 3);
    EXPECT_EQ(combo.selected(), -1);
    combo.select(2);
    EXPECT_EQ(combo.selected(), 2);
    combo.select(3);
    EXPECT_EQ(combo.selected(), -1);
    const auto list = make<ListBox>(L"ListBox");
    list.setItems(items);
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
    const HTREEITEM frame = tree.append(nullptr, "复用帧0");
    const HTREEITEM service = tree.append(frame, "子帧");
    tree.setItemText(service, "子帧1");
    EXPECT_EQ(tree.itemText(service), "子帧1");
    tree.clear();
    EXPECT_EQ(tree.itemText(TVI_ROOT), "");
    const auto tab = make<Tab>(WC_TABCONTROLW);
    tab.append("业务列表");
    tab.append("图形化监控");
    tab.select(1);
    EXPECT_EQ(tab.selected(), 1);
}

class ListViewTest : public ControlsTest {
  protected:
    void setUp(ListView::Marks marks) {
        constexpr ListView::Column columns[] = {{"序号", 45}, {"接收地址", 120}};
        list_.setUp(columns, marks);
    }
    void fill(int count) {
        std::vector<ListView::Row> rows;
        for (int i = 0; i < count; ++i) rows.push_back({std::to_string(i), "地址"});
        list_.setRows(rows);
    }

    ListView list_ = make<ListView>(WC_LISTVIEWW, LVS_REPORT | LVS_SHOWSELALWAYS);
};

TEST_F(ListViewTest, KeepsSelectionAndScrollingAcrossARefill) {
    setUp(ListView::Marks::None);
    fill(60);
    EXPECT_EQ(list_.count(), 60);
    EXPECT_EQ(list_.cell(59, 0), "59");
    EXPECT_EQ(list_.cell(59, 1), "地址");
    list_.select(40);
    const auto top = SendMessageW(list_.window(), LVM_GETTOPINDEX, 0, 0);
    EXPECT_GT(top, 0);
    fill(58);
    EXPECT_EQ(list_.selected(), 40);
    EXPECT_EQ(SendMessageW(list_.window(), LVM_GETTOPINDEX, 0, 0), top);
    fill(10);
    EXPECT_EQ(list_.selected(), -1) << "the row has gone";
    list_.select(3);
    list_.select(4);
    EXPECT_EQ(list_.allSelected(), std::vector<int>{4});
    list_.select(-1);
    EXPECT_EQ(list_.selected(), -1);
}

TEST_F(ListViewTest, MarksRows) {
    setUp(ListView::Marks::CheckBoxes);
    fill(3);
    EXPECT_FALSE(list_.checked(1));
    list_.setChecked(1, true);
    EXPECT_TRUE(list_.checked(1));
    EXPECT_FALSE(list_.checked(0));
    list_.setChecked(1, false);
    EXPECT_FALSE(list_.checked(1));
}

}  // namespace
}  // namespace korvane
