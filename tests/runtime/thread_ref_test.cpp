#include "runtime/thread_ref.h"

#include <gtest/gtest.h>

#include "worker.h"

namespace nox_pub::mswin {
namespace {

using test::longEnoughMs;
using test::Worker;

class Mourned : public Worker {
  public:
    explicit Mourned(bool& destroyed) : Worker(&test::untilStopped), destroyed_(destroyed) {}
    ~Mourned() override { destroyed_ = true; }

    // The thread lives when anybody destroys it without stopping it.
    bool stop(std::uint32_t timeoutMs, bool force) override {
        timeout = timeoutMs;
        forced = force;
        return Worker::stop(timeoutMs, force);
    }

    static inline std::uint32_t timeout = 0;
    static inline bool forced = false;

  private:
    bool& destroyed_;
};

TEST(ThreadRefTest, OnlyTheLastOwnerStopsAndDestroys) {
    bool destroyed = false;
    ThreadRef first(new Mourned(destroyed));
    first->start();
    {
        ThreadRef second(first);
        ThreadRef third;
        third = second;
        second.release();
        EXPECT_FALSE(second);
    }
    EXPECT_FALSE(destroyed);
    EXPECT_FALSE(static_cast<Worker*>(first.get())->ended());
    const ThreadRef moved(std::move(first));
    EXPECT_FALSE(destroyed);
    ThreadRef last = moved;
    const_cast<ThreadRef&>(moved).release(longEnoughMs);
    EXPECT_FALSE(destroyed);
    last.release(longEnoughMs);
    EXPECT_TRUE(destroyed);
    EXPECT_EQ(Mourned::timeout, longEnoughMs);
    EXPECT_TRUE(Mourned::forced);
}

TEST(ThreadRefTest, OneThatGoesOutOfScopeGivesFiveSeconds) {
    bool destroyed = false;
    { const ThreadRef thread(new Mourned(destroyed)); }
    EXPECT_TRUE(destroyed);
    EXPECT_EQ(Mourned::timeout, 5000u);
    EXPECT_TRUE(Mourned::forced);
}

TEST(ThreadRefTest, ReassigningLetsGoOfTheOldThread) {
    bool firstDestroyed = false, secondDestroyed = false;
    ThreadRef thread(new Mourned(firstDestroyed));
    thread = ThreadRef(new Mourned(secondDestroyed));
    EXPECT_TRUE(firstDestroyed);
    EXPECT_FALSE(secondDestroyed);
}

}  // namespace
}  // namespace nox_pub::mswin
