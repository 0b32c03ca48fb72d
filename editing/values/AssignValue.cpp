#include "editing/values/AssignValue.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "XMLBuilder/forms/JoinedForm.h"
#include "XMLBuilder/reader/FromXMLElementVisitor.h"
#include "XMLBuilder/reader/nodes/NodeList.h"
#include "XMLBuilder/reader/nodes/NodeText.h"
#include "XMLBuilder/reader/strict/ValueRules.h"
#include "editing/StoredBytes.h"
#include "editing/supplement/Filling.h"
#include "editing/values/ValueText.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/metadata/ElementItems.h"
#include "host/types/ByteRuns.h"

#include <algorithm>

namespace Corvid::Editing {

namespace {

namespace Identifiers = Types::Identifiers;
using Metadata::Element;
using MetaMetadata::MetaElement;
using XMLBuilder::DocumentNode;

Identifiers::Identifier itemTypeOf(const MetaElement& definition) {
    return definition.isCollection()
               ? static_cast<const MetaMetadata::MetaCollectionElement&>(definition).dataSubType()
               : definition.dataType();
}

bool isReference(Identifiers::Identifier type) {
    return type == Identifiers::StrongReference || type == Identifiers::WeakReference;
}

std::u16string wide(const std::string& text) {
    const Utf16Text units = Platform::fromUtf8(text);
    return {units.begin(), units.end()};
}

/// Refuses text that a document could not have.
void checkCharacters(const std::string& text) {
    const Utf16Text units = Platform::fromUtf8(text);
    if (Platform::toUtf8(units) != text) {
        throw Exceptions::InvalidFormat("the value is not UTF-8", CORVID_HERE);
    }
    for (const Utf16Unit unit : units) {
        if (XMLBuilder::isNoXmlUnit(unit)) {
            char code[8];
            std::snprintf(code, sizeof code, "U+%04X", unsigned{unit});
            throw Exceptions::InvalidFormat(std::string("the value has the character ") + code +
                                                ", which XML can't hold",
                                            CORVID_HERE);
        }
    }
}

/// What a document would have for the value of a property, as nodes.
class ValueNodes {
public:
    explicit ValueNodes(const MetaElement& definition)
        : name_(XMLBuilder::nameOf(definition)), itemType_(itemTypeOf(definition)),
          form_(XMLBuilder::joinedFormOf(itemType_)) {}

    const DocumentNode& element(const std::vector<std::string>& texts, bool isList) {
        DocumentNode& element = add(nullptr, name_.local.text, name_.names.uri);
        element.name = name_.qualified.c_str();
        if (!isList) {
            fill(element, texts.front());
            return element;
        }
        XMLBuilder::NodeList items(element.firstChild);
        for (const std::string& text : texts) {
            DocumentNode& item = add(&element, u"Element", name_.names.uri);
            items.append(item);
            fill(item, text);
        }
        return element;
    }

private:
    DocumentNode& add(const DocumentNode* parent, const char16_t* local, const char16_t* uri) {
        DocumentNode& node = pool_.add();
        node.name = local;
        node.local = local;
        node.uri = uri;
        node.parent = parent;
        return node;
    }

    void fillWithText(DocumentNode& element, const std::string& text) {
        if (!text.empty()) {
            DocumentNode& node = pool_.add();
            node.kind = DocumentNode::Kind::text;
            node.value = pool_.addText(wide(text));
            node.parent = &element;
            element.firstChild = &node;
        }
    }

    /// One value.
    void fill(DocumentNode& element, const std::string& text) {
        if (!form_) {
            fillWithText(element, text);
            return;
        }
        const auto parts = form_->split(text);
        if (!parts) {
            throw Exceptions::InvalidFormat("'" + text + "', expected " + form_->pattern(),
                                            CORVID_HERE);
        }
        auto part = parts->begin();
        const auto& type = form_->type;
        XMLBuilder::NodeList children(element.firstChild);
        for (std::size_t i = 0; i != type.times; ++i) {
            if (type.wrapper == nullptr) {
                part = fillWithParts(element, children, part);
                continue;
            }
            DocumentNode& wrapper =
                add(&element, XMLBuilder::Names::localPart(type.wrapper), type.names.uri);
            children.append(wrapper);
            XMLBuilder::NodeList inside(wrapper.firstChild);
            part = fillWithParts(wrapper, inside, part);
        }
    }

    std::vector<std::string>::const_iterator fillWithParts(
        const DocumentNode& around, XMLBuilder::NodeList& list,
        std::vector<std::string>::const_iterator text) {
        for (const auto& part : form_->type.parts) {
            DocumentNode& node = add(&around, part.name, form_->type.names.uri);
            fillWithText(node, *text++);
            list.append(node);
        }
        return text;
    }

    const XMLBuilder::PropertyName& name_;
    Identifiers::Identifier itemType_;
    std::optional<XMLBuilder::JoinedForm> form_;
    XMLBuilder::NodePool pool_;
};

/// The first mistake, without the mark of the root in front of its path. What makes no sense may be
/// in a file and so in its document, but nobody means to set it.
void refuse(const XMLBuilder::Mistakes& mistakes) {
    for (const auto* const all : {&mistakes.entries(), &mistakes.doubts()}) {
        if (!all->empty()) {
            throw Exceptions::InvalidFormat(all->front().text.substr(1), CORVID_HERE);
        }
    }
}

/// References to sets by their InstanceUIDs.
class References final : public Metadata::Visitors::NonConstElementVisitor {
public:
    explicit References(const std::vector<Types::UUID>& targets) : targets_(targets) {}

