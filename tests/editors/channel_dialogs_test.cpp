#include <gmock/gmock.h>
#include <map>
#include <optional>

#include "editors/input_channel_page.h"
#include "host/robot.h"
#include "model/channel_text.h"
#include "resources/ids.h"
#include "support/test_host.h"
#include "ui/form_dialog.h"
#include "ui/keyboard_hook.h"
#include "ui/modal.h"
#include "ui/window_prompts.h"

namespace korvane {
namespace {

using host::Robot;
using host::RobotThread;
using testing::ElementsAre;
using testing::ElementsAreArray;

std::vector<HWND> controlsOf(HWND dialog) {
    std::vector<HWND> controls;
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        if (static_cast<std::int16_t>(GetDlgCtrlID(child)) != IDC_STATIC) controls.push_back(child);
    return controls;
}

bool has(HWND control, LONG style) {
    return (GetWindowLongW(control, GWL_STYLE) & style) != 0;
}

std::string valueOf(const Robot& r, HWND control) {
    const std::string kind = r.className(control);
    if (kind == "ComboBox") {
        const int item = r.comboSelection(control);
        return item < 0 ? "" : r.comboItems(control).at(static_cast<std::size_t>(item));
    }
    return kind == "Button" ? (r.isChecked(control) ? "1" : "0") : r.text(control);
}

// A line for each control in tab order; "-" for a hidden one, "#" for a disabled one.
std::string shownBy(const Robot& r, HWND dialog) {
    std::string text;
    for (const HWND control : controlsOf(dialog)) {
        text += std::to_string(GetDlgCtrlID(control)) + ' ' + r.className(control);
        if (!has(control, WS_VISIBLE)) text += '-';
        if (has(control, WS_DISABLED)) text += '#';
        text += '=' + valueOf(r, control) + '\n';
        const bool reached = has(control, WS_TABSTOP) || r.className(control) == "Static";
        EXPECT_TRUE(reached || !has(control, WS_VISIBLE)) << text;
    }
    return text;
}

// Something else in every control that the operator can reach.
void enterOthers(const Robot& r, HWND dialog) {
    for (const HWND control : controlsOf(dialog)) {
        const std::string kind = r.className(control);
        if (!has(control, WS_VISIBLE) || !has(control, WS_TABSTOP)) continue;
        if (kind == "Edit") r.setText(control, "42");
        if (kind == "ComboBox") r.selectCombo(control, 0);
        if (kind == "SysIPAddress32") r.send(control, IPM_SETADDRESS, 0, MAKEIPADDRESS(0, 0, 0, 0));
        if (GetDlgCtrlID(control) == IDC_FRAME_RATE_GIVEN) r.send(control, BM_CLICK);
    }
}

class InputChannelPageTest : public testing::Test {
  protected:
    InputChannelPageTest() {
        setModalRoot(host_.window());
        page_.create(host_.window());
        page_.show(true);
        keyboard_.emplace(page_.hwnd());
        SetFocus(list());
    }
    ~InputChannelPageTest() override {
        keyboard_.reset();
        page_.destroy();
        setModalRoot(nullptr);
    }

