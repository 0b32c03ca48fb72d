#include "XMLBuilder/writer/DocumentPlan.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "XMLBuilder/format/InlineDepth.h"
#include "XMLBuilder/writer/PropertyOrder.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/klv/BerInput.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/types/References.h"

#include <unordered_set>

namespace Corvid::XMLBuilder {

namespace {

using Metadata::Element;
using Metadata::MetadataSet;
using Kind = MetaMetadata::AttributeFacts::Kind;

/// The value of a set of unknown class as files have it.
std::string valueOf(const MetadataSet& group, Metadata::PartitionDictionary& primer) {
    DataIO::Memory::MemoryDataSink sink(group.serializedSize());
    group.serialize(sink, primer);
    const unsigned char* const bytes = sink.rawBuffer();
    const std::size_t head = KLV::Key::length + KLV::berOctetsFromFirst(bytes[KLV::Key::length]);
    return {reinterpret_cast<const char*>(bytes) + head, sink.serializedSize() - head};
}

} // namespace

bool isDarkGroup(const MetadataSet& set) {
    return set.metaMetadataSet() == nullptr &&
           dynamic_cast<const Metadata::DarkParsedGroup*>(&set) != nullptr;
}

/// Follows the references from a set on, depth first: a set is entered in the midst of the one that
/// leads to it, which goes on after it. However long a chain of references is, calls do not nest.
class DocumentPlan::Walk final : public Metadata::Visitors::ElementVisitor {
public:
    /// @param isFloating  whether sets that are side by side go into the floating container.
    Walk(DocumentPlan& plan, WriterPass& pass, bool isFloating)
        : plan_(plan), pass_(pass), isFloating_(isFloating) {}

    void from(const MetadataSet& set) {
        step_ = {};
        enter(set, {}, true);
        while (!pending_.empty()) {
            step_ = pending_.back();
            pending_.pop_back();
            step_.element->accept(*this);
        }
    }

