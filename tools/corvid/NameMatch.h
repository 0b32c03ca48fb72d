#pragma once

#include <string>
#include <vector>

namespace Corvid::Tool {

/// Text without what people do not mind in names: case, blanks, punctuation.
std::string folded(const std::string& text);

/// Compares names with one that is wanted.
class NameMatch {
public:
    enum Likeness {
        same,  ///< letter by letter
        alike, ///< folded
        part,  ///< the wanted name, or each word of it, is part of the folded name
        none,
    };

    explicit NameMatch(const std::string& wanted);

    Likeness compare(const std::string& name) const;

private:
    std::string wanted_;
    std::string folded_;
    std::vector<std::string> words_; ///< folded
};

/// Collects the names that are most like one that does not exist.
class NearNames {
public:
    explicit NearNames(const std::string& wanted);

    void offer(const std::string& name);

    /// Up to five, the most similar first, each once.
    std::vector<std::string> best();

private:
    std::string wanted_; ///< folded
    std::size_t furthest_;
    std::vector<std::pair<std::size_t, std::string>> found_;
};

/// How many letters must be inserted, taken away, replaced or swapped with their neighbour to make
/// one text of the other; where that is more than `most`, some number above it.
std::size_t editDistance(const std::string& a, const std::string& b, std::size_t most);

} // namespace Corvid::Tool
