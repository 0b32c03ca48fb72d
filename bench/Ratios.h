#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Corvid::Bench {

/// Prints what the benchmarks took and keeps it, so that ratios can be computed afterwards.
class Ratios : public benchmark::ConsoleReporter {
public:
    Ratios() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override;

    /// What a benchmark took, or one of its counters.
    struct Figure {
        std::string benchmark;
        double per = 1;           ///< the figure is divided by it
        double plus = 0;          ///< and this is added
        std::string counter = {}; ///< empty for the time
        std::string start = {};   ///< a benchmark whose figure is subtracted first, or empty
        std::string also = {};    ///< a benchmark whose figure is added first, or empty
    };

    /// Prints the ratio of two medians and the limit that it is to keep; says so where the
    /// benchmarks were not run.
    void print(const std::string& what, const Figure& figure, const Figure& yardstick,
               double limit);

    /// Prints the ratio of two medians, which has no limit.
    void tell(const std::string& what, const Figure& figure, const Figure& yardstick);

    /// Prints the ratio of two figures and the limit that it is to keep.
    /// @param figure  negative, or `yardstick` 0 or less, where it was not measured.
    void print(const std::string& what, double figure, double yardstick, double limit);

    /// A median, or what is made of several; negative where a benchmark was not run.
    double valueOf(const Figure& figure) const;

    /// Whether a ratio that was printed is over its limit.
    bool isOneMissed() const noexcept { return missed_; }

private:
    /// The median of a benchmark's repetitions, or of a counter of it; negative where there is
    /// none.
    double median(const std::string& benchmark, const std::string& counter) const;
    /// Begins a line. @return false where it says that there is no ratio.
    static bool printRatio(const std::string& what, double figure, double yardstick);

    std::map<std::string, std::vector<double>> values_; ///< by benchmark, or benchmark:counter
    bool missed_ = false;
};

/// Runs the benchmarks that are registered, some times each and in random order, then calls the
/// function to print the ratios. Arguments of the command line come after the defaults.
/// @return the exit status: 1 where a limit is missed. On a busy machine that may be chance.
int runBenchmarks(int argc, char** argv, const std::function<void(Ratios&)>& printRatios);

} // namespace Corvid::Bench
