#pragma once

#include "XMLBuilder/Namespaces.h"
#include "host/types/Types.h"

#include <tuple>

namespace Corvid::XMLBuilder {

/// One sub-element of a compound value: its qualified name and how its content comes from the
/// value. The content is a number, written in decimal, or a DataStream, written in hexadecimal.
template <class Get> struct Field {
    const XMLCh* name;
    Get get;
};
template <class Get> Field(const XMLCh*, Get) -> Field<Get>;

/// The sub-elements of a compound value in document order.
///   names    the namespace of all of them
///   wrapper  the element around them, or null where they stand in the value's element itself
template <class Value> struct Fields;

template <> struct Fields<Types::Rational> {
    using T = Types::Rational;
    static constexpr Names::Namespace names = Names::types;
    static constexpr const XMLCh* wrapper = nullptr;
    static constexpr auto list =
        std::tuple(Field{u"types:Numerator", [](const T& v) { return v.numerator(); }},
                   Field{u"types:Denominator", [](const T& v) { return v.denominator(); }});
};

template <> struct Fields<Types::ProductVersion> {
    using T = Types::ProductVersion;
    static constexpr Names::Namespace names = Names::types;
    static constexpr const XMLCh* wrapper = nullptr;
    static constexpr auto list =
        std::tuple(Field{u"types:Major", [](const T& v) { return v.major(); }},
                   Field{u"types:Minor", [](const T& v) { return v.minor(); }},
                   Field{u"types:Patch", [](const T& v) { return v.patch(); }},
                   Field{u"types:Build", [](const T& v) { return v.build(); }},
                   Field{u"types:Release", [](const T& v) { return int{v.releaseVersion()}; }});
};

template <> struct Fields<Types::Timestamp> {
    using T = Types::Timestamp;
    static constexpr Names::Namespace names = Names::types;
    static constexpr const XMLCh* wrapper = nullptr;
    static constexpr auto list = std::tuple(
        Field{u"types:Year", [](const T& v) { return v.year(); }},
        Field{u"types:Month", [](const T& v) { return v.month(); }},
        Field{u"types:Day", [](const T& v) { return v.day(); }},
        Field{u"types:Hour", [](const T& v) { return v.hour(); }},
        Field{u"types:Minute", [](const T& v) { return v.minute(); }},
        Field{u"types:Second", [](const T& v) { return v.second(); }},
        // In steps of 4 ms, the unit of the byte that a file holds.
        Field{u"types:mSec4", [](const T& v) { return unsigned{v.milliSecond()} >> 2; }});
};

template <> struct Fields<Types::J2KPictureComponent> {
    using T = Types::J2KPictureComponent;
    static constexpr Names::Namespace names = Names::s422mTypes;
    static constexpr const XMLCh* wrapper = u"s422mTypes:J2KPictureComponent";
    static constexpr auto list =
        std::tuple(Field{u"s422mTypes:Ssizi", [](const T& v) { return v.sSizi(); }},
                   Field{u"s422mTypes:XRSizi", [](const T& v) { return v.xRSizi(); }},
                   Field{u"s422mTypes:YRSizi", [](const T& v) { return v.yRSizi(); }});
};

template <> struct Fields<Types::J2KCodingStyleDefault> {
    using T = Types::J2KCodingStyleDefault;
    static constexpr Names::Namespace names = Names::s422mTypes;
    static constexpr const XMLCh* wrapper = u"s422mTypes:J2KCodingStyleDefault";
    static constexpr auto list =
        std::tuple(Field{u"s422mTypes:Scod", [](const T& v) { return v.scod(); }},
                   Field{u"s422mTypes:SGcod", [](const T& v) { return v.sGcod(); }},
                   Field{u"s422mTypes:Spcod",
                         [](const T& v) -> const Types::DataStream& { return v.spcod(); }});
};

template <> struct Fields<Types::J2KQuantisationDefault> {
    using T = Types::J2KQuantisationDefault;
    static constexpr Names::Namespace names = Names::s422mTypes;
    static constexpr const XMLCh* wrapper = u"s422mTypes:J2KQuantisationDefault";
    static constexpr auto list =
        std::tuple(Field{u"s422mTypes:Sqcd", [](const T& v) { return v.sqcd(); }},
                   Field{u"s422mTypes:SPgcd",
                         [](const T& v) -> const Types::DataStream& { return v.sPgcd(); }});
};

} // namespace Corvid::XMLBuilder
