#include "panel/main_panel.h"

#include <algorithm>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/robot.h"
#include "resources/ids.h"
#include "support/scripted_link.h"
#include "support/test_host.h"
#include "ui/modal.h"

namespace korvane {
namespace {

using host::Robot;
using host::RobotThread;
using testing::ElementsAre;

constexpr const char* rebootQuestion = "确认要重启设备吗?";

class MainPanelTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(manager_.client().Start("127.0.0.9"), 0);
        ASSERT_TRUE(panel_.create(host_.window()));
    }
    void TearDown() override { panel_.destroy(); }

    // Runs a script against the panel while this thread serves its messages.
    static void drive(std::function<void(Robot&)> script) {
        RobotThread(std::move(script)).finish();
    }

    // Until no command of the panel waits for an answer any more.
    static void waitIdle(Robot& r, const test::TestHost& host) {
        r.waitFor("the panel to be idle", [&host] {
            int depth = 0;
            host.run([&depth] { depth = ModalScope::depth(); });
            return depth == 0;
        });
    }
    HWND body() const { return GetWindow(panel_.hwnd(), GW_CHILD); }
    HWND button(int id) const { return GetDlgItem(body(), id); }
    static std::vector<HWND> childrenOf(HWND parent) {
        std::vector<HWND> children;
        for (HWND w = GetWindow(parent, GW_CHILD); w; w = GetWindow(w, GW_HWNDNEXT))
            children.push_back(w);
        return children;
    }
    RECT placeIn(HWND window, HWND ancestor) const {
        RECT area{};
        GetWindowRect(window, &area);
        MapWindowPoints(nullptr, ancestor, reinterpret_cast<POINT*>(&area), 2);
        return area;
    }

    test::TestHost host_;
    test::ScriptedLink link_;
    DeviceManager manager_{link_, "."};
    HWND window_ = nullptr;
    MainPanel panel_{manager_, window_};
};

TEST_F(MainPanelTest, IsThereAtOnceWithItsButtons) {
    EXPECT_TRUE(IsWindowVisible(panel_.hwnd()));
    EXPECT_FALSE(panel_.create(host_.window())) << "there already is one";
    drive([this](Robot& r) {
        const std::pair<int, const char*> buttons[] = {
            {21, "输入业务配置"}, {23, "控制信息表配置"}, {29, "监控"},     {30, "系统配置"},
            {25, "设置"},         {26, "刷新"},           {27, "重启设备"}, {28, "恢复默认"},
            {31, "导出"},         {32, "导入"},           {33, "关于"},
        };
        for (const auto& [id, text] : buttons) EXPECT_EQ(r.text(button(id)), text);
    });
}

TEST_F(MainPanelTest, ShowsOnePageAtATime) {
    drive([this](Robot& r) {
        std::vector<HWND> shown;
        for (const int id : {21, 23, 29, 30}) {
            r.click(panel_.hwnd(), id);
            shown.push_back(r.waitFor("the page of " + std::to_string(id), [&]() -> HWND {
                const auto pages = r.childDialogs(body());
                const bool other = pages.size() == 1 && std::ranges::count(shown, pages[0]) == 0;
                return other ? pages[0] : nullptr;
            }));
            EXPECT_TRUE(r.isChecked(button(id)));
        }
        for (const int id : {21, 23, 29}) EXPECT_FALSE(r.isChecked(button(id)));
    });
}

TEST_F(MainPanelTest, ListsTheControlTablesAndShowsTheSelectedOne) {
    drive([this](Robot& r) {
        r.click(panel_.hwnd(), IDC_SHOW_CONTROL_TABLES);
        const HWND list = r.waitControl(panel_.hwnd(), IDC_TABLES);
        EXPECT_THAT(r.listBoxItems(list),
                    ElementsAre("网络信息表", "持续业务复用配置表", "持续业务配置表",
                                "短时间业务复用配置表", "短时间业务配置表", "加密授权描述表"));
        EXPECT_EQ(r.send(list, LB_GETCURSEL), 0);
        std::vector<HWND> shown;
        for (int table = 0; table < 6; ++table) {
            r.selectListBox(list, table);
            const auto pages = r.childDialogs(GetParent(list));
            ASSERT_EQ(pages.size(), 1u) << table;
            EXPECT_THAT(shown, testing::Not(testing::Contains(pages[0]))) << table;
            shown.push_back(pages[0]);
        }
    });
}

