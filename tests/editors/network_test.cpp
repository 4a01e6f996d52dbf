#include "editors/network_table.h"
#include "resources/ids.h"
#include "support/list_editing.h"

namespace korvane {
namespace {

using Rows = std::vector<ListRow>;

constexpr int channel = IDC_CHANNEL_NUMBER, frequency = IDC_CENTRE_FREQUENCY,
              number = IDC_NEIGHBOUR_NUMBER, neighbourFrequency = IDC_NEIGHBOUR_FREQUENCY;

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
    NetworkInfo expected = network();
    EXPECT_TRUE(edit(points_, 0, {{frequency, " 482"}}));
    EXPECT_TRUE(add(points_, 0, {{frequency, "474"}}));
    expected.otherFrequencies.append({0, 0, {}, 47'400'000});
    EXPECT_TRUE(edit(neighbours_, 0, {}) && edit(neighbours_, 1, {{number, "70002"}}));
    expected.neighbours[0].level = 1;
    expected.neighbours[1].networkNumber = 70002;
    EXPECT_TRUE(add(neighbours_, 0, {}));
    expected.neighbours.append({1, 0, 0, 0, 0, 0});
    EXPECT_TRUE(add(neighbours_, 0, {{number, "4294967295"}, {neighbourFrequency, "42949"}}));
    expected.neighbours.append({1, 0, 0, 0, 0xFFFFFFFF, 4'294'900'000});
    EXPECT_TRUE(edit(neighbours_, 3, {{IDC_NETWORK_LEVEL, "4"}, {IDC_BANDWIDTH, "1"}}));
    expected.neighbours[3].level = 5;
    expected.neighbours[3].bandwidth = 1;
    EXPECT_EQ(network(), expected);
    EXPECT_EQ(points_.rows(), (Rows{{"22", "482", "2M"}, {"0", "474", "8M"}}));
    EXPECT_EQ(neighbours_.rows()[0], (ListRow{"70000", "一级", "30", "522", "2M"}));
    EXPECT_EQ(neighbours_.rows()[3], (ListRow{"4294967295", "五级", "0", "42949", "2M"}));
    EXPECT_FALSE(points_.edit(0) || neighbours_.edit(0)) << "cancelled";
}

TEST_F(Network, WrongRecordsAreRefusedWhereTheyStand) {
    model_->addFrequencyPoint({23, 0, {}, 0});
    const NetworkInfo before = network();
    for (const auto& [text, message] : {std::pair{"21", "其他频道不能包含当前网络中的频点"},
                                        {"22", "已有相同频道"},
                                        {"256", "请输入 0 和 255 之间的整数。"}}) {
        expectRefused(add(points_, 0, {{channel, text}}), channel, message);
        expectRefused(edit(points_, 1, {{channel, text}}), channel, message);
    }
    const char* const taken = "已有相同网络号的网络";
    expectRefused(add(neighbours_, 0, {{number, "70000"}}), number, taken);
    expectRefused(edit(neighbours_, 1, {{number, "70000"}}), number, taken);
    const char* const range = "请输入 0 和 42949 之间的整数。";
    expectRefused(add(points_, 0, {{frequency, "42950"}}), frequency, range);
    expectRefused(add(neighbours_, 0, {{neighbourFrequency, "42950"}}), neighbourFrequency, range);
    expectRefused(edit(neighbours_, 1, {{channel, "256"}}), channel,
                  "请输入 0 和 255 之间的整数。");
    EXPECT_EQ(network(), before);
}

TEST_F(Network, FullListsRefuseBeforeTheirDialogOpens) {
    for (std::uint8_t i = 101; i < 116; ++i) model_->addFrequencyPoint({i, 0, {}, 0});
    for (std::uint8_t i = 2; i < 16; ++i) model_->addNeighbourNetwork({1, 0, 0, 0, i, 0});
    EXPECT_FALSE(points_.add(0) || neighbours_.add(0));
    EXPECT_EQ(said(), "warn 最多支持16个其他频点\nwarn 最多支持16个其他网络\n");
    EXPECT_TRUE(points_.remove(1) && neighbours_.remove(1));
    EXPECT_EQ(network().otherFrequencies[1].channelNumber, 102);
    EXPECT_EQ(network().neighbours[1].networkNumber, 2u);
    EXPECT_FALSE(forms_.shown != 0 || points_.add(0) || neighbours_.add(0));
    EXPECT_EQ(forms_.shown, 2) << "there is room again";
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
    EXPECT_TRUE(commit({{IDC_COUNTRY_CODE, "C"}, {IDC_NETWORK_LEVEL, "2"}, {channel, "255"}}));
    EXPECT_TRUE(commit({{IDC_NETWORK_NUMBER, "65535"}, {frequency, "475"}, {IDC_BANDWIDTH, "1"}}));
    EXPECT_TRUE(commit({{IDC_NETWORK_NAME, "地方"}}));
    expected.countryCode = {'C'};
    expected.level = 3;
    expected.networkNumber = 65535;
    expected.name = "\xB5\xD8\xB7\xBD";
    expected.ownFrequency = {255, 1, {3, 4}, 47'500'000};
    EXPECT_EQ(network(), expected);
}

TEST_F(NetworkFields, WrongEntriesAreRefusedWhereTheyStandAndTakeNothing) {
    const NetworkInfo before = network();
    const std::string longest(256, 'n'), tooLong(257, 'n');
    const struct {
        std::string number, country, name;
        int focus;
        const char* message;
    } cases[] = {
        {"65536", "CHNA", "", IDC_NETWORK_NUMBER, "请输入 0 和 65535 之间的整数。"},
        {"8", "CHNA", tooLong, IDC_COUNTRY_CODE, "国家码超过3个字符"},
        {"8", "中国", "", IDC_COUNTRY_CODE, "国家码超过3个字符"},
        {"8", "CHN", tooLong, IDC_NETWORK_NAME, "网络名称超过256个字符"},
        {"8", "CHN", longest.substr(1) + "中", IDC_NETWORK_NAME, "网络名称超过256个字符"},
        {"8", "😀", "", IDC_COUNTRY_CODE, "国家码中的字符“😀”不能用GBK编码表示"},
        {"8", "中", "😀", IDC_NETWORK_NAME, "网络名称中的字符“😀”不能用GBK编码表示"},
    };
    for (const auto& [id, country, name, focus, message] : cases)
        expectRefused(
            commit(
                {{IDC_NETWORK_NUMBER, id}, {IDC_COUNTRY_CODE, country}, {IDC_NETWORK_NAME, name}}),
            focus, message);
    EXPECT_EQ(network(), before);
    EXPECT_TRUE(commit({{IDC_COUNTRY_CODE, "CHN"}, {IDC_NETWORK_NAME, longest}}));
    EXPECT_EQ(network().countryCode, (std::array{'C', 'H', 'N', '\0'}));
    EXPECT_EQ(network().name, longest);
}

}  // namespace
}  // namespace korvane
