#include "monitor/monitor_panel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "monitor/frame_structure.h"
#include "monitor/scripted_status.h"
#include "monitor/status_bytes.h"
#include "resources/ids.h"
#include "support/test_host.h"
#include "ui/bar_chart.h"
#include "ui/list_view.h"

namespace korvane {
namespace {

using testing::ElementsAre;

constexpr int inputLamps[] = {1110, 1112, 1113, 1114};
constexpr int linkLamp = 1115;

// Ticks come when the test sends them: nothing here takes messages from the queue.
class MonitorPanelTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(panel_.create(host_.window()));
        panel_.place({0, 0, 900, 560});
        panel_.show(true);
    }

    HWND item(int id) const { return GetDlgItem(panel_.hwnd(), id); }
    // The view that holds the control.
    HWND page(int controlId) const {
        for (HWND w = GetWindow(panel_.hwnd(), GW_CHILD); w; w = GetWindow(w, GW_HWNDNEXT))
            if (GetDlgItem(w, controlId)) return w;
        return nullptr;
    }
    std::vector<HWND> pages() const {
        return {page(IDC_STRUCTURE_TREE), page(IDC_SERVICES), page(IDC_BAR_CHART)};
    }
    HWND on(int controlId) const { return GetDlgItem(page(controlId), controlId); }
    static void tick(HWND window) { SendMessageW(window, WM_TIMER, 1, 0); }
    void tickAll() const {
        tick(panel_.hwnd());
        for (HWND one : pages()) tick(one);
    }
    static bool hasTimer(HWND window) { return KillTimer(window, 1) != FALSE; }
    HBITMAP lamp(int id) const { return Static(item(id)).bitmap(); }
    std::string timeOfDay() const { return Control(item(IDC_TIME_OF_DAY)).text(); }
    void selectTab(int index) const {
        SendMessageW(item(IDC_MONITOR_TABS), TCM_SETCURFOCUS, static_cast<WPARAM>(index), 0);
    }
    int shownTab() const {
        int shown = -1;
        for (int i = 0; i < 3; ++i)
            if (IsWindowVisible(pages()[static_cast<std::size_t>(i)])) shown = shown < 0 ? i : 9;
        return shown;
    }

    // Each line behind as many dots as it is deep, and '?' behind one that hides its children.
    std::vector<std::string> treeLines() const {
        std::vector<std::string> lines;
        addLines(next(TVGN_ROOT, nullptr), "", lines);
        return lines;
    }
    HTREEITEM next(WPARAM which, HTREEITEM from) const {
        return reinterpret_cast<HTREEITEM>(SendMessageW(on(IDC_STRUCTURE_TREE), TVM_GETNEXTITEM,
                                                        which, reinterpret_cast<LPARAM>(from)));
    }
    void addLines(HTREEITEM from, const std::string& dots, std::vector<std::string>& lines) const {
        const Tree tree(on(IDC_STRUCTURE_TREE));
        for (HTREEITEM at = from; at; at = next(TVGN_NEXT, at)) {
            const HTREEITEM child = next(TVGN_CHILD, at);
            const bool expanded = SendMessageW(tree.window(), TVM_GETITEMSTATE,
                                               reinterpret_cast<WPARAM>(at), TVIS_EXPANDED) &
                                  TVIS_EXPANDED;
            lines.push_back(dots + tree.itemText(at) + (child && !expanded ? "?" : ""));
            addLines(child, dots + ".", lines);
        }
    }
    static std::vector<std::string> expectedLines(const DeviceStatusImage& status) {
        std::vector<std::string> lines;
        describeFrames(status, [&lines](int depth, std::string_view text) {
            lines.push_back(std::string(static_cast<std::size_t>(depth), '.') + std::string(text));
        });
        return lines;
    }
    std::vector<std::string> listRow(int row) const {
        std::vector<std::string> cells;
        for (int i = 0; i < 9; ++i) cells.push_back(ListView(on(IDC_SERVICES)).cell(row, i));
        return cells;
    }
    // Blue pixels of the chart.
    int blueInChart() const {
        const HWND chart = on(IDC_BAR_CHART);
        RECT area{};
        GetClientRect(chart, &area);
        MemoryPicture picture;
        picture.resize({area.right, area.bottom});
        SendMessageW(chart, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.dc()), PRF_CLIENT);
        int count = 0;
        for (int y = 0; y < area.bottom; y += 4)
            for (int x = 0; x < area.right; ++x)
                count += GetPixel(picture.dc(), x, y) == RGB(0, 0, 255);
        return count;
    }
    void statusArrives(unsigned alarms) {
        status_.summaryResult = status_.alarmResult = status_.imageResult = 0;
        status_.summary = {0, 2009, 4, 23, 0, 8, 5, 9, 0, 0};
        status_.alarms = alarms;
        status_.image = *test::smallMultiplex().image();
    }
    static RECT placeIn(HWND window, HWND ancestor) {
        RECT area{};
        GetWindowRect(window, &area);
        MapWindowPoints(nullptr, ancestor, reinterpret_cast<POINT*>(&area), 2);
        return area;
    }

    test::TestHost host_;
    test::ScriptedStatus status_;
    MonitorPanel panel_{status_};
};

