// Uses what the installed headers declare, as an application would: whatever is not exported, or
// not installed, stops this program from being built.

#include "XMLBuilder/XML2Partition.h"
#include "XMLBuilder/XMLBuilder.h"
#include "editing/DocumentMetadata.h"
#include "editing/RoundTrip.h"
#include "editing/WriteDocument.h"
#include "host/base/Exceptions.h"
#include "host/dataio/BufferedSink.h"
#include "host/dataio/Memory.h"
#include "host/dataio/MemorySource.h"
#include "host/dataio/OpenSource.h"
#include "host/dictionary/AbstractMetaAttributeVisitor.h"
#include "host/dictionary/Dictionary.h"
#include "host/dictionary/MetaAttribute.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/dictionary/Registers.h"
#include "host/dictionary/UnknownAttribute.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/mxf/File.h"
#include "host/mxf/HeaderMetadataWriter.h"
#include "host/types/Factories.h"
#include "host/types/UID.h"
#include "host/xmlutils/CleanDocument.h"
#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/LoadDocument.h"
#include "host/xmlutils/Serialise.h"
#include "inspection/Glossary.h"
#include "inspection/RegisteredName.h"
#include "inspection/StructuralLabels.h"
#include "inspection/Summary.h"

#include <xercesc/dom/DOM.hpp>

#include <iostream>
#include <stdexcept>

using namespace Corvid;

