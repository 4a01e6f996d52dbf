#include <gmock/gmock.h>

#include "editors/input_channel_page.h"
#include "model/channel_text.h"
#include "resources/ids.h"
#include "support/robot.h"
#include "support/test_host.h"
#include "ui/form_dialog.h"
#include "ui/keyboard_hook.h"
#include "ui/window_prompts.h"

namespace korvane {
namespace {

// A word for each control in tab order: "-" for one that is hidden, "#" for one that is disabled,
// "!" for one that Tab does not reach.
std::string shownBy(const Robot& r, HWND dialog) {
    std::string text;
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        const std::string kind = r.className(child).substr(0, 2);
        const bool reached = (GetWindowLongW(child, GWL_STYLE) & WS_TABSTOP) || kind == "St";
        std::string value = kind == "Bu" ? std::to_string(r.isChecked(child)) : r.text(child);
        if (kind == "Co") value = r.comboItems(child).at(r.send(child, CB_GETCURSEL));
        const char* state = !IsWindowVisible(child)   ? "-="
                            : !IsWindowEnabled(child) ? "#="
                                                      : (reached ? "=" : "!=");
        text += std::to_string(GetDlgCtrlID(child)) + kind + state + value + ' ';
    }
    return text;
}

// Something else in every control that the operator sees.
void enterOthers(const Robot& r, HWND dialog) {
    for (const int id : {IDC_PORT, IDC_PAYLOAD_TYPE, IDC_DATA_UNIT_TYPE, IDC_SEND_INTERVAL})
        if (HWND edit = r.findControl(dialog, id)) r.setText(edit, std::to_string(id % 100));
    if (HWND box = r.findControl(dialog, IDC_FRAME_RATE_GIVEN)) r.send(box, BM_CLICK);
    for (const int id : {IDC_CODING, IDC_SAMPLE_RATE, IDC_FRAME_RATE})
        if (HWND combo = r.findControl(dialog, id)) r.selectCombo(combo, id == IDC_FRAME_RATE);
}

class InputChannelPageTest : public testing::Test {
  protected:
    InputChannelPageTest() { page_.show(true); }

    static HWND waitEditor(const Robot& r, std::size_t type) {
        return r.waitDialog(std::string(channelTypeNames[type]) + "通道参数配置");
    }
    // Enters a port, if there is one to enter, and leaves the editor that comes up.
    static void leave(const Robot& r, std::size_t type, int button, const char* port = nullptr) {
        const HWND editor = waitEditor(r, type);
        if (port) r.setText(GetDlgItem(editor, IDC_PORT), port);
        test::end(r, editor, button);
    }

