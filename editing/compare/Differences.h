#pragma once

#include "Corvid_Editing/Export.h"
#include "editing/compare/Difference.h"

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Corvid::Editing {

/// The differences that a comparison found: each is counted, the first ones of each kind are
/// listed. What a file may have millions of takes a few bytes each.
class CORVID_EDITING_EXPORT Differences {
public:
    using value_type = Difference;
    using const_iterator = std::vector<Difference>::const_iterator;
    using iterator = const_iterator;

    /// How many of a kind are listed, unless all are asked for.
    static constexpr std::size_t mostListed = 1000;
    /// How many of a kind are listed at most.
    static constexpr std::size_t mostListedAtAll = 10000;

    /// @param listed  how many of a kind are listed.
    explicit Differences(std::size_t listed = mostListed) noexcept : listed_(listed) {}

    void add(Difference difference);

    /// Adds those of another comparison of the same file that this one lacks, and says of each
    /// whether it appears in one comparison or in both. To be called once, when all are added.
    /// @param fresh  of the comparison with new identifiers; lists as many.
    void unite(Differences fresh);

    /// The listed ones, in the order in which they were found.
    const_iterator begin() const noexcept { return list_.begin(); }
    const_iterator end() const noexcept { return list_.end(); }
    std::size_t size() const noexcept { return list_.size(); }

    /// How many were found, listed or not.
    std::size_t count() const noexcept;
    std::size_t count(DifferenceKind kind) const noexcept { return counts_[index(kind)]; }
    std::size_t leftOut() const noexcept { return count() - list_.size(); }
    bool empty() const noexcept { return count() == 0; }

private:
    /// What several differences have in common that are the same but for their details.
    using Identity = std::uint64_t;
    struct Alike {
        DifferenceKind kind;
        std::size_t count;
    };
    static constexpr std::size_t index(DifferenceKind kind) {
        return static_cast<std::size_t>(kind);
    }
    static Identity identityOf(const Difference& difference);
    void list(Difference difference);

    std::size_t listed_;
    std::vector<Difference> list_;
    std::array<std::size_t, differenceKinds.size()> counts_{};
    std::array<std::size_t, differenceKinds.size()> listedOfKind_{};
    std::unordered_map<Identity, Alike> alike_;
};

} // namespace Corvid::Editing
