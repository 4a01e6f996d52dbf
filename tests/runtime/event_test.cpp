#include "runtime/event.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <string>

#include "runtime/exceptions.h"

namespace nox_pub::mswin {
namespace {

TEST(EventTest, StaysSignalledUntilItIsReset) {
    Event event;
    EXPECT_FALSE(event.existed());
    EXPECT_FALSE(event.wait(0));
    event.signal();
    EXPECT_TRUE(event.wait(0));
    EXPECT_TRUE(event.wait(0));
    event.reset();
    EXPECT_FALSE(event.wait(0));
}

TEST(EventTest, OnesOfTheSameNameAreOne) {
    const std::string name = "测试-" + std::to_string(GetCurrentProcessId());
    Event first(name);
    Event second(name);
    Event other(name + "x");
    Event unnamed;
    EXPECT_FALSE(first.existed());
    EXPECT_TRUE(second.existed());
    EXPECT_FALSE(other.existed());
    EXPECT_FALSE(unnamed.existed());
    first.signal();
    EXPECT_TRUE(second.wait(0));
    EXPECT_FALSE(other.wait(0));
    EXPECT_FALSE(unnamed.wait(0));
}

TEST(EventTest, ANameThatIsTakenByAnotherKindOfObjectFails) {
    const std::string name = "taken-" + std::to_string(GetCurrentProcessId());
    const HANDLE mutex = CreateMutexA(nullptr, FALSE, ("nox_pub:event:" + name).c_str());
    try {
        const Event event(name);
        FAIL();
    } catch (const EventError& error) {
        EXPECT_EQ(error.what(), "cannot create: nox_pub:event:" + name);
        EXPECT_EQ(error.code(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
    }
    CloseHandle(mutex);
}

}  // namespace
}  // namespace nox_pub::mswin
