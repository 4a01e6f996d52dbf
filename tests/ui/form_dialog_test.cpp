#include "ui/form_dialog.h"

#include <gtest/gtest.h>

#include "editors/ca_page.h"
#include "editors/ca_system_form.h"
#include "host/robot.h"
#include "resources/ids.h"
#include "support/test_host.h"
#include "ui/modal.h"
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

// Tab goes through all fields from above, and then to the buttons.
TEST_F(FormDialogTest, TheKeyboardReachesEachFieldInItsPlace) {
    constexpr std::pair<int, const char*> stops[] = {{IDC_CA_SYSTEM_ID, "7"},
                                                     {IDC_SERVICE_ID, "300"},
                                                     {IDC_EMM_UNIT_TYPE, "130"},
                                                     {IDC_ECM_UNIT_TYPE, "131"},
                                                     {IDC_ECM_TRANSFER_MODE, ""},
                                                     {IDOK, ""},
                                                     {IDCANCEL, ""}};
    EXPECT_FALSE(run([&stops](Robot& r, HWND dialog) {
        for (const auto& [id, selected] : stops) {
            EXPECT_EQ(focused(r, dialog), std::pair(id, std::string(selected)));
            press(dialog, id, VK_TAB);
            r.settle();
        }
        EXPECT_EQ(focused(r, dialog).first, IDC_CA_SYSTEM_ID);
        r.click(dialog, IDCANCEL);
    }));
}

// A save may come while another page shows: this one comes to the front before it complains.
TEST(FormPage, ARefusedFieldIsShownThenSaidThenReadyToBeMended) {
    const test::TestHost host;
    setModalRoot(host.window());
    const auto model = std::make_unique<ConfigModel>();
    WindowPrompts prompts;
    WindowFormRunner forms(prompts);
    CaPage page({*model, prompts, forms}, [&page] { page.show(true); });
    ASSERT_TRUE(page.create(host.window()));
    const HWND count = GetDlgItem(page.hwnd(), IDC_SECTION_COUNT);
    SetWindowTextW(count, L"256");
    EXPECT_TRUE(page.changed());
    RobotThread robot([&](Robot& r) {
        const HWND box = r.waitBox("请输入 0 和 255 之间的整数。");
        EXPECT_EQ(GetWindow(box, GW_OWNER), host.window());
        EXPECT_TRUE(IsWindowVisible(page.hwnd()));
        r.answer(box, IDOK);
    });
    EXPECT_FALSE(page.commit());
    robot.finish();
    EXPECT_EQ(focused(Robot(GetCurrentThreadId()), page.hwnd()),
              std::pair(IDC_SECTION_COUNT, std::string("256")));
    SetWindowTextW(count, L"3");
    EXPECT_TRUE(page.commit());
    EXPECT_EQ(model->tables().caDescriptions.sectionCount, 3);
    setModalRoot(nullptr);
}

}  // namespace
}  // namespace korvane
