#include "simulator/dialogue.h"

namespace korvane::test {
namespace {

const Scene scenes[] = {
    {"ACountedLossHitsThatManyRequestsOfTheCommand",
     "fault loss@4006:2 | 4007 -> 0 [48332] | 4006 -> nothing | 4006 -> nothing | 4006 -> 0 0001 | "
     "faults -> no faults | fault loss@4006 | 4006 -> nothing | faults -> faults: "
     "loss@GetHeartbeat "
     "| clear | fault loss=0 | 4006 -> 0 0002"},
    {"ALostAnswerWasCarriedOutALostRequestWasNot",
     "fault silence@SetDeviceParams:1 | 100 144*1 -> nothing | 101 -> 0 [144] | "
     "fault loss@100:1 | 100 144*1 -> nothing | said -> ~[loss@SetDeviceParams:1: request lost] | "
     "101 -> 0 [144] | fault lost-answer@100:1 | 100 144*1 -> nothing | "
     "said -> ~) [lost-answer@SetDeviceParams:1] | 101 -> 0 144*1"},
    {"DelaysAddUpAndKeepThePace",
     "+10000 | fault delay=250:1 | 4006 -> 0 0001 @10250 | fault delay:1 | 4006 -> 0 0002 @11000 | "
     "fault late:1 | 4006 -> 0 0003 @13100 | fault late=7:1 delay=1:1 | 4006 -> 0 0004 @10008 | "
     "fault delay=90:1 | 3004 -> 0 [314244] @10090 in 12 of 30720 over 500"},
    {"DatagramsComeTwice",
     "fault duplicate@4006:1 | 4006 -> 0 000100000FA600000000000000020001 length 2 in 2 | "
     "fault duplicate=3:1 | 3004 -> ~in 48 of 8"},
    {"HeadersLie",
     "fault wrong-code:1 | 4006 -> code 4007 0 0001 | fault wrong-code=77:1 | "
     "4006 -> code 77 0 0002 | fault wrong-length:1 | 4006 -> 0 0003 length 3 | "
     "fault wrong-length=0xFFFFFFFF:1 | 4006 -> 0 0004 length 4294967295"},
    {"PayloadsHaveAnotherSize",
     "fault wrong-size:1 | 4006 -> 0 000100 | fault wrong-size=1:1 | 4006 -> 0 00 | "
     "fault wrong-size=0:1 | 4006 -> 0"},
    {"ARefusalIsNotCarriedOut",
     "fault refuse=0x80000001@100:1 | 100 144*1 -> 2147483649 | 101 -> 0 [144] | fault refuse:1 | "
     "4006 -> 255 | 4006 -> 0 0001"},
    {"TrainsAreCutOrMisannounced",
     "fault cut=4:1 | 4006 -> 0 0001 | faults -> faults: cut=4:1 | "
     "3004 -> 0 [122868] length 314244 announced 314256 in 5 of 30720 over 150 | fault cut:1 | "
     "3004 -> 0 [30708] length 314244 announced 314256 in 2 of 30720 | fault cut=0:1 | "
     "3004 -> code 0 0 announced 314256 | fault wrong-total=0:1 | "
     "3004 -> 0 [314244] announced 0 in 12 of 30720 over 500 | fault wrong-total:1 | "
     "4006 -> 0 0002 | 3004 -> 0 [314244] announced 314257 in 12 of 30720 over 500"},
    {"TheFirstFaultOfAKindStrikes",
     "fault refuse=9@4006:1 refuse=8:1 refuse=7 | 4000 -> 8 | 4006 -> 9 | 4006 -> 7 | 4006 -> 7 | "
     "faults -> faults: refuse=7"},
    {"FaultsAreWrittenAsTheyAreRead",
     "fault loss loss=5 silence@SetImageBlockA refuse=2147483649@ActivateConfig:2 cut=3:1 "
     "delay=0@4711 late=0x10@0xFA0:0x2 -> faults: loss, loss=5, silence@SetImageBlockA, "
     "refuse=2147483649@ActivateConfig:2, cut=3:1, delay=0@4711, late=16@ActivateConfig:2"},
    {"BadFaultsSayWhy",
     "fault los -> no fault 'los' | fault loss= -> ~to 100, not '' | "
     "fault loss=101 -> loss takes a number from 0 to 100, not '101' | fault loss=-1 -> ~not '-1' "
     "| "
     "fault loss=5% -> ~not '5%' | fault silence=1 -> silence takes no value | "
     "fault duplicate=0 -> ~from 1 to 10, | fault refuse=0 -> ~from 1 to 4294967295, | "
     "fault refuse=4294967296 -> ~not '4294967296' | fault delay=600001 -> ~from 0 to 600000, | "
     "fault wrong-size=409589 -> ~to 409588, | fault loss@ -> no command '' | "
     "fault loss@Activate -> no command 'Activate' | fault loss:0 -> ~above 0, not '0' | "
     "fault loss: -> ~above 0 | fault loss:x -> ~above 0 | faults -> no faults"},
};
INSTANTIATE_TEST_SUITE_P(Faults, Conversation, testing::ValuesIn(scenes), sceneName);

// A mark for each of many requests: whether it was answered.
std::string answered(std::uint32_t seed, const std::string& loss, int requests = 1000) {
    SimulationSettings settings;
    settings.seed = seed;
    SimulatedDevice device(settings);
    std::string error, marks;
    device.faults().add(parseFault(loss, error).value());
    for (int i = 0; i < requests; ++i)
        marks += PanelSide(device).ask(4006).datagrams.empty() ? '-' : '+';
    return marks;
}

TEST(Faults, LossByChanceTakesItsShareBothWays) {
    const std::string marks = answered(5, "loss=30");
    EXPECT_NEAR(std::ranges::count(marks, '+'), 490, 70);
    EXPECT_EQ(answered(5, "loss=30"), marks) << "the same seed, the same losses";
    EXPECT_NE(answered(6, "loss=30"), marks);
}

}  // namespace
}  // namespace korvane::test
