#include "runtime/registry_reader.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <string>

namespace nox_pub::mswin {
namespace {

// Below HKEY_CURRENT_USER, where everybody may write.
class RegistryReaderTest : public testing::Test {
  protected:
    ~RegistryReaderTest() override { RegDeleteTreeA(HKEY_CURRENT_USER, root_.c_str()); }

    void set(const char* subkey, const std::string& text) {
        RegSetKeyValueA(HKEY_CURRENT_USER, pathOf(subkey).c_str(), "A", REG_SZ, text.c_str(),
                        static_cast<DWORD>(text.size() + 1));
    }
    std::string pathOf(const char* subkey) const { return root_ + "\\" + subkey; }
    // -99 when there is nothing to read.
    long read(const char* subkey, const char* name = "A") {
        long number = -99;
        const int result = reader_.read(subkey, name, number);
        EXPECT_EQ(result, number == -99 ? 0 : 1);
        return number;
    }

    const std::string root_ = "Software\\KorvaneTest" + std::to_string(GetCurrentProcessId());
    RegistryReader reader_{HKEY_CURRENT_USER, root_};
};

TEST_F(RegistryReaderTest, ReadsTextsThatBeginWithANumberIfTheyAreNotTooLong) {
    const std::pair<std::string, long> cases[] = {{"1", 1},
                                                  {" -20x", -20},
                                                  {"yes", 0},
                                                  {"7" + std::string(1021, ' '), 7},
                                                  {"7" + std::string(1022, ' '), -99}};
    for (const auto& [text, number] : cases) {
        set("First", text);
        EXPECT_EQ(read("First"), number) << text;
    }
    EXPECT_EQ(read("First", "Missing"), -99);
}

TEST_F(RegistryReaderTest, FollowsTheSubkeyItIsAskedForAndSurvivesItsLoss) {
    set("First", "1");
    set("Second", "2");
    EXPECT_EQ(read("First"), 1);
    EXPECT_EQ(read("FIRST"), 1);
    EXPECT_EQ(read("Second"), 2);
    EXPECT_EQ(read("First"), 1);
    RegDeleteKeyA(HKEY_CURRENT_USER, pathOf("First").c_str());
    EXPECT_EQ(read("First"), -99);
    set("First", "5");
    EXPECT_EQ(read("First"), 5);
}

TEST_F(RegistryReaderTest, WithoutItsRootThereIsNothing) {
    RegistryReader reader(HKEY_CURRENT_USER, root_ + "Missing");
    long number = 3;
    EXPECT_EQ(reader.read("First", "A", number), 0);
    EXPECT_EQ(number, 3);
}

}  // namespace
}  // namespace nox_pub::mswin
