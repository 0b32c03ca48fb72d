#pragma once

#include "tests/allocation/XercesMemory.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <string>

namespace Corvid::Testing {

/// A test in which allocations fail.
class WithoutMemory : public testing::Test {
protected:
    WithoutMemory() { watchXmlMemory(); }
};

/// A call whose allocations are made to fail. Each object is called once.
class Subject {
public:
    Subject() = default;
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;
    virtual ~Subject() = default;

    virtual void call() = 0;
    /// What a call that succeeded has made.
    virtual std::string result() = 0;
    /// Looks at what a call that failed has left.
    virtual void lookAtFailure() {}
};

/// Makes every allocation of a call fail in turn, alone and with all that follow it.
///
/// The call must throw one of the exceptions, or do as if nothing had happened; all memory must
/// have been released, but for documents that the writer gives up, and the same call must do as
/// ever afterwards. Some allocations are left out where there are many: CORVID_EVERY_ALLOCATION=1
/// makes every one fail.
/// @param make     makes a fresh subject.
/// @param allowed  how the exceptions may begin: Corvid's own with number and message, others with
///     the class.
void sweep(const std::function<std::unique_ptr<Subject>()>& make,
           const std::set<std::string>& allowed);

/// The same for the first call of a process, in processes of its own: what is made on first use and
/// could not be made is made by the next call, which must do as ever. For tests that have not
/// called it yet.
void sweepFirstUse(const std::function<std::unique_ptr<Subject>()>& make);

} // namespace Corvid::Testing