    void visit(Metadata::ReferenceBatchElement& element) override { fill(element); }
    void visit(Metadata::ReferenceArrayElement& element) override { fill(element); }
    void visit(Metadata::ReferenceElement& element) override {
        element.setUnverifiedReference(make(element, targets_.front()));
    }
    void visit(Metadata::BatchElement&) override {}
    void visit(Metadata::ArrayElement&) override {}
    void visit(Metadata::SimpleElement&) override {}

private:
    static Templates::auto_ptr<Types::Reference> make(const Element& element,
                                                      const Types::UUID& target) {
        using Holder = Templates::auto_ptr<Types::Reference>;
        return itemTypeOf(*element.definition()) == Identifiers::StrongReference
                   ? Holder(new Types::StrongReference(target))
                   : Holder(new Types::WeakReference(target));
    }
    void fill(Metadata::ReferenceCollectionElement& element) {
        // A list is there from its first item on, and stays when that is gone.
        element.addUnverifiedReference(make(element, Types::UUID()));
        element.remove(0);
        for (const Types::UUID& target : targets_) {
            element.addUnverifiedReference(make(element, target));
        }
    }

    const std::vector<Types::UUID>& targets_;
};

void readReferences(const Metadata::PartitionMetadata& metadata, const DocumentNode& node,
                    bool isList, const std::vector<std::string>& present, Element& element) {
    XMLBuilder::Mistakes mistakes;
    std::vector<Types::UUID> targets;
    for (const auto* each = isList ? firstElement(node) : &node; each != nullptr;
         each = isList ? nextElement(*each) : nullptr) {
        hasRightForm(Identifiers::UUID, *each, XMLBuilder::EmptyParts::missing, mistakes);
        refuse(mistakes);
        const XMLBuilder::Content content(*each);
        const Types::UUID target =
            XMLBuilder::parseUuid(XMLBuilder::trimmed(content.text())).value();
        if (metadata.resolve(target).empty() &&
            std::find(present.begin(), present.end(), valueText(target)) == present.end()) {
            throw Exceptions::InvalidFormat("no set has the InstanceUID " + valueText(target),
                                            CORVID_HERE);
        }
        targets.push_back(target);
    }
    References references(targets);
    element.accept(references);
}

void readValues(Metadata::PartitionMetadata& metadata, const DocumentNode& node, Element& element) {
    const DocumentNode root;
    XMLBuilder::Mistakes mistakes;
    XMLBuilder::Strictness strictness(*metadata.partitionDictionary().dictionary(), nullptr,
                                      mistakes);
    XMLBuilder::Reading reading(root, nullptr, metadata, nullptr, nullptr, &strictness);
    XMLBuilder::FromXMLElementVisitor reader(node, element.definition(), reading,
                                             XMLBuilder::EmptyParts::missing);
    element.accept(reader);
    refuse(mistakes);
}

/// The zeros that end a text as it is, in bytes; they take no part in it.
std::size_t presentTerminator(const Element& element) {
    if (element.isSkipped()) {
        return 0;
    }
    const std::size_t size = terminatorSize(element);
    const std::string bytes = bytesOf(element);
    const bool has =
        bytes.size() >= size && std::all_of(bytes.end() - static_cast<std::ptrdiff_t>(size),
                                            bytes.end(), [](char byte) { return byte == 0; });
    return has ? size : 0;
}

} // namespace

std::vector<std::string> textsOf(const Element& element) {
    const Metadata::ElementItems items(&element);
    std::vector<std::string> texts;
    texts.reserve(items.size());
    for (Types::u32 i = 0; i != items.size(); ++i) {
        texts.push_back(valueText(items.at(i)));
    }
    return texts;
}

bool assignValue(Metadata::PartitionMetadata& metadata, Element& element,
                 const std::vector<std::string>& texts) {
    const MetaElement& definition = *element.definition();
    const std::vector<std::string> present = textsOf(element);
    if (!element.isSkipped() && texts == present) {
        return false;
    }
    std::for_each(texts.begin(), texts.end(), checkCharacters);
    const auto wanted = Metadata::createElement(
        Element::Attribute(new MetaMetadata::MisplacedAttribute(definition)));
    ValueNodes nodes(definition);
    const bool isList = definition.isCollection();
    const DocumentNode& node = nodes.element(texts, isList);
    if (isReference(itemTypeOf(definition))) {
        readReferences(metadata, node, isList, present, *wanted);
    } else {
        readValues(metadata, node, *wanted);
    }
    if (wanted->isSkipped()) {
        throw Exceptions::InvalidFormat("the value is empty", CORVID_HERE);
    }
    if (!element.isSkipped() && textsOf(*wanted) == present) {
        return false;
    }
    if (Metadata::Structural::isInstanceUID(definition.label())) {
        throw Exceptions::InvalidFormat("sets are known by their InstanceUIDs, which stay",
                                        CORVID_HERE);
    }
    const std::string bytes = bytesOf(*wanted).append(presentTerminator(element), '\0');
    if (bytes.size() > Types::ByteRun::greatestSize) {
        throw Exceptions::LimitExceeded("value of " + std::to_string(bytes.size()) +
                                            " bytes, expected at most " +
                                            std::to_string(Types::ByteRun::greatestSize) +
                                            ", which is what a property can hold",
                                        CORVID_HERE);
    }
    if (!element.parse({reinterpret_cast<const Types::u8*>(bytes.data()), bytes.size()})) {
        throw Exceptions::InvalidFormat("the value does not fit the property", CORVID_HERE);
    }
    return true;
}

} // namespace Corvid::Editing
