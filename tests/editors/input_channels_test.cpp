#include <cstring>
#include <gmock/gmock.h>

#include "editors/channel_form.h"
#include "editors/channel_list.h"
#include "resources/ids.h"
#include "support/editing_fixture.h"

namespace korvane {
namespace {

using enum ChannelType;

// Its bytes but 0, by their places.
std::string bytesOf(const InputChannelRecord& record) {
    std::array<std::uint8_t, sizeof record> bytes{};
    std::memcpy(bytes.data(), &record, sizeof record);
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (bytes[i] != 0) text += std::to_string(i) + ':' + std::to_string(bytes[i]) + ' ';
    return text;
}

class InputChannels : public test::EditingFixture {
  protected:
    using Script = std::function<void(Controls&)>;

    static void enter(Controls& controls, const Ipv4& address, const std::string& port) {
        const bool general = controls.addresses.contains(IDC_GENERAL_CHANNEL_ADDRESS);
        controls.addresses[general ? IDC_GENERAL_CHANNEL_ADDRESS : IDC_CHANNEL_ADDRESS] = address;
        controls.texts[IDC_PORT] = port;
    }
    bool add(ChannelType type, const Script& script, int before = EditList::noRow) {
        list_.select(type);
        forms_.script = {script};
        return list_.add(before);
    }
    bool add(ChannelType type, const Ipv4& address, const std::string& port,
             int before = EditList::noRow) {
        const Script script = [&](Controls& controls) { enter(controls, address, port); };
        return add(type, script, before);
    }
    bool edit(const Script& script) {
        forms_.script = {script};
        return list_.edit(0);
    }
    // The only channel there is.
    void keep(const InputChannelRecord& record) {
        FlatChannelList all;
        all.append(record);
        model_->setFlatChannels(all);
        list_.select(static_cast<ChannelType>(record.type));
    }
    const InputChannelRecord& first() const { return model_->flatChannels()[0]; }

