#include <cstring>
#include <tuple>

#include "editors/channel_form.h"
#include "editors/channel_list.h"
#include "resources/ids.h"
#include "support/editing_fixture.h"

namespace korvane {
namespace {

using enum ChannelType;
using Texts = std::map<int, std::string>;

const std::string multicast = "warn 组播地址不正确!\n";
const std::string twice = "warn 已有相同IP和端口的输入通道!\n";

// Its bytes but 0, by their places.
std::string bytesOf(const InputChannelRecord& record) {
    std::string text;
    for (std::size_t i = 0; i < sizeof record; ++i)
        if (const auto byte = reinterpret_cast<const std::uint8_t*>(&record)[i])
            text += std::to_string(i) + ':' + std::to_string(byte) + ' ';
    return text;
}

class InputChannels : public test::EditingFixture {
  protected:
    static void enter(Controls& controls, const Ipv4& address, const Texts& texts) {
        controls.addresses = {{IDC_CHANNEL_ADDRESS, address},
                              {IDC_GENERAL_CHANNEL_ADDRESS, address}};
        for (const auto& [id, text] : texts) controls.texts[id] = text;
    }
    static void enterMost(Controls& controls) {
        controls.checks = {{IDC_FRAME_RATE_GIVEN, true}, {IDC_RTCP_SYNC, true}};
        controls.selections = {{IDC_FRAME_RATE, 3}, {IDC_CODING, 0}, {IDC_SAMPLE_RATE, 8}};
        controls.texts[IDC_PAYLOAD_TYPE] = "127";
        controls.texts[IDC_DATA_UNIT_TYPE] = "255";
        controls.texts[IDC_SEND_INTERVAL] = "4294967295";
    }
    bool add(ChannelType type, const Ipv4& address, const Texts& texts, int before = 0) {
        list_.select(type);
        forms_.script = {[=](Controls& controls) { enter(controls, address, texts); }};
        return list_.add(before);
    }
    const InputChannelRecord& first() const { return model_->flatChannels()[0]; }

