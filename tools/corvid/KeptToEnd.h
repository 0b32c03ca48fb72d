#pragma once

#include <memory>
#include <utility>
#include <vector>

namespace Corvid::Tool {

/// A new object that lives until the process ends, for what a verb makes of a file: to take tens of
/// thousands of objects apart just before that costs time and brings nothing. It can be reached to
/// the end, so that leak checkers see that nothing is lost.
template <class Object, class... Arguments> Object& keptToEnd(Arguments&&... arguments) {
    static std::vector<std::unique_ptr<Object>> kept;
    return *kept.emplace_back(std::make_unique<Object>(std::forward<Arguments>(arguments)...));
}

/// A new object that lives that long, or, where other files follow, as long as this one.
template <class Object> class Leftover {
public:
    explicit Leftover(bool othersFollow)
        : own_(othersFollow ? std::make_unique<Object>() : nullptr),
          object_(othersFollow ? *own_ : keptToEnd<Object>()) {}

    Object* operator->() const noexcept { return &object_; }

private:
    std::unique_ptr<Object> own_;
    Object& object_;
};

} // namespace Corvid::Tool
