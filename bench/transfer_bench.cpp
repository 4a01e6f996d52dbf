// A whole save and a whole load over loopback UDP, against what the protocol itself costs: its
// pauses between the datagrams of a train and one round trip for each command.

#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "device/transfer_sequences.h"
#include "device/udp_link.h"
#include "ratio_report.h"
#include "simulator/simulated_device.h"
#include "simulator/udp_server.h"

namespace {

using namespace korvane;

constexpr int commandsOfATransfer = 14;
constexpr int longMessages = 2;  // the two multiplex blocks

// Datagrams that a train of `payload` bytes and its frame header has.
constexpr int trainLength(std::size_t payload) {
    return static_cast<int>((payload + CommandFrame::size + wire::chunkSize - 1) / wire::chunkSize);
}
constexpr int chunks = trainLength(sizeof(MultiplexBlock));

class NullSink : public ProgressSink {
    void progress(int) override {}
    void failed(int) override {}
};

std::uint64_t nowMs() {
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                          std::chrono::steady_clock::now().time_since_epoch())
                                          .count());
}

// A simulated device on the first loopback address that is free, and a client that knows it.
class Station {
  public:
    Station() {
        std::string address;
        for (int last = 40; last < 250 && address.empty(); ++last) {
            const std::string candidate = "127.0.0." + std::to_string(last);
            if (server_.open(candidate, wire::devicePort)) address = candidate;
        }
        if (address.empty() || client.Start(address) != 0) {
            std::fputs("no loopback address is free for the simulated device\n", stderr);
            std::exit(1);
        }
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
        for (int i = 0; i < pauses; ++i) link.sleep(wire::chunkPauseMs);
        std::uint16_t heartbeat = 0;
        for (int i = 0; i < commandsOfATransfer; ++i) require(client.GetHeartbeat(heartbeat));
    }
    static void require(int result) {
        if (result != 0) std::exit(1);
    }

    UdpDeviceLink link{[](const std::string&) { return true; }};
    DeviceClient client{link};
    ConfigModel model;
    NullSink sink;

  private:
    SimulatedDevice device_;
    UdpServer server_{device_};
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

}  // namespace

int main(int argc, char** argv) {
    const auto station = std::make_unique<Station>();
    Progress progress(station->sink);
    const auto measure = [](const char* name, auto work) {
        benchmark::RegisterBenchmark(name,
                                     [work](benchmark::State& state) {
                                         for (auto _ : state) work();
                                     })
            ->Iterations(1)
            ->Repetitions(3)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    };
    Station* const at = station.get();
    // The sender of a train pauses after every datagram, its receiver is done with the last one.
    measure("load_floor", [at] { at->protocolFloor(longMessages * (chunks - 1)); });
    measure("load",
            [at, &progress] { Station::require(runLoad(at->client, at->model, progress)); });
    measure("save_floor", [at] { at->protocolFloor(longMessages * chunks); });
    measure("save",
            [at, &progress] { Station::require(runSave(at->client, at->model, progress)); });
    return bench::runAndReport(argc, argv,
                               {{"load", "load_floor", 1.05}, {"save", "save_floor", 1.05}});
}
