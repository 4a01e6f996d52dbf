#include "tour_editing.h"

#include <algorithm>

namespace korvane::host {

namespace {

constexpr int showControlTables = 23, tableList = 1000;

std::string joined(const Cells& cells) {
    std::string text;
    for (const std::string& cell : cells) text += (text.empty() ? "" : " ") + cell;
    return text;
}

}  // namespace

HWND openPage(Tour& tour, int button) {
    tour.robot().click(tour.body(), button);
    tour.robot().settle();
    return tour.visiblePage(tour.body());
}

HWND openTable(Tour& tour, std::string_view table) {
    const Robot& robot = tour.robot();
    HWND list = robot.waitControl(openPage(tour, showControlTables), tableList);
    const std::vector<std::string> names = robot.listBoxItems(list);
    const auto found = std::ranges::find(names, table);
    tour.expect(found != names.end(), "there is no such table: " + std::string(table));
    robot.selectListBox(list, static_cast<int>(found - names.begin()));
    return tour.visiblePage(GetParent(list));
}

HWND onPage(Tour& tour, int control) {
    return tour.robot().waitControl(tour.visiblePage(tour.body()), control);
}

HWND openNew(Tour& tour, HWND list, const FormVisit& visit) {
    const Robot& robot = tour.robot();
    robot.rightClickRow(list, -1);
    tour.picture(robot.waitClass("#32768"), "menu-of-a-list");
    robot.choosePopup("添加");
    return robot.waitDialog(visit.caption);
}

HWND openByMenu(Tour& tour, HWND list, int row, std::string_view item, const FormVisit& visit) {
    tour.robot().rightClickRow(list, row);
    tour.robot().choosePopup(item);
    return tour.robot().waitDialog(visit.caption);
}

HWND openRow(Tour& tour, HWND list, int row, const FormVisit& visit) {
    tour.robot().doubleClickRow(list, row);
    return tour.robot().waitDialog(visit.caption);
}

void refuse(Tour& tour, HWND form, const Entries& entries, std::string_view message,
            const std::string& name) {
    const Robot& robot = tour.robot();
    robot.fill(form, entries);
    robot.click(form, IDOK);
    tour.answerBox(message, IDOK, name);
    robot.settle();
    tour.expect(IsWindowVisible(form) && IsWindowEnabled(form), "the dialog has not stayed");
    tour.note("\"" + std::string(message) + '"');
}

void accept(Tour& tour, HWND form, const FormVisit& visit, const Entries& entries) {
    const Robot& robot = tour.robot();
    robot.fill(form, entries);
    tour.picture(form, visit.picture);
    robot.click(form, IDOK);
    robot.waitGone(form);
    robot.settle();
}

void cancel(Tour& tour, HWND form, const FormVisit& visit) {
    const Robot& robot = tour.robot();
    tour.picture(form, visit.picture);
    robot.key(form, VK_ESCAPE);
    robot.waitGone(form);
    robot.settle();
}

void openByKeys(Tour& tour, HWND list, int row, const FormVisit& visit) {
    const Robot& robot = tour.robot();
    robot.selectRow(list, row);
    for (const WORD key : {VK_INSERT, VK_RETURN}) {
        robot.key(list, key);
        HWND form = robot.waitDialog(visit.caption);
        robot.key(form, VK_ESCAPE);
        robot.waitGone(form);
        robot.settle();
    }
    tour.note("Insert, Enter, Esc");
}

void removeRow(Tour& tour, HWND list, int row) {
    const Robot& robot = tour.robot();
    const int last = lastRow(tour, list);
    robot.selectRow(list, row);
    robot.key(list, VK_DELETE);
    tour.answerBox("请确认删除", IDYES, "question-delete");
    robot.settle();
    tour.expect(lastRow(tour, list) == last - 1, "not exactly one row has gone");
    tour.note("row " + std::to_string(row) + " deleted");
}

void expectRow(Tour& tour, HWND list, int row, const Cells& cells) {
    const std::string shown = joined(tour.robot().listRows(list).at(static_cast<std::size_t>(row)));
    tour.expect(shown == joined(cells), "another row than " + joined(cells) + ": " + shown);
    tour.note(joined(cells));
}

int lastRow(Tour& tour, HWND list) {
    return static_cast<int>(tour.robot().send(list, LVM_GETITEMCOUNT)) - 1;
}

}  // namespace korvane::host