TEST_F(MainPanelTest, FillsTheHostAndKeepsThePagesInTheirFrame) {
    const HWND frame = button(IDC_PAGE_FRAME);
    for (const SIZE size : {SIZE{1250, 950}, SIZE{1000, 700}}) {
        host_.resize(size.cx, size.cy);
        RECT client{}, expected = placeIn(frame, body());
        GetClientRect(host_.window(), &client);
        const RECT panel = placeIn(panel_.hwnd(), host_.window());
        EXPECT_TRUE(EqualRect(&panel, &client));
        EXPECT_EQ(placeIn(button(IDC_ABOUT), body()).right, expected.right);
        expected = {expected.left + 5, expected.top + 10, expected.right - 5, expected.bottom - 5};
        for (const HWND child : childrenOf(body())) {
            if (!isDialogWindow(child)) continue;
            const RECT page = placeIn(child, body());
            EXPECT_TRUE(EqualRect(&page, &expected));
        }
    }
}

TEST_F(MainPanelTest, KeepsItsLeastSizeInASmallHostAndScrolls) {
    host_.resize(400, 300);
    RECT client{}, all{};
    GetClientRect(panel_.hwnd(), &client);
    GetClientRect(body(), &all);
    EXPECT_GT(all.right, client.right);
    SendMessageW(panel_.hwnd(), WM_HSCROLL, SB_BOTTOM, 0);
    SendMessageW(panel_.hwnd(), WM_VSCROLL, SB_BOTTOM, 0);
    const RECT scrolled = placeIn(body(), panel_.hwnd());
    EXPECT_EQ(scrolled.right, client.right);
    EXPECT_EQ(scrolled.bottom, client.bottom);
    host_.resize(1250, 950);
    const RECT whole = placeIn(body(), panel_.hwnd());
    EXPECT_EQ(whole.left, 0);
    EXPECT_EQ(whole.top, 0);
}

TEST_F(MainPanelTest, LeavesAPanelThatTheHostPlacesAlone) {
    SetWindowPos(panel_.hwnd(), nullptr, 30, 40, 800, 600, SWP_NOZORDER);
    host_.resize(1250, 950);
    const RECT panel = placeIn(panel_.hwnd(), host_.window()), expected{30, 40, 830, 640};
    EXPECT_TRUE(EqualRect(&panel, &expected));
}

TEST_F(MainPanelTest, AboutTellsTheVersions) {
    ParamBlock264 params{};
    std::memcpy(params.softwareVersion.data(), "V2.1", 5);
    std::memcpy(params.hardwareVersion.data(), "H7", 3);
    manager_.model().set264Block(params);
    drive([this](Robot& r) {
        r.click(panel_.hwnd(), IDC_ABOUT);
        const HWND about = r.waitDialog("关于 Korvane管理软件");
        EXPECT_EQ(r.text(GetDlgItem(about, IDC_DEVICE_VERSION)), "设备版本: 软件V2.1,硬件H7");
        EXPECT_EQ(r.text(GetDlgItem(about, IDOK)), "确定");
        std::vector<std::string> texts;
        for (const HWND child : childrenOf(about)) texts.push_back(r.text(child));
        EXPECT_THAT(texts, testing::Contains("网管版本: 1.46"));
        r.click(about, IDOK);
        r.waitGone(about);
    });
}

TEST_F(MainPanelTest, ACommandAsksAndReports) {
    link_.answers(test::frameOf(4001, 0));
    drive([this](Robot& r) {
        r.click(panel_.hwnd(), IDC_REBOOT);
        const HWND question = r.waitBox(rebootQuestion);
        EXPECT_EQ(r.boxDefault(question), IDYES);
        r.answer(question, IDYES);
        r.answer(r.waitBox("设备已接收到命令，正在重启中，请稍候!"), IDOK);
    });
    EXPECT_EQ(link_.sent.size(), 1u);
}

// The host takes the panel down from within a message loop of ours, makes a new one, and only then
// does the command return that was waiting.
TEST_F(MainPanelTest, CanBeTakenDownWhileItShowsSomething) {
    const struct {
        int button;
        const char* caption;
    } cases[] = {
        {IDC_REBOOT, "Test host"},
        {IDC_ABOUT, "关于 Korvane管理软件"},
        {IDC_EXPORT, nullptr},
        {IDC_IMPORT, nullptr},
    };
    for (const auto& one : cases) {
        drive([&](Robot& r) {
            const HWND old = panel_.hwnd();
            r.click(old, one.button);
            const HWND shown =
                r.waitFor("a dialog of " + std::to_string(one.button), [&]() -> HWND {
                    for (HWND window : r.topWindows())
                        if (r.className(window) == "#32770" && IsWindowEnabled(window))
                            return window;
                    return nullptr;
                });
            if (one.caption) {
                EXPECT_EQ(r.caption(shown), one.caption);
            }
            host_.run([this, &old] {
                EXPECT_EQ(ModalScope::depth(), 1);
                panel_.destroy();
                EXPECT_FALSE(IsWindow(old));
                EXPECT_EQ(window_, nullptr);
                EXPECT_TRUE(panel_.create(host_.window()));
            });
            r.waitGone(shown);
            waitIdle(r, host_);
            EXPECT_TRUE(IsWindowEnabled(host_.window()));
            EXPECT_TRUE(IsWindowVisible(panel_.hwnd()));
            for (HWND window : r.topWindows()) EXPECT_EQ(window, host_.window());
        });
    }
    EXPECT_TRUE(link_.sent.empty());
}

