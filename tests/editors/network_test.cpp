#include "editors/frequency_point_form.h"
#include "editors/neighbour_network_form.h"
#include "editors/network_table.h"
#include "resources/ids.h"
#include "support/editing_fixture.h"

namespace korvane {
namespace {

class Network : public test::EditingFixture {
  protected:
    Network() {
        NetworkInfo network;
        network.countryCode = {'C', 'N', 0, 'x'};
        network.name = "\xD6\xD0\xD1\xEB";  // 中央
        network.networkNumber = 7;
        network.ownFrequency = {21, 9, {3, 4}, 47412345};
        network.otherFrequencies.append({22, 1, {5, 6}, 48212345});
        network.neighbours.append({0, 30, 1, 8, 70000, 52212345});
        model_->setNetworkInfo(network);
    }
    const NetworkInfo& network() const { return tables().network; }

    // The operator's entries into the next form, by control.
    void enter(std::map<int, std::string> texts, std::map<int, int> selections = {}) {
        forms_.script.push_back([=](Controls& controls) {
            for (const auto& [control, text] : texts) controls.texts[control] = text;
            for (const auto& [control, index] : selections) controls.selections[control] = index;
        });
    }

    FrequencyPointList points_{editing_};
    NeighbourNetworkList neighbours_{editing_};
};

TEST_F(Network, AListsNewRecordsGoToTheEndInTheDevicesUnits) {
    enter({{IDC_CHANNEL_NUMBER, "0"}, {IDC_CENTRE_FREQUENCY, "474"}}, {{IDC_BANDWIDTH, 1}});
    ASSERT_TRUE(points_.add(0));
    EXPECT_EQ(forms_.controls.items[IDC_BANDWIDTH], (std::vector<std::string>{"8M", "2M"}));
    EXPECT_EQ(network().otherFrequencies[1], (FrequencyPoint{0, 1, {}, 47'400'000}));
    EXPECT_EQ(points_.rows(), (std::vector<ListRow>{{"22", "482", "2M"}, {"0", "474", "2M"}}));

    enter({{IDC_NEIGHBOUR_NUMBER, "4294967295"}, {IDC_NEIGHBOUR_FREQUENCY, "42949"}},
          {{IDC_NETWORK_LEVEL, 4}});
    ASSERT_TRUE(neighbours_.add(0));
    EXPECT_EQ(forms_.controls.items[IDC_NETWORK_LEVEL],
              (std::vector<std::string>{"一级", "二级", "三级", "四级", "五级"}));
    enter({});
    ASSERT_TRUE(neighbours_.add(0)) << "a new one is of the first level";
    EXPECT_EQ(network().neighbours[1], (NeighbourNetwork{5, 0, 0, 0, 0xFFFFFFFF, 4'294'900'000}));
    EXPECT_EQ(network().neighbours[2].level, 1);
    EXPECT_EQ(neighbours_.rows(), (std::vector<ListRow>{{"70000", "一级", "30", "522", "2M"},
                                                        {"4294967295", "五级", "0", "42949", "8M"},
                                                        {"0", "一级", "0", "0", "8M"}}));
    EXPECT_EQ(points_.rows()[0].size(), points_.columns().size());
    EXPECT_EQ(neighbours_.rows()[0].size(), neighbours_.columns().size());
    EXPECT_EQ(said(), "");
}

// Of an edited record only what is entered changes, but a level that was never set becomes one.
TEST_F(Network, EditingKeepsWhatNobodyTouched) {
    enter({{IDC_CENTRE_FREQUENCY, " 482"}});
    ASSERT_TRUE(points_.edit(0));
    EXPECT_EQ(network().otherFrequencies[0], (FrequencyPoint{22, 1, {5, 6}, 48212345}));
    enter({{IDC_CENTRE_FREQUENCY, "490"}});
    ASSERT_TRUE(points_.edit(0));
    EXPECT_EQ(network().otherFrequencies[0], (FrequencyPoint{22, 1, {5, 6}, 49'000'000}));

    enter({});
    ASSERT_TRUE(neighbours_.edit(0));
    EXPECT_EQ(network().neighbours[0], (NeighbourNetwork{1, 30, 1, 8, 70000, 52212345}));
    model_->setNeighbourNetwork(0, {9, 30, 7, 8, 70000, 52212345});
    EXPECT_EQ(neighbours_.rows()[0], (ListRow{"70000", "一级", "30", "522", "8M"}));
    enter({{IDC_NEIGHBOUR_NUMBER, "70001"}});
    ASSERT_TRUE(neighbours_.edit(0));
    EXPECT_EQ(network().neighbours[0], (NeighbourNetwork{9, 30, 7, 8, 70001, 52212345}))
        << "what no item stands for";
    EXPECT_FALSE(points_.edit(0) || neighbours_.edit(0) || points_.add(0) || neighbours_.add(0))
        << "cancelled";
    EXPECT_EQ(said(), "");
}

TEST_F(Network, WrongRecordsAreRefusedWhereTheyStand) {
    model_->addFrequencyPoint({23, 0, {}, 0});
    model_->addNeighbourNetwork({1, 0, 0, 0, 5, 0});
    const NetworkInfo before = network();
    constexpr int edits = 1;
    const struct {
        EditList* list;
        int row;  // noRow: adds
        int control;
        const char *text, *message;
    } cases[] = {
        {&points_, -1, IDC_CHANNEL_NUMBER, "21", "其他频道不能包含当前网络中的频点"},
        {&points_, -1, IDC_CHANNEL_NUMBER, "22", "已有相同频道"},
        {&points_, edits, IDC_CHANNEL_NUMBER, "21", "其他频道不能包含当前网络中的频点"},
        {&points_, edits, IDC_CHANNEL_NUMBER, "22", "已有相同频道"},
        {&points_, -1, IDC_CHANNEL_NUMBER, "256", "请输入 0 和 255 之间的整数。"},
        {&points_, -1, IDC_CENTRE_FREQUENCY, "42950", "请输入 0 和 42949 之间的整数。"},
        {&points_, edits, IDC_CENTRE_FREQUENCY, "", "请输入一个整数。"},
        {&neighbours_, -1, IDC_NEIGHBOUR_NUMBER, "70000", "已有相同网络号的网络"},
        {&neighbours_, edits, IDC_NEIGHBOUR_NUMBER, "70000", "已有相同网络号的网络"},
        {&neighbours_, -1, IDC_NEIGHBOUR_NUMBER, "4294967296",
         "请输入 0 和 4294967295 之间的整数。"},
        {&neighbours_, edits, IDC_CHANNEL_NUMBER, "256", "请输入 0 和 255 之间的整数。"},
        {&neighbours_, -1, IDC_NEIGHBOUR_FREQUENCY, "42950", "请输入 0 和 42949 之间的整数。"},
    };
    for (const auto& [list, row, control, text, message] : cases) {
        enter({{control, text}});
        EXPECT_FALSE(row < 0 ? list->add(row) : list->edit(row)) << message;
        EXPECT_EQ(said(), std::string("warn ") + message + '\n');
        EXPECT_EQ(forms_.controls.focused, control) << message;
    }
    EXPECT_EQ(network(), before);
}

TEST_F(Network, FullListsRefuseBeforeTheirDialogOpens) {
    for (std::uint8_t i = 1; i < 16; ++i) {
        EXPECT_EQ(model_->addFrequencyPoint({static_cast<std::uint8_t>(100 + i), 0, {}, 0}), 0);
        EXPECT_EQ(model_->addNeighbourNetwork({1, 0, 0, 0, i, 0}), 0);
    }
    EXPECT_FALSE(points_.add(0));
    EXPECT_FALSE(neighbours_.add(0));
    EXPECT_EQ(forms_.shown, 0);
    EXPECT_EQ(said(), "warn 最多支持16个其他频点\nwarn 最多支持16个其他网络\n");
    for (EditList* list : {static_cast<EditList*>(&points_), static_cast<EditList*>(&neighbours_)})
        EXPECT_TRUE(list->remove(1));
    EXPECT_EQ(network().otherFrequencies[1].channelNumber, 102);
    EXPECT_EQ(network().neighbours[1].networkNumber, 2u);
}

class NetworkFields : public Network {
  protected:
    NetworkFields() { page_.show(); }

    NetworkTableForm form_{*model_, prompts_};
    Controls controls_;
    FormExchange page_{form_, controls_, prompts_};
};

// The lists are the operator's at once, the fields when the page is committed.
TEST_F(NetworkFields, TakeOnlyWhatWasEnteredAndLeaveTheLists) {
    EXPECT_EQ(controls_.texts, (std::map<int, std::string>{{IDC_NETWORK_TABLE_ID, "1"},
                                                           {IDC_COUNTRY_CODE, "CN"},
                                                           {IDC_NETWORK_NUMBER, "7"},
                                                           {IDC_NETWORK_NAME, "中央"},
                                                           {IDC_CHANNEL_NUMBER, "21"},
                                                           {IDC_CENTRE_FREQUENCY, "474"}}));
    EXPECT_EQ(controls_.selections,
              (std::map<int, int>{{IDC_NETWORK_LEVEL, 0}, {IDC_BANDWIDTH, 0}}));
    NetworkInfo expected = network();
    enter({{IDC_CHANNEL_NUMBER, "40"}});
    ASSERT_TRUE(points_.add(0) && neighbours_.remove(0));
    expected.otherFrequencies.append({40, 0, {}, 0});
    expected.neighbours.clear();
    expected.tableId = expected.level = 1;
    ASSERT_TRUE(page_.accept());
    EXPECT_EQ(network(), expected) << "table id and level alone are made right";

    controls_.texts = {{IDC_COUNTRY_CODE, "C"},       {IDC_NETWORK_NUMBER, "65535"},
                       {IDC_NETWORK_NAME, "地方"},    {IDC_CHANNEL_NUMBER, "255"},
                       {IDC_CENTRE_FREQUENCY, "475"}, {IDC_NETWORK_TABLE_ID, "1"}};
    controls_.selections = {{IDC_NETWORK_LEVEL, 2}, {IDC_BANDWIDTH, 1}};
    ASSERT_TRUE(page_.accept());
    expected.countryCode = {'C'};
    expected.level = 3;
    expected.networkNumber = 65535;
    expected.name = "\xB5\xD8\xB7\xBD";
    expected.ownFrequency = {255, 1, {3, 4}, 47'500'000};
    EXPECT_EQ(network(), expected);
    EXPECT_EQ(said(), "");
}

TEST_F(NetworkFields, WrongEntriesAreRefusedWhereTheyStandAndTakeNothing) {
    const NetworkInfo before = network();
    const std::string longest(256, 'n');
    const struct {
        std::map<int, std::string> texts;
        int focus;
        const char* message;
    } cases[] = {
        {{{IDC_NETWORK_NUMBER, "65536"}, {IDC_COUNTRY_CODE, "CHNA"}},
         IDC_NETWORK_NUMBER,
         "请输入 0 和 65535 之间的整数。"},
        {{{IDC_COUNTRY_CODE, "CHNA"}, {IDC_NETWORK_NAME, longest + 'n'}},
         IDC_COUNTRY_CODE,
         "国家码超过3个字符"},
        {{{IDC_COUNTRY_CODE, "中国"}}, IDC_COUNTRY_CODE, "国家码超过3个字符"},
        {{{IDC_COUNTRY_CODE, "CHN"}, {IDC_NETWORK_NAME, longest + 'n'}},
         IDC_NETWORK_NAME,
         "网络名称超过256个字符"},
        {{{IDC_NETWORK_NAME, std::string(255, 'n') + "中"}},
         IDC_NETWORK_NAME,
         "网络名称超过256个字符"},
        {{{IDC_COUNTRY_CODE, "é😀"}}, IDC_COUNTRY_CODE, "国家码中的字符“😀”不能用GBK编码表示"},
        {{{IDC_NETWORK_NAME, "中😀"}}, IDC_NETWORK_NAME, "网络名称中的字符“😀”不能用GBK编码表示"},
    };
    for (const auto& [texts, focus, message] : cases) {
        page_.show();
        for (const auto& [control, text] : texts) controls_.texts[control] = text;
        EXPECT_FALSE(page_.accept()) << message;
        EXPECT_EQ(said(), std::string("warn ") + message + '\n');
        EXPECT_EQ(controls_.focused, focus) << message;
    }
    EXPECT_EQ(network(), before);
    page_.show();
    controls_.texts[IDC_COUNTRY_CODE] = "CHN";
    controls_.texts[IDC_NETWORK_NAME] = longest;
    EXPECT_TRUE(page_.accept());
    EXPECT_EQ(network().countryCode, (std::array{'C', 'H', 'N', '\0'}));
    EXPECT_EQ(network().name, longest);
}

}  // namespace
}  // namespace korvane
