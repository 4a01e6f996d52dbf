#include "ratio_report.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>

namespace korvane::bench {
namespace {

// Keeps the fastest time of each benchmark beside the usual table.
class FastestRuns : public benchmark::ConsoleReporter {
  public:
    FastestRuns() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            const double seconds = run.real_accumulated_time /
                                   static_cast<double>(std::max<std::int64_t>(run.iterations, 1));
            const auto [entry, isNew] = seconds_.try_emplace(run.run_name.function_name, seconds);
            if (!isNew) entry->second = std::min(entry->second, seconds);
        }
    }

    double seconds(const std::string& name) const {
        const auto found = seconds_.find(name);
        return found == seconds_.end() ? 0 : found->second;
    }

  private:
    std::map<std::string, double> seconds_;
};

}  // namespace

int runAndReport(int argc, char** argv, const std::vector<Ratio>& ratios) {
    benchmark::Initialize(&argc, argv);
    FastestRuns reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    bool allMet = true;
    for (const Ratio& ratio : ratios) {
        const double work = reporter.seconds(ratio.work), floor = reporter.seconds(ratio.floor);
        const double value = floor > 0 ? work / floor : 0;
        const bool met = value > 0 && value <= ratio.target;
        allMet = allMet && met;
        std::printf("ratio %s / %s = %.2f (target at most %.2f) %s\n", ratio.work.c_str(),
                    ratio.floor.c_str(), value, ratio.target, met ? "ok" : "MISSED");
    }
    return allMet ? 0 : 1;
}

}  // namespace korvane::bench
