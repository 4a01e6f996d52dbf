#include "host/robot.h"

#include <gtest/gtest.h>

namespace korvane::host {
namespace {

class RobotTest : public testing::Test {
  protected:
    ~RobotTest() override { DestroyWindow(dialog_); }

    HWND dialog_ = CreateWindowExW(0, L"#32770", L"样例", WS_POPUP | WS_CAPTION | WS_VISIBLE, 0, 0,
                                   320, 240, nullptr, nullptr, nullptr, nullptr);
};

TEST_F(RobotTest, AnswersMessagesAndTellsADialogUnderneathFromAReadyOne) {
    RobotThread robot([](Robot& r) {
        HWND box = r.waitBox("确认要\n继续吗?");
        EXPECT_EQ(r.boxDefault(box), IDNO);
        EXPECT_EQ(r.boxButtons(box).size(), 2u);
        EXPECT_EQ(r.caption(box), "询问");
        const Robot impatient(GetWindowThreadProcessId(box, nullptr), Robot::Milliseconds(20));
        EXPECT_THROW(impatient.waitDialog("样例"), RobotError);
        EXPECT_NE(r.describeWindows().find("继续吗"), std::string::npos);
        r.answer(box, IDYES);
        r.waitDialog("样例");
    });
    EXPECT_EQ(MessageBoxW(dialog_, L"确认要\n继续吗?", L"询问", MB_YESNO | MB_DEFBUTTON2), IDYES);
}

// The question is sent, and so overtakes the click, which is posted: only settle() can tell that
// the click has been handled.
TEST_F(RobotTest, SettlesAfterWhatWasPostedBefore) {
    constexpr int id = 10;
    HWND box = CreateWindowExW(0, L"Button", L"", WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX, 0, 0, 90,
                               30, dialog_, reinterpret_cast<HMENU>(id), nullptr, nullptr);
    RobotThread robot([&](Robot& r) {
        for (int i = 0; i < 20; ++i) {
            r.click(dialog_, id);
            r.settle();
            EXPECT_EQ(r.isChecked(box), i % 2 == 0);
        }
        r.setText(box, "中央一套 CCTV-1");
        EXPECT_EQ(r.text(box), "中央一套 CCTV-1");
    });
}

TEST_F(RobotTest, FillsEachKindOfField) {
    const auto field = [this](const wchar_t* kind, int id, DWORD style) {
        return CreateWindowExW(0, kind, L"", WS_CHILD | WS_VISIBLE | style, 0, 30 * id, 150, 25,
                               dialog_, reinterpret_cast<HMENU>(id), nullptr, nullptr);
    };
    const INITCOMMONCONTROLSEX addresses{sizeof addresses, ICC_INTERNET_CLASSES};
    InitCommonControlsEx(&addresses);
    HWND name = field(L"Edit", 1, 0), mode = field(L"ComboBox", 2, CBS_DROPDOWNLIST),
         sent = field(L"Button", 3, BS_AUTOCHECKBOX), address = field(WC_IPADDRESSW, 4, 0);
    for (const wchar_t* item : {L"单播", L"组播"})
        SendMessageW(mode, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item));
    RobotThread robot([&](Robot& r) {
        for (const char* checked : {"1", "1", "0"}) {
            r.fill(dialog_, {{1, "中央 5"}, {2, "组播"}, {3, checked}, {4, "225.1.20.3"}});
            EXPECT_EQ(r.text(name), "中央 5");
            EXPECT_EQ(r.comboSelection(mode), 1);
            EXPECT_EQ(r.isChecked(sent), *checked == '1');
            EXPECT_EQ(r.text(address), "225.1.20.3");
        }
        EXPECT_THROW(r.fill(dialog_, {{2, "广播"}}), RobotError);
    });
}

}  // namespace
}  // namespace korvane::host
