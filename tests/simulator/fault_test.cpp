#include <gtest/gtest.h>

#include "simulator/panel_side.h"

namespace korvane::test {
namespace {

class Faults : public testing::Test {
  protected:
    void add(const std::string& text) {
        std::string error;
        const auto fault = parseFault(text, error);
        ASSERT_TRUE(fault) << error;
        device_.faults().add(*fault);
    }
    // How many of 1,000 heartbeats are answered.
    int answeredOfThousand() {
        int answered = 0;
        for (int i = 0; i < 1000; ++i) answered += panel_.send(requestFrame(4006)).empty() ? 0 : 1;
        return answered;
    }

    SimulatedDevice device_;
    PanelSide panel_{device_};
};

TEST_F(Faults, CountedLossHitsThatManyRequestsOfTheCommand) {
    add("loss@4006:2");
    EXPECT_EQ(panel_.ask(4007).datagrams, 1u);
    EXPECT_EQ(panel_.ask(4006).datagrams, 0u);
    EXPECT_EQ(panel_.ask(4006).datagrams, 0u);
    EXPECT_EQ(panel_.ask(4006).datagrams, 1u);
    EXPECT_TRUE(device_.faults().all().empty());
}

TEST_F(Faults, LossByChanceTakesItsShareBothWays) {
    add("loss=30");
    const int answered = answeredOfThousand();  // 49 % are expected
    EXPECT_GT(answered, 420);
    EXPECT_LT(answered, 560);
    device_.faults().clear();
    add("loss=0");
    EXPECT_EQ(answeredOfThousand(), 1000);
}

TEST_F(Faults, SameSeedSameLosses) {
    const auto losses = [](std::uint32_t seed) {
        SimulationSettings settings;
        settings.seed = seed;
        SimulatedDevice device(settings);
        PanelSide panel(device);
        std::string error, pattern;
        device.faults().add(*parseFault("loss=50", error));
        for (int i = 0; i < 64; ++i) pattern += panel.ask(4006).datagrams == 0 ? '-' : '+';
        return pattern;
    };
    EXPECT_EQ(losses(5), losses(5));
    EXPECT_NE(losses(5), losses(6));
}

TEST_F(Faults, LostAnswerWasCarriedOutSilenceWasNot) {
    const Bytes params = pattern(144, 1);
    add("silence@SetDeviceParams:1");
    EXPECT_EQ(panel_.ask(100, params).datagrams, 0u);
    EXPECT_NE(panel_.ask(101).payload, params);
    add("lost-answer@100:1");
    EXPECT_EQ(panel_.ask(100, params).datagrams, 0u);
    EXPECT_EQ(panel_.ask(101).payload, params);
}

TEST_F(Faults, DelayAndLateAnswers) {
    panel_.nowMs = 10'000;
    add("delay=250:1");
    EXPECT_EQ(panel_.ask(4006).firstMs, 10'250u);
    add("late:1");
    const std::uint64_t lateMs = panel_.ask(4006).firstMs;
    EXPECT_GT(lateMs, 13'000u) << "the panel waits 3,000 ms";
    EXPECT_LT(lateMs, 13'300u) << "and drains after another 300";
    add("delay=1000:1");
    const Reply train = panel_.ask(3004);
    EXPECT_EQ(train.firstMs, 11'000u);
    EXPECT_EQ(train.lastMs, 11'500u) << "the pace stays";
}

TEST_F(Faults, DuplicatedDatagrams) {
    add("duplicate:1");
    const auto twice = panel_.send(requestFrame(4006));
    ASSERT_EQ(twice.size(), 2u);
    EXPECT_EQ(twice[0].bytes, twice[1].bytes);
    add("duplicate=3:1");
    EXPECT_EQ(panel_.send(requestFrame(3004)).size(), 12u * 4);
}

TEST_F(Faults, LiesInTheHeader) {
    add("wrong-code:1");
    EXPECT_EQ(panel_.ask(4006).code, 4007u);
    add("wrong-code=77:1");
    EXPECT_EQ(panel_.ask(4006).code, 77u);
    add("wrong-length:1");
    Reply reply = panel_.ask(4006);
    EXPECT_EQ(reply.lengthField, 3u);
    EXPECT_EQ(reply.payload.size(), 2u);
    add("wrong-length=0xFFFFFFFF:1");
    EXPECT_EQ(panel_.ask(4006).lengthField, 0xFFFFFFFFu);
}

TEST_F(Faults, PayloadOfAnotherSize) {
    add("wrong-size@4007:1");
    Reply reply = panel_.ask(4007);
    EXPECT_EQ(reply.lengthField, 48333u);
    EXPECT_EQ(reply.payload.size(), 48333u);
    add("wrong-size=5@4007:1");
    EXPECT_EQ(panel_.ask(4007).payload.size(), 5u);
}

TEST_F(Faults, RefusalIsNotCarriedOut) {
    const Bytes params = pattern(144, 1);
    add("refuse=0x80000001@100:1");
    const Reply reply = panel_.ask(100, params);
    EXPECT_EQ(reply.status, 0x80000001u);
    EXPECT_TRUE(reply.payload.empty());
    EXPECT_NE(panel_.ask(101).payload, params);
}

TEST_F(Faults, CutAndMisannouncedTrains) {
    add("cut=4:1");
    EXPECT_EQ(panel_.ask(4006).datagrams, 1u) << "a short answer is no train and does not count";
    EXPECT_EQ(panel_.send(requestFrame(3004)).size(), 1u + 4u);
    add("cut=0:1");
    EXPECT_EQ(panel_.send(requestFrame(3004)).size(), 1u);
    add("wrong-total=0:1");
    const auto train = panel_.send(requestFrame(3004));
    EXPECT_EQ(train[0].bytes, announcementOf(0));
    EXPECT_EQ(train.size(), 12u);
}

TEST(FaultSyntax, GoodFaults) {
    std::string error;
    for (const std::string text :
         {"loss", "loss=5", "silence@SetImageBlockA", "refuse=2147483649@ActivateConfig:2",
          "cut=3:1", "delay=0@4711"}) {
        const auto fault = parseFault(text, error);
        ASSERT_TRUE(fault) << text << ": " << error;
        EXPECT_EQ(describe(*fault), text);
    }
    EXPECT_EQ(describe(*parseFault("late=0x10@0xFA0:0x2", error)), "late=16@ActivateConfig:2");
}

TEST(FaultSyntax, BadFaultsSayWhy) {
    for (const auto& [text, part] :
         {std::pair("", "no fault ''"), std::pair("los", "no fault 'los'"),
          std::pair("loss=101", "from 0 to 100"), std::pair("loss=", "not ''"),
          std::pair("loss=-1", "not '-1'"), std::pair("loss=5%", "not '5%'"),
          std::pair("silence=1", "takes no value"), std::pair("duplicate=0", "from 1 to 10"),
          std::pair("refuse=4294967296", "not '4294967296'"), std::pair("loss@", "no command ''"),
          std::pair("loss@Activate", "no command 'Activate'"), std::pair("loss:0", "above 0"),
          std::pair("loss:", "above 0"), std::pair("loss:x", "above 0")}) {
        std::string error;
        EXPECT_FALSE(parseFault(text, error)) << text;
        EXPECT_NE(error.find(part), std::string::npos) << text << " says: " << error;
    }
}

}  // namespace
}  // namespace korvane::test
