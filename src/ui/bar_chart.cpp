#include "ui/bar_chart.h"

#include <memory>
#include <optional>
#include <utility>

#include "log/log.h"
#include "text/text.h"
#include "ui/bar_chart_drawing.h"
#include "ui/module.h"

namespace korvane {
namespace {

enum : UINT { setTitlesMessage = WM_USER, setValuesMessage };

struct AxisTitles {
    std::string_view values, bars;
};

// What a chart's window holds. The scale changes seldom and is kept; a change of values copies it
// and draws the bars over it. The window only ever gets whole pictures.
class BarChartWindow {
  public:
    explicit BarChartWindow(HWND window) : window_(window) {}

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;

  private:
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);
    void setFont(HFONT font);
    void setTitles(const AxisTitles& titles);
    void setValues(std::span<const double> values);
    void paint();
    void renew();
    void renewScale(SIZE size);
    void scaleChanged();

    HWND window_;
    HFONT font_ = nullptr;  // the dialog's
    std::wstring valueTitle_, barTitle_;
    std::vector<double> values_;
    bool scaleStale_ = true, barsStale_ = true;
    bool failed_ = false;
    BarChartLayout layout_;
    MemoryPicture scale_, picture_;
};

LRESULT CALLBACK BarChartWindow::procedure(HWND window, UINT message, WPARAM wParam,
                                           LPARAM lParam) noexcept {
    auto* self = reinterpret_cast<BarChartWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    try {
        if (message == WM_NCCREATE) {
            self = new BarChartWindow(window);
            SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        }
        if (message == WM_NCDESTROY) {
            SetWindowLongPtrW(window, GWLP_USERDATA, 0);
            delete self;
            self = nullptr;
        }
        if (self) return self->handle(message, wParam, lParam);
    } catch (const std::exception& failure) {
        // Without memory: a window that is not made, or a picture that is not renewed. It is tried
        // again with each status, and logged once.
        if (!self || !std::exchange(self->failed_, true))
            logLine(logError, "图表窗口过程异常: %s", failure.what());
        if (message == WM_NCCREATE) return FALSE;
        if (message == WM_PAINT) ValidateRect(window, nullptr);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT BarChartWindow::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case setTitlesMessage:
            setTitles(*reinterpret_cast<const AxisTitles*>(lParam));
            return 0;
        case setValuesMessage:
            setValues({reinterpret_cast<const double*>(lParam), wParam});
            return 0;
        case WM_SETFONT:
            setFont(reinterpret_cast<HFONT>(wParam));
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(font_);
        case WM_SETTEXT:
        case WM_SIZE: {
            const LRESULT result = DefWindowProcW(window_, message, wParam, lParam);
            scaleChanged();
            return result;
        }
        case WM_ERASEBKGND:
            return TRUE;
        case WM_PAINT:
            paint();
            return 0;
        case WM_PRINTCLIENT:
            renew();
            picture_.copyTo(reinterpret_cast<HDC>(wParam));
            return 0;
        default:
            return DefWindowProcW(window_, message, wParam, lParam);
    }
}

void BarChartWindow::setFont(HFONT font) {
    font_ = font;
    scaleChanged();
}

void BarChartWindow::setTitles(const AxisTitles& titles) {
    valueTitle_ = toWide(titles.values);
    barTitle_ = toWide(titles.bars);
    scaleChanged();
}

void BarChartWindow::setValues(std::span<const double> values) {
    if (values.size() != values_.size()) scaleStale_ = true;
    values_.assign(values.begin(), values.end());
    barsStale_ = true;
    InvalidateRect(window_, nullptr, FALSE);
}

void BarChartWindow::scaleChanged() {
    scaleStale_ = true;
    InvalidateRect(window_, nullptr, FALSE);
}

void BarChartWindow::paint() {
    renew();
    PAINTSTRUCT paint;
    picture_.copyTo(BeginPaint(window_, &paint));
    EndPaint(window_, &paint);
}

void BarChartWindow::renew() {
    RECT client{};
    GetClientRect(window_, &client);
    if (scaleStale_) renewScale({client.right, client.bottom});
    if (!barsStale_) return;
    scale_.copyTo(picture_.dc());
    drawBars(picture_.dc(), layout_, values_);
    barsStale_ = false;
}

void BarChartWindow::renewScale(SIZE size) {
    scale_.resize(size);
    picture_.resize(size);
    const BarChartFonts fonts(font_);
    const BarChartTexts texts{toWide(Control(window_).text()), valueTitle_, barTitle_};
    layout_ = layOutBarChart(scale_.dc(), size, fonts, static_cast<int>(values_.size()));
    drawBarChartScale(scale_.dc(), size, layout_, fonts, texts);
    scaleStale_ = false;
    barsStale_ = true;
}

}  // namespace

// A class that is in use stays as it is. One that an earlier load of this library at the same place
// left behind is not, and must not stay: its procedure has gone.
void BarChart::registerClass() {
    WNDCLASSEXW data{};
    data.cbSize = sizeof data;
    data.style = CS_HREDRAW | CS_VREDRAW;
    data.lpfnWndProc = &BarChartWindow::procedure;
    data.hInstance = moduleInstance();
    data.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // the arrow
    data.lpszClassName = className;
    UnregisterClassW(className, data.hInstance);
    RegisterClassExW(&data);
}

void BarChart::setAxisTitles(std::string_view values, std::string_view bars) const {
    const AxisTitles titles{values, bars};
    send(setTitlesMessage, 0, reinterpret_cast<LPARAM>(&titles));
}

void BarChart::setValues(std::span<const double> percentages) const {
    send(setValuesMessage, percentages.size(), reinterpret_cast<LPARAM>(percentages.data()));
}

}  // namespace korvane
