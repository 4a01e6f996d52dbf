#include "tour_editing.h"
#include "tour_story.h"

namespace korvane::host {

namespace {

enum FrameControl : int {
    candidates = 1005,
    slotNumber = 1030,
    component = 1039,
    ldpcRate = 1070,
    scrambling = 1079,
    frames = 1083,
    frameId = 1088,
    subFrames = 1094,
    serviceId = 1096,
    serviceName = 1097,
    rsRate = 1098,
    serviceBandwidth = 1099,
    timeSlots = 1101,
    serviceType = 1102,
    audioComponents = 1103,
    ecmComponents = 1104,
    videoComponents = 1105,
    scrambled = 1120,
};
constexpr const char *frameCaption = "复用帧配置", *serviceCaption = "复用子帧配置";
constexpr FormVisit frame = {frameCaption, "1062-frame"};
constexpr FormVisit slotCount = {"时隙配置", "1007-time-slots"};
constexpr FormVisit newMediaService = {serviceCaption, "1064-media-service-new"};
constexpr FormVisit newEsgService = {serviceCaption, "1064-esg-service-new"};
constexpr FormVisit newDataService = {serviceCaption, "1064-data-service-new"};

// A service of the device's configuration, by the rows of its frame and of itself.
struct ServiceVisit {
    int frame, subFrame;
    FormVisit form;
};
constexpr ServiceVisit services[] = {
    {5, 0, {serviceCaption, "1064-media-service"}}, {3, 0, {serviceCaption, "1064-dra-service"}},
    {4, 1, {serviceCaption, "1064-esg-service"}},   {4, 2, {serviceCaption, "1064-emm-service"}},
    {4, 0, {serviceCaption, "1064-data-service"}},
};

void configureSlots(Tour& tour, HWND form, const char* count) {
    HWND list = tour.robot().waitControl(form, timeSlots);
    accept(tour, openByMenu(tour, list, -1, "配置时隙", slotCount), slotCount,
           {{slotNumber, count}});
}

// The only channel of its type that no service has yet.
void addComponent(Tour& tour, HWND form, int control, const char* picture) {
    const Robot& robot = tour.robot();
    HWND list = robot.waitControl(form, control);
    const FormVisit selection = {"业务组件选择", picture};
    HWND choice = openNew(tour, list, selection);
    HWND rows = robot.waitControl(choice, candidates);
    tour.expect(lastRow(tour, rows) == 0, "not one channel alone is offered");
    const Cells offered = robot.listRows(rows).at(0);
    robot.checkRow(rows, 0, true);
    accept(tour, choice, selection, {});
    expectRow(tour, list, 0, offered);
}

void addMediaService(Tour& tour, HWND list) {
    HWND form = openNew(tour, list, newMediaService);
    refuse(tour, form, {{serviceId, "501"}, {serviceName, "端到端电影"}}, "请添加组件",
           "refusal-no-components");
    addComponent(tour, form, videoComponents, "1012-video-components");
    addComponent(tour, form, audioComponents, "1012-audio-components");
    addComponent(tour, form, ecmComponents, "1012-ecm-components");
    accept(tour, form, newMediaService, {{scrambled, "1"}});
}

void addEsgService(Tour& tour, HWND list) {
    HWND form = openNew(tour, list, newEsgService);
    refuse(tour, form,
           {{serviceId, "502"},
            {serviceType, "ESG业务"},
            {component, "内部生成"},
            {serviceName, "端到端指南"},
            {serviceBandwidth, "300000"}},
           "业务带宽(300000 bps)超过信道带宽(774144 bps)，可用带宽(294144 bps)",
           "refusal-service-bandwidth");
    tour.picture(form, "1064-esg-service-too-wide");
    accept(tour, form, newEsgService, {{serviceBandwidth, "128000"}});
}

// The frame of the tour's story comes before the one at this row.
HWND openNewFrame(Tour& tour, std::string_view table, int row, std::string_view proposedId) {
    openTable(tour, table);
    HWND form = openByMenu(tour, onPage(tour, frames), row, "添加", frame);
    tour.expect(tour.robot().text(tour.robot().waitControl(form, frameId)) == proposedId,
                "another frame id is proposed");
    return form;
}

// Less of the channel is left for the services that are there.
void overloadFrame(Tour& tour, HWND list, int row) {
    HWND form = openRow(tour, list, row, frame);
    refuse(tour, form, {{rsRate, "(240, 176)"}},
           "总业务带宽(1000000)超过信道带宽(811008 bps)，溢出带宽(188992 bps)",
           "refusal-frame-bandwidth");
    cancel(tour, form, {frameCaption, "1062-frame-overloaded"});
}

}  // namespace

void lookAtServices(Tour& tour) {
    openTable(tour, "持续业务复用配置表");
    HWND list = onPage(tour, frames);
    for (const ServiceVisit& visit : services) {
        HWND form = openRow(tour, list, visit.frame, frame);
        cancel(tour,
               openRow(tour, tour.robot().waitControl(form, subFrames), visit.subFrame, visit.form),
               visit.form);
        cancel(tour, form, {frameCaption, "1062-frame-stored"});
        tour.note(visit.form.picture);
    }
    overloadFrame(tour, list, 1);
}

void addFrame(Tour& tour) {
    HWND form = openNewFrame(tour, "持续业务复用配置表", 2, "9");
    HWND list = tour.robot().waitControl(form, subFrames);
    refuse(tour, form, {{ldpcRate, "3/4"}, {scrambling, "模式2"}}, "时隙数不能为0",
           "refusal-no-time-slots");
    configureSlots(tour, form, "4");
    addMediaService(tour, list);
    addEsgService(tour, list);
    expectRow(tour, list, 1, {"2", "502"});
    accept(tour, form, frame, {});
    expectRow(tour, onPage(tour, frames), 2, {"9", "(240, 224)", "模式1", "3/4", "QPSK", "模式2"});
    tour.picture(tour.host(), "1036-1-1050-continuous-frames-edited");
}

void addShortTimeFrame(Tour& tour) {
    HWND form = openNewFrame(tour, "短时间业务复用配置表", 1, "10");
    configureSlots(tour, form, "2");
    accept(tour, openNew(tour, tour.robot().waitControl(form, subFrames), newDataService),
           newDataService,
           {{serviceId, "503"},
            {serviceType, "数据广播业务"},
            {component, "239.1.16.1:6300"},
            {serviceName, "端到端数据"},
            {serviceBandwidth, "200000"}});
    accept(tour, form, {frameCaption, "1062-frame-short-time"}, {});
    expectRow(tour, onPage(tour, frames), 1, {"10", "(240, 224)", "模式1", "1/2", "QPSK", "模式0"});
    tour.picture(tour.host(), "1036-3-1050-short-time-frames-edited");
}

}  // namespace korvane::host
