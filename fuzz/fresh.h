#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

namespace korvane::fuzz {

inline void require(bool condition) {
    if (!condition) std::abort();
}

// The one T of a target, made anew at its place: hundreds of kilobytes from the heap for each input
// would take longer than the code under test.
template <class T>
T& fresh() {
    static T object;
    std::destroy_at(&object);
    return *new (&object) T;
}

}  // namespace korvane::fuzz
