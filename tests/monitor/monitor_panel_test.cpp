#include "monitor/monitor_panel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "monitor/lamp_picture.h"
#include "monitor/sample_status.h"
#include "monitor/scripted_status.h"
#include "resources/ids.h"
#include "support/robot.h"
#include "support/test_host.h"
#include "ui/bar_chart.h"

namespace korvane {
namespace {

using testing::ElementsAre;
using Rows = std::vector<std::vector<std::string>>;

// Ticks come when the test sends them: nothing here takes messages from the queue.
class MonitorPanelTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(panel_.create(host_.window()));
        panel_.place({0, 0, 900, 560});
        panel_.show(true);
        red_ = lamp(IDC_LAMP_LINK);
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
    Control toggle(int controlId) const {
        return Control(GetDlgItem(page(controlId), IDC_REFRESH_TOGGLE));
    }
    void tick() const {
        SendMessageW(panel_.hwnd(), WM_TIMER, 1, 0);
        for (HWND one : pages()) SendMessageW(one, WM_TIMER, 1, 0);
    }
    static bool hasTimer(HWND window) { return KillTimer(window, 1) != FALSE; }
    HBITMAP lamp(int id) const { return Static(item(id)).bitmap(); }
    // 'r' or 'g' for each of the inputs and, behind a blank, for the link.
    std::string lampsShown() const {
        std::string colours;
        for (const int id : {1110, 1112, 1113, 1114, 1115})
            colours += (id == 1115 ? " " : "") + std::string(lamp(id) == red_ ? "r" : "g");
        return colours;
    }
    std::string timeOfDay() const { return robot_.text(item(IDC_TIME_OF_DAY)); }
    // '+' for each view that is shown, '-' for each that is not.
    std::string shownViews() const {
        std::string shown;
        for (HWND one : pages()) shown += IsWindowVisible(one) ? '+' : '-';
        return shown;
    }
    // Each line behind as many dots as it is deep; none that a collapsed one hides.
    std::vector<std::string> treeLines() const {
        const HWND tree = on(IDC_STRUCTURE_TREE);
        std::vector<std::string> lines;
        LRESULT seen = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
        for (const host::TreeRow& row : robot_.treeRows(tree)) {
            if (reinterpret_cast<LRESULT>(row.item) != seen) continue;
            lines.push_back(std::string(static_cast<std::size_t>(row.depth), '.') + row.text);
            seen = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_NEXTVISIBLE, seen);
        }
        return lines;
    }
    Rows serviceRows() const { return robot_.listRows(on(IDC_SERVICES)); }
    // Blue pixels of the chart.
    int blueInChart() const {
        RECT area{};
        GetClientRect(on(IDC_BAR_CHART), &area);
        MemoryPicture picture;
        picture.resize({area.right, area.bottom});
        SendMessageW(on(IDC_BAR_CHART), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.dc()),
                     PRF_CLIENT);
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
        status_.image = *test::smallMultiplex();
        tick();
    }

    test::TestHost host_;
    Robot robot_{GetCurrentThreadId()};
    test::ScriptedStatus status_;
    MonitorPanel panel_{status_};
    HBITMAP red_ = nullptr;
};

TEST_F(MonitorPanelTest, BeginsWithAlarmLampsAndEmptyViews) {
    EXPECT_NE(red_, nullptr);
    EXPECT_EQ(lampsShown(), "rrrr r");
    EXPECT_EQ(timeOfDay(), "TOD:");
    EXPECT_TRUE(treeLines().empty());
    EXPECT_TRUE(serviceRows().empty());
    EXPECT_EQ(blueInChart(), 0);
    EXPECT_EQ(shownViews(), "+--");
    for (const int id : {IDC_STRUCTURE_TREE, IDC_SERVICES})
        EXPECT_EQ(toggle(id).text(), "停止刷新");
    EXPECT_EQ(robot_.text(on(IDC_BAR_CHART)), "复用流带宽柱状图");
    EXPECT_THAT(robot_.tabTitles(item(IDC_MONITOR_TABS)),
                ElementsAre("复用帧结构", "业务列表", "图形化监控"));
    EXPECT_THAT(robot_.listColumns(on(IDC_SERVICES)),
                ElementsAre("序号", "业务标识", "子帧长度", "视频码率", "视频包计数", "音频码率",
                            "音频包计数", "数据码率", "数据包计数"));
}

TEST_F(MonitorPanelTest, ShowsAStatusInAllViewsAlsoWhenMadeAgain) {
    for (int i = 0; i < 2; ++i) {
        statusArrives(0x78);
        EXPECT_EQ(timeOfDay(), "TOD: 2009-04-23 08:05:09");
        EXPECT_EQ(lampsShown(), "rrrr g");
        EXPECT_EQ(treeLines(), test::outline(status_.image));
        EXPECT_THAT(serviceRows(),
                    ElementsAre(ElementsAre("0", "101", "50784", "347", "223", "58", "106", "", ""),
                                ElementsAre("1", "65535", "900", "", "", "", "", "", "")));
        EXPECT_GT(blueInChart(), 0);
        panel_.destroy();
        SetUp();
    }
}

