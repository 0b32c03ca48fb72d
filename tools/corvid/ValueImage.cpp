#include "tools/corvid/ValueImage.h"

#include "host/dictionary/AbstractMetaAttributeVisitor.h"
#include "host/dictionary/AttributeRequiredStatus.h"
#include "host/dictionary/MetaAttribute.h"
#include "host/metadata/Elements.h"
#include "host/types/Types.h"

#include <algorithm>

namespace Corvid::Tool {

namespace {

using Kind = DifferenceKind;
using Bytes = std::optional<std::string>;

Bytes rawBytes(const Types::DataType& value) {
    const auto* const bytes = reinterpret_cast<const char*>(value.rawBuffer());
    return std::string(bytes, bytes + value.byteCount());
}

/// The code units of a text, terminator and padding included.
std::u16string unitsOf(const Types::UTF16String& text) {
    std::u16string units(text.byteCount() / 2, u'\0');
    for (std::size_t i = 0; i != units.size(); ++i) {
        units[i] = Types::readBigEndian<Types::u16>(text.rawBuffer() + 2 * i);
    }
    return units;
}

std::u16string unitsOf(const Types::ISO7String& text) {
    return {text.rawBuffer(), text.rawBuffer() + text.byteCount()};
}

void trimZeros(std::u16string& text) { text.erase(text.find_last_not_of(u'\0') + 1); }

bool isXmlSpace(char16_t unit) {
    return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r';
}

/// True for a code unit that stands for no character of XML 1.0 where it is, or for half of one.
bool isInvalid(std::u16string_view text, std::size_t at) {
    const auto isLead = [&](std::size_t i) {
        return i < text.size() && (text[i] & 0xFC00) == 0xD800;
    };
    const auto isTrail = [&](std::size_t i) {
        return i < text.size() && (text[i] & 0xFC00) == 0xDC00;
    };
    const char16_t unit = text[at];
    return (unit < 0x20 && !isXmlSpace(unit)) || unit >= 0xFFFE ||
           (isLead(at) && !isTrail(at + 1)) || (isTrail(at) && (at == 0 || !isLead(at - 1)));
}

std::string bytesOf(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(2 * text.size());
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<char>(unit >> 8));
        bytes.push_back(static_cast<char>(unit & 0xFF));
    }
    return bytes;
}

/// Makes the images of simple values.
class SimpleImage : public Types::Visitors::NullVisitor {
public:
    /// @param lost  null for images of whole values; else takes what is not told. Borrowed.
    explicit SimpleImage(std::vector<Kind>* lost) : lost_(lost) {}

    Bytes of(const Types::SimpleDataType& value) {
        bytes_ = rawBytes(value);
        measured_.reset();
        value.accept(*this);
        return std::move(bytes_);
    }

    /// The size of the last value as the reader of a collection measures it; nothing for a type of
    /// one size.
    const std::optional<std::size_t>& measured() const noexcept { return measured_; }

    using NullVisitor::visit;
    void visit(const Types::UTF16String& value) override {
        text(unitsOf(value));
        measure(bytes_ ? bytes_->size() : 0);
    }
    void visit(const Types::ISO7String& value) override {
        text(unitsOf(value));
        if (lost_ != nullptr && bytes_) {
            replaceWide(*bytes_);
        }
        measure(bytes_ ? bytes_->size() / 2 : 0);
    }
    void visit(const Types::UTF16& value) override { text({value.value()}); }
    void visit(const Types::DataStream& value) override { run(value); }
    void visit(const Types::Unknown& value) override { run(value); }
    void visit(const Types::DataValue&) override {
        loseIf(true, Kind::typeWithoutReader);
        measure(bytes_ ? bytes_->size() : 0);
    }
    void visit(const Types::LocalTag&) override { loseIf(true, Kind::typeWithoutReader); }
    void visit(const Types::J2KCodingStyleDefault& value) override {
        loseIf(value.spcod().byteCount() == 0, Kind::emptyCodestreamPart);
    }
    void visit(const Types::J2KQuantisationDefault& value) override {
        loseIf(value.sPgcd().byteCount() == 0, Kind::emptyCodestreamPart);
    }
    void visit(const Types::Timestamp& value) override {
        Types::u16 milliseconds = value.milliSecond();
        if (lost_ != nullptr && milliseconds % 4 != 0) {
            note(Kind::oddMilliseconds);
            milliseconds = static_cast<Types::u16>(milliseconds / 4 * 4);
        }
        *bytes_ += bytesOf(std::u16string(1, milliseconds));
    }

    void visit(const Types::ProductVersion&) override {
        if (lost_ != nullptr && bytes_->size() != Types::ProductVersion::fixedSize) {
            note(Kind::shortVersion);
            bytes_->insert(bytes_->size() - 1, 1, '\0'); // the release in two bytes
        }
    }

private:
    void note(Kind kind) {
        if (std::find(lost_->begin(), lost_->end(), kind) == lost_->end()) {
            lost_->push_back(kind);
        }
    }

    void loseIf(bool condition, Kind kind) {
        if (lost_ != nullptr && condition) {
            note(kind);
            bytes_.reset();
        }
    }

    void measure(std::size_t size) { measured_ = size; }