    ChannelList list_{editing_};
};

TEST_F(InputChannels, AreStoredWithTheirDefaultsOrWithWhatWasEntered) {
    const std::string audio = "38:1 42:8 49:127 ", most = "48:255 56:255 57:255 58:255 59:255 ";
    const std::tuple<std::size_t, std::string, std::string, std::string> cases[] = {
        {2, "16:1 ", "20:1 32:3 49:127 ", "\tAVS"},
        {3, "36:1 38:1 42:7 ", audio, "\tDRA\t96KHz"},
        {1, "38:1 42:7 ", audio, "\tDRA\t96KHz"},
        {0, "", "", ""},
        {0, "56:232 57:3 ", most, ""},
        {0, "", most, ""},
        {0, "", "", ""},
        {0, "", "", ""},
    };
    for (std::uint8_t i = 0; i < limits::channelTypes; ++i) {
        const auto& [codings, defaults, filled, row] = cases[i];
        for (const bool all : {false, true}) {
            std::string bytes = std::string(i > 2 ? "0:2 " : "") + "4:225 5:1 6:2 7:3 8:2 9:1 ";
            if (i > 0) bytes += "12:" + std::to_string(i) + ' ';
            if (i < 3 && all) bytes += "13:1 ";
            model_->resetModel();
            forms_.script = {[&](Controls& controls) {
                EXPECT_EQ(controls.items[IDC_CODING].size(), codings);
                enter(controls, {225, 1, 2, 3}, {{IDC_PORT, "258"}});
                if (all) enterMost(controls);
            }};
            list_.select(static_cast<ChannelType>(i));
            ASSERT_TRUE(list_.add(0)) << said();
            InputChannelRecord record = first();
            EXPECT_EQ(std::exchange(record.channelId, 0), 1u);
            EXPECT_EQ(bytesOf(record), bytes + (all ? filled : defaults));
        }
        const ListRow cells = list_.rows()[0];
        std::string shown;
        for (const std::string& cell : cells) shown += cell + '\t';
        EXPECT_EQ(shown, std::string(i < 3 ? "0\tRTP" : "0\tUDP") + "\t225.1.2.3:258" + row + '\t');
        EXPECT_EQ(list_.columns().size(), cells.size());
    }
}

// What the exchange refuses comes before the address, the address before its pair with the port.
TEST_F(InputChannels, AreRefusedInThisOrderWhereTheFaultStands) {
    const std::string from0 = "warn 请输入 0 和 ", end = " 之间的整数。\n";
    const Texts both = {{IDC_PORT, "65536"}, {IDC_PAYLOAD_TYPE, "128"}};
    const Ipv4 below = {223, 255, 255, 255}, above = {240, 0, 0, 0}, known = {225, 1, 2, 3};
    const std::tuple<ChannelType, Ipv4, Texts, int, std::string> cases[] = {
        {Video, below, both, IDC_PORT, from0 + "65535" + end},
        {Audio, below, {{IDC_PAYLOAD_TYPE, "128"}}, IDC_PAYLOAD_TYPE, from0 + "127" + end},
        {Ecm, below, {{IDC_DATA_UNIT_TYPE, "256"}}, IDC_DATA_UNIT_TYPE, from0 + "255" + end},
        {Video, below, {}, IDC_CHANNEL_ADDRESS, multicast},
        {Emm, {0, 0, 0, 1}, {}, IDC_CHANNEL_ADDRESS, multicast},
        {Data, above, {}, IDC_GENERAL_CHANNEL_ADDRESS, multicast},
        {Emergency, known, {}, IDC_GENERAL_CHANNEL_ADDRESS, twice},
        {Audio, known, {}, IDC_CHANNEL_ADDRESS, twice},
        {Audio, known, {{IDC_PORT, "1"}}, 0, ""},
        {Video, {}, {}, 0, ""},
        {Ecm, {224, 0, 0, 0}, {}, 0, ""},
        {Esg, {239, 255, 255, 255}, {}, 0, ""},
    };
    ASSERT_TRUE(add(Esg, known, {}));
    for (const auto& [type, address, texts, focus, message] : cases) {
        EXPECT_EQ(add(type, address, texts), focus == 0);
        EXPECT_EQ(said(), message);
        EXPECT_EQ(forms_.controls.focused, focus);
    }
}

// Not even what no control can show, nor an address that a new channel could not have.
TEST_F(InputChannels, EditingKeepsWhatNobodyTouched) {
    const std::string modes[] = {"RTP", "RTP", "RTP", "TCP", "UDP", "UDP", "TCP", "UDP"};
    for (std::uint8_t type = 0; type < limits::channelTypes; ++type) {
        InputChannelRecord record{};
        std::memset(&record, 0xA5, sizeof record);
        record.receiveMode = type == 7;
        record.type = type;
        record.audioParametersGiven = 1;
        model_->resetModel();
        model_->addChannel(record, 0);
        record = first();
        list_.select(static_cast<ChannelType>(type));
        forms_.script = {[](Controls& controls) {
            EXPECT_EQ(controls.selected(IDC_FRAME_RATE), 0);
            EXPECT_EQ(controls.selected(IDC_SAMPLE_RATE), 0);
        }};
        EXPECT_TRUE(list_.edit(0)) << said();
        EXPECT_EQ(first(), record);
        const ListRow row = list_.rows().at(0);
        EXPECT_EQ(row[1], modes[type]);
        if (type > 2) continue;
        EXPECT_EQ(row[3], "165") << "it has no name";
        EXPECT_EQ(forms_.controls.texts[IDC_PAYLOAD_TYPE], "127");
    }
}

// An address is checked when either half of it changed; a frame rate counts while it is given.
TEST_F(InputChannels, EditingStoresWhatWasEnteredUnlessItIsRefused) {
    const std::tuple<Ipv4, Texts, bool, int, std::string, std::string> cases[] = {
        {{}, {{IDC_PAYLOAD_TYPE, "96"}}, false, 0, "8:2 16:1 49:96 52:2 ", ""},
        {{}, {{IDC_PORT, "1"}}, false, 0, "8:2 16:1 49:96 52:2 ", twice},
        {{1, 1, 1, 1}, {}, false, 0, "8:2 16:1 49:96 52:2 ", multicast},
        {{}, {{IDC_PORT, "3"}}, false, 3, "8:3 16:1 49:96 52:2 ", ""},
        {{}, {}, true, 3, "8:3 16:1 20:1 32:3 49:96 52:2 ", ""},
        {{}, {}, false, 3, "8:3 16:1 49:96 52:2 ", ""},
    };
    ASSERT_TRUE(add(Audio, {}, {{IDC_PORT, "1"}}) && add(Video, {}, {{IDC_PORT, "2"}}));
    for (const auto& [address, texts, given, rate, bytes, message] : cases) {
        forms_.script = {[&](Controls& controls) {
            EXPECT_EQ(controls.enabledOnes[IDC_FRAME_RATE], first().frameRateGiven == 1);
            enter(controls, address, texts);
            controls.checks[IDC_FRAME_RATE_GIVEN] = given;
            controls.selections[IDC_FRAME_RATE] = rate;
        }};
        EXPECT_EQ(list_.edit(0), message.empty());
        EXPECT_EQ(bytesOf(first()), bytes);
        EXPECT_EQ(said(), message);
    }
}

TEST_F(InputChannels, GoBeforeTheSelectedOneUntilSixtyAreThere) {
    for (int i = 3; i < 60; ++i) ASSERT_TRUE(add(Esg, {}, {{IDC_PORT, std::to_string(i)}}));
    for (const auto& [port, before] : {std::pair{"1", EditList::noRow}, {"2", 0}, {"3", 1}})
        ASSERT_TRUE(add(Audio, {225, 0, 0, 0}, {{IDC_PORT, port}}, before));
    EXPECT_FALSE(add(Audio, {}, {{IDC_PORT, "9000"}}, 0));
    EXPECT_EQ(said(), "warn 超过支持的最大输入通道数\n");
    EXPECT_TRUE(list_.remove(1));
    EXPECT_FALSE(list_.add(0)) << "cancelled";
    ASSERT_EQ(list_.rows().size(), 2u);
    EXPECT_EQ(list_.rows()[0][2] + list_.rows()[1][2], "225.0.0.0:2225.0.0.0:1");
}

}  // namespace
}  // namespace korvane
