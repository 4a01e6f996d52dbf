// Encoding and decoding a completely full configuration image, byte order included, against one
// copy of its 629,896 bytes.

#include <benchmark/benchmark.h>
#include <cstring>
#include <memory>

#include "model/config_image.h"
#include "ratio_report.h"
#include "support/configurations.h"

namespace {

using namespace korvane;

std::unique_ptr<ConfigTables> fullTables() {
    auto tables = std::make_unique<ConfigTables>();
    decodeImage(*test::randomImage(1, true), *tables);
    return tables;
}

void copyImage(benchmark::State& state) {
    const auto from = test::randomImage(1, true);
    auto to = std::make_unique<ConfigImage>();
    for (auto _ : state) {
        std::memcpy(static_cast<void*>(to.get()), from.get(), sizeof(ConfigImage));
        benchmark::DoNotOptimize(*to);
        benchmark::ClobberMemory();
    }
}

void encode(benchmark::State& state) {
    const auto tables = fullTables();
    auto image = std::make_unique<ConfigImage>();
    for (auto _ : state) {
        encodeImage(*tables, *image);
        toNetworkOrder(*image);
        benchmark::DoNotOptimize(*image);
        benchmark::ClobberMemory();
    }
}

void decode(benchmark::State& state) {
    auto image = test::randomImage(1, true);
    toNetworkOrder(*image);
    auto tables = std::make_unique<ConfigTables>();
    for (auto _ : state) {
        fromNetworkOrder(*image);
        decodeImage(*image, *tables);
        benchmark::DoNotOptimize(*tables);
        benchmark::ClobberMemory();
        state.PauseTiming();
        toNetworkOrder(*image);
        state.ResumeTiming();
    }
}

}  // namespace

int main(int argc, char** argv) {
    for (const auto& [name, function] :
         {std::pair{"copy", &copyImage}, std::pair{"encode", &encode},
          std::pair{"decode", &decode}})
        benchmark::RegisterBenchmark(name, function)->Repetitions(7)->MinTime(0.1);
    return bench::runAndReport(argc, argv, {{"encode", "copy", 4}, {"decode", "copy", 4}});
}
