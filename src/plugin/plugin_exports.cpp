#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <new>
#include <utility>

#include "device/device_manager.h"
#include "device/monitor_thread.h"
#include "device/ping_host.h"
#include "device/reachability.h"
#include "device/runtime_threads.h"
#include "device/udp_link.h"
#include "korvane/plugin.h"
#include "log/log.h"
#include "panel/main_panel.h"
#include "plugin/host_border.h"
#include "plugin/library_freed.h"
#include "ui/modal.h"

namespace korvane {
namespace {

std::filesystem::path hostDirectory() {
    constexpr DWORD longestPath = 32768;
    std::wstring path(longestPath, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), longestPath));
    return std::filesystem::path(path).parent_path();
}

// A reference to this library, so that a host that frees it too early cannot pull the code away
// from under running threads or a waiting command.
class LibraryHold {
  public:
    void take() {
        if (held_) return;
        const auto* inside = reinterpret_cast<const wchar_t*>(&hostDirectory);
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, inside, &held_);
    }
    // The caller's own reference keeps the code in place while this runs.
    void release() {
        HMODULE library = held_;
        held_ = nullptr;
        if (library) FreeLibrary(library);
    }

  private:
    HMODULE held_ = nullptr;
};

struct Plugin {
    Plugin() { setLogSink(&processLog()); }

    Reachability device{&resolveHost};
    UdpDeviceLink link{[this](const std::string&) { return device.answers(); }};
    DeviceManager manager{link, hostDirectory(), runtimeThreads()};
    // For devices that send their status unasked. Today's are polled: it is not started.
    MonitorThread monitor;
    PanelWindowObject object;  // what the host gets
    MainPanel panel{manager, object.window};
    LibraryHold hold;
    bool started = false;
};

Plugin* instance = nullptr;

// Made by the first call, for the entry routine may not. Not a static object, which would also be
// destroyed at the end of the process: its threads have been ended by force then.
Plugin& plugin() {
    alignas(Plugin) static std::byte room[sizeof(Plugin)];
    static Plugin* const made = instance = new (room) Plugin;
    return *made;
}

// What comes of `work`, or of its failure: no exception may cross into the host, which is built
// with another compiler.
template <class Work>
auto contained(Work work, decltype(work()) failure) noexcept {
    try {
        return work();
    } catch (const std::exception& exception) {
        logLine(logError, "接口函数异常: %s", exception.what());
    } catch (...) {
        logLine(logError, "接口函数异常");
    }
    return failure;
}

int startDevice(Plugin& self, const void* address) {
    const std::string device = hostText(address);
    const int result = self.manager.Start(device);
    // Now that nothing asks any more whether the device before answers.
    self.device.watch(device);
    return result == 0 ? KORVANE_STARTED : KORVANE_DEVICE_FAILED;
}

int start(void* window, const void* address) {
    Plugin& self = plugin();
    // What a command of the panel still waits for is about the device, and the model, before.
    dismissModals();
    self.hold.take();
    self.started = true;
    const int result = contained([&] { return startDevice(self, address); }, KORVANE_DEVICE_FAILED);
    // A panel that is there already shows another device, or none, from now on.
    self.panel.refresh();
    if (self.panel.create(hostWindow(window))) return result;
    logLine(logError, "面板窗口创建失败");
    return KORVANE_NO_PANEL;
}

int stop() {
    Plugin& self = plugin();
    if (self.started) self.manager.Stop();
    self.started = false;
    self.panel.destroy();
    if (ModalScope::depth() == 0) self.hold.release();
    return 0;
}

}  // namespace

// A host that freed more than it loaded got past the hold; what runs then cannot be waited for.
void libraryFreed() noexcept {
    if (instance && !instance->started) std::destroy_at(std::exchange(instance, nullptr));
}

}  // namespace korvane

int KORVANE_CALL cmmbStart(void* window, const KorvaneText* address) {
    return korvane::contained([&] { return korvane::start(window, address); }, KORVANE_NO_PANEL);
}

void* KORVANE_CALL cmmbGetWnd() {
    static korvane::PanelWindowObject none;
    return korvane::contained([] { return &korvane::plugin().object; }, &none);
}

// What a failure leaves is ended by the next start or by the process.
int KORVANE_CALL cmmbStop() {
    return korvane::contained(&korvane::stop, 0);
}
