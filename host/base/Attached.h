#pragma once

#include "Corvid/Export.h"

#include <atomic>
#include <memory>

namespace Corvid::Platform {

/// What a layer above knows of an object of a layer below, kept with it so that it is worked out
/// once: made when it is first asked for, by whatever thread, and gone with the object.
class Attached {
public:
    /// The base of what is kept.
    class CORVID_EXPORT Content {
    public:
        Content() = default;
        Content(const Content&) = delete;
        Content& operator=(const Content&) = delete;
        virtual ~Content();
    };

    Attached() = default;
    Attached(const Attached&) = delete;
    Attached& operator=(const Attached&) = delete;
    ~Attached() { delete content_.load(std::memory_order_relaxed); }

    /// @tparam Made  the one class of contents that this object ever has.
    /// @param make   gives a std::unique_ptr to it; of two threads that make one at once, the
    ///               second takes that of the first.
    template <class Made, class Make> const Made& get(Make make) const {
        const Content* content = content_.load(std::memory_order_acquire);
        if (content == nullptr) {
            std::unique_ptr<const Content> made = make();
            if (content_.compare_exchange_strong(content, made.get(), std::memory_order_acq_rel)) {
                content = made.release();
            }
        }
        return static_cast<const Made&>(*content);
    }

private:
    mutable std::atomic<const Content*> content_{nullptr};
};

} // namespace Corvid::Platform
