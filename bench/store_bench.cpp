// Adding, updating and removing a frame in the largest model there is, 40 frames of 8 services in
// both tables, against copying the tables once.

#include <benchmark/benchmark.h>
#include <memory>

#include "model/config_model.h"
#include "ratio_report.h"
#include "support/configurations.h"

namespace {

using namespace korvane;

std::unique_ptr<ConfigModel> fullModel() {
    auto model = std::make_unique<ConfigModel>();
    test::loadImage(*model, *test::randomImage(1, true));
    return model;
}

void copyTables(benchmark::State& state) {
    const auto model = fullModel();
    auto copy = std::make_unique<ConfigTables>();
    for (auto _ : state) {
        *copy = model->tables();
        benchmark::DoNotOptimize(*copy);
        benchmark::ClobberMemory();
    }
}

// The continuous table renumbers and rebuilds after each change; at its front every frame moves.
void editFrame(benchmark::State& state) {
    const auto model = fullModel();
    model->removeFrame(TableKind::Continuous, 39);
    const MultiplexFrame empty;
    for (auto _ : state) {
        const int results = model->addFrame(TableKind::Continuous, empty, 0) |
                            model->updateFrame(TableKind::Continuous, 0, empty) |
                            model->removeFrame(TableKind::Continuous, 0);
        if (results != 0) state.SkipWithError("an edit was refused");
        benchmark::ClobberMemory();
    }
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::RegisterBenchmark("copy_tables", &copyTables)->Repetitions(7)->MinTime(0.1);
    benchmark::RegisterBenchmark("edit_frame", &editFrame)->Repetitions(7)->MinTime(0.1);
    return bench::runAndReport(argc, argv, {{"edit_frame", "copy_tables", 3}});
}
