#pragma once

#include <atomic>
#include <cstdint>

#include "device/status_records.h"
#include "device/udp.h"
#include "runtime/TroubleShootLib/troubleshoot.h"
#include "runtime/system_mutex.h"
#include "runtime/thread_ref.h"

namespace korvane {

// Listens for status datagrams that the device sends unasked, and keeps the last one. Start and
// Stop belong to one thread; read() may be called from any.
class MonitorThread {
  public:
    static constexpr std::uint16_t statusPort = 3001;

    // `log` outlives this object. Nothing runs before Start.
    explicit MonitorThread(std::uint16_t port = statusPort, TroubleShootLog& log = processLog())
        : port_(port), log_(log) {}
    // As Stop, but gives the thread 5,000 ms.
    ~MonitorThread();
    MonitorThread(const MonitorThread&) = delete;
    MonitorThread& operator=(const MonitorThread&) = delete;

    // Listens to the device at this address (network byte order) alone. 1, or 0 when the port is
    // taken or the thread could not be started. A second Start ends what the first one began.
    int Start(std::uint32_t deviceAddress);

    // Ends the thread, by force if it has not gone within 50 ms. Does nothing when none was
    // started.
    void Stop();

    // 1 and the last status in host order, or 0 and zeros while none has come since Start.
    int read(DeviceStatusImage& out);

    // Datagrams that were looked at and not taken since the construction.
    std::uint32_t ignoredDatagrams() const { return ignored_; }

  private:
    class Listener;

    bool startListener(std::uint32_t deviceAddress);
    void closeSocket();
    void end(std::uint32_t timeoutMs);
    void store(const DeviceStatusImage& image);
    void forget();

    const std::uint16_t port_;
    TroubleShootLog& log_;
    UdpSocket socket_ = 0;
    nox_pub::mswin::ThreadRef listener_;
    std::atomic<std::uint32_t> ignored_{0};
    nox_pub::mswin::SystemMutex lock_;  // guards what follows; the listener may be ended by force
    std::atomic<bool> hasData_{false};
    DeviceStatusImage image_{};
};

}  // namespace korvane
