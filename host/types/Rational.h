#pragma once

#include "host/types/FixedBytes.h"

namespace Corvid::Types {

/// A fraction of two signed numbers; a denominator of 0 is kept as it is.
class CORVID_EXPORT Rational : public Visitable<Rational, FixedBytes<8>> {
public:
    Rational(int numerator, int denominator) noexcept {
        putAt(0, numerator);
        putAt(4, denominator);
    }
    explicit Rational(ByteView bytes) noexcept : Visitable(bytes) {}

    int numerator() const noexcept { return numberAt<int>(0); }
    int denominator() const noexcept { return numberAt<int>(4); }
};

} // namespace Corvid::Types
