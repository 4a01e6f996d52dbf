#include "ui/form_dialog.h"

#include <gtest/gtest.h>

#include "editors/ca_system_form.h"
#include "host/robot.h"
#include "resources/ids.h"
#include "ui/window_prompts.h"

namespace korvane {
namespace {

using host::Robot;
using host::RobotThread;

// The control that has the focus, and in an edit what of its text is selected.
std::pair<int, std::string> focused(const Robot& r, HWND dialog) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
    DWORD begin = 0, end = 0;
    r.send(info.hwndFocus, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), &end);
    return {GetDlgCtrlID(info.hwndFocus), r.text(info.hwndFocus).substr(begin, end - begin)};
}

// What the form cannot read, and what it can and will not take.
TEST(FormDialog, ARefusalIsSaidOverItAndGoesBackToItsField) {
    constexpr std::pair<const char*, const char*> cases[] = {
        {"12x", "请输入一个整数。"}, {"160", "数据单元类型必须在128~159之间"}};
    const auto press = [](HWND dialog, int control, WORD key) {
        PostMessageW(GetDlgItem(dialog, control), WM_KEYDOWN, key, 1);
    };
    RobotThread robot([&](Robot& r) {
        const HWND dialog = r.waitDialog("加密授权系统配置");
        EXPECT_EQ(focused(r, dialog), std::pair(IDC_CA_SYSTEM_ID, std::string("7")));
        for (const auto& [entry, message] : cases) {
            r.setText(GetDlgItem(dialog, IDC_ECM_UNIT_TYPE), entry);
            press(dialog, IDC_CA_SYSTEM_ID, VK_RETURN);
            const HWND box = r.waitBox(message);
            EXPECT_EQ(GetWindow(box, GW_OWNER), dialog);
            EXPECT_FALSE(IsWindowEnabled(dialog));
            r.answer(box, IDOK);
            r.settle();
            EXPECT_EQ(focused(r, dialog), std::pair(IDC_ECM_UNIT_TYPE, std::string(entry)));
            EXPECT_EQ(r.boxDefault(dialog), IDOK);
        }
        press(dialog, IDC_ECM_UNIT_TYPE, VK_ESCAPE);
    });
    const auto model = std::make_unique<ConfigModel>();
    WindowPrompts prompts;
    CaSystemForm form(ConfigChecks(*model, prompts), CaSystemEntry{7, 300, 130, 131, 2, 0});
    EXPECT_FALSE(WindowFormRunner(prompts).run(form));
}

}  // namespace
}  // namespace korvane
