#pragma once

#include "XMLBuilder/reader/nodes/DocumentNode.h"

#include <string>
#include <vector>

namespace Corvid::XMLBuilder {

/// Collects what is wrong with a document that is read strictly.
class Mistakes {
public:
    /// As many are kept; the others are counted.
    static constexpr std::size_t mostKept = 100;

    struct Entry {
        std::size_t line;   ///< from 1; 0 where it is not known
        std::size_t column; ///< from 1; 0 where it is not known
        std::string text;   ///< "path: what is there, what is expected"
    };

    /// A mistake at an element or attribute.
    void add(const DocumentNode& at, const std::string& text);
    void add(Entry entry);
    /// The same of what fits the format but makes no sense.
    void doubt(const DocumentNode& at, const std::string& text);

    std::size_t count() const noexcept { return count_; }
    /// The first of them, as they were found.
    const std::vector<Entry>& entries() const noexcept { return entries_; }
    const std::vector<Entry>& doubts() const noexcept { return doubts_; }
    std::size_t doubtCount() const noexcept { return doubtCount_; }

private:
    std::vector<Entry> entries_;
    std::vector<Entry> doubts_;
    std::size_t count_ = 0;
    std::size_t doubtCount_ = 0;
};

/// The names of an element and those around it: "/s377m:MetadataSets/s377m:Preface/rp210:Version".
/// Of a long path the end.
std::string pathOf(const DocumentNode& node);

/// Text of a document for a message: in single quotes, what is too long cut off.
std::string quoted(std::u16string_view text);

} // namespace Corvid::XMLBuilder
