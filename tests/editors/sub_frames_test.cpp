#include <cstring>
#include <set>

#include "editors/component_selection.h"
#include "editors/sub_frame_form.h"
#include "resources/ids.h"
#include "support/configurations.h"
#include "support/editing_fixture.h"
#include "text/gbk.h"

namespace korvane {
namespace {

using enum ChannelType;
using Controls = test::ScriptedControls;

// A frame that answers by script and notes what it is asked.
class ScriptedFrame : public FrameQuestions {
  public:
    std::uint8_t frameId() const override { return id; }
    ConfigModel::FramePlace place() const override { return {kind, 0}; }
    int checkSubFrameId(std::uint8_t number) override { return note("sub", number); }
    int checkServiceId(std::uint32_t number) override { return note("service", number); }
    int checkBandwidth(std::uint32_t number) override { return note("bandwidth", number); }
    std::int32_t availableBandwidth() override { return 480'000; }
    void dropTaken(std::uint32_t serviceId, std::vector<InputChannelRecord>& list) const override {
        askedBy = serviceId;
        std::erase_if(list, [this](const auto& channel) { return channel.address[3] == taken; });
    }

    std::uint8_t id = 1, taken = 3;
    TableKind kind = TableKind::Continuous;
    std::string refused, asked;  // the question, and all of them
    mutable std::uint32_t askedBy = 0;

  private:
    int note(const std::string& question, std::uint32_t number) {
        asked += question + ' ' + std::to_string(number) + ' ';
        return question == refused ? -1 : 0;
    }
};

// "V1" for the first video channel.
std::string namesOf(const auto& channels) {
    std::string names;
    for (const InputChannelRecord& channel : channels)
        names += "VADGEMB"[channel.type] + std::to_string(channel.address[3]) + ' ';
    return names;
}

// An operator who chooses components.
class Chooser : public FormRunner {
  public:
    bool run(Form& form) override {
        Controls controls;
        FormExchange exchange(form, controls, prompts_);
        exchange.show();
        if (pressed) exchange.entered(*pressed);
        if (!chosen.empty()) controls.rows[IDC_CANDIDATES] = chosen;
        offered.clear();
        for (const ListRow& row : dynamic_cast<ComponentSelectionForm&>(form).rows())
            offered += row.at(2) + ' ';
        return !cancels && exchange.accept();
    }

    std::vector<int> chosen;
    std::optional<int> pressed;
    bool cancels = false;
    std::string offered;

