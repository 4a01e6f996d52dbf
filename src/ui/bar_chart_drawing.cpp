#include "ui/bar_chart_drawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <string_view>

namespace korvane {
namespace {

constexpr COLORREF ground = RGB(255, 255, 255), gridColour = RGB(222, 226, 232),
                   axisColour = RGB(96, 102, 112), textColour = RGB(32, 36, 44),
                   barColour = RGB(0, 0, 255), beyondColour = RGB(216, 0, 0);
constexpr int topOfScale = 100;

Font derived(const LOGFONTW& base, int numerator, int denominator, LONG weight) {
    LOGFONTW font = base;
    font.lfHeight = MulDiv(base.lfHeight, numerator, denominator);
    font.lfWidth = 0;
    font.lfWeight = weight;
    Font result(CreateFontIndirectW(&font));
    if (!result) throw std::bad_alloc();
    return result;
}

class FontScope {
  public:
    FontScope(HDC dc, const Font& font) : dc_(dc), before_(SelectObject(dc, font.get())) {}
    ~FontScope() { SelectObject(dc_, before_); }
    FontScope(const FontScope&) = delete;
    FontScope& operator=(const FontScope&) = delete;

  private:
    HDC dc_;
    HGDIOBJ before_;
};

SIZE sizeOf(HDC dc, std::wstring_view text) {
    SIZE size{};
    GetTextExtentPoint32W(dc, text.data(), static_cast<int>(text.size()), &size);
    return size;
}

void drawText(HDC dc, std::wstring_view text, RECT area, UINT format) {
    DrawTextW(dc, text.data(), static_cast<int>(text.size()), &area,
              format | DT_SINGLELINE | DT_NOPREFIX | DT_NOCLIP);
}

// The stock brush in a colour of its own needs no object to be made.
void fill(HDC dc, const RECT& area, COLORREF colour) {
    SetDCBrushColor(dc, colour);
    FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

// How many labels to go on from one that is written to the next, so that none touches another.
int labelStride(int distance, int needed) {
    constexpr std::array strides = {1, 2, 5, 10};
    const auto* enough =
        std::ranges::find_if(strides, [&](int stride) { return distance * stride >= needed; });
    return enough == strides.end() ? strides.back() : *enough;
}

void drawGrid(HDC dc, const BarChartLayout& layout) {
    const RECT& plot = layout.plot;
    const int step = (plot.bottom - plot.top) / BarChartLayout::steps;
    const int tick = layout.lineHeight / 3;
    for (int i = 0; i <= BarChartLayout::steps; ++i) {
        const int y = plot.bottom - i * step;
        if (i > 0) fill(dc, {plot.left, y, plot.right, y + layout.lineWidth}, gridColour);
        fill(dc, {plot.left - tick, y, plot.left, y + layout.lineWidth}, axisColour);
    }
}

void drawValueLabels(HDC dc, const BarChartLayout& layout) {
    const RECT& plot = layout.plot;
    const int step = (plot.bottom - plot.top) / BarChartLayout::steps;
    const int stride = labelStride(step, layout.lineHeight);
    for (int i = 0; i <= BarChartLayout::steps; i += stride) {
        const int y = plot.bottom - i * step;
        const RECT area{0, y - layout.lineHeight, plot.left - layout.lineHeight / 2,
                        y + layout.lineHeight};
        drawText(dc, std::to_wstring(i * topOfScale / BarChartLayout::steps), area,
                 DT_RIGHT | DT_VCENTER);
    }
}

void drawAxes(HDC dc, const BarChartLayout& layout) {
    const RECT& plot = layout.plot;
    const int w = layout.lineWidth, tick = layout.lineHeight / 4;
    fill(dc, {plot.left - w, plot.top, plot.left, plot.bottom + w}, axisColour);
    fill(dc, {plot.left - w, plot.bottom, plot.right, plot.bottom + w}, axisColour);
    for (int i = 0; i < layout.bars; ++i) {
        const int x = plot.left + i * layout.pitch + layout.pitch / 2;
        fill(dc, {x, plot.bottom, x + w, plot.bottom + tick}, axisColour);
    }
}

void drawBarLabels(HDC dc, const BarChartLayout& layout, const BarChartFonts& fonts) {
    const auto needed = [&](const Font& font) {
        const FontScope scope(dc, font);
        return sizeOf(dc, std::to_wstring(layout.bars)).cx + 2;
    };
    const bool roomy = needed(fonts.label) <= layout.pitch;
    const Font& font = roomy ? fonts.label : fonts.smallLabel;
    const int stride = labelStride(layout.pitch, needed(font));
    const FontScope scope(dc, font);
    const int top = layout.plot.bottom + layout.lineHeight / 3;
    for (int i = 0; i < layout.bars; ++i) {
        if ((i + 1) % stride != 0 && i != 0) continue;
        const int left = layout.plot.left + i * layout.pitch;
        const RECT area{left, top, left + layout.pitch, top + layout.lineHeight};
        drawText(dc, std::to_wstring(i + 1), area, DT_CENTER | DT_VCENTER);
    }
}

// Chinese reads well from top to bottom, one upright character below the other.
void drawValueTitle(HDC dc, const BarChartLayout& layout, std::wstring_view text) {
    const RECT& plot = layout.plot;
    const int advance = layout.lineHeight + layout.lineHeight / 8;
    const int total = advance * static_cast<int>(text.size());
    int y = std::max<int>(0, (plot.top + plot.bottom - total) / 2);
    const int left = layout.lineHeight / 2;
    for (std::size_t i = 0; i < text.size(); ++i, y += advance)
        drawText(dc, text.substr(i, 1), {left, y, left + layout.lineHeight, y + advance},
                 DT_CENTER | DT_VCENTER);
}

// Points upwards: the bar goes on beyond the scale.
void drawPeak(HDC dc, const RECT& area) {
    const int height = area.bottom - area.top, width = area.right - area.left;
    for (int row = 0; row < height; ++row) {
        const int inset = width * (height - 1 - row) / (2 * height);
        fill(dc, {area.left + inset, area.top + row, area.right - inset, area.top + row + 1},
             beyondColour);
    }
}

}  // namespace

BarChartFonts::BarChartFonts(HFONT base) {
    LOGFONTW font{};
    const HGDIOBJ from = base ? base : GetStockObject(DEFAULT_GUI_FONT);
    GetObjectW(from, sizeof font, &font);
    title = derived(font, 4, 3, FW_BOLD);
    label = derived(font, 1, 1, font.lfWeight);
    smallLabel = derived(font, 5, 6, font.lfWeight);
}

int BarChartLayout::height(double percent) const {
    const double held = std::clamp(percent, 0.0, static_cast<double>(topOfScale));
    return static_cast<int>(std::lround(held * (plot.bottom - plot.top) / topOfScale));
}

RECT BarChartLayout::bar(int index, double percent) const {
    const LONG left = plot.left + index * pitch;
    return {left + gap, plot.bottom - height(percent), left + pitch - gap, plot.bottom};
}

// Apart from the top of the scale by a line of it.
RECT BarChartLayout::aboveBar(int index) const {
    RECT area = bar(index, topOfScale);
    area.bottom = area.top - lineWidth;
    area.top = area.bottom - lineHeight / 2;
    return area;
}

BarChartLayout layOutBarChart(HDC dc, SIZE size, const BarChartFonts& fonts, int bars) {
    BarChartLayout layout;
    layout.bars = bars;
    int titleHeight = 0, valueWidth = 0;
    {
        const FontScope scope(dc, fonts.title);
        titleHeight = sizeOf(dc, L"柱").cy;
    }
    const FontScope scope(dc, fonts.label);
    const int line = layout.lineHeight = sizeOf(dc, L"柱").cy;
    valueWidth = sizeOf(dc, std::to_wstring(topOfScale)).cx;
    layout.lineWidth = std::max(1, line / 14);
    const int left = line / 2 + line + line / 2 + valueWidth + line / 2;
    const int top = line / 2 + titleHeight + line;
    const int right = line, bottom = line / 3 + line + line / 3 + line + line / 2;
    const int width = std::max<int>(size.cx - left - right, 0);
    const int height = std::max<int>(size.cy - top - bottom, 0);
    layout.pitch = bars > 0 ? width / bars : 0;
    layout.gap = layout.pitch > 2 ? std::max(1, layout.pitch / 6) : 0;
    // What the division leaves over goes to both sides of the plot, and above it.
    const int plotWidth = bars > 0 ? layout.pitch * bars : width;
    const int plotHeight = height / BarChartLayout::steps * BarChartLayout::steps;
    layout.plot.left = left + (width - plotWidth) / 2;
    layout.plot.right = layout.plot.left + plotWidth;
    layout.plot.bottom = top + height;
    layout.plot.top = layout.plot.bottom - plotHeight;
    return layout;
}

void drawBarChartScale(HDC dc, SIZE size, const BarChartLayout& layout, const BarChartFonts& fonts,
                       const BarChartTexts& texts) {
    const RECT& plot = layout.plot;
    const int line = layout.lineHeight;
    fill(dc, {0, 0, size.cx, size.cy}, ground);
    drawGrid(dc, layout);
    drawAxes(dc, layout);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, textColour);
    {
        const FontScope scope(dc, fonts.title);
        drawText(dc, texts.title, {plot.left, line / 2, plot.right, plot.top - line / 2},
                 DT_CENTER | DT_TOP);
    }
    const FontScope scope(dc, fonts.label);
    drawValueLabels(dc, layout);
    drawBarLabels(dc, layout, fonts);
    drawValueTitle(dc, layout, texts.valueTitle);
    const int titleTop = plot.bottom + line / 3 + line + line / 3;
    drawText(dc, texts.barTitle, {plot.left, titleTop, plot.right, titleTop + line}, DT_CENTER);
}

void drawBars(HDC dc, const BarChartLayout& layout, std::span<const double> percentages) {
    for (std::size_t i = 0; i < percentages.size(); ++i) {
        const int index = static_cast<int>(i);
        fill(dc, layout.bar(index, percentages[i]), barColour);
        if (percentages[i] > topOfScale) drawPeak(dc, layout.aboveBar(index));
    }
}

}  // namespace korvane
