#include <gtest/gtest.h>
#include <map>
#include <set>

#include "resources/ids.h"
#include "support/test_host.h"
#include "text/text.h"
#include "ui/bar_chart.h"
#include "ui/controls.h"
#include "ui/module.h"

namespace korvane {
namespace {

using Controls = std::vector<HWND>;

// All fields that the operator cannot write in: {dialog, control}.
const std::set<std::pair<int, int>> readOnlyFields = {
    {IDD_SYSTEM_PAGE, IDC_FIRMWARE_FILE},       {IDD_NETWORK_PAGE, IDC_NETWORK_TABLE_ID},
    {IDD_SERVICE_FREQUENCY_PAGE, IDC_TABLE_ID}, {IDD_CA_PAGE, IDC_TABLE_ID},
    {IDD_FRAME_LIST_PAGE, IDC_TABLE_ID},        {IDD_FRAME_LIST_PAGE, IDC_TABLE_CHANNEL_NUMBER}};

INT_PTR CALLBACK leaveAll(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

BOOL CALLBACK noteId(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR ids) {
    reinterpret_cast<std::vector<int>*>(ids)->push_back(static_cast<int>(LOWORD(name)));
    return TRUE;
}

LONG styleOf(HWND window) {
    return GetWindowLongW(window, GWL_STYLE);
}

std::wstring textOf(HWND window) {
    std::array<wchar_t, 128> text{};
    GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return text.data();
}

bool isOf(HWND window, std::wstring_view className) {
    std::array<wchar_t, 32> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return name.data() == className;
}

bool hasType(HWND window, const wchar_t* className, LONG typeBits, std::set<LONG> types) {
    return isOf(window, className) && types.contains(styleOf(window) & typeBits);
}

bool isGroupBox(HWND window) {
    return hasType(window, L"Button", BS_TYPEMASK, {BS_GROUPBOX});
}

// What holds other controls, or pages.
bool isFrame(HWND window) {
    return isGroupBox(window) || isOf(window, WC_TABCONTROLW) ||
           hasType(window, L"Static", SS_TYPEMASK, {SS_ETCHEDFRAME});
}

bool isLabel(HWND window) {
    return hasType(window, L"Static", SS_TYPEMASK,
                   {SS_LEFT, SS_RIGHT, SS_CENTER, SS_LEFTNOWORDWRAP, SS_SIMPLE});
}

RECT areaOf(HWND window) {
    return Control(window).area();
}

bool holds(const RECT& outer, const RECT& inner) {
    RECT both{};
    return UnionRect(&both, &outer, &inner) && EqualRect(&both, &outer);
}

// Edges that touch in dialog units may round to one and the same pixel.
bool overlap(RECT one, const RECT& other) {
    RECT common{};
    InflateRect(&one, -1, -1);
    return IntersectRect(&common, &one, &other) != FALSE;
}

std::string named(HWND control) {
    return std::to_string(GetDlgCtrlID(control)) + " \"" + toUtf8(textOf(control)) + '"';
}

// The pixels that a quarter and an eighth of the dialog's font make: a dialog unit, times 4 and 8.
SIZE fontCell(HWND dialog) {
    RECT units{0, 0, 4, 8};
    MapDialogRect(dialog, &units);
    return {units.right, units.bottom};
}

// The room that the text takes in lines of at most `width`.
SIZE measured(HWND control, const std::wstring& text, LONG width, UINT format) {
    const HDC dc = GetDC(control);
    const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(dc, font);
    RECT room{0, 0, width, 0};
    DrawTextW(dc, text.c_str(), -1, &room, DT_CALCRECT | format);
    SelectObject(dc, before);
    ReleaseDC(control, dc);
    return {room.right, room.bottom};
}

// The width of one line, where fonts that stand in for the dialog's are narrower, too: its own has
// a cell for each character, and two for a Chinese one.
LONG lineWidth(HWND control, const std::wstring& text) {
    LONG cells = 0;
    for (const wchar_t c : text) cells += c == L'&' ? 0 : c < 0x100 ? 1 : 2;
    return std::max(measured(control, text, 0, DT_SINGLELINE).cx,
                    cells * fontCell(GetParent(control)).cx);
}

// What a button has beside its text.
LONG ornament(HWND button) {
    constexpr int edges = 8;
    const bool hasBox =
        hasType(button, L"Button", BS_TYPEMASK, {BS_AUTOCHECKBOX, BS_AUTORADIOBUTTON});
    return hasBox && !(styleOf(button) & BS_PUSHLIKE) ? GetSystemMetrics(SM_CXMENUCHECK) + 4
                                                      : edges;
}

bool isClipped(HWND control) {
    const std::wstring text = textOf(control);
    const RECT area = areaOf(control);
    const SIZE room{area.right - area.left, area.bottom - area.top};
    if (isOf(control, L"Button")) return lineWidth(control, text) + ornament(control) > room.cx;
    if (!isLabel(control)) return false;
    if (room.cy < 2 * fontCell(GetParent(control)).cy) return lineWidth(control, text) > room.cx;
    const SIZE lines = measured(control, text, room.cx, DT_WORDBREAK);
    return lines.cx > room.cx || lines.cy > room.cy;
}

class DialogTemplates : public testing::Test {
  protected:
    DialogTemplates() {
        BarChart::registerClass();
        std::vector<int> ids;
        EnumResourceNamesW(moduleInstance(), MAKEINTRESOURCEW(5), &noteId,  // RT_DIALOG
                           reinterpret_cast<LONG_PTR>(&ids));
        for (const int id : ids)
            dialogs_[id] = CreateDialogParamW(moduleInstance(), MAKEINTRESOURCEW(id),
                                              host_.window(), &leaveAll, 0);
    }
    ~DialogTemplates() override {
        for (const auto& [id, dialog] : dialogs_) DestroyWindow(dialog);
    }

    static Controls controlsOf(HWND dialog) {
        Controls all;
        for (HWND w = GetWindow(dialog, GW_CHILD); w; w = GetWindow(w, GW_HWNDNEXT))
            all.push_back(w);
        return all;
    }
    static Controls visibleOf(HWND dialog) {
        Controls all = controlsOf(dialog);
        std::erase_if(all, [](HWND control) { return !(styleOf(control) & WS_VISIBLE); });
        return all;
    }
    std::map<int, HWND> modalOnes() const {
        auto modal = dialogs_;
        std::erase_if(modal, [](const auto& one) {
            return !(styleOf(one.second) & WS_POPUP) || one.first == IDD_PROGRESS;
        });
        return modal;
    }

    ActivationScope activation_;
    test::TestHost host_;
    std::map<int, HWND> dialogs_;
};

TEST_F(DialogTemplates, CanBeMade) {
    for (const auto& [id, dialog] : dialogs_) EXPECT_NE(dialog, nullptr) << id;
    EXPECT_TRUE(dialogs_.contains(IDD_PANEL_BODY) && modalOnes().contains(IDD_CA_SYSTEM));
}

TEST_F(DialogTemplates, ShowTheirTextsWhole) {
    for (const auto& [id, dialog] : dialogs_)
        for (HWND control : visibleOf(dialog))
            EXPECT_FALSE(isClipped(control)) << id << ": " << named(control);
}

TEST_F(DialogTemplates, KeepTheirControlsApartAndInside) {
    for (const auto& [id, dialog] : dialogs_) {
        const Controls controls = visibleOf(dialog);
        RECT room{};
        GetClientRect(dialog, &room);
        InflateRect(&room, 1, 1);  // rounding, as in overlap()
        for (std::size_t i = 0; i < controls.size(); ++i) {
            const RECT one = areaOf(controls[i]);
            EXPECT_TRUE(holds(room, one)) << id << ": " << named(controls[i]);
            for (std::size_t k = 0; k < i; ++k) {
                const RECT other = areaOf(controls[k]);
                const bool framed = (isFrame(controls[i]) && holds(one, other)) ||
                                    (isFrame(controls[k]) && holds(other, one));
                EXPECT_TRUE(framed || !overlap(one, other))
                    << id << ": " << named(controls[k]) << " and " << named(controls[i]);
            }
        }
    }
}

TEST_F(DialogTemplates, NumberTheirControlsOnce) {
    for (const auto& [id, dialog] : dialogs_) {
        std::set<WORD> seen;
        for (HWND control : controlsOf(dialog)) {
            const WORD number = LOWORD(GetDlgCtrlID(control));
            EXPECT_TRUE(number == 0xFFFF || seen.insert(number).second) << id << ": " << number;
        }
    }
}

TEST_F(DialogTemplates, HaveADefaultButtonLeftOfCancelAndEndByEscape) {
    for (const auto& [id, dialog] : modalOnes()) {
        Controls defaults = visibleOf(dialog);
        std::erase_if(defaults, [](HWND control) {
            return !hasType(control, L"Button", BS_TYPEMASK, {BS_DEFPUSHBUTTON});
        });
        EXPECT_TRUE(defaults.size() == 1 && GetDlgCtrlID(defaults[0]) == IDOK) << id;
        // Escape is the system's business, unless a button that is out of use stands against it.
        const HWND cancel = GetDlgItem(dialog, IDCANCEL);
        if (!cancel) continue;
        EXPECT_EQ(styleOf(cancel) & (WS_VISIBLE | WS_DISABLED), WS_VISIBLE) << id;
        const RECT left = areaOf(GetDlgItem(dialog, IDOK)), right = areaOf(cancel);
        EXPECT_TRUE(left.right < right.left && left.top == right.top) << id;
    }
}

TEST_F(DialogTemplates, HaveUnsortedDropDownListsAndListsWithRows) {
    const struct {
        const wchar_t* className;
        LONG bits, wanted;
    } rules[] = {{L"ComboBox", 0x3 | CBS_SORT, CBS_DROPDOWNLIST},
                 {L"ListBox", LBS_SORT, 0},
                 {WC_LISTVIEWW, LVS_TYPEMASK | LVS_SHOWSELALWAYS, LVS_REPORT | LVS_SHOWSELALWAYS}};
    for (const auto& [id, dialog] : dialogs_)
        for (HWND control : controlsOf(dialog))
            for (const auto& [className, bits, wanted] : rules)
                EXPECT_TRUE(!isOf(control, className) || (styleOf(control) & bits) == wanted)
                    << id << ": " << named(control);
}

TEST_F(DialogTemplates, LetTheOperatorWriteInAllFieldsButThese) {
    std::set<std::pair<int, int>> found;
    for (const auto& [id, dialog] : dialogs_)
        for (HWND control : controlsOf(dialog))
            if (isOf(control, L"Edit") && (styleOf(control) & ES_READONLY))
                found.insert({id, GetDlgCtrlID(control)});
    EXPECT_EQ(found, readOnlyFields);
}

// Caption and texts in the order of the controls, to the character: some have a colon, and a
// full-width one at that.
TEST_F(DialogTemplates, SpeakTheOperatorsWords) {
    const std::pair<int, const char*> words[] = {
        {IDD_GENERAL_CHANNEL, "输入通道参数配置 IP地址： 端口： 接收方式 TCP UDP 确定 取消 "},
        {IDD_VIDEO_CHANNEL,
         "视频通道参数配置 IP地址 端口 编码类型 载荷类型 帧频 RTCP同步 封装模式 确定 取消 "},
        {IDD_AUDIO_CHANNEL,
         "音频通道参数配置 IP地址 端口 编码类型 采样率 载荷类型 RTCP同步 封装模式 确定 取消 "},
        {IDD_CONDITIONAL_CHANNEL,
         "输入通道参数配置 IP地址： 端口： 单元类型： 最大发送间隔(ms)： 确定 取消 "},
        {IDD_NETWORK_PAGE,
         "表标识号 国家码 网络级别 网络号 网络名称 频点编号 中心频率(MHz) 带宽 其他频点配置 "
         "其他网络配置 "},
        {IDD_FREQUENCY_POINT, "频点信息 频点编号 中心频率(MHz) 带宽 确定 取消 "},
        {IDD_NEIGHBOUR_NETWORK,
         "网络信息 网络级别 网络号 网络名称 频点编号 中心频率(MHz) 带宽 确定 取消 "},
        {IDD_SERVICE_FREQUENCY_PAGE, "表标识号 业务列表 "},
        {IDD_SERVICE_FREQUENCY, "业务频点关联配置 业务号 频点号 确定 取消 "},
        {IDD_SYSTEM_PAGE,
         "控制网口 本机IP： 子网掩码： 网关IP： 网管IP： MAC地址： 业务网口 本机IP： 子网掩码： "
         "网关IP： MAC地址： 设置 (网络设置必须重启后才能生效) 复用输出参数 PMS PID: 设备号: "
         "发射延时(秒): 控制信息表更新序号提前量指示: 时钟选择: 启用时间标签 发送下一帧参数 "
         "双机热备设置 作为备份设备 备份设备IP： 告警开关 1PPS 10M TOD 系统码率 Kbps 设备升级 浏览 "
         "升级 "},
        {IDD_CA_PAGE, "表标识号 段数量 是否发送 加密授权系统列表 "},
        {IDD_CA_SYSTEM,
         "加密授权系统配置 CA_System_ID 业务标识 EMM数据单元类型 ECM数据单元类型 ECM传送方式 "
         "确定 取消 "},
    };
    for (const auto& [id, expected] : words) {
        Controls spoken = controlsOf(dialogs_[id]);
        spoken.insert(spoken.begin(), dialogs_[id]);
        std::string found;
        for (HWND window : spoken)
            if (const std::wstring text = textOf(window);
                !text.empty() && !isOf(window, WC_IPADDRESSW))
                found += toUtf8(text) + ' ';
        EXPECT_EQ(found, expected);
    }
}

TEST(ListMenus, HaveTheSameItemsWithNumbersOfTheirOwn) {
    const std::pair<int, std::array<UINT, 3>> menus[] = {{9012, {32780, 32781, 32782}},
                                                         {9013, {32771, 32772, 32773}},
                                                         {9014, {32774, 32775, 32776}}};
    for (const auto& [id, numbers] : menus) {
        const HMENU menu = LoadMenuW(moduleInstance(), MAKEINTRESOURCEW(id));
        const HMENU items = GetSubMenu(menu, 0);
        std::wstring texts;
        for (int i = 0; i < GetMenuItemCount(items); ++i) {
            std::array<wchar_t, 16> text{};
            GetMenuStringW(items, static_cast<UINT>(i), text.data(), 16, MF_BYPOSITION);
            texts += text.data();
            EXPECT_EQ(GetMenuItemID(items, i), numbers.at(static_cast<std::size_t>(i))) << id;
        }
        EXPECT_EQ(toUtf8(texts), "添加修改删除") << id;
        DestroyMenu(menu);
    }
}

}  // namespace
}  // namespace korvane
