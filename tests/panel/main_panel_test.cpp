#include "panel/main_panel.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "resources/ids.h"
#include "support/robot.h"
#include "support/scratch_directory.h"
#include "support/scripted_link.h"
#include "support/test_host.h"
#include "ui/modal.h"

namespace korvane {
namespace {

using testing::_;
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

// A host's window may be a dialog; then the dialog manager might bring it the panel's commands.
int commandsOfHost = 0;

INT_PTR CALLBACK noteCommands(HWND, UINT message, WPARAM, LPARAM) {
    if (message == WM_COMMAND) ++commandsOfHost;
    return FALSE;
}

HWND makeDialogHost() {
    alignas(DWORD) const struct {
        DLGTEMPLATE dialog;
        WORD noMenu, usualClass, noTitle;
    } data{{WS_OVERLAPPEDWINDOW, 0, 0, 0, 0, 0, 0}, 0, 0, 0};
    HWND host = CreateDialogIndirectParamW(nullptr, &data.dialog, nullptr, &noteCommands, 0);
    CreateWindowW(L"Button", L"OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON, 0, 0, 9,
                  9, host, reinterpret_cast<HMENU>(IDOK), nullptr, nullptr);
    return host;
}

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

    // All on this thread, which takes the key from its queue as a host does that looks at it first.
    static void press(HWND control, WORD key) {
        MSG message;
        HWND focus = GetFocus();
        PostMessageW(control, WM_KEYDOWN, key, 1);
        PeekMessageW(&message, control, WM_KEYDOWN, WM_KEYDOWN, PM_NOREMOVE);
        EXPECT_EQ(GetFocus(), focus) << "before the key was taken";
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }
    // Reached, and in view: whole, or if it is larger than that by its beginning.
    void expectReached(HWND control) const {
        EXPECT_EQ(GetFocus(), control);
        const Area view = clientArea(panel_.hwnd()), area = areaIn(control, panel_.hwnd());
        for (const int side : {0, 1}) {
            EXPECT_GT(area[side], 0);
            EXPECT_LT(std::min(area[side + 2], area[side] + view[side + 2] / 2), view[side + 2]);
        }
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
        r.click(panel_.hwnd(), IDC_SHOW_CONTROL_TABLES);
        r.settle();  // another page has a list of the same number
        const HWND list = r.waitControl(panel_.hwnd(), IDC_TABLES);
        EXPECT_THAT(r.listBoxItems(list),
                    ElementsAre("网络信息表", "持续业务复用配置表", "持续业务配置表",
                                "短时间业务复用配置表", "短时间业务配置表", "加密授权描述表"));
        EXPECT_EQ(r.send(list, LB_GETCURSEL), 0);
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

TEST_F(MainPanelTest, KeysWalkThePanelAndScrollToWhatTheyReachWhateverTheHostIs) {
    const HWND hosts[] = {host_.window(), makeDialogHost()};
    const Robot robot(GetCurrentThreadId());
    for (const HWND host : hosts) {
        panel_.destroy();
        ASSERT_TRUE(panel_.create(host));
        SetWindowPos(host, nullptr, 0, 0, 400, 300, SWP_SHOWWINDOW);
        const auto reach = [&](WORD key, int id) {
            press(GetFocus(), key);
            expectReached(robot.findControl(panel_.hwnd(), id));
        };
        const HWND first = button(IDC_SAVE_TO_DEVICE), its = GetDlgItem(host, IDOK);
        SetFocus(first);
        for (const int id : {26, 27, 28, 31, 32, 33, 21}) reach(VK_TAB, id);
        reach(VK_RIGHT, IDC_SHOW_CONTROL_TABLES);
        reach(VK_TAB, IDC_TABLES);
        press(GetFocus(), VK_RETURN);
        for (const int id : {1034, 1040, 1001, 1004, 1006, 1009, 1011, 1015, 1068, 1075})
            reach(VK_TAB, id);
        press(GetFocus(), VK_TAB);
        EXPECT_EQ(GetFocus(), its ? its : first);
        SendMessageW(button(IDC_SHOW_MONITOR), BM_CLICK, 0, 0);
        SetFocus(robot.findControl(panel_.hwnd(), IDC_STRUCTURE_TREE));
        reach(VK_TAB, IDC_REFRESH_TOGGLE);
        SetFocus(first);  // as a host that knows dialogs does, with a key of its own control
        if (its) {
            press(its, VK_TAB);
            expectReached(first);
        }
        SetFocus(button(IDC_IMPORT));
        reach(VK_TAB, IDC_ABOUT);
        RobotThread answers([](Robot& r) { r.answer(r.waitDialog("关于 Korvane管理软件"), IDOK); });
        press(GetFocus(), VK_RETURN);
        answers.finish();
        EXPECT_EQ(GetFocus(), button(IDC_ABOUT));
    }
    DestroyWindow(hosts[1]);
    EXPECT_EQ(commandsOfHost, 0);
}

TEST_F(MainPanelTest, KeysBelongToAMenuOrAMoveOfTheHostWhileThatLasts) {
    const HWND first = button(IDC_SAVE_TO_DEVICE);
    SetFocus(first);
    const auto lasts = [thread = GetCurrentThreadId()] {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(thread, &info);
        return (info.flags & (GUI_INMENUMODE | GUI_INMOVESIZE)) != 0;
    };
    for (const bool moves : {false, true}) {
        RobotThread presses([&](Robot& r) {
            r.waitFor("the mode to begin", lasts);
            for (const WORD key : {VK_DOWN, VK_RETURN}) r.key(first, key);
            r.waitFor("nothing else to show",
                      [&] { return !lasts() && r.topWindows().size() == 1; });
        });
        if (moves) SendMessageW(host_.window(), WM_SYSCOMMAND, SC_MOVE, 0);
        HMENU menu = GetSystemMenu(host_.window(), FALSE);
        if (!moves) TrackPopupMenu(menu, TPM_RETURNCMD, 0, 0, 0, host_.window(), nullptr);
        presses.finish();
        EXPECT_EQ(GetFocus(), first);
    }
}

TEST_F(MainPanelTest, TheWheelScrollsInTheSystemsSteps) {
    UINT usual = 0;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &usual, 0);
    host_.resize(400, 300);
    const HWND panel = panel_.hwnd();
    SendMessageW(panel, WM_HSCROLL, SB_LINEDOWN, 0);
    const int line = GetScrollPos(panel, SB_HORZ);
    const struct {
        UINT lines, message, keys;
        int delta, times, x, y;
    } steps[] = {
        {2, WM_MOUSEWHEEL, 0, -1, 120, line, 2 * line},
        {4, WM_MOUSEWHEEL, 0, 30, 1, line, line},
        {0, WM_MOUSEWHEEL, 0, -120, 1, line, line},
        {1, WM_MOUSEWHEEL, MK_SHIFT, -240, 1, 3 * line, line},
        {1, WM_MOUSEHWHEEL, 0, -120, 1, 2 * line, line},
        {WHEEL_PAGESCROLL, WM_MOUSEWHEEL, 0, -120, 1, 2 * line, line + clientArea(panel)[3]},
    };
    for (const auto& [lines, message, keys, delta, times, x, y] : steps) {
        SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, lines, nullptr, 0);
        // Not every system hands both messages up.
        const HWND target = message == WM_MOUSEWHEEL ? button(IDC_REBOOT) : panel;
        for (int i = 0; i < times; ++i) SendMessageW(target, message, MAKEWPARAM(keys, delta), 0);
        EXPECT_THAT(areaIn(body(), panel), ElementsAre(-x, -y, _, _)) << lines << ' ' << delta;
    }
    SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, usual, nullptr, 0);
    host_.resize(1250, 950);
    EXPECT_FALSE(WheelScrolling().turn(panel, WM_MOUSEWHEEL, MAKEWPARAM(0, 120)));
}

