#pragma once

#include "XMLBuilder/reader/values/ValueInput.h"

#include <deque>
#include <string>

namespace Corvid::XMLBuilder {

/// The parts of a compound value that is read.
class Parts {
public:
    /// @param from  borrowed.
    Parts(const ValueInput& from, const Names::Namespace& names)
        : uri_(from.uriOf(names)), parent_(&from.node()), isStrict_(from.isStrict()) {}

    /// Goes on with the parts of a child.
    void enter(const DocumentNode& child) { parent_ = &child; }

    /// The first part of a name, and the next of that name after another; null for none.
    const DocumentNode* first(const char16_t* qualified) const;
    const DocumentNode* next(const DocumentNode& found, const char16_t* qualified) const;

    /// The text of a part; empty where it is missing. Lives as long as the object.
    const char16_t* text(const char16_t* qualified);

private:
    const char16_t* uri_;
    const DocumentNode* parent_;
    bool isStrict_;
    std::deque<std::u16string> texts_; ///< where they are made
};

} // namespace Corvid::XMLBuilder
