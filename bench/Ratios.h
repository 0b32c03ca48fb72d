#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Corvid::Bench {

/// Prints what the benchmarks took and keeps it, so that ratios can be told afterwards.
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
    };

    /// Prints the ratio of two medians and the limit that it is to keep; says so where the
    /// benchmarks were not run.
    void print(const std::string& what, const Figure& figure, const Figure& yardstick,
               double limit) const;

private:
    /// The median of the repetitions; negative where there is none.
    double median(const Figure& figure) const;

    std::map<std::string, std::vector<double>> values_; ///< by benchmark, or benchmark:counter
};

/// Prints the ratio of two figures and the limit that it is to keep.
/// @param figure  negative, or `yardstick` 0 or less, where it was not measured.
void printRatio(const std::string& what, double figure, double yardstick, double limit);

/// Runs the benchmarks that are registered, some times each and in random order, then calls the
/// function to print the ratios. Arguments of the command line come behind the defaults.
/// @return the exit status; 0 also where a limit is missed, for a busy machine proves nothing.
int runBenchmarks(int argc, char** argv, const std::function<void(const Ratios&)>& printRatios);

} // namespace Corvid::Bench
