#include "panel/main_panel.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

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

// The worker of a transfer sleeps a second before it sends anything; here, until the link's end.
class StuckLink : public test::ScriptedLink {
  public:
    void cancel() override { SetEvent(cancelled_); }
    void sleep(std::uint32_t) override { WaitForSingleObject(cancelled_, INFINITE); }

  private:
    HANDLE cancelled_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
};

// Left, top, right and bottom.
using Area = std::array<LONG, 4>;

Area areaIn(HWND window, HWND ancestor) {
    RECT area{};
    GetWindowRect(window, &area);
    MapWindowPoints(nullptr, ancestor, reinterpret_cast<POINT*>(&area), 2);
    return {area.left, area.top, area.right, area.bottom};
}

Area clientArea(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    return {0, 0, area.right, area.bottom};
}

class MainPanelTest : public testing::Test {
  protected:
    explicit MainPanelTest(test::TestHost::Kind kind = test::TestHost::Kind::Window)
        : host_(kind) {}
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

    void focus(HWND control) const {
        host_.run([control] { SetFocus(control); });
    }
    HWND focused() const {
        HWND window = nullptr;
        host_.run([&window] { window = GetFocus(); });
        return window;
    }
    // To the control that has the focus.
    void press(Robot& r, WORD key) const {
        r.key(focused(), key);
        r.settle();
    }

    // `parent` shows one page, and none of those shown before.
    static void expectNewPage(Robot& r, HWND parent, std::set<HWND>& shown) {
        r.settle();
        const auto pages = r.childDialogs(parent);
        ASSERT_EQ(pages.size(), 1u);
        EXPECT_TRUE(shown.insert(pages[0]).second);
    }

    test::TestHost host_;
    StuckLink link_;
    DeviceManager manager_{link_, "."};
    HWND window_ = nullptr;
    MainPanel panel_{manager_, window_};
};

TEST_F(MainPanelTest, IsThereAtOnceWithItsButtonsAndShowsOnePageAtATime) {
    EXPECT_TRUE(IsWindowVisible(panel_.hwnd()));
    EXPECT_FALSE(panel_.create(host_.window())) << "there already is one";
    const std::pair<int, const char*> buttons[] = {
        {21, "输入业务配置"}, {23, "控制信息表配置"}, {29, "监控"},     {30, "系统配置"},
        {25, "设置"},         {26, "刷新"},           {27, "重启设备"}, {28, "恢复默认"},
        {31, "导出"},         {32, "导入"},           {33, "关于"},
    };
    drive([&](Robot& r) {
        for (const auto& [id, text] : buttons) EXPECT_EQ(r.text(button(id)), text);
        EXPECT_TRUE(r.isChecked(button(21)));
        std::set<HWND> shown;
        for (const int id : {21, 23, 29, 30}) {
            r.click(panel_.hwnd(), id);
            expectNewPage(r, body(), shown);
            for (const int other : {21, 23, 29, 30})
                EXPECT_EQ(r.isChecked(button(other)), other == id);
        }
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
        std::set<HWND> shown;
        for (int table = 0; table < 6; ++table) {
            r.selectListBox(list, table);
            expectNewPage(r, GetParent(list), shown);
        }
    });
}

TEST_F(MainPanelTest, FillsTheHostOrScrollsAndLeavesAPanelThatTheHostPlacesAlone) {
    for (const SIZE size : {SIZE{1250, 950}, SIZE{1000, 700}}) {
        host_.resize(size.cx, size.cy);
        EXPECT_EQ(areaIn(panel_.hwnd(), host_.window()), clientArea(host_.window()));
        const auto [left, top, right, bottom] = areaIn(button(IDC_PAGE_FRAME), body());
        EXPECT_EQ(areaIn(button(IDC_ABOUT), body())[2], right);
        HWND page = nullptr;
        while ((page = FindWindowExW(body(), page, L"#32770", nullptr)))
            EXPECT_THAT(areaIn(page, body()),
                        ElementsAre(left + 5, top + 10, right - 5, bottom - 5));
    }
    host_.resize(400, 300);
    EXPECT_GT(clientArea(body())[2], clientArea(panel_.hwnd())[2]);
    for (const UINT bar : {WM_HSCROLL, WM_VSCROLL}) SendMessageW(panel_.hwnd(), bar, SB_BOTTOM, 0);
    const Area room = clientArea(panel_.hwnd()), scrolled = areaIn(body(), panel_.hwnd());
    EXPECT_THAT(scrolled, ElementsAre(testing::Lt(0), testing::Lt(0), room[2], room[3]));
    host_.resize(1250, 950);
    EXPECT_EQ(areaIn(body(), panel_.hwnd()), clientArea(panel_.hwnd()));
    SetWindowPos(panel_.hwnd(), nullptr, 30, 40, 800, 600, SWP_NOZORDER);
    host_.resize(1000, 700);
    EXPECT_THAT(areaIn(panel_.hwnd(), host_.window()), ElementsAre(30, 40, 830, 640));
}

