#include "simulator/dialogue.h"

namespace korvane::test {
namespace {

// "123456789" has a well-known CRC-32/MPEG-2.
const std::string begin = "4009 'vxWorks' /256 00000009 0376E6E7 | ";
const std::string whole = "4011 00000000 00000009 '123456789' | ";
const std::string piece1 = "4011 00000000 00000004 '1234' | ";
const std::string piece2 = "4011 00000004 00000005 '56789' | ";

const Scene scenes[] = {
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
INSTANTIATE_TEST_SUITE_P(Upgrade, Conversation, testing::ValuesIn(scenes), sceneName);

}  // namespace
}  // namespace korvane::test
