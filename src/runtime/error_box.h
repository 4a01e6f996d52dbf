#pragma once

#include <string_view>

namespace nox_pub::mswin {

// The seam to the operator for what a thread could not deal with. Texts are UTF-8.
class ErrorBox {
  public:
    virtual ~ErrorBox() = default;

    // Returns when the operator has read it. Called on the thread that failed.
    virtual void show(std::string_view text, std::string_view caption) = 0;
};

// A message box of the system with the error icon, owned by no window.
ErrorBox& systemErrorBox();

}  // namespace nox_pub::mswin
