// The picture library's header needs the object declarations that the lean system header leaves
// out.
#undef WIN32_LEAN_AND_MEAN
#include "picture.h"

#include <windows.h>

#include <gdiplus.h>
#include <memory>
#include <stdexcept>
#include <string>

namespace korvane::host {

namespace {

namespace gdiplus = Gdiplus::DllExports;

constexpr CLSID pngEncoder = {
    0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

class GdiplusSession {
  public:
    GdiplusSession() {
        const Gdiplus::GdiplusStartupInput input;
        if (Gdiplus::GdiplusStartup(&token_, &input, nullptr) != Gdiplus::Ok)
            throw std::runtime_error("the picture library does not start");
    }
    ~GdiplusSession() { Gdiplus::GdiplusShutdown(token_); }
    GdiplusSession(const GdiplusSession&) = delete;
    GdiplusSession& operator=(const GdiplusSession&) = delete;

  private:
    ULONG_PTR token_ = 0;
};

struct BitmapDelete {
    using pointer = HBITMAP;
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using Bitmap = std::unique_ptr<HBITMAP, BitmapDelete>;

Bitmap newBitmap(int width, int height) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* bits = nullptr;
    return Bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
}

// From the window's own device context, which holds its frame too and is complete even when other
// windows lie above it.
Bitmap capture(HWND window) {
    RECT area;
    if (!GetWindowRect(window, &area)) throw std::runtime_error("no window to take a picture of");
    const int width = area.right - area.left, height = area.bottom - area.top;
    Bitmap bitmap = newBitmap(width, height);
    HDC source = GetWindowDC(window);
    HDC target = CreateCompatibleDC(source);
    HGDIOBJ previous = SelectObject(target, bitmap.get());
    const bool copied = bitmap && BitBlt(target, 0, 0, width, height, source, 0, 0, SRCCOPY);
    GdiFlush();
    SelectObject(target, previous);
    DeleteDC(target);
    ReleaseDC(window, source);
    if (!copied) throw std::runtime_error("the window's picture cannot be taken");
    return bitmap;
}

}  // namespace

void writePicture(HWND window, const std::filesystem::path& file) {
    const GdiplusSession session;
    const Bitmap bitmap = capture(window);
    Gdiplus::GpBitmap* image = nullptr;
    if (gdiplus::GdipCreateBitmapFromHBITMAP(bitmap.get(), nullptr, &image) != Gdiplus::Ok)
        throw std::runtime_error("the window's picture cannot be converted");
    const auto status =
        gdiplus::GdipSaveImageToFile(image, file.wstring().c_str(), &pngEncoder, nullptr);
    gdiplus::GdipDisposeImage(image);
    if (status != Gdiplus::Ok)
        throw std::runtime_error("the picture " + file.string() + " cannot be written");
}

}  // namespace korvane::host
