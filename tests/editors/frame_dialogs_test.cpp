#include <gtest/gtest.h>

#include "editors/form_windows.h"
#include "editors/frame_dialog.h"
#include "editors/frame_list_page.h"
#include "resources/ids.h"
#include "support/configurations.h"
#include "support/robot.h"
#include "support/scripted_prompts.h"
#include "support/test_host.h"
#include "ui/window_prompts.h"

namespace korvane {
namespace {

class FrameDialogs : public testing::Test {
  protected:
    FrameDialogs() {
        useEditorWindows(forms_);
        model_->setMultiplexHeader({2, 33, 1});
        model_->setMultiplexHeader({4, 34, 1});
        MultiplexFrame frame = test::frame(0, {test::service(1, 100), test::service(2, 200)});
        frame.timeSlots.append(0);
        frame.services[0].components.append(test::channel(ChannelType::Dra, 1, 5000));
        frame.services[0].bandwidth = 70'000;
        model_->addFrame(TableKind::Continuous, frame);
    }
    static HWND at(HWND dialog, int id) { return GetDlgItem(dialog, id); }
    // What the controls of a dialog show that have a number.
    static std::string shownBy(const Robot& r, HWND dialog) {
        std::string all;
        for (HWND one = GetWindow(dialog, GW_CHILD); one; one = GetWindow(one, GW_HWNDNEXT))
            if (GetDlgCtrlID(one) > IDCANCEL) all += r.text(one) + '|';
        return all;
    }
    static void configure(const Robot& r, const char* before, const char* after) {
        const HWND dialog = r.waitDialog("时隙配置");
        EXPECT_EQ(r.text(at(dialog, IDC_SLOT_NUMBER)), before);
        r.setText(at(dialog, IDC_SLOT_NUMBER), after);
        test::end(r, dialog, IDOK);
    }
    COLORREF colourOf(HWND bar) const {
        COLORREF colour = 0;
        host_.run([&] {
            UpdateWindow(bar);
            const HDC surface = GetDC(bar);
            colour = GetPixel(surface, 3, 3);
            ReleaseDC(bar, surface);
        });
        return colour;
    }
    // The menu of the first row has one item; does what that one does.
    static void chooseOnly(const Robot& r, HWND list, const char* item, int command) {
        r.rightClickRow(list, 0);
        const auto items = r.waitPopup();
        EXPECT_TRUE(items.size() == 1 && items[0].text == item) << item;
        r.dismissPopup();
        r.command(GetParent(list), command);
    }

    test::TestHost host_;
    std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    WindowPrompts prompts_;
    WindowFormRunner forms_{prompts_};
};

TEST_F(FrameDialogs, OpenFromThePageAndShowWhatIsEntered) {
    FrameListPage page({*model_, prompts_, forms_}, TableKind::Continuous);
    FrameListPage other({*model_, prompts_, forms_}, TableKind::ShortTime);
    other.create(host_.window());
    page.create(host_.window());
    page.show(true);
    const HWND list = at(page.hwnd(), IDC_FRAME_LIST);
    RobotThread([&](Robot& r) {
        EXPECT_EQ(shownBy(r, page.hwnd()) + shownBy(r, other.hwnd()), "2|33||4|34||");
        chooseOnly(r, list, "修改", 32781);
        HWND dialog = r.waitDialog("复用帧配置");
        host_.run([&] { EXPECT_EQ(GetFocus(), at(dialog, IDC_FRAME_ID)); });
        EXPECT_EQ(shownBy(r, dialog),
                  "0|(240, 240)|保留|BPSK|1/2|模式0|共1个||共2个||"
                  "信道带宽：69120 bps，已用：70000 bps，超出：880 bps||");
        const HWND slots = at(dialog, IDC_TIME_SLOTS), services = at(dialog, IDC_SUB_FRAMES);
        const LevelBar bar(at(dialog, IDC_CAPACITY_BAR));
        EXPECT_EQ(bar.level(), 101);
        const COLORREF warning = colourOf(bar.window());
        chooseOnly(r, slots, "配置时隙", 32771);
        configure(r, "1", "2");
        EXPECT_EQ(bar.level(), 50);
        EXPECT_NE(colourOf(bar.window()), warning);
        EXPECT_EQ(r.text(at(dialog, IDC_CAPACITY_TEXT)),
                  "信道带宽：138240 bps，已用：70000 bps，剩余：68240 bps");
        r.selectCombo(at(dialog, IDC_MODULATION), 1);
        EXPECT_EQ(bar.level(), 25);
        r.key(services, VK_DELETE);
        r.key(services, VK_INSERT);
        r.rightClickRow(services, 0);
        r.settle();
        EXPECT_EQ(r.listRows(services).size(), 2u) << "and nothing is open";
        r.doubleClickRow(slots, 0);
        configure(r, "2", "3");
        EXPECT_EQ(r.listRows(slots).size(), 3u);
        test::end(r, dialog, IDOK);
        EXPECT_EQ(r.listRows(list)[0],
                  (ListRow{"0", "(240, 240)", "保留", "1/2", "QPSK", "模式0"}));
    }).finish();
    EXPECT_TRUE(page.commit());
    EXPECT_EQ(model_->tables().continuous.header[1], 33);
}

TEST_F(FrameDialogs, AnswerMessages) {
    constexpr std::tuple<UINT, WPARAM, LRESULT, std::size_t> questions[] = {
        {1001, 100, -1, 2}, {1001, 65536, -2, 2}, {1001, 300, 0, 2}, {1002, 100, 0, 2},
        {1002, 200, 0, 1},  {1003, 1, 1, 1},      {1004, 1, 0, 1},   {1009, 1, 0, 1},
        {1010, 2, -1, 1},   {1010, 3, 0, 1}};
    test::ScriptedPrompts said;
    FrameForm form({*model_, said, forms_}, {TableKind::Continuous, 0});
    RobotThread robot([&](Robot& r) {
        const HWND dialog = r.waitDialog("复用帧配置");
        std::vector<InputChannelRecord> channels;
        for (const std::uint8_t i : {1, 2})
            channels.push_back(test::channel(ChannelType::Dra, i, 5000));
        for (const auto& [message, about, answer, left] : questions) {
            EXPECT_EQ(r.send(dialog, message, about, &channels), answer) << message;
            EXPECT_EQ(channels.size(), left);
        }
        EXPECT_EQ(said.log.size(), 4u);
        r.click(dialog, IDCANCEL);
    });
    EXPECT_EQ(FrameDialog(form, said).showModal(), IDCANCEL);
}

}  // namespace
}  // namespace korvane
