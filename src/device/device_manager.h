#pragma once

#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "device/device_client.h"
#include "device/progress_sink.h"
#include "device/status_cache.h"
#include "device/status_poller.h"
#include "device/status_source.h"
#include "device/transfer.h"
#include "keeping/kept_work.h"
#include "model/config_model.h"

namespace korvane {

// The device takes that long to make a setting take effect: until then the next one has to wait,
// and a missing status is no news.
inline constexpr std::uint32_t settlingSeconds = 10;
inline constexpr std::uint32_t settlingMs = settlingSeconds * 1000;

// Owns everything that one managed device needs: model, what is kept of the operator's work,
// client, status cache, poller and the worker of a transfer. One instance lives from the first call
// of the library until it is freed. Start, Stop and the start operations belong to the host's
// user-interface thread.
class DeviceManager : public StatusSource {
  public:
    // `link` reaches the device, `threads` runs poller and worker; both outlive this object.
    // `cacheDirectory` takes the file in which the last configuration of each device is kept.
    DeviceManager(DeviceLink& link, std::filesystem::path cacheDirectory,
                  Threads& threads = plainThreads());
    ~DeviceManager() override;

    // 0, or -1 when no socket could be opened: then no configuration is loaded and nothing polls.
    // A second Start ends what the first one began.
    int Start(const std::string& address);
    // Always 0. Afterwards no thread of the panel runs any more; a transfer under way has failed.
    int Stop();

    ConfigModel& model() { return model_; }
    DeviceClient& client() { return client_; }
    // What is kept of the operator's work. Not while a transfer runs.
    KeptWork& work() { return work_; }
    // Lets it look at the model; while a transfer runs, what it saw last.
    KeptWork::Notice tendWork();
    DeviceLink& link() { return link_; }
    const std::string& deviceAddress() const { return address_; }

    // Each starts one transfer on a worker thread, which waits 1,000 ms for the sink's window to
    // come up, runs and reports its outcome to the sink exactly once. 0, or -1 when it could not be
    // started or another one is still running; then the sink hears nothing.
    int startDownload(std::shared_ptr<ProgressSink> sink);  // to the device: 设置
    int startUpload(std::shared_ptr<ProgressSink> sink);    // from the device: 刷新
    int startUpgrade(std::shared_ptr<ProgressSink> sink, std::filesystem::path firmware);

    // 0 and the latest summary, or -1 while none has arrived.
    int getStatusSummary(StatusSummary& out) const override;
    // 0 and the eight alarm bits appended, bit 0 first; without a valid status 1 (no news: a save
    // is under way or ended less than settlingMs ago) or -1 (link lost).
    int getAlarmBits(std::vector<bool>& out) const override;
    // 0 and the latest status, or -1 while the last poll failed.
    int getDeviceStatusImage(DeviceStatusImage& out) const override;
    // Milliseconds since the latest status or, while none has come, the start; 0 when not started.
    std::uint32_t statusAgeMs() const override;

  private:
    enum class Transfer { Save, Load, Upgrade };

    int start(Transfer kind, std::shared_ptr<ProgressSink> sink, TransferWorker::Sequence sequence);
    bool running(Transfer kind) const { return worker_.running() && transfer_ == kind; }
    bool loadCache();
    int save(Progress& progress);
    int load(Progress& progress);
    void endThreads();
    bool pollerEndsInTime() const;

    DeviceLink& link_;
    ConfigModel model_;
    KeptWork work_{model_};
    KeptWork::Notice notice_ = KeptWork::Notice::None;
    DeviceClient client_;
    StatusCache status_;
    StatusPoller poller_;
    TransferWorker worker_;
    std::string address_;
    bool started_ = false;
    std::atomic<Transfer> transfer_{Transfer::Load};  // the last one started
    std::atomic<std::uint32_t> lastSaveEnd_{0};       // tick count; 0 until a save has ended
};

}  // namespace korvane
