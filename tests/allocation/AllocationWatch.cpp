#include "tests/allocation/AllocationWatch.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <iterator>
#include <map>
#include <memory>

namespace Corvid::Testing {

namespace {

/// The blocks of a call that are not released. Has no memory but its own.
class Blocks {
public:
    struct Entry {
        void* memory = nullptr;
        std::size_t size = 0;
        std::size_t number = 0;
    };

    void clear() noexcept {
        std::memset(static_cast<void*>(entries_), 0, sizeof entries_);
        used_ = 0;
    }

    void add(const Entry& entry) noexcept {
        if (++used_ > capacity / 2) {
            std::fputs("AllocationWatch: too many blocks\n", stderr);
            std::abort();
        }
        std::size_t at = home(entry.memory);
        while (entries_[at].memory != nullptr) {
            at = next(at);
        }
        entries_[at] = entry;
    }

    void remove(void* memory) noexcept {
        std::size_t at = home(memory);
        while (entries_[at].memory != memory) {
            if (entries_[at].memory == nullptr) {
                return;
            }
            at = next(at);
        }
        --used_;
        // Those that made way for it move up.
        std::size_t hole = at;
        for (at = next(at); entries_[at].memory != nullptr; at = next(at)) {
            const std::size_t from = home(entries_[at].memory);
            if (((at - from) & mask) >= ((at - hole) & mask)) {
                entries_[hole] = entries_[at];
                hole = at;
            }
        }
        entries_[hole] = {};
    }

    const Entry* begin() const noexcept { return entries_; }
    const Entry* end() const noexcept { return entries_ + capacity; }

private:
    static constexpr std::size_t capacity = std::size_t{1} << 16;
    static constexpr std::size_t mask = capacity - 1;

    static std::size_t home(const void* memory) noexcept {
        return (reinterpret_cast<std::uintptr_t>(memory) * 0x9E3779B97F4A7C15U) >> 48;
    }
    static std::size_t next(std::size_t at) noexcept { return (at + 1) & mask; }

    Entry entries_[capacity];
    std::size_t used_ = 0;
};

/// The callers of some allocations.
class Traces {
public:
    static constexpr int depth = 50;

    struct Trace {
        std::size_t number = 0;
        void* frames[depth] = {};
    };

    void clear() noexcept { used_ = 0; }
    void want(std::size_t number) noexcept {
        if (used_ != std::size(traces_)) {
            traces_[used_++] = {number, {}};
        }
    }
    void note(std::size_t number) noexcept {
        if (Trace* const trace = find(number)) {
            backtrace(trace->frames, depth);
        }
    }
    Trace* find(std::size_t number) noexcept {
        Trace* const end = traces_ + used_;
        Trace* const found =
            std::find_if(traces_, end, [=](const Trace& t) { return t.number == number; });
        return found == end ? nullptr : found;
    }

private:
    Trace traces_[AllocationTraces::capacity];
    std::size_t used_ = 0;
};

Blocks blocks;
Traces traces;

struct State {
    bool remembers = false; ///< a watch lives
    bool counts = false;    ///< its call runs
    Failing failing;
    std::size_t count = 0;
    bool failed = false;
    int xmlDepth = 0;
};
// Only the thread of the watch is of interest.
thread_local State state;

/// Counts an allocation; whether it is to fail.
bool isToFail() noexcept {
    ++state.count;
    traces.note(state.count);
    const Failing& failing = state.failing;
    const bool fails = failing.first != 0 && (failing.allBehind ? state.count >= failing.first
                                                                : state.count == failing.first);
    state.failed = state.failed || fails;
    return fails;
}

bool isCounted() noexcept {
    return state.counts && (!state.failing.onlyXml || state.xmlDepth != 0);
}

std::string describe(void* frame) {
    Dl_info info{};
    if (dladdr(frame, &info) == 0) {
        return "?";
    }
    if (info.dli_sname != nullptr) {
        int status = 0;
        const std::unique_ptr<char, void (*)(void*)> name(
            abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &status), std::free);
        return name == nullptr ? info.dli_sname : name.get();
    }
    char text[32];
    std::snprintf(
        text, sizeof text, "+0x%zx",
        static_cast<std::size_t>(static_cast<char*>(frame) - static_cast<char*>(info.dli_fbase)));
    return info.dli_fname + std::string(text);
}

} // namespace

AllocationWatch::AllocationWatch(Failing failing) {
    blocks.clear();
    state = {};
    state.failing = failing;
    state.remembers = true;
    state.counts = true;
}

AllocationWatch::~AllocationWatch() { state = {}; }

void AllocationWatch::endCall() noexcept { state.counts = false; }

std::size_t AllocationWatch::count() const noexcept { return state.count; }

bool AllocationWatch::hasFailed() const noexcept { return state.failed; }

std::vector<AllocationWatch::Block> AllocationWatch::left() const {
    std::vector<Block> left;
    for (const Blocks::Entry& entry : blocks) {
        if (entry.memory != nullptr) {
            left.push_back({entry.number, entry.size});
        }
    }
    return left;
}

bool AllocationWatch::holds(const void* place) const noexcept {
    const auto at = reinterpret_cast<std::uintptr_t>(place);
    for (const Blocks::Entry& entry : blocks) {
        const auto begin = reinterpret_cast<std::uintptr_t>(entry.memory);
        if (begin != 0 && at >= begin && at - begin < entry.size) {
            return true;
        }
    }
    return false;
}

XmlAllocation::XmlAllocation() noexcept { ++state.xmlDepth; }
XmlAllocation::~XmlAllocation() { --state.xmlDepth; }

AllocationTraces::AllocationTraces(const std::vector<std::size_t>& numbers) {
    void* frame = nullptr;
    backtrace(&frame, 1); // loads what it needs on first use
    for (const std::size_t number : numbers) {
        traces.want(number);
    }
}

AllocationTraces::~AllocationTraces() { traces.clear(); }

std::vector<std::string> AllocationTraces::of(std::size_t number) {
    static std::map<void*, std::string> known; // looking a place up takes long
    std::vector<std::string> callers;
    if (const Traces::Trace* const trace = traces.find(number)) {
        for (void* const frame : trace->frames) {
            if (frame != nullptr) {
                const auto [place, isNew] = known.try_emplace(frame);
                if (isNew) {
                    place->second = describe(frame);
                }
                callers.push_back(place->second);
            }
        }
    }
    return callers;
}

} // namespace Corvid::Testing

namespace Corvid::Testing::ReplacedMalloc {

namespace {

template <class Allocate> void* allocated(std::size_t size, Allocate allocate) noexcept {
    if (!isCounted()) {
        return allocate();
    }
    if (isToFail()) {
        errno = ENOMEM;
        return nullptr;
    }
    void* const memory = allocate();
    if (memory != nullptr) {
        blocks.add({memory, size, state.count});
    }
    return memory;
}

void released(void* memory) noexcept {
    if (state.remembers && memory != nullptr) {
        blocks.remove(memory);
    }
}

} // namespace

} // namespace Corvid::Testing::ReplacedMalloc

#include "tests/support/ReplacedMalloc.h" // needs the two functions