    void run(const Types::ByteRun& value) {
        loseIf(value.byteCount() == 0, Kind::emptyValue);
        measure(value.byteCount());
    }

    void text(std::u16string units) {
        trimZeros(units);
        if (lost_ == nullptr) {
            bytes_ = bytesOf(units);
            return;
        }
        if (const auto end = units.find(u'\0'); end != std::u16string::npos) {
            note(Kind::behindTerminator);
            units.erase(end);
        }
        std::u16string told = units;
        for (std::size_t i = 0; i != units.size(); ++i) {
            if (isInvalid(units, i)) {
                note(Kind::invalidCharacter);
                told[i] = u'\uFFFD';
            }
        }
        bytes_ = bytesOf(told);
        loseIf(told.empty(), Kind::emptyValue);
        loseIf(!told.empty() && std::all_of(told.begin(), told.end(), isXmlSpace), Kind::blankText);
    }

    /// What replaces a character has no place in 8-bit text.
    static void replaceWide(std::string& units) {
        for (std::size_t i = 0; i != units.size(); i += 2) {
            if (units[i] != 0) {
                units[i] = 0;
                units[i + 1] = '?';
            }
        }
    }

    std::vector<Kind>* lost_;
    Bytes bytes_;
    std::optional<std::size_t> measured_;
};

/// True for a property that stands in a document even where it is an empty collection.
class IsRequired : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    void visit(const MetaMetadata::UnknownAttribute&) override {}
    void visit(const MetaMetadata::MisplacedAttribute&) override {}
    void visit(const MetaMetadata::MetaAttribute& attribute) override {
        namespace Status = MetaMetadata::AttributeRequiredStatus;
        result = attribute.requiredStatus() == Status::required ||
                 attribute.requiredStatus() == Status::encoderRequired;
    }
    bool result = false;
};

bool isRequired(const Metadata::Element& element) {
    IsRequired visitor;
    element.metaAttribute()->accept(visitor);
    return visitor.result;
}

/// Makes the images of elements.
class ElementImage : public Metadata::Visitors::ElementVisitor {
public:
    ElementImage(const Renaming& renaming, bool inXml) : renaming_(renaming), inXml_(inXml) {}

    void visit(const Metadata::ReferenceBatchElement& element) override { references(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { references(element); }
    void visit(const Metadata::ReferenceElement& element) override {
        image.bytes = rawBytes(renaming_.of(element.value()->uuid()));
    }
    void visit(const Metadata::BatchElement& element) override { collection(element); }
    void visit(const Metadata::ArrayElement& element) override { collection(element); }
    void visit(const Metadata::SimpleElement& element) override {
        image.bytes = SimpleImage(lost()).of(*element.value());
    }

    ValueImage image;

private:
    std::vector<Kind>* lost() { return inXml_ ? &image.lost : nullptr; }

    /// @return whether that was all.
    bool isLeftOut(const Metadata::Element& element, std::size_t size) {
        if (!inXml_ || size != 0 || isRequired(element)) {
            return false;
        }
        image.lost.push_back(Kind::emptyCollection);
        return true;
    }

    void references(const Metadata::ReferenceCollectionElement& element) {
        if (isLeftOut(element, element.size())) {
            return;
        }
        image.bytes.emplace();
        for (Types::u32 i = 0; i != element.size(); ++i) {
            *image.bytes += *rawBytes(renaming_.of(element.at(i).uuid()));
        }
    }

    void collection(const Metadata::CollectionElement& element) {
        const Types::Collection& items = *element.value();
        if (isLeftOut(element, items.size())) {
            return;
        }
        SimpleImage simple(lost());
        std::string bytes;
        std::size_t size = 0;
        bool isEqual = true;
        for (Types::u32 i = 0; i != items.size(); ++i) {
            const Bytes item = simple.of(items.at(i));
            if (item) {
                bytes += std::to_string(item->size()) + ":" + *item;
            }
            // Like the reader: nothing is compared as long as there was nothing.
            isEqual = isEqual && (size == 0 || !simple.measured() || *simple.measured() == size);
            size = simple.measured().value_or(0);
        }
        if (!bytes.empty() && !simple.measured()) {
            bytes += std::to_string(items.itemSize());
        }
        if (!inXml_ || isEqual) {
            image.bytes = std::move(bytes);
        } else {
            image.lost = {Kind::unequalItems};
        }
        if (image.isRefused()) {
            image.bytes.reset();
        }
    }

    const Renaming& renaming_;
    bool inXml_;
};

ValueImage makeImage(const Metadata::Element& element, const Renaming& renaming, bool inXml) {
    ElementImage visitor(renaming, inXml);
    if (!element.isSkipped()) {
        element.accept(visitor);
    }
    return std::move(visitor.image);
}

} // namespace

bool ValueImage::isRefused() const {
    return std::any_of(lost.begin(), lost.end(), [](Kind kind) {
        return describe(kind).weight == DifferenceWeight::refused;
    });
}

ValueImage imageOf(const Metadata::Element& element, const Renaming& renaming) {
    return makeImage(element, renaming, false);
}

ValueImage imageInXml(const Metadata::Element& element, const Renaming& renaming) {
    return makeImage(element, renaming, true);
}

} // namespace Corvid::Tool
