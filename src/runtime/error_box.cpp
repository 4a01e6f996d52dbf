#include "runtime/error_box.h"

#include <windows.h>

#include "text/text.h"

namespace nox_pub::mswin {
namespace {

class SystemErrorBox : public ErrorBox {
  public:
    void show(std::string_view text, std::string_view caption) override {
        MessageBoxW(nullptr, korvane::anyToWide(text).c_str(), korvane::anyToWide(caption).c_str(),
                    MB_OK | MB_ICONERROR);
    }
};

}  // namespace

ErrorBox& systemErrorBox() {
    static SystemErrorBox box;
    return box;
}

}  // namespace nox_pub::mswin
