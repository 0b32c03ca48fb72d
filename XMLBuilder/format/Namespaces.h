#pragma once

#include <string_view>

/// The namespaces that the document format itself uses, and the names in them that more than one
/// file needs.
namespace Corvid::XMLBuilder::Names {

/// A namespace and the prefix that its names are written with.
struct Namespace {
    const char16_t* uri;
    const char16_t* prefix;
};

/// The part of a qualified name after its prefix, which must be there.
constexpr const char16_t* localPart(const char16_t* qualified) {
    while (*qualified++ != u':') {
    }
    return qualified;
}

inline constexpr Namespace s377m{u"urn:SMPTE:S377M", u"s377m"};
inline constexpr Namespace rp210{u"urn:SMPTE:RP210", u"rp210"};
inline constexpr Namespace groups{u"urn:SMPTE:Groups:MXF", u"groups"};
inline constexpr Namespace types{u"urn:SMPTE:Types:MXF", u"types"};
inline constexpr Namespace s422mTypes{u"urn:SMPTE:S422MTypes:MXF", u"s422mTypes"};

/// The URI of one of these where a text is the same, else the text: names are compared the quicker
/// the more of them have the same place for their URI.
inline const char16_t* sharedUri(const char16_t* uri) noexcept {
    for (const Namespace& each : {s377m, rp210, groups, types, s422mTypes}) {
        if (each.uri == std::u16string_view(uri)) {
            return each.uri;
        }
    }
    return uri;
}

inline constexpr const char16_t* root = u"s377m:MetadataSets";
inline constexpr const char16_t* floatingDarkMetadata = u"groups:FloatingDarkMetadata";
inline constexpr const char16_t* extensionElements = u"groups:ExtensionElements";
inline constexpr const char16_t* darkElement = u"groups:DarkElement";
inline constexpr const char16_t* darkMetadata = u"groups:DarkMetadata";
inline constexpr const char16_t* staticLocalTag = u"groups:StaticLocalTag";
inline constexpr const char16_t* universalLabel = u"groups:UniversalLabel";
inline constexpr const char16_t* key = u"groups:Key";
inline constexpr const char16_t* berOctetCount = u"groups:BEROctetCount";
inline constexpr const char16_t* targetInstance = u"types:TargetInstance";
/// A link is named after the class of the set it leads to, with this at the end.
inline constexpr const char16_t* linkSuffix = u"_REF";
/// A link to an identifier that several sets have; in the namespace of the first one's class.
inline constexpr const char16_t* ambiguousLink = u"MULTIPLE_METADATASETS_REF";
/// A link to nothing, or to what the dictionary does not know.
inline constexpr const char16_t* danglingLink = u"s377m:Dangling_REF";
inline constexpr const char16_t* instanceUID = u"rp210:InstanceUID";
inline constexpr const char16_t* generationUID = u"rp210:GenerationUID";
/// The local name of a property whose UMID may be written as the basic one that it extends (SMPTE
/// ST 330).
inline constexpr const char16_t* extendedClipID = u"ExtendedClipID";

} // namespace Corvid::XMLBuilder::Names
