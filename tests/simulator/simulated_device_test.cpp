#include "simulator/dialogue.h"

namespace korvane::test {
namespace {

const Scene scenes[] = {
    {"BlocksAreTakenOnlyBetweenBeginAndEnd",
     "2008 /72 -> 3 | 2001 /13 -> 3 | 2999 00 -> 3 | 2000 00 | 4000 -> 3 | 2999 00 | 4000 | "
     "2008 /72 -> 3 | 2999 00 -> 3"},
    {"ASaveThatBreaksOffLeavesItsBlocks",
     "2000 00 | 2003 624*1 | 3003 -> 0 624*1 | 2000 00 | 3003 -> 0 624*1 | 2999 00 | 4000"},
    {"DefaultsAndARestartEndASave",
     "2000 00 | 4002 | 2008 /72 -> 3 | 4000 | 2000 00 | 4001 | +1500 | 2008 /72 -> 3 | 4000"},
    {"GettingNeedsNoBegin",
     "3000 00 | 3999 00 | 3999 00 | 2000 00 | 2001 13*9 | 3001 -> 0 0910171E252C333A41484F565D"},
    {"EachPartWaitsForActivation",
     "status -> ~configuration applied; | 103 41944*1 | status -> ~; configuration set but not | "
     "4000 | status -> ~configuration applied | 1 00 | status -> ~not applied | 4000 | "
     "status -> ~configuration applied | 2000 00 | 2002 974*1 | status -> ~not applied | 4000 -> 3 "
     "| 2999 00 | 4000 | status -> ~configuration applied | 104 -> 0 41944*1"},
    {"ARestartKeepsWhatIsAppliedAndForgetsTheRest",
     "2000 00 | 2003 624*1 | 2999 00 | 4000 | 2000 00 | 2003 624*2 | 2999 00 | 3003 -> 0 624*2 | "
     "100 144*1 | 102 | 100 144*2 | 101 -> 0 144*2 | 4001 | +1500 | 3003 -> 0 624*1 | "
     "101 -> 0 144*1"},
    {"NetworkSettingsAreInForceAfterARestart",
     "status -> ~management host 192.168.1.10 | 100 144*1 | status -> ~management host "
     "192.168.1.10 "
     "| 102 | said -> ~applied, in force after a restart | 101 -> 0 144*1 | said -> ~(in force "
     "after "
     "a restart) | status -> ~management host 192.168.1.10 | 4001 | said -> ~ms, then control port "
     "???? | "
     "+1500 | status -> ~management host QX_fmt | 101 -> 0 144*1 | said -> ~(in force) | 102 | "
     "said -> ~applied, in force)"},
    {"ActivationLeavesTheDeviceParameters", "100 144*1 | 4000 | 4001 | +1500 | 101 -> 0 [144]"},
    {"ARestartIsSilentAndCountsAnew",
     "4006 -> 0 0001 | 4006 -> 0 0002 | +60000 | 4001 | 4006 -> nothing | +1499 | 4006 -> nothing "
     "| status -> ~restarting; | said -> ~12 bytes ignored: restarting | +1 | "
     "status -> ~kbit/s, 0 bytes sent | 4006 -> 0 0001 | status -> ~running; 9 frames, stream"},
    {"ARestartForgetsTrainsAndUpgrades",
     "4009 'vxWorks' /256 00000009 0376E6E7 | announce 314256 | reboot -> restarting | +1500 | "
     "4006 -> 0 0001 | 4012 -> 0 00 | 4010 -> 3"},
    {"ChannelLists",
     "1 3C 7200*8 | 2 -> 0 3C 7200*8 | 1 02 240*8 | 2 -> 0 02 240*8 | 1 01 120*9 | "
     "2 -> 0 01 120*9 | 1 3D 7320*1 -> 4 | 1 -> 4 | 1 01 -> 2 | 1 01 /122 -> 2 | 1 02 120*1 -> 2 | "
     "2 -> 0 01 120*9 | 1 00 | 2 -> 0 00"},
    {"SummaryIsTheTimeOfDay",
     "4008 02 -> 0 000207E8000C001F00020017003B003A0000 | "
     "4008 FF -> 0 00FF07E8000C001F00020017003B003A0000"},
    {"WrongSizesAndCodesAreRefused",
     "4006 00 -> 2 | 4008 -> 2 | 2003 /623 -> 2 | 4009 /263 -> 2 | 100 /145 -> 2 | 4711 -> 1 | "
     "4711 0102 -> 1 | 3 -> 1"},
    {"TheLogTellsWhatHappened",
     "log all | 4006 -> 0 0001 | said -> 12:00 127.0.0.1:40000 GetHeartbeat (4006), 0 bytes -> "
     "done, 2 bytes | 2008 /72 -> 3 | said -> ~SetImageBlock72 (2008), 72 bytes -> refused, status "
     "3 (no BeginConfigSet before) | 4711 -> 1 | said -> ~command 4711, 0 bytes -> refused | "
     "103 41944*1 | said -> ~41944 bytes -> done, 0 | announce 12 | raw 00000FA60000 | "
     "from 1 raw 01 -> nothing | said -> ~:40001 1 bytes ignored: too short | raw 000000000000 | "
     "said -> ~0 bytes in 3 datagrams -> done | fault silence:1 | 4000 -> nothing | "
     "said -> ~ActivateConfig (4000), 0 bytes -> nothing [silence]"},
    {"TheNormalLogLeavesThePollsOut",
     "4006 -> ~0 | 4007 -> ~0 | 4008 02 -> ~0 | said -> nothing | 4000 | said -> 12:00 "
     "127.0.0.1:40000 ActivateConfig (4000), 0 bytes -> done, 0 bytes (configuration applied) | "
     "4009 /264 -> 5 | said -> ~refused | log quiet -> log quiet | 4000 | said -> nothing | "
     "log loud -> log needs quiet, normal or all | log normal | 4000 | said -> ~4000"},
};
INSTANTIATE_TEST_SUITE_P(Device, Conversation, testing::ValuesIn(scenes), sceneName);

// "123456789" has a well-known CRC-32/MPEG-2.
const std::string begin = "4009 'vxWorks' /256 00000009 0376E6E7 | ";
const std::string whole = "4011 00000000 00000009 '123456789' | ";
const std::string piece1 = "4011 00000000 00000004 '1234' | ";
const std::string piece2 = "4011 00000004 00000005 '56789' | ";

const Scene upgrades[] = {
    {"AWholeFileWorksForThreePollsThenIsFinished",
     "4012 -> 0 00 | " + begin + piece1 + piece2 +
         "4012 -> 0 01 | 4010 | 4010 | 4012 -> 0 01 | 4012 -> 0 01 | 4012 -> 0 01 | 4012 -> 0 00 | "
         "4012 -> 0 00 | 4010 -> 3"},
    {"ARepeatedPieceIsAccepted", begin + piece1 + piece1 + piece2 + piece2 + piece1 + "4010"},
    {"OverlappingPiecesAreAccepted", begin + piece1 + "4011 00000002 00000007 '3456789' | 4010"},
    {"BeginningAgainStartsOver", begin + piece1 + begin + "4011 00000004 00000005 '56789' -> 6 | " +
                                     whole + "4010 | " + begin + "4010 -> 3 | " + whole +
                                     "4010 | 4012 -> 0 01"},
    {"AWrongChecksumIsRefusedAndEndsTheUpgrade",
     "4009 'vxWorks' /256 00000009 0376E6E6 | " + whole +
         "4010 -> 7 | 4010 -> 3 | 4012 -> 0 00 | " + begin +
         "4011 00000000 00000009 '12345678x' | 4010 -> 7"},
    {"AFileThatIsNotWholeMayStillBecomeIt",
     begin + "4011 00000000 00000008 '12345678' | 4010 -> 3 | 4011 00000008 00000001 '9' | 4010"},
    {"NamesAndSizes",
     "4009 'CMMB_FPGA.rbf' /256 00000009 00000000 | 4009 'softH264EP.out' /256 04000000 00000000 | "
     "4009 /264 -> 5 | 4009 'vxworks' /256 00000009 00000000 -> 5 | 4009 264*1 -> 5 | "
     "4009 'vxWorks' 20 /256 00000009 00000000 -> 5 | 4009 'vxWorks' /264 -> 4 | "
     "4009 'vxWorks' /256 04000001 00000000 -> 4"},
    {"PiecesOutOfPlace",
     "4011 00000000 00000004 '1234' -> 3 | " + begin +
         "4011 00000001 00000004 '2345' -> 6 | 4011 FFFFFFFF 00000001 '1' -> 6 | "
         "4011 00000000 0000000A '1234567890' -> 6 | 4011 00000000 00000005 '1234' -> 2 | "
         "4011 00000000 FFFFFFFF '1234' -> 2 | 4011 00000000 00000000 -> 2 | 4011 /7 -> 2 | " +
         piece1 + "4011 00000004 00000006 '567890' -> 6 | " + piece2 + "4010"},
};
INSTANTIATE_TEST_SUITE_P(Upgrade, Conversation, testing::ValuesIn(upgrades), sceneName);

TEST(Device, RestoringBringsTheDefaultsBackButKeepsTheAddresses) {
    Dialogue talk;
    talk.play(
        "2000 00 | 2003 624*1 | 2002 974*1 | 2999 00 | 1 00 | 103 /41944 | 100 144*1 | "
        "4000 | 2000 00 | 2003 624*2 | 4002 | 101 -> 0 144*1");
    EXPECT_TRUE(talk.device.state().set == *sampleConfiguration());
    EXPECT_TRUE(talk.device.state().applied == *sampleConfiguration());
}

TEST(Device, HeartbeatsCountInTwoBytes) {
    Dialogue talk;
    for (int i = 0; i < 299; ++i) talk.panel.ask(4006);
    talk.play("4006 -> 0 012C");
}

}  // namespace
}  // namespace korvane::test
