#include "host/host_window.h"

#include <bit>
#include <commctrl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <utility>

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
    const FARPROC calls = GetProcAddress(GetModuleHandleW(L"stub_plugin.dll"), "stubCalls");
    return std::exchange(*std::bit_cast<StubCalls*>(calls), {});
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

class HostWindowTest : public testing::Test {
  protected:
    Plugin plugin_{stubPath()};
};

// A person at the host window.
struct User {
    HWND control(int id) const { return robot.waitControl(host, id); }
    void enter(const char* address) const {
        robot.setText(control(IDC_ADDRESS), address);
        robot.key(control(IDC_ADDRESS), VK_RETURN);
    }
    void waitStatus(const std::string& status) const {
        robot.waitFor(status, [&] {
            wchar_t text[256] = {};
            robot.send(control(IDC_STATUS_LINE), SB_GETTEXTW, 0, text);
            return toUtf8(text) == status;
        });
    }
    HWND focus() const {
        robot.settle();
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(GetWindowThreadProcessId(host, nullptr), &info);
        return info.hwndFocus;
    }
    void expectKeyMoves(HWND from, WORD key, HWND to) const {
        EXPECT_EQ(focus(), from);
        robot.key(from, key);
        EXPECT_EQ(focus(), to);
    }

    const Robot& robot;
    HWND host;
};

void expectRefusals(const User& user) {
    HWND field = user.control(IDC_ADDRESS);
    user.enter("1.2.3");
    user.robot.answer(user.robot.waitBox("设备地址不正确：请输入 IPv4 地址，例如 192.168.1.20"),
                      IDOK);
    EXPECT_EQ(user.robot.text(field), "1.2.3");
    EXPECT_EQ(user.focus(), field);
    user.enter("  ");
    user.robot.answer(user.robot.waitBox("请输入设备地址"), IDOK);
    EXPECT_EQ(takeCalls().starts, 0);
}

void connect(const User& user) {
    HWND field = user.control(IDC_ADDRESS), button = user.control(IDC_CONNECT);
    user.expectKeyMoves(field, VK_TAB, button);
    user.enter(" 10.0.0.1 ");
    user.waitStatus(startResultText(0, "10.0.0.1"));
    EXPECT_EQ(user.robot.caption(user.host), "Korvane 宿主程序 - 10.0.0.1");
    EXPECT_FALSE(IsWindowEnabled(field) || IsWindowEnabled(button));
    const StubCalls calls = takeCalls();
    EXPECT_STREQ(calls.address, "10.0.0.1");
    HWND panel = FindWindowExW(calls.parent, nullptr, L"Static", nullptr);
    HWND inPanel = FindWindowExW(panel, nullptr, L"Button", nullptr);
    HWND disconnect = user.control(IDC_DISCONNECT);
    user.expectKeyMoves(disconnect, VK_F6, inPanel);
    user.expectKeyMoves(inPanel, VK_F6, disconnect);
    user.expectKeyMoves(disconnect, VK_TAB, inPanel);
}

void disconnect(const User& user) {
    user.robot.click(user.host, IDC_DISCONNECT);
    user.waitStatus("已断开");
    EXPECT_EQ(user.robot.caption(user.host), "Korvane 宿主程序");
    EXPECT_EQ(user.focus(), user.control(IDC_ADDRESS));
    EXPECT_EQ(takeCalls().stops, 1);
}

TEST_F(HostWindowTest, ConnectsToWhatIsAnAddressByKeysAndDisconnectsByItsButton) {
    HostWindow window(plugin_);
    RobotThread robot([host = window.hwnd()](Robot& r) {
        const User user{r, host};
        expectRefusals(user);
        connect(user);
        disconnect(user);
        r.close(host);
    });
    window.run();
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

}  // namespace
}  // namespace korvane::host
