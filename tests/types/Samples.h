#pragma once

#include "host/types/Factories.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Samples of every value type, as bytes in a KLV value.
namespace Corvid::Testing {

using Types::u16;
using Types::u32;
using Types::u8;
using Bytes = std::vector<u8>;

inline Types::ByteView viewOf(const Bytes& bytes) { return {bytes.data(), bytes.size()}; }

inline Bytes bytesOf(const Types::DataType& value) {
    return {value.rawBuffer(), value.rawBuffer() + value.serializedSize()};
}

/// Code units of a text, for comparisons and messages.
inline std::u16string textOf(const u16* text) {
    return {text, text + Templates::char_traits<u16>::length(text)};
}

/// A run of bytes in a row with a name.
struct Sample {
    const char* name;
    Bytes bytes;
};

/// The bytes that fit a type (lowest, highest, typical and, where there is one, empty) and some
/// that do not. Left undefined: a type without samples must not compile.
template <class T> struct Samples;

/// Of a type that takes any bytes of one size.
template <std::size_t Size> struct SamplesOfSize {
    static std::vector<Sample> fitting() {
        Bytes counting;
        for (std::size_t i = 0; i != Size; ++i) {
            counting.push_back(static_cast<u8>(i + 1));
        }
        return {{"lowest", Bytes(Size, 0)}, {"highest", Bytes(Size, 0xFF)}, {"typical", counting}};
    }
    static std::vector<Sample> unfit() {
        return {{"empty", {}}, {"short", Bytes(Size - 1, 1)}, {"long", Bytes(Size + 1, 1)}};
    }
};

/// Of a type that takes any number of bytes from Least upwards.
template <std::size_t Least> struct SamplesOfRun {
    static std::vector<Sample> fitting() {
        return {{"lowest", Bytes(Least, 0)},
                {"highest", Bytes(0xFFFF, 0xFF)},
                {"typical", {0x43, 0x61, 0x00, 0xFF, 0x80, 0x0A, 0x20}}};
    }
    static std::vector<Sample> unfit() {
        std::vector<Sample> result = {{"long", Bytes(0x10000, 0)}};
        if constexpr (Least != 0) {
            result.push_back({"short", Bytes(Least - 1, 1)});
        }
        return result;
    }
};

// clang-format off
#define CORVID_FIXED(Class, Size) template <> struct Samples<Types::Class> : SamplesOfSize<Size> {}
CORVID_FIXED(UInt8, 1);           CORVID_FIXED(Int8, 1);
CORVID_FIXED(UInt16, 2);          CORVID_FIXED(Int16, 2);
CORVID_FIXED(UInt32, 4);          CORVID_FIXED(Int32, 4);
CORVID_FIXED(UInt64, 8);          CORVID_FIXED(Int64, 8);
CORVID_FIXED(Position, 8);        CORVID_FIXED(Length, 8);
CORVID_FIXED(Orientation, 1);     CORVID_FIXED(SignalStandard, 1);
CORVID_FIXED(UTF16, 2);           CORVID_FIXED(LocalTag, 2);
CORVID_FIXED(UUID, 16);           CORVID_FIXED(UniversalLabel, 16);
CORVID_FIXED(UMID32, 32);         CORVID_FIXED(UMID64, 64);
CORVID_FIXED(StrongReference, 16); CORVID_FIXED(WeakReference, 16);
CORVID_FIXED(Rational, 8);        CORVID_FIXED(Timestamp, 8);
CORVID_FIXED(VersionType, 2);
CORVID_FIXED(J2KPictureComponent, 3);
#undef CORVID_FIXED
// clang-format on

template <> struct Samples<Types::ProductVersion> {
    static std::vector<Sample> fitting() {
        auto samples = SamplesOfSize<10>::fitting();
        samples.push_back({"lowestOfNine", Bytes(9, 0)});
        samples.push_back({"highestOfNine", Bytes(9, 0xFF)});
        samples.push_back({"typicalOfNine", {0, 1, 0, 2, 0, 3, 0, 4, 5}});
        return samples;
    }
    static std::vector<Sample> unfit() {
        return {{"empty", {}}, {"short", Bytes(8, 1)}, {"long", Bytes(11, 1)}};
    }
};

template <> struct Samples<Types::DataStream> : SamplesOfRun<0> {};
template <> struct Samples<Types::DataValue> : SamplesOfRun<0> {};
template <> struct Samples<Types::Unknown> : SamplesOfRun<0> {};
template <> struct Samples<Types::ISO7String> : SamplesOfRun<0> {};
template <> struct Samples<Types::J2KCodingStyleDefault> : SamplesOfRun<5> {};
template <> struct Samples<Types::J2KQuantisationDefault> : SamplesOfRun<1> {};

template <> struct Samples<Types::UTF16String> {
    static std::vector<Sample> fitting() {
        return {{"empty", {}},
                {"lowest", {0, 0}},
                {"highest", Bytes(0xFFFE, 0xFF)},
                {"typical", {0x00, 0x4D, 0xD8, 0x34, 0xDD, 0x1E, 0x00, 0x00, 0x12, 0x34}}};
    }
    static std::vector<Sample> unfit() {
        return {{"odd", {0, 0x4D, 0}}, {"hidden", {0, 0, 0, 0x4D}}, {"long", Bytes(0x10000, 0)}};
    }
};

template <> struct Samples<Types::Boolean> {
    static std::vector<Sample> fitting() { return {{"lowest", {0}}, {"highest", {1}}}; }
    static std::vector<Sample> unfit() {
        return {{"empty", {}}, {"two", {2}}, {"allBits", {0xFF}}, {"long", {0, 1}}};
    }
};

template <> struct Samples<Types::RGBALayout> {
    static std::vector<Sample> fitting() {
        Bytes highest(10, 0xFF);
        highest.resize(16, 0);
        return {{"lowest", Bytes(16, 0)},
                {"highest", highest},
                {"typical", {'R', 10, 'G', 10, 'B', 10, 'F', 2, 0, 0, 0, 0, 0, 0, 0, 0}}};
    }
    static std::vector<Sample> unfit() {
        std::vector<Sample> result = {
            {"empty", {}}, {"short", Bytes(15, 0)}, {"long", Bytes(17, 0)}};
        for (std::size_t i = 10; i != 16; ++i) {
            Bytes bytes(16, 0);
            bytes[i] = 1;
            result.push_back({"sixthComponentOrLater", bytes});
        }
        return result;
    }
};

/// Of a collection of UInt16.
struct SamplesOfCollection {
    static constexpr auto item = Types::Identifiers::UInt16;

