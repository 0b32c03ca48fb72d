#include "tests/XMLBuilder/Things.h"
#include "tests/support/MemoryBounds.h"
#include "tests/support/PeakMemory.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/SmallStack.h"

namespace Corvid::Testing {
namespace {

using testing::HasSubstr;

/// As much as a hostile document has of something, and fewer of what takes more time.
constexpr std::size_t many = 1000000;
#if defined(CORVID_ADDRESS_SANITIZER) || defined(CORVID_THREAD_SANITIZER)
constexpr std::size_t some = 20000;
constexpr std::size_t manyComponents = some;
#else
constexpr std::size_t some = 100000;
constexpr std::size_t manyComponents = many;
#endif

std::string repeat(const std::string& text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i != count; ++i) {
        result += text;
    }
    return result;
}

/// Text inside nested elements.
std::string inside(const std::string& open, const std::string& text, const std::string& close,
                   std::size_t depth) {
    return repeat(open, depth) + text + repeat(close, depth);
}

std::string thing(const std::string& tag, const std::string& content) {
    return "<t:Thing><e:" + tag + ">" + content + "</e:" + tag + "></t:Thing>";
}

/// The exceptions that a document may deserve.
enum class Fate { read, parseError, invalidFormat, invalidLength, limitExceeded };

Fate fateOf(const Exceptions::BaseException& e) {
    if (dynamic_cast<const Exceptions::ParseError*>(&e) != nullptr) {
        return Fate::parseError;
    }
    if (dynamic_cast<const Exceptions::InvalidFormat*>(&e) != nullptr) {
        return Fate::invalidFormat;
    }
    if (dynamic_cast<const Exceptions::InvalidLength*>(&e) != nullptr) {
        return Fate::invalidLength;
    }
    if (dynamic_cast<const Exceptions::LimitExceeded*>(&e) != nullptr) {
        return Fate::limitExceeded;
    }
    throw;
}

struct Case {
    const char* name;
    std::string (*inside)(); ///< the document, or what is in its root
    Fate fate;
    const char* message; ///< a part of it
    std::size_t sets;    ///< in the partition afterwards

    std::string document() const {
        const std::string text = inside();
        return text.front() == '!' ? text.substr(1) : documentOf(text);
    }
};

void PrintTo(const Case& c, std::ostream* to) { *to << c.name; }
std::string nameOfCase(const testing::TestParamInfo<Case>& info) { return info.param.name; }

class HostileDocument : public Things, public testing::WithParamInterface<Case> {
protected:
    /// Reads the document; fate_ and message_ have the result.
    void read(const std::string& xml) {
        try {
            readXml(model_, xml);
            fate_ = Fate::read;
        } catch (const Exceptions::BaseException& e) {
            fate_ = fateOf(e);
            message_ = Platform::toUtf8(e.message());
        }
    }

