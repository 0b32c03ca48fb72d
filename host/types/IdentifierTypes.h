#pragma once

#include "host/types/IdentifierBytes.h"

namespace Corvid::Types {

/// A universally unique identifier (RFC 4122), as an InstanceUID is.
class CORVID_EXPORT UUID : public Visitable<UUID, IdentifierBytes<16>> {
public:
    using Visitable::Visitable;
};

/// A SMPTE universal label (SMPTE ST 298).
class CORVID_EXPORT UniversalLabel : public Visitable<UniversalLabel, IdentifierBytes<16>> {
public:
    using Visitable::Visitable;

    /// The label with a version byte of zero. That byte, the eighth, says in which edition of a
    /// register the label first appeared and takes no part in matching.
    std::array<u8, 16> withoutVersion() const noexcept {
        auto result = bytes_;
        result[7] = 0;
        return result;
    }
};

/// A basic UMID (SMPTE ST 330).
class CORVID_EXPORT UMID32 : public Visitable<UMID32, IdentifierBytes<32>> {
public:
    using Visitable::Visitable;
};

/// An extended UMID (SMPTE ST 330).
class CORVID_EXPORT UMID64 : public Visitable<UMID64, IdentifierBytes<64>> {
public:
    using Visitable::Visitable;
};

/// The two bytes that stand for a property's label in the sets of one partition.
class CORVID_EXPORT LocalTag : public Visitable<LocalTag, IdentifierBytes<2>> {
public:
    using Visitable::Visitable;
    explicit LocalTag(u16 tag) noexcept { putAt(0, tag); }

    u16 value() const noexcept { return numberAt<u16>(0); }
    /// True for a tag that the standard gives to a property for good; false for one that each file
    /// gives anew in its primer pack.
    bool isStaticLocalTag() const noexcept { return value() < 0x8000; }
};

} // namespace Corvid::Types
