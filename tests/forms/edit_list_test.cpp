#include "forms/edit_list.h"

#include <gtest/gtest.h>

#include "support/scripted_prompts.h"

namespace korvane {
namespace {

// Letters, of which the first one cannot be deleted, nor anything put before it.
class Letters : public EditList {
  public:
    std::vector<ListColumn> columns() const override { return {{"a", 10}, {"b", 20}}; }
    std::vector<ListRow> rows() const override {
        std::vector<ListRow> rows;
        for (const char c : letters) rows.push_back({std::string(1, c), "x"});
        return rows;
    }
    Offer offer(int row) const override {
        return row == 0 ? Offer{false, true, false} : EditList::offer(row);
    }
    bool add(int before) override { return noted("add", before); }
    bool edit(int row) override { return noted("edit", row); }
    bool remove(int row) override {
        if (letters[static_cast<std::size_t>(row)] == stuck) return false;
        letters.erase(static_cast<std::size_t>(row), 1);
        return true;
    }

    bool noted(const std::string& what, int row) {
        log += what + std::to_string(row) + ' ';
        return true;
    }

    std::string letters = "abcdef", log;
    char stuck = 0;
};

class ListEditorTest : public testing::Test {
  protected:
    test::ScriptedPrompts prompts_;
    Letters letters_;
    ListEditor editor_{letters_, prompts_};
};

TEST_F(ListEditorTest, DoesWhatTheFirstSelectedRowAllows) {
    EXPECT_TRUE(editor_.add({}));
    EXPECT_TRUE(editor_.add({2, 3}));
    EXPECT_FALSE(editor_.add({0, 3}));
    EXPECT_TRUE(editor_.addAnywhere({0, 3})) << "at the end";
    EXPECT_TRUE(editor_.addAnywhere({1}));
    EXPECT_FALSE(editor_.edit({}));
    EXPECT_TRUE(editor_.edit({4, 5}));
    EXPECT_EQ(letters_.log, "add-1 add2 add-1 add1 edit4 ");
}

TEST_F(ListEditorTest, RemovesAllSelectedRowsOnceAsked) {
    EXPECT_FALSE(editor_.remove({}));
    EXPECT_FALSE(editor_.remove({0}));
    EXPECT_FALSE(editor_.remove({1, 2})) << "No";
    EXPECT_EQ(letters_.letters, "abcdef");
    prompts_.answers = {true, true};
    EXPECT_TRUE(editor_.remove({1, 3, 4}));
    EXPECT_EQ(letters_.letters, "acf");
    letters_.stuck = 'c';
    EXPECT_TRUE(editor_.remove({1, 2})) << "one of them went";
    EXPECT_EQ(letters_.letters, "ac");
    EXPECT_EQ(prompts_.log, std::vector<std::string>(3, "ask 请确认删除"));
}

TEST(RefilledViewTest, KeepsTheFirstRememberedRowAndThePlaceOrBeginsAnew) {
    constexpr int none = EditList::noRow;
    const struct {
        int remembered, top, perPage, rows;
        RefilledView view;
    } cases[] = {
        {none, 0, 10, 0, {none, none}}, {3, 0, 10, 0, {none, none}}, {none, 0, 10, 5, {0, none}},
        {5, 0, 10, 5, {0, none}},       {4, 0, 10, 5, {4, none}},    {4, 2, 3, 5, {4, 4}},
        {4, 3, 3, 5, {4, none}},        {0, 20, 10, 60, {0, 29}},
    };
    for (const auto& [remembered, top, perPage, rows, view] : cases)
        EXPECT_EQ(refilledView(remembered, top, perPage, rows), view) << remembered << ' ' << rows;
}

}  // namespace
}  // namespace korvane
