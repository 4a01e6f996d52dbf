#include "ui/bitmap.h"

#include <array>
#include <new>

#include "ui/module.h"

namespace korvane {
namespace {

using Pixel = std::array<BYTE, 3>;  // blue, green, red

constexpr Pixel transparent = {255, 0, 255};

void fillGround(const BITMAP& bitmap) {
    const COLORREF ground = GetSysColor(COLOR_3DFACE);
    const Pixel colour = {GetBValue(ground), GetGValue(ground), GetRValue(ground)};
    auto* row = static_cast<BYTE*>(bitmap.bmBits);
    for (LONG y = 0; y < bitmap.bmHeight; ++y, row += bitmap.bmWidthBytes) {
        auto* pixels = reinterpret_cast<Pixel*>(row);
        for (LONG x = 0; x < bitmap.bmWidth; ++x)
            if (pixels[x] == transparent) pixels[x] = colour;
    }
}

}  // namespace

Bitmap loadBitmap(int resourceId) {
    Bitmap bitmap(static_cast<HBITMAP>(LoadImageW(moduleInstance(), MAKEINTRESOURCEW(resourceId),
                                                  IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
    BITMAP data{};
    if (bitmap && GetObjectW(bitmap.get(), sizeof data, &data) != 0 && data.bmBits != nullptr &&
        data.bmBitsPixel == 24)
        fillGround(data);
    return bitmap;
}

void MemoryPicture::resize(SIZE size) {
    release();
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.cx > 0 ? size.cx : 1;
    info.bmiHeader.biHeight = size.cy > 0 ? -size.cy : -1;  // negative: top row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    dc_ = CreateCompatibleDC(nullptr);
    void* bits = nullptr;
    bitmap_.reset(CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!dc_ || !bitmap_) {
        release();
        throw std::bad_alloc();
    }
    original_ = SelectObject(dc_, bitmap_.get());
    size_ = size;
}

void MemoryPicture::copyTo(HDC target) const {
    BitBlt(target, 0, 0, size_.cx, size_.cy, dc_, 0, 0, SRCCOPY);
}

void MemoryPicture::release() {
    if (original_) SelectObject(dc_, original_);
    if (dc_) DeleteDC(dc_);
    dc_ = nullptr;
    original_ = nullptr;
    bitmap_.reset();
    size_ = {};
}

}  // namespace korvane