TEST_F(MainPanelTest, ScrollsByTheWheelInTheSystemsSteps) {
    constexpr UINT aPage = WHEEL_PAGESCROLL;
    UINT usual = 0;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &usual, 0);
    host_.resize(400, 300);
    const HWND panel = panel_.hwnd();
    SendMessageW(panel, WM_VSCROLL, SB_LINEDOWN, 0);
    const int line = GetScrollPos(panel, SB_VERT);
    SendMessageW(panel, WM_VSCROLL, SB_LINEUP, 0);
    const struct {
        UINT lines, message, keys;
        int delta, times, x, y;
    } steps[] = {
        {2, WM_MOUSEWHEEL, 0, -120, 1, 0, 2 * line},
        {2, WM_MOUSEWHEEL, MK_CONTROL, -1, 120, 0, 4 * line},
        {4, WM_MOUSEWHEEL, 0, 30, 3, 0, line},
        {0, WM_MOUSEWHEEL, 0, -120, 9, 0, line},
        {3, WM_MOUSEWHEEL, 0, 240, 1, 0, 0},
        {aPage, WM_MOUSEWHEEL, 0, -120, 1, 0, clientArea(panel)[3]},
        {99, WM_MOUSEWHEEL, 0, 120, 1, 0, 0},
        {1, WM_MOUSEWHEEL, MK_SHIFT, -360, 1, 3 * line, 0},
        {1, WM_MOUSEHWHEEL, 0, -120, 1, 2 * line, 0},
        {1, WM_MOUSEHWHEEL, 0, 40, 3, 3 * line, 0},
    };
    for (const auto& [lines, message, keys, delta, times, x, y] : steps) {
        SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, lines, nullptr, 0);
        const auto turn = MAKEWPARAM(keys, delta);
        // Not every system hands both messages up.
        const HWND target = message == WM_MOUSEWHEEL ? button(IDC_REBOOT) : panel;
        for (int i = 0; i < times; ++i) SendMessageW(target, message, turn, 0);
        EXPECT_EQ(-areaIn(body(), panel)[0], x) << message << ' ' << delta;
        EXPECT_EQ(-areaIn(body(), panel)[1], y) << message << ' ' << delta;
    }
    SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, usual, nullptr, 0);
    host_.resize(1250, 950);
    EXPECT_FALSE(WheelScrolling().turn(panel, WM_MOUSEWHEEL, MAKEWPARAM(0, 120)));
}

