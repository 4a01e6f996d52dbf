#pragma once

#include <windows.h>

namespace korvane {

// The module whose resources the windows come from: the library's own once its entry routine has
// remembered it, else the program itself (the tests link the window layer into a program).
void setModuleInstance(HINSTANCE instance);
HINSTANCE moduleInstance();

// Makes the module's own manifest count while it lives: the look and the messages of our controls
// must not depend on whether the host asks for version 6 of the common controls.
class ActivationScope {
  public:
    ActivationScope();
    ~ActivationScope();
    ActivationScope(const ActivationScope&) = delete;
    ActivationScope& operator=(const ActivationScope&) = delete;

  private:
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
};

}  // namespace korvane