    static void drive(std::function<void(Robot&)> script) {
        RobotThread(std::move(script)).finish();
    }
    HWND list() const { return GetDlgItem(page_.hwnd(), IDC_CHANNELS); }
    HWND types() const { return GetDlgItem(page_.hwnd(), IDC_CHANNEL_TYPES); }
    bool hasFocus(HWND control) const {
        bool result = false;
        host_.run([&] { result = GetFocus() == control || IsChild(control, GetFocus()); });
        return result;
    }
    void pressWithControl(const Robot& r, WORD key) const {
        const auto hold = [](BYTE state) {
            std::array<BYTE, 256> keys{};
            keys[VK_CONTROL] = state;
            SetKeyboardState(keys.data());
        };
        host_.run([&] { hold(0x80); });
        r.key(list(), key);
        r.settle();
        host_.run([&] { hold(0); });
    }
    static HWND waitEditor(const Robot& r, int type) {
        const auto name = channelTypeNames[static_cast<std::size_t>(type)];
        return r.waitDialog(std::string(name) + "通道参数配置");
    }
    // Presses the button of the editor that is open, or comes up.
    static void leave(const Robot& r, int type, int button) {
        const HWND editor = waitEditor(r, type);
        r.click(editor, button);
        r.waitGone(editor);
        r.settle();
    }
    void addChannel(int type, std::uint8_t last) {
        InputChannelRecord record{};
        record.type = static_cast<std::uint8_t>(type);
        record.address = {225, 1, 1, last};
        record.port = 5000;
        record.videoCoding = record.audioCoding = record.rtcpSync = record.receiveMode = 1;
        record.videoFrameRate = record.audioSampleRate = 2;
        record.payloadType = 96;
        record.dataUnitType = 129;
        record.maxSendIntervalMs = 70000;
        ASSERT_EQ(model_->addChannel(record, ConfigModel::atEnd), 0);
    }