TEST_F(MonitorPanelTest, BeginsWithAlarmLampsAndEmptyViews) {
    for (const int id : inputLamps) EXPECT_EQ(lamp(id), lamp(linkLamp));
    EXPECT_NE(lamp(linkLamp), nullptr);
    EXPECT_EQ(timeOfDay(), "TOD:");
    EXPECT_TRUE(treeLines().empty());
    EXPECT_EQ(ListView(on(IDC_SERVICES)).count(), 0);
    EXPECT_EQ(blueInChart(), 0);
    EXPECT_EQ(shownTab(), 0);
    for (const int id : {IDC_STRUCTURE_TREE, IDC_SERVICES})
        EXPECT_EQ(Control(GetDlgItem(page(id), 1037)).text(), "停止刷新");
    EXPECT_EQ(Control(on(IDC_BAR_CHART)).text(), "复用流带宽柱状图");
}

TEST_F(MonitorPanelTest, NamesItsTabsAndColumns) {
    std::vector<std::wstring> titles;
    for (int i = 0; i < 3; ++i) {
        wchar_t text[32] = {};
        TCITEMW tab{};
        tab.mask = TCIF_TEXT;
        tab.pszText = text;
        tab.cchTextMax = 32;
        SendMessageW(item(IDC_MONITOR_TABS), TCM_GETITEMW, static_cast<WPARAM>(i),
                     reinterpret_cast<LPARAM>(&tab));
        titles.push_back(text);
    }
    EXPECT_THAT(titles, ElementsAre(L"复用帧结构", L"业务列表", L"图形化监控"));
    const struct {
        const wchar_t* title;
        int width;
    } columns[] = {{L"序号", 40},       {L"业务标识", 60},   {L"子帧长度", 70},
                   {L"视频码率", 70},   {L"视频包计数", 80}, {L"音频码率", 70},
                   {L"音频包计数", 80}, {L"数据码率", 70},   {L"数据包计数", 80}};
    WPARAM index = 0;
    for (const auto& expected : columns) {
        wchar_t text[32] = {};
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        column.pszText = text;
        column.cchTextMax = 32;
        ASSERT_TRUE(SendMessageW(on(IDC_SERVICES), LVM_GETCOLUMNW, index++,
                                 reinterpret_cast<LPARAM>(&column)));
        EXPECT_STREQ(text, expected.title);
        EXPECT_EQ(column.cx, expected.width);
        EXPECT_EQ(column.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_LEFT);
    }
    const auto style = SendMessageW(on(IDC_SERVICES), LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0);
    EXPECT_NE(style & LVS_EX_FULLROWSELECT, 0);
}

