#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Varnel::Bench {

/// A benchmark, and the one of the same run that it is told as a multiple of. By name.
using Ratio = std::pair<std::string, std::string>;

/// Prints what the library prints, and under it the ratios: times differ between machines and between runs, ratios of
/// one run hardly. CPU time alone counts, since a benchmark may have to wait for a disk.
class RatioReporter final : public benchmark::ConsoleReporter {
public:
    explicit RatioReporter(std::vector<Ratio> ratios)
        : m_ratios(std::move(ratios)) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            m_seconds[run.run_name.function_name + (run.run_name.args.empty() ? "" : "/" + run.run_name.args)] =
                run.cpu_accumulated_time / static_cast<double>(run.iterations);
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void Finalize() override {
        for (const auto& [one, yardstick] : m_ratios) {
            if (m_seconds.count(one) > 0 && m_seconds.count(yardstick) > 0) {
                std::printf("%s: %.2f x %s\n", one.c_str(), m_seconds[one] / m_seconds[yardstick], yardstick.c_str());
            }
        }
    }

private:
    std::vector<Ratio> m_ratios;
    std::map<std::string, double> m_seconds; ///< of one iteration
};

/// Runs every benchmark and prints the ratios. As on a desktop there is no TZ in the environment: the C library then
/// asks the file system for the zone at each conversion of local time.
inline int runAndTellRatios(int argc, char** argv, std::vector<Ratio> ratios) {
    unsetenv("TZ");
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(std::move(ratios));
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}

} // namespace Varnel::Bench
