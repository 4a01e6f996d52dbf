#include <cstring>

#include "editors/sub_frame_form.h"
#include "resources/ids.h"
#include "support/configurations.h"
#include "support/editing_fixture.h"
#include "support/scripted_frame.h"
#include "text/gbk.h"

namespace korvane {
namespace {

using enum ChannelType;
using namespace service_type;

constexpr const char* typeLetters = "VADGEMB";
constexpr auto draChannels = static_cast<std::size_t>(Dra);
const std::string tooMany = "warn 已达最大组件数(8)\n";

// Of each type there is a channel that is free, one that a service of another frame has, and one
// that another service of this frame has.
class SubFrames : public test::EditingFixture {
  protected:
    SubFrames() {
        ServiceRecord other = test::service(1, 9);
        for (const ChannelType type : {Video, Audio, Dra, Esg, Ecm, Emm, Data}) {
            addChannels(type, 1, 3);
            other.components.append(test::channel(type, 2, 5));
        }
        model_->addFrame(TableKind::Continuous, test::frame(1));
        model_->addFrame(TableKind::Continuous, test::frame(2, {other}));
    }
    void addChannels(ChannelType type, std::uint8_t first, std::uint8_t last) {
        for (std::uint8_t i = first; i <= last; ++i)
            model_->addChannel(test::channel(type, i, 5), ConfigModel::atEnd);
    }
    // "V1" is the first video channel.
    static ServiceRecord record(std::uint8_t type, std::initializer_list<const char*> components) {
        ServiceRecord service = test::service(4, 100);
        service.type = type;
        for (const char* name : components)
            service.components.append(test::channel(
                static_cast<ChannelType>(std::strchr(typeLetters, *name) - typeLetters),
                static_cast<std::uint8_t>(name[1] - '0'), 5));
        return service;
    }
    // A service, or the id that is proposed for a new one's sub-frame.
    void open(const auto& what) {
        form_ = std::make_unique<SubFrameForm>(editing_, frame_, what);
        controls_ = {};
        exchange_ = std::make_unique<FormExchange>(*form_, controls_, prompts_);
        exchange_->show();
    }
    void enter(int control, const std::string& text) {
        controls_.texts[control] = text;
        exchange_->entered(control);
    }
    void select(int control, int index) {
        controls_.selections[control] = index;
        exchange_->entered(control);
    }
    bool add(EditList& list, const std::vector<int>& chosen) {
        forms_.script = {[&](Controls& controls) { controls.rows[IDC_CANDIDATES] = chosen; }};
        return list.add(0);
    }
    static std::string shown(const EditList& list) {
        std::string all;
        for (const ListRow& row : list.rows()) all += row.at(2).substr(8) + ' ';
        return all;
    }
    // Its type, flag, ESG flag and components.
    std::string accepted() {
        if (!exchange_->accept()) return "refused " + std::to_string(controls_.focused);
        const ServiceRecord& service = form_->service();
        std::string text = std::to_string(service.type) + std::to_string(service.scrambled) +
                           std::to_string(service.esgInternal);
        for (const InputChannelRecord& component : service.components)
            text += std::string(" ") + typeLetters[component.type] +
                    std::to_string(component.address[3]);
        return text;
    }

