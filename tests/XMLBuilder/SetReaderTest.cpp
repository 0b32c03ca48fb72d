#include "XMLBuilder/format/InlineDepth.h"
#include "XMLBuilder/reader/dom/ReadDocument.h"
#include "host/types/UID.h"
#include "tests/XMLBuilder/Things.h"

namespace Corvid::Testing {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class SetReader : public Things {
protected:
    /// A thing's number when its property is written with that prefix in that scope.
    std::string numberIn(const std::string& xml) {
        return bytesOf(elementOf(*readXml(model_, xml).front(), "UInt8").value());
    }

    static const Metadata::SimpleElement& onlyExtension(const Model::Set& set) {
        if (set.invalidEnd() - set.invalidBegin() != 1) {
            throw std::invalid_argument("not one extension");
        }
        return dynamic_cast<const Metadata::SimpleElement&>(**set.invalidBegin());
    }

    static const MetaMetadata::UnknownAttribute& unknownAttributeOf(
        const Metadata::Element& element) {
        return dynamic_cast<const MetaMetadata::UnknownAttribute&>(*element.metaAttribute());
    }
};

TEST_F(SetReader, leavesAnEmptyElementsSetAsItWasMade) {
    const auto& set = readThing("");
    EXPECT_TRUE(set.hasInstanceUID());
    EXPECT_EQ(set.countValues(), 1U);
    EXPECT_EQ(set.invalidBegin(), set.invalidEnd());
}

TEST_F(SetReader, keepsTheFreshIdentifierForTheFirstOfAName) {
    const auto& set = readThing("", " rp210:InstanceUID='" + uuidText(7) + "'");
    EXPECT_NE(set.instanceUID(), uuid(7));
    EXPECT_NE(set.instanceUID(), Types::UUID());
}

TEST_F(SetReader, givesTwoSetsOfOneNameOneIdentifier) {
    const auto sets = readSets("<t:Thing rp210:InstanceUID='any text'/>"
                               "<t:Other rp210:InstanceUID='any text'/>"
                               "<t:Other rp210:InstanceUID='another'/>");
    const auto first = sets.front()->instanceUID();
    EXPECT_EQ((*std::next(sets.begin()))->instanceUID(), first);
    EXPECT_NE(sets.back()->instanceUID(), first);
}

TEST_F(SetReader, findsAttributesByTheirQualifiedNameOnly) {
    const std::string attribute = " xmlns:r='urn:SMPTE:RP210' r:GenerationUID='";
    EXPECT_EQ(
        bytesOf(elementOf(readThing("", attribute + uuidText(9) + "'"), "GenerationUID").value()),
        "none");
}

TEST_F(SetReader, readsTheGenerationAsItStands) {
    const auto& set = readThing("", " rp210:GenerationUID='" + uuidText(9) + "'");
    EXPECT_EQ(bytesOf(elementOf(set, "GenerationUID").value()), "00000000000000000000000000000009");
}

TEST_F(SetReader, findsAPropertyUnderAnyPrefixOfItsNamespace) {
    EXPECT_EQ(numberIn("<r xmlns:e='urn:test:elements'>"
                       "<Thing xmlns:z='urn:test:elements'><z:UInt8>5</z:UInt8></Thing></r>"),
              "05");
}

TEST_F(SetReader, passesOverAPropertyWhosePrefixMeansAnotherNamespace) {
    EXPECT_EQ(numberIn("<r xmlns:e='urn:test:elements'>"
                       "<Thing><e:UInt8 xmlns:e='urn:else'>5</e:UInt8></Thing></r>"),
              "none");
}

TEST_F(SetReader, takesWhatThePrefixMeansAtTheSet) {
    EXPECT_EQ(numberIn("<r xmlns:e='urn:test:elements'>"
                       "<Thing xmlns:e='urn:else'><e:UInt8>5</e:UInt8></Thing></r>"),
              "05");
    EXPECT_EQ(numberIn("<r><Thing xmlns:e='urn:else'><UInt8 xmlns='urn:test:elements'>5</UInt8>"
                       "</Thing></r>"),
              "none");
}

TEST_F(SetReader, findsPropertiesOfAnUndeclaredPrefixInTheFallbackNamespaceOnly) {
    EXPECT_EQ(
        numberIn("<r><Thing><x:UInt8 xmlns:x='http://www.smpte-ra.org'>5</x:UInt8></Thing></r>"),
        "05");
    EXPECT_EQ(numberIn("<r><Thing><x:UInt8 xmlns:x='urn:test:elements'>5</x:UInt8></Thing></r>"),
              "none");
    EXPECT_EQ(numberIn("<r><Thing><UInt8>5</UInt8></Thing></r>"), "none");
}

TEST_F(SetReader, readsTheFirstOfLikeChildrenAndNoOther) {
    const auto& set = readThing("<e:UInt8>1</e:UInt8><e:UInt8>2</e:UInt8><e:UInt16>3</e:UInt16>");
    EXPECT_EQ(bytesOf(elementOf(set, "UInt8").value()), "01");
    EXPECT_EQ(bytesOf(elementOf(set, "UInt16").value()), "0003");
    EXPECT_EQ(set.countValues(), 3U);
}

TEST_F(SetReader, passesOverPropertiesOfOtherClasses) {
    EXPECT_EQ(readThing("<e:OtherNumber>1</e:OtherNumber>").countValues(), 1U);
}

TEST_F(SetReader, takesKnownExtensionsAsMisplaced) {
    const auto& set = readThing("<groups:ExtensionElements><e:OtherNumber>7</e:OtherNumber>"
                                "</groups:ExtensionElements>");
    const auto& element = onlyExtension(set);
    EXPECT_EQ(bytesOf(element.value()), "07");
    EXPECT_NE(dynamic_cast<const MetaMetadata::MisplacedAttribute*>(element.metaAttribute().get()),
              nullptr);
}

TEST_F(SetReader, takesASecondOccurrenceAmongTheExtensionsAsMisplaced) {
    const auto& set = readThing("<e:UInt8>1</e:UInt8><groups:ExtensionElements>"
                                "<e:UInt8>2</e:UInt8></groups:ExtensionElements>");
    EXPECT_EQ(bytesOf(elementOf(set, "UInt8").value()), "01");
    EXPECT_EQ(bytesOf(onlyExtension(set).value()), "02");
}

TEST_F(SetReader, readsExtensionsOfEveryKind) {
    const auto& set = readThing(
        "<groups:ExtensionElements><e:WeakReference><s377m:X_REF a='n'/></e:WeakReference>"
        "<e:UInt8Array><e:Element>1</e:Element></e:UInt8Array></groups:ExtensionElements>");
    ASSERT_EQ(set.invalidEnd() - set.invalidBegin(), 2);
    EXPECT_NE(dynamic_cast<Metadata::ReferenceElement&>(**set.invalidBegin()).value(), nullptr);
    EXPECT_EQ(
        dynamic_cast<Metadata::ArrayElement&>(**std::next(set.invalidBegin())).value()->size(), 1U);
}

TEST_F(SetReader, takesUnknownExtensionsByTheirTag) {
    const auto& set = readThing("<groups:ExtensionElements>"
                                "<groups:DarkElement groups:StaticLocalTag='7f.01' "
                                "groups:UniversalLabel='not read'>0aFF</groups:DarkElement>"
                                "</groups:ExtensionElements>");
    EXPECT_EQ(bytesOf(onlyExtension(set).value()), "0aff");
    EXPECT_EQ(unknownAttributeOf(onlyExtension(set)).localTag().value(), 0x7F01);
    EXPECT_EQ(unknownAttributeOf(onlyExtension(set)).reason(),
              MetaMetadata::UnknownAttribute::unknownLabel);
}

TEST_F(SetReader, givesUnknownExtensionsWithALabelATag) {
    const std::string label = "06.0e.2b.34.01.01.01.01.0e.7f.7f.00.00.00.00.01";
    const auto& set =
        readThing("<groups:ExtensionElements><groups:DarkElement groups:UniversalLabel='" + label +
                  "'>00</groups:DarkElement></groups:ExtensionElements>");
    const auto& tag = unknownAttributeOf(onlyExtension(set)).localTag();
    EXPECT_FALSE(tag.isStaticLocalTag());
    const auto* found = model_.partition.partitionDictionary().find(tag, false);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(Platform::toUtf8(found->toString()), label);
}

/// Extension elements of one thing: each named by a tag, or by a label that ends in a number.
std::string extensions(std::initializer_list<const char*> names) {
    std::string xml = "<t:Thing><groups:ExtensionElements>";
    for (const std::string name : names) {
        xml += name.size() == 5
                   ? "<groups:DarkElement groups:StaticLocalTag='" + name + "'>00"
                   : "<groups:DarkElement groups:UniversalLabel='06.0e.2b.34.01.01.01.01.0e.7f.7f."
                     "00.00.00.00." +
                         name + "'>00";
        xml += "</groups:DarkElement>";
    }
    return xml + "</groups:ExtensionElements></t:Thing>";
}

TEST_F(SetReader, makesNoTagForALabelThatTheDocumentNamesElsewhere) {
    const auto sets = readSets(extensions({"01", "02"}) + extensions({"ff.ff", "ff.fd"}));
    const auto& labelled = *sets.front();
    EXPECT_EQ(unknownAttributeOf(*labelled.invalidBegin()[0]).localTag().value(), 0xFFFE);
    EXPECT_EQ(unknownAttributeOf(*labelled.invalidBegin()[1]).localTag().value(), 0xFFFC);
    const auto& tagged = *sets.back();
    EXPECT_EQ(unknownAttributeOf(*tagged.invalidBegin()[0]).localTag().value(), 0xFFFF);
    EXPECT_EQ(unknownAttributeOf(*tagged.invalidBegin()[1]).localTag().value(), 0xFFFD);
}

TEST_F(SetReader, givesANamedTagAwayWhereAnotherDocumentHadItMade) {
    readSets(extensions({"01"}));
    const auto sets = readSets(extensions({"ff.ff", "01"}));
    const auto* elements = &*sets.front()->invalidBegin();
    EXPECT_EQ(unknownAttributeOf(*elements[0]).localTag().value(), 0xFFFE);
    EXPECT_EQ(unknownAttributeOf(*elements[1]).localTag().value(), 0xFFFF);
}

TEST_F(SetReader, keepsUnknownPropertiesApartFromKnownOnesInAFile) {
    // The thing's number has no tag of its own, so it is given one when its bytes are made.
    const auto read = [&] {
        return readSets("<t:Thing><e:UInt8>1</e:UInt8></t:Thing>" + extensions({"ff.ff"}));
    };
    for (int round = 0; round != 2; ++round) {
        const auto sets = read();
        DataIO::Memory::MemoryDataSink sink;
        auto& primer = model_.partition.partitionDictionary();
        sets.front()->serialize(sink, primer);
        sets.back()->serialize(sink, primer);
        const auto unknown = unknownAttributeOf(onlyExtension(*sets.back())).localTag();
        EXPECT_EQ(primer.find(unknown, false), nullptr) << round;
    }
}

TEST_F(SetReader, refusesUnknownExtensionsWithNeitherTagNorLabel) {
    failureOf<Exceptions::InvalidFormat>([&] {
        readThing("<groups:ExtensionElements><groups:DarkElement>00</groups:DarkElement>"
                  "</groups:ExtensionElements>");
    });
}

TEST_F(SetReader, passesOverExtensionsWhereTheirPrefixIsNotDeclared) {
    const auto sets =
        readXml(model_, "<r xmlns:e='urn:test:elements'><Thing>"
                        "<groups:ExtensionElements xmlns:groups='urn:SMPTE:Groups:MXF'>"
                        "<e:OtherNumber>7</e:OtherNumber></groups:ExtensionElements>"
                        "</Thing></r>");
    EXPECT_EQ(sets.front()->invalidBegin(), sets.front()->invalidEnd());
}

TEST_F(SetReader, mindsForExtensionsWhatTheRootDeclaresOnly) {
    const auto sets =
        readXml(model_, "<r xmlns:groups='urn:SMPTE:Groups:MXF'>"
                        "<Thing xmlns:e='urn:test:elements'><groups:ExtensionElements>"
                        "<e:OtherNumber groups:StaticLocalTag='00.01'>07</e:OtherNumber>"
                        "</groups:ExtensionElements></Thing></r>");
    EXPECT_EQ(unknownAttributeOf(onlyExtension(*sets.front())).localTag().value(), 1);
}

/// Things inside each other, as many as asked for.
std::string nested(std::size_t depth) {
    std::string open;
    std::string close;
    for (std::size_t i = 1; i != depth; ++i) {
        open += "<t:Thing><e:StrongReference>";
        close = "</e:StrongReference></t:Thing>" + close;
    }
    return open + "<t:Thing/>" + close;
}

TEST_F(SetReader, readsSetsInsideEachOtherUpToTheLimit) {
    readSets(nested(XMLBuilder::greatestInlineDepth));
    EXPECT_EQ(model_.partition.size(), XMLBuilder::greatestInlineDepth);
    const auto failure = failureOf<Exceptions::LimitExceeded>(
        [&] { readSets(nested(XMLBuilder::greatestInlineDepth + 1)); });
    EXPECT_THAT(failure.message, HasSubstr("element t:Thing: sets are nested deeper than 256"));
    readSets(nested(XMLBuilder::greatestInlineDepth)); // each call counts anew
}

TEST_F(SetReader, handsOutTheTableOfNames) {
    const std::string xml =
        documentOf("<t:Thing rp210:InstanceUID='one'><e:WeakReference>"
                   "<t:X_REF types:TargetInstance='two'/></e:WeakReference></t:Thing>");
    XMLBuilder::InstanceNameTable names;
    const auto sets = XMLBuilder::readBuffer(reinterpret_cast<const unsigned char*>(xml.data()),
                                             xml.size(), &model_.partition, names);
    EXPECT_EQ(names.size(), 2U);
    const auto known = [&](const char16_t* written) {
        return names.findOrAdd(written, [] { return uuid(0); });
    };
    EXPECT_EQ(known(u"one"), sets.front()->instanceUID());
    EXPECT_EQ(
        known(u"two"),
        elementOf<Metadata::ReferenceElement>(*sets.front(), "WeakReference").value()->uuid());
}

TEST_F(SetReader, takesTheIdentifiersOfATableThatItIsGiven) {
    const std::string xml = documentOf("<t:Thing rp210:InstanceUID='one'/>");
    XMLBuilder::InstanceNameTable names;
    names.findOrAdd(u"one", [] { return uuid(5); });
    const auto sets = XMLBuilder::readBuffer(reinterpret_cast<const unsigned char*>(xml.data()),
                                             xml.size(), &model_.partition, names);
    EXPECT_EQ(sets.front()->instanceUID(), uuid(5));
}

TEST_F(SetReader, keepsWrittenIdentifiersWhereTheTableSaysSo) {
    const std::string written = "00.01.02.03.04.05.06.07.08.09.0A.0b.0C.0d.0E.0f";
    const std::string xml =
        documentOf("<t:Thing rp210:InstanceUID='" + written +
                   "'><e:WeakReference><t:X_REF types:TargetInstance='" + uuidText(7) +
                   "'/></e:WeakReference></t:Thing><t:Thing rp210:InstanceUID='one'/>"
                   "<t:Thing rp210:InstanceUID='" +
                   written + ".10'/>");
    XMLBuilder::InstanceNameTable names(XMLBuilder::WrittenIdentifiers::kept);
    const auto sets = XMLBuilder::readBuffer(reinterpret_cast<const unsigned char*>(xml.data()),
                                             xml.size(), &model_.partition, names);
    EXPECT_EQ(bytesOf(elementOf(*sets.front(), "InstanceUID").value()),
              "000102030405060708090a0b0c0d0e0f");
    EXPECT_EQ(elementOf<Metadata::ReferenceElement>(*sets.front(), "WeakReference").value()->uuid(),
              uuid(7));
    EXPECT_EQ(names.size(), 2U); // the others are identifiers
    for (const auto* set : sets) {
        EXPECT_EQ(model_.partition.resolve(set->instanceUID()).size(), 1U);
    }
}

struct Unreadable {
    const char* name;
    const char* inside;
    const char* place;
};
void PrintTo(const Unreadable& c, std::ostream* out) { *out << c.name; }

class TellsPlaces : public Things, public testing::WithParamInterface<Unreadable> {};

TEST_P(TellsPlaces, onlyWhereItIsAsked) {
    const std::string xml = documentOf(GetParam().inside);
    const auto messageOf = [&](XMLBuilder::Places places) {
        return failureOf<Exceptions::InvalidFormat>([&] {
            XMLBuilder::InstanceNameTable names;
            XMLBuilder::readBuffer(reinterpret_cast<const unsigned char*>(xml.data()), xml.size(),
                                   &model_.partition, names, places);
        });
    };
    const Failure untold = messageOf(XMLBuilder::Places::untold);
    const Failure told = messageOf(XMLBuilder::Places::told);
    EXPECT_EQ(told.message, GetParam().place + untold.message);
    EXPECT_EQ(told.file, untold.file);
    EXPECT_EQ(told.line, untold.line);
}

INSTANTIATE_TEST_SUITE_P(
    , TellsPlaces,
    testing::Values(
        Unreadable{"OfAProperty", "<t:Thing rp210:InstanceUID='one'><e:UUID>x</e:UUID></t:Thing>",
                   "set Thing one: e:UUID: "},
        Unreadable{"OfAnItem",
                   "<t:Thing><e:UInt8>1</e:UInt8><e:UUIDArray><a>x</a></e:UUIDArray></t:Thing>",
                   "set Thing: e:UUIDArray: "},
        Unreadable{"OfASetInsideAReference",
                   "<t:Thing><e:StrongReference><t:Other><groups:ExtensionElements><e:UUID>x"
                   "</e:UUID></groups:ExtensionElements></t:Other></e:StrongReference></t:Thing>",
                   "set Other: e:UUID: "},
        Unreadable{"BehindASetInsideAReference",
                   "<t:Thing><e:StrongReferenceArray><t:Other><e:OtherNumber>1</e:OtherNumber>"
                   "</t:Other></e:StrongReferenceArray><e:UUID>x</e:UUID></t:Thing>",
                   "set Thing: e:UUID: "},
        Unreadable{"OfATag",
                   "<t:Thing><e:UInt8>1</e:UInt8><groups:ExtensionElements><a "
                   "groups:StaticLocalTag='x'/></groups:ExtensionElements></t:Thing>",
                   "set Thing: "},
        Unreadable{"OutsideOfSets",
                   "<t:Thing><e:UInt8>1</e:UInt8></t:Thing><groups:FloatingDarkMetadata><a/>"
                   "</groups:FloatingDarkMetadata>",
                   ""}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(SetReader, namesAPropertyOnceInAMessage) {
    const std::string xml = documentOf("<t:Thing><e:UTF16String>" + std::string(32768, 'x') +
                                       "</e:UTF16String></t:Thing>");
    const auto failure = failureOf<Exceptions::LimitExceeded>([&] {
        XMLBuilder::InstanceNameTable names;
        XMLBuilder::readBuffer(reinterpret_cast<const unsigned char*>(xml.data()), xml.size(),
                               &model_.partition, names, XMLBuilder::Places::told);
    });
    EXPECT_THAT(failure.message, testing::StartsWith("set Thing: e:UTF16String: value of 65536"));
}

} // namespace
} // namespace Corvid::Testing