// Edits need not tell anybody: the line follows the model, and its buttons what there is to decide.
TEST_F(MainPanelTest, ALineSaysWhetherTheDeviceHasWhatIsShown) {
    const test::ScratchDirectory directory;
    ConfigModel& model = manager_.model();
    model.setCacheDirectory(directory.path());
    model.setDeviceKey("127.0.0.9");
    const auto number = [&](std::uint16_t networkNumber) {
        NetworkInfo network = model.tables().network;
        network.networkNumber = networkNumber;
        model.setNetworkInfo(network);
    };
    number(7);
    ASSERT_EQ(model.saveConfigFile(model.deviceFile(u8".unsaved.dat")), 0);
    number(0);
    manager_.work().begin(true);
    drive([&](Robot& r) {
        const auto waitLine = [&](const std::string& text, bool buttons) {
            r.waitFor("the line", [&] { return r.text(button(IDC_WORK_NOTICE)) == text; });
            for (const int id : {IDC_RECOVER_WORK, IDC_DISCARD_WORK})
                EXPECT_EQ(IsWindowVisible(button(id)) != FALSE, buttons) << text;
        };
        waitLine("有上次未设置到设备的修改", true);
        r.click(body(), IDC_RECOVER_WORK);
        waitLine("有修改尚未设置到设备", false);
        EXPECT_EQ(model.tables().network.networkNumber, 7);
        host_.run([&] { number(0); });
        waitLine("", false);
    });
}

}  // namespace
}  // namespace korvane
