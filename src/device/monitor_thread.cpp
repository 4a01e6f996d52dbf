#include "device/monitor_thread.h"

#include <cstring>
#include <exception>
#include <mutex>
#include <vector>

#include "device/command_frame.h"
#include "runtime/thread.h"

namespace korvane {
namespace {

using nox_pub::mswin::ThreadRef;

constexpr std::uint32_t stopTimeoutMs = 50;
constexpr int normalPriority = 0;

// In front of each status: a magic number and the length of what follows, both big-endian.
constexpr std::size_t headerSize = 8;
constexpr std::uint32_t magic = 0x1234;
constexpr std::size_t datagramSize = headerSize + sizeof(DeviceStatusImage);

}  // namespace

class MonitorThread::Listener : public nox_pub::mswin::Thread {
  public:
    Listener(MonitorThread& owner, std::uint32_t deviceAddress)
        : Thread("monitor main thread", normalPriority),
          owner_(owner),
          socket_(owner.socket_),
          device_(deviceAddress) {}

  protected:
    int run() override {
        while (!stopRequested()) listenOnce();
        return 0;
    }

  private:
    void listenOnce();
    void discardQueued();
    bool waitForDatagram();
    bool accept(std::size_t size);
    void ignore(std::uint32_t pauseMs);

    MonitorThread& owner_;
    const UdpSocket socket_;
    const std::uint32_t device_;
    std::vector<std::uint8_t> buffer_ = std::vector<std::uint8_t>(65536);  // any datagram fits
    DeviceStatusImage image_{};
};

void MonitorThread::Listener::listenOnce() {
    // The pauses keep a fault on the network from taking a processor. Each ends at once when the
    // thread is asked to stop.
    constexpr std::uint32_t silencePauseMs = 100, foreignPauseMs = 100, malformedPauseMs = 500;
    discardQueued();
    if (!waitForDatagram()) {
        stopRequested(silencePauseMs);
        return;
    }
    std::uint32_t size = 0, from = device_;
    std::uint16_t port = 0;
    if (UdpRecvFrom(socket_, buffer_.data(), buffer_.size(), size, 0, from, port) != 0) size = 0;
    if (from != device_)
        ignore(foreignPauseMs);
    else if (!accept(size))
        ignore(malformedPauseMs);
}

// What waited in the queue is older than what comes next.
void MonitorThread::Listener::discardQueued() {
    std::uint32_t size = 0;
    while (!stopRequested() && UdpWait(socket_, 0, UdpDirection::Readable) == 0)
        UdpRecvFrom(socket_, buffer_.data(), buffer_.size(), size, 0);
}

// 1,500 ms in slices well below the time that Stop gives, so that it needs no force.
bool MonitorThread::Listener::waitForDatagram() {
    constexpr std::uint32_t patienceMs = 1500, sliceMs = 15;
    for (std::uint32_t waited = 0; waited < patienceMs && !stopRequested(); waited += sliceMs) {
        const int ready = UdpWait(socket_, sliceMs, UdpDirection::Readable);
        if (ready != -2) return ready == 0;
    }
    return false;
}

// A length that is true of a datagram too short for a status makes it no status either.
bool MonitorThread::Listener::accept(std::size_t size) {
    const std::uint8_t* bytes = buffer_.data();
    if (size != datagramSize || getBigEndian32(bytes) != magic ||
        getBigEndian32(bytes + 4) != size - headerSize)
        return false;
    std::memcpy(&image_, bytes + headerSize, sizeof image_);
    fromNetworkOrder(image_);
    owner_.store(image_);
    return true;
}

void MonitorThread::Listener::ignore(std::uint32_t pauseMs) {
    ++owner_.ignored_;
    stopRequested(pauseMs);
}

MonitorThread::~MonitorThread() {
    end(ThreadRef::defaultTimeoutMs);
}

int MonitorThread::Start(std::uint32_t deviceAddress) {
    Stop();
    forget();
    if (UdpOpen(nullptr, port_, 0, socket_) != 1) return 0;
    if (startListener(deviceAddress)) return 1;
    closeSocket();
    return 0;
}

void MonitorThread::closeSocket() {
    UdpClose(socket_);
    socket_ = 0;
}

bool MonitorThread::startListener(std::uint32_t deviceAddress) {
    try {
        ThreadRef listener(new Listener(*this, deviceAddress));
        if (listener->start()) {
            listener_ = std::move(listener);
            log_.print(logInformation, "监测主线程启动");
            return true;
        }
        log_.print(logError, "监测主线程失败");
    } catch (const std::exception& exception) {
        log_.print(logError, "监测主线程异常");
        log_.print(logInformation, exception.what());
    }
    return false;
}

void MonitorThread::Stop() {
    end(stopTimeoutMs);
}

void MonitorThread::end(std::uint32_t timeoutMs) {
    if (!listener_) return;
    try {
        listener_.release(timeoutMs);
        closeSocket();
        log_.print(logInformation, "监测主线程停止");
    } catch (const std::exception& exception) {
        closeSocket();
        log_.print(logError, "监测主线程停止异常");
        log_.print(logInformation, exception.what());
    }
}

int MonitorThread::read(DeviceStatusImage& out) {
    const std::lock_guard guard(lock_);
    if (!hasData_) {
        out = {};
        return 0;
    }
    out = image_;
    return 1;
}

// The flag is down while the image is not whole: a thread ended by force may end here.
void MonitorThread::store(const DeviceStatusImage& image) {
    const std::lock_guard guard(lock_);
    hasData_ = false;
    image_ = image;
    hasData_ = true;
}

void MonitorThread::forget() {
    const std::lock_guard guard(lock_);
    hasData_ = false;
}

}  // namespace korvane
