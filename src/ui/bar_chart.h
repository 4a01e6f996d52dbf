#pragma once

#include <span>
#include <string_view>

#include "ui/controls.h"

namespace korvane {

// A chart of percentages: one bar for each value, numbered from 1, on a fixed scale from 0 to 100.
// The control's text is the chart's title. It fills whatever size and font it is given.
class BarChart : public Control {
  public:
    using Control::Control;

    static constexpr const wchar_t* className = L"KorvaneBarChart";
    // Must be called before a dialog with a chart is made; any number of times.
    static void registerClass();

    void setAxisTitles(std::string_view values, std::string_view bars) const;
    // In percent; what is above 100 is cut off at the top, with a red mark over it.
    void setValues(std::span<const double> percentages) const;
};

}  // namespace korvane