namespace {

void require(bool holds, const char* what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

std::string text(const Utf16Text& wide) { return Platform::toUtf8(wide); }

template <class Exception> void catchAs(const char* message) {
    try {
        throw Exception(message, CORVID_HERE);
    } catch (const Exceptions::BaseException& caught) {
        require(text(caught.message()) == message && caught.code() != 0 && caught.line() > 0,
                "exceptions");
    }
}

void useExceptions() {
#define CORVID_CATCH(Class, Code) catchAs<Exceptions::Class>(#Class);
    CORVID_EXCEPTION_FAMILY(CORVID_CATCH)
    require(Platform::wstringToString(Platform::widen("abc")) == "abc", "text");
}

/// Counts the values that it is shown.
struct Counting : Types::Visitors::Visitor {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    void visit(const Types::Class&) override { ++count; }
#include "host/types/ValueTypes.def"
    int count = 0;
};

void useTypes() {
    using namespace Types;
    const u8 bytes[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    Counting visitor;
    DataIO::Memory::MemoryDataSink sink;
    const auto use = [&](const DataType& value) {
        value.accept(visitor);
        value.serialize(sink);
        require(value.rawBuffer() != nullptr && value.byteCount() == value.serializedSize(),
                "value");
    };
    const Utf16Text a = Platform::fromUtf8("a");
    use(UInt8(1)), use(UInt16(1)), use(UInt32(1)), use(UInt64(1)), use(Int8(1)), use(Int16(1));
    use(Int32(1)), use(Int64(1)), use(Position(1)), use(Length(1)), use(Orientation(1));
    use(SignalStandard(1)), use(Boolean(true)), use(UTF16('a')), use(UTF16String(a.c_str()));
    use(ISO7String("a")), use(UUID()), use(UniversalLabel()), use(UMID32()), use(UMID64());
    use(LocalTag(u16{1})), use(Rational(1, 2)), use(Timestamp(1, 1, 1, 1, 1, 1, 4));
    use(VersionType(1, 2)), use(ProductVersion(1, 2, 3, 4, ProductVersion::releasedVersion));
    RGBALayout layout;
    layout.set(0, {'R', 8});
    require(layout.get(0).depth == 8, "layout");
    use(layout), use(J2KPictureComponent(1, 2, 3)), use(J2KCodingStyleDefault(1, 2, bytes, 3));
    use(J2KQuantisationDefault(1, bytes, 3)), use(DataStream(bytes, 3));
    KLV::Value value(bytes, sizeof bytes);
    use(Unknown(value)), use(DataValue(ByteView{bytes, 3})), use(StrongReference(UUID()));
    use(WeakReference(UUID()));
    Array array(1);
    array.add(UInt8(1).clone());
    array.remove(0);
    Batch batch(2);
    batch.add(UInt16(1).clone());
    use(array), use(batch), use(*array.clone()), use(*batch.clone());
    require(visitor.count == 38, "visitor");
    require(static_cast<bool>(Factories::fromBytes(Identifiers::UInt8, {bytes, 1})), "factory");
    require(Identifiers::typeSize(Identifiers::UUID) == 16, "size of a type");
    const UUID fresh = Factories::UID::generateUUID(Factories::UID::uniqueVersion);
    require(UUID(fresh.toString().c_str(), dottedHexadecimal) == fresh, "identifier text");
    require(Factories::UID::setRandomSource(nullptr) != nullptr, "random source");
}

struct KindOfAttribute : MetaMetadata::AbstractMetaAttributeVisitor {
    void visit(const MetaMetadata::UnknownAttribute&) override { kind = 2; }
    void visit(const MetaMetadata::MisplacedAttribute&) override { kind = 1; }
    void visit(const MetaMetadata::MetaAttribute&) override { kind = 0; }
    int kind = -1;
};

Templates::SharedPtr<MetaMetadata::Dictionary> useDictionary() {
    using namespace MetaMetadata;
    const auto builtIn = Dictionary::builtIn();
    Dictionary::Texts texts;
    texts.push_back({"own.dict",
                     "namespace s377m urn:SMPTE:S377M\nnamespace o urn:example:own\n"
                     "extend s377m:Preface\n"
                     "property o:Note 06.0e.2b.34.01.01.01.01.0f.7e.01.00.00.00.00.01 - "
                     "UTF16String optional -\n"});
    const auto dictionary = Dictionary::extend(*builtIn, texts);
    const auto* element = dictionary->findElementByStaticTag(0x3C0A);
    require(dictionary->findElement(element->label()) == element &&
                element->isCollection() == false,
            "property");
    const auto* set = dictionary->findSet(Metadata::Structural::StructuralMetadataKeys::preface());
    require(set->isConcrete() && set->find(element->label()) != nullptr, "set");
    for (const AbstractMetaAttribute* attribute :
         {static_cast<const AbstractMetaAttribute*>(set->attributes().front().get()),
          static_cast<const AbstractMetaAttribute*>(new MisplacedAttribute(*element)),
          static_cast<const AbstractMetaAttribute*>(new UnknownAttribute(
              Types::LocalTag(Types::u16{1}), UnknownAttribute::unknownLabel))}) {
        KindOfAttribute visitor;
        attribute->accept(visitor);
        require(visitor.kind >= 0, "attribute");
        if (visitor.kind != 0) {
            delete attribute;
        }
    }
    require(Registers::labels().size() > 1000 && Registers::groups().find("Preface").has_value() &&
                Registers::types().size() > 100 && Registers::properties().size() > 1000 &&
                !Registers::aliases().empty() && !Registers::branches().empty(),
            "registers");
    return dictionary;
}

struct Walk : Metadata::Visitors::MetadataSetVisitor, Metadata::Visitors::ElementVisitor {
    void visit(const Metadata::MetadataSet& set) override {
        for (const auto& [label, element] : set) {
            const Metadata::Element& each = *element;
            each.accept(*this);
        }
    }
    void visit(const Metadata::ReferenceBatchElement& e) override { references += e.size(); }
    void visit(const Metadata::ReferenceArrayElement& e) override { references += e.size(); }
    void visit(const Metadata::ReferenceElement& e) override { references += e.value() ? 1 : 0; }
    void visit(const Metadata::BatchElement& e) override { values += e.value() ? 1 : 0; }
    void visit(const Metadata::ArrayElement& e) override { values += e.value() ? 1 : 0; }
    void visit(const Metadata::SimpleElement& e) override { values += e.value() ? 1 : 0; }

    Types::u32 references = 0;
    int values = 0;
};

void useMetadata(Metadata::PartitionMetadata& partition) {
    using namespace Metadata;
    const auto keyOf = [](unsigned char last) {
        auto bytes = Structural::StructuralMetadataKeys::preface().bytes();
        bytes[14] = last;
        return KLV::Key(bytes);
    };
    MetadataSet& preface = partition.createMetadataSet(keyOf(0x2F));
    MetadataSet& storage = partition.createMetadataSet(keyOf(0x18));
    require(KLV::isStructuralMetadataSet(storage.key()), "key");
    for (const auto& [label, element] : preface) {
        if (auto* one = dynamic_cast<ReferenceElement*>(element); one && one->isSkipped()) {
            one->set(&storage);
            break;
        }
    }
    Element& unknown =
        preface.createInvalidElement(Element::Attribute(new MetaMetadata::UnknownAttribute(
            Types::LocalTag(Types::u16{0x7F01}), MetaMetadata::UnknownAttribute::unknownLabel)));
    const unsigned char bytes[] = {1, 2, 3};
    require(unknown.parse({bytes, sizeof bytes}), "unknown element");
    KLV::Value value(bytes, sizeof bytes);
    partition.addDarkMetadataSet(Templates::auto_ptr<DarkMetadataSet>(new DarkMetadataSet(
        KLV::Key(std::array<unsigned char, 16>{6, 0x0E, 0x2B, 0x34, 2}), 4, value)));
    DarkParsedGroup& group = partition.createDarkParsedGroup(
        KLV::Key(std::array<unsigned char, 16>{6, 0x0E, 0x2B, 0x34, 2, 0x53, 1, 1, 0x0F, 0x7F}));
    group.setInstanceUID(Types::Factories::UID::generateUUID(Types::Factories::UID::uniqueVersion),
                         0);
    require(partition.resolve(storage.instanceUID()).size() == 1, "resolve");
    Walk walk;
    preface.accept(walk);
    require(walk.references == 1 && walk.values == 1, "walk");
    Templates::vector<const MetadataSet*> order;
    require(partition.calculateSerializationOrder(order, true, false) == 1 && order.size() == 3,
            "order");
}

void useInspection(mxf::File& file, const mxf::HeaderMetadata& metadata) {
    namespace Structural = Inspection::Structural;
    const Inspection::Summary summary = Inspection::summarise(file, metadata);
    require(summary.sets == 4 && summary.setsByKind.at("Preface") == 1, "summary");
    require(Inspection::timecodeText({25, 25, false}) == "00:00:01:00" &&
                Inspection::seconds(50, Types::Rational(25, 1)) == 2.0,
            "times");
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    const Inspection::Glossary glossary(*dictionary);
    const auto found = glossary.find("TrackName");
    require(found.match == Inspection::Glossary::Match::name && found.entries.size() == 1,
            "glossary");
    require(glossary.near("TrakName").front() == "Track Name", "near names");
    const auto label = Inspection::labelOf(found.entries.front()->subject);
    require(label && !Inspection::registeredName(*label).empty() &&
                Inspection::registeredName("Preface").empty() &&
                Inspection::branchesOf(*label).empty(),
            "registered names");
    require(!Structural::isOfMetaDictionary(Structural::keyOf(Structural::SetClass::timecode)) &&
                Structural::operationalPatternName(*label).empty() &&
                Structural::operationalPatternWords(*label).empty() &&
                Structural::trackKind(*label).empty(),
            "structural labels");
}

void useEditing(Metadata::PartitionMetadata& partition) {
    require(Editing::compareWithRoundTrip(partition).differences.empty(), "round trip");
    DataIO::Memory::MemoryDataSink written;
    Editing::writeDocument(partition, {}, written);
    const auto dictionary = partition.partitionDictionary().dictionary();
    DataIO::Memory::MemoryDataSource document(written.rawBuffer(), written.serializedSize());
    const Editing::DocumentMetadata read = Editing::readDocument(document, dictionary);
    require(read.doubts.empty() && read.copies.equal == 0 && read.supplement.overruled == 0,
            "document");
    DataIO::Memory::MemoryDataSource again(written.rawBuffer(), written.serializedSize());
    const auto fresh =
        Editing::readDocument(again, dictionary, Editing::DocumentIdentifiers::fresh);
    const Editing::Comparison same = Editing::compare(partition, *read.metadata);
    const Editing::Comparison other = Editing::compare(*read.metadata, *fresh.metadata, 1);
    require(same.differences.empty() &&
                other.differences.count(Editing::DifferenceKind::missingSet) != 0 &&
                std::string(describe(other.differences.begin()->kind).name) != "",
            "comparison");
    Editing::Differences united(1);
    united.add(*other.differences.begin());
    united.unite(Editing::Differences(1));
    require(united.count() == 1 && united.leftOut() == 0, "differences");
    try {
        const unsigned char bad[] = "<a/>";
        DataIO::Memory::MemoryDataSource noDocument(bad, sizeof bad - 1);
        Editing::readDocument(noDocument, dictionary);
        require(false, "DocumentMistakes");
    } catch (const Editing::DocumentMistakes& refusal) {
        require(refusal.count() != 0 && refusal.mistakes().front().line == 1, "mistakes");
    }
}

/// @return a file that holds the metadata.
DataIO::Memory::MemoryDataSink useFiles(Metadata::PartitionMetadata& partition) {
    DataIO::Memory::MemoryDataSink file;
    DataIO::BufferedSink sink(file);
    mxf::PartitionPack pack;
    pack.status = mxf::PartitionStatus::closedComplete;
    require(std::string(pack.kindName()).size() + std::string(pack.statusName()).size() != 0,
            "pack");
    const mxf::HeaderMetadataWriter writer(partition);
    mxf::writeHeaderPartition(pack, writer, sink);
    sink.flush();
    mxf::NoWarnings warnings;
    mxf::File opened(Templates::auto_ptr<DataIO::RandomAccessSource>(
                         new DataIO::MemorySource(file.rawBuffer(), file.serializedSize())),
                     MetaMetadata::Dictionary::builtIn(), warnings);
    const mxf::HeaderMetadata read = opened.readMetadata();
    require(opened.partitions().size() == 1 && read.metadata->size() == 3, "file");
    useInspection(opened, read);
    useEditing(*read.metadata);
    try {
        DataIO::openSource("/no such file");
        require(false, "openSource");
    } catch (const Exceptions::IOError&) {
    }
    return file;
}

void useXml(Metadata::PartitionMetadata& partition) {
    Utf16Text document;
    XMLBuilder::partition2XML(&partition, false, false, XMLUtils::EncodingType::utf8, document);
    const std::string utf8 = text(document);
    require(utf8.find(text(XMLBuilder::getNamespaceURI().text())) != std::string::npos &&
                utf8.find(text(XMLBuilder::getPrefix().text())) != std::string::npos,
            "document");
    Metadata::PartitionMetadata other(partition.partitionDictionary().dictionary());
    require(XML2Partition::getPartitionMetadataFromString(document, &other).size() == 2, "reader");
    try {
        const unsigned char bad[] = {'<'};
        XML2Partition::getPartitionMetadataFromBuffer(bad, 1, &other);
        require(false, "ParseError");
    } catch (const Exceptions::ParseError&) {
    }
    auto* implementation = XMLUtils::Initializer::instance().domImplementation();
    auto* parser =
        implementation->createLSParser(xercesc::DOMImplementationLS::MODE_SYNCHRONOUS, nullptr);
    auto* loaded = XMLUtils::loadDocumentFromBuffer(
        reinterpret_cast<const unsigned char*>(utf8.data()), utf8.size(), *parser);
    XMLUtils::cleanEmptyTextNodes(*loaded);
    XMLUtils::ReplaceInvalidCharacters invalid;
    DataIO::Memory::MemoryDataSink sink;
    XMLUtils::serialise(loaded, XMLUtils::EncodingType::utf8, XMLUtils::Layout::indented, invalid,
                        sink);
    require(std::string(reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()) ==
                utf8,
            "serialise");
    require(std::string(nameOf(XMLUtils::EncodingType::utf8)) == "UTF-8", "encoding");
    parser->release();
}

} // namespace

int main() {
    try {
        useExceptions();
        useTypes();
        Metadata::PartitionMetadata partition(useDictionary());
        useMetadata(partition);
        useFiles(partition);
        useXml(partition);
    } catch (const Exceptions::BaseException& error) {
        std::cerr << text(error.message()) << '\n';
        return 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