TEST_F(MainPanelTest, CanBeTakenDownDuringATransfer) {
    // The worker sleeps a second before it sends anything; here it waits for the link's end.
    class StuckLink : public test::ScriptedLink {
      public:
        void cancel() override { SetEvent(cancelled_); }
        void sleep(std::uint32_t) override { WaitForSingleObject(cancelled_, INFINITE); }

      private:
        HANDLE cancelled_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    } link;
    DeviceManager manager(link, ".");
    HWND shown = nullptr;
    MainPanel panel(manager, shown);
    ASSERT_EQ(manager.client().Start("127.0.0.9"), 0);
    panel_.destroy();
    ASSERT_TRUE(panel.create(host_.window()));
    drive([&](Robot& r) {
        r.click(panel.hwnd(), IDC_LOAD_FROM_DEVICE);
        r.answer(r.waitBox("确认要重新从设备获取配置吗?"), IDYES);
        const HWND progress = r.waitDialog("Korvane管理软件");
        host_.run([&] {
            manager.client().Stop();
            panel.destroy();
        });
        r.waitGone(progress);
        waitIdle(r, host_);
        for (HWND window : r.topWindows())
            EXPECT_EQ(window, host_.window()) << "no message follows";
    });
    manager.Stop();
}

TEST_F(MainPanelTest, OutlivesAHostThatTakesItsWindowAway) {
    test::TestHost other;
    host_.destroy();
    EXPECT_EQ(window_, nullptr);
    panel_.destroy();
    EXPECT_TRUE(panel_.create(other.window()));
    EXPECT_EQ(GetParent(panel_.hwnd()), other.window());
    panel_.destroy();
    other.resize(500, 400);  // whose messages nobody of ours listens to any more
}

TEST_F(MainPanelTest, OutlivesAHostThatGoesWhileItAsks) {
    test::TestHost other;
    drive([&](Robot& r) {
        r.click(panel_.hwnd(), IDC_REBOOT);
        const HWND question = r.waitBox(rebootQuestion);
        other.run([this] { host_.destroy(); });
        r.waitGone(question);
        waitIdle(r, other);
    });
    EXPECT_TRUE(link_.sent.empty());
    EXPECT_TRUE(panel_.create(other.window()));
    panel_.destroy();
}

TEST_F(MainPanelTest, KeysWalkThePanelInAHostThatKnowsNoDialogs) {
    SetForegroundWindow(host_.window());
    drive([this](Robot& r) {
        host_.run([this] { SetFocus(button(IDC_SAVE_TO_DEVICE)); });
        const auto focus = [] {
            GUITHREADINFO info{};
            info.cbSize = sizeof info;
            GetGUIThreadInfo(0, &info);
            return info.hwndFocus;
        };
        const auto pressAndExpect = [&](WORD key, int id) {
            r.key(focus(), key);
            r.waitFor("the focus on " + std::to_string(id), [&] { return focus() == button(id); });
        };
        for (const int id : {26, 27, 28, 31, 32, 33, 21}) pressAndExpect(VK_TAB, id);
        pressAndExpect(VK_RIGHT, IDC_SHOW_CONTROL_TABLES);
        const HWND list = r.waitControl(panel_.hwnd(), IDC_TABLES);
        r.key(focus(), VK_TAB);
        r.waitFor("the focus in the page", [&] { return focus() == list; });
        pressAndExpect(VK_TAB, IDC_SAVE_TO_DEVICE);
        r.key(focus(), VK_RETURN);
        r.answer(r.waitBox("确认要将配置保存到设备?"), IDNO);
        r.waitFor("the focus back", [&] { return focus() == button(IDC_SAVE_TO_DEVICE); });
    });
}

}  // namespace
}  // namespace korvane
