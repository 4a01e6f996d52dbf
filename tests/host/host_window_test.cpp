#include "host/host_window.h"

#include <bit>
#include <commctrl.h>
#include <filesystem>
#include <gtest/gtest.h>

#include "host/host_ids.h"
#include "host/plugin.h"
#include "host/robot.h"
#include "host/stub_plugin.h"
#include "text/text.h"

namespace korvane::host {
namespace {

std::filesystem::path stubPath() {
    wchar_t path[1024];
    GetModuleFileNameW(nullptr, path, 1024);
    return std::filesystem::path(path).parent_path() / "stub_plugin.dll";
}

// The stub stays loaded for as long as the test's plug-in object lives.
StubCalls takeCalls() {
    const FARPROC function = GetProcAddress(GetModuleHandleW(L"stub_plugin.dll"), "stubCalls");
    StubCalls calls{};
    std::bit_cast<void(__cdecl*)(StubCalls*)>(function)(&calls);
    return calls;
}

TEST(Plugin, SaysWhyALibraryCannotBeUsed) {
    const std::pair<const char*, const char*> cases[] = {{"none.dll", "找不到插件 Korvane.dll"},
                                                         {"user32.dll", "缺少函数 cmmbStart"}};
    for (const auto& [library, reason] : cases) {
        try {
            const Plugin plugin(library);
            ADD_FAILURE() << library;
        } catch (const PluginError& error) {
            EXPECT_NE(std::string(error.what()).find(reason), std::string::npos) << error.what();
        }
    }
}

TEST(StartResult, IsToldApart) {
    EXPECT_EQ(startResultText(0, "1.2.3.4"), "已连接设备 1.2.3.4（插件返回 0：启动成功）");
    EXPECT_EQ(startResultText(1, "1.2.3.4"),
              "面板已打开，但与设备 1.2.3.4 的通信未能启动（插件返回 1）");
    EXPECT_EQ(startResultText(-2, "1.2.3.4"), "面板窗口未能创建（插件返回 -2）");
    EXPECT_EQ(startResultText(7, "1.2.3.4"), "插件返回未知的结果 7");
}

class HostWindowTest : public testing::Test {
  protected:
    // Runs the host until the script, which is to close it, has done so.
    void drive(const std::function<void(Robot&, HWND)>& script) {
        HostWindow window(plugin_);
        RobotThread robot([&, host = window.hwnd()](Robot& r) {
            script(r, host);
            r.close(host);
            r.waitGone(host);
        });
        window.run();
        robot.finish();
    }

    static void enter(Robot& robot, HWND host, const char* address) {
        HWND field = robot.waitControl(host, IDC_ADDRESS);
        robot.setText(field, address);
        robot.key(field, VK_RETURN);
    }

    static void waitStatus(Robot& robot, HWND host, const std::string& status) {
        robot.waitFor(status, [&] {
            wchar_t text[256] = {};
            robot.send(robot.waitControl(host, IDC_STATUS_LINE), SB_GETTEXTW, 0, text);
            return toUtf8(text) == status;
        });
    }

    static HWND focus(Robot& robot, HWND host) {
        robot.settle();
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(GetWindowThreadProcessId(host, nullptr), &info);
        return info.hwndFocus;
    }

    Plugin plugin_{stubPath()};
};

TEST_F(HostWindowTest, RefusesWhatIsNoAddressAndKeepsItForCorrection) {
    drive([](Robot& robot, HWND host) {
        enter(robot, host, "1.2.3");
        robot.answer(robot.waitBox("设备地址不正确：请输入 IPv4 地址，例如 192.168.1.20"), IDOK);
        HWND field = robot.findControl(host, IDC_ADDRESS);
        EXPECT_EQ(robot.text(field), "1.2.3");
        EXPECT_EQ(focus(robot, host), field);
        enter(robot, host, "  ");
        robot.answer(robot.waitBox("请输入设备地址"), IDOK);
    });
    EXPECT_EQ(takeCalls().starts, 0);
}

TEST_F(HostWindowTest, ConnectsByEnterReachesAllByKeysAndDisconnectsByItsButton) {
    drive([](Robot& robot, HWND host) {
        HWND field = robot.waitControl(host, IDC_ADDRESS);
        HWND connect = robot.findControl(host, IDC_CONNECT);
        HWND disconnect = robot.findControl(host, IDC_DISCONNECT);
        const auto expectKeyMoves = [&](HWND from, WORD key, HWND to) {
            EXPECT_EQ(focus(robot, host), from);
            robot.key(from, key);
            EXPECT_EQ(focus(robot, host), to);
        };
        expectKeyMoves(field, VK_TAB, connect);
        enter(robot, host, " 10.0.0.1 ");
        waitStatus(robot, host, startResultText(0, "10.0.0.1"));
        EXPECT_EQ(robot.caption(host), "Korvane 宿主程序 - 10.0.0.1");
        EXPECT_FALSE(IsWindowEnabled(field) || IsWindowEnabled(connect));
        const StubCalls calls = takeCalls();
        EXPECT_STREQ(calls.address, "10.0.0.1");
        HWND panel = FindWindowExW(calls.parent, nullptr, L"Static", nullptr);
        HWND inPanel = FindWindowExW(panel, nullptr, L"Button", nullptr);
        expectKeyMoves(disconnect, VK_F6, inPanel);
        expectKeyMoves(inPanel, VK_F6, disconnect);
        expectKeyMoves(disconnect, VK_TAB, inPanel);
        robot.click(host, IDC_DISCONNECT);
        waitStatus(robot, host, "已断开");
        EXPECT_EQ(robot.caption(host), "Korvane 宿主程序");
        EXPECT_EQ(focus(robot, host), field);
    });
    EXPECT_EQ(takeCalls().stops, 1);
}

TEST_F(HostWindowTest, StopsThePluginWhenClosedWhateverItsStartReturned) {
    for (const char* address : {"10.0.0.1", "10.0.0.101", "10.0.0.102"}) {
        HostWindow window(plugin_);
        window.connectTo(address);
        PostMessageW(window.hwnd(), WM_CLOSE, 0, 0);
        window.run();
        const StubCalls calls = takeCalls();
        EXPECT_EQ(calls.starts, 1);
        EXPECT_EQ(calls.stops, 1);
        EXPECT_STREQ(calls.address, address);
    }
}

TEST_F(HostWindowTest, GivesThePanelAllThatBarAndStatusLineLeave) {
    HostWindow window(plugin_);
    window.connectTo("10.0.0.7");
    SetWindowPos(window.hwnd(), nullptr, 0, 0, 900, 700, SWP_NOMOVE | SWP_NOZORDER);
    const Robot robot(GetCurrentThreadId());
    RECT client{}, frame{}, bar{}, line{};
    GetClientRect(window.hwnd(), &client);
    MapWindowPoints(window.hwnd(), nullptr, reinterpret_cast<POINT*>(&client), 2);
    GetWindowRect(takeCalls().parent, &frame);
    GetWindowRect(GetParent(robot.findControl(window.hwnd(), IDC_ADDRESS)), &bar);
    GetWindowRect(robot.findControl(window.hwnd(), IDC_STATUS_LINE), &line);
    const RECT expected{client.left, bar.bottom, client.right, line.top};
    EXPECT_TRUE(EqualRect(&frame, &expected));
    EXPECT_EQ(line.bottom, client.bottom);
}

}  // namespace
}  // namespace korvane::host
