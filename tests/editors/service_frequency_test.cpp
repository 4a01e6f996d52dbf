#include "editors/service_frequency_form.h"
#include "editors/service_frequency_table.h"
#include "resources/ids.h"
#include "support/configurations.h"
#include "support/editing_fixture.h"

namespace korvane {
namespace {

using Pairs = std::vector<std::pair<int, int>>;

// Services 100 and 300 are on continuous frames, 200 and 300 on short-time ones, 400 on none.
class ServiceFrequency : public test::EditingFixture {
  protected:
    ServiceFrequency() {
        test::editTables(*model_, [](ConfigTables& tables) {
            tables.continuous.frames.append(test::frame(3, {test::service(1, 300)}));
            tables.continuous.frames.append(
                test::frame(4, {test::service(1, 99), test::service(2, 100)}));
            tables.continuous.frames.append(test::frame(5, {test::service(1, 100)}));
            tables.shortTime.frames.append(
                test::frame(8, {test::service(1, 200), test::service(2, 300)}));
            for (ServiceFrequencyTable* table :
                 {&tables.continuousServices, &tables.shortTimeServices}) {
                table->header = {9, 1, 2, 3};
                table->value = 77;
            }
            for (const std::uint16_t id : {200, 100, 300, 400})
                tables.continuousServices.entries.append({id, 21, 6});
            for (const std::uint16_t id : {100, 200, 300, 400})
                tables.shortTimeServices.entries.append({id, 30, 6});
        });
    }
    void enter(const std::string& serviceId, const std::string& channel) {
        forms_.script.push_back([=](Controls& controls) {
            controls.texts = {{IDC_SERVICE_ID, serviceId}, {IDC_CHANNEL_NUMBER, channel}};
        });
    }
    Pairs pairs(TableKind kind) const {
        Pairs all;
        for (const ServiceFrequencyEntry& entry : tables().serviceTable(kind).entries)
            all.emplace_back(entry.serviceId, entry.channelNumber);
        return all;
    }

