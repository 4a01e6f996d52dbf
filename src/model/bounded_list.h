#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace korvane {

// A list that owns its elements and never holds more than Limit of them: the limits that the
// device's fixed slots set are kept by the type, not by its users. Elements beyond size() are
// always value-initialised, so that two lists with equal elements are equal byte by byte.
template <class T, std::size_t Limit>
class BoundedList {
  public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    static constexpr std::size_t limit() { return Limit; }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    bool full() const { return size_ == Limit; }

    T* begin() { return items_.data(); }
    T* end() { return items_.data() + size_; }
    const T* begin() const { return items_.data(); }
    const T* end() const { return items_.data() + size_; }

    // index < size() is the caller's duty, as with any array.
    T& operator[](std::size_t index) { return items_[index]; }
    const T& operator[](std::size_t index) const { return items_[index]; }
    T& back() { return items_[size_ - 1]; }
    const T& back() const { return items_[size_ - 1]; }

    // All Limit slots: the elements, then zeros.
    const std::array<T, Limit>& slots() const { return items_; }

    // The first `count` elements of `slots`; a count above the limit is held to it.
    void assign(const std::array<T, Limit>& slots, std::size_t count) {
        resize(count);
        std::copy_n(slots.begin(), size_, items_.begin());
    }

    // False, and nothing changed, when the list is full.
    bool append(const T& item) {
        if (full()) return false;
        items_[size_++] = item;
        return true;
    }

    // Inserts before the element at `index`; false, and nothing changed, when the list is full or
    // index > size().
    bool insert(std::size_t index, const T& item) {
        if (full() || index > size_) return false;
        const T copy = item;  // `item` may be one of the elements that move
        std::copy_backward(begin() + index, end(), end() + 1);
        items_[index] = copy;
        ++size_;
        return true;
    }

    // False when there is no element at `index`.
    bool erase(std::size_t index) {
        if (index >= std::min(size_, Limit)) return false;
        std::copy(begin() + index + 1, end(), begin() + index);
        items_[--size_] = T{};
        return true;
    }

    // New elements are value-initialised; a count above the limit is held to it.
    void resize(std::size_t count) {
        count = std::min(count, Limit);
        for (std::size_t i = count; i < size_; ++i) items_[i] = T{};
        size_ = count;
    }

    void clear() { resize(0); }

    friend bool operator==(const BoundedList& a, const BoundedList& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }

  private:
    std::size_t size_ = 0;
    std::array<T, Limit> items_{};
};

}  // namespace korvane
