#include "runtime/registry_reader.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <string>

namespace nox_pub::mswin {
namespace {

// Below HKEY_CURRENT_USER, where everybody may write.
class RegistryReaderTest : public testing::Test {
  protected:
    RegistryReaderTest() { RegCreateKeyA(HKEY_CURRENT_USER, root_.c_str(), &key_); }
    ~RegistryReaderTest() override {
        RegDeleteKeyA(key_, "First");
        RegDeleteKeyA(key_, "Second");
        RegCloseKey(key_);
        RegDeleteKeyA(HKEY_CURRENT_USER, root_.c_str());
    }
    void set(const char* subkey, const char* name, const std::string& text) {
        HKEY key = nullptr;
        RegCreateKeyA(key_, subkey, &key);
        RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                       static_cast<DWORD>(text.size() + 1));
        RegCloseKey(key);
    }
    // -99 when there is nothing to read.
    long read(const char* subkey, const char* name) {
        long number = -99;
        const int result = reader_.read(subkey, name, number);
        EXPECT_EQ(result, number == -99 ? 0 : 1);
        return number;
    }

    const std::string root_ = "Software\\KorvaneTest" + std::to_string(GetCurrentProcessId());
    HKEY key_ = nullptr;
    RegistryReader reader_{HKEY_CURRENT_USER, root_};
};

TEST_F(RegistryReaderTest, ReadsDecimalTexts) {
    set("First", "PrintLog", "1");
    set("First", "Other", " -20x");
    set("First", "Text", "yes");
    EXPECT_EQ(read("First", "PrintLog"), 1);
    EXPECT_EQ(read("First", "Other"), -20);
    EXPECT_EQ(read("First", "Text"), 0);
    EXPECT_EQ(read("First", "Missing"), -99);
}

TEST_F(RegistryReaderTest, FollowsTheSubkeyItIsAskedFor) {
    set("First", "A", "1");
    set("Second", "A", "2");
    EXPECT_EQ(read("First", "A"), 1);
    EXPECT_EQ(read("FIRST", "A"), 1);
    EXPECT_EQ(read("Second", "A"), 2);
    EXPECT_EQ(read("First", "A"), 1);
    set("First", "A", "5");
    EXPECT_EQ(read("First", "A"), 5);
}

TEST_F(RegistryReaderTest, SurvivesTheLossOfTheKeyItKeeps) {
    set("First", "A", "1");
    EXPECT_EQ(read("First", "A"), 1);
    RegDeleteKeyA(key_, "First");
    EXPECT_EQ(read("First", "A"), -99);
    set("First", "A", "2");
    EXPECT_EQ(read("First", "A"), 2);
}

TEST_F(RegistryReaderTest, TakesTextsOfUpTo1023BytesWithTheirEnd) {
    set("First", "A", "7" + std::string(1021, ' '));
    EXPECT_EQ(read("First", "A"), 7);
    set("First", "A", "7" + std::string(1022, ' '));
    EXPECT_EQ(read("First", "A"), -99);
}

TEST_F(RegistryReaderTest, WithoutItsRootThereIsNothing) {
    RegistryReader reader(HKEY_CURRENT_USER, "Software\\KorvaneTestMissing");
    long number = 3;
    EXPECT_EQ(reader.read("First", "A", number), 0);
    EXPECT_EQ(number, 3);
}

}  // namespace
}  // namespace nox_pub::mswin
