#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Corvid::XMLUtils {

/// How a hash table of Xerces-C grows: when `load` quarters of an entry per bucket are reached, to
/// `factor` times as many buckets and one. A table with the factor 0 does not grow.
struct TableGrowth {
    std::size_t load;
    std::size_t factor;
};

// Its two kinds of tables that grow.
inline constexpr TableGrowth growsEarly{3, 2};
inline constexpr TableGrowth growsLate{16, 8};

/// Counts what is in each bucket of a hash table of Xerces-C, whose hash has no key: anybody can
/// write names that share a bucket, where each is compared with all others.
class TableLoad {
public:
    /// @param buckets  of the empty table, at least 1.
    TableLoad(std::size_t buckets, TableGrowth growth) : growth_(growth), counts_(buckets) {}

    /// Puts one more entry into the table.
    /// @return how many entries its bucket has, if these are more than the bucket may have;
    ///         otherwise 0.
    std::size_t add(std::uint64_t hash);

    /// How many entries a bucket may have: 32 and four times the average.
    std::size_t mostInABucket() const { return 32 + 4 * hashes_.size() / counts_.size(); }

    /// Takes the entries out. The table stays as wide as it is.
    void clear();

private:
    void grow();

    TableGrowth growth_;
    std::vector<std::uint32_t> counts_; ///< for each bucket
    std::vector<std::uint64_t> hashes_; ///< of all entries
};

} // namespace Corvid::XMLUtils
