#pragma once

#include <windows.h>

namespace korvane {

// Keeps a child window as large as its parent's client area while it lives. A child that somebody
// else has placed meanwhile is left where it is.
class ParentFollower {
  public:
    // `child` belongs to the calling thread.
    explicit ParentFollower(HWND child);
    ~ParentFollower();
    ParentFollower(const ParentFollower&) = delete;
    ParentFollower& operator=(const ParentFollower&) = delete;

  private:
    static LRESULT CALLBACK onParentMessage(HWND parent, UINT message, WPARAM wParam, LPARAM lParam,
                                            UINT_PTR id, DWORD_PTR self);
    void fill();
    bool isWhereItWasPut() const;

    HWND child_;
    HWND parent_;
    RECT filled_{};  // what the child was last given
};

}  // namespace korvane