    void visit(const Metadata::ReferenceBatchElement& element) override { follow(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { follow(element); }

    void visit(const Metadata::ReferenceElement& element) override {
        if (element.isSkipped()) {
            return;
        }
        name();
        if (follow(*element.value(), false)) {
            place();
        }
    }

    void visit(const Metadata::BatchElement& element) override { value(element); }
    void visit(const Metadata::ArrayElement& element) override { value(element); }

    void visit(const Metadata::SimpleElement& element) override {
        if (!element.isSkipped() && !name()) {
            place();
            plan_.namespaces_.insertValueNamespaces();
        }
    }

private:
    /// An element that is to be looked at, from an item on.
    struct Step {
        const MetadataSet* set = nullptr;
        const Element* element = nullptr;
        std::uint32_t item = 0;
        std::uint32_t depth = 0; ///< how many sets are around its set
    };

    const MetaMetadata::AttributeFacts& facts() const {
        return step_.element->metaAttribute()->facts();
    }

    void use(const DefinitionName& name) {
        if (used_.insert(&name).second) {
            plan_.namespaces_.insert(name.names);
        }
    }

    /// Takes in the namespace of the element's name.
    /// @return whether the element becomes an attribute of its set.
    bool name() {
        if (facts().definition == nullptr) {
            plan_.namespaces_.insert(Names::groups);
            return false;
        }
        const PropertyName& name = nameOf(*facts().definition);
        use(name);
        return name.isWrittenAsAttribute;
    }

    void place() {
        if (facts().kind != Kind::placed) {
            // A reader takes extensions in only where the prefix is declared at the set.
            plan_.namespaces_.insert(Names::groups);
            pass_.extensions[step_.set].push_back(step_.element);
        }
    }

    void value(const Metadata::CollectionElement& element) {
        if (element.isSkipped() || (element.value()->size() == 0 && !facts().isRequired)) {
            return;
        }
        name();
        place();
        if (element.value()->size() != 0) {
            plan_.namespaces_.insertValueNamespaces();
        }
    }

    void follow(const Metadata::ReferenceCollectionElement& element) {
        if (element.isSkipped() || (element.size() == 0 && !facts().isRequired)) {
            return;
        }
        if (step_.item == 0) {
            name();
            place();
        }
        if (step_.item != element.size()) {
            Step next = step_;
            ++next.item;
            pending_.push_back(next);
            follow(element.at(step_.item), true);
        }
    }

    /// @return false where nothing at all is to be written.
    bool follow(const Types::Reference& reference, bool inCollection) {
        const Metadata::Targets targets = plan_.partition_.resolve(reference);
        if (targets.empty()) {
            dangle();
            return true;
        }
        const MetadataSet& target = targets.front();
        const bool isSkipped =
            plan_.manner_.skipNonStructural && !KLV::isStructuralMetadataSet(target.key());
        if (plan_.manner_.referencesAsValues) {
            if (isSkipped) {
                return false;
            }
            followAsValue(reference, target);
            if (inCollection && isDarkGroup(target)) {
                dangle();
            }
        } else if (isDarkGroup(target)) {
            dangle();
            enter(target, here(), true);
        } else {
            plan_.namespaces_.insert(Names::types);
            if (reference.isStrong() && !isSkipped) {
                enter(target, here(), true);
            }
        }
        return true;
    }

    void followAsValue(const Types::Reference& reference, const MetadataSet& target) {
        if (reference.isStrong()) {
            enter(target, here(), false);
        } else if (target.metaMetadataSet() != nullptr) {
            plan_.namespaces_.insertUnlessPrefixInUse(Names::types);
        }
    }

    WriterPass::Place here() const { return {step_.element, step_.item}; }

    void dangle() {
        const char16_t* const uri = plan_.namespaces_.uriOf(Names::s377m.prefix).data();
        if (std::u16string_view(uri) != Names::s377m.uri) {
            pass_.danglingUris[step_.element][step_.item] = uri;
        }
        plan_.namespaces_.insert(Names::types);
    }

    /// Begins a set that is reached at the element at hand.
    void enter(const MetadataSet& set, WriterPass::Place place, bool isSideBySide) {
        if (!pass_.places.try_emplace(&set, place).second) {
            return;
        }
        const auto* const definition = set.metaMetadataSet();
        if (definition == nullptr) {
            if (isDarkGroup(set)) {
                addGroup(set);
            }
            return;
        }
        const std::uint32_t depth = step_.element == nullptr ? 0 : step_.depth + 1;
        if (plan_.manner_.referencesAsValues && depth == greatestInlineDepth) {
            throw Exceptions::LimitExceeded(
                "set " + Platform::toUtf8(set.instanceUID().toString()) +
                    ": strong references nest deeper than " + std::to_string(greatestInlineDepth) +
                    " sets, write the references as links instead",
                CORVID_HERE);
        }
        use(nameOf(*definition));
        if (isSideBySide) {
            add(set);
        }
        properties_.clear();
        listProperties(set, properties_);
        for (auto element = properties_.rbegin(); element != properties_.rend(); ++element) {
            pending_.push_back({&set, *element, 0, depth});
        }
    }

    void add(const MetadataSet& set) {
        if (!isFloating_) {
            plan_.sets_.push_back(&set);
        } else {
            plan_.floating_.emplace_back();
            plan_.floating_.back().set = &set;
        }
    }

    void addGroup(const MetadataSet& group) {
        plan_.namespaces_.insert(Names::types);
        plan_.namespaces_.insert(Names::groups);
        const std::string& value =
            plan_.groups_.emplace_back(valueOf(group, plan_.partition_.partitionDictionary()));
        plan_
            .addBytes(group.key(), group.berLength(), true,
                      {reinterpret_cast<const Types::u8*>(value.data()), value.size()})
            .group = &group;
    }

    DocumentPlan& plan_;
    WriterPass& pass_;
    bool isFloating_;
    Step step_;
    std::vector<Step> pending_;
    std::vector<const Element*> properties_; ///< of one set
    std::unordered_set<const DefinitionName*> used_;
};

DocumentPlan::DocumentPlan(Metadata::PartitionMetadata& partition, const MetadataSet& start,
                           Manner manner)
    : partition_(partition), manner_(manner) {
    mainPass_.places.reserve(partition.size());
    Walk(*this, mainPass_, false).from(start);
    planDarkSets();
    planFloatingSets(start);
}

void DocumentPlan::planDarkSets() {
    for (auto set = partition_.darkBegin(); set != partition_.darkEnd(); ++set) {
        const DataIO::Slice* const value = (*set)->value();
        addBytes((*set)->key(), (*set)->berLength(), value != nullptr,
                 value == nullptr ? Types::ByteView{}
                                  : Types::ByteView{value->begin(), value->size()})
            .dark = *set;
    }
}

void DocumentPlan::planFloatingSets(const MetadataSet& start) {
    const auto prefaces = partition_.find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (!prefaces.empty() && prefaces.front() == &start &&
        mainPass_.places.size() == partition_.size()) {
        return; // the file's order follows every reference that the walk has followed
    }
    Templates::vector<const MetadataSet*> order;
    const std::size_t outside = partition_.calculateSerializationOrder(order, true, false);
    Walk walk(*this, floatingPass_, true);
    for (auto set = order.end() - static_cast<std::ptrdiff_t>(outside); set != order.end(); ++set) {
        if (floatingPass_.places.count(*set) == 0) {
            hasContainer_ = true;
            walk.from(**set);
        }
    }
}

DocumentPlan::Floating& DocumentPlan::addBytes(const KLV::Key& key, unsigned char berLength,
                                               bool hasValue, Types::ByteView value) {
    hasContainer_ = true;
    namespaces_.insertUnlessPrefixInUse(Names::groups);
    floating_.push_back({nullptr, nullptr, nullptr, &key, berLength, hasValue, value,
                         namespaces_.uriOf(Names::groups.prefix).data()});
    return floating_.back();
}

} // namespace Corvid::XMLBuilder