TEST_F(MainPanelTest, AboutTellsTheVersionsAndACommandAsksAndReports) {
    ParamBlock264 params{};
    std::memcpy(params.softwareVersion.data(), "V2.1", 5);
    std::memcpy(params.hardwareVersion.data(), "H7", 3);
    manager_.model().set264Block(params);
    link_.answers(test::frameOf(4001, 0));
    drive([this](Robot& r) {
        r.click(panel_.hwnd(), IDC_ABOUT);
        const HWND about = r.waitDialog("关于 Korvane管理软件");
        for (const wchar_t* text : {L"网管版本: 1.46", L"设备版本: 软件V2.1,硬件H7", L"确定"})
            EXPECT_TRUE(FindWindowExW(about, nullptr, nullptr, text)) << text;
        r.click(about, IDOK);
        r.waitGone(about);
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
        {IDC_EXPORT, "另存为"},
        {IDC_IMPORT, "打开"},
        {IDC_LOAD_FROM_DEVICE, "Korvane管理软件"},
    };
    drive([&](Robot& r) {
        for (const auto& [id, caption] : cases) {
            EXPECT_TRUE(link_.sent.empty()) << "no command has gone on";
            const HWND old = panel_.hwnd();
            r.click(old, id);
            if (id == IDC_LOAD_FROM_DEVICE)
                r.answer(r.waitBox("确认要重新从设备获取配置吗?"), IDYES);
            const HWND shown = r.waitDialog(caption);
            EXPECT_EQ(GetWindow(shown, GW_OWNER), host_.window());
            EXPECT_FALSE(IsWindowEnabled(host_.window()));
            host_.run([&] {
                EXPECT_EQ(ModalScope::depth(), 1);
                if (id == IDC_LOAD_FROM_DEVICE) manager_.client().Stop();
                panel_.destroy();
                EXPECT_FALSE(IsWindow(old));
                EXPECT_EQ(window_, nullptr);
                EXPECT_TRUE(panel_.create(host_.window()));
            });
            r.waitGone(shown);
            waitIdle(r, host_);
            EXPECT_TRUE(IsWindowEnabled(host_.window()));
            EXPECT_TRUE(IsWindowVisible(panel_.hwnd()));
            EXPECT_THAT(r.topWindows(), ElementsAre(host_.window())) << "no message follows";
        }
    });
}

TEST_F(MainPanelTest, OutlivesAHostThatTakesItsWindowAwayEvenWhileItAsks) {
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
    other.destroy();
    EXPECT_EQ(window_, nullptr);
    panel_.destroy();
    const test::TestHost last;
    EXPECT_TRUE(panel_.create(last.window()));
    EXPECT_EQ(GetParent(panel_.hwnd()), last.window());
    panel_.destroy();
    last.resize(500, 400);  // whose messages nobody of ours listens to any more
}

// The panel in hosts whose message loop knows no dialogs.
class PanelKeysTest : public MainPanelTest,
                      public testing::WithParamInterface<test::TestHost::Kind> {
  protected:
    PanelKeysTest() : MainPanelTest(GetParam()) { SetForegroundWindow(host_.window()); }
};

INSTANTIATE_TEST_SUITE_P(Hosts, PanelKeysTest,
                         testing::Values(test::TestHost::Kind::Window,
                                         test::TestHost::Kind::Dialog));

TEST_P(PanelKeysTest, WalkThePanelAndLeaveItForTheHostsControls) {
    const HWND save = button(IDC_SAVE_TO_DEVICE);
    drive([&](Robot& r) {
        focus(save);
        const auto pressAndExpect = [&](WORD key, HWND next) {
            press(r, key);
            EXPECT_EQ(focused(), next);
        };
        for (const int id : {26, 27, 28, 31, 32, 33, 21}) pressAndExpect(VK_TAB, button(id));
        pressAndExpect(VK_RIGHT, button(IDC_SHOW_CONTROL_TABLES));
        pressAndExpect(VK_TAB, r.findControl(panel_.hwnd(), IDC_TABLES));
        pressAndExpect(VK_TAB, host_.button() ? host_.button() : save);
    });
}

TEST_P(PanelKeysTest, EnterPressesTheFocusedButtonAndNeverOneOfTheHost) {
    drive([this](Robot& r) {
        focus(button(IDC_IMPORT));
        for (const WORD key : {VK_TAB, VK_RETURN}) press(r, key);
        const HWND about = r.waitDialog("关于 Korvane管理软件");
        r.click(about, IDOK);
        r.waitGone(about);
        waitIdle(r, host_);
        EXPECT_EQ(focused(), button(IDC_ABOUT));
        r.click(panel_.hwnd(), IDC_SHOW_CONTROL_TABLES);
        focus(r.waitControl(panel_.hwnd(), IDC_TABLES));
        press(r, VK_RETURN);
        EXPECT_THAT(r.topWindows(), ElementsAre(host_.window()));
    });
    EXPECT_THAT(host_.commands(), ElementsAre());
}

// As the message loop of a host that knows dialogs would.
void pressInHost(HWND host, HWND control, WORD key) {
    MSG message;
    PostMessageW(control, WM_KEYDOWN, key, 1);
    PeekMessageW(&message, control, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE);
    IsDialogMessageW(host, &message);
}

TEST_P(PanelKeysTest, ScrollToTheControlThatTheyReach) {
    const HWND save = button(IDC_SAVE_TO_DEVICE), panel = panel_.hwnd();
    // Whole, or what is larger than the view by its beginning.
    const auto expectFocusInView = [&] {
        const Area view = clientArea(panel), area = areaIn(focused(), panel);
        for (const int side : {0, 1}) {
            EXPECT_GT(area[side], 0) << side;
            EXPECT_LT(std::min(area[side + 2], area[side] + view[side + 2] / 2), view[side + 2]);
        }
    };
    host_.resize(400, 300);
    drive([&](Robot& r) {
        r.click(panel, IDC_SHOW_MONITOR);
        r.settle();
        focus(save);
        std::set<HWND> seen;
        while (IsChild(panel, focused()) && seen.insert(focused()).second) {
            press(r, VK_TAB);
            if (IsChild(panel, focused())) expectFocusInView();
        }
        EXPECT_EQ(seen.size(), 11u);
        if (host_.button()) {
            EXPECT_EQ(focused(), host_.button());
            host_.run([&] { pressInHost(host_.window(), host_.button(), VK_TAB); });
            r.settle();
        }
        EXPECT_EQ(focused(), save);
        expectFocusInView();
    });
}

int chosenItem = 0;

void CALLBACK showMenu(HWND window, UINT, UINT_PTR, DWORD) {
    HMENU menu = CreatePopupMenu();
    for (const UINT item : {7, 8}) AppendMenuW(menu, MF_STRING, item, L"item");
    chosenItem = TrackPopupMenu(menu, TPM_RETURNCMD, 0, 0, 0, window, nullptr);
    DestroyMenu(menu);
}

TEST_P(PanelKeysTest, BelongToAMenuOrAMoveOfTheHostWhileThatLasts) {
    const struct {
        UINT message;
        WPARAM what;
        LPARAM how;
        DWORD mode;
    } cases[] = {{WM_TIMER, 1, reinterpret_cast<LPARAM>(&showMenu), GUI_INMENUMODE},
                 {WM_SYSCOMMAND, SC_MOVE, 0, GUI_INMOVESIZE}};
    drive([&](Robot& r) {
        for (const auto& [message, what, how, mode] : cases) {
            const auto lasts = [this, wanted = mode] {
                GUITHREADINFO info{};
                info.cbSize = sizeof info;
                GetGUIThreadInfo(GetWindowThreadProcessId(host_.window(), nullptr), &info);
                return (info.flags & wanted) != 0;
            };
            focus(button(IDC_REBOOT));
            PostMessageW(host_.window(), message, what, how);
            r.waitFor("the host's mode to begin", lasts);
            for (const WORD key : {VK_DOWN, VK_RETURN}) r.key(button(IDC_REBOOT), key);
            r.waitFor("the host's mode to end", [&] { return !lasts(); });
            EXPECT_EQ(focused(), button(IDC_REBOOT));
            EXPECT_THAT(r.topWindows(), ElementsAre(host_.window()));
        }
    });
    EXPECT_EQ(chosenItem, 7);
}

TEST_P(PanelKeysTest, AreActedUponWhenTheyAreTakenFromTheQueueAndNotWhenLookedAt) {
    const HWND save = button(IDC_SAVE_TO_DEVICE);
    const std::pair<UINT, int> cases[] = {{PM_NOREMOVE, IDC_SAVE_TO_DEVICE},
                                          {PM_REMOVE, IDC_LOAD_FROM_DEVICE}};
    SetFocus(save);
    PostMessageW(save, WM_KEYDOWN, VK_TAB, 1);
    for (const auto& [removal, next] : cases) {
        MSG message;
        ASSERT_TRUE(PeekMessageW(&message, save, WM_KEYDOWN, WM_KEYDOWN, removal));
        EXPECT_EQ(message.message, removal == PM_REMOVE ? WM_NULL : WM_KEYDOWN);
        EXPECT_EQ(GetFocus(), button(next));
    }
}

}  // namespace
}  // namespace korvane
