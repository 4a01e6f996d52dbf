#include <gmock/gmock.h>

#include "editors/form_windows.h"
#include "editors/sub_frame_dialog.h"
#include "host/robot.h"
#include "resources/ids.h"
#include "support/configurations.h"
#include "support/test_host.h"
#include "ui/controls.h"
#include "ui/modal.h"
#include "ui/window_prompts.h"

namespace korvane {
namespace {

using enum ChannelType;
using host::Robot;
using host::RobotThread;

// A frame that takes everything.
class AnyFrame : public FrameQuestions {
  public:
    std::uint8_t frameId() const override { return 1; }
    ConfigModel::FramePlace place() const override { return {TableKind::Continuous, -1}; }
    int checkSubFrameId(std::uint8_t) override { return 0; }
    int checkServiceId(std::uint32_t) override { return 0; }
    int checkBandwidth(std::uint32_t) override { return 0; }
    std::int32_t availableBandwidth() override { return 500'000; }
    void dropTaken(std::uint32_t, std::vector<InputChannelRecord>&) const override {}
};

class SubFrameDialogs : public testing::Test {
  protected:
    SubFrameDialogs() {
        setModalRoot(host_.window());
        useEditorWindows(forms_);
        for (const ChannelType type : {Video, Audio, Dra, Esg, Ecm, Emm, Data})
            for (const std::uint8_t octet : {1, 2})
                model_->addChannel(test::channel(type, octet, 5), ConfigModel::atEnd);
    }
    ~SubFrameDialogs() override { setModalRoot(nullptr); }

    // Whether the form was accepted by the operator who does what `script` says.
    bool run(SubFrameForm& form, const std::function<void(Robot&, HWND)>& script) {
        RobotThread robot([&](Robot& r) { script(r, r.waitDialog("复用子帧配置")); });
        return forms_.run(form);
    }
    // "number=text" of what shows but for labels, in the order in which Tab goes through it.
    static std::string walk(const Robot& r, HWND dialog) {
        std::string all;
        const HWND first = GetNextDlgTabItem(dialog, nullptr, FALSE);
        for (HWND one = first; one != first || all.empty();
             one = GetNextDlgTabItem(dialog, one, FALSE)) {
            all += std::to_string(GetDlgCtrlID(one)) + '=' + r.text(one);
            for (const std::string& item :
                 r.className(one) == "ComboBox" ? r.comboItems(one) : std::vector<std::string>())
                all += '/' + item;
            all += ' ';
        }
        return all;
    }
    static void choose(const Robot& r, HWND list, int row, const char* offered, const char* text) {
        r.rightClickRow(list, row);
        std::string items;
        for (const host::PopupItem& item : r.waitPopup()) items += item.text;
        EXPECT_EQ(items, offered);
        r.choosePopup(text);
    }
    static std::vector<std::string> addresses(const Robot& r, HWND list) {
        std::vector<std::string> all;
        for (const auto& row : r.listRows(list)) all.push_back(row.at(2));
        return all;
    }

    test::TestHost host_;
    WindowPrompts prompts_;
    WindowFormRunner forms_{prompts_};
    AnyFrame frame_;
    const std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    const Editing editing_{*model_, prompts_, forms_};
};

TEST_F(SubFrameDialogs, EachTypeHasItsLayoutAndItsValuesGoBothWays) {
    SubFrameForm form(editing_, frame_, std::uint8_t{7});
    const std::string
        fields =
            "1088=7 1096=300 1102=TYPE/媒体业务/DRA音频广播/ESG业务/EMM业务/数据广播业务 "
            "1108=模式1/模式1/模式2 1099=480000 1097=请输入业务名称 ",
        both = "/225.1.2.1:5/225.1.2.2:5 ", buttons = "1=确定 2=取消 ";
    const std::pair<std::string, std::string> types[] = {
        {"媒体业务", "1120=加扰 1105= 1103= 1104= "},
        {"DRA音频广播", "1120=加扰 1039=225.1.2.1:5" + both + "1104= "},
        {"ESG业务", "1039=225.1.2.1:5/225.1.2.1:5/225.1.2.2:5/内部生成 "},
        {"EMM业务", "1039=225.1.2.1:5" + both},
        {"数据广播业务", "1120=加扰 1039=225.1.2.1:5" + both + "1104= "},
    };
    EXPECT_TRUE(run(form, [&](Robot& r, HWND dialog) {
        const HWND id = GetDlgItem(dialog, IDC_SERVICE_ID);
        host_.run([&] { EXPECT_EQ(GetDlgCtrlID(GetFocus()), IDC_SUB_FRAME_ID); });
        EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, IDC_UNUSED_COMBO)));
        r.setText(id, "300");
        std::uint32_t answer = 0;
        EXPECT_EQ(r.send(dialog, 2000, reinterpret_cast<WPARAM>(&answer)), 300);
        EXPECT_EQ(answer, 300u);
        r.setText(id, "none");
        EXPECT_EQ(r.send(dialog, 2000), 300) << "the last one that is a number";
        r.setText(id, "300");
        for (const int type : {0, 1, 2, 3, 4}) {
            const auto& [name, controls] = types[type];
            r.selectCombo(GetDlgItem(dialog, IDC_SERVICE_TYPE), type);
            std::string expected = fields + controls + buttons;
            expected.replace(expected.find("TYPE"), 4, name);
            EXPECT_EQ(walk(r, dialog), expected);
        }
        const auto free = [&] { return r.text(GetDlgItem(dialog, IDC_FREE_BANDWIDTH)); };
        EXPECT_EQ(free(), "可用带宽：500000 bps");
        r.setText(GetDlgItem(dialog, IDC_SERVICE_BANDWIDTH), "500001");
        EXPECT_EQ(free(), "可用带宽：500000 bps，不足");
        r.click(dialog, IDC_SCRAMBLED);
        r.selectCombo(GetDlgItem(dialog, IDC_COMPONENT), 1);
        r.click(dialog, IDOK);
    }));
    EXPECT_EQ(form.service().type * 10 + form.service().scrambled, 51);
    ASSERT_EQ(form.service().components.size(), 1u);
    EXPECT_EQ(form.service().components[0].address[3], 2);
}

