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

constexpr const char* caption = "加密授权系统配置";

// The control that has the focus, and in an edit what of its text is selected.
std::pair<int, std::string> focused(const Robot& r, HWND dialog) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
    DWORD begin = 0, end = 0;
    r.send(info.hwndFocus, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), &end);
    return {GetDlgCtrlID(info.hwndFocus), r.text(info.hwndFocus).substr(begin, end - begin)};
}

class FormDialogTest : public testing::Test {
  protected:
    // Whether the form was accepted by the operator who does what `script` says.
    bool run(const std::function<void(Robot&, HWND)>& script) {
        RobotThread robot([&](Robot& r) { script(r, r.waitDialog(caption)); });
        return WindowFormRunner(prompts_).run(form_);
    }
    static void press(HWND dialog, int control, WORD key) {
        PostMessageW(GetDlgItem(dialog, control), WM_KEYDOWN, key, 1);
    }
    static void enter(Robot& r, HWND dialog, int control, const char* text) {
        r.setText(GetDlgItem(dialog, control), text);
    }

    const std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    WindowPrompts prompts_;
    CaSystemForm form_{ConfigChecks(*model_, prompts_), CaSystemEntry{7, 300, 130, 131, 2, 0}};
};

TEST_F(FormDialogTest, CarriesValuesBothWaysAndEntersByKey) {
    EXPECT_TRUE(run([](Robot& r, HWND dialog) {
        EXPECT_EQ(focused(r, dialog), std::pair(IDC_CA_SYSTEM_ID, std::string("7")));
        EXPECT_EQ(r.text(GetDlgItem(dialog, IDC_ECM_UNIT_TYPE)), "131");
        EXPECT_EQ(r.comboSelection(GetDlgItem(dialog, IDC_ECM_TRANSFER_MODE)), 2);
        enter(r, dialog, IDC_CA_SYSTEM_ID, "9");
        r.selectCombo(GetDlgItem(dialog, IDC_ECM_TRANSFER_MODE), 3);
        press(dialog, IDC_SERVICE_ID, VK_RETURN);
    }));
    EXPECT_EQ(form_.entry(), (CaSystemEntry{9, 300, 130, 131, 3, 0}));
}

// What the form cannot read, and what it can and will not take.
TEST_F(FormDialogTest, ARefusalIsSaidOverTheDialogAndGoesBackToItsField) {
    constexpr std::pair<const char*, const char*> cases[] = {
        {"12x", "请输入一个整数。"}, {"160", "数据单元类型必须在128~159之间"}};
    EXPECT_FALSE(run([&cases](Robot& r, HWND dialog) {
        for (const auto& [entry, message] : cases) {
            enter(r, dialog, IDC_ECM_UNIT_TYPE, entry);
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
    }));
}

}  // namespace
}  // namespace korvane
