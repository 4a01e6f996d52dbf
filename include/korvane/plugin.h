#pragma once

/*
 * Korvane.dll: the management panel of one multiplexer, as a plug-in of a 32-bit Windows program.
 *
 * Load the library, call cmmbStart with a window of yours and the device's address, and cmmbStop
 * before that window goes. All three functions belong to the thread that owns the window. The
 * panel fills the window's client area and follows it. Nothing else is needed: the library brings
 * its own resources, threads and common controls.
 */

#include <stddef.h>

#ifdef _WIN32
#define KORVANE_CALL __cdecl
#else
#define KORVANE_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Results of cmmbStart. */
enum {
    KORVANE_STARTED = 0,
    KORVANE_DEVICE_FAILED = 1, /* the panel is there, but no socket could be opened */
    KORVANE_NO_PANEL = -2      /* the panel could not be made, or there already is one */
};

/* How far into a window object its HWND stands. */
enum { KORVANE_HANDLE_OFFSET = sizeof(void*) == 4 ? 0x20 : 0x40 };

/* A text object as cmmbStart reads it: one pointer to zero-terminated characters, either narrow or
 * 16-bit. 16-bit is a text whose second byte is zero. */
struct KorvaneText {
    const void* characters;
};

/*
 * window: a window object of the host's class library (any object that keeps its HWND
 *         KORVANE_HANDLE_OFFSET bytes from its start), or an HWND.
 * address: the text object that holds the device's dotted IPv4 address.
 *
 * Each start wants a cmmbStop, whatever it returned. A second start without one cancels what the
 * panel shows modally, starts the work with the device anew and returns KORVANE_NO_PANEL, for there
 * already is a panel.
 */
typedef int(KORVANE_CALL* KorvaneStart)(void* window, const struct KorvaneText* address);

/* A window object with the panel's HWND KORVANE_HANDLE_OFFSET bytes from its start, NULL while
 * there is no panel; everything else in it is zero. Always the same object, never null. */
typedef void*(KORVANE_CALL* KorvaneGetWnd)(void);

/* Ends the work with the device and destroys the panel; what the panel shows modally is cancelled.
 * Takes up to about a second, longer only while the system hangs. Always 0, without a start too.
 * The library holds itself in memory from a start to its stop; keep your own reference until
 * cmmbStop has returned. */
typedef int(KORVANE_CALL* KorvaneStop)(void);

/* The names to ask GetProcAddress for: "cmmbStart", "cmmbGetWnd", "cmmbStop". */
#ifdef KORVANE_BUILD
__declspec(dllexport) int KORVANE_CALL cmmbStart(void* window, const struct KorvaneText* address);
__declspec(dllexport) void* KORVANE_CALL cmmbGetWnd(void);
__declspec(dllexport) int KORVANE_CALL cmmbStop(void);
#endif

#ifdef __cplusplus
}
#endif
