#pragma once

#include "XMLBuilder/format/Namespaces.h"
#include "host/types/Types.h"

#include <cstdint>
#include <tuple>
#include <type_traits>

namespace Corvid::XMLBuilder {

/// One sub-element of a compound value: its qualified name and how its content comes from the
/// value. The content is a number, written in decimal, or a DataStream, written in hexadecimal.
template <class Get> struct Field {
    const char16_t* name;
    Get get;
    /// The condition that a failed check for the sub-element quotes; null where it may be missing.
    const char* condition;
    /// When a reader looks for the sub-element: the lowest rank first.
    int rank;
    /// The greatest number that a file can hold; 0 for that of the type that the accessor gives.
    std::uint32_t greatest;

    constexpr Field(const char16_t* fieldName, Get fieldGet, const char* fieldCondition = nullptr,
                    int fieldRank = 0, std::uint32_t greatestNumber = 0)
        : name(fieldName), get(fieldGet), condition(fieldCondition), rank(fieldRank),
          greatest(greatestNumber) {}
};

/// The element around the sub-elements, and the property that a reader names when it is missing.
struct Wrapper {
    const char16_t* name = nullptr; ///< null where the sub-elements are in the value's element
    const char* property = nullptr;
};

/// The sub-elements of a compound value in document order.
///   names    the namespace of all of them
///   wrapper  the element around them
///   list     the sub-elements
///   make     makes the value of what was read: a 32-bit number or a run of bytes for each, whose
///            low bits are kept
template <class Value> struct Fields;

using Types::u16;
using Types::u32;
using Types::u8;

/// The bytes of a sub-element.
using FieldBytes = Templates::vector<Types::u8>;

/// What the accessor of a sub-element gives.
template <class T, class Get> using ContentOf = std::decay_t<std::invoke_result_t<Get, const T&>>;

template <class T, class Get> constexpr bool holdsBytes(const Field<Get>&) {
    return std::is_base_of_v<Types::DataType, ContentOf<T, Get>>;
}

template <> struct Fields<Types::Rational> {
    using T = Types::Rational;
    static constexpr Names::Namespace names = Names::types;
    static constexpr Wrapper wrapper{};
    static constexpr auto list =
        std::tuple(Field{u"types:Numerator", [](const T& v) { return v.numerator(); }},
                   Field{u"types:Denominator", [](const T& v) { return v.denominator(); }});
    static T make(u32 numerator, u32 denominator) {
        return {static_cast<int>(numerator), static_cast<int>(denominator)};
    }
};

template <> struct Fields<Types::ProductVersion> {
    using T = Types::ProductVersion;
    static constexpr Names::Namespace names = Names::types;
    static constexpr Wrapper wrapper{};
    static constexpr auto list =
        std::tuple(Field{u"types:Major", [](const T& v) { return v.major(); }},
                   Field{u"types:Minor", [](const T& v) { return v.minor(); }},
                   Field{u"types:Patch", [](const T& v) { return v.patch(); }},
                   Field{u"types:Build", [](const T& v) { return v.build(); }},
                   Field{u"types:Release", [](const T& v) { return int{v.releaseVersion()}; },
                         nullptr, 0, 0xFFFF});
    static T make(u32 major, u32 minor, u32 patch, u32 build, u32 release) {
        return {static_cast<u16>(major), static_cast<u16>(minor), static_cast<u16>(patch),
                static_cast<u16>(build), static_cast<T::ReleaseVersion>(static_cast<u16>(release))};
    }
};

template <> struct Fields<Types::Timestamp> {
    using T = Types::Timestamp;
    static constexpr Names::Namespace names = Names::types;
    static constexpr Wrapper wrapper{};
    static constexpr auto list = std::tuple(
        Field{u"types:Year", [](const T& v) { return v.year(); }, "!yearValue.empty ()", 2},
        Field{u"types:Month", [](const T& v) { return v.month(); }, "!monthValue.empty ()", 3},
        Field{u"types:Day", [](const T& v) { return v.day(); }, "!dayValue.empty ()", 4},
        Field{u"types:Hour", [](const T& v) { return v.hour(); }, "!hourValue.empty ()", 5},
        Field{u"types:Minute", [](const T& v) { return v.minute(); }, "!minutesValue.empty ()", 6},
        Field{u"types:Second", [](const T& v) { return v.second(); }, "!secondsValue.empty ()", 0},
        // In steps of 4 ms, the unit of the byte that a file holds.
        Field{u"types:mSec4", [](const T& v) { return unsigned{v.milliSecond()} >> 2; },
              "!milliValue.empty ()", 1, 0xFF});
    static T make(u32 year, u32 month, u32 day, u32 hour, u32 minute, u32 second, u32 mSec4) {
        return {static_cast<u16>(year),     static_cast<u8>(month),  static_cast<u8>(day),
                static_cast<u8>(hour),      static_cast<u8>(minute), static_cast<u8>(second),
                static_cast<u16>(4 * mSec4)};
    }
};

template <> struct Fields<Types::J2KPictureComponent> {
    using T = Types::J2KPictureComponent;
    static constexpr Names::Namespace names = Names::s422mTypes;
    static constexpr Wrapper wrapper{u"s422mTypes:J2KPictureComponent", "PictureComponentSizing"};
    static constexpr auto list = std::tuple(
        Field{u"s422mTypes:Ssizi", [](const T& v) { return v.sSizi(); }, "!sSiziValue.empty ()"},
        Field{u"s422mTypes:XRSizi", [](const T& v) { return v.xRSizi(); }, "!xRSiziValue.empty ()"},
        Field{u"s422mTypes:YRSizi", [](const T& v) { return v.yRSizi(); },
              "!yRSiziValue.empty ()"});
    static T make(u32 sSizi, u32 xRSizi, u32 yRSizi) {
        return {static_cast<u8>(sSizi), static_cast<u8>(xRSizi), static_cast<u8>(yRSizi)};
    }
};

template <> struct Fields<Types::J2KCodingStyleDefault> {
    using T = Types::J2KCodingStyleDefault;
    static constexpr Names::Namespace names = Names::s422mTypes;
    static constexpr Wrapper wrapper{u"s422mTypes:J2KCodingStyleDefault", "CodingStyleDefault"};
    static constexpr auto list = std::tuple(
        Field{u"s422mTypes:Scod", [](const T& v) { return v.scod(); }, "!scodValue.empty ()"},
        Field{u"s422mTypes:SGcod", [](const T& v) { return v.sGcod(); }, "!sGcodValue.empty ()"},
        Field{u"s422mTypes:Spcod", [](const T& v) -> const Types::DataStream& { return v.spcod(); },
              "!spcodValue.empty ()"});
    static T make(u32 scod, u32 sGcod, const FieldBytes& spcod) {
        return {static_cast<u8>(scod), sGcod, spcod.data(), spcod.size()};
    }
};

template <> struct Fields<Types::J2KQuantisationDefault> {
    using T = Types::J2KQuantisationDefault;
    static constexpr Names::Namespace names = Names::s422mTypes;
    static constexpr Wrapper wrapper{u"s422mTypes:J2KQuantisationDefault", "QuantisationDefault"};
    static constexpr auto list = std::tuple(
        Field{u"s422mTypes:Sqcd", [](const T& v) { return v.sqcd(); }, "!sqcdValue.empty ()"},
        Field{u"s422mTypes:SPgcd", [](const T& v) -> const Types::DataStream& { return v.sPgcd(); },
              "!sPgcdValue.empty ()"});
    static T make(u32 sqcd, const FieldBytes& sPgcd) {
        return {static_cast<u8>(sqcd), sPgcd.data(), sPgcd.size()};
    }
};

} // namespace Corvid::XMLBuilder
