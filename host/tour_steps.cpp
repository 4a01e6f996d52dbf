#include <windows.h>

#include <algorithm>
#include <array>
#include <commctrl.h>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>

#include "host_ids.h"
#include "host_window.h"
#include "text/text.h"
#include "tour.h"
#include "tour_faults.h"
#include "tour_progress.h"
#include "tour_story.h"

namespace korvane::host {

namespace {

// Controls of the panel, by the numbers that its documents give.
enum Control : int {
    showInputChannels = 21,
    showControlTables = 23,
    saveToDevice = 25,
    loadFromDevice = 26,
    reboot = 27,
    restoreDefaults = 28,
    showMonitor = 29,
    showSystem = 30,
    exportFile = 31,
    importFile = 32,
    about = 33,
    tableList = 1000,
    structureTree = 1035,
    refreshToggle = 1037,
    monitorTabs = 1042,
    barChart = 1044,
    serviceList = 1106,
    timeOfDay = 1122,
    deviceVersion = 1125,
    workNotice = 1205,
    recoverWork = 1206,
};

std::string inQuotes(std::string_view text) {
    return '"' + std::string(text) + '"';
}

std::vector<char> contents(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string statusText(const Tour& tour) {
    HWND line = tour.robot().waitControl(tour.host(), IDC_STATUS_LINE);
    const auto length = LOWORD(tour.robot().send(line, SB_GETTEXTLENGTHW));
    std::wstring buffer(length + 1u, L'\0');
    tour.robot().send(line, SB_GETTEXTW, 0, buffer.data());
    return toUtf8(buffer.c_str());
}

void enterAddress(Tour& tour, std::string_view address) {
    HWND field = tour.robot().waitControl(tour.host(), IDC_ADDRESS);
    tour.robot().setText(field, address);
    tour.robot().key(field, VK_RETURN);
}

void openHost(Tour& tour) {
    tour.picture(tour.host(), "host-start");
    tour.note(inQuotes(statusText(tour)));
}

void refuseAddress(Tour& tour) {
    enterAddress(tour, "192.168.1.300");
    const std::string text = "设备地址不正确：请输入 IPv4 地址，例如 192.168.1.20";
    tour.answerBox(text, IDOK, "host-wrong-address");
    tour.note("192.168.1.300 -> " + inQuotes(text));
}

void connectPanel(Tour& tour) {
    enterAddress(tour, tour.options().address);
    tour.robot().waitControl(tour.host(), showInputChannels);
    tour.robot().settle();
    tour.expect(statusText(tour) == startResultText(0, tour.options().address),
                "the panel did not start: " + statusText(tour));
    tour.note(inQuotes(statusText(tour)));
}

void connectDevice(Tour& tour) {
    connectPanel(tour);
    tour.picture(tour.host(), "0104-main-panel");
}

// The panel must fill what the host gives it, whatever size that has; when it is too little, it has
// scroll bars of its own within.
void resizeHost(Tour& tour) {
    const Robot& robot = tour.robot();
    RECT before{};
    GetWindowRect(tour.host(), &before);
    const int width = before.right - before.left, height = before.bottom - before.top;
    for (const int less : {-60, 0}) {
        SetWindowPos(tour.host(), nullptr, 0, 0, width + less, height + less,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        robot.waitFor("waited for the panel to fill its parent", [&] {
            HWND panel = GetParent(tour.body());
            RECT area{}, room{};
            GetWindowRect(panel, &area);
            GetClientRect(GetParent(panel), &room);
            MapWindowPoints(GetParent(panel), nullptr, reinterpret_cast<POINT*>(&room), 2);
            return EqualRect(&area, &room) != FALSE;
        });
    }
    tour.note("the panel follows");
}

// One run of a transfer: the failure that the panel reported, or nothing.
std::string transferOnce(Tour& tour, int button, std::string_view question,
                         const std::string& name) {
    const Robot& robot = tour.robot();
    robot.click(tour.body(), button);
    tour.answerBox(question, IDYES, "question-" + name);
    watchProgress(tour, "1023-progress-" + name);
    robot.settle();
    for (HWND window : robot.topWindows()) {
        if (!robot.isBox(window)) continue;
        const std::string text = robot.boxText(window);
        tour.answerBox(text, IDOK, "failure-" + name);
        return text;
    }
    return {};
}

void transfer(Tour& tour, int button, std::string_view question, const std::string& name) {
    static const std::set<std::string> failures = {"连接设备失败,请检查网络连接",
                                                   "与设备通信错误，请重试"};
    for (int attempt = 1;; ++attempt) {
        const std::string failure = transferOnce(tour, button, question, name);
        if (failure.empty()) return tour.note("done");
        tour.note(inQuotes(failure));
        tour.expect(failures.contains(failure), "an unknown failure");
        tour.expect(attempt < tour.options().attempts, "the transfer failed");
    }
}

void waitNotice(Tour& tour, std::string_view text) {
    HWND line = GetDlgItem(tour.body(), workNotice);
    tour.robot().waitFor("waited for the line " + inQuotes(text),
                         [&] { return tour.robot().text(line) == text; });
}

void fetch(Tour& tour) {
    transfer(tour, loadFromDevice, "确认要重新从设备获取配置吗?", "fetch");
}

void save(Tour& tour) {
    transfer(tour, saveToDevice, "确认要将配置保存到设备?", "save");
    waitNotice(tour, "");
}

// Right after a save the panel refuses another one; should this machine have taken ten seconds to
// get here, it asks as usual.
void saveAgain(Tour& tour) {
    const Robot& robot = tour.robot();
    robot.click(tour.body(), saveToDevice);
    HWND box = robot.waitAnyBox();
    const std::string text = robot.boxText(box);
    if (text == "两次设置时间不能小于10秒") {
        tour.answerBox(text, IDOK, "refusal-save-too-soon");
    } else {
        tour.expect(text == "确认要将配置保存到设备?", "another message: " + text);
        robot.answer(box, IDNO);
    }
    tour.note(inQuotes(text));
}

// The question alone: the device keeps what it has, and keeps running.
void askAndDecline(Tour& tour, int button, const std::string& question, const std::string& name) {
    tour.robot().click(tour.body(), button);
    tour.answerBox(question, IDNO, name);
    tour.note(inQuotes(question) + " no");
}

void declineRestore(Tour& tour) {
    askAndDecline(tour, restoreDefaults, "确认要使设备恢复默认值吗?", "question-restore");
}

void declineReboot(Tour& tour) {
    askAndDecline(tour, reboot, "确认要重启设备吗?", "question-reboot");
}

// Every tab of a page that has some, else the page as it is.
void pictureTabs(Tour& tour, HWND page, const std::string& name) {
    const Robot& robot = tour.robot();
    HWND tab = FindWindowExW(page, nullptr, WC_TABCONTROLW, nullptr);
    if (tab == nullptr) return tour.picture(tour.host(), name);
    const std::vector<std::string> titles = robot.tabTitles(tab);
    for (std::size_t i = 0; i < titles.size(); ++i) {
        robot.selectTab(tab, static_cast<int>(i));
        tour.picture(tour.host(), name + "-tab-" + std::to_string(i + 1));
        tour.note(inQuotes(titles[i]));
    }
}

struct PageVisit {
    int button;
    const char* picture;
};
constexpr PageVisit systemVisit = {showSystem, "1018-system"};
constexpr PageVisit channelVisit = {showInputChannels, "1003-input-channels"};

// Clicks the button and gives the page that it brought; `same` when that page is shown already.
HWND showPage(Tour& tour, int button, bool same = false) {
    const Robot& robot = tour.robot();
    HWND before = tour.visiblePage(tour.body());
    robot.click(tour.body(), button);
    robot.settle();
    HWND page = tour.visiblePage(tour.body());
    tour.expect((page == before) == same, "the button does not show its page");
    tour.note(inQuotes(robot.text(robot.waitControl(tour.body(), button))));
    return page;
}

void visit(Tour& tour, const PageVisit& visit, bool same = false) {
    pictureTabs(tour, showPage(tour, visit.button, same), visit.picture);
}

// The panel starts with this page, so its button changes nothing yet.
void visitInputChannels(Tour& tour) {
    visit(tour, channelVisit, true);
}

// Waits until the control looks different: what it shows is alive.
void waitMovement(Tour& tour, HWND control) {
    const Robot& robot = tour.robot();
    const std::filesystem::path file = tour.file("control-now.png");
    robot.savePicture(control, file);
    const std::vector<char> first = contents(file);
    robot.waitFor("waited for the view to move", [&] {
        robot.savePicture(control, file);
        return contents(file) != first;
    });
    std::filesystem::remove(file);
}

void toggleRefreshing(Tour& tour, HWND page, const char* newText) {
    const Robot& robot = tour.robot();
    HWND button = robot.waitControl(page, refreshToggle);
    robot.click(page, refreshToggle);
    robot.waitFor("waited for the button to say " + inQuotes(newText),
                  [&] { return robot.text(button) == newText; });
    tour.note(inQuotes(newText));
}

// Only a tree that stands still can be read: each refresh makes its items anew.
void countTreeLines(Tour& tour, HWND page) {
    const Robot& robot = tour.robot();
    toggleRefreshing(tour, page, "启动刷新");
    const std::size_t count = robot.treeRows(robot.waitControl(page, structureTree)).size();
    tour.expect(count > 4, "no frames in the tree");
    tour.note(std::to_string(count) + " lines");
    toggleRefreshing(tour, page, "停止刷新");
}

void countServices(Tour& tour, HWND page) {
    const Robot& robot = tour.robot();
    const std::size_t count = robot.listRows(robot.waitControl(page, serviceList)).size();
    tour.expect(count > 0, "no services in the list");
    tour.note(std::to_string(count) + " services");
}

void lookAtChart(Tour& tour, HWND page) {
    const Robot& robot = tour.robot();
    tour.note(robot.text(robot.waitControl(page, barChart)));
}

struct View {
    const char* title;
    const char* picture;
    int control;
    void (*look)(Tour&, HWND page);
};
constexpr std::array<View, 3> views = {{
    {"复用帧结构", "1076-monitoring-1084-frame-structure", structureTree, countTreeLines},
    {"业务列表", "1076-monitoring-1080-service-list", serviceList, countServices},
    {"图形化监控", "1076-monitoring-1089-graphic-monitor", barChart, lookAtChart},
}};

void visitMonitor(Tour& tour) {
    const Robot& robot = tour.robot();
    HWND panel = showPage(tour, showMonitor);
    HWND tab = robot.waitControl(panel, monitorTabs);
    tour.expect(std::ranges::equal(robot.tabTitles(tab), views, {}, {}, &View::title),
                "other tabs are there");
    for (std::size_t i = 0; i < views.size(); ++i) {
        const View& view = views[i];
        robot.selectTab(tab, static_cast<int>(i));
        tour.note(inQuotes(view.title));
        HWND page = tour.visiblePage(panel);
        waitMovement(tour, robot.waitControl(page, view.control));
        tour.picture(tour.host(), view.picture);
        view.look(tour, page);
    }
    HWND line = robot.waitControl(panel, timeOfDay);
    const std::string time =
        robot
            .waitFor("waited for the device's time of day",
                     [&] {
                         const std::string text = robot.text(line);
                         return text.starts_with("TOD: ") ? std::optional(text) : std::nullopt;
                     })
            .value();
    tour.note(inQuotes(time));
}

void visitSystem(Tour& tour) {
    visit(tour, systemVisit);
}
void returnToInputChannels(Tour& tour) {
    showPage(tour, showInputChannels);
}

struct Table {
    const char* title;
    const char* picture;
};
constexpr std::array<Table, 6> tables = {{
    {"网络信息表", "1036-0-1047-network-information"},
    {"持续业务复用配置表", "1036-1-1050-continuous-multiplex"},
    {"持续业务配置表", "1036-2-1052-continuous-services"},
    {"短时间业务复用配置表", "1036-3-1050-short-time-multiplex"},
    {"短时间业务配置表", "1036-4-1052-short-time-services"},
    {"加密授权描述表", "1036-5-1092-conditional-access"},
}};

void visitControlTables(Tour& tour) {
    const Robot& robot = tour.robot();
    HWND page = showPage(tour, showControlTables);
    HWND list = robot.waitControl(page, tableList);
    const std::vector<std::string> items = robot.listBoxItems(list);
    tour.expect(std::ranges::equal(items, tables, {}, {}, &Table::title),
                "other tables are listed");
    std::set<HWND> seen;
    for (std::size_t i = 0; i < tables.size(); ++i) {
        robot.selectListBox(list, static_cast<int>(i));
        tour.expect(seen.insert(tour.visiblePage(GetParent(list))).second,
                    "the table does not show a page of its own: " + items[i]);
        tour.picture(tour.host(), tables[i].picture);
        tour.note(inQuotes(items[i]));
    }
}

void exportTo(Tour& tour, const std::filesystem::path& file, const std::string& name) {
    const Robot& robot = tour.robot();
    std::filesystem::remove(file);
    robot.click(tour.body(), exportFile);
    HWND dialog = robot.waitDialog("另存为");
    tour.picture(dialog, name);
    robot.chooseFile(dialog, file);
    tour.answerBox("导出配置成功", IDOK, "message-exported");
    tour.note("导出配置成功, " + std::to_string(std::filesystem::file_size(file)) + " bytes");
}

void exportConfiguration(Tour& tour) {
    exportTo(tour, tour.file("exported.dat"), "file-dialog-export");
}

std::filesystem::path fileToImport(const Tour& tour) {
    const std::string& given = tour.options().importFile;
    return given.empty() ? tour.file("exported.dat") : std::filesystem::path(toWide(given));
}

void importConfiguration(Tour& tour) {
    const Robot& robot = tour.robot();
    robot.click(tour.body(), importFile);
    HWND dialog = robot.waitDialog("打开");
    tour.picture(dialog, "file-dialog-import");
    robot.chooseFile(dialog, fileToImport(tour));
    const std::string question = "导入业务配置的同时，导入网络配置吗";
    tour.expect(robot.boxDefault(robot.waitBox(question)) == IDNO, "No is not the default");
    tour.answerBox(question, IDYES, "question-import-network");
    tour.answerBox("导入配置成功", IDOK, "message-imported");
    tour.note(inQuotes(question) + " yes; 导入配置成功");
}

// What went in by import has to come out by export, byte for byte.
void exportAgain(Tour& tour) {
    exportTo(tour, tour.file("reexported.dat"), "file-dialog-export");
    tour.expect(contents(tour.file("reexported.dat")) == contents(fileToImport(tour)),
                "the export differs from the file imported before");
    tour.note("equal to the imported file");
}

void showAbout(Tour& tour) {
    const Robot& robot = tour.robot();
    robot.click(tour.body(), about);
    HWND dialog = robot.waitDialog("关于 Korvane管理软件");
    const std::string version = robot.text(robot.waitControl(dialog, deviceVersion));
    tour.expect(version.starts_with("设备版本: 软件"), "no device version: " + version);
    tour.picture(dialog, "1028-about");
    robot.click(dialog, IDOK);
    robot.waitGone(dialog);
    tour.note(inQuotes(version));
}

// What an earlier run of the panel left.
void recoverEdits(Tour& tour) {
    waitNotice(tour, "有上次未设置到设备的修改");
    tour.picture(tour.host(), "1029-edits-of-last-time");
    tour.robot().click(tour.body(), recoverWork);
    waitNotice(tour, "有修改尚未设置到设备");
    tour.picture(tour.host(), "1029-edits-recovered");
    tour.note("recovered");
}

void disconnectDevice(Tour& tour) {
    const Robot& robot = tour.robot();
    HWND panel = GetParent(tour.body());
    robot.click(tour.host(), IDC_DISCONNECT);
    robot.waitFor("waited for the panel to go", [&] { return !IsWindow(panel); });
    robot.settle();
    tour.picture(tour.host(), "host-disconnected");
    tour.note(inQuotes(statusText(tour)));
}

// Edits that are not sent yet outlive the panel.
void comeBackToEdits(Tour& tour) {
    waitNotice(tour, "有修改尚未设置到设备");
    tour.picture(tour.host(), "1029-edited");
    disconnectDevice(tour);
    connectPanel(tour);
    recoverEdits(tour);
}

}  // namespace

const std::vector<TourStep>& recoverySteps() {
    static const std::vector<TourStep> steps = {{"connect", connectDevice},
                                                {"recover edits", recoverEdits},
                                                {"export", exportConfiguration},
                                                {"disconnect", disconnectDevice}};
    return steps;
}

const std::vector<TourStep>& tourSteps() {
    static const std::vector<TourStep> steps = {
        {"open the host", openHost},
        {"refuse a wrong address", refuseAddress},
        {"connect", connectDevice},
        {"resize", resizeHost},
        {"fetch from the device", fetch},
        {"input channels", visitInputChannels},
        {"control tables", visitControlTables},
        {"monitoring", visitMonitor},
        {"alarms", visitAlarms, true},
        {"lost link", visitLostLink, true},
        {"system configuration", visitSystem},
        {"back to the input channels", returnToInputChannels},
        {"export", exportConfiguration},
        {"import", importConfiguration},
        {"export what was imported", exportAgain},
        {"edit input channels", editChannels, true},
        {"add channels for a service", addServiceChannels, true},
        {"edit the network", editNetwork, true},
        {"edit frequency points", editFrequencyPoints, true},
        {"add a neighbour network", addNeighbourNetwork, true},
        {"edit services' frequencies", editServiceFrequencies, true},
        {"add a CA system", addCaSystem, true},
        {"edit a CA system", editCaSystem, true},
        {"delete a CA system", removeCaSystem, true},
        {"look at services of every type", lookAtServices, true},
        {"add a multiplex frame", addFrame, true},
        {"add a short-time frame", addShortTimeFrame, true},
        {"leave with edits and come back", comeBackToEdits, true},
        {"change the network settings", changeNetworkSettings, true},
        {"set the output parameters", setOutputParameters, true},
        {"restore defaults", declineRestore},
        {"save to the device", save},
        {"save again at once", saveAgain},
        {"upgrade the firmware", upgradeFirmware, true},
        {"reboot", declineReboot},
        {"about", showAbout},
        {"disconnect", disconnectDevice},
    };
    return steps;
}

}  // namespace korvane::host
