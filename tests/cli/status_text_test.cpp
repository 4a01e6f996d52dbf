#include "cli/status_text.h"

#include <fstream>
#include <sstream>

#include "cli/table_file.h"
#include "command_line.h"

namespace korvane::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class Status : public CommandLine {
  protected:
    std::vector<std::string> rows() const {
        std::ifstream stream(file("s.csv"));
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);) lines.push_back(line);
        return lines;
    }
};

TEST_F(Status, OneReadingIsShownAndAppended) {
    ASSERT_EQ(run({"status", address_, "--csv", file("s.csv")}), 0) << terminal_.notes;
    EXPECT_THAT(terminal_.written,
                StartsWith("10.1.2.3, 2009-04-23 08:05:09\n"
                           "link normal, data input normal, 1PPS normal, 10M normal, TOD normal\n"
                           "TOD: 2009-04-23 08:05:09\nstream "));
    EXPECT_THAT(terminal_.written, HasSubstr("slots in use: 0 "));
    EXPECT_THAT(terminal_.written, HasSubstr("       101 "));
    std::ofstream(file("s.csv"), std::ios::app) << "2009-04-23 08:0";  // a torn row
    ASSERT_EQ(run({"status", address_, "--csv", file("s.csv")}), 0);
    const auto lines = rows();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0] + '\n', cli::statusTableHead());
    for (const std::size_t i : {1, 3}) {
        EXPECT_THAT(lines[i], StartsWith("2009-04-23 08:05:09,normal,normal,normal,normal,normal,"
                                         "2009-04-23 08:05:09,"));
        EXPECT_EQ(std::ranges::count(lines[i], ','), std::ranges::count(lines[0], ','));
    }
}

// The link is lost and found again while it is watched; then Ctrl-C, which is no failure.
TEST_F(Status, ALostLinkIsARowAndNoEnd) {
    inject("silence@GetHeartbeat:2");
    std::size_t polls = 0;
    device_.onEvent([&](const DeviceEvent& event) {
        if (event.command == static_cast<std::uint32_t>(CommandCode::GetHeartbeat))
            terminal_.interruptAsked = ++polls == 4;
    });
    const std::uint64_t begin = link_.nowMs();
    EXPECT_EQ(run({"status", address_, "--watch", "5", "--csv", file("s.csv")}), 0);
    EXPECT_GE(link_.nowMs() - begin, 15000u);
    const auto lines = rows();
    ASSERT_EQ(lines.size(), 5u);
    for (const std::size_t i : {1, 2}) {
        EXPECT_EQ(lines[i], "2009-04-23 08:05:09,lost,,,,,,,,,,");
        EXPECT_EQ(std::ranges::count(lines[i], ','), std::ranges::count(lines[0], ','));
    }
    for (const std::size_t i : {3, 4}) EXPECT_THAT(lines[i], HasSubstr(",normal,"));
    EXPECT_THAT(terminal_.written, HasSubstr("link LOST, data input unknown"));
}

TEST_F(Status, AlarmsAndFullSlotsAreTold) {
    device_.status().forceAlarms(std::uint8_t{1 << 4});
    EXPECT_EQ(run({"status", address_, "--csv", file("s.csv")}), 0);
    EXPECT_THAT(terminal_.written, HasSubstr("1PPS ALARM, 10M normal"));
    EXPECT_THAT(rows().at(1), HasSubstr(",normal,normal,alarm,normal,normal,"));
    EXPECT_EQ(run({"status", address_, "--csv", file("no folder/s.csv")}), 3);
}

}  // namespace
}  // namespace korvane::test