TEST_F(MonitorPanelTest, ShowsAStatusInAllViews) {
    statusArrives(0x78);
    const HBITMAP red = lamp(linkLamp);
    tickAll();
    EXPECT_EQ(timeOfDay(), "TOD: 2009-04-23 08:05:09");
    for (const int id : inputLamps) EXPECT_EQ(lamp(id), red);
    EXPECT_NE(lamp(linkLamp), red);
    EXPECT_EQ(treeLines(), expectedLines(status_.image));
    ASSERT_EQ(ListView(on(IDC_SERVICES)).count(), 2);
    EXPECT_THAT(listRow(0), ElementsAre("0", "101", "50784", "347", "223", "58", "106", "", ""));
    EXPECT_THAT(listRow(1), ElementsAre("1", "65535", "900", "", "", "", "", "", ""));
    EXPECT_GT(blueInChart(), 0);
}

TEST_F(MonitorPanelTest, EachLampFollowsItsBit) {
    const HBITMAP red = lamp(linkLamp);
    statusArrives(0x78);
    tick(panel_.hwnd());
    const HBITMAP green = lamp(linkLamp);
    for (unsigned bits = 0; bits < 16; ++bits) {
        status_.alarms = bits << 3 | 0x87;
        tick(panel_.hwnd());
        for (unsigned i = 0; i < 4; ++i)
            EXPECT_EQ(lamp(inputLamps[i]), bits >> i & 1 ? red : green) << bits << ' ' << i;
        EXPECT_EQ(lamp(linkLamp), green);
    }
}

TEST_F(MonitorPanelTest, ALostLinkEmptiesTheChartAndKeepsTheRestUntilItIsFound) {
    const HBITMAP red = lamp(linkLamp);
    statusArrives(0x10);
    tickAll();
    const auto tree = treeLines();
    const int blue = blueInChart();
    std::vector<HBITMAP> inputs;
    for (const int id : inputLamps) inputs.push_back(lamp(id));
    const auto inputsStay = [&] {
        for (std::size_t i = 0; i < inputs.size(); ++i) EXPECT_EQ(lamp(inputLamps[i]), inputs[i]);
    };

    status_.imageResult = -1;
    status_.alarmResult = 1;  // a save is under way
    tickAll();
    EXPECT_NE(lamp(linkLamp), red);
    inputsStay();
    EXPECT_EQ(timeOfDay(), "TOD: 2009-04-23 08:05:09") << "the summary outlives the status";
    EXPECT_EQ(blueInChart(), 0);

    status_.alarmResult = status_.summaryResult = -1;
    tickAll();
    EXPECT_EQ(lamp(linkLamp), red);
    inputsStay();
    EXPECT_EQ(timeOfDay(), "TOD：无输入");
    EXPECT_EQ(treeLines(), tree);
    EXPECT_EQ(ListView(on(IDC_SERVICES)).count(), 2);

    statusArrives(0);
    tickAll();
    EXPECT_NE(lamp(linkLamp), red);
    for (const int id : inputLamps) EXPECT_EQ(lamp(id), lamp(linkLamp));
    EXPECT_EQ(timeOfDay(), "TOD: 2009-04-23 08:05:09");
    EXPECT_EQ(blueInChart(), blue);
}

TEST_F(MonitorPanelTest, AStatusReplacesTheOneBefore) {
    statusArrives(0);
    tickAll();
    status_.image.frames[0].subFrameCount = 1;
    status_.image.frames[0].subFrames[0].segmentCount = 0;
    tickAll();
    EXPECT_EQ(treeLines(), expectedLines(status_.image));
    ASSERT_EQ(ListView(on(IDC_SERVICES)).count(), 1);
    EXPECT_THAT(listRow(0), ElementsAre("0", "101", "50784", "", "", "", "", "", ""));
    status_.image = {};
    tickAll();
    EXPECT_THAT(treeLines(), ElementsAre("系统码率:0 Kbps", "复用流码率:0 Kbps",
                                         "发送字节数:0 Bytes", "复用帧个数:0"));
    EXPECT_EQ(ListView(on(IDC_SERVICES)).count(), 0);
    EXPECT_EQ(blueInChart(), 0);
}

