#include <gtest/gtest.h>

#include "device/device_manager.h"
#include "panel/main_panel.h"
#include "resources/ids.h"
#include "support/configurations.h"
#include "support/robot.h"
#include "support/scripted_link.h"
#include "support/test_host.h"
#include "ui/controls.h"

namespace korvane {
namespace {

// The editors in the panel, as an operator meets them.
class NetworkDialogs : public testing::Test {
  protected:
    void SetUp() override {
        test::editTables(manager_.model(), [](ConfigTables& tables) {
            tables.network.countryCode = {'C', 'H', 'N'};
            tables.network.name = "\xD6\xD0\xD1\xEB";  // 中央
            tables.network.level = 2;
            tables.network.ownFrequency = {21, 1, {}, 47412345};
            tables.network.otherFrequencies.append({22, 1, {}, 48200000});
            tables.network.neighbours.append({3, 30, 1, 0, 70000, 52200000});
            tables.continuousServices.entries.append({100, 21, 0});
            tables.shortTimeServices.entries.append({200, 22, 0});
        });
        ASSERT_TRUE(panel_.create(host_.window()));
    }
    void TearDown() override { panel_.destroy(); }

    HWND at(const Robot& r, int id) const { return r.waitControl(panel_.hwnd(), id); }

    void openTable(const Robot& r, int table) const {
        r.click(panel_.hwnd(), IDC_SHOW_CONTROL_TABLES);
        r.settle();  // the page that shows before it has a list of the same number
        r.selectListBox(at(r, IDC_TABLES), table);
    }
    // "number class text" of each control that Tab reaches, in that order; then enters a number one
    // higher into each edit, and the first item into each drop-down list.
    static std::string walk(const Robot& r, HWND dialog, bool enter) {
        std::string all;
        for (const HWND one : test::tabOrder(dialog)) {
            const std::string kind = r.className(one), text = r.text(one);
            all += std::to_string(GetDlgCtrlID(one)) + ' ' + kind + ' ' + text + '\n';
            if (enter && kind == "Edit") r.setText(one, std::to_string(std::stoul(text) + 1));
            if (enter && kind == "ComboBox") r.selectCombo(one, 0);
        }
        return all;
    }
    test::TestHost host_;
    test::ScriptedLink link_;
    DeviceManager manager_{link_, "."};
    HWND window_ = nullptr;
    MainPanel panel_{manager_, window_};
};

TEST_F(NetworkDialogs, OpenByMouseMenuAndKeyAndCarryTheirValuesBothWays) {
    const char *const pair = "业务频点关联配置", *const buttons = "1 Button 确定\n2 Button 取消\n";
    const struct {
        int table, list;
        const char *caption, *before, *after;  // the first record, shown and as entered
    } cases[] = {
        {0, 1068, "频点信息", "1009 Edit 22\n1011 Edit 482\n1015 ComboBox 2M\n",
         "1009 Edit 23\n1011 Edit 483\n1015 ComboBox 8M\n"},
        {0, 1075, "网络信息",
         "1001 ComboBox 三级\n1045 Edit 70000\n1009 Edit 30\n1054 Edit 522\n1015 ComboBox 2M\n",
         "1001 ComboBox 一级\n1045 Edit 70001\n1009 Edit 31\n1054 Edit 523\n1015 ComboBox 8M\n"},
        {2, 1106, pair, "1096 Edit 100\n1009 Edit 21\n", "1096 Edit 101\n1009 Edit 22\n"},
        {4, 1106, pair, "1096 Edit 200\n1009 Edit 22\n", "1096 Edit 201\n1009 Edit 23\n"},
    };
    RobotThread robot([&](Robot& r) {
        for (const auto& [table, id, caption, before, after] : cases) {
            openTable(r, table);
            const HWND list = at(r, id);
            r.doubleClickRow(list, 0);
            HWND dialog = r.waitDialog(caption);
            EXPECT_EQ(walk(r, dialog, true), std::string(before) + buttons);
            const HWND name = GetDlgItem(dialog, IDC_NETWORK_NAME);
            EXPECT_EQ(name && !IsWindowVisible(name), id == IDC_NEIGHBOURS);
            test::end(r, dialog, IDOK);
            test::choose(r, list, -1, 1, "添加");
            test::end(r, r.waitDialog(caption), IDOK);
            test::choose(r, list, 0, 3, "修改");
            dialog = r.waitDialog(caption);
            EXPECT_EQ(walk(r, dialog, false), std::string(after) + buttons);
            test::end(r, dialog, IDCANCEL);
            host_.run([list] { SetFocus(list); });
            for (const WORD key : {VK_INSERT, VK_RETURN}) {
                r.key(list, key);
                test::end(r, r.waitDialog(caption), IDCANCEL);
            }
            r.key(list, VK_DELETE);
            r.answer(r.waitBox("请确认删除"), IDNO);
            test::choose(r, list, 1, 3, "删除");
            r.answer(r.waitBox("请确认删除"), IDYES);
            r.settle();
            EXPECT_EQ(r.listRows(list).size(), 1u);
        }
    });
}

TEST_F(NetworkDialogs, ThePagesShowTheirFieldsAndShareTheHeightBetweenTheirLists) {
    const std::tuple<int, int, const char*> pages[] = {
        {2, IDC_PAIRS, "1088 Edit 3\n1106 SysListView32 \n"},
        {4, IDC_PAIRS, "1088 Edit 5\n1106 SysListView32 \n"},
        {0, IDC_NETWORK_NAME,
         "1034 Edit 1\n1040 Edit CHN\n1001 ComboBox 二级\n1004 Edit 0\n1006 Edit 中央\n"
         "1009 Edit 21\n1011 Edit 474\n1015 ComboBox 2M\n"
         "1068 SysListView32 \n1075 SysListView32 \n"},
    };
    RobotThread robot([&](Robot& r) {
        for (const auto& [table, id, fields] : pages) {
            openTable(r, table);
            EXPECT_EQ(walk(r, GetParent(at(r, id)), false), fields);
        }
        EXPECT_TRUE(GetWindowLongW(at(r, IDC_NETWORK_TABLE_ID), GWL_STYLE) & ES_READONLY);
        const auto area = [&](int id) { return Control(at(r, id)).area(); };
        for (const int height : {500, 1000, 760}) {
            host_.resize(1200, height);
            const RECT upper = area(IDC_FREQUENCY_POINTS), title = area(IDC_NEIGHBOURS_TITLE),
                       lower = area(IDC_NEIGHBOURS);
            RECT room{};
            GetClientRect(GetParent(at(r, IDC_NEIGHBOURS)), &room);
            EXPECT_EQ(upper.bottom - upper.top, lower.bottom - lower.top);
            EXPECT_TRUE(upper.bottom <= title.top && title.bottom <= lower.top);
            EXPECT_TRUE(upper.right == room.right && lower.right == room.right);
            EXPECT_LE(room.bottom - lower.bottom, 1);
        }
    });
}

TEST_F(NetworkDialogs, ARefusedEntryBringsItsPageToTheFront) {
    RobotThread robot([this](Robot& r) {
        for (const auto& [id, text, message] :
             {std::tuple{IDC_COUNTRY_CODE, "CHNA", "国家码超过3个字符"},
              {IDC_NETWORK_NUMBER, "none", "请输入一个整数。"}}) {
            openTable(r, 0);
            const HWND field = at(r, id);
            r.setText(field, text);
            r.click(panel_.hwnd(), IDC_SHOW_INPUT_CHANNELS);
            r.click(panel_.hwnd(), IDC_SAVE_TO_DEVICE);
            const HWND question = r.waitBox("确认要将配置保存到设备?");
            EXPECT_FALSE(IsWindowVisible(field));
            r.answer(question, IDYES);
            const HWND box = r.waitBox(message);
            EXPECT_TRUE(IsWindowVisible(field));
            r.answer(box, IDOK);
            r.settle();
            host_.run([field] { EXPECT_EQ(GetFocus(), field); });
            EXPECT_EQ(r.send(field, EM_GETSEL), MAKELONG(0, 4)) << "all of it is selected";
            EXPECT_EQ(r.text(field), text);
        }
        EXPECT_TRUE(link_.sent.empty());
    });
}

// Once another number was taken, the first one is an entry like any other.
TEST_F(NetworkDialogs, WhatWasCommittedIsWhatEntriesAreHeldAgainst) {
    RobotThread robot([this](Robot& r) {
        openTable(r, 0);
        for (const auto& [text, stored] :
             {std::pair{"474", 47412345u}, {"475", 47500000u}, {"474", 47400000u}}) {
            r.setText(at(r, IDC_CENTRE_FREQUENCY), text);
            r.setText(at(r, IDC_NETWORK_NUMBER), "8");
            r.click(panel_.hwnd(), IDC_EXPORT);
            const HWND chooser = r.waitDialog("另存为");
            EXPECT_EQ(manager_.model().tables().network.ownFrequency.centreFrequency, stored);
            test::end(r, chooser, IDCANCEL);
        }
    });
}

}  // namespace
}  // namespace korvane
