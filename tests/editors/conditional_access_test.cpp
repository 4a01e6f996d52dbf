#include "editors/ca_system_form.h"
#include "editors/ca_table.h"
#include "resources/ids.h"
#include "support/list_editing.h"

namespace korvane {
namespace {

class ConditionalAccess : public test::ListEditing {
  protected:
    bool add(const std::string& caSystemId, const std::string& serviceId) {
        return entering({{IDC_CA_SYSTEM_ID, caSystemId}, {IDC_SERVICE_ID, serviceId}}, list_)
            .add(0);
    }
    const auto& entries() const { return tables().caDescriptions.entries; }

    CaSystemList list_{editing_};
};

TEST_F(ConditionalAccess, ANewSystemGoesToTheEndWithItsDefaultsAndTheLow16BitsOfItsIds) {
    ASSERT_TRUE(add("65537", "300"));
    ASSERT_TRUE(add("2", "301"));
    EXPECT_EQ(entries()[0], (CaSystemEntry{1, 300, 128, 129, 0, 0}));
    EXPECT_EQ(list_.rows()[1], (ListRow{"1", "2", "301", "128", "129", "0"}));
    EXPECT_EQ(list_.rows()[1].size(), list_.columns().size());
    EXPECT_FALSE(list_.add(0)) << "cancelled";
    EXPECT_EQ(entries().size(), 2u);
    EXPECT_EQ(said(), "");
}

// The checks come in this order, each with its own place to return to.
TEST_F(ConditionalAccess, WrongEntriesAreRefusedWhereTheyStand) {
    ASSERT_TRUE(add("1", "300"));
    ASSERT_TRUE(add("2", "301"));
    const struct {
        const char *caId, *serviceId, *emm, *ecm;
        int focus;
        const char* message;
    } cases[] = {
        {"x", "300", "1", "1", IDC_CA_SYSTEM_ID, "请输入一个整数。"},
        {"3", "302", "256", "1", IDC_EMM_UNIT_TYPE, "请输入 0 和 255 之间的整数。"},
        {"65538", "300", "1", "1", IDC_SERVICE_ID, "已有相同的业务标识"},
        {"2", "302", "1", "1", IDC_CA_SYSTEM_ID, "已有相同的CA System ID"},
        {"3", "302", "127", "160", IDC_EMM_UNIT_TYPE, "数据单元类型必须在128~159之间"},
        {"3", "302", "159", "160", IDC_ECM_UNIT_TYPE, "数据单元类型必须在128~159之间"},
    };
    for (const auto& [caId, serviceId, emm, ecm, focus, message] : cases) {
        const Entries wrong{{IDC_CA_SYSTEM_ID, caId},
                            {IDC_SERVICE_ID, serviceId},
                            {IDC_EMM_UNIT_TYPE, emm},
                            {IDC_ECM_UNIT_TYPE, ecm}};
        expectRefused(entering(wrong, list_).add(0), focus, message);
    }
    EXPECT_EQ(entries().size(), 2u);
}

// Of an edited system only ids that changed are news; what no control can show stays.
TEST_F(ConditionalAccess, EditingKeepsWhatNobodyTouched) {
    model_->appendCaSystem({1, 300, 130, 131, 9, 77});
    model_->appendCaSystem({2, 301, 130, 131, 2, 0});
    EXPECT_TRUE(entering({{IDC_EMM_UNIT_TYPE, "159"}}, list_).edit(0));
    EXPECT_EQ(forms_.controls.selections[IDC_ECM_TRANSFER_MODE], 0);
    const auto edit = [this](const char* serviceId) {
        const Entries other{{IDC_SERVICE_ID, serviceId}, {IDC_ECM_TRANSFER_MODE, "3"}};
        return entering(other, list_).edit(1);
    };
    expectRefused(edit("300"), IDC_SERVICE_ID, "已有相同的业务标识");
    EXPECT_TRUE(edit("302"));
    EXPECT_EQ(entries()[0], (CaSystemEntry{1, 300, 159, 131, 9, 77}));
    EXPECT_EQ(entries()[1], (CaSystemEntry{2, 302, 130, 131, 3, 0}));
    EXPECT_TRUE(list_.remove(0));
    EXPECT_EQ(entries().size(), 1u);
    EXPECT_EQ(entries()[0].serviceId, 302);
}

TEST_F(ConditionalAccess, AnEleventhSystemIsRefusedBeforeItsDialogOpens) {
    for (std::uint16_t i = 0; i < 10; ++i) model_->appendCaSystem({i, i, 128, 129, 0, 0});
    EXPECT_FALSE(add("100", "100"));
    EXPECT_EQ(forms_.shown, 0);
    EXPECT_EQ(said(), "warn 最多支持10个加密授权系统\n");
}

// The list is the operator's at once, the fields when the page is committed.
TEST_F(ConditionalAccess, ThePagesFieldsDoNotTouchItsList) {
    model_->setCaTable({3, 2, 5, {}});
    CaTableForm form(*model_, prompts_);
    Controls controls;
    FormExchange page(form, controls, prompts_);
    page.show();
    EXPECT_EQ(controls.texts[IDC_TABLE_ID], "7");
    EXPECT_TRUE(controls.checks[IDC_SEND_TABLE]);
    ASSERT_TRUE(add("1", "300"));
    controls.texts[IDC_SECTION_COUNT] = "256";
    EXPECT_FALSE(page.accept());
    EXPECT_EQ(controls.focused, IDC_SECTION_COUNT);
    EXPECT_EQ(tables().caDescriptions.tableId, 3) << "nothing was taken";
    controls.texts[IDC_SECTION_COUNT] = "6";
    EXPECT_TRUE(page.accept());
    EXPECT_EQ(tables().caDescriptions.tableId, 7);
    EXPECT_EQ(tables().caDescriptions.sendFlag, 2) << "nobody touched it";
    EXPECT_EQ(tables().caDescriptions.sectionCount, 6);
    EXPECT_EQ(entries().size(), 1u);
}

}  // namespace
}  // namespace korvane
