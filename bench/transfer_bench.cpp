// A whole save and a whole load over loopback UDP, against what the protocol itself costs: its
// pauses between the datagrams of a train and one round trip for each command.

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "bench/ratio.h"
#include "device/transfer_sequences.h"
#include "device/udp_link.h"
#include "simulator/simulated_device.h"
#include "simulator/udp_server.h"

namespace {

using namespace korvane;

constexpr int commandsOfATransfer = 14;
constexpr int longMessages = 2;  // the two multiplex blocks

// Datagrams of such a message with its frame header.
constexpr int chunks = (sizeof(MultiplexBlock) + CommandFrame::size) / wire::chunkSize + 1;

class NullSink : public ProgressSink {
    void progress(int) override {}
    void failed(int) override {}
};

std::uint64_t nowMs() {
    return static_cast<std::uint64_t>(bench::seconds() * 1000);
}

// A simulated device on the first loopback address that is free, and a client that knows it.
class Station {
  public:
    Station() {
        int last = 40;
        const auto address = [&last] { return "127.0.0." + std::to_string(last); };
        while (last < 250 && !server_.open(address(), wire::devicePort)) ++last;
        require(client_.Start(address()));
        thread_ = std::thread([this] {
            while (!stop_) server_.serve(20, &nowMs);
        });
    }
    ~Station() {
        stop_ = true;
        thread_.join();
    }

    // What no panel could do without: the pauses and a round trip for each command.
    void protocolFloor(int pauses) {
        for (int i = 0; i < pauses; ++i) link_.sleep(wire::chunkPauseMs);
        std::uint16_t heartbeat = 0;
        for (int i = 0; i < commandsOfATransfer; ++i) require(client_.GetHeartbeat(heartbeat));
    }
    void load() { require(runLoad(client_, model_, progress_)); }
    void save() { require(runSave(client_, model_, progress_)); }

  private:
    static void require(int result) {
        if (result == 0) return;
        std::fprintf(stderr, "failed with %d: is an address free for the simulated device?\n",
                     result);
        std::exit(1);
    }

    UdpDeviceLink link_{[](const std::string&) { return true; }};
    DeviceClient client_{link_};
    ConfigModel model_;
    NullSink sink_;
    Progress progress_{sink_};
    SimulatedDevice device_;
    UdpServer server_{device_};
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

}  // namespace

int main() {
    const auto station = std::make_unique<Station>();
    // The sender of a train pauses after every datagram, its receiver is done with the last one.
    const bool loadMet = bench::meets(
        "load / protocol", 1.05, 3, [&] { station->load(); },
        [&] { station->protocolFloor(longMessages * (chunks - 1)); });
    const bool saveMet = bench::meets(
        "save / protocol", 1.05, 3, [&] { station->save(); },
        [&] { station->protocolFloor(longMessages * chunks); });
    return loadMet && saveMet ? 0 : 1;
}
