#pragma once

#include <gtest/gtest.h>

#include "host/robot.h"

namespace korvane {

using host::Robot;
using host::RobotThread;

}  // namespace korvane

namespace korvane::test {

// Presses a button that ends the dialog, and waits until what follows from that is done, too.
inline void end(const Robot& r, HWND dialog, int button) {
    r.click(dialog, button);
    r.waitGone(dialog);
    r.settle();
}

// From the menu of a row (-1: of none), which has so many items.
inline void choose(const Robot& r, HWND list, int row, std::size_t offered, const char* text) {
    r.rightClickRow(list, row);
    EXPECT_EQ(r.waitPopup().size(), offered);
    r.choosePopup(text);
}

// What Tab reaches, in that order.
inline std::vector<HWND> tabOrder(HWND dialog) {
    std::vector<HWND> all;
    const HWND first = GetNextDlgTabItem(dialog, nullptr, FALSE);
    for (HWND one = first; one != first || all.empty(); one = GetNextDlgTabItem(dialog, one, FALSE))
        all.push_back(one);
    return all;
}

}  // namespace korvane::test
