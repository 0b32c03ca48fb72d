#include "host/metadata/Properties.h"

#include "host/base/Exceptions.h"
#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/metadata/ElementItems.h"
#include "host/metadata/Names.h"

#include <algorithm>

namespace Corvid::Metadata {

namespace {

using MetaMetadata::MetaElement;
using MetaMetadata::MetaMetadataSet;
using Types::Identifiers::Identifier;

[[noreturn]] void refuse(const std::string& what) {
    throw Exceptions::InvalidArgument(what, CORVID_HERE);
}

std::string described(const MetadataSet& set, std::string_view name) {
    return "property " + std::string(name) + " of " + className(set);
}

/// The one definition of several that has a name; null where none has.
template <class Definitions, class DefinitionOf>
auto findNamed(const Definitions& definitions, std::string_view name, DefinitionOf definitionOf)
    -> decltype(definitionOf(*definitions.begin())) {
    decltype(definitionOf(*definitions.begin())) found = nullptr;
    for (const auto& each : definitions) {
        const auto definition = definitionOf(each);
        if (!MetaMetadata::isCalled(*definition, name)) {
            continue;
        }
        if (found != nullptr) {
            refuse("several definitions have the name " + std::string(name) + ": " +
                   MetaMetadata::prefixedName(*found) + ", " +
                   MetaMetadata::prefixedName(*definition));
        }
        found = definition;
    }
    return found;
}

bool isA(const MetadataSet& set, std::string_view name) {
    for (const auto* each = set.metaMetadataSet(); each != nullptr; each = each->parent()) {
        if (MetaMetadata::isCalled(*each, name)) {
            return true;
        }
    }
    return false;
}

Identifier itemType(const MetaElement& definition) {
    return definition.isCollection()
               ? static_cast<const MetaMetadata::MetaCollectionElement&>(definition).dataSubType()
               : definition.dataType();
}

/// Which class a value is of, whatever the dictionary says.
Identifier typeOf(const Types::SimpleDataType& value) {
    struct Find : Types::Visitors::Visitor {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    void visit(const Types::Class&) override { type = Types::Identifiers::Class; }
#include "host/types/ValueTypes.def"
        Identifier type = Types::Identifiers::Unknown;
    } find;
    value.accept(find);
    return find.type;
}

std::string nameOf(bool isList, Identifier type) {
    return (isList ? "a list of " : "") + std::string(Types::Identifiers::typeName(type));
}

void requireType(const MetadataSet& set, std::string_view name, const MetaElement& definition,
                 bool wantsList, Identifier wanted) {
    const Identifier found = itemType(definition);
    if (definition.isCollection() != wantsList || found != wanted) {
        refuse(described(set, name) + " is " + nameOf(definition.isCollection(), found) + ", not " +
               nameOf(wantsList, wanted));
    }
}

/// The values of a property, which are of the wanted type.
ElementItems itemsOf(const MetadataSet& set, std::string_view name, bool wantsList,
                     Identifier wanted) {
    const Element* const element = findElement(set, name);
    if (element != nullptr) {
        requireType(set, name, *element->definition(), wantsList, wanted);
    }
    const ElementItems items(element);
    for (Types::u32 i = 0; i != items.size(); ++i) {
        // A program may have put any value there.
        if (const Identifier found = typeOf(items.at(i)); found != wanted) {
            refuse(described(set, name) + " holds " + nameOf(false, found) + ", not " +
                   nameOf(false, wanted));
        }
    }
    return items;
}

/// Stores a value, a list of values or a reference where an element holds such, and says whether
/// it does.
struct Store : Visitors::NonConstElementVisitor {
    void visit(ReferenceBatchElement& element) override { add(element); }
    void visit(ReferenceArrayElement& element) override { add(element); }
    void visit(ReferenceElement& element) override {
        if (target != nullptr) {
            element.set(target);
            isDone = true;
        }
    }
    void visit(BatchElement& element) override { put<Types::Batch>(element); }
    void visit(ArrayElement& element) override { put<Types::Array>(element); }
    void visit(SimpleElement& element) override {
        if (value != nullptr) {
            element.set(value->clone());
            isDone = true;
        }
    }

