#include "ui/bar_chart.h"

#include <gtest/gtest.h>

#include "ui/bitmap.h"
#include "ui/module.h"

namespace korvane {
namespace {

constexpr COLORREF white = RGB(255, 255, 255), blue = RGB(0, 0, 255);

// A bar as it is seen.
struct SeenBar {
    int left, right, top, bottom;  // right and bottom are outside
    int width() const { return right - left; }
    int height() const { return bottom - top; }
};

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

    void resize(int width, int height) {
        SetWindowPos(chart_, nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOMOVE);
    }
    void draw(std::vector<double> values) {
        BarChart(chart_).setValues(values);
        RECT area{};
        GetClientRect(chart_, &area);
        picture_.resize({area.right, area.bottom});
        SendMessageW(chart_, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture_.dc()), PRF_CLIENT);
    }
    COLORREF at(int x, int y) const { return GetPixel(picture_.dc(), x, y); }

    std::vector<SeenBar> seenBars() const {
        std::vector<SeenBar> bars;
        const auto [width, height] = picture_.size();
        for (int x = 0; x < width; ++x) {
            int top = 0, bottom = 0;
            for (int y = 0; y < height; ++y) {
                if (at(x, y) != blue) continue;
                if (bottom == 0) top = y;
                bottom = y + 1;
            }
            if (bottom == 0) continue;
            if (bars.empty() || bars.back().right != x)
                bars.push_back({x, x + 1, top, bottom});
            else
                bars.back().right = x + 1;
        }
        return bars;
    }
    bool isWritten(const RECT& area) const {
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x) {
                const COLORREF colour = at(x, y);
                if (colour != white && colour != blue && GetRValue(colour) < 160) return true;
            }
        return false;
    }

    ActivationScope activation_;
    HWND parent_ = CreateWindowExW(0, L"Static", L"", WS_OVERLAPPED, 0, 0, 1600, 1000, nullptr,
                                   nullptr, nullptr, nullptr);
    HWND chart_ = nullptr;
    MemoryPicture picture_;
};

TEST_F(BarChartTest, BarsAreAlikeAndAsHighAsTheirValuesAtAnySize) {
    std::vector<double> values;
    for (int i = 0; i < 40; ++i) values.push_back(i == 0 ? 100 : i * 2.5);
    for (const SIZE size : {SIZE{800, 400}, SIZE{1500, 900}, SIZE{640, 300}, SIZE{801, 457}}) {
        resize(size.cx, size.cy);
        draw(values);
        const auto bars = seenBars();
        ASSERT_EQ(bars.size(), 40u) << size.cx;
        const int whole = bars[0].height();
        EXPECT_GT(whole, size.cy / 2);
        for (std::size_t i = 0; i < bars.size(); ++i) {
            EXPECT_EQ(bars[i].width(), bars[0].width());
            EXPECT_EQ(bars[i].bottom, bars[0].bottom);
            EXPECT_NEAR(bars[i].height(), values[i] * whole / 100, 0.51) << i;
            if (i > 0) {
                EXPECT_EQ(bars[i].left - bars[i - 1].left, bars[1].left - bars[0].left);
            }
        }
    }
}

TEST_F(BarChartTest, ClipsWhatIsBeyondTheScale) {
    draw({100, 150, 4294967295.0 * 100, 50});
    auto bars = seenBars();
    ASSERT_EQ(bars.size(), 4u);
    EXPECT_EQ(bars[1].top, bars[0].top);
    EXPECT_EQ(bars[2].top, bars[0].top);
    EXPECT_GT(bars[3].top, bars[0].top);
    draw({0, -5, 1, 0});
    bars = seenBars();
    ASSERT_EQ(bars.size(), 1u);
    EXPECT_GT(bars[0].height(), 0);
}

TEST_F(BarChartTest, NewValuesLeaveNothingOfTheOldOnes) {
    draw(std::vector<double>(40, 100));
    ASSERT_EQ(seenBars().size(), 40u);
    draw(std::vector<double>(40, 0));
    EXPECT_TRUE(seenBars().empty());
}

TEST_F(BarChartTest, HasAWhiteGroundAGridInTensAndALabelUnderEachBar) {
    draw(std::vector<double>(40, 100));
    const auto bars = seenBars();
    ASSERT_EQ(bars.size(), 40u);
    for (std::size_t i = 0; i < bars.size(); ++i) {
        const int y = bars[i].bottom;
        EXPECT_TRUE(isWritten({bars[i].left, y + 5, bars[i].right, y + 18})) << i + 1;
    }
    draw(std::vector<double>(40, 0));
    const auto [width, height] = picture_.size();
    for (const POINT corner : {POINT{0, 0}, POINT{width - 1, 0}, POINT{0, height - 1}})
        EXPECT_EQ(at(corner.x, corner.y), white);
    const int step = bars[0].height() / 10, between = bars[0].right + 1;
    for (int i = 1; i <= 10; ++i) {
        const int y = bars[0].bottom - i * step;
        EXPECT_NE(at(between, y), white) << i * 10;
        EXPECT_EQ(at(between, y + step / 2), white) << i * 10;
        EXPECT_TRUE(isWritten({20, y - 6, bars[0].left - 12, y + 6})) << i * 10;
    }
    EXPECT_TRUE(isWritten({width / 3, 0, width * 2 / 3, bars[0].top - 4})) << "title";
    EXPECT_TRUE(isWritten({0, height / 3, 24, height * 2 / 3})) << "title of the values";
    EXPECT_TRUE(isWritten({width / 3, bars[0].bottom + 20, width * 2 / 3, height}))
        << "title of the bars";
}

TEST_F(BarChartTest, StandsSizesWithoutRoom) {
    for (const SIZE size : {SIZE{0, 0}, SIZE{1, 1}, SIZE{60, 40}, SIZE{3000, 2}, SIZE{2, 900}}) {
        resize(size.cx, size.cy);
        draw(std::vector<double>(40, 100));
    }
    resize(800, 400);
    draw(std::vector<double>(40, 100));
    EXPECT_EQ(seenBars().size(), 40u);
    draw({});
    EXPECT_TRUE(seenBars().empty());
}

TEST_F(BarChartTest, FollowsItsFont) {
    draw(std::vector<double>(40, 100));
    const int before = seenBars()[0].height();
    LOGFONTW data{};
    GetObjectW(GetStockObject(DEFAULT_GUI_FONT), sizeof data, &data);
    data.lfHeight *= 2;
    const Font font(CreateFontIndirectW(&data));
    SendMessageW(chart_, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
    EXPECT_EQ(SendMessageW(chart_, WM_GETFONT, 0, 0), reinterpret_cast<LRESULT>(font.get()));
    draw(std::vector<double>(40, 100));
    EXPECT_LT(seenBars()[0].height(), before);
}

}  // namespace
}  // namespace korvane
