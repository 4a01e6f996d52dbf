#include "review/summary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/sample_images.h"

namespace korvane {
namespace {

using testing::HasSubstr;

TEST(Summary, IsOfNetworkFramesServicesAndChannels) {
    const std::string summary = summaryOf(*test::sampleImages());
    for (const char* lines :
         {"network 10 示范城市移动多媒体广播网, level 3, country code CHN\n"
          "  frequency point 20 (530 MHz, 8M)\n"
          "  other frequency points: 16 (498 MHz, 8M), 22 (546 MHz, 2M), 24 (562 MHz, 8M)\n"
          "  other networks: 11, 70001\n"
          "frame 0: BPSK, RS (240, 240), LDPC 1/2, time slots 0, 64000 of 69120 bit/s (92%)\n"
          "  service 1: media, 8000 bit/s, from no channel\n",
          "frame 3: QPSK, RS (240, 224), LDPC 1/2, time slots 13-16, 480000 of 516096 bit/s (93%)\n"
          "  service 201 音乐广播: DRA, scrambled, 160000 bit/s, from DRA 239.1.12.1:5200, ECM "
          "239.1.14.2:6101\n"
          "  service 202 ",
          "\nshort-time frame 8: ",
          "\ninput channels: 27 of 60\n"
          "  1: video 239.1.10.1:5000, H.264\n"})
        EXPECT_THAT(summary, HasSubstr(lines));
}

TEST(Summary, TakesWhatMeansNothing) {
    const auto content = test::sampleImages();
    FrameSlot& frame = content->image.continuous.frames[1];
    frame.head.modulation = 9;
    frame.services[0].head.type = 0;
    frame.services[0].head.esgInternal = 1;
    frame.services[1].head.type = 6;
    content->descriptions.slots[0].name = {'\x1B', '\n', '\x7F', '\xFF'};
    content->image.network.countryCode = {};
    content->image.shortTime.frameCount = 255;
    const std::string summary = summaryOf(*content);
    EXPECT_THAT(summary, HasSubstr("country code none\n"));
    EXPECT_THAT(summary, HasSubstr("\nframe 1: 9, RS (240, 224), LDPC 1/2, time slots 1-8, "
                                   "1000000 of 0 bit/s\n  service 101 \"\\u001b\\n?"));
    EXPECT_THAT(summary, HasSubstr(": media, 500000 bit/s, from the device itself\n"));
    EXPECT_THAT(summary, HasSubstr("体育频道: 6, 500000 bit/s"));
}

}  // namespace
}  // namespace korvane
