#include "ui/bar_chart.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "ui/bitmap.h"
#include "ui/module.h"

namespace korvane {
namespace {

constexpr COLORREF white = RGB(255, 255, 255), blue = RGB(0, 0, 255), red = RGB(216, 0, 0);

class BarChartTest : public testing::Test {
  protected:
    BarChartTest() {
        BarChart::registerClass();
        BarChart::registerClass();  // as often as one likes
        chart_ = CreateWindowExW(0, BarChart::className, L"复用流带宽柱状图", WS_CHILD, 0, 0, 800,
                                 400, parent_, nullptr, moduleInstance(), nullptr);
        BarChart(chart_).setAxisTitles("信道带宽占用比%", "复用帧占用的时隙");
    }
    ~BarChartTest() override { DestroyWindow(parent_); }

    // The bars as they are seen; right and bottom are outside.
    std::vector<RECT> draw(const std::vector<double>& values, SIZE size = {800, 400}) {
        SetWindowPos(chart_, nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER | SWP_NOMOVE);
        BarChart(chart_).setValues(values);
        picture_.resize(size);
        SendMessageW(chart_, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture_.dc()), PRF_CLIENT);
        std::vector<RECT> bars;
        for (int x = 0; x < size.cx; ++x) addColumn(x, size.cy, bars);
        return bars;
    }
    void addColumn(int x, int height, std::vector<RECT>& bars) const {
        int top = 0, bottom = 0;
        for (int y = 0; y < height; ++y) {
            if (at(x, y) != blue) continue;
            if (bottom == 0) top = y;
            bottom = y + 1;
        }
        if (bottom == 0) return;
        if (bars.empty() || bars.back().right != x) bars.push_back({x, top, x, bottom});
        bars.back().right = x + 1;
    }
    COLORREF at(int x, int y) const { return GetPixel(picture_.dc(), x, y); }
    bool isWritten(const RECT& area) const {
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x)
                if (at(x, y) != blue && GetRValue(at(x, y)) < 160) return true;
        return false;
    }

    // Whether there is red between the title and the top of the scale, not wider than the bar, and
    // as wide as it at the foot.
    bool redAbove(const RECT& bar) const {
        LONG left = picture_.size().cx, right = 0;
        const LONG aside = (bar.right - bar.left) / 4, top = bar.top;
        for (LONG y = top - 12; y < top; ++y)
            for (LONG x = bar.left - aside; x < bar.right + aside; ++x) {
                if (at(x, y) != red) continue;
                left = std::min(left, x);
                right = std::max(right, x + 1);
            }
        EXPECT_TRUE(right == 0 || (left == bar.left && right == bar.right));
        return right != 0;
    }

    const std::vector<double> full_ = std::vector<double>(40, 100);
    ActivationScope activation_;
    HWND parent_ = CreateWindowExW(0, L"Static", L"", WS_OVERLAPPED, 0, 0, 1600, 1000, nullptr,
                                   nullptr, nullptr, nullptr);
    HWND chart_ = nullptr;
    MemoryPicture picture_;
};

TEST_F(BarChartTest, BarsAreAlikeAndAsHighAsTheirValuesAtAnySize) {
    for (const SIZE noRoom : {SIZE{0, 0}, SIZE{1, 1}, SIZE{60, 40}, SIZE{3000, 2}, SIZE{2, 900}})
        draw(full_, noRoom);
    std::vector<double> values = {100};
    for (int i = 1; i < 40; ++i) values.push_back(i * 2.5);
    for (const SIZE size : {SIZE{800, 400}, SIZE{1500, 900}, SIZE{640, 300}, SIZE{801, 457}}) {
        const auto bars = draw(values, size);
        ASSERT_EQ(bars.size(), 40u) << size.cx;
        const LONG whole = bars[0].bottom - bars[0].top, pitch = bars[1].left - bars[0].left;
        EXPECT_GT(whole, size.cy / 2);
        for (std::size_t i = 0; i < bars.size(); ++i) {
            EXPECT_EQ(bars[i].left, bars[0].left + static_cast<LONG>(i) * pitch);
            EXPECT_EQ(bars[i].right - bars[i].left, bars[0].right - bars[0].left);
            EXPECT_EQ(bars[i].bottom, bars[0].bottom);
            EXPECT_NEAR(bars[i].bottom - bars[i].top, values[i] * whole / 100, 0.51) << i;
        }
    }
}

TEST_F(BarChartTest, ClipsAndMarksABarBeyondTheScaleAndForgetsWhatWas) {
    const std::vector<double> values = {100, 100.01, 4294967295.0 * 100, 50, -5};
    for (const SIZE size : {SIZE{800, 400}, SIZE{1500, 900}, SIZE{640, 300}}) {
        const auto bars = draw(values, size);
        ASSERT_EQ(bars.size(), 4u);
        for (std::size_t i = 0; i < bars.size(); ++i) {
            EXPECT_EQ(redAbove(bars[i]), i == 1 || i == 2) << i;
            EXPECT_EQ(bars[i].top > bars[0].top, i == 3) << i;
        }
        EXPECT_EQ(draw({0, 0, 1, 0, 0}, size).size(), 1u);
        for (const RECT& bar : bars) EXPECT_FALSE(redAbove(bar));
    }
    EXPECT_TRUE(draw({}).empty());
}

TEST_F(BarChartTest, HasAWhiteGroundAGridInTensAndALabelUnderEachBar) {
    const auto bars = draw(full_);
    ASSERT_EQ(bars.size(), 40u);
    for (const RECT& bar : bars)
        EXPECT_TRUE(isWritten({bar.left, bar.bottom + 5, bar.right, bar.bottom + 18})) << bar.left;
    draw(std::vector<double>(40, 0));
    const auto [width, height] = picture_.size();
    for (const POINT corner : {POINT{0, 0}, POINT{width - 1, 0}, POINT{0, height - 1}})
        EXPECT_EQ(at(corner.x, corner.y), white);
    const auto [left, top, between, bottom] = bars[0];
    const int step = (bottom - top) / 10;
    for (int i = 1; i <= 10; ++i) {
        const int y = bottom - i * step;
        EXPECT_NE(at(between + 1, y), white) << i * 10;
        EXPECT_EQ(at(between + 1, y + step / 2), white) << i * 10;
        EXPECT_TRUE(isWritten({20, y - 6, left - 12, y + 6})) << i * 10;
    }
    EXPECT_TRUE(isWritten({width / 3, 0, width * 2 / 3, top - 4})) << "title";
    EXPECT_TRUE(isWritten({0, height / 3, 24, height * 2 / 3})) << "title of the values";
    EXPECT_TRUE(isWritten({width / 3, bottom + 20, width * 2 / 3, height})) << "of the bars";
}

TEST_F(BarChartTest, FollowsItsFont) {
    const LONG before = draw(full_)[0].top;
    LOGFONTW data{};
    GetObjectW(GetStockObject(DEFAULT_GUI_FONT), sizeof data, &data);
    data.lfHeight *= 2;
    const Font font(CreateFontIndirectW(&data));
    SendMessageW(chart_, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
    EXPECT_EQ(SendMessageW(chart_, WM_GETFONT, 0, 0), reinterpret_cast<LRESULT>(font.get()));
    EXPECT_GT(draw(full_)[0].top, before);
}

}  // namespace
}  // namespace korvane
