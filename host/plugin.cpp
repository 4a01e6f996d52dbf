#include "plugin.h"

#include <bit>

#include "text/text.h"

namespace korvane::host {

namespace {

std::string loadFailure(const std::filesystem::path& library, DWORD error) {
    const std::string path = toUtf8(library.wstring());
    if (error == ERROR_MOD_NOT_FOUND && !std::filesystem::exists(library))
        return "找不到插件 Korvane.dll。\n请把它放到本程序所在的目录：\n" +
               toUtf8(library.parent_path().wstring());
    return "无法加载插件（错误 " + std::to_string(error) + "）：\n" + path;
}

HMODULE load(const std::filesystem::path& library) {
    HMODULE module =
        LoadLibraryExW(library.wstring().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (module == nullptr) throw PluginError(loadFailure(library, GetLastError()));
    return module;
}

}  // namespace

template <class Function>
Function Plugin::find(const char* name) const {
    const FARPROC function = GetProcAddress(library_, name);
    if (function == nullptr)
        throw PluginError(std::string("插件 Korvane.dll 缺少函数 ") + name + "。");
    return std::bit_cast<Function>(function);
}

Plugin::Plugin(const std::filesystem::path& library) : library_(load(library)) {
    try {
        start_ = find<KorvaneStart>("cmmbStart");
        getWnd_ = find<KorvaneGetWnd>("cmmbGetWnd");
        stop_ = find<KorvaneStop>("cmmbStop");
    } catch (...) {
        FreeLibrary(library_);
        throw;
    }
}

Plugin::~Plugin() {
    FreeLibrary(library_);
}

int Plugin::start(HWND parent, const std::string& address) {
    parent_.window = parent;
    const KorvaneText text{address.c_str()};
    return start_(&parent_, &text);
}

void Plugin::stop() {
    stop_();
}

HWND Plugin::panel() const {
    return static_cast<const WindowObject*>(getWnd_())->window;
}

}  // namespace korvane::host