    test::TestHost host_;
    std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    WindowPrompts prompts_;
    WindowFormRunner forms_{prompts_};
    InputChannelPage page_{{*model_, prompts_, forms_}};
    std::optional<KeyboardHook> keyboard_;
};

TEST_F(InputChannelPageTest, ItsDialogsCarryEachValueBothWays) {
    const std::string where = "IPAddress32=225.1.1.", port = "1021 Edit=5000\n",
                      unseen = "1107 Button-=1\n1108 ComboBox-=模式1\n",
                      buttons = "1 Button=0\n2 Button=0\n", unit = "1026 Edit=129\n";
    const std::string audio = "1038 ComboBox=16KHz\n1032 Edit=96\n" + unseen + buttons;
    const std::string general = port + "1057 Button-=0\n1053 Button-=0\n1055 Button-=1\n" + buttons;
    const std::string shown[] = {
        "1010 Sys" + where + "0\n" + port +
            "1014 ComboBox=H.264\n1032 Edit=96\n1110 Button=0\n1109 ComboBox#=12.5Hz\n" + unseen +
            buttons,
        "1010 Sys" + where + "1\n" + port + "1014 ComboBox=HE-AAC\n" + audio,
        "1010 Sys" + where + "2\n" + port + "1014 ComboBox=DRA\n" + audio,
        "1115 Sys" + where + "3\n" + general,
        "1010 Sys" + where + "4\n" + port + unit +
            "1119 Static=最大发送间隔(ms)：\n1027 Edit=70000\n" + buttons,
        "1010 Sys" + where + "5\n" + port + unit +
            "1119 Static-=最大发送间隔(ms)：\n1027 Edit-=70000\n" + buttons,
        "1115 Sys" + where + "6\n" + general,
        "1115 Sys" + where + "7\n" + general,
    };
    for (int type = 0; type < 8; ++type) addChannel(type, static_cast<std::uint8_t>(type));
    drive([&](Robot& r) {
        for (int type = 0; type < 8; ++type) {
            r.selectListBox(types(), type);
            r.doubleClickRow(list(), 0);
            HWND editor = waitEditor(r, type);
            EXPECT_EQ(shownBy(r, editor), shown[type]);
            const HWND address = controlsOf(editor)[0];
            EXPECT_TRUE(hasFocus(address));
            r.send(address, IPM_SETADDRESS, 0, MAKEIPADDRESS(1, 1, 1, 1));
            r.send(editor, WM_NEXTDLGCTL);
            EXPECT_FALSE(hasFocus(address));
            r.click(editor, IDOK);
            r.answer(r.waitBox("组播地址不正确!"), IDOK);
            EXPECT_TRUE(hasFocus(address));
            enterOthers(r, editor);
            // Each its own, as no two channels may share it.
            r.setText(GetDlgItem(editor, IDC_PORT), std::to_string(type));
            const std::string entered = shownBy(r, editor);
            leave(r, type, IDOK);
            r.doubleClickRow(list(), 0);
            editor = waitEditor(r, type);
            EXPECT_EQ(shownBy(r, editor), entered);
            EXPECT_FALSE(has(GetDlgItem(editor, IDC_FRAME_RATE), WS_DISABLED));
            leave(r, type, IDCANCEL);
        }
    });
}

TEST_F(InputChannelPageTest, ShowsTheSelectedTypeInItsColumnsAndStretches) {
    addChannel(0, 10);
    addChannel(1, 11);
    const std::vector<std::string> others = {"序号", "输入方式", "接收地址"};
    drive([&](Robot& r) {
        host_.run([&] { page_.refresh(); });
        EXPECT_THAT(r.listBoxItems(types()), ElementsAreArray(channelTypeNames));
        EXPECT_EQ(r.send(types(), LB_GETCURSEL), 0);
        EXPECT_THAT(r.listColumns(list()), ElementsAre("序号", "输入方式", "接收地址", "编码类型"));
        EXPECT_THAT(r.listRows(list()),
                    ElementsAre(ElementsAre("0", "RTP", "225.1.1.10:5000", "H.264")));
        r.selectListBox(types(), 1);
        EXPECT_THAT(r.listColumns(list()),
                    ElementsAre("序号", "输入方式", "接收地址", "编码类型", "采样率"));
        EXPECT_THAT(r.listRows(list()),
                    ElementsAre(ElementsAre("0", "RTP", "225.1.1.11:5000", "HE-AAC", "16KHz")));
        host_.run([&] { page_.refresh(); });
        EXPECT_EQ(r.listColumns(list()).size(), 5u) << "the type stays";
        r.selectListBox(types(), 7);
        EXPECT_EQ(r.listColumns(list()), others);
        EXPECT_TRUE(r.listRows(list()).empty());
    });
    page_.place({0, 0, 1000, 700});
    EXPECT_EQ(ListView(list()).area().right, 1000);
    EXPECT_EQ(ListView(list()).area().bottom, 700);
    EXPECT_EQ(ListBox(types()).area().bottom, 700);
}

TEST_F(InputChannelPageTest, IsEditedByMenuKeysAndMouse) {
    constexpr int dra = 2;
    const auto rows = [&] { return model_->channels(dra).size(); };
    const auto offered = [&](Robot& r, int row) {
        r.rightClickRow(list(), row);
        std::string texts;
        for (const host::PopupItem& item : r.waitPopup()) texts += item.text + ' ';
        return texts;
    };
    drive([&](Robot& r) {
        r.selectListBox(types(), dra);
        EXPECT_EQ(offered(r, -1), "添加 ");
        r.choosePopup("添加");
        leave(r, dra, IDOK);
        EXPECT_EQ(rows(), 1u);
        EXPECT_EQ(offered(r, 0), "添加 修改 删除 ");
        r.choosePopup("修改");
        leave(r, dra, IDCANCEL);
        for (const WORD last : {1, 2}) {
            r.key(list(), VK_INSERT);
            r.setText(GetDlgItem(waitEditor(r, dra), IDC_PORT), std::to_string(last));
            leave(r, dra, IDOK);
        }
        EXPECT_EQ(rows(), 3u);
        EXPECT_EQ(model_->channels(dra)[0].port, 2) << "before the selected one";
        r.key(list(), VK_RETURN);
        r.setText(GetDlgItem(waitEditor(r, dra), IDC_PORT), "3");
        leave(r, dra, IDOK);
        EXPECT_EQ(model_->channels(dra)[0].port, 3);
        r.selectRow(list(), 1);
        r.key(list(), VK_DELETE);
        r.answer(r.waitBox("请确认删除"), IDNO);
        r.settle();
        EXPECT_EQ(rows(), 3u);
        pressWithControl(r, 'A');
        r.key(list(), VK_DELETE);
        r.answer(r.waitBox("请确认删除"), IDYES);
        r.settle();
        EXPECT_EQ(rows(), 0u);
        EXPECT_TRUE(r.listRows(list()).empty());
    });
}

}  // namespace
}  // namespace korvane
