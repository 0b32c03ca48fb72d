#include "tests/allocation/Sweep.h"

#include "host/base/Exceptions.h"
#include "tests/allocation/KnownFaults.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <map>
#include <new>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#ifdef CORVID_WITH_XQILLA
#include <xqilla/exceptions/XQillaException.hpp>
#endif

namespace Corvid::Testing {

namespace {

/// A call that has no more allocations has them all fail in turn, one that has more about
/// fewPoints of them.
constexpr std::size_t fewAllocations = 700;
constexpr std::size_t fewPoints = 40;
constexpr std::size_t fewFirstUses = 15; ///< each is a process

bool isEverythingWanted() { return std::getenv("CORVID_EVERY_ALLOCATION") != nullptr; }

/// The exception that is being handled. Of Corvid's own, the class's number and the message.
std::string nameOfException() {
    try {
        throw;
    } catch (const Exceptions::BaseException& error) {
        return std::to_string(error.code()) + " " + Platform::toUtf8(error.message());
#ifdef CORVID_WITH_XQILLA
    } catch (const XQillaException&) { // is a DOMException, too
        return "XQillaException";
#endif
    } catch (const xercesc::OutOfMemoryException&) {
        return "xercesc::OutOfMemoryException";
    } catch (const xercesc::DOMException&) {
        return "xercesc::DOMException";
    } catch (const xercesc::SAXException&) {
        return "xercesc::SAXException";
    } catch (const xercesc::XMLException&) {
        return "xercesc::XMLException";
    } catch (const std::bad_alloc&) {
        return "std::bad_alloc";
    } catch (const std::exception& error) {
        return std::string("another std::exception: ") + error.what();
    } catch (...) {
        return "an unknown exception";
    }
}

/// What became of a call.
struct Outcome {
    std::string text; ///< the result, or the exception
    bool threw = false;
    bool failed = false; ///< an allocation was made to fail
    std::size_t count = 0;
    std::size_t documents = 0; ///< given up
    std::vector<AllocationWatch::Block> left;
};

/// What fails at the moment.
Failing current;

/// Says what fails when the process is about to be ended.
extern "C" void tellWhatFails(int) {
    std::cerr << "the process ends: " << current.first << (current.allBehind ? " and behind" : "")
              << (current.onlyXml ? " of Xerces-C" : "") << std::endl;
}

Outcome callWith(Failing failing, const std::function<std::unique_ptr<Subject>()>& make) {
    Outcome outcome;
    current = failing;
    std::unique_ptr<Subject> subject = make();
    forgetDocuments();
    AllocationWatch watch(failing);
    try {
        subject->call();
        watch.endCall();
    } catch (...) {
        watch.endCall();
        outcome.threw = true;
        outcome.text = nameOfException();
    }
    if (outcome.threw) {
        subject->lookAtFailure();
    } else {
        outcome.text = subject->result();
    }
    subject.reset();
    outcome.failed = watch.hasFailed();
    outcome.count = watch.count();
    outcome.documents = releaseAbandonedDocuments(watch);
    outcome.left = watch.left();
    return outcome;
}

std::string describe(const Failing& failing) {
    return "allocation " + std::to_string(failing.first) +
           (failing.allBehind ? " and all after it" : "") + (failing.onlyXml ? " of Xerces-C" : "");
}

/// Which allocations are to fail.
/// @param few  about how many of them, unless all are wanted.
std::vector<std::size_t> points(std::size_t count, std::size_t few) {
    const std::size_t step = isEverythingWanted() ? 1 : std::max<std::size_t>(1, count / few);
    std::vector<std::size_t> points;
    for (std::size_t i = 1; i <= count; i += step) {
        points.push_back(i);
    }
    return points;
}

class Sweeper {
public:
    Sweeper(const std::function<std::unique_ptr<Subject>()>& make,
            const std::set<std::string>& allowed)
        : make_(make), allowed_(allowed) {
        // What a process makes on first use is there then.
        callWith({}, make_);
        usual_ = callWith({}, make_);
        expectNothingLeft(usual_, {});
    }

    void fail(bool allBehind, bool onlyXml) {
        const std::size_t count = callWith({0, false, onlyXml}, make_).count;
        std::size_t documents = 0;
        std::map<std::string, std::size_t> outcomes;
        const std::vector<std::size_t> numbers =
            points(count, count <= fewAllocations ? fewAllocations : fewPoints);
        const std::set<std::size_t> crashes = findCrashes(numbers, onlyXml);
        for (const std::size_t first : numbers) {
            const Failing failing{first, allBehind, onlyXml};
            if (crashes.count(first) != 0) {
                ++outcomes["left out, for XQilla would crash"];
                continue;
            }
            const Outcome outcome = callWith(failing, make_);
            expectSound(outcome, failing);
            expectAsEver(failing);
            documents += outcome.documents;
            ++outcomes[outcome.threw && outcome.text != usual_.text ? outcome.text : "as ever"];
        }
        report(count, documents, outcomes, {0, allBehind, onlyXml});
    }

private:
    void expectSound(const Outcome& outcome, const Failing& failing) {
        EXPECT_TRUE(outcome.failed) << describe(failing);
        if (outcome.threw && outcome.text != usual_.text) {
            EXPECT_TRUE(isAllowed(outcome.text))
                << describe(failing) << ": " << outcome.text << "\n"
                << callersOf(failing);
        } else {
            EXPECT_EQ(outcome.text, usual_.text) << describe(failing);
        }
        expectNothingLeft(outcome, failing);
    }

