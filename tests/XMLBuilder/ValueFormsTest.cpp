#include "XMLBuilder/forms/ValueForms.h"

#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/reader/Reading.h"
#include "XMLBuilder/reader/nodes/NodeList.h"
#include "XMLBuilder/reader/nodes/NodePool.h"
#include "XMLBuilder/reader/values/ValueParser.h"
#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"
#include "host/metadata/PartitionMetadata.h"
#include "tests/types/Samples.h"

#include <gtest/gtest.h>

#include <deque>

namespace Corvid::Testing {
namespace {

namespace Names = XMLBuilder::Names;
namespace ValueForms = XMLBuilder::ValueForms;
using XMLBuilder::DocumentNode;

/// The element of a value, made of what is written into it.
class ValueElement final : public XMLBuilder::DocumentSink {
public:
    ValueElement() : root_(pool_.add()) {
        root_.name = u"s377m:MetadataSets";
        XMLBuilder::NodeList declarations(root_.firstAttribute);
        for (const auto& names : {Names::types, Names::s422mTypes}) {
            DocumentNode& declaration = pool_.add();
            declaration.kind = DocumentNode::Kind::attribute;
            declaration.name = pool_.addText(u"xmlns:" + std::u16string(names.prefix)).data();
            declaration.value = names.uri;
            declarations.append(declaration);
        }
        startElement({u"urn:test", u"t:Value"}, nullptr, 0);
    }

    void startElement(const Name& name, const Attribute*, std::size_t) override {
        DocumentNode& element = pool_.add();
        element.name = name.qualified;
        element.local = Names::localPart(name.qualified);
        element.uri = name.uri;
        text_ += u'<' + std::u16string(name.qualified) + u'>';
        append(element);
        open_.emplace_back(element);
    }
    void endElement() override {
        text_ += u"</>";
        open_.pop_back();
    }
    void text(Text text) override {
        DocumentNode& node = pool_.add();
        node.kind = DocumentNode::Kind::text;
        node.value = pool_.addText(std::u16string(text.data()));
        text_ += node.value;
        append(node);
    }

    const DocumentNode& root() const { return root_; }
    const DocumentNode& node() const { return *open_.front().element; }
    /// All that was written, as if it was markup.
    const std::u16string& written() const { return text_; }

private:
    struct Level {
        explicit Level(DocumentNode& of) : element(&of), children(of.firstChild) {}
        DocumentNode* element;
        XMLBuilder::NodeList children;
    };

    void append(DocumentNode& node) {
        if (!open_.empty()) {
            node.parent = open_.back().element;
            open_.back().children.append(node);
        } else {
            node.parent = &root_;
        }
    }