    test::ScriptedFrame frame_;
    Controls controls_;
    std::unique_ptr<SubFrameForm> form_;
    std::unique_ptr<FormExchange> exchange_;
};

TEST_F(SubFrames, EachTypeShowsItsControlsAndOffersItsChannels) {
    const std::string none, free = "225.1.2.1:5 ", all = free + "225.1.2.2:5 225.1.2.3:5 ";
    const std::string types[][2] = {
        {"1072 1120 ", none},                 // media
        {"1039 1104 1117 1118 1120 ", free},  // DRA
        {"1039 1117 ", all + "内部生成 "},    // ESG
        {"1039 1117 ", free},                 // EMM
        {"1039 1104 1117 1118 1120 ", all},   // data
    };
    open(std::uint8_t{7});
    for (const int type : {dra, media, esg, data, emm}) {
        select(IDC_SERVICE_TYPE, type);
        std::string visible, items;
        for (const auto& [control, shows] : controls_.visibleOnes)
            if (shows) visible += std::to_string(control) + ' ';
        for (const std::string& item : controls_.items[IDC_COMPONENT]) items += item + ' ';
        EXPECT_EQ(visible, types[type][0]) << type;
        EXPECT_EQ(type == media ? none : items, types[type][1]) << type;
        EXPECT_EQ(controls_.selections[IDC_COMPONENT], 0) << type;
    }
    open(record(0, {}));
    EXPECT_EQ(controls_.selections[IDC_SERVICE_TYPE], 0);
}

TEST_F(SubFrames, ANewOneBeginsWithItsDefaultsAndSaysWhatIsFree) {
    open(std::uint8_t{7});
    EXPECT_EQ(controls_.texts[IDC_FREE_BANDWIDTH], "可用带宽：480000 bps");
    enter(IDC_SERVICE_BANDWIDTH, "480001");
    EXPECT_EQ(controls_.texts[IDC_FREE_BANDWIDTH], "可用带宽：480000 bps，不足");
    frame_.id = 0;
    EXPECT_EQ(accepted(), "100");
    EXPECT_EQ(frame_.asked, "sub 7 service 0 bandwidth 480001 ");
    ServiceRecord expected = test::service(7, 0);
    expected.type = expected.encapsulation = 1;
    expected.bandwidth = 480'001;
    expected.description.language = {'z', 'h', 'o'};
    std::ranges::copy(toGbk("请输入业务名称").bytes, expected.description.name.begin());
    EXPECT_EQ(form_->service(), expected);
}

// All is wrong at first; one after the other is mended.
TEST_F(SubFrames, OkLooksForWhatIsWrongInThisOrder) {
    const struct {
        int entered, index;
        const char* refused;
        int focus;
        std::string message;
    } steps[] = {
        {0, 0, "", IDC_SERVICE_TYPE, "请选择业务类型"},
        {IDC_SERVICE_TYPE, dra, "", IDC_ENCAPSULATION, "请选择封装模式"},
        {IDC_ENCAPSULATION, 0, "sub", IDC_SUB_FRAME_ID, ""},
        {0, 0, "service", IDC_SERVICE_ID, ""},
        {0, 0, "bandwidth", IDC_SERVICE_BANDWIDTH, ""},
        {0, 0, "", IDC_SERVICE_TYPE, "请先配置当前类型的输入通道"},
        {IDC_COMPONENT, -1, "", IDC_COMPONENT, "请选择输入通道"},
        {IDC_SERVICE_TYPE, media, "", IDD_MEDIA_COMPONENTS, "请添加组件"},
    };
    model_->clearChannels(draChannels);
    const ServiceRecord before = record(77, {"G1"});
    open(before);
    enter(IDC_SUB_FRAME_ID, "5");
    enter(IDC_SERVICE_ID, "101");
    select(IDC_ENCAPSULATION, -1);
    enter(IDC_SERVICE_NAME, std::string(256, 'x'));
    EXPECT_EQ(accepted(), "refused " + std::to_string(IDC_SERVICE_NAME));
    EXPECT_EQ(said(), "warn 业务名称超过255个字节（一个汉字占两个字节）\n");
    enter(IDC_SERVICE_NAME, std::string(255, 'x'));
    for (const auto& [entered, index, refused, focus, message] : steps) {
        if (entered == IDC_COMPONENT) addChannels(Dra, 1, 1);
        if (entered != 0) select(entered, index);
        frame_.refused = refused;
        EXPECT_EQ(accepted(), "refused " + std::to_string(focus));
        EXPECT_EQ(said(), message.empty() ? message : "warn " + message + '\n');
        EXPECT_EQ(form_->service(), before) << message;
    }
    const std::string ids = "sub 5 service 101 ", all = ids + "bandwidth 0 ";
    EXPECT_EQ(frame_.asked, "sub 5 " + ids + all + all + all + all);
    frame_.id = 0;
    EXPECT_EQ(accepted(), "100");
    EXPECT_EQ(form_->service().description.serviceId, 101);
}

// Of a service, with another type or component, scrambled where that is to be had.
TEST_F(SubFrames, OkCommitsWhatTheTypeMakesOfLists) {
    const struct {
        ServiceRecord before;
        int type, item;
        const char* after;
    } cases[] = {
        {record(1, {"A1", "E1", "V1", "D1"}), media, 0, "110 V1 A1 E1"},
        {record(2, {"D1", "E1"}), dra, 0, "210 D1 E1"},
        {record(4, {"M1", "E3"}), emm, 0, "400 M1 E3"},
        {record(5, {"B2", "V1"}), data, 1, "510 B2"},
        {record(5, {"B2", "E1"}), data, 2, "510 B3 E1"},
        {record(3, {"G2", "V1"}), esg, 0, "300 G2 V1"},
        {record(3, {"G2"}), esg, 3, "301"},
        {record(1, {"V1", "E1"}), dra, 0, "210 D1 E1"},
        {record(1, {"E1", "V1"}), esg, 1, "300 V1 E1"},
        {record(1, {}), media, 0, "100"},  // nothing to scramble
    };
    frame_.id = 0;
    for (const auto& [before, type, item, after] : cases) {
        open(before);
        select(IDC_SERVICE_TYPE, type);
        select(IDC_COMPONENT, item);
        controls_.checks[IDC_SCRAMBLED] = true;
        EXPECT_EQ(accepted(), after);
        open(form_->service());
        EXPECT_EQ(controls_.checks[IDC_SCRAMBLED], after[1] == '1') << after;
        EXPECT_EQ(accepted(), after) << "as it was shown";
    }
    EXPECT_EQ(frame_.asked.find_first_not_of("bandwith 0"), std::string::npos) << frame_.asked;
}

TEST_F(SubFrames, ListsOutlastEachChangeOfTypeAndOnlyOkWritesTheRecord) {
    const ServiceRecord before = record(1, {"V1", "A1", "E1"});
    open(before);
    select(IDC_SERVICE_TYPE, esg);
    select(IDC_COMPONENT, 3);
    model_->clearChannels(draChannels);
    select(IDC_SERVICE_TYPE, dra);
    EXPECT_TRUE(add(form_->ecm(), {0}));
    select(IDC_SERVICE_TYPE, esg);
    EXPECT_EQ(controls_.selections[IDC_COMPONENT], 3) << "as it was left";
    select(IDC_SERVICE_TYPE, media);
    EXPECT_EQ(shown(form_->video()) + shown(form_->audio()) + shown(form_->ecm()),
              "1:5 1:5 1:5 3:5 ");
    EXPECT_EQ(form_->service(), before);
    EXPECT_EQ(said(), "");
}

// Not those of another frame, nor those that the list has, nor, of what is one service's alone,
// those of another service.
TEST_F(SubFrames, ListsOfferWhatIsFree) {
    open(record(1, {"V1"}));
    enter(IDC_SERVICE_ID, "101");
    addChannels(Video, 10, 10);
    const std::tuple<EditList&, std::vector<int>, const char*> cases[] = {
        {form_->video(), {0}, "1:5 10:5 "},
        {form_->audio(), {0}, "1:5 "},
        {form_->ecm(), {0, 1}, "1:5 3:5 "}};
    for (const auto& [list, chosen, result] : cases) {
        EXPECT_FALSE(add(list, {})) << "nothing was chosen";
        EXPECT_FALSE(list.add(0)) << "cancelled";
        EXPECT_TRUE(add(list, chosen));
        EXPECT_EQ(shown(list), result);
        EXPECT_THROW(add(list, {0}), std::out_of_range) << "no more are offered";
    }
    EXPECT_EQ(frame_.askedBy, 101u) << "as it was entered";
}

TEST_F(SubFrames, AListHoldsSevenAndAServiceEight) {
    open(record(1, {}));
    addChannels(Video, 4, 10);
    EXPECT_FALSE(add(form_->video(), {0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_TRUE(add(form_->video(), {0, 2, 3, 4, 5, 6}));
    EXPECT_FALSE(add(form_->video(), {0, 1}));
    EXPECT_TRUE(add(form_->video(), {0}));
    EXPECT_EQ(shown(form_->video()), "1:5 5:5 6:5 7:5 8:5 9:5 4:5 ") << "in their order";
    EXPECT_EQ(said(), tooMany + tooMany);
    EXPECT_TRUE(add(form_->ecm(), {0, 1}));
    EXPECT_EQ(accepted(), "refused " + std::to_string(IDC_SERVICE_TYPE));
    EXPECT_EQ(said(), tooMany);
    EXPECT_TRUE(form_->service().components.empty());
    EXPECT_TRUE(ListEditor(form_->video(), prompts_).remove({1, 2, 3}));
    EXPECT_EQ(accepted(), "100 V1 V6 V7 V8 V9 V4 E1 E3") << "the first alone went";
    EXPECT_EQ(said(), "") << "unasked";
}

// A service of the short-time table is called what the device last called it.
TEST_F(SubFrames, WhatNoControlShowsStaysWhereverItStood) {
    const auto configuration = model_->configuration();
    ServiceDescription& described = configuration->descriptions.slots[0];
    described = {100, {'z', 'h', 'o'}, {5, 6, 7}, {'n', 0, 'x'}, {'p', 0, 'q'}, 8};
    configuration->descriptions.count = 1;
    model_->load(*configuration);
    frame_.kind = TableKind::ShortTime;
    ServiceRecord before = record(2, {});
    before.carried = {1, 2, 3, 4};
    before.components.append(model_->channels(draChannels)[0]);
    for (const char* name : {"n", "m"}) {
        before.description = {};
        open(before);
        EXPECT_EQ(controls_.texts[IDC_SERVICE_NAME], "n");
        enter(IDC_SERVICE_NAME, name);
        EXPECT_EQ(accepted(), "200 D1");
        if (*name == 'm') described.name = {'m'};
        before.description = described;
        EXPECT_EQ(form_->service(), before);
    }
}

// What was offered may meanwhile be another service's, as with another service id.
TEST_F(SubFrames, TheChannelCountsAndNotItsPlaceInTheList) {
    addChannels(Dra, 10, 11);
    open(record(2, {}));
    frame_.taken = 1;
    EXPECT_EQ(accepted(), "refused " + std::to_string(IDC_COMPONENT));
    select(IDC_COMPONENT, 1);
    EXPECT_EQ(accepted(), "200 D10");
}

}  // namespace
}  // namespace korvane