    bool isAllowed(const std::string& exception) const {
        return std::any_of(allowed_.begin(), allowed_.end(), [&](const std::string& begin) {
            return exception.compare(0, begin.size(), begin) == 0;
        });
    }

    void expectNothingLeft(const Outcome& outcome, const Failing& failing) {
        if (outcome.left.empty()) {
            return;
        }
        std::vector<std::size_t> numbers = {failing.first};
        for (const auto& block : outcome.left) {
            numbers.push_back(block.number);
        }
        const AllocationTraces traces(numbers);
        callWith(failing, make_);
        for (const auto& block : outcome.left) {
            const Callers callers = AllocationTraces::of(block.number);
            const Callers failed = AllocationTraces::of(failing.first);
            if (const KnownLeak* known = findKnownLeak(callers, failed)) {
                ++known_[known];
                continue;
            }
            ADD_FAILURE() << describe(failing) << ", " << outcome.text << ": " << block.size
                          << " bytes not released\n"
                          << linesOf(callers) << "when this failed:\n"
                          << linesOf(failed);
        }
    }

    /// Those of the allocations whose failure would end the process.
    std::set<std::size_t> findCrashes(const std::vector<std::size_t>& numbers, bool onlyXml) {
        std::set<std::size_t> crashes;
        const std::size_t most = AllocationTraces::capacity;
        for (std::size_t begin = 0; begin < numbers.size(); begin += most) {
            const std::vector<std::size_t> some(
                numbers.begin() + static_cast<std::ptrdiff_t>(begin),
                numbers.begin() +
                    static_cast<std::ptrdiff_t>(std::min(begin + most, numbers.size())));
            const AllocationTraces traces(some);
            callWith({0, false, onlyXml}, make_);
            for (const std::size_t number : some) {
                if (isKnownToCrash(AllocationTraces::of(number))) {
                    crashes.insert(number);
                }
            }
        }
        return crashes;
    }

    std::string callersOf(const Failing& failing) {
        const AllocationTraces traces({failing.first});
        callWith(failing, make_);
        return linesOf(AllocationTraces::of(failing.first));
    }

    /// The same call on fresh things does as if nothing had been.
    void expectAsEver(const Failing& failing) {
        const Outcome again = callWith({}, make_);
        EXPECT_EQ(again.text, usual_.text) << "after " << describe(failing);
        EXPECT_TRUE(again.left.empty()) << "after " << describe(failing);
    }

    void report(std::size_t count, std::size_t documents,
                const std::map<std::string, std::size_t>& outcomes, const Failing& failing) {
        if (!isEverythingWanted()) {
            return;
        }
        std::cout << "  " << count << " allocations" << (failing.onlyXml ? " of Xerces-C" : "")
                  << ", failing " << (failing.allBehind ? "with all behind" : "alone") << ":";
        for (const auto& [name, times] : outcomes) {
            std::cout << " " << times << " x " << name << ";";
        }
        std::cout << " documents given up: " << documents << std::endl;
        for (const auto& [known, blocks] : known_) {
            std::cout << "    blocks left by " << known->call << "...): " << blocks << ", "
                      << known->reason << std::endl;
        }
        known_.clear();
    }

    const std::function<std::unique_ptr<Subject>()>& make_;
    const std::set<std::string>& allowed_;
    Outcome usual_;
    std::map<const KnownLeak*, std::size_t> known_; ///< blocks
};

} // namespace

namespace {

/// What the body returns in a process of its own; how that ended where it did not end well.
std::string inChild(const std::function<std::string()>& body) {
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        const std::string text = body();
        std::size_t done = 0;
        while (done != text.size()) {
            done +=
                static_cast<std::size_t>(write(ends[1], text.data() + done, text.size() - done));
        }
        _exit(0);
    }
    close(ends[1]);
    std::string text;
    char bytes[4096];
    for (ssize_t got = 0; (got = read(ends[0], bytes, sizeof bytes)) > 0;) {
        text.append(bytes, static_cast<std::size_t>(got));
    }
    close(ends[0]);
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0 ? text : "ended with status " + std::to_string(status);
}

} // namespace

void sweepFirstUse(const std::function<std::unique_ptr<Subject>()>& make) {
    const std::string usual = inChild([&] { return callWith({}, make).text; });
    const std::size_t count =
        std::stoul(inChild([&] { return std::to_string(callWith({}, make).count); }));
    for (const std::size_t first : points(count, fewFirstUses)) {
        for (const bool allBehind : {false, true}) {
            const Failing failing{first, allBehind, false};
            EXPECT_EQ(inChild([&] {
                          callWith(failing, make);
                          return callWith({}, make).text;
                      }),
                      usual)
                << describe(failing);
        }
    }
}

void sweep(const std::function<std::unique_ptr<Subject>()>& make,
           const std::set<std::string>& allowed) {
    std::signal(SIGABRT, tellWhatFails);
    Sweeper sweeper(make, allowed);
    for (const bool allBehind : {false, true}) {
        sweeper.fail(allBehind, false);
        sweeper.fail(allBehind, true);
    }
}

} // namespace Corvid::Testing
