#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace korvane {

struct GdiDeleter {
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using Bitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, GdiDeleter>;
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, GdiDeleter>;

// A 24-bit bitmap of this module's resources. Its magenta pixels (255, 0, 255) take the colour of a
// dialog's ground. Empty when there is no such bitmap.
Bitmap loadBitmap(int resourceId);

// A picture in memory, to draw into and to copy from: 32-bit pixels, which every system keeps where
// drawing is fast.
class MemoryPicture {
  public:
    MemoryPicture() = default;
    ~MemoryPicture() { release(); }
    MemoryPicture(const MemoryPicture&) = delete;
    MemoryPicture& operator=(const MemoryPicture&) = delete;

    // The picture's content is lost. Throws std::bad_alloc when the system has no room for it.
    void resize(SIZE size);
    SIZE size() const { return size_; }
    // nullptr before the first resize.
    HDC dc() const { return dc_; }
    void copyTo(HDC target) const;

  private:
    void release();

    HDC dc_ = nullptr;
    HGDIOBJ original_ = nullptr;  // what the device context had selected
    Bitmap bitmap_;
    SIZE size_{};
};

}  // namespace korvane
