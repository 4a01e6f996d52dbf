#include "runtime/thread_ref.h"

#include <gtest/gtest.h>

#include "worker.h"

namespace nox_pub::mswin {
namespace {

using test::longEnoughMs;

struct Fate {
    bool destroyed = false, forced = false;
    std::uint32_t timeout = 0;
};

class Mourned : public test::Worker {
  public:
    explicit Mourned(Fate& fate) : Worker(&test::untilStopped), fate_(fate) {}
    ~Mourned() override { fate_.destroyed = ended(); }  // not before it was stopped

    bool stop(std::uint32_t timeoutMs, bool force) override {
        fate_ = {false, force, timeoutMs};
        return Worker::stop(timeoutMs, force);
    }

  private:
    Fate& fate_;
};

TEST(ThreadRefTest, OnlyTheLastOwnerStopsAndDestroys) {
    Fate fate;
    ThreadRef first(new Mourned(fate));
    first->start();
    {
        ThreadRef second(first);
        ThreadRef third;
        third = second;
        second.release();
        EXPECT_FALSE(second);
    }
    ThreadRef moved(std::move(first));
    ThreadRef last = moved;
    moved.release(longEnoughMs);
    EXPECT_EQ(fate.timeout, 0u);
    EXPECT_FALSE(static_cast<Mourned*>(last.get())->ended());
    last.release(longEnoughMs);
    EXPECT_TRUE(fate.destroyed && fate.forced);
    EXPECT_EQ(fate.timeout, longEnoughMs);
}

TEST(ThreadRefTest, ReassigningOrLeavingTheScopeLetsGoOfAThreadWithFiveSecondsToEnd) {
    Fate first, second;
    {
        ThreadRef thread(new Mourned(first));
        thread = ThreadRef(new Mourned(second));
        EXPECT_TRUE(first.destroyed);
        EXPECT_FALSE(second.destroyed);
    }
    EXPECT_TRUE(second.destroyed && second.forced);
    EXPECT_EQ(second.timeout, 5000u);
}

}  // namespace
}  // namespace nox_pub::mswin
