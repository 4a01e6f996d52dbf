#pragma once

#include <windows.h>

// What the stub noted of the calls to its exports; it exports this as `stubCalls`.
struct StubCalls {
    int starts;
    int stops;
    HWND parent;       // as read from the window object
    char address[64];  // as read from the text object
};
