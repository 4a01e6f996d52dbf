#include "runtime/event.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <string>

#include "runtime/exceptions.h"

namespace nox_pub::mswin {
namespace {

const std::string name = "测试-" + std::to_string(GetCurrentProcessId());

TEST(EventTest, StaysSignalledUntilItIsReset) {
    Event event;
    EXPECT_FALSE(event.wait(0));
    event.signal();
    EXPECT_TRUE(event.wait(0));
    EXPECT_TRUE(event.wait(0));
    event.reset();
    EXPECT_FALSE(event.wait(0));
}

TEST(EventTest, OnesOfTheSameNameAreOne) {
    Event first(name), second(name);
    const Event other(name + "x"), unnamed, unnamedToo;
    EXPECT_TRUE(second.existed());
    first.signal();
    EXPECT_TRUE(second.wait(0));
    for (const Event* alone : {&other, &unnamed, &unnamedToo}) {
        EXPECT_FALSE(alone->existed());
        EXPECT_FALSE(alone->wait(0));
    }
    EXPECT_FALSE(first.existed());
}

TEST(EventTest, ANameThatIsTakenByAnotherKindOfObjectFails) {
    const HANDLE mutex = CreateMutexA(nullptr, FALSE, "nox_pub:event:taken");
    try {
        const Event event("taken");
        FAIL();
    } catch (const EventError& error) {
        EXPECT_STREQ(error.what(), "cannot create: nox_pub:event:taken");
        EXPECT_EQ(error.code(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
    }
    CloseHandle(mutex);
}

}  // namespace
}  // namespace nox_pub::mswin
