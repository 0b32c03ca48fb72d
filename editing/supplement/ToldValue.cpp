#include "editing/supplement/ToldValue.h"

#include "XMLBuilder/reader/nodes/NodeText.h"
#include "editing/StoredBytes.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/metadata/Elements.h"
#include "host/types/Factories.h"
#include "host/types/Types.h"

#include <algorithm>
#include <vector>

namespace Corvid::Editing {

namespace {

using XMLBuilder::EmptyParts;
using Bytes = std::optional<std::string>;

std::string rawBytes(const Types::DataType& value) {
    const auto* const bytes = reinterpret_cast<const char*>(value.rawBuffer());
    return {bytes, bytes + value.byteCount()};
}

template <class Number> std::string bigEndian(Number number) {
    Types::u8 bytes[sizeof(Number)];
    Types::writeBigEndian(bytes, number);
    return {bytes, bytes + sizeof bytes};
}

/// Whether a code unit makes no character of XML where it is, or half of one.
bool isInvalid(std::u16string_view text, std::size_t at) {
    const auto isLead = [&](std::size_t i) {
        return i < text.size() && (text[i] & 0xFC00) == 0xD800;
    };
    const auto isTrail = [&](std::size_t i) {
        return i < text.size() && (text[i] & 0xFC00) == 0xDC00;
    };
    const char16_t unit = text[at];
    return XMLBuilder::isNoXmlUnit(unit) || (isLead(at) && !isTrail(at + 1)) ||
           (isTrail(at) && (at == 0 || !isLead(at - 1)));
}

/// A text as a document has it: up to its terminator, with U+FFFD for what XML can't hold, and
/// nothing of one that is blank.
std::u16string toldText(std::u16string units) {
    units.erase(std::min(units.find(u'\0'), units.size()));
    if (std::all_of(units.begin(), units.end(), XMLBuilder::isXmlSpace)) {
        return {};
    }
    // Whether a surrogate is alone is asked before what is beside it is replaced.
    std::vector<std::size_t> invalid;
    for (std::size_t i = 0; i != units.size(); ++i) {
        if (isInvalid(units, i)) {
            invalid.push_back(i);
        }
    }
    for (const std::size_t i : invalid) {
        units[i] = u'\uFFFD';
    }
    return units;
}

/// What comes back of simple values.
class SimpleValue : public Types::Visitors::NullVisitor {
public:
    explicit SimpleValue(EmptyParts empty) : empty_(empty) {}

    Bytes of(const Types::SimpleDataType& value) {
        bytes_ = rawBytes(value);
        value.accept(*this);
        return std::move(bytes_);
    }

    using NullVisitor::visit;
    void visit(const Types::UTF16String& value) override {
        std::u16string units(value.byteCount() / 2, u'\0');
        for (std::size_t i = 0; i != units.size(); ++i) {
            units[i] = Types::readBigEndian<Types::u16>(value.rawBuffer() + 2 * i);
        }
        bytes_.emplace();
        for (const char16_t unit : toldText(units)) {
            *bytes_ += bigEndian(static_cast<Types::u16>(unit));
        }
        keepIf(!bytes_->empty());
    }
    void visit(const Types::ISO7String& value) override {
        bytes_.emplace();
        for (const char16_t unit :
             toldText({value.rawBuffer(), value.rawBuffer() + value.byteCount()})) {
            // What replaces a character has no place in 8-bit text.
            *bytes_ += unit > 0xFF ? '?' : static_cast<char>(unit);
        }
        keepIf(!bytes_->empty());
    }
    void visit(const Types::UTF16& value) override {
        const std::u16string told = toldText({static_cast<char16_t>(value.value())});
        bytes_ = told.empty() ? Bytes() : bigEndian(static_cast<Types::u16>(told.front()));
    }
    void visit(const Types::DataStream& value) override { keepIf(value.byteCount() != 0); }
    void visit(const Types::Unknown& value) override { keepIf(value.byteCount() != 0); }
    void visit(const Types::DataValue&) override { keepIf(false); }
    void visit(const Types::LocalTag&) override { keepIf(false); }
    void visit(const Types::J2KCodingStyleDefault& value) override {
        keepIf(value.spcod().byteCount() != 0);
    }
    void visit(const Types::J2KQuantisationDefault& value) override {
        keepIf(value.sPgcd().byteCount() != 0);
    }
    void visit(const Types::ProductVersion& value) override {
        bytes_ = rawBytes(Types::ProductVersion(value.major(), value.minor(), value.patch(),
                                                value.build(), value.releaseVersion()));
    }

private:
    /// For what comes back only where more is known of the property than its element.
    void keepIf(bool always) {
        if (!always && empty_ == EmptyParts::missing) {
            bytes_.reset();
        }
    }

