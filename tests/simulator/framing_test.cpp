#include "simulator/dialogue.h"

namespace korvane::test {
namespace {

const Scene scenes[] = {
    {"ALongAnswerIsAnnouncedAndPaced", "+700 | 3004 -> 0 [314244] in 12 of 30720 over 500"},
    {"TheLargestDatagramIsNotAnnounced",
     "fault wrong-size=65524:1 | 4006 -> 0 0001 /65524 | fault wrong-size=65525:1 | "
     "4006 -> 0 0002 /65525 in 4 of 30720 over 100 | fault wrong-size=61429:1 | "
     "4006 -> 0 0003 /61429"},
    {"ALongRequestIsPutTogether",
     "2000 01 | 2004 314244*3 | "
     "3004 -> 0 314244*3 in 12 of 30720 over 500"},
    {"TrainsOfTwoSendersDoNotMix",
     "announce 12 -> nothing | from 1 announce 12 -> nothing | raw 00000FA60000 -> nothing | "
     "from 1 raw 000012670000 -> nothing | raw 000000000000 -> 0 0001 | "
     "from 1 raw 000000000000 -> 1"},
    {"ATrainMayEndLikeAnAnnouncement",
     "announce 20 | raw 000012670000000000000008 -> nothing | raw 1122000000000040 -> 1 | "
     "announce 20 | raw 00001267000000000000 -> nothing | raw 1122000000000040 -> nothing | "
     "4006 -> nothing"},
    {"AnUnfinishedTrainIsGivenUpAfterTwoSeconds",
     "announce 40 | +2000 | raw 00 -> nothing | +2000 | 4006 -> nothing | +2001 | 4006 -> 0 0001"},
    {"ANewAnnouncementReplacesAnUnfinishedTrain",
     "announce 40 | raw 00 | announce 12 | said -> ~an unfinished train is given up | "
     "raw 00000FA60000000000000000 -> 0 0001 | announce 40 | announce 0 | 4006 -> 0 0002"},
    {"ATrainLongerThanAnnouncedIsDropped",
     "announce 20 | raw /10 | raw /11 -> nothing | said -> ~more bytes than announced | "
     "4006 -> 0 0001"},
    {"AnnouncementsThatNoBufferHoldsAreIgnored",
     "announce 0 | said -> ~announcement of 0 bytes ignored | 4006 -> 0 0001 | announce 409601 | "
     "4006 -> 0 0002 | announce 409600 | 4006 -> nothing"},
    // The panel would take an answer for the device's word and not try again.
    {"ChunksWhoseAnnouncementIsLostAreIgnored",
     "raw 000007D4 00000000 0004CB84 /30720 -> nothing | said -> ~not announced | "
     "raw 30720*5 -> nothing | raw /30720 -> nothing | raw 00000FA6 00000000 0000FFF5 -> nothing | "
     "raw 00000FA6 00000000 0000FFF4 -> 2"},
    {"WhatIsNoFrameIsIgnored",
     "raw 00000FA60000000000000000 -> 0 0001 | raw 00000FA600000000000000 -> nothing | "
     "raw 00001267 00000000 00000001 -> nothing | raw 00001267 00000000 00000000 -> 1"},
    {"WrongLengthFieldsAreRefused",
     "raw 00000FA6 00000000 00000001 -> 2 | raw 00000FA8 00000000 00000000 02 -> 2 | "
     "said -> nothing | 4006 -> 0 0001"},
};
INSTANTIATE_TEST_SUITE_P(Framing, Conversation, testing::ValuesIn(scenes), sceneName);

TEST(Framing, BytesOnTheWire) {
    Dialogue talk;
    const auto heartbeat = talk.panel.send({0, 0, 0x0F, 0xA6, 0, 0, 0, 0, 0, 0, 0, 0});
    ASSERT_EQ(heartbeat.size(), 1u);
    EXPECT_EQ(heartbeat[0].bytes, Bytes({0, 0, 0x0F, 0xA6, 0, 0, 0, 0, 0, 0, 0, 2, 0, 1}));
    const auto train = talk.panel.send({0, 0, 0x0B, 0xBC, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(train.front().bytes, Bytes({0x11, 0x22, 0, 0, 0, 0x04, 0xCB, 0x90}));
    for (std::size_t i = 1; i < train.size(); ++i) EXPECT_EQ(train[i].sendAtMs, (i - 1) * 50);
    EXPECT_EQ(train.back().bytes.size(), 7056u);
}

TEST(Framing, AnnouncementsFromManySendersDoNotPileUp) {
    Dialogue talk;
    for (int sender = 1; sender <= 17; ++sender)
        talk.play("+1 | from " + std::to_string(sender) + " announce 400000");
    talk.play("from 2 4006 -> nothing | from 17 4006 -> nothing | from 1 4006 -> 0 0001");
}

}  // namespace
}  // namespace korvane::test
