#include "panel/panel_pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "panel/table_pages.h"

namespace korvane {
namespace {

using testing::ElementsAre;

// Notes what is asked of it, by its number.
class RecordingPage : public PageContent {
  public:
    RecordingPage(int number, std::vector<std::string>& log)
        : name_(std::to_string(number)), log_(log) {}
    void refresh() override { log_.push_back("refresh " + name_); }
    void commit() override { log_.push_back("commit " + name_); }
    int check() override {
        log_.push_back("check " + name_);
        return -3;
    }

  private:
    std::string name_;
    std::vector<std::string>& log_;
};

class PanelsPages : public testing::Test {
  protected:
    std::vector<std::string> takeLog() { return std::exchange(log_, {}); }

    std::vector<std::string> log_;
    RecordingPage pages_[4] = {{0, log_}, {1, log_}, {2, log_}, {3, log_}};
};

TEST_F(PanelsPages, EachCommandReachesThePagesThatItIsFor) {
    PanelPages all({&pages_[0], &pages_[1], &pages_[2], &pages_[3]});
    all.refresh();
    EXPECT_THAT(takeLog(), ElementsAre("refresh 0", "refresh 1", "refresh 3"));
    all.commit();
    EXPECT_EQ(all.check(), -3);
    EXPECT_THAT(takeLog(), ElementsAre("commit 1", "check 3"));
}

TEST_F(PanelsPages, TheTableThatIsLeftCommitsBeforeTheNextIsFilled) {
    TablePages tables({&pages_[0], &pages_[1], &pages_[2]});
    EXPECT_EQ(tables.selected(), 0u);
    EXPECT_TRUE(tables.select(2));
    EXPECT_TRUE(tables.select(1));
    EXPECT_THAT(takeLog(), ElementsAre("commit 0", "refresh 2", "commit 2", "refresh 1"));
    for (const std::size_t none : {std::size_t{1}, std::size_t{3}, static_cast<std::size_t>(-1)})
        EXPECT_FALSE(tables.select(none));
    EXPECT_EQ(tables.selected(), 1u);
    tables.refresh();
    tables.commit();
    EXPECT_THAT(takeLog(), ElementsAre("refresh 1", "commit 1"));
}

}  // namespace
}  // namespace korvane
