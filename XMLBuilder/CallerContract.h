#pragma once

#include "host/types/Identifiers.h"

#include <string>

/// What callers of the library see in exceptions, or can infer from what is read, and may therefore
/// never change, wherever the code that it is about moves. The names of compound values' parts, the
/// conditions that their checks quote and the order of the checks are fixed in the same way; they
/// are in the tables of format/CompoundFields.h. host/base/Exceptions.h has the number of each
/// class of exceptions.
namespace Corvid::XMLBuilder::CallerContract {

/// The file names of exceptions.
namespace File {
inline constexpr const char* valueParsers = "Corvid/XMLBuilder/FromXMLElementVisitor";
inline constexpr const char* reader = "Corvid/XMLBuilder/XML2Partition";
inline constexpr const char* translation = "Corvid/XMLUtils/Utils";
} // namespace File

/// Their line numbers. Exceptions of the value parsers have the line of the check.
namespace Line {
inline constexpr int darkValueOfOddLength = 89; ///< of File::reader, as the next four
inline constexpr int darkValueWithoutDigits = 99;
inline constexpr int readBuffer = 282; ///< of an unknown exception, as the next two
inline constexpr int readString = 298;
inline constexpr int readFile = 313;
inline constexpr int translation = 207;
} // namespace Line

/// The conditions and explanations of checks; CompoundFields.h has those of single parts.
namespace Text {
inline constexpr const char* wrapperIsThere = "domComponentElement != 0";
inline std::string wrapperIsCalled(const std::string& name) {
    return "retrieveNodeName (domComponentElement) == L\"" + name + "\"";
}
inline std::string noWrapper(const std::string& name, const std::string& property) {
    return "No '" + name + "' element from '" + property + "' in XML metadata";
}
inline std::string noPart(const std::string& name) {
    return "No '" + name + "' element in XML metadata";
}
inline constexpr const char* itemsHaveOneSize = "subElementSize == dataType -> serializedSize ()";
inline constexpr const char* itemsDiffer =
    "There is a collection in the XML that contains an ARRAY or COLLECTION that contain elements "
    "with different sizes.";
/// What is wrong with hexadecimal text; "Value " or the name of the dark set is before it.
inline constexpr const char* oddLength = "has invalid Length";
inline constexpr const char* noDigits = "contains non Hexadecimal characters";
/// The beginnings of translated exceptions; ": " follows.
inline constexpr const char16_t* ofXQilla = u"XQillaException:";
inline constexpr const char16_t* ofXQuery = u"XQException:";
inline constexpr const char16_t* ofDom = u"DOMException:";
inline constexpr const char16_t* ofEncoding = u"class xercesc_3_0::UTFDataFormatException";
inline constexpr const char16_t* ofSax = u"class xercesc_3_0::SAXException";
inline constexpr const char16_t* ofXml = u"class xercesc_3_0::XMLException";
inline constexpr const char* unknownError = "Unknown error in Xerces or XQilla";
} // namespace Text

/// True for the types whose items in a collection are measured: all must be of one size, which is
/// the item size of the collection. Items of other types have the size of their type.
constexpr bool hasVariableSize(Types::Identifiers::Identifier type) noexcept {
    using namespace Types::Identifiers;
    switch (type) {
    case DataStream:
    case DataValue:
    case ISO7String:
    case UTF16String:
    case Unknown:
        return true;
    default:
        return false;
    }
}

} // namespace Corvid::XMLBuilder::CallerContract