    static std::vector<Sample> fitting() {
        Bytes highest = {0, 0, 0x7F, 0xFB, 0, 0, 0, 2};
        highest.resize(8 + 2 * 0x7FFB, 0xFF);
        return {{"lowest", Bytes(8, 0)},
                {"emptyOfSize16", {0, 0, 0, 0, 0, 0, 0, 16}},
                {"emptyOfGreatestSize", {0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}},
                {"highest", highest},
                {"typical", {0, 0, 0, 2, 0, 0, 0, 2, 0x12, 0x34, 0xFF, 0xFE}}};
    }
    static std::vector<Sample> unfit() {
        Bytes long_ = {0, 0, 0x80, 0, 0, 0, 0, 2};
        long_.resize(8 + 0x10000, 0);
        return {{"empty", {}},
                {"headCut", {0, 0, 0, 0, 0, 0, 0}},
                {"long", long_},
                {"countTooHigh", {0, 0, 0, 3, 0, 0, 0, 2, 0x12, 0x34, 0xFF, 0xFE}},
                {"countTooLow", {0, 0, 0, 1, 0, 0, 0, 2, 0x12, 0x34, 0xFF, 0xFE}},
                {"countOfNothing", {0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}},
                {"itemsOfAnotherSize", {0, 0, 0, 1, 0, 0, 0, 4, 0x12, 0x34, 0xFF, 0xFE}},
                {"emptyWithRest", {0, 0, 0, 0, 0, 0, 0, 2, 0x12, 0x34}},
                // In 32 bits both products are the size of what follows.
                {"productOverflows", {0x80, 0, 0, 0, 0, 0, 0, 2}},
                {"productOverflowsToFour", {0x80, 0, 0, 2, 0, 0, 0, 2, 1, 2, 3, 4}}};
    }
};
template <> struct Samples<Types::Array> : SamplesOfCollection {};
template <> struct Samples<Types::Batch> : SamplesOfCollection {};

/// The identifier of a type.
template <class T> struct IdentifierOf;
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    template <> struct IdentifierOf<Types::Class> {                                                \
        static constexpr auto value = Types::Identifiers::Class;                                   \
        static constexpr const char* name = #Class;                                                \
    };
#include "host/types/ValueTypes.def"

/// Makes a value by the factory that files are read with; null where the bytes do not fit.
template <class T> auto makeFromBytes(const Bytes& bytes) {
    if constexpr (std::is_base_of_v<Types::Collection, T>) {
        return Types::Factories::collectionFromBytes(IdentifierOf<T>::value, Samples<T>::item,
                                                     viewOf(bytes));
    } else {
        return Types::Factories::fromBytes(IdentifierOf<T>::value, viewOf(bytes));
    }
}

/// What a type list needs in front of the rows' commas.
template <class, class... T> struct Rest { using List = ::testing::Types<T...>; };

/// All value types.
#define CORVID_VALUE_TYPE(Class, Id, Form) , Types::Class
using AllTypes = Rest<void
#include "host/types/ValueTypes.def"
                      >::List;

} // namespace Corvid::Testing
