#include "monitor/lamp_picture.h"

#include <algorithm>
#include <array>

namespace korvane {
namespace {

// Of each lamp, by its number, to make those for other screens of; the small ones are for a screen
// of 96 dots per inch.
constexpr std::array largePictures = {0, IDB_LAMP_GREEN_LARGE, IDB_LAMP_RED_LARGE};
static_assert(largePictures.size() == lampPictures.size());

// The pixels of a square picture with 24 bits for each.
class Pixels {
  public:
    explicit Pixels(HBITMAP bitmap) { GetObjectW(bitmap, sizeof data_, &data_); }

    int size() const { return data_.bmBits && data_.bmBitsPixel == 24 ? data_.bmWidth : 0; }
    BYTE* at(int x, int y) const {
        return static_cast<BYTE*>(data_.bmBits) + y * data_.bmWidthBytes + 3 * x;
    }

  private:
    BITMAP data_{};
};

// How far pixel `from` of `fromSize` covers pixel `to` of `toSize` in one direction, in parts that
// divide both.
int covered(int from, int fromSize, int to, int toSize) {
    const int first = std::max(from * toSize, to * fromSize);
    return std::max(0, std::min((from + 1) * toSize, (to + 1) * fromSize) - first);
}

// The mean of what the pixel covers, which is what the eye would see from afar: the system's own
// ways to scale take single pixels, and a thin line is there or not.
void setMean(const Pixels& from, const Pixels& to, int x, int y) {
    const int n = from.size(), m = to.size();
    std::array<int, 3> sum{};
    for (int v = y * n / m; v * m < (y + 1) * n; ++v)
        for (int u = x * n / m; u * m < (x + 1) * n; ++u)
            for (std::size_t i = 0; i < sum.size(); ++i)
                sum[i] += from.at(u, v)[i] * covered(u, n, x, m) * covered(v, n, y, m);
    for (std::size_t i = 0; i < sum.size(); ++i)
        to.at(x, y)[i] = static_cast<BYTE>((sum[i] + n * n / 2) / (n * n));
}

Bitmap emptyPicture(int size) {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, size, size, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    return Bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
}

}  // namespace

Bitmap lampPicture(Lamp lamp, int size) {
    const auto number = static_cast<std::size_t>(lamp);
    if (size == lampSize) return loadBitmap(lampPictures[number]);
    const Bitmap large = loadBitmap(largePictures[number]);
    Bitmap picture = emptyPicture(size);
    const Pixels from(large.get()), to(picture.get());
    if (from.size() == 0 || to.size() == 0) return {};
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) setMean(from, to, x, y);
    return picture;
}

}  // namespace korvane
