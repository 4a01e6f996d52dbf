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
    std::wstring path(1024, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return std::filesystem::path(path).parent_path() / "stub_plugin.dll";
}

// The stub stays loaded for as long as the test's plug-in object lives.
StubCalls takeCalls() {
    const FARPROC function = GetProcAddress(GetModuleHandleW(L"stub_plugin.dll"), "stubCalls");
    StubCalls calls{};
    std::bit_cast<void(__cdecl*)(StubCalls*)>(function)(&calls);
    return calls;
}

std::string failureOf(const std::filesystem::path& library) {
    try {
        const Plugin plugin(library);
    } catch (const PluginError& error) {
        return error.what();
    }
    return "loaded";
}

TEST(Plugin, SaysWhyALibraryCannotBeUsed) {
    const auto missing = failureOf(stubPath().parent_path() / "none.dll");
    EXPECT_NE(missing.find("找不到插件 Korvane.dll"), std::string::npos) << missing;
    const auto foreign = failureOf("user32.dll");
    EXPECT_NE(foreign.find("缺少函数 cmmbStart"), std::string::npos) << foreign;
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

    static std::string status(Robot& robot, HWND host) {
        wchar_t text[256] = {};
        robot.send(robot.waitControl(host, IDC_STATUS_LINE), SB_GETTEXTW, 0, text);
        return toUtf8(text);
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
        EXPECT_EQ(robot.text(robot.waitControl(host, IDC_ADDRESS)), "1.2.3");
        EXPECT_EQ(focus(robot, host), robot.findControl(host, IDC_ADDRESS));
        enter(robot, host, "  ");
        robot.answer(robot.waitBox("请输入设备地址"), IDOK);
    });
    EXPECT_EQ(takeCalls().starts, 0);
}

TEST_F(HostWindowTest, ConnectsByEnterAndDisconnectsByItsButton) {
    drive([](Robot& robot, HWND host) {
        enter(robot, host, " 10.0.0.1 ");
        robot.waitFor("status",
                      [&] { return status(robot, host) == startResultText(0, "10.0.0.1"); });
        EXPECT_EQ(robot.caption(host), "Korvane 宿主程序 - 10.0.0.1");
        EXPECT_FALSE(IsWindowEnabled(robot.findControl(host, IDC_ADDRESS)));
        EXPECT_FALSE(IsWindowEnabled(robot.findControl(host, IDC_CONNECT)));
        robot.click(host, IDC_DISCONNECT);
        robot.waitFor("status", [&] { return status(robot, host) == "已断开"; });
        EXPECT_EQ(robot.caption(host), "Korvane 宿主程序");
        EXPECT_EQ(focus(robot, host), robot.findControl(host, IDC_ADDRESS));
    });
    const StubCalls calls = takeCalls();
    EXPECT_EQ(calls.starts, 1);
    EXPECT_EQ(calls.stops, 1);
    EXPECT_STREQ(calls.address, "10.0.0.1");
}

TEST_F(HostWindowTest, StopsThePluginWhenClosedWhateverItsStartReturned) {
    for (const char* address : {"10.0.0.1", "10.0.0.101", "10.0.0.102"}) {
        drive([&](Robot& robot, HWND host) {
            enter(robot, host, address);
            robot.waitFor("a result", [&] {
                return status(robot, host).find("插件返回") != std::string::npos;
            });
        });
        EXPECT_EQ(takeCalls().stops, 1) << address;
    }
}

TEST_F(HostWindowTest, GivesThePanelAllThatBarAndStatusLineLeave) {
    drive([](Robot& robot, HWND host) {
        enter(robot, host, "10.0.0.1");
        robot.waitFor("a result",
                      [&] { return status(robot, host) == startResultText(0, "10.0.0.1"); });
        SetWindowPos(host, nullptr, 0, 0, 900, 700, SWP_NOMOVE | SWP_NOZORDER);
        RECT client{}, frame{}, bar{}, line{};
        GetClientRect(host, &client);
        MapWindowPoints(host, nullptr, reinterpret_cast<POINT*>(&client), 2);
        GetWindowRect(takeCalls().parent, &frame);
        GetWindowRect(GetParent(robot.findControl(host, IDC_ADDRESS)), &bar);
        GetWindowRect(robot.findControl(host, IDC_STATUS_LINE), &line);
        EXPECT_EQ(frame.left, client.left);
        EXPECT_EQ(frame.right, client.right);
        EXPECT_EQ(frame.top, bar.bottom);
        EXPECT_EQ(frame.bottom, line.top);
        EXPECT_EQ(line.bottom, client.bottom);
    });
}

TEST_F(HostWindowTest, KeysReachEveryControl) {
    drive([](Robot& robot, HWND host) {
        HWND field = robot.waitControl(host, IDC_ADDRESS);
        EXPECT_EQ(focus(robot, host), field);
        robot.key(field, VK_TAB);
        EXPECT_EQ(focus(robot, host), robot.findControl(host, IDC_CONNECT));
        enter(robot, host, "10.0.0.1");
        HWND disconnect = robot.findControl(host, IDC_DISCONNECT);
        robot.waitFor("the button", [&] { return IsWindowEnabled(disconnect); });
        EXPECT_EQ(focus(robot, host), disconnect);
        robot.key(disconnect, VK_F6);
        HWND first = focus(robot, host);
        EXPECT_EQ(robot.caption(first), "in the panel");
        robot.key(first, VK_F6);
        EXPECT_EQ(focus(robot, host), disconnect);
        robot.key(disconnect, VK_TAB);
        EXPECT_EQ(focus(robot, host), first);
    });
}

TEST_F(HostWindowTest, ConnectsAtOnceToAGivenAddress) {
    HostWindow window(plugin_);
    window.connectTo("10.0.0.7");
    const StubCalls calls = takeCalls();
    EXPECT_EQ(calls.starts, 1);
    EXPECT_STREQ(calls.address, "10.0.0.7");
    EXPECT_EQ(GetAncestor(calls.parent, GA_ROOT), window.hwnd());
}

}  // namespace
}  // namespace korvane::host
