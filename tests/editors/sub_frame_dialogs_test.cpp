#include <gtest/gtest.h>

#include "editors/form_windows.h"
#include "editors/sub_frame_form.h"
#include "resources/ids.h"
#include "support/configurations.h"
#include "support/robot.h"
#include "support/scripted_frame.h"
#include "support/test_host.h"
#include "ui/controls.h"
#include "ui/modal.h"
#include "ui/window_prompts.h"

namespace korvane {
namespace {

using Rows = std::vector<std::vector<std::string>>;

class SubFrameDialogs : public testing::Test {
  protected:
    SubFrameDialogs() {
        setModalRoot(host_.window());
        useEditorWindows(forms_);
        for (int type = 0; type < 7; ++type)
            for (const std::uint8_t octet : {1, 2})
                model_->addChannel(test::channel(static_cast<ChannelType>(type), octet, 5),
                                   ConfigModel::atEnd);
    }
    ~SubFrameDialogs() override { setModalRoot(nullptr); }

    // The service that an operator enters who does what `script` says, up to OK: its type, flag,
    // and the types and last octets of its components.
    std::string entered(const std::function<void(Robot&, HWND)>& script) {
        RobotThread robot([&](Robot& r) {
            const HWND dialog = r.waitDialog("复用子帧配置");
            script(r, dialog);
            r.click(dialog, IDOK);
        });
        SubFrameForm form(editing_, frame_, std::uint8_t{7});
        if (!forms_.run(form)) return "cancelled";
        const ServiceRecord& service = form.service();
        std::string text = std::to_string(service.type) + std::to_string(service.scrambled);
        for (const InputChannelRecord& component : service.components)
            text += ' ' + std::to_string(component.type) + std::to_string(component.address[3]);
        return text;
    }
    // The numbers of what Tab reaches.
    static std::string walk(HWND dialog) {
        std::string all;
        for (const HWND one : test::tabOrder(dialog))
            all += std::to_string(GetDlgCtrlID(one)) + ' ';
        return all;
    }

    test::TestHost host_;
    WindowPrompts prompts_;
    WindowFormRunner forms_{prompts_};
    test::ScriptedFrame frame_;
    const std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    const Editing editing_{*model_, prompts_, forms_};
};

TEST_F(SubFrameDialogs, EachTypeHasItsLayoutAndTheServiceIdIsTold) {
    const char* const types[] = {"1120 1105 1103 1104 ", "1120 1039 1104 ", "1039 ", "1039 ",
                                 "1120 1039 1104 "};
    const std::string service = entered([&](Robot& r, HWND dialog) {
        const auto at = [dialog](int id) { return GetDlgItem(dialog, id); };
        EXPECT_EQ(r.text(at(IDC_SERVICE_NAME)), "请输入业务名称");
        for (const char* id : {"300", "none"}) {  // the last one that was a number
            r.setText(at(IDC_SERVICE_ID), id);
            std::uint32_t answer = 0;
            EXPECT_EQ(r.send(dialog, 2000, reinterpret_cast<WPARAM>(&answer)), 300);
            EXPECT_EQ(answer, 300u);
        }
        r.setText(at(IDC_SERVICE_ID), "300");
        for (const int type : {0, 1, 2, 3, 4}) {
            r.selectCombo(at(IDC_SERVICE_TYPE), type);
            EXPECT_EQ(walk(dialog),
                      "1088 1096 1102 1108 1099 1097 " + std::string(types[type]) + "1 2 ");
            EXPECT_FALSE(IsWindowVisible(at(IDC_UNUSED_COMBO)));
        }
        EXPECT_EQ(r.comboItems(at(IDC_COMPONENT)).size(), 2u) << "of the last type alone";
        r.setText(at(IDC_SERVICE_BANDWIDTH), "480001");
        EXPECT_EQ(r.text(at(IDC_FREE_BANDWIDTH)), "可用带宽：480000 bps，不足");
        r.click(dialog, IDC_SCRAMBLED);
        r.selectCombo(at(IDC_COMPONENT), 1);
    });
    EXPECT_EQ(service, "51 62");
}

// The page lies within its group box, and each of its lists has a menu of its own.
TEST_F(SubFrameDialogs, AMediaServiceGetsItsComponentsFromTheListsOfItsPage) {
    const std::string service = entered([&](Robot& r, HWND dialog) {
        const HWND page = r.childDialogs(dialog).at(0), type = GetDlgItem(dialog, IDC_SERVICE_TYPE);
        const RECT group = Control(GetDlgItem(dialog, IDC_SERVICE_GROUP)).area(),
                   inside{group.left + 12, group.top + 20, group.right - 15, group.bottom - 15},
                   area = Control(page).area();
        EXPECT_TRUE(EqualRect(&area, &inside));
        r.click(dialog, IDOK);
        r.answer(r.waitBox("请添加组件"), IDOK);
        r.settle();
        host_.run([page] { EXPECT_TRUE(IsChild(page, GetFocus())); });
        for (const int id : {IDC_VIDEO_COMPONENTS, IDC_AUDIO_COMPONENTS, IDC_ECM_COMPONENTS}) {
            const HWND list = GetDlgItem(page, id);
            test::choose(r, list, -1, 1, "添加");
            const HWND chooser = r.waitDialog("业务组件选择"),
                       rows = GetDlgItem(chooser, IDC_CANDIDATES);
            EXPECT_EQ(r.listColumns(rows), r.listColumns(list));
            r.click(chooser, IDC_SELECT_ALL);
            r.waitFor("all are checked", [&] { return r.isRowChecked(rows, 1); });
            EXPECT_TRUE(r.isRowChecked(rows, 0));
            if (id != IDC_ECM_COMPONENTS) r.click(chooser, IDC_SELECT_NONE);
            r.settle();
            r.checkRow(rows, 1, true);
            test::end(r, chooser, IDOK);
        }
        r.selectCombo(type, service_type::data);
        const HWND ecm = GetDlgItem(dialog, IDC_ECM_COMPONENTS);
        EXPECT_EQ(r.listRows(ecm),
                  (Rows{{"0", "UDP", "225.1.2.1:5"}, {"1", "UDP", "225.1.2.2:5"}}));
        test::choose(r, ecm, 0, 2, "删除");
        r.waitFor("the row is gone", [&] { return r.listRows(ecm).size() == 1; });
        r.selectCombo(type, service_type::media);
        EXPECT_EQ(r.listRows(GetDlgItem(page, IDC_ECM_COMPONENTS)),
                  (Rows{{"0", "UDP", "225.1.2.2:5"}}));
    });
    EXPECT_EQ(service, "10 02 12 42");
}

}  // namespace
}  // namespace korvane