    Fate fate_ = Fate::read;
    std::string message_;
};

TEST_P(HostileDocument, isReadOrRefusedOnASmallStack) {
    const std::string xml = GetParam().document();
    onSmallStack([&] { read(xml); });
    EXPECT_EQ(fate_, GetParam().fate) << message_;
    EXPECT_THAT(message_, HasSubstr(GetParam().message));
    EXPECT_LT(message_.size(), 500U);
    EXPECT_EQ(model_.partition.size(), GetParam().sets);
}

TEST_P(HostileDocument, takesMemoryInProportionToItsSize) {
    const std::string xml = GetParam().document();
    readThing("<e:UInt8>1</e:UInt8>"); // what is made once per process is no part of it
    const auto peak = peakMemoryOf([&] { read(xml); });
    if (!peak) {
        GTEST_SKIP() << "sanitizers have their own ways with memory";
    }
    // The five bytes of "<a/>x" become two nodes of some 390 bytes: nothing takes a greater
    // multiple.
    EXPECT_LE(*peak, MemoryBounds::documentToMetadata * xml.size() + MemoryBounds::constant);
    RecordProperty("multiple", std::to_string(*peak / xml.size()));
}

struct Item {
    const char* name;
    const char* text;
};

class HostileItems : public Things, public testing::WithParamInterface<Item> {};

TEST_P(HostileItems, takeMemoryInProportionToTheirSizeHoweverFewThereAre) {
    readThing("<e:UInt8>1</e:UInt8>");
    for (const std::size_t size : MemoryBounds::sizes) {
        const std::string text = GetParam().text;
        const std::string xml = documentOf(repeat(text, size / text.size() + 1));
        const auto peak = peakMemoryOf([&] { readXml(model_, xml); });
        if (!peak) {
            GTEST_SKIP() << "sanitizers have their own ways with memory";
        }
        EXPECT_LE(*peak, MemoryBounds::documentToMetadata * xml.size() + MemoryBounds::constant)
            << size;
    }
}

INSTANTIATE_TEST_SUITE_P(, HostileItems,
                         testing::Values(Item{"ElementsAndText", "<a/>x"},
                                         Item{"Sets", "<t:Thing/>"}),
                         [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Depth, HostileDocument,
    testing::Values(Case{"Elements", [] { return "!" + inside("<a>", "", "</a>", many); },
                         Fate::parseError, "element a is 4097 deep, expected at most 4096", 0},
                    Case{"ElementsBelowTheLimit",
                         [] { return "!" + inside("<a>", "", "</a>", 4096); }, Fate::read, "", 0},
                    Case{"OpenElementsOnly", [] { return "!" + repeat("<a>", many); },
                         Fate::parseError, "element a is 4097 deep", 0},
                    Case{"Value",
                         [] { return thing("UTF16String", inside("<a>", "", "</a>", many)); },
                         Fate::parseError, "element a is 4097 deep", 0},
                    Case{"ValueBelowTheLimit",
                         [] { return thing("UTF16String", inside("<a>", "x", "</a>", 4090)); },
                         Fate::read, "", 1},
                    Case{"SetsInReferences",
                         [] {
                             return inside("<t:Thing><e:StrongReference>", "<t:Thing/>",
                                           "</e:StrongReference></t:Thing>", many / 2);
                         },
                         Fate::parseError, " is 4097 deep", 0},
                    Case{"SetsInReferencesBelowThatLimit",
                         [] {
                             return inside("<t:Thing><e:StrongReference>", "<t:Thing/>",
                                           "</e:StrongReference></t:Thing>", 2000);
                         },
                         Fate::limitExceeded, "sets are nested deeper than 256", 257},
                    Case{"SetsInReferencesAtTheLimit",
                         [] {
                             return inside("<t:Thing><e:StrongReferenceArray>", "<t:Thing/>",
                                           "</e:StrongReferenceArray></t:Thing>", 255);
                         },
                         Fate::read, "", 256},
                    Case{"Extensions",
                         [] {
                             return "<t:Thing>" +
                                    inside("<groups:ExtensionElements>", "",
                                           "</groups:ExtensionElements>", 4000) +
                                    "</t:Thing>";
                         },
                         Fate::invalidFormat, "", 1},
                    Case{"DarkSets",
                         [] {
                             return inside("<groups:FloatingDarkMetadata>", "<t:Thing/>",
                                           "</groups:FloatingDarkMetadata>", 4000);
                         },
                         Fate::invalidFormat, "no attribute 'groups:Key'", 0}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    Width, HostileDocument,
    testing::Values(
        Case{"Elements", [] { return repeat("<a/>", some); }, Fate::read, "", 0},
        Case{"ElementsAndText", [] { return repeat("<a/>x", some); }, Fate::read, "", 0},
        Case{"ElementsAndBlanks", [] { return repeat("<a/> ", some); }, Fate::read, "", 0},
        Case{"Names",
             [] {
                 std::string text;
                 for (std::size_t i = 0; i != some; ++i) {
                     text += "<a" + std::to_string(i) + "/>";
                 }
                 return text;
             },
             Fate::parseError, "different names of elements and attributes", 0},
        Case{"Attributes",
             [] {
                 std::string text = "<t:Thing";
                 for (std::size_t i = 0; i != some; ++i) {
                     text += " a" + std::to_string(i) + "=''";
                 }
                 return text + "/>";
             },
             Fate::parseError, "attributes, expected at most 1024", 0},
        Case{"CommentsAndInstructions", [] { return repeat("<!----><?a?>", some); }, Fate::read, "",
             0},
        Case{"NameLength", [] { return "<" + std::string(some, 'a') + "/>"; }, Fate::read, "", 0},
        Case{"SetsOfOneIdentifier",
             [] { return repeat("<t:Other rp210:InstanceUID='one'/>", some); }, Fate::read, "",
             some},
        Case{"Sets", [] { return repeat("<t:Thing/>", some); }, Fate::read, "", some},
        Case{"References",
             [] { return thing("WeakReferenceBatch", repeat("<X_REF a='nothing'/>", some)); },
             Fate::read, "", 1},
        Case{"SetsInAReference",
             [] { return thing("StrongReferenceArray", repeat("<t:Other/>", some)); }, Fate::read,
             "", some + 1},
        Case{"UnknownSetsInAReference",
             [] { return thing("StrongReferenceArray", repeat("<u/>", some)); }, Fate::read, "", 1},
        Case{"Items", [] { return thing("UInt8Array", repeat("<i>1</i>", some)); }, Fate::read, "",
             1},
        Case{"ItemsThatAreMeasured",
             [] { return thing("DataStreamArray", repeat("<i>00</i>", some)); }, Fate::read, "", 1},
        Case{"ItemsOfNothing", [] { return thing("DataStreamBatch", repeat("<i/>", some)); },
             Fate::read, "", 1},
        Case{"ItemsOfTwoSizes",
             [] { return thing("DataStreamArray", repeat("<i>00</i>", some) + "<i/>"); },
             Fate::invalidLength, "elements with different sizes", 1},
        Case{"PixelComponents",
             [] {
                 return "<t:Thing xmlns:c='urn:SMPTE:Types:MXF'><e:RGBALayout>" +
                        repeat("<c:RGBAComponent/>", manyComponents) + "</e:RGBALayout></t:Thing>";
             },
             Fate::read, "", 1},
        Case{"PropertiesOfOneName",
             [] { return "<t:Thing>" + repeat("<e:UInt8>1</e:UInt8>", some) + "</t:Thing>"; },
             Fate::read, "", 1},
        Case{"ExtensionsOfOneTag",
             [] {
                 return "<t:Thing><groups:ExtensionElements>" +
                        repeat("<x groups:StaticLocalTag='80.00'>00</x>", some) +
                        "</groups:ExtensionElements></t:Thing>";
             },
             Fate::read, "", 1},
        Case{"ExtensionsOfMoreLabelsThanTags",
             [] {
                 std::string text = "<t:Thing><groups:ExtensionElements>";
                 for (int i = 0; i != 0x8001; ++i) {
                     char end[6];
                     std::snprintf(end, sizeof end, "%02x.%02x", i >> 8, i & 0xFF);
                     text +=
                         "<x groups:UniversalLabel='06.0e.2b.34.01.01.01.01.0e.7f.7f.00.00.00." +
                         std::string(end) + "'>00</x>";
                 }
                 return text + "</groups:ExtensionElements></t:Thing>";
             },
             Fate::limitExceeded, "all 32768 dynamic local tags", 1},
        Case{"DarkSets",
             [] {
                 return "<groups:FloatingDarkMetadata>" +
                        repeat("<x groups:Key='00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f' "
                               "groups:BEROctetCount='4'/>",
                               some) +
                        "</groups:FloatingDarkMetadata>";
             },
             Fate::read, "", 0}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    Length, HostileDocument,
    testing::Values(
        Case{"DigitsOfANumber", [] { return thing("UInt64", std::string(many, '9')); }, Fate::read,
             "", 1},
        Case{"ZerosOfANumber", [] { return thing("Int8", std::string(many, '0') + "7"); },
             Fate::read, "", 1},
        Case{"BlanksBeforeANumber", [] { return thing("UInt8", std::string(many, ' ') + "7"); },
             Fate::read, "", 1},
        Case{"Identifier", [] { return thing("UUID", repeat("00.", many)); }, Fate::invalidFormat,
             "", 1},
        Case{"NameOfAnIdentifier",
             [] { return "<t:Thing rp210:InstanceUID='" + std::string(many, '0') + "'/>"; },
             Fate::read, "", 1},
        Case{"Generation",
             [] { return "<t:Thing rp210:GenerationUID='" + std::string(many, '0') + "'/>"; },
             Fate::invalidFormat, "", 1},
        Case{"Text", [] { return thing("UTF16String", std::string(many, 'x')); },
             Fate::limitExceeded, "e:UTF16String: value of ", 1},
        Case{"Bytes", [] { return thing("DataStream", std::string(2 * many, '0')); },
             Fate::limitExceeded, "e:DataStream: value of ", 1},
        Case{"KeyOfADarkSet",
             [] {
                 return "<groups:FloatingDarkMetadata><x groups:Key='" + repeat("00.", many) +
                        "' groups:BEROctetCount='4'/></groups:FloatingDarkMetadata>";
             },
             Fate::invalidFormat, "", 0},
        Case{"BytesOfADarkSet",
             [] {
                 return "<groups:FloatingDarkMetadata><x "
                        "groups:Key='00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f' "
                        "groups:BEROctetCount='" +
                        std::string(many, '9') + "'>" + std::string(2 * many, '0') +
                        "</x></groups:FloatingDarkMetadata>";
             },
             Fate::read, "", 0}),
    nameOfCase);

} // namespace
} // namespace Corvid::Testing