TEST_F(MonitorPanelTest, EachLampFollowsItsBit) {
    for (const auto& [alarms, shown] : {std::pair{0x8Fu, "rggg g"},
                                        {0x10, "grgg g"},
                                        {0x20, "ggrg g"},
                                        {0x40, "gggr g"},
                                        {0x68, "rgrr g"}}) {
        statusArrives(alarms);
        EXPECT_EQ(lampsShown(), shown);
    }
}

TEST_F(MonitorPanelTest, EachLampFollowsTheScreenAndIsAsHighAsItsCaption) {
    const HDC screen = GetDC(nullptr);
    const int size = MulDiv(16, GetDeviceCaps(screen, LOGPIXELSX), 96);
    ReleaseDC(nullptr, screen);
    for (const int id : {1110, 1112, 1113, 1114, 1115}) {
        const RECT area = Control(item(id)).area();
        const RECT caption = Control(GetWindow(item(id), GW_HWNDNEXT)).area();
        EXPECT_EQ(area.right - area.left, size);
        EXPECT_EQ(area.bottom - area.top, size);
        EXPECT_LT(area.right, caption.left);
        EXPECT_NEAR(area.top + area.bottom, caption.top + caption.bottom, 1);
    }
}

// In percent of the picture; and the colour below its middle.
std::pair<int, COLORREF> groundAndColour(Lamp lamp, int size) {
    const Bitmap picture = lampPicture(lamp, size);
    const HDC dc = CreateCompatibleDC(nullptr);
    const HGDIOBJ before = SelectObject(dc, picture.get());
    int ground = 0;
    for (int i = 0; i < size * size; ++i)
        ground += GetPixel(dc, i % size, i / size) == GetSysColor(COLOR_3DFACE);
    const COLORREF colour = GetPixel(dc, size / 2, size * 13 / 16);
    SelectObject(dc, before);
    DeleteDC(dc);
    return {ground * 100 / (size * size), colour};
}

TEST(LampPicture, LooksTheSameOnAnyScreen) {
    for (const Lamp lamp : {Lamp::Normal, Lamp::Alarm}) {
        const auto [smallGround, smallColour] = groundAndColour(lamp, 16);
        EXPECT_GT(smallGround, 10);
        EXPECT_EQ(GetRValue(smallColour) > GetGValue(smallColour), lamp == Lamp::Alarm);
        for (const int size : {20, 24, 28, 32, 48, 64}) {
            const auto [ground, colour] = groundAndColour(lamp, size);
            EXPECT_NEAR(ground, smallGround, 8) << size;
            EXPECT_EQ(colour, smallColour) << size;
        }
    }
}

// So that a page which shows what it was not given shows something else.
void overwriteStack() {
    volatile std::uint8_t room[3 * sizeof(DeviceStatusImage)];
    for (volatile std::uint8_t& byte : room) byte = 0x55;
}

TEST_F(MonitorPanelTest, ALostLinkEmptiesTheChartAndKeepsTheRestUntilItIsFound) {
    statusArrives(0x10);
    const auto tree = treeLines();
    const auto services = serviceRows();
    const int blue = blueInChart();

    status_.imageResult = -1;
    status_.alarmResult = 1;  // a save is under way
    overwriteStack();
    tick();
    EXPECT_EQ(lampsShown(), "grgg g");
    EXPECT_EQ(timeOfDay(), "TOD: 2009-04-23 08:05:09") << "the summary outlives the status";
    EXPECT_EQ(blueInChart(), 0);

    status_.alarmResult = status_.summaryResult = -1;
    tick();
    EXPECT_EQ(lampsShown(), "grgg r");
    EXPECT_EQ(timeOfDay(), "TOD：无输入");
    EXPECT_EQ(treeLines(), tree);
    EXPECT_EQ(serviceRows(), services);

    statusArrives(0);
    EXPECT_EQ(lampsShown(), "gggg g");
    EXPECT_EQ(timeOfDay(), "TOD: 2009-04-23 08:05:09");
    EXPECT_EQ(blueInChart(), blue);
}

TEST_F(MonitorPanelTest, CopiesRowsAndBranches) {
    statusArrives(0);
    const auto press = [](HWND control, WPARAM key, bool withControl = true) {
        std::array<BYTE, 256> keys{};
        if (withControl) keys[VK_CONTROL] = 0x80;
        SetKeyboardState(keys.data());
        SendMessageW(control, WM_KEYDOWN, key, 1);
        SetKeyboardState(std::array<BYTE, 256>{}.data());
    };
    const HWND list = on(IDC_SERVICES), tree = on(IDC_STRUCTURE_TREE);
    press(list, 'A');
    tick();  // leaves what is selected
    press(list, 'C');
    const std::string copied =
        "0\t101\t50784\t347\t223\t58\t106\t\t\r\n1\t65535\t900\t\t\t\t\t\t\r\n";
    EXPECT_EQ(robot_.clipboardText(), copied);
    const auto rows = robot_.treeRows(tree);
    robot_.selectTreeItem(tree, std::ranges::find(rows, "子帧0", &host::TreeRow::text)->item);
    press(tree, 'C', false);
    EXPECT_EQ(robot_.clipboardText(), copied) << "a letter is no command";
    press(tree, 'C');
    EXPECT_TRUE(robot_.clipboardText().starts_with("子帧0\r\n\t子帧ID:1\r\n"));
    EXPECT_TRUE(
        robot_.clipboardText().ends_with("\t段1\r\n\t\tIP包个数:106\r\n"
                                         "\t\t输入码率:58 Kbps\r\n"
                                         "\t\t输入字节数:39432 Bytes\r\n"));
}

