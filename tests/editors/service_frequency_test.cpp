#include "editors/service_frequency_table.h"
#include "resources/ids.h"
#include "support/configurations.h"
#include "support/list_editing.h"

namespace korvane {
namespace {

using Rows = std::vector<ListRow>;

constexpr auto continuous = TableKind::Continuous, shortTime = TableKind::ShortTime;
constexpr int service = IDC_SERVICE_ID, channelControl = IDC_CHANNEL_NUMBER;

// Services 100 and 300 are on continuous frames, 200 and 300 on a short-time one, 400 on none.
class ServiceFrequency : public test::ListEditing {
  protected:
    ServiceFrequency() {
        test::editTables(*model_, [](ConfigTables& tables) {
            const auto a = test::service(1, 100), b = test::service(2, 200),
                       both = test::service(3, 300);
            tables.continuous.frames.append(test::frame(3, {both}));
            tables.continuous.frames.append(test::frame(4, {both, a}));
            tables.shortTime.frames.append(test::frame(8, {b, both}));
            tables.continuousServices.header = tables.shortTimeServices.header = {9, 1, 2, 3};
        });
        for (const std::uint16_t id : {200, 100, 300, 400})
            model_->addServiceFrequency(continuous, {id, 21, 6});
        for (const std::uint16_t id : {100, 200, 300, 400})
            model_->addServiceFrequency(shortTime, {id, 30, 6});
    }
    // "id/channelControl" of every entry, shown or not.
    std::string entries(TableKind kind) const {
        std::string all;
        for (const ServiceFrequencyEntry& entry : tables().serviceTable(kind).entries)
            all +=
                std::to_string(entry.serviceId) + '/' + std::to_string(entry.channelNumber) + ' ';
        return all;
    }

    ServiceFrequencyList page3_{editing_, continuous}, page5_{editing_, shortTime};
};

// Row numbers are not entry numbers: the first entry of either table is not shown.
TEST_F(ServiceFrequency, RowsMeanTheEntriesThatTheyShow) {
    EXPECT_EQ(page3_.rows(),
              (Rows{{"100", "21", "4"}, {"300", "21", "3"}, {"400", "21", "无效业务"}}));
    EXPECT_EQ(page5_.rows(),
              (Rows{{"200", "30", "8"}, {"300", "30", "8"}, {"400", "30", "无效业务"}}));
    EXPECT_TRUE(entering({{service, "65636"}, {channelControl, "22"}}, page3_).add(1))
        << "100 in 16 bits";
    EXPECT_TRUE(entering({{service, "101"}, {channelControl, "255"}}, page3_).add(EditList::noRow));
    EXPECT_EQ(entries(continuous), "200/21 100/21 100/22 300/21 400/21 101/255 ");
    EXPECT_TRUE(entering({{channelControl, "23"}}, page3_).edit(2));
    EXPECT_EQ(tables().continuousServices.entries[3], (ServiceFrequencyEntry{300, 23, 6}));
    prompts_.answers = {true};
    EXPECT_TRUE(ListEditor(page3_, prompts_).remove({0, 1, 3}));
    EXPECT_EQ(entries(continuous), "200/21 300/23 101/255 ");
    EXPECT_TRUE(page5_.remove(1));
    EXPECT_EQ(entries(shortTime), "100/30 200/30 400/30 ");
    EXPECT_FALSE(page5_.add(0) || page5_.edit(0)) << "cancelled";
}

TEST_F(ServiceFrequency, PairsThatAreThereAlreadyAreRefused) {
    const char* const there = "已有相同的业务标识和频道号对";
    const auto before = copyOf(tables());
    const Entries ofTable3{{service, "65636"}, {channelControl, "21"}},
        ofTable5{{service, "200"}, {channelControl, "30"}};
    for (ServiceFrequencyList* page : {&page3_, &page5_}) {
        expectRefused(entering(ofTable3, *page).add(0), service, there);
        expectRefused(entering(ofTable3, *page).edit(1), service, there);
    }
    expectRefused(entering(ofTable5, page5_).add(0), service, there);
    expectRefused(entering({{service, "200"}}, page5_).edit(1), service, there);
    expectRefused(entering({{service, "100"}}, page3_).edit(1), service, there);
    expectRefused(entering({{channelControl, "256"}}, page3_).add(0), channelControl,
                  "请输入 0 和 255 之间的整数。");
    EXPECT_TRUE(entering({}, page3_).edit(0) && entering(ofTable5, page5_).edit(0))
        << "the pair itself stays";
    EXPECT_TRUE(tables() == *before);
    EXPECT_TRUE(entering(ofTable5, page3_).add(0)) << "only the other table has it";
    for (std::uint8_t i = 4; i < 40; ++i) model_->addServiceFrequency(shortTime, {500, i, 0});
    forms_.shown = 0;
    EXPECT_FALSE(page5_.add(0));
    EXPECT_EQ(forms_.shown, 0) << "a full table refuses before its dialog opens";
    EXPECT_EQ(said(), "warn 最多支持40个业务频点关联\n");
}

TEST_F(ServiceFrequency, CollectingAPageWritesItsTableIdAndNothingElse) {
    for (const auto& [kind, id] : {std::pair{continuous, std::uint8_t{3}}, {shortTime, 5}}) {
        ServiceFrequencyTableForm form(*model_, prompts_, kind);
        FormExchange page(form, forms_.controls, prompts_);
        page.show();
        const auto expected = copyOf(tables());
        expected->serviceTable(kind).header[0] = id;
        EXPECT_TRUE(page.accept() && tables() == *expected);
    }
}

}  // namespace
}  // namespace korvane
