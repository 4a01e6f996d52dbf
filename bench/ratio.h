#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

namespace korvane::bench {

inline double seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

inline double timeOf(const std::function<void()>& work) {
    const double begin = seconds();
    work();
    asm volatile("" ::: "memory");  // what was written counts as read
    return seconds() - begin;
}

// Whether `work` takes at most `target` times as long as `floor`, which goes first. Turn by turn,
// so that both meet the same neighbours on the machine; the fastest of each counts.
inline bool meets(const char* ratio, double target, int turns, const std::function<void()>& work,
                  const std::function<void()>& floor) {
    double floorTime = timeOf(floor), workTime = timeOf(work);
    for (int i = 1; i < turns; ++i) {
        floorTime = std::min(floorTime, timeOf(floor));
        workTime = std::min(workTime, timeOf(work));
    }
    const bool met = workTime <= target * floorTime;
    std::printf("%s: %.3f ms / %.3f ms = %.2f (target at most %.2f) %s\n", ratio, workTime * 1000,
                floorTime * 1000, workTime / floorTime, target, met ? "ok" : "MISSED");
    return met;
}

}  // namespace korvane::bench
