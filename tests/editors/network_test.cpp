#include "editors/network_table.h"
#include "resources/ids.h"
#include "support/list_editing.h"

namespace korvane {
namespace {

using Rows = std::vector<ListRow>;

constexpr int channel = IDC_CHANNEL_NUMBER, frequency = IDC_CENTRE_FREQUENCY,
              number = IDC_NEIGHBOUR_NUMBER, level = IDC_NETWORK_LEVEL, code = IDC_COUNTRY_CODE,
              name = IDC_NETWORK_NAME, ownNumber = IDC_NETWORK_NUMBER;

class Network : public test::ListEditing {
  protected:
    Network() {
        NetworkInfo network;
        network.countryCode = {'C', 'N', 0, 'x'};
        network.ownFrequency = {21, 9, {3, 4}, 47412345};
        network.otherFrequencies.append({22, 1, {5, 6}, 48212345});
        network.neighbours.append({0, 30, 1, 8, 70000, 52212345});
        network.neighbours.append({9, 30, 7, 8, 70001, 52212345});
        model_->setNetworkInfo(network);
    }
    const NetworkInfo& network() const { return tables().network; }

    FrequencyPointList points_{editing_};
    NeighbourNetworkList neighbours_{editing_};
};

// What no control can show stays, but a level that was never set becomes one.
TEST_F(Network, RecordsTakeWhatWasEnteredInTheDevicesUnits) {
    const auto& points = network().otherFrequencies;
    const auto& networks = network().neighbours;
    EXPECT_TRUE(entering({{frequency, " 482"}}, points_).edit(0));
    EXPECT_TRUE(entering({{frequency, "474"}}, points_).add(0));
    EXPECT_EQ(points[0], (FrequencyPoint{22, 1, {5, 6}, 48212345}));
    EXPECT_EQ(points[1], (FrequencyPoint{0, 0, {}, 47'400'000}));
    EXPECT_EQ(points_.rows(), (Rows{{"22", "482", "2M"}, {"0", "474", "8M"}}));
    EXPECT_TRUE(entering({}, neighbours_).edit(0) && entering({}, neighbours_).add(0));
    EXPECT_TRUE(entering({{number, "4294967295"}, {level, "4"}}, neighbours_).edit(2));
    EXPECT_TRUE(entering({{number, "70002"}}, neighbours_).edit(1));
    EXPECT_EQ(networks[0], (NeighbourNetwork{1, 30, 1, 8, 70000, 52212345}));
    EXPECT_EQ(networks[1], (NeighbourNetwork{9, 30, 7, 8, 70002, 52212345}));
    EXPECT_EQ(networks[2], (NeighbourNetwork{5, 0, 0, 0, 0xFFFFFFFF, 0}));
    EXPECT_EQ(neighbours_.rows()[0], (ListRow{"70000", "一级", "30", "522", "2M"}));
    EXPECT_EQ(neighbours_.rows()[2], (ListRow{"4294967295", "五级", "0", "0", "8M"}));
}

TEST_F(Network, WrongRecordsAreRefusedWhereTheyStand) {
    model_->addFrequencyPoint({23, 0, {}, 0});
    const NetworkInfo before = network();
    const std::tuple<EditList*, int, const char*, const char*> cases[] = {
        {&points_, channel, "21", "其他频道不能包含当前网络中的频点"},
        {&points_, channel, "22", "已有相同频道"},
        {&points_, channel, "256", "请输入 0 和 255 之间的整数。"},
        {&neighbours_, number, "70000", "已有相同网络号的网络"},
        {&neighbours_, channel, "256", "请输入 0 和 255 之间的整数。"},
    };
    for (const auto& [list, control, text, message] : cases) {
        expectRefused(entering({{control, text}}, *list).add(0), control, message);
        expectRefused(entering({{control, text}}, *list).edit(1), control, message);
    }
    EXPECT_EQ(network(), before);
}

TEST_F(Network, FullListsRefuseBeforeTheirDialogOpens) {
    for (std::uint8_t i = 101; i < 116; ++i) model_->addFrequencyPoint({i, 0, {}, 0});
    for (std::uint8_t i = 2; i < 16; ++i) model_->addNeighbourNetwork({1, 0, 0, 0, i, 0});
    EXPECT_FALSE(points_.add(0) || neighbours_.add(0) || forms_.shown != 0);
    EXPECT_EQ(said(), "warn 最多支持16个其他频点\nwarn 最多支持16个其他网络\n");
    EXPECT_TRUE(points_.remove(1) && neighbours_.remove(1));
    EXPECT_FALSE(points_.add(0) || neighbours_.add(0) || forms_.shown != 2) << "cancelled";
}

class NetworkFields : public Network {
  protected:
    // Whether the page takes the entries, made after it was filled.
    bool commit(const Entries& entries) {
        page_.show();
        put(entries, forms_.controls);
        return page_.accept();
    }

    NetworkTableForm form_{*model_, prompts_};
    FormExchange page_{form_, forms_.controls, prompts_};
};

// The lists are the operator's at once, the fields when the page is committed.
TEST_F(NetworkFields, TakeWhatWasEnteredAndLeaveTheLists) {
    NetworkInfo expected = network();
    page_.show();
    EXPECT_TRUE(points_.remove(0) && neighbours_.remove(0) && neighbours_.remove(0));
    expected.otherFrequencies.clear();
    expected.neighbours.clear();
    expected.tableId = expected.level = 1;
    EXPECT_TRUE(page_.accept());
    EXPECT_EQ(network(), expected) << "table id and level alone are made right";
    EXPECT_TRUE(commit({{code, "C"}, {level, "2"}, {channel, "255"}, {name, "地方"}}));
    EXPECT_TRUE(commit({{ownNumber, "65535"}, {frequency, "475"}, {IDC_BANDWIDTH, "1"}}));
    expected.countryCode = {'C'};
    expected.level = 3;
    expected.networkNumber = 65535;
    expected.name = "\xB5\xD8\xB7\xBD";
    expected.ownFrequency = {255, 1, {3, 4}, 47'500'000};
    EXPECT_EQ(network(), expected);
}

// Checked in this order; each is put right, or made wrong in another way, once it was refused.
TEST_F(NetworkFields, WrongEntriesAreRefusedWhereTheyStandAndTakeNothing) {
    const NetworkInfo before = network();
    const std::string longest(256, 'n'), tooLong = longest.substr(1) + "中";
    const std::tuple<int, std::string, std::string> steps[] = {
        {ownNumber, "请输入 0 和 65535 之间的整数。", "8"},
        {code, "国家码超过3个字符", "😀"},
        {code, "国家码中的字符“😀”不能用GBK编码表示", "CHN"},
        {name, "网络名称超过256个字符", "😀"},
        {name, "网络名称中的字符“😀”不能用GBK编码表示", longest},
    };
    Entries entries{{ownNumber, "65536"}, {code, "中国"}, {name, tooLong}};
    for (const auto& [control, message, next] : steps) {
        expectRefused(commit(entries), control, message);
        entries[control] = next;
    }
    EXPECT_EQ(network(), before);
    EXPECT_TRUE(commit(entries));
    EXPECT_EQ(network().countryCode, (std::array{'C', 'H', 'N', '\0'}));
    EXPECT_EQ(network().name, longest);
}

}  // namespace
}  // namespace korvane