    EmptyParts empty_;
    Bytes bytes_;
};

/// True for a property that is written even where it is an empty collection.
bool isRequired(const Metadata::Element& element) {
    return element.metaAttribute()->facts().isRequired;
}

/// True for items whose size a reader takes from what it has read.
bool isMeasured(Types::Identifiers::Identifier type) {
    using namespace Types::Identifiers;
    return type == DataStream || type == DataValue || type == ISO7String || type == UTF16String ||
           type == Unknown;
}

std::string collectionBytes(const std::vector<Bytes>& items, std::size_t itemSize) {
    std::string bytes;
    Types::u32 count = 0;
    for (const Bytes& item : items) {
        if (item) {
            ++count;
            bytes += *item;
            bytes.resize(count * itemSize);
        }
    }
    return bigEndian(count) + bigEndian(static_cast<Types::u32>(itemSize)) + bytes;
}

/// What comes back of elements.
class ElementValue : public Metadata::Visitors::ElementVisitor {
public:
    explicit ElementValue(EmptyParts empty) : empty_(empty) {}

    void visit(const Metadata::ReferenceBatchElement& element) override { references(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { references(element); }
    void visit(const Metadata::ReferenceElement& element) override { bytes = bytesOf(element); }
    void visit(const Metadata::BatchElement& element) override { collection(element); }
    void visit(const Metadata::ArrayElement& element) override { collection(element); }
    void visit(const Metadata::SimpleElement& element) override {
        bytes = SimpleValue(empty_).of(*element.value());
    }

    Bytes bytes;

private:
    void references(const Metadata::ReferenceCollectionElement& element) {
        if (element.size() != 0) {
            bytes = bytesOf(element);
        } else if (isRequired(element)) {
            bytes = collectionBytes({}, Types::Reference::fixedSize);
        }
    }

    void collection(const Metadata::CollectionElement& element) {
        const Types::Collection& values = *element.value();
        if (values.size() == 0 && !isRequired(element)) {
            return;
        }
        const auto* const definition =
            static_cast<const MetaMetadata::MetaCollectionElement*>(element.definition());
        const auto size =
            static_cast<std::size_t>(Types::Identifiers::typeSize(definition->dataSubType()));
        SimpleValue simple(empty_);
        std::vector<Bytes> items(values.size());
        for (Types::u32 i = 0; i != values.size(); ++i) {
            items[i] = simple.of(values.at(i));
        }
        if (size != 0) {
            bytes = collectionBytes(items, size);
        } else if (empty_ == EmptyParts::values) {
            filledUp(items);
        } else if (isMeasured(definition->dataSubType())) {
            measured(items);
        }
    }

    void filledUp(const std::vector<Bytes>& items) {
        std::size_t longest = 0;
        for (const Bytes& item : items) {
            longest = std::max(longest, item->size());
        }
        bytes = collectionBytes(longest == 0 ? std::vector<Bytes>() : items, longest);
    }

    /// Nothing is compared as long as there was nothing; from then on all must be alike.
    void measured(const std::vector<Bytes>& items) {
        std::size_t size = 0;
        for (const Bytes& item : items) {
            const std::size_t found = item ? item->size() : 0;
            if (size != 0 && found != size) {
                return;
            }
            size = found;
        }
        bytes = collectionBytes(items, size);
    }

    EmptyParts empty_;
};

} // namespace

Bytes bytesFromDocument(const Metadata::Element& element, EmptyParts empty) {
    ElementValue visitor(empty);
    element.accept(visitor);
    return std::move(visitor.bytes);
}

} // namespace Corvid::Editing
