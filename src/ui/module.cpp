#include "ui/module.h"

#include <commctrl.h>

namespace korvane {
namespace {

// Fixed by the loader for the manifest of a library.
constexpr WORD libraryManifestId = 2;

HINSTANCE remembered = nullptr;

class OwnContext {
  public:
    OwnContext() {
        ACTCTXW request{};
        request.cbSize = sizeof request;
        request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
        request.hModule = moduleInstance();
        request.lpResourceName = MAKEINTRESOURCEW(libraryManifestId);
        handle_ = CreateActCtxW(&request);
    }
    ~OwnContext() {
        if (handle_ != INVALID_HANDLE_VALUE) ReleaseActCtx(handle_);
    }
    bool activate(ULONG_PTR& cookie) const {
        return handle_ != INVALID_HANDLE_VALUE && ActivateActCtx(handle_, &cookie) != FALSE;
    }

  private:
    HANDLE handle_ = INVALID_HANDLE_VALUE;
};

void registerControlClasses() {
    const INITCOMMONCONTROLSEX wanted{
        sizeof wanted, ICC_WIN95_CLASSES | ICC_INTERNET_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&wanted);
}

}  // namespace

void setModuleInstance(HINSTANCE instance) {
    remembered = instance;
}

HINSTANCE moduleInstance() {
    return remembered ? remembered : GetModuleHandleW(nullptr);
}

ActivationScope::ActivationScope() {
    static const OwnContext context;
    active_ = context.activate(cookie_);
    // Within the scope, so that the classes of version 6 are the ones registered.
    static const bool registered = (registerControlClasses(), true);
    static_cast<void>(registered);
}

ActivationScope::~ActivationScope() {
    if (active_) DeactivateActCtx(0, cookie_);
}

}  // namespace korvane
