#pragma once

#include "Corvid_XMLUtils/Export.h"
#include "host/base/Text.h"

#include <cstddef>
#include <string>

namespace Corvid::XMLUtils {

/// One code unit that XML 1.0 cannot hold: a control character other than TAB, LF and CR, a lone
/// surrogate, U+FFFE or U+FFFF.
struct InvalidCharacter {
    /// The names from the child of the root element down to the element that holds the text, with
    /// the identifiers of those that have one; an attribute follows as "/@name".
    Utf16Text path;
    Utf16Unit unit = 0;
    /// In code units from the start of the text.
    std::size_t position = 0;

    /// Path, code unit and position on one line, UTF-8.
    CORVID_XMLUTILS_EXPORT std::string describe() const;

    /// @throws InvalidFormat  always, with that and what is expected.
    [[noreturn]] CORVID_XMLUTILS_EXPORT void refuse() const;
};

/// Decides what becomes of characters that XML cannot hold.
///
/// These classes are inline throughout: a program can write text without this library, and one that
/// does both must not have two of each class.
class CORVID_XMLUTILS_EXPORT InvalidCharacters {
public:
    virtual ~InvalidCharacters() = default;

    /// Is called for each of them in document order. Returns to have U+FFFD written in its place;
    /// throws to end serialising.
    virtual void found(const InvalidCharacter& character) = 0;
};

/// Ends serialising at the first one.
class CORVID_XMLUTILS_EXPORT RefuseInvalidCharacters final : public InvalidCharacters {
public:
    /// @throws InvalidFormat  always; names the place, the code unit and its position.
    void found(const InvalidCharacter& character) override { character.refuse(); }
};

/// Has each replaced, counts them and remembers the first ones.
class CORVID_XMLUTILS_EXPORT ReplaceInvalidCharacters final : public InvalidCharacters {
public:
    /// @param remembered  how many to keep for replaced(); damaged text may hold millions.
    explicit ReplaceInvalidCharacters(std::size_t remembered = 1000) noexcept
        : remembered_(remembered) {}

    void found(const InvalidCharacter& character) override {
        ++count_;
        if (replaced_.size() < remembered_) {
            replaced_.push_back(character);
        }
    }

    /// How many were replaced.
    std::size_t count() const noexcept { return count_; }

    /// The first ones, in document order.
    const Templates::vector<InvalidCharacter>& replaced() const noexcept { return replaced_; }

private:
    std::size_t remembered_;
    std::size_t count_ = 0;
    Templates::vector<InvalidCharacter> replaced_;
};

} // namespace Corvid::XMLUtils
