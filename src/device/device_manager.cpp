#include "device/device_manager.h"

#include <array>
#include <chrono>
#include <thread>
#include <utility>

#include "device/transfer_sequences.h"
#include "log/log.h"
#include "model/channel_text.h"
#include "model/config_file.h"

namespace korvane {
namespace {

constexpr std::uint32_t patienceMs = 1000, stepMs = 10;

// In the order of the kinds.
constexpr std::array transferNames = {"保存到设备", "从设备获取", "固件升级"};

}  // namespace

DeviceManager::DeviceManager(DeviceLink& link, std::filesystem::path cacheDirectory,
                             Threads& threads)
    : link_(link),
      client_(link),
      poller_(client_, link, status_, threads),
      worker_(client_, link, threads) {
    model_.setCacheDirectory(std::move(cacheDirectory));
}

DeviceManager::~DeviceManager() {
    Stop();
}

int DeviceManager::Start(const std::string& address) {
    endThreads();
    work_.end(link_.ticks());
    address_ = address;
    model_.setDeviceKey(address);
    model_.resetModel();  // never show, or send, one device's configuration as another's
    status_.clear(link_.ticks());
    started_ = client_.Start(address) == 0;
    if (!started_) {
        logLine(logError, "启动失败, 设备%s: 无法打开网络套接字", address.c_str());
        return -1;
    }
    logLine(logInformation, "启动, 设备%s", address.c_str());
    work_.begin(loadCache());
    poller_.start();
    return 0;
}

bool DeviceManager::loadCache() {
    ChannelsLeftOut leftOut;
    const int result = model_.loadCacheFile(leftOut);
    for (const InputChannelRecord& channel : leftOut)
        logLine(logWarning, "配置缓存文件中的输入通道超过60个, 舍去%s",
                channelName(channel).c_str());
    if (result == config_file::ok)
        logLine(logInformation, "已读取配置缓存文件");
    else if (result == config_file::cannotOpen)
        logLine(logInformation, "没有可读的配置缓存文件");
    else
        logLine(logWarning, "配置缓存文件未被采用, 结果%d", result);
    return result == config_file::ok;
}

int DeviceManager::Stop() {
    endThreads();
    work_.end(link_.ticks());
    model_.resetModel();
    status_.clear(link_.ticks());
    if (std::exchange(started_, false)) logLine(logInformation, "停止, 设备%s", address_.c_str());
    return 0;
}

// Asks first: the poller goes within 100 ms, and an upgrade still tells the device that no more
// pieces come. Whoever has not gone within a second waits for the device, and ends with its link.
// A poller that even then has the link hangs in the system, and is ended by force.
void DeviceManager::endThreads() {
    poller_.requestStop();
    const auto othersGone = [this] { return poller_.ended() && !running(Transfer::Upgrade); };
    for (std::uint32_t waited = 0; waited < patienceMs && !othersGone(); waited += stepMs)
        link_.sleep(stepMs);
    link_.cancel();
    if (!pollerEndsInTime() && poller_.endByForce())
        logLine(logError, "状态轮询线程没有响应, 已被强制结束");
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

int DeviceManager::start(Transfer kind, std::shared_ptr<ProgressSink> sink,
                         TransferWorker::Sequence sequence) {
    if (worker_.running()) return -1;
    transfer_ = kind;
    return worker_.start(transferNames[static_cast<std::size_t>(kind)], std::move(sink),
                         std::move(sequence));
}

int DeviceManager::startDownload(std::shared_ptr<ProgressSink> sink) {
    return start(Transfer::Save, std::move(sink),
                 [this](Progress& progress) { return save(progress); });
}

int DeviceManager::save(Progress& progress) {
    work_.saving(link_.ticks());
    const int result = runSave(client_, model_, progress);
    work_.saved(result);
    lastSaveEnd_ = link_.ticks();
    return result;
}

int DeviceManager::startUpload(std::shared_ptr<ProgressSink> sink) {
    return start(Transfer::Load, std::move(sink),
                 [this](Progress& progress) { return load(progress); });
}

int DeviceManager::load(Progress& progress) {
    const int result = runLoad(client_, model_, progress);
    if (result == 0) work_.loaded();
    return result;
}

int DeviceManager::startUpgrade(std::shared_ptr<ProgressSink> sink,
                                std::filesystem::path firmware) {
    return start(Transfer::Upgrade, std::move(sink),
                 [this, file = std::move(firmware)](Progress& progress) {
                     const auto stopping = [this] { return poller_.stopRequested(); };
                     return runUpgrade(client_, link_, file, stopping, progress);
                 });
}

int DeviceManager::getStatusSummary(StatusSummary& out) const {
    return status_.summary(out) ? 0 : -1;
}

int DeviceManager::getAlarmBits(std::vector<bool>& out) const {
    if (status_.alarmBits(out)) return 0;
    if (running(Transfer::Save)) return 1;  // it keeps the link busy
    return link_.ticks() - lastSaveEnd_ >= settlingMs ? -1 : 1;
}

int DeviceManager::getDeviceStatusImage(DeviceStatusImage& out) const {
    return status_.image(out) ? 0 : -1;
}

std::uint32_t DeviceManager::statusAgeMs() const {
    return started_ ? link_.ticks() - status_.imageTime() : 0;
}

KeptWork::Notice DeviceManager::tendWork() {
    if (!worker_.running()) notice_ = work_.tend(link_.ticks());
    return notice_;
}

}  // namespace korvane
