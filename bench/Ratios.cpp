#include "bench/Ratios.h"

#include <algorithm>
#include <iomanip>
#include <iostream>

namespace Corvid::Bench {

void Ratios::ReportRuns(const std::vector<Run>& runs) {
    std::vector<Run> shown;
    for (const Run& run : runs) {
        const bool isRepetition = run.run_type == Run::RT_Iteration;
        if (run.error_occurred || run.aggregate_name == "median" ||
            (isRepetition && run.repetitions == 1)) {
            shown.push_back(run);
        }
        if (!isRepetition || run.error_occurred) {
            continue;
        }
        const std::string& args = run.run_name.args;
        const std::string name = run.run_name.function_name + (args.empty() ? "" : "/" + args);
        values_[name].push_back(run.GetAdjustedRealTime());
        for (const auto& [counter, value] : run.counters) {
            values_[name + ":" + counter].push_back(value);
        }
    }
    ConsoleReporter::ReportRuns(shown);
}

double Ratios::median(const std::string& benchmark, const std::string& counter) const {
    const auto found = values_.find(counter.empty() ? benchmark : benchmark + ":" + counter);
    if (found == values_.end()) {
        return -1;
    }
    std::vector<double> sorted = found->second;
    std::sort(sorted.begin(), sorted.end());
    return sorted[sorted.size() / 2];
}

double Ratios::valueOf(const Figure& figure) const {
    const double whole = median(figure.benchmark, figure.counter);
    const double start = figure.start.empty() ? 0 : median(figure.start, figure.counter);
    const double also = figure.also.empty() ? 0 : median(figure.also, figure.counter);
    return whole < 0 || start < 0 || also < 0 ? -1
                                              : (whole + also - start) / figure.per + figure.plus;
}

void Ratios::print(const std::string& what, const Figure& figure, const Figure& yardstick,
                   double limit) {
    print(what, valueOf(figure), valueOf(yardstick), limit);
}

void Ratios::tell(const std::string& what, const Figure& figure, const Figure& yardstick) {
    printRatio(what, valueOf(figure), valueOf(yardstick));
    std::cout << std::endl;
}

void Ratios::print(const std::string& what, double figure, double yardstick, double limit) {
    if (!printRatio(what, figure, yardstick)) {
        std::cout << std::endl;
        return;
    }
    const bool missed = figure / yardstick > limit;
    std::cout << "  limit " << limit << (missed ? "  MISSED" : "  kept") << std::endl;
    missed_ = missed_ || missed;
}

bool Ratios::printRatio(const std::string& what, double figure, double yardstick) {
    std::cout << "ratio: " << std::left << std::setw(62) << what << std::right << std::fixed
              << std::setprecision(2);
    const bool isMeasured = figure >= 0 && yardstick > 0;
    if (isMeasured) {
        std::cout << std::setw(6) << figure / yardstick;
    } else {
        std::cout << "  not measured";
    }
    return isMeasured;
}

int runBenchmarks(int argc, char** argv, const std::function<void(Ratios&)>& printRatios) {
    std::string repetitions = "--benchmark_repetitions=9";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> arguments = {argv[0], repetitions.data(), interleaving.data()};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 2;
    }
    Ratios ratios;
    benchmark::RunSpecifiedBenchmarks(&ratios);
    printRatios(ratios);
    return ratios.isOneMissed() ? 1 : 0;
}

} // namespace Corvid::Bench
