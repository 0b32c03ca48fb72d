#pragma once

#include <array>
#include <string>

namespace Corvid::Editing {

/// How two partitions can differ; DifferenceKinds.def says what each means.
enum class DifferenceKind : unsigned char {
#define CORVID_DIFFERENCE(name, sentence) name,
#include "editing/compare/DifferenceKinds.def"
};

/// A kind with its name and the sentence that explains it.
struct DescribedKind {
    DifferenceKind kind;
    const char* name;
    const char* sentence;
};

inline constexpr std::array differenceKinds{
#define CORVID_DIFFERENCE(name, sentence) DescribedKind{DifferenceKind::name, #name, sentence},
#include "editing/compare/DifferenceKinds.def"
};

constexpr const DescribedKind& describe(DifferenceKind kind) {
    return differenceKinds[static_cast<std::size_t>(kind)];
}

/// With which identifiers of sets a difference appears: those of the file, or new ones.
enum class DifferenceIdentifiers : unsigned char { both, written, fresh };

/// One difference. Texts are UTF-8; empty where they do not apply.
struct Difference {
    DifferenceKind kind;
    std::string set;         ///< its class, or the key of a dark set
    std::string instanceUID; ///< of the set, as it was before
    std::string property;
    std::string detail; ///< what was there and what is
    DifferenceIdentifiers identifiers = DifferenceIdentifiers::both;
};

} // namespace Corvid::Editing
