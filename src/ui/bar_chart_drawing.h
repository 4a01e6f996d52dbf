#pragma once

#include <windows.h>

#include <span>
#include <string>

#include "ui/bitmap.h"

namespace korvane {

struct BarChartTexts {
    std::wstring title, valueTitle, barTitle;
};

// The fonts of a chart, derived from that of its dialog.
struct BarChartFonts {
    explicit BarChartFonts(HFONT base);
    Font title, label, smallLabel;
};

// Where things are, in pixels. All bars are equally wide and all steps of the scale equally high,
// so that a difference seen is one of the values.
struct BarChartLayout {
    static constexpr int steps = 10;

    RECT plot{};  // what is inside the axes
    int bars = 0;
    int pitch = 0;  // from one bar to the next
    int gap = 0;    // on each side of a bar
    int lineHeight = 0;
    int lineWidth = 1;  // of axes and grid

    RECT bar(int index, double percent) const;
    RECT aboveBar(int index) const;    // for the mark of one that goes beyond the scale
    int height(double percent) const;  // clipped to the scale
};

BarChartLayout layOutBarChart(HDC dc, SIZE size, const BarChartFonts& fonts, int bars);

// All but the bars.
void drawBarChartScale(HDC dc, SIZE size, const BarChartLayout& layout, const BarChartFonts& fonts,
                       const BarChartTexts& texts);
void drawBars(HDC dc, const BarChartLayout& layout, std::span<const double> percentages);

}  // namespace korvane