  private:
    test::ScriptedPrompts prompts_;
};

// Of each type there is a channel that is free, one that a service of another frame has, and one
// that another service of this frame has.
class SubFrames : public test::EditingFixture {
  protected:
    SubFrames() {
        ServiceRecord other = test::service(1, 9);
        for (const ChannelType type : {Video, Audio, Dra, Esg, Ecm, Emm, Data}) {
            for (std::uint8_t i = 1; i <= 3; ++i)
                model_->addChannel(test::channel(type, i, 5), ConfigModel::atEnd);
            other.components.append(test::channel(type, 2, 5));
        }
        model_->addFrame(TableKind::Continuous, test::frame(1));
        model_->addFrame(TableKind::Continuous, test::frame(2, {other}));
    }
    void addChannels(ChannelType type, std::uint8_t count) {
        for (std::uint8_t i = 0; i < count; ++i)
            model_->addChannel(test::channel(type, static_cast<std::uint8_t>(10 + i), 5),
                               ConfigModel::atEnd);
    }
    static ServiceRecord record(std::uint8_t type, std::initializer_list<const char*> components) {
        ServiceRecord service = test::service(4, 100);
        service.type = type;
        service.bandwidth = 1000;
        for (const char* name : components)
            service.components.append(
                test::channel(static_cast<ChannelType>(std::strchr("VADGEMB", *name) - "VADGEMB"),
                              static_cast<std::uint8_t>(name[1] - '0'), 5));
        return service;
    }
    void openNew() { open(std::make_unique<SubFrameForm>(editing_, frame_, std::uint8_t{7})); }
    void edit(const ServiceRecord& service) {
        open(std::make_unique<SubFrameForm>(editing_, frame_, service));
    }
    void open(std::unique_ptr<SubFrameForm> form) {
        form_ = std::move(form);
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
    void check(bool scrambled) {
        controls_.checks[IDC_SCRAMBLED] = scrambled;
        exchange_->entered(IDC_SCRAMBLED);
    }
    bool add(EditList& list, const std::vector<int>& chosen) {
        chooser_.chosen = chosen;
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
        return std::to_string(service.type) + std::to_string(service.scrambled) +
               std::to_string(service.esgInternal) + ' ' + namesOf(service.components);
    }

    ScriptedFrame frame_;
    Chooser chooser_;
    Editing editing_{*model_, prompts_, chooser_};
    Controls controls_;
    std::unique_ptr<SubFrameForm> form_;
    std::unique_ptr<FormExchange> exchange_;
};

TEST_F(SubFrames, EachTypeShowsItsControlsAndOffersItsChannels) {
    constexpr int page = IDD_MEDIA_COMPONENTS, component = IDC_COMPONENT, ecm = IDC_ECM_COMPONENTS;
    const struct {
        std::set<int> visible;
        std::vector<std::string> items;
    } types[] = {
        {{page, IDC_SCRAMBLED}, {}},
        {{IDC_COMPONENT_LABEL, component, IDC_ECM_LABEL, ecm, IDC_SCRAMBLED}, {"225.1.2.1:5"}},
        {{IDC_COMPONENT_LABEL, component},
         {"225.1.2.1:5", "225.1.2.2:5", "225.1.2.3:5", "内部生成"}},
        {{IDC_COMPONENT_LABEL, component}, {"225.1.2.1:5"}},
        {{IDC_COMPONENT_LABEL, component, IDC_ECM_LABEL, ecm, IDC_SCRAMBLED},
         {"225.1.2.1:5", "225.1.2.2:5", "225.1.2.3:5"}},
    };
    openNew();
    for (const int type : {1, 0, 2, 4, 3}) {
        select(IDC_SERVICE_TYPE, type);
        std::set<int> visible;
        for (const auto& [control, shows] : controls_.visibleOnes)
            if (shows) visible.insert(control);
        EXPECT_EQ(visible, types[type].visible) << type;
        if (type == 0) continue;
        EXPECT_EQ(controls_.items[component], types[type].items) << type;
        EXPECT_EQ(controls_.selections[component], 0) << type;
    }
    edit(record(0, {}));
    EXPECT_EQ(controls_.selections[IDC_SERVICE_TYPE], 0);
    edit(record(6, {}));
    EXPECT_EQ(controls_.selections[IDC_SERVICE_TYPE], -1);
    for (const auto& [control, shows] : controls_.visibleOnes) EXPECT_FALSE(shows) << control;
}

TEST_F(SubFrames, ANewOneBeginsWithItsDefaultsAndSaysWhatIsFree) {
    openNew();
    EXPECT_EQ(controls_.texts,
              (std::map<int, std::string>{{IDC_SUB_FRAME_ID, "7"},
                                          {IDC_SERVICE_ID, "0"},
                                          {IDC_SERVICE_BANDWIDTH, "480000"},
                                          {IDC_SERVICE_NAME, "请输入业务名称"},
                                          {IDC_FREE_BANDWIDTH, "可用带宽：480000 bps"}}));
    EXPECT_EQ(controls_.items[IDC_SERVICE_TYPE].size(), 5u);
    EXPECT_EQ(controls_.items[IDC_SERVICE_TYPE].at(1), "DRA音频广播");
    EXPECT_EQ(controls_.selections[IDC_SERVICE_TYPE] + controls_.selections[IDC_ENCAPSULATION], 0);
    enter(IDC_SERVICE_BANDWIDTH, "480001");
    EXPECT_EQ(controls_.texts[IDC_FREE_BANDWIDTH], "可用带宽：480000 bps，不足");
    enter(IDC_SERVICE_BANDWIDTH, "480000");
    EXPECT_EQ(controls_.texts[IDC_FREE_BANDWIDTH], "可用带宽：480000 bps");
    frame_.id = 0;
    EXPECT_EQ(accepted(), "100 ");
    EXPECT_EQ(frame_.asked, "sub 7 service 0 bandwidth 480000 ");
    const ServiceDescription& description = form_->service().description;
    EXPECT_EQ(std::string(description.name.data()), toGbk("请输入业务名称").bytes);
    EXPECT_EQ(std::string(description.language.begin(), description.language.end()), "zho");
    EXPECT_EQ(form_->service().encapsulation, 1);
}

// All is wrong at first; one after the other is mended.
TEST_F(SubFrames, OkLooksForWhatIsWrongInThisOrder) {
    const std::vector<std::tuple<std::function<void()>, int, std::string>> steps = {
        {[this] { controls_.texts[IDC_SERVICE_NAME] = std::string(256, 'x'); }, IDC_SERVICE_NAME,
         "warn 业务名称超过255个字节（一个汉字占两个字节）\n"},
        {[this] { enter(IDC_SERVICE_NAME, std::string(255, 'x')); }, IDC_SERVICE_TYPE,
         "warn 请选择业务类型\n"},
        {[this] {
             select(IDC_SERVICE_TYPE, service_type::dra);
             select(IDC_ENCAPSULATION, -1);
         },
         IDC_ENCAPSULATION, "warn 请选择封装模式\n"},
        {[this] {
             select(IDC_ENCAPSULATION, 0);
             frame_.refused = "sub";
         },
         IDC_SUB_FRAME_ID, ""},
        {[this] { frame_.refused = "service"; }, IDC_SERVICE_ID, ""},
        {[this] { frame_.refused = "bandwidth"; }, IDC_SERVICE_BANDWIDTH, ""},
        {[this] { frame_.refused = ""; }, IDC_SERVICE_TYPE, "warn 请先配置当前类型的输入通道\n"},
        {[this] {
             addChannels(Dra, 1);
             select(IDC_COMPONENT, -1);
         },
         IDC_COMPONENT, "warn 请选择输入通道\n"},
        {[this] { select(IDC_SERVICE_TYPE, service_type::media); }, IDD_MEDIA_COMPONENTS,
         "warn 请添加组件\n"},
    };
    model_->clearChannels(static_cast<std::size_t>(Dra));
    const ServiceRecord before = record(77, {"G1"});
    edit(before);
    enter(IDC_SUB_FRAME_ID, "5");
    enter(IDC_SERVICE_ID, "101");
    enter(IDC_SERVICE_BANDWIDTH, "1001");
    for (const auto& [mend, focus, message] : steps) {
        mend();
        EXPECT_EQ(accepted(), "refused " + std::to_string(focus));
        EXPECT_EQ(said(), message) << focus;
        EXPECT_EQ(form_->service(), before) << focus;
    }
    const std::string ids = "sub 5 service 101 ", all = ids + "bandwidth 1001 ";
    EXPECT_EQ(frame_.asked, "sub 5 " + ids + all + all + all + all);
    frame_.id = 0;
    EXPECT_EQ(accepted(), "100 ");
}

// Type, flag, ESG flag and components of the record; the type and the item that are selected, and
// what OK makes of it, scrambled where that is to be had.
TEST_F(SubFrames, OkCommitsWhatTheTypeMakesOfLists) {
    const struct {
        ServiceRecord before;
        int type, item;
        const char* after;
    } cases[] = {
        {record(1, {"A1", "E1", "V1", "D1"}), service_type::media, 0, "110 V1 A1 E1 "},
        {record(2, {"D1", "E1"}), service_type::dra, 0, "210 D1 E1 "},
        {record(4, {"M1", "E3"}), service_type::emm, 0, "400 M1 E3 "},
        {record(5, {"B2", "V1"}), service_type::data, 1, "510 B2 "},
        {record(5, {"B2", "E1"}), service_type::data, 2, "510 B3 E1 "},
        {record(3, {"G2", "V1"}), service_type::esg, 0, "300 G2 V1 "},
        {record(3, {"G2"}), service_type::esg, 3, "301 "},
        {record(0, {"V1"}), service_type::media, 0, "110 V1 "},
        {record(1, {"V1", "E1"}), service_type::dra, 0, "210 D1 E1 "},
        {record(1, {"E1", "V1"}), service_type::esg, 1, "300 V1 E1 "},
        {record(2, {"D1", "E1"}), service_type::media, 0, "110 E1 "},
    };
    for (auto& [before, type, item, after] : cases) {
        edit(before);
        select(IDC_SERVICE_TYPE, type);
        select(IDC_COMPONENT, item);
        check(true);
        EXPECT_EQ(accepted(), after);
        edit(form_->service());  // shows it
        EXPECT_EQ(controls_.checks[IDC_SCRAMBLED], after[1] == '1') << after;
        EXPECT_EQ(accepted(), after) << "once more";
    }
    EXPECT_EQ(frame_.asked.find("service"), std::string::npos) << "no id has changed";
    EXPECT_EQ(frame_.asked.find("sub"), std::string::npos);
    frame_.id = 0;
    edit(record(1, {}));
    check(true);
    EXPECT_EQ(accepted(), "100 ") << "nothing to scramble";
}

TEST_F(SubFrames, ListsOutlastEachChangeOfTypeAndOnlyOkWritesTheRecord) {
    const ServiceRecord before = record(1, {"V1", "A1", "E1"});
    edit(before);
    select(IDC_SERVICE_TYPE, service_type::esg);
    select(IDC_COMPONENT, 3);
    select(IDC_SERVICE_TYPE, service_type::emm);
    model_->clearChannels(static_cast<std::size_t>(Dra));
    select(IDC_SERVICE_TYPE, service_type::dra);
    EXPECT_TRUE(add(form_->ecm(), {0}));
    select(IDC_SERVICE_TYPE, service_type::esg);
    EXPECT_EQ(controls_.selections[IDC_COMPONENT], 3) << "as it was left";
    select(IDC_SERVICE_TYPE, service_type::media);
    EXPECT_EQ(shown(form_->video()), "1:5 ");
    EXPECT_EQ(shown(form_->audio()), "1:5 ");
    EXPECT_EQ(shown(form_->ecm()), "1:5 3:5 ");
    EXPECT_EQ(form_->service(), before);
    EXPECT_EQ(said(), "");
}

// Those of another frame, those that the list has, and, of what is one service's alone, those of
// another service.
TEST_F(SubFrames, ListsOfferWhatIsFree) {
    edit(record(1, {"V1"}));
    enter(IDC_SERVICE_ID, "101");
    addChannels(Video, 1);
    const struct {
        EditList& list;
        std::size_t columns;
        const char* offered;
    } cases[] = {{form_->video(), 4, "225.1.2.10:5 "},
                 {form_->audio(), 5, "225.1.2.1:5 "},
                 {form_->ecm(), 3, "225.1.2.1:5 225.1.2.3:5 "}};
    for (const auto& [list, columns, offered] : cases) {
        EXPECT_FALSE(add(list, {})) << "nothing was chosen";
        EXPECT_EQ(chooser_.offered, offered);
        EXPECT_EQ(list.columns().size(), columns);
        chooser_.cancels = true;
        EXPECT_FALSE(add(list, {0}));
        chooser_.cancels = false;
        EXPECT_EQ(list.offer(EditList::noRow), (EditList::Offer{true, false, false}));
        EXPECT_EQ(list.offer(0), (EditList::Offer{true, false, true}));
    }
    EXPECT_EQ(frame_.askedBy, 101u) << "as it was entered";
    EXPECT_EQ(shown(form_->video()), "1:5 ");
    EXPECT_TRUE(shown(form_->audio()).empty());
}

TEST_F(SubFrames, AListHoldsSevenAndAServiceEight) {
    edit(record(1, {}));
    addChannels(Video, 8);
    chooser_.pressed = IDC_SELECT_ALL;
    EXPECT_FALSE(add(form_->video(), {}));
    chooser_.pressed.reset();
    EXPECT_TRUE(add(form_->video(), {0, 2, 3, 4, 5, 6}));
    EXPECT_EQ(shown(form_->video()), "1:5 11:5 12:5 13:5 14:5 15:5 ") << "in their order";
    EXPECT_FALSE(add(form_->video(), {0, 1}));
    EXPECT_TRUE(add(form_->video(), {0}));
    EXPECT_FALSE(add(form_->video(), {0}));
    const std::string refused = "warn 已达最大组件数(8)\n";
    EXPECT_EQ(said(), refused + refused + refused);
    chooser_.pressed = IDC_SELECT_ALL;
    EXPECT_TRUE(add(form_->ecm(), {}));
    EXPECT_EQ(accepted(), "refused " + std::to_string(IDC_SERVICE_TYPE));
    EXPECT_EQ(said(), refused);
    EXPECT_TRUE(form_->service().components.empty());
    chooser_.pressed = IDC_SELECT_NONE;
    EXPECT_FALSE(add(form_->audio(), {}));
    test::ScriptedPrompts prompts;
    EXPECT_TRUE(ListEditor(form_->video(), prompts).remove({1, 2, 3}));
    EXPECT_TRUE(prompts.log.empty());
    EXPECT_EQ(shown(form_->video()), "1:5 12:5 13:5 14:5 15:5 10:5 ") << "the first alone";
    EXPECT_EQ(accepted(), "100 V1 V12 V13 V14 V15 V10 E1 E3 ");
}

TEST_F(SubFrames, WhatNoControlShowsStays) {
    ServiceRecord before = record(2, {"D1"});
    before.carried = {1, 2, 3, 4};
    before.components[0] = model_->channels(static_cast<std::size_t>(Dra))[0];
    before.encapsulation = 0;
    before.description.language = {'z', 'h', 'o'};
    before.description.carried5 = {5, 6, 7};
    before.description.carried1044 = 8;
    before.description.provider.fill('p');
    before.description.name = {'n', 0, 'x'};
    edit(before);
    EXPECT_EQ(controls_.selections[IDC_ENCAPSULATION], 1);
    EXPECT_EQ(accepted(), "200 D1 ");
    EXPECT_EQ(form_->service(), before);
    enter(IDC_SERVICE_NAME, "m");
    EXPECT_EQ(accepted(), "200 D1 ");
    before.description.name = {'m'};
    EXPECT_EQ(form_->service(), before);
    before.description.name.fill('n');  // no end
    edit(before);
    EXPECT_EQ(controls_.texts[IDC_SERVICE_NAME].size(), 256u);
    EXPECT_EQ(accepted(), "200 D1 ");
    EXPECT_EQ(form_->service(), before);
}

// What was offered may meanwhile be another service's, as with another service id.
TEST_F(SubFrames, TheChannelCountsAndNotItsPlaceInTheList) {
    addChannels(Dra, 2);
    edit(record(2, {}));
    frame_.taken = 1;
    EXPECT_EQ(accepted(), "refused " + std::to_string(IDC_COMPONENT));
    EXPECT_EQ(said(), "warn 请选择输入通道\n");
    select(IDC_COMPONENT, 1);
    EXPECT_EQ(accepted(), "200 D10 ");
}

// A service of the short-time table is called what the device last called it.
TEST_F(SubFrames, ADescriptionThatStandsElsewhereIsTakenIn) {
    const auto configuration = model_->configuration();
    configuration->descriptions.count = 1;
    configuration->descriptions.slots[0] = {100, {}, {}, {'a'}, {'p'}, 8};
    model_->load(*configuration);
    frame_.kind = TableKind::ShortTime;
    ServiceRecord edited = record(1, {"V1"});
    edited.description = {};
    edit(edited);
    EXPECT_EQ(controls_.texts[IDC_SERVICE_NAME], "a");
    enter(IDC_SERVICE_ID, "101");
    EXPECT_EQ(accepted(), "100 V1 ");
    const ServiceDescription expected{101, {'z', 'h', 'o'}, {}, {'a'}, {'p'}, 8};
    EXPECT_EQ(form_->service().description, expected);
}

}  // namespace
}  // namespace korvane