// The page lies within its group box, and each of its lists has a menu of its own.
TEST_F(SubFrameDialogs, AMediaServiceGetsItsComponentsFromTheListsOfItsPage) {
    SubFrameForm form(editing_, frame_, std::uint8_t{7});
    EXPECT_TRUE(run(form, [&](Robot& r, HWND dialog) {
        const HWND page = r.childDialogs(dialog).at(0);
        const RECT area = Control(page).area(),
                   group = Control(GetDlgItem(dialog, IDC_SERVICE_GROUP)).area();
        EXPECT_EQ(area.left - group.left, 12);
        EXPECT_EQ(area.top - group.top, 20);
        EXPECT_EQ(group.right - area.right, 15);
        EXPECT_EQ(group.bottom - area.bottom, 15);
        r.click(dialog, IDOK);
        r.answer(r.waitBox("请添加组件"), IDOK);
        r.settle();
        host_.run([page] { EXPECT_TRUE(IsChild(page, GetFocus())); });
        const std::pair<int, std::size_t> lists[] = {
            {IDC_VIDEO_COMPONENTS, 4}, {IDC_AUDIO_COMPONENTS, 5}, {IDC_ECM_COMPONENTS, 3}};
        for (const auto& [id, columns] : lists) {
            const HWND list = GetDlgItem(page, id);
            EXPECT_EQ(r.listColumns(list).size(), columns);
            choose(r, list, -1, "添加", "添加");
            const HWND chooser = r.waitDialog("业务组件选择");
            const HWND rows = GetDlgItem(chooser, IDC_CANDIDATES);
            EXPECT_EQ(r.listColumns(rows), r.listColumns(list));
            r.click(chooser, IDC_SELECT_ALL);
            r.waitFor("all checked", [&] { return r.isRowChecked(rows, 1); });
            r.click(chooser, IDC_SELECT_NONE);
            r.waitFor("none checked", [&] { return !r.isRowChecked(rows, 1); });
            EXPECT_FALSE(r.isRowChecked(rows, 0));
            if (id == IDC_ECM_COMPONENTS) r.click(chooser, IDC_SELECT_ALL);
            r.settle();
            r.checkRow(rows, 1, true);
            r.click(chooser, IDOK);
            r.waitGone(chooser);
            r.settle();
        }
        r.selectCombo(GetDlgItem(dialog, IDC_SERVICE_TYPE), service_type::data);
        const HWND ecm = GetDlgItem(dialog, IDC_ECM_COMPONENTS);
        EXPECT_THAT(addresses(r, ecm), testing::ElementsAre("225.1.2.1:5", "225.1.2.2:5"));
        choose(r, ecm, 0, "添加删除", "删除");
        r.waitFor("the row is gone", [&] { return r.listRows(ecm).size() == 1; });
        r.selectCombo(GetDlgItem(dialog, IDC_SERVICE_TYPE), service_type::media);
        EXPECT_THAT(addresses(r, GetDlgItem(page, IDC_ECM_COMPONENTS)),
                    testing::ElementsAre("225.1.2.2:5"));
        r.click(dialog, IDOK);
    }));
    std::string types;
    for (const auto& component : form.service().components) {
        types += std::to_string(component.type);
        EXPECT_EQ(component.address[3], 2);
    }
    EXPECT_EQ(types, "014");
}

}  // namespace
}  // namespace korvane
