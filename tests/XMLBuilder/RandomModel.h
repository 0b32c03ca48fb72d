#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "tests/support/Model.h"
#include "tests/support/ThingsDictionary.h"

#include <gtest/gtest.h>

#include <random>

namespace Corvid::Testing {

/// A partition of a few sets that refer to each other in every way that the model allows.
class RandomModel {
public:
    /// @param odd  whether references may be where documents do not follow them, and lead weakly
    ///     to dark groups.
    RandomModel(unsigned seed, bool odd)
        : model(Model::extendedBy(things())), random_(seed), odd_(odd), count_(2 + below(12)) {
        for (unsigned i = 0; i != count_; ++i) {
            addSet(i);
        }
    }

    Model model;

    static const std::string& things() {
        static const std::string text = thingsDictionary();
        return text;
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    Types::u8 anyIdentifier() { return static_cast<Types::u8>(below(count_ + 2)); }

    void addSet(unsigned number) {
        // Few identifiers, so that sets share one.
        const auto identifier = static_cast<Types::u8>(below(8) == 0 ? below(count_) : number);
        switch (below(6)) {
        case 0:
            fillGroup(model.darkGroup(identifier));
            break;
        case 1:
            model.reference(model.set("Preface", identifier), "ContentStorageObject",
                            anyIdentifier());
            break;
        case 2: { // a set without identifier
            auto& set = model.set("Thing", identifier);
            static_cast<Metadata::SimpleElement*>(
                set.find(Metadata::Structural::StructuralMetadataULs::instanceUID()))
                ->set({});
            fillThing(set);
            break;
        }
        default:
            fillThing(model.set("Thing", identifier));
        }
    }

    void fillThing(Metadata::MetadataSet& set) {
        if (below(3) == 0) {
            model.value(set, "UTF16String",
                        Types::UTF16String(Platform::fromUtf8("a<&\r\xC3\xA4 ").c_str()));
            model.value(set, "Rational", Types::Rational(25, -1));
        }
        if (odd_ && below(3) == 0) {
            addOddName(set);
        }
        if (odd_ && below(3) == 0) {
            model.unknown(set, static_cast<Types::u16>(below(2) == 0 ? 0x1234 : 0x9000),
                          "\x01\x02");
        }
        for (const char* tag : {"StrongReference", "StrongReferenceArray", "StrongReferenceBatch",
                                "WeakReference", "WeakReferenceArray"}) {
            const bool weak = *tag == 'W';
            switch (below(weak && !odd_ ? 2 : 5)) {
            case 0:
                model.element(set, tag); // without a value
                break;
            case 1:
                break;
            case 2:
                refer(model.misplaced(set, tag));
                break;
            default:
                refer(model.element(set, tag));
            }
        }
        if (odd_ && below(3) == 0) {
            refer(set.createElement(anyLabel(), attributeOf("ContentStorageObject")));
        }
    }

    void fillGroup(Metadata::MetadataSet& group) {
        if (odd_ && below(2) == 0) {
            refer(group.createElement(anyLabel(), attributeOf("Packages")));
        }
        if (odd_ && below(2) == 0) {
            refer(model.misplaced(group, "StrongReference"));
        }
    }

    /// Properties in namespaces that share a prefix or a URI with those of other dictionaries.
    static Templates::SharedPtr<MetaMetadata::Dictionary> oddNames() {
        std::string text = "namespace s377m urn:AAA\nnamespace e urn:test\n"
                           "namespace u urn:test:elements\nnamespace t urn:SMPTE:RP210\n"
                           "set t:Odd 06.0e.2b.34.02.53.01.01.0e.7f.09.00.00.00.00.00 - abstract\n";
        for (int i = 0; i != 8; ++i) {
            text += "property " + std::string(1, "esut"[i % 4]) + (i % 4 == 1 ? "377m" : "") +
                    ":Odd" + std::to_string(i) + " 06.0e.2b.34.01.01.01.01.0e.7f.09.00.00.00.0" +
                    std::to_string(i) + ".00 - " + (i < 4 ? "UInt8" : "StrongReference") +
                    " optional -\n";
        }
        MetaMetadata::Dictionary::Texts texts;
        texts.push_back({"odd.dict", text});
        return MetaMetadata::Dictionary::fromTexts(texts);
    }

    void addOddName(Metadata::MetadataSet& set) {
        const auto* const definition = *(odds_->metaElementBegin() + below(8));
        auto& element = set.createInvalidElement(
            Metadata::Element::Attribute(new MetaMetadata::MisplacedAttribute(*definition)));
        if (definition->dataType() == Types::Identifiers::UInt8) {
            element.parse(Model::view("x"));
        } else {
            refer(element);
        }
    }

    /// The attribute of a property of another class.
    Metadata::Element::Attribute attributeOf(const char* tag) {
        return model.misplaced(elsewhere_.set("Thing", 0), tag).metaAttribute();
    }

    static Types::UniversalLabel anyLabel() {
        return Types::UniversalLabel(std::array<Types::u8, 16>{0x7F});
    }

    void refer(Metadata::Element& element) {
        if (auto* many = dynamic_cast<Metadata::ReferenceCollectionElement*>(&element)) {
            std::string bytes{0, 0, 0, static_cast<char>(below(4)), 0, 0, 0, 16};
            for (int i = bytes[3]; i != 0; --i) {
                bytes.append(15, '\0');
                bytes.push_back(static_cast<char>(anyIdentifier()));
            }
            ASSERT_TRUE(many->parse(Model::view(bytes)));
        } else {
            ASSERT_TRUE(element.parse(Types::ByteView{uuid(anyIdentifier()).rawBuffer(), 16}));
        }
    }

    std::mt19937 random_;
    bool odd_;
    unsigned count_;
    Model elsewhere_ = Model::extendedBy(things());
    Templates::SharedPtr<MetaMetadata::Dictionary> odds_ = oddNames();
};

} // namespace Corvid::Testing
