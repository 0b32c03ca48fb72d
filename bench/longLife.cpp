#include "bench/Conversions.h"
#include "bench/Program.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <future>
#include <iostream>
#include <iterator>
#include <malloc.h>
#include <mutex>
#include <thread>
#include <unistd.h>
#include <vector>

/// What a process keeps that converts for a long time; bench/README.md says more.
namespace {

using namespace Corvid;

constexpr unsigned threadCount = 4;
constexpr double mebi = 1024.0 * 1024.0;

std::size_t countEntries(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

/// How many threads there are, once those that were joined are gone: the system lists them for a
/// moment more.
std::size_t countThreads() {
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 2s;
    std::size_t count = countEntries("/proc/self/task");
    while (count != 1 && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(1ms);
        count = countEntries("/proc/self/task");
    }
    return count;
}

/// What the process holds at a moment.
struct State {
    double resident = 0; ///< MiB of memory
    double inUse = 0;    ///< MiB that were allocated and not released
    double kept = 0;     ///< MiB that the allocator keeps for later
    std::size_t files = 0;
    std::size_t threads = 0;

    static State now() {
        const struct mallinfo2 info = mallinfo2();
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages >> pages;
        return {static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE)) / mebi,
                static_cast<double>(info.uordblks + info.hblkhd) / mebi,
                static_cast<double>(info.fordblks) / mebi,
                countEntries("/proc/self/fd") - 1, // without the one that looks
                countThreads()};
    }
};

/// One conversion of that many is the writer's giving up.
constexpr std::size_t givenUpOneOf = 100;

class LongLife {
public:
    /// Converts up to that number in all, in four threads.
    void convertUpTo(std::size_t count) {
        std::vector<std::thread> threads;
        for (unsigned i = 0; i != threadCount; ++i) {
            threads.emplace_back([this, count] { work(count); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        begun_ = count;
        if (failure_) {
            std::rethrow_exception(failure_);
        }
    }

    std::size_t givenUp() const { return givenUp_; }

private:
    void work(std::size_t count) {
        try {
            for (std::size_t i = begun_++; i < count; i = begun_++) {
                if (i % givenUpOneOf == 0) {
                    Bench::giveDocumentUp();
                    ++givenUp_;
                } else {
                    Bench::convert(inputs_, i);
                }
            }
        } catch (...) {
            const std::lock_guard<std::mutex> locked(mutex_);
            failure_ = std::current_exception();
        }
    }

    Bench::ConversionInputs inputs_;
    std::atomic<std::size_t> begun_{0};
    std::atomic<std::size_t> givenUp_{0};
    std::mutex mutex_;
    std::exception_ptr failure_;
};

/// What a document that is given up keeps, in MiB. To be measured when something has been read, for
/// then documents are XQilla's.
double measureGivenUp() {
    constexpr int times = 100;
    Bench::giveDocumentUp();
    const double before = State::now().inUse;
    for (int i = 0; i != times; ++i) {
        Bench::giveDocumentUp();
    }
    return (State::now().inUse - before) / times;
}

void print(std::size_t count, const State& state, std::size_t givenUp, double reckoned) {
    std::printf("%11zu %9.2f %9.2f %9.2f %9zu %9.2f %10.2f %6zu %8zu\n", count, state.resident,
                state.inUse, state.kept, givenUp, reckoned, state.inUse - reckoned, state.files,
                state.threads);
    std::fflush(stdout);
}

/// A writer that found the lock taken would wait for ever.
void expectFreeLock() {
    auto written = std::async(std::launch::async, Bench::writeDocument);
    if (written.wait_for(std::chrono::minutes(1)) != std::future_status::ready) {
        std::fputs("the writer's lock is taken\n", stderr);
        std::_Exit(1);
    }
    written.get();
}

/// @return whether nothing has grown but by documents that were given up.
bool live(std::size_t count) {
    LongLife life;
    const std::size_t warm = std::min<std::size_t>(1000, count / 2);
    life.convertUpTo(warm);
    const double each = measureGivenUp();
    std::puts("what is given up is what the writer's contract leaves to the process; MiB");
    std::puts("conversions  resident    in use      kept  given up  reckoned   the rest  files"
              "  threads");
    const auto report = [&](std::size_t done) {
        const State state = State::now();
        const double reckoned = each * static_cast<double>(life.givenUp());
        print(done, state, life.givenUp(), reckoned);
        return State{state.resident - reckoned, state.inUse - reckoned, state.kept, state.files,
                     state.threads};
    };
    const State before = report(warm);
    State after = before;
    for (std::size_t done = warm; done != count;) {
        done = std::min(count, done - done % 10000 + 10000);
        life.convertUpTo(done);
        after = report(done);
    }
    expectFreeLock();
    constexpr double allowed = 0.25; // MiB; what threads keep for themselves varies
    return after.inUse - before.inUse < allowed && after.files == before.files &&
           after.threads == before.threads;
}

} // namespace

int main(int argc, char** argv) {
    return Bench::runProgram("longLife", [&] {
        const bool isFlat = live(argc > 1 ? std::stoul(argv[1]) : 100000);
        std::puts(isFlat ? "nothing has grown" : "something has GROWN");
        return isFlat ? 0 : 1;
    });
}