    test::TestHost host_;
    std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    WindowPrompts prompts_;
    WindowFormRunner forms_{prompts_};
    InputChannelPage page_{{*model_, prompts_, forms_}};
    const bool made_ = page_.create(host_.window());
    const KeyboardHook keyboard_{page_.hwnd()};
    const HWND list_ = GetDlgItem(page_.hwnd(), IDC_CHANNELS);
    const HWND types_ = GetDlgItem(page_.hwnd(), IDC_CHANNEL_TYPES);
};

TEST_F(InputChannelPageTest, EachTypeHasItsColumnsAndItsDialogCarriesValuesBothWays) {
    const std::string address = "-1St=IP地址 1010Sy=0.0.0.0 -1St=端口 1021Ed=0 -1St=编码类型 ",
                      payload = "-1St=载荷类型 1032Ed=0 ", rate = "-1St=采样率 1038Co=48KHz ",
                      buttons = "1Bu=0 2Bu=0 ", port = "Sy=0.0.0.0 -1St=端口： 1021Ed=0 ",
                      unseen = "1107Bu-=0 -1St-=封装模式 1108Co-=模式1 " + buttons,
                      unit = "-1St=IP地址： 1010" + port + "-1St=单元类型： 1026Ed=0 1119St",
                      general = "-1St=IP地址： 1115" + port + "1057Bu-=0 1053Bu-=0 1055Bu-=1 ";
    const std::pair<std::string, std::size_t> cases[] = {
        {address + "1014Co=H.264 " + payload + "-1St=帧频 1110Bu=0 1109Co#=25Hz " + unseen, 4},
        {address + "1014Co=HE-AAC " + rate + payload + unseen, 5},
        {address + "1014Co=DRA " + rate + payload + unseen, 5},
        {general + buttons, 3},
        {unit + "=最大发送间隔(ms)： 1027Ed=1000 " + buttons, 3},
        {unit + "-=最大发送间隔(ms)： 1027Ed-=0 " + buttons, 3},
        {general + buttons, 3},
        {general + buttons, 3},
    };
    RobotThread([&](Robot& r) {
        EXPECT_THAT(r.listBoxItems(types_), testing::ElementsAreArray(channelTypeNames));
        EXPECT_EQ(r.send(types_, LB_GETCURSEL), 0);
        for (std::size_t type = 0; type < std::size(cases); ++type) {
            if (type > 0) r.selectListBox(types_, static_cast<int>(type));
            EXPECT_EQ(r.listColumns(list_).size(), cases[type].second);
            EXPECT_TRUE(r.listRows(list_).empty());
            r.key(list_, VK_INSERT);
            const HWND editor = waitEditor(r, type);
            EXPECT_EQ(shownBy(r, editor), cases[type].first);
            const HWND box = GetNextDlgTabItem(editor, nullptr, FALSE);
            r.send(box, IPM_SETADDRESS, 0, MAKEIPADDRESS(1, 1, 1, 1));
            r.key(GetDlgItem(editor, IDC_PORT), VK_RETURN);
            const HWND refusal = r.waitBox("组播地址不正确!");
            EXPECT_EQ(GetWindow(refusal, GW_OWNER), editor);
            EXPECT_FALSE(IsWindowEnabled(editor));
            r.answer(refusal, IDOK);
            host_.run([&] { EXPECT_TRUE(IsChild(box, GetFocus())); });
            EXPECT_EQ(r.boxDefault(editor), IDOK);
            r.send(box, IPM_SETADDRESS, 0, MAKEIPADDRESS(239, 1, 2, type));
            enterOthers(r, editor);
            const std::string entered = shownBy(r, editor);
            EXPECT_EQ(entered.find('#'), std::string::npos) << entered;
            leave(r, type, IDOK);
            r.doubleClickRow(list_, 0);
            const HWND again = waitEditor(r, type);
            EXPECT_EQ(shownBy(r, again), entered);
            r.key(GetDlgItem(again, IDC_PORT), VK_ESCAPE);
            r.waitGone(again);
            EXPECT_EQ(r.listRows(list_).at(0).at(2), "239.1.2." + std::to_string(type) + ":21");
        }
    }).finish();
    page_.place({0, 0, 1000, 700});
    EXPECT_EQ(ListView(list_).area().right, 1000);
    EXPECT_EQ(ListView(list_).area().bottom, 700);
    EXPECT_EQ(ListBox(types_).area().bottom, 700);
}

TEST_F(InputChannelPageTest, EditsTheChannelsOfTheSelectedType) {
    constexpr int dra = 2;
    const auto& channels = model_->channels(dra);
    RobotThread([&](Robot& r) {
        r.selectListBox(types_, dra);
        test::choose(r, list_, -1, 1, "添加");
        leave(r, dra, IDOK, "1");
        r.command(page_.hwnd(), IDM_FIRST_LIST_EDIT);
        leave(r, dra, IDOK, "2");
        r.key(list_, VK_INSERT);
        leave(r, dra, IDOK, "3");
        EXPECT_EQ(channels[0].port * 10 + channels[1].port, 32) << "before the selected one";
        r.selectRow(list_, 1);
        r.selectListBox(types_, dra);
        EXPECT_EQ(r.listSelection(list_), 1) << "still of the same type";
        test::choose(r, list_, 1, 3, "删除");
        r.answer(r.waitBox("请确认删除"), IDYES);
        r.settle();
        EXPECT_EQ(channels.size(), 1u);
        EXPECT_EQ(r.listRows(list_).size(), 1u);
    }).finish();
}

}  // namespace
}  // namespace korvane