    XMLBuilder::NodePool pool_;
    DocumentNode& root_;
    std::deque<Level> open_;
    std::u16string text_;
};

struct Case {
    std::string name;
    Types::Identifiers::Identifier type;
    Bytes bytes;
    bool (*check)(XMLBuilder::ValueCheck&);
};

void PrintTo(const Case& c, std::ostream* to) { *to << c.name; }
std::string nameOfCase(const testing::TestParamInfo<Case>& info) { return info.param.name; }

/// The samples of every type that is a value of its own.
std::vector<Case> allCases() {
    std::vector<Case> cases;
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    if constexpr (std::is_base_of_v<Types::SimpleDataType, Types::Class> &&                        \
                  !std::is_base_of_v<Types::Reference, Types::Class>) {                            \
        for (const Sample& sample : Samples<Types::Class>::fitting()) {                            \
            cases.push_back({std::string(#Class) + "_" + sample.name, Types::Identifiers::Class,   \
                             sample.bytes, [](XMLBuilder::ValueCheck& of) {                        \
                                 return ValueForms::Form::check(of,                                \
                                                                XMLBuilder::As<Types::Class>{});   \
                             }});                                                                  \
        }                                                                                          \
    }
#include "host/types/ValueTypes.def"
    return cases;
}

class FormOfValue : public testing::TestWithParam<Case> {
protected:
    FormOfValue() : value_(Types::Factories::fromBytes(GetParam().type, viewOf(GetParam().bytes))) {
        write(*value_, element_);
    }

    static void write(const Types::DataType& value, ValueElement& to) {
        XMLBuilder::ToXMLBaseTypeVisitor writer(to);
        value.accept(writer);
    }

    /// What reading the element and writing the value again gives.
    std::u16string writtenAgain(XMLBuilder::Strictness* strictness) {
        XMLBuilder::Reading reading(element_.root(), nullptr, partition_, &names_, nullptr,
                                    strictness);
        const auto value = XMLBuilder::parseValue(reading, GetParam().type, element_.node(),
                                                  XMLBuilder::EmptyParts::values);
        ValueElement again;
        if (value) {
            write(*value, again);
        }
        return again.written();
    }

    Metadata::PartitionMetadata partition_{MetaMetadata::Dictionary::builtIn()};
    XMLBuilder::InstanceNameTable names_;
    XMLBuilder::Mistakes mistakes_;
    Templates::auto_ptr<Types::SimpleDataType> value_;
    ValueElement element_;
};

TEST_P(FormOfValue, readsLenientlyWhatItWrites) {
    EXPECT_EQ(writtenAgain(nullptr), element_.written());
}

TEST_P(FormOfValue, readsStrictlyWhatItWrites) {
    XMLBuilder::Strictness strictness(*MetaMetadata::Dictionary::builtIn(), nullptr, mistakes_);
    EXPECT_EQ(writtenAgain(&strictness), element_.written());
    EXPECT_EQ(mistakes_.count(), 0U);
}

TEST_P(FormOfValue, findsNoMistakeInWhatItWrites) {
    XMLBuilder::ValueCheck check(element_.node(), XMLBuilder::EmptyParts::values, mistakes_);
    EXPECT_TRUE(GetParam().check(check));
    EXPECT_EQ(mistakes_.count(), 0U);
}

INSTANTIATE_TEST_SUITE_P(, FormOfValue, testing::ValuesIn(allCases()), nameOfCase);

struct RangeCase {
    const char* name;
    XMLBuilder::IntegerRange range;
    std::vector<std::u16string> held;
    std::vector<std::u16string> others;
};

void PrintTo(const RangeCase& c, std::ostream* to) { *to << c.name; }
std::string nameOfRange(const testing::TestParamInfo<RangeCase>& info) { return info.param.name; }

class RangeOfIntegers : public testing::TestWithParam<RangeCase> {};

TEST_P(RangeOfIntegers, holdsItsNumbersInXmlSchemasForm) {
    for (const auto& text : GetParam().held) {
        EXPECT_TRUE(GetParam().range.holds(text)) << std::string(text.begin(), text.end());
    }
    for (const auto& text : GetParam().others) {
        EXPECT_FALSE(GetParam().range.holds(text)) << std::string(text.begin(), text.end());
    }
}

INSTANTIATE_TEST_SUITE_P(, RangeOfIntegers,
                         testing::Values(RangeCase{"OfAByte",
                                                   XMLBuilder::IntegerRange::of<Types::u8>(),
                                                   {u"0", u"-0", u"+7", u"007", u"255"},
                                                   {u"", u"-", u"+", u"-1", u"256", u"1.0", u" 1",
                                                    u"0x1", u"99999999999999999999"}},
                                         RangeCase{"OfASignedByte",
                                                   XMLBuilder::IntegerRange::of<signed char>(),
                                                   {u"-128", u"127"},
                                                   {u"-129", u"128"}},
                                         RangeCase{"OfEightBytes",
                                                   XMLBuilder::IntegerRange::of<std::uint64_t>(),
                                                   {u"18446744073709551615"},
                                                   {u"18446744073709551616", u"-1"}},
                                         RangeCase{
                                             "OfABoolean", {0, 1}, {u"0", u"1"}, {u"2", u"true"}}),
                         nameOfRange);

TEST(DottedHexadecimal, hasPairsOfDigitsWithFullStopsBetweenThem) {
    EXPECT_TRUE(XMLBuilder::isDottedHex(u"0a.FF", 2));
    EXPECT_TRUE(XMLBuilder::isDottedHex(u"00", 1));
    for (const char16_t* text : {u"", u"0a", u"0aFF", u"0a-FF", u"0a.F", u"0a.FF.", u"0g.FF"}) {
        EXPECT_FALSE(XMLBuilder::isDottedHex(text, 2));
    }
    EXPECT_FALSE(XMLBuilder::isDottedHex(u"", 0));
}

} // namespace
} // namespace Corvid::Testing
