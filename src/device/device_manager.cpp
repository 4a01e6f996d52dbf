#include "device/device_manager.h"

#include <chrono>

#include "device/transfer_sequences.h"

namespace korvane {
namespace {

constexpr std::uint32_t patienceMs = 1000, stepMs = 10;

// True while it lives, however the work that it marks ends.
class Marked {
  public:
    explicit Marked(std::atomic<bool>& flag) : flag_(flag) { flag_ = true; }
    ~Marked() { flag_ = false; }
    Marked(const Marked&) = delete;
    Marked& operator=(const Marked&) = delete;

  private:
    std::atomic<bool>& flag_;
};

}  // namespace

DeviceManager::DeviceManager(DeviceLink& link, std::filesystem::path cacheDirectory,
                             StatusPoller::Force force)
    : link_(link), force_(force), client_(link), poller_(client_, link, status_), worker_(link) {
    model_.setCacheDirectory(std::move(cacheDirectory));
}

DeviceManager::~DeviceManager() {
    Stop();
}

int DeviceManager::Start(const std::string& address) {
    endThreads();
    address_ = address;
    model_.setDeviceKey(address);
    model_.resetModel();  // never show, or send, one device's configuration as another's
    status_.clear();
    if (client_.Start(address) != 0) return -1;
    model_.loadCacheFile();
    poller_.start();
    return 0;
}

int DeviceManager::Stop() {
    endThreads();
    model_.resetModel();
    status_.clear();
    return 0;
}

// Asks first: the poller goes within 100 ms, and an upgrade still tells the device that no more
// pieces come. Whoever has not gone within a second waits for the device, and ends with its link.
// A poller that is still there then hangs in the system, and is ended by force.
void DeviceManager::endThreads() {
    poller_.requestStop();
    const auto othersGone = [this] { return poller_.ended() && !upgradeInProgress_; };
    for (std::uint32_t waited = 0; waited < patienceMs && !othersGone(); waited += stepMs)
        link_.sleep(stepMs);
    link_.cancel();
    if (force_ && !pollerEndsInTime()) {
        poller_.endByForce(force_);
        client_.forgetOwner();
    }
    client_.Stop();
    poller_.join();
    worker_.join();
}

// On the system's own clock: a cancelled link sleeps no more.
bool DeviceManager::pollerEndsInTime() const {
    for (std::uint32_t waited = 0; waited < patienceMs && !poller_.ended(); waited += stepMs)
        std::this_thread::sleep_for(std::chrono::milliseconds(stepMs));
    return poller_.ended();
}

int DeviceManager::startDownload(std::shared_ptr<ProgressSink> sink) {
    return worker_.start(std::move(sink), [this](Progress& progress) {
        const Marked saving(saveInProgress_);
        const int result = runSave(client_, model_, progress);
        lastSaveEnd_ = link_.ticks();
        return result;
    });
}

int DeviceManager::startUpload(std::shared_ptr<ProgressSink> sink) {
    return worker_.start(std::move(sink),
                         [this](Progress& progress) { return runLoad(client_, model_, progress); });
}

int DeviceManager::startUpgrade(std::shared_ptr<ProgressSink> sink,
                                std::filesystem::path firmware) {
    return worker_.start(std::move(sink), [this, file = std::move(firmware)](Progress& progress) {
        const Marked upgrading(upgradeInProgress_);
        const auto stopping = [this] { return poller_.stopRequested(); };
        return runUpgrade(client_, link_, file, stopping, progress);
    });
}

int DeviceManager::getStatusSummary(StatusSummary& out) const {
    return status_.summary(out) ? 0 : -1;
}

int DeviceManager::getAlarmBits(std::vector<bool>& out) const {
    std::uint8_t alarms = 0;
    if (status_.alarms(alarms)) {
        for (int bit = 0; bit < 8; ++bit) out.push_back((alarms >> bit & 1) != 0);
        return 0;
    }
    if (saveInProgress_) return 1;  // it keeps the link busy
    return link_.ticks() - lastSaveEnd_ >= settlingMs ? -1 : 1;
}

int DeviceManager::getDeviceStatusImage(DeviceStatusImage& out) const {
    return status_.image(out) ? 0 : -1;
}

}  // namespace korvane