    static constexpr auto continuous = TableKind::Continuous, shortTime = TableKind::ShortTime;
    ServiceFrequencyList page3_{editing_, continuous}, page5_{editing_, shortTime};
};

TEST_F(ServiceFrequency, APageShowsItsTableButWhatOnlyTheOtherKindCarries) {
    EXPECT_EQ(shownEntries(tables(), continuous), (std::vector<std::size_t>{1, 2, 3}));
    EXPECT_EQ(shownEntries(tables(), shortTime), (std::vector<std::size_t>{1, 2, 3}));
    EXPECT_EQ(
        page3_.rows(),
        (std::vector<ListRow>{{"100", "21", "4"}, {"300", "21", "3"}, {"400", "21", "无效业务"}}));
    EXPECT_EQ(
        page5_.rows(),
        (std::vector<ListRow>{{"200", "30", "8"}, {"300", "30", "8"}, {"400", "30", "无效业务"}}));
    EXPECT_EQ(page3_.rows()[0].size(), page3_.columns().size());
}

// Row numbers are not entry numbers: the first entry of either table is not shown.
TEST_F(ServiceFrequency, RowsMeanTheEntriesThatTheyShow) {
    enter("65636", "22");  // 100 in 16 bits
    ASSERT_TRUE(page3_.add(1));
    enter("101", "255");
    ASSERT_TRUE(page3_.add(EditList::noRow));
    EXPECT_EQ(pairs(continuous),
              (Pairs{{200, 21}, {100, 21}, {100, 22}, {300, 21}, {400, 21}, {101, 255}}));
    enter("300", "23");
    ASSERT_TRUE(page3_.edit(2));
    EXPECT_EQ(tables().continuousServices.entries[3], (ServiceFrequencyEntry{300, 23, 6}));

    prompts_.answers = {true};
    EXPECT_TRUE(ListEditor(page3_, prompts_).remove({0, 1, 3}));
    EXPECT_EQ(said(), "ask 请确认删除\n");
    EXPECT_EQ(pairs(continuous), (Pairs{{200, 21}, {300, 23}, {101, 255}}));
    EXPECT_TRUE(page5_.remove(2));
    EXPECT_EQ(pairs(shortTime), (Pairs{{100, 30}, {200, 30}, {300, 30}}));
    EXPECT_FALSE(page5_.add(0) || page5_.edit(0)) << "cancelled";
}

TEST_F(ServiceFrequency, PairsThatAreThereAlreadyAreRefused) {
    const char* const there = "已有相同的业务标识和频道号对";
    const char* const channelRange = "请输入 0 和 255 之间的整数。";
    const struct {
        ServiceFrequencyList* list;
        int row;  // noRow: adds
        const char *serviceId, *channel, *message;
        int focus;
    } cases[] = {
        {&page3_, -1, "100", "21", there, IDC_SERVICE_ID},
        {&page3_, -1, "65636", "21", there, IDC_SERVICE_ID},
        {&page3_, 1, "100", "21", there, IDC_SERVICE_ID},
        {&page5_, -1, "100", "21", there, IDC_SERVICE_ID},
        {&page5_, -1, "200", "30", there, IDC_SERVICE_ID},
        {&page5_, 1, "200", "30", there, IDC_SERVICE_ID},
        {&page5_, 1, "300", "21", there, IDC_SERVICE_ID},
        {&page3_, 0, "100", "256", channelRange, IDC_CHANNEL_NUMBER},
        {&page3_, 0, "4294967296", "256", "请输入 0 和 4294967295 之间的整数。", IDC_SERVICE_ID},
        {&page3_, 0, "", "", "请输入一个整数。", IDC_SERVICE_ID},
    };
    const auto before = copyOf(tables());
    for (const auto& [list, row, serviceId, channel, message, focus] : cases) {
        enter(serviceId, channel);
        EXPECT_FALSE(row < 0 ? list->add(row) : list->edit(row));
        EXPECT_EQ(said(), std::string("warn ") + message + '\n') << serviceId << ' ' << channel;
        EXPECT_EQ(forms_.controls.focused, focus);
    }
    EXPECT_TRUE(tables() == *before);
    for (ServiceFrequencyList* list : {&page3_, &page5_}) {
        enter(list->rows()[0][0], list->rows()[0][1]);
        EXPECT_TRUE(list->edit(0)) << "the pair itself stays";
    }
    enter("200", "30");
    EXPECT_TRUE(page3_.add(0)) << "only the other table has it";
    EXPECT_EQ(said(), "");
}

TEST_F(ServiceFrequency, AFullTableRefusesBeforeTheDialogOpens) {
    for (std::uint8_t i = 4; i < 40; ++i) model_->addServiceFrequency(shortTime, {500, i, 0});
    EXPECT_FALSE(page5_.add(0));
    EXPECT_EQ(forms_.shown, 0);
    EXPECT_EQ(said(), "warn 最多支持40个业务频点关联\n");
    page3_.add(0);
    EXPECT_EQ(forms_.shown, 1);
}

TEST_F(ServiceFrequency, CollectingAPageWritesItsTableIdAndNothingElse) {
    for (const auto& [kind, id] : {std::pair{continuous, 3}, std::pair{shortTime, 5}}) {
        ServiceFrequencyTableForm form(*model_, prompts_, kind);
        Controls controls;
        FormExchange page(form, controls, prompts_);
        page.show();
        EXPECT_EQ(controls.texts[IDC_TABLE_ID], std::to_string(id));
        const auto expected = copyOf(tables());
        expected->serviceTable(kind).header[0] = static_cast<std::uint8_t>(id);
        EXPECT_TRUE(page.accept());
        EXPECT_TRUE(tables() == *expected);
    }
}

}  // namespace
}  // namespace korvane