    ChannelList list_{editing_};
};

// Texts and chosen items, with the number of items, by control.
std::string shownBy(const test::ScriptedControls& controls) {
    std::map<int, std::string> shown = controls.texts;
    for (const auto& [id, items] : controls.items)
        shown[id] = items.at(static_cast<std::size_t>(controls.selected(id))) + '/' +
                    std::to_string(items.size());
    std::string text;
    for (const auto& [id, value] : shown) text += std::to_string(id) + '=' + value + ' ';
    return text;
}

TEST_F(InputChannels, AreStoredWithTheirDefaultsOrWithWhatWasEntered) {
    const auto fillAll = [](Controls& controls) {
        controls.checks[IDC_FRAME_RATE_GIVEN] = controls.checks[IDC_RTCP_SYNC] = true;
        controls.selections[IDC_FRAME_RATE] = 3;
        controls.selections[IDC_CODING] = 0;
        controls.selections[IDC_SAMPLE_RATE] = 8;
        controls.texts[IDC_PAYLOAD_TYPE] = "127";
        controls.texts[IDC_DATA_UNIT_TYPE] = "255";
        controls.texts[IDC_SEND_INTERVAL] = "4294967295";
    };
    const std::string where = "4:225 5:1 6:2 7:3 8:2 9:1 ", id = "52:1 ",
                      data = "48:255 52:1 56:255 57:255 58:255 59:255 ";
    const std::string audio = "1021=0 1032=0 1038=48KHz/9 1108=模式1/2 ";
    const struct {
        ChannelType type;
        std::string shown, defaults, filled;
    } cases[] = {
        {Video, "1014=H.264/2 1021=0 1032=0 1108=模式1/2 1109=25Hz/4 ", where + "16:1 " + id,
         where + "13:1 20:1 32:3 49:127 " + id},
        {Audio, "1014=HE-AAC/3 " + audio, where + "12:1 36:1 38:1 42:7 " + id,
         where + "12:1 13:1 38:1 42:8 49:127 " + id},
        {Dra, "1014=DRA/1 " + audio, where + "12:2 38:1 42:7 " + id,
         where + "12:2 13:1 38:1 42:8 49:127 " + id},
        {Esg, "1021=0 ", "0:2 " + where + "12:3 " + id, "0:2 " + where + "12:3 " + id},
        {Ecm, "1021=0 1026=0 1027=1000 ", "0:2 " + where + "12:4 " + id + "56:232 57:3 ",
         "0:2 " + where + "12:4 " + data},
        {Emm, "1021=0 1026=0 1027=0 ", "0:2 " + where + "12:5 " + id,
         "0:2 " + where + "12:5 " + data},
        {Data, "1021=0 ", "0:2 " + where + "12:6 " + id, "0:2 " + where + "12:6 " + id},
        {Emergency, "1021=0 ", "0:2 " + where + "12:7 " + id, "0:2 " + where + "12:7 " + id},
    };
    for (const auto& [type, shown, defaults, filled] : cases) {
        for (const bool fill : {false, true}) {
            model_->resetModel();
            ASSERT_TRUE(add(type, [&](Controls& controls) {
                EXPECT_EQ(shownBy(controls), shown);
                enter(controls, {225, 1, 2, 3}, "258");
                if (fill) fillAll(controls);
            })) << said();
            EXPECT_EQ(bytesOf(first()), fill ? filled : defaults);
        }
    }
}

// What the exchange refuses comes before the address, the address before its pair with the port.
TEST_F(InputChannels, AreRefusedInThisOrderWhereTheFaultStands) {
    const char *multicast = "组播地址不正确!", *twice = "已有相同IP和端口的输入通道!";
    const Ipv4 below = {223, 255, 255, 255}, first = {224, 0, 0, 0}, last = {239, 255, 255, 255},
               above = {240, 0, 0, 0}, known = {225, 1, 2, 3};
    const struct {
        ChannelType type;
        Ipv4 address;
        const char* port;
        std::pair<int, const char*> entry;
        int focus;
        const char* message;
    } cases[] = {
        {Video,
         below,
         "65536",
         {IDC_PAYLOAD_TYPE, "128"},
         IDC_PORT,
         "请输入 0 和 65535 之间的整数。"},
        {Video,
         below,
         "1",
         {IDC_PAYLOAD_TYPE, "128"},
         IDC_PAYLOAD_TYPE,
         "请输入 0 和 127 之间的整数。"},
        {Audio, below, "1", {IDC_PAYLOAD_TYPE, "x"}, IDC_PAYLOAD_TYPE, "请输入一个整数。"},
        {Ecm,
         below,
         "1",
         {IDC_DATA_UNIT_TYPE, "256"},
         IDC_DATA_UNIT_TYPE,
         "请输入 0 和 255 之间的整数。"},
        {Ecm,
         below,
         "1",
         {IDC_SEND_INTERVAL, "4294967296"},
         IDC_SEND_INTERVAL,
         "请输入 0 和 4294967295 之间的整数。"},
        {Video, below, "5000", {}, IDC_CHANNEL_ADDRESS, multicast},
        {Dra, above, "5000", {}, IDC_CHANNEL_ADDRESS, multicast},
        {Emm, {0, 0, 0, 1}, "5000", {}, IDC_CHANNEL_ADDRESS, multicast},
        {Data, above, "5000", {}, IDC_GENERAL_CHANNEL_ADDRESS, multicast},
        {Emergency, known, "5000", {}, IDC_GENERAL_CHANNEL_ADDRESS, twice},
        {Audio, known, "5000", {}, IDC_CHANNEL_ADDRESS, twice},
        {Audio, known, "5001", {}, 0, nullptr},
        {Video, {}, "65535", {IDC_PAYLOAD_TYPE, "127"}, 0, nullptr},
        {Ecm, first, "0", {IDC_DATA_UNIT_TYPE, "0"}, 0, nullptr},
        {Esg, last, "1", {}, 0, nullptr},
    };
    ASSERT_TRUE(add(Esg, known, "5000"));
    for (const auto& [type, address, port, entry, focus, message] : cases) {
        EXPECT_EQ(add(type,
                      [&](Controls& controls) {
                          enter(controls, address, port);
                          controls.texts[entry.first] = entry.second ? entry.second : "";
                      }),
                  focus == 0);
        EXPECT_EQ(said(), message ? std::string("warn ") + message + '\n' : "");
        EXPECT_EQ(forms_.controls.focused, focus);
    }
    EXPECT_EQ(model_->flatChannels().size(), 5u);
}

// Not even what no control can show, nor an address that a new channel could not have.
TEST_F(InputChannels, EditingKeepsWhatNobodyTouched) {
    for (std::uint8_t type = 0; type < limits::channelTypes; ++type) {
        InputChannelRecord record{};
        std::memset(&record, 0xA5, sizeof record);
        record.position = 0;
        record.type = type;
        record.audioParametersGiven = 1;
        keep(record);
        const auto look = [](Controls& controls) {
            EXPECT_EQ(controls.selected(IDC_FRAME_RATE), 0);
            const std::string payload = controls.text(IDC_PAYLOAD_TYPE);
            EXPECT_TRUE(payload.empty() || payload == "127") << payload;
        };
        EXPECT_TRUE(edit(look));
        EXPECT_EQ(first(), record);
    }
    EXPECT_EQ(said(), "");
}

// All but the address is stored without its check; a change of either half of it is checked.
TEST_F(InputChannels, OnlyAnAddressThatChangedIsChecked) {
    ASSERT_TRUE(add(Audio, {225, 1, 1, 1}, "1"));
    ASSERT_TRUE(add(Video, {225, 1, 1, 1}, "2"));
    const auto original = first();
    EXPECT_TRUE(edit([](Controls& controls) { controls.texts[IDC_PAYLOAD_TYPE] = "96"; }));
    EXPECT_EQ(first().payloadType, 96);
    EXPECT_FALSE(edit([](Controls& controls) { controls.texts[IDC_PORT] = "1"; }));
    EXPECT_FALSE(edit([](Controls& controls) {
        controls.addresses[IDC_CHANNEL_ADDRESS] = {1, 1, 1, 1};
    }));
    EXPECT_EQ(said(), "warn 已有相同IP和端口的输入通道!\nwarn 组播地址不正确!\n");
    EXPECT_TRUE(edit([](Controls& controls) { controls.texts[IDC_PORT] = "3"; }));
    EXPECT_EQ(first().port, 3);
    EXPECT_EQ(first().channelId, original.channelId);
}

TEST_F(InputChannels, AFrameRateCountsOnlyWhileItIsGiven) {
    const struct {
        std::uint8_t given;
        std::uint16_t rate;
        bool check;
        std::uint16_t stored;
    } cases[] = {{1, 9, true, 9}, {1, 3, false, 0}, {1, 3, true, 3}, {0, 2, false, 0}};
    for (const auto& [given, rate, check, stored] : cases) {
        InputChannelRecord record{};
        record.frameRateGiven = given;
        record.videoFrameRate = rate;
        keep(record);
        EXPECT_TRUE(edit([&](Controls& controls) {
            EXPECT_EQ(controls.enabledOnes[IDC_FRAME_RATE], given != 0);
            EXPECT_EQ(controls.selected(IDC_FRAME_RATE), rate > 3 ? 0 : rate);
            controls.checks[IDC_FRAME_RATE_GIVEN] = check;
        }));
        EXPECT_EQ(first().frameRateGiven, check);
        EXPECT_EQ(first().videoFrameRate, stored);
    }
}

TEST_F(InputChannels, OfTheSelectedTypeAreListedInItsColumns) {
    const std::string address = "225.1.2.3:65535";
    const struct {
        ChannelType type;
        std::uint8_t mode, coding;
        std::uint16_t rate;
        ListRow row;
    } cases[] = {
        {Video, 0, 0, 0, {"0", "RTP", address, "AVS"}},
        {Video, 0, 2, 0, {"0", "RTP", address, "2"}},
        {Audio, 2, 2, 3, {"0", "RTP", address, "AAC", "22.05KHz"}},
        {Dra, 1, 0, 8, {"0", "RTP", address, "DRA", "96KHz"}},
        {Esg, 0, 0, 0, {"0", "TCP", address}},
        {Ecm, 0, 0, 0, {"0", "UDP", address}},
        {Emm, 0, 0, 0, {"0", "UDP", address}},
        {Data, 1, 0, 0, {"0", "UDP", address}},
        {Emergency, 2, 0, 0, {"0", "UDP", address}},
    };
    const char* titles[] = {"序号", "输入方式", "接收地址", "编码类型", "采样率"};
    for (const auto& [type, mode, coding, rate, row] : cases) {
        InputChannelRecord record{};
        record.type = static_cast<std::uint8_t>(type);
        record.receiveMode = mode;
        record.address = {225, 1, 2, 3};
        record.port = 65535;
        record.videoCoding = record.audioCoding = coding;
        record.audioSampleRate = rate;
        keep(record);
        EXPECT_THAT(list_.rows(), testing::ElementsAre(row));
        const auto columns = list_.columns();
        ASSERT_EQ(columns.size(), row.size());
        for (std::size_t i = 0; i < row.size(); ++i) EXPECT_EQ(columns[i].title, titles[i]);
    }
}

TEST_F(InputChannels, GoBeforeTheSelectedOneUntilSixtyAreThere) {
    const auto ports = [this] {
        std::string text;
        for (const auto& channel : model_->channels(1)) text += std::to_string(channel.port) + ' ';
        return text;
    };
    for (const auto& [port, before] : {std::pair{"1", -1}, {"2", -1}, {"3", 1}, {"4", 0}})
        ASSERT_TRUE(add(Audio, {}, port, before));
    EXPECT_EQ(ports(), "4 1 3 2 ");
    EXPECT_TRUE(list_.remove(2));
    EXPECT_EQ(ports(), "4 1 2 ");
    EXPECT_FALSE(list_.add(0)) << "cancelled";
    for (int i = 3; i < 60; ++i) ASSERT_TRUE(add(Esg, {}, std::to_string(1000 + i)));
    EXPECT_FALSE(add(Audio, {}, "9"));
    EXPECT_EQ(said(), "warn 超过支持的最大输入通道数\n");
    EXPECT_EQ(ports(), "4 1 2 ");
    EXPECT_EQ(model_->flatChannels().size(), 60u);
}

}  // namespace
}  // namespace korvane