TEST_F(MonitorPanelTest, TheTreeBeginsAtItsTopAfterEachRefresh) {
    statusArrives(0);
    status_.image.frameCount = 40;
    tickAll();
    const HWND tree = on(IDC_STRUCTURE_TREE);
    SendMessageW(tree, WM_VSCROLL, SB_BOTTOM, 0);
    ASSERT_NE(next(TVGN_FIRSTVISIBLE, nullptr), next(TVGN_ROOT, nullptr));
    tickAll();
    EXPECT_EQ(next(TVGN_FIRSTVISIBLE, nullptr), next(TVGN_ROOT, nullptr));
}

TEST_F(MonitorPanelTest, TheButtonStopsAndStartsItsOwnPage) {
    for (const int id : {IDC_STRUCTURE_TREE, IDC_SERVICES}) {
        const Control button(GetDlgItem(page(id), 1037));
        SendMessageW(button.window(), BM_CLICK, 0, 0);
        EXPECT_EQ(button.text(), "启动刷新");
        EXPECT_FALSE(hasTimer(page(id)));
        SendMessageW(button.window(), BM_CLICK, 0, 0);
        EXPECT_EQ(button.text(), "停止刷新");
        EXPECT_TRUE(hasTimer(page(id)));
    }
}

TEST_F(MonitorPanelTest, AllTimersRunWhateverIsShown) {
    for (const int tab : {1, 2, 0}) {
        selectTab(tab);
        EXPECT_EQ(shownTab(), tab);
    }
    for (HWND one : pages()) EXPECT_TRUE(hasTimer(one));
    EXPECT_TRUE(hasTimer(panel_.hwnd()));
}

TEST_F(MonitorPanelTest, ViewsUseTheRoomThereIs) {
    for (const SIZE size : {SIZE{1300, 900}, SIZE{810, 500}}) {
        panel_.place({0, 0, size.cx, size.cy});
        RECT expected = placeIn(item(IDC_MONITOR_TABS), panel_.hwnd());
        EXPECT_EQ(expected.right, size.cx);
        EXPECT_EQ(expected.bottom, size.cy);
        InflateRect(&expected, -2, -20);
        for (HWND one : pages()) {
            const RECT area = placeIn(one, panel_.hwnd());
            EXPECT_TRUE(EqualRect(&area, &expected));
        }
        for (const int id : {IDC_STRUCTURE_TREE, IDC_SERVICES}) {
            const RECT content = placeIn(on(id), page(id));
            const RECT button = placeIn(GetDlgItem(page(id), 1037), page(id));
            EXPECT_LT(content.bottom, button.top);
            EXPECT_EQ(content.right, button.right);
            EXPECT_EQ(expected.right - expected.left - content.right, content.left);
            EXPECT_EQ(expected.bottom - expected.top - button.bottom, content.left);
        }
        const RECT frame = placeIn(GetDlgItem(page(IDC_BAR_CHART), 1046), page(IDC_BAR_CHART));
        RECT chart = placeIn(on(IDC_BAR_CHART), page(IDC_BAR_CHART)), inside{};
        IntersectRect(&inside, &chart, &frame);
        EXPECT_TRUE(EqualRect(&inside, &chart));
        EXPECT_GT(chart.right - chart.left, (expected.right - expected.left) * 9 / 10);
    }
}

// A group box leaves its inside to the dialog, which must not cut it out as it does its children.
TEST_F(MonitorPanelTest, PaintsTheGroundInsideItsFrames) {
    RedrawWindow(panel_.hwnd(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    const RECT frame = placeIn(item(IDC_LAMP_FRAME), panel_.hwnd());
    const HDC dc = GetDC(panel_.hwnd());
    EXPECT_EQ(GetPixel(dc, frame.right - 20, (frame.top + frame.bottom) / 2),
              GetSysColor(COLOR_3DFACE));
    ReleaseDC(panel_.hwnd(), dc);
}

TEST_F(MonitorPanelTest, CanBeMadeAgain) {
    panel_.destroy();
    ASSERT_TRUE(panel_.create(host_.window()));
    statusArrives(0);
    tickAll();
    EXPECT_EQ(treeLines(), expectedLines(status_.image));
}

}  // namespace
}  // namespace korvane