TEST_F(MonitorPanelTest, AStatusReplacesTheOneBeforeAndTheTreeBeginsAtItsTop) {
    statusArrives(0);
    status_.image.frameCount = 40;
    tick();
    const HWND tree = on(IDC_STRUCTURE_TREE);
    const auto top = [tree] { return SendMessageW(tree, TVM_GETNEXTITEM, TVGN_FIRSTVISIBLE, 0); };
    const LRESULT root = top();
    SendMessageW(tree, WM_VSCROLL, SB_BOTTOM, 0);
    ASSERT_NE(top(), root);
    status_.image.frames[0].subFrameCount = 1;
    status_.image.frames[0].subFrames[0].segmentCount = 0;
    tick();
    EXPECT_EQ(top(), SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0));
    EXPECT_EQ(treeLines(), test::outline(status_.image));
    EXPECT_EQ(serviceRows(), Rows({{"0", "101", "50784", "", "", "", "", "", ""}}));
    status_.image = {};
    tick();
    EXPECT_EQ(treeLines().size(), 4u);
    EXPECT_TRUE(serviceRows().empty());
    EXPECT_EQ(blueInChart(), 0);
}

TEST_F(MonitorPanelTest, AllTimersRunWhateverIsShownUntilAButtonStopsItsPage) {
    for (const auto& [tab, shown] : {std::pair{1, "-+-"}, {2, "--+"}, {0, "+--"}}) {
        robot_.selectTab(item(IDC_MONITOR_TABS), tab);
        EXPECT_EQ(shownViews(), shown);
    }
    EXPECT_TRUE(hasTimer(panel_.hwnd()));
    for (HWND one : pages()) EXPECT_TRUE(hasTimer(one));
    for (const int id : {IDC_STRUCTURE_TREE, IDC_SERVICES})
        for (const bool runs : {false, true}) {
            SendMessageW(toggle(id).window(), BM_CLICK, 0, 0);
            EXPECT_EQ(toggle(id).text(), runs ? "停止刷新" : "启动刷新");
            EXPECT_EQ(hasTimer(page(id)), runs);
        }
}

TEST_F(MonitorPanelTest, ViewsUseTheRoomThereIs) {
    for (const SIZE size : {SIZE{1300, 900}, SIZE{810, 500}}) {
        panel_.place({0, 0, size.cx, size.cy});
        RECT expected = Control(item(IDC_MONITOR_TABS)).area();
        EXPECT_EQ(expected.right, size.cx);
        EXPECT_EQ(expected.bottom, size.cy);
        InflateRect(&expected, -2, -20);
        for (HWND one : pages()) {
            const RECT area = Control(one).area();
            EXPECT_TRUE(EqualRect(&area, &expected));
        }
        const LONG width = expected.right - expected.left, height = expected.bottom - expected.top;
        for (const int id : {IDC_STRUCTURE_TREE, IDC_SERVICES}) {
            const RECT content = Control(on(id)).area();
            const RECT button = toggle(id).area();
            EXPECT_LT(content.bottom, button.top);
            EXPECT_EQ(content.right, button.right);
            EXPECT_EQ(width - content.right, content.left);
            EXPECT_EQ(height - button.bottom, content.left);
        }
        const RECT frame = Control(on(IDC_CHART_FRAME)).area();
        const RECT chart = Control(on(IDC_BAR_CHART)).area();
        EXPECT_TRUE(chart.left > frame.left && chart.top > frame.top);
        EXPECT_TRUE(chart.right < frame.right && chart.bottom < frame.bottom);
        EXPECT_GT(chart.right - chart.left, width * 9 / 10);
    }
}

// A group box leaves its inside to the dialog, which must not cut it out as it does its children.
TEST_F(MonitorPanelTest, PaintsTheGroundInsideItsFrames) {
    RedrawWindow(panel_.hwnd(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    const RECT frame = Control(item(IDC_LAMP_FRAME)).area();
    const HDC dc = GetDC(panel_.hwnd());
    EXPECT_EQ(GetPixel(dc, frame.right - 20, (frame.top + frame.bottom) / 2),
              GetSysColor(COLOR_3DFACE));
    ReleaseDC(panel_.hwnd(), dc);
}

}  // namespace
}  // namespace korvane