    const Types::SimpleDataType* value = nullptr;
    const Typed::Values* items = nullptr;
    const MetadataSet* target = nullptr;
    int itemSize = 0;
    bool isDone = false;

private:
    void add(ReferenceCollectionElement& element) {
        if (target != nullptr) {
            element.add(target);
            isDone = true;
        }
    }
    template <class List> void put(CollectionElement& element) {
        if (items != nullptr) {
            Templates::auto_ptr<Types::Collection> list(new List(itemSize));
            for (const auto* const item : *items) {
                list->add(item->clone());
            }
            element.set(std::move(list));
            isDone = true;
        }
    }
};

void store(Element& element, Store store, const MetadataSet& set, std::string_view name) {
    element.accept(store);
    if (!store.isDone) {
        refuse(described(set, name) + " is " +
               nameOf(element.definition()->isCollection(), itemType(*element.definition())));
    }
}

/// The size that all items have, in bytes.
int sizeOfItems(const Typed::Values& items, Identifier type, const MetadataSet& set,
                std::string_view name) {
    const auto size = items.empty() ? static_cast<std::size_t>(Types::Identifiers::typeSize(type))
                                    : items.front()->byteCount();
    for (const auto* const item : items) {
        if (item->byteCount() != size) {
            throw Exceptions::InvalidLength(
                described(set, name) + ": an item has " + std::to_string(item->byteCount()) +
                    " bytes, expected " + std::to_string(size) + " as the first has",
                CORVID_HERE);
        }
    }
    return static_cast<int>(size);
}

} // namespace

Templates::vector<Element*> elementsOf(const MetadataSet& set) {
    Templates::vector<Element*> elements;
    for (const auto& entry : set.made()) {
        elements.push_back(entry.second);
    }
    elements.insert(elements.end(), set.invalidBegin(), set.invalidEnd());
    elements.erase(std::remove_if(elements.begin(), elements.end(),
                                  [](const Element* element) { return element->isSkipped(); }),
                   elements.end());
    std::sort(elements.begin(), elements.end(),
              [](const Element* a, const Element* b) { return a->position() < b->position(); });
    return elements;
}

Element* findElement(const MetadataSet& set, std::string_view name) {
    const auto isNamed = [name](const Element* element) {
        return element->definition() != nullptr && !element->isSkipped() &&
               MetaMetadata::isCalled(*element->definition(), name);
    };
    for (const auto& entry : set.made()) {
        if (isNamed(entry.second)) {
            return entry.second;
        }
    }
    const auto other = std::find_if(set.invalidBegin(), set.invalidEnd(), isNamed);
    return other == set.invalidEnd() ? nullptr : *other;
}

Element& getElement(MetadataSet& set, std::string_view name) {
    const MetaMetadataSet* const setClass = set.metaMetadataSet();
    const auto definitionOf = [](const MetaMetadataSet::Attribute& attribute) {
        return attribute->facts().definition;
    };
    const MetaElement* const definition =
        setClass == nullptr ? nullptr : findNamed(setClass->attributes(), name, definitionOf);
    if (definition == nullptr) {
        refuse("the class of " + className(set) + " has no property " + std::string(name));
    }
    // A set that was read has only the elements that its file has.
    Element* const element = set.find(definition->label());
    return element != nullptr
               ? *element
               : set.createElement(definition->label(), *setClass->find(definition->label()));
}

PartitionMetadata::Sets findSets(const PartitionMetadata& partition, std::string_view className) {
    PartitionMetadata::Sets found;
    std::copy_if(partition.begin(), partition.end(), std::back_inserter(found),
                 [className](const MetadataSet* set) { return isA(*set, className); });
    return found;
}

MetadataSet& createSet(PartitionMetadata& partition, std::string_view className) {
    const auto& dictionary = *partition.partitionDictionary().dictionary();
    struct Classes {
        const MetaMetadata::Dictionary& dictionary;
        auto begin() const { return dictionary.metaMetadataSetBegin(); }
        auto end() const { return dictionary.metaMetadataSetEnd(); }
    };
    const MetaMetadataSet* const found = findNamed(
        Classes{dictionary}, className, [](const MetaMetadataSet* setClass) { return setClass; });
    if (found == nullptr) {
        refuse("the dictionary has no class " + std::string(className));
    }
    return partition.createMetadataSet(found->key());
}

PartitionMetadata::Sets findTargets(const PartitionMetadata& partition, const MetadataSet& set,
                                    std::string_view name) {
    PartitionMetadata::Sets found;
    const ElementItems items(findElement(set, name));
    for (Types::u32 i = 0; i != items.size(); ++i) {
        if (const auto* const reference = items.reference(i)) {
            if (const Targets targets = partition.resolve(*reference); !targets.empty()) {
                found.push_back(&targets.front());
            }
        }
    }
    return found;
}

void addTarget(MetadataSet& set, std::string_view name, const MetadataSet& target) {
    Store reference;
    reference.target = &target;
    store(getElement(set, name), reference, set, name);
}

namespace Typed {

const Types::SimpleDataType* find(const MetadataSet& set, std::string_view name, Type type) {
    const ElementItems items = itemsOf(set, name, false, type);
    return items.size() == 0 ? nullptr : &items.at(0);
}

void set(MetadataSet& set, std::string_view name, Type type, const Types::SimpleDataType& value) {
    Element& element = getElement(set, name);
    requireType(set, name, *element.definition(), false, type);
    Store simple;
    simple.value = &value;
    store(element, simple, set, name);
}

Values findItems(const MetadataSet& set, std::string_view name, Type type) {
    const ElementItems items = itemsOf(set, name, true, type);
    Values values;
    for (Types::u32 i = 0; i != items.size(); ++i) {
        values.push_back(&items.at(i));
    }
    return values;
}

void setItems(MetadataSet& set, std::string_view name, Type type, const Values& items) {
    Element& element = getElement(set, name);
    requireType(set, name, *element.definition(), true, type);
    Store list;
    list.items = &items;
    list.itemSize = sizeOfItems(items, type, set, name);
    store(element, list, set, name);
}

} // namespace Typed

} // namespace Corvid::Metadata
