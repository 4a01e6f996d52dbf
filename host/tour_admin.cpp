#include <fstream>

#include "tour_editing.h"
#include "tour_progress.h"
#include "tour_story.h"

namespace korvane::host {

namespace {

enum SystemControl : int {
    showInputChannels = 21,
    saveToDevice = 25,
    showSystem = 30,
    controlMask = 1017,
    serviceMask = 1020,
    controlGateway = 1022,
    managementHost = 1027,
    serviceGateway = 1031,
    backupAddress = 1033,
    applySettings = 1058,
    upgrade = 1059,
    controlMac = 1060,
    controlAddress = 1061,
    browse = 1062,
    pmsPid = 1063,
    deviceNumber = 1065,
    transmitDelay = 1067,
    timeLabel = 1069,
    nextFrameParameters = 1070,
    clockSource = 1071,
    updateAdvance = 1072,
    serviceMac = 1074,
    isBackup = 1078,
    serviceAddress = 1081,
    alarm10M = 1087,
    systemRate = 1109,
    firmwareFile = 1124,
};

constexpr const char* settingsQuestion = "确认要修改网络设置吗?";

void choose(Tour& tour, const std::filesystem::path& file) {
    tour.robot().click(tour.body(), browse);
    HWND dialog = tour.robot().waitDialog("打开");
    tour.picture(dialog, "file-dialog-firmware");
    tour.robot().chooseFile(dialog, file);
}

}  // namespace

// The device takes them at once and works with them after its restart, which it is silent in.
void changeNetworkSettings(Tour& tour) {
    const Robot& robot = tour.robot();
    HWND page = openPage(tour, showSystem);
    robot.fill(page, {{controlAddress, "10.20.30.40"},
                      {controlMask, "255.255.0.0"},
                      {controlGateway, "10.20.0.1"},
                      {managementHost, "10.20.0.2"},
                      {controlMac, "01112233445A"},
                      {serviceAddress, "10.30.30.40"},
                      {serviceMask, "255.255.255.0"},
                      {serviceGateway, "10.30.30.1"},
                      {serviceMac, "02112233445B"}});
    robot.click(page, applySettings);
    tour.answerBox(settingsQuestion, IDYES, "question-settings");
    tour.answerBox("MAC地址第1个字节不能为奇数", IDOK, "refusal-mac");
    robot.fill(page, {{controlMac, "00112233445A"}});
    tour.picture(tour.host(), "1018-system-network");
    robot.click(page, applySettings);
    tour.answerBox(settingsQuestion, IDYES, "question-settings");
    tour.answerBox("网络设置修改成功，是否重启设备?", IDYES, "question-restart");
    tour.answerBox("设备已收到命令，正在重启中，请稍候!", IDOK, "message-restarting");
    tour.note("sent, and the device restarts");
}

// They go to the device with the next save, which a wrong one stands against.
void setOutputParameters(Tour& tour) {
    const Robot& robot = tour.robot();
    HWND page = openPage(tour, showSystem);
    robot.fill(page, {{pmsPid, "300"},
                      {deviceNumber, "12"},
                      {transmitDelay, "7"},
                      {updateAdvance, "2"},
                      {clockSource, "内部时钟"},
                      {timeLabel, "0"},
                      {nextFrameParameters, "1"},
                      {isBackup, "1"},
                      {backupAddress, "10.20.30.41"},
                      {alarm10M, "0"},
                      {systemRate, "50001"}});
    openPage(tour, showInputChannels);
    robot.click(tour.body(), saveToDevice);
    tour.answerBox("确认要将配置保存到设备?", IDYES, "question-save");
    tour.answerBox("系统码率应在1000Kbps~50000Kbps之间", IDOK, "refusal-system-rate");
    robot.settle();
    tour.expect(tour.visiblePage(tour.body()) == page, "the refused entry is not shown");
    robot.fill(page, {{systemRate, "12000"}});
    tour.picture(tour.host(), "1018-system-output");
    tour.note("12000 Kbps");
}

void upgradeFirmware(Tour& tour) {
    constexpr std::size_t size = 150'000;
    const Robot& robot = tour.robot();
    const std::filesystem::path firmware = tour.file("softH264EP.out"),
                                other = tour.file("softH264EP.OUT.out");
    for (const auto& file : {firmware, other})
        std::ofstream(file, std::ios::binary) << std::string(size, 'K');
    HWND page = openPage(tour, showSystem);
    choose(tour, other);
    tour.answerBox("文件名不正确，请检查是否为复用器的升级文件", IDOK, "refusal-firmware");
    choose(tour, firmware);
    robot.waitFor("waited for the chosen file to be shown", [&] {
        return robot.text(robot.waitControl(page, firmwareFile)).ends_with("softH264EP.out");
    });
    tour.picture(tour.host(), "1018-system-firmware");
    robot.click(page, upgrade);
    const std::string question = "确认要进行设备升级吗？";
    tour.expect(robot.boxDefault(robot.waitBox(question)) == IDNO, "No is not the default");
    tour.answerBox(question, IDYES, "question-upgrade");
    watchProgress(tour, "1023-progress-upgrade");
    tour.answerBox("升级完成，请重启设备", IDOK, "message-upgraded");
    for (const auto& file : {firmware, other}) std::filesystem::remove(file);
    tour.note("softH264EP.out, " + std::to_string(size) + " bytes");
}

}  // namespace korvane::host
