#include "tools/corvid/reports/LeftOutReferences.h"

#include "host/dictionary/DefinitionNames.h"
#include "host/metadata/Names.h"
#include "tools/corvid/CommandWarnings.h"
#include "tools/corvid/terminal/Messages.h"

#include <algorithm>
#include <unordered_set>

namespace Corvid::Tool {

namespace {

using Metadata::Element;
using Metadata::MetadataSet;

constexpr std::size_t named = 8;

struct Reference {
    const MetadataSet* owner;
    const Element* property;
    const Types::Reference* value;
    bool inCollection;
};

/// Collects the references of a set in the order in which a document has them.
class References : public Metadata::Visitors::ElementVisitor {
public:
    explicit References(const MetadataSet& owner) : owner_(owner) {
        std::vector<std::pair<unsigned long, const Element*>> valid;
        for (const auto& [label, element] : owner.made()) {
            const auto* const definition = element->definition();
            if (definition != nullptr && definition->attribute("SchemaIndex") != nullptr) {
                valid.emplace_back(MetaMetadata::schemaIndex(*definition), element);
            }
        }
        std::sort(valid.begin(), valid.end(),
                  [](const auto& a, const auto& b) { return a.first < b.first; });
        std::for_each(owner.invalidBegin(), owner.invalidEnd(),
                      [this](const Element* element) { element->accept(*this); });
        for (const auto& [index, element] : valid) {
            element->accept(*this);
        }
    }

    const std::vector<Reference>& list() const noexcept { return list_; }

    void visit(const Metadata::ReferenceBatchElement& element) override { addAll(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { addAll(element); }
    void visit(const Metadata::ReferenceElement& element) override {
        if (element.value() != nullptr) {
            list_.push_back({&owner_, &element, element.value(), false});
        }
    }
    void visit(const Metadata::BatchElement&) override {}
    void visit(const Metadata::ArrayElement&) override {}
    void visit(const Metadata::SimpleElement&) override {}

private:
    void addAll(const Metadata::ReferenceCollectionElement& element) {
        for (Types::u32 i = 0; i != element.size(); ++i) {
            list_.push_back({&owner_, &element, &element.at(i), true});
        }
    }

    const MetadataSet& owner_;
    std::vector<Reference> list_;
};

/// Goes the way of the writer: each set inside the first property that leads to it.
class Walk {
public:
    Walk(const Metadata::PartitionMetadata& metadata, bool structuralOnly, Messages& messages)
        : metadata_(metadata), structuralOnly_(structuralOnly), messages_(messages) {}

    /// Sets outside the tree of the Preface are written with a record of their own.
    void forgetWritten() { written_.clear(); }

    void write(const MetadataSet& start) {
        enter(start);
        while (!waiting_.empty()) {
            const Reference reference = waiting_.back();
            waiting_.pop_back();
            follow(reference);
        }
    }

    void warnOfTheRest() const {
        if (leftOut_ > named) {
            messages_.warn({CommandWarnings::leftOutReference,
                            std::to_string(leftOut_ - named) +
                                " more references are left out; --references links keeps them"});
        }
    }

private:
    bool enter(const MetadataSet& set) {
        if (!written_.insert(&set).second) {
            return false;
        }
        if (set.metaMetadataSet() != nullptr) {
            const References references(set);
            waiting_.insert(waiting_.end(), references.list().rbegin(), references.list().rend());
        }
        return true;
    }

    void follow(const Reference& reference) {
        const auto targets = metadata_.resolve(*reference.value);
        if (targets.empty()) {
            return;
        }
        const MetadataSet& target = targets.front();
        if (structuralOnly_ && !KLV::isStructuralMetadataSet(target.key())) {
            return;
        }
        if (target.metaMetadataSet() == nullptr) {
            if (!reference.inCollection) {
                warn(reference, target, "the set is of unknown class");
            }
        } else if (reference.value->isStrong() && !enter(target)) {
            warn(reference, target, "the set is elsewhere in the document, and only once");
        }
    }

    void warn(const Reference& reference, const MetadataSet& target, const char* why) {
        if (++leftOut_ > named) {
            return;
        }
        mxf::Warning warning(CommandWarnings::leftOutReference,
                             "the reference to " + nameOf(target) + " is left out: " + why +
                                 "; --references links keeps it");
        warning.set = nameOf(*reference.owner);
        warning.property =
            Metadata::propertyName(metadata_.partitionDictionary(), *reference.property);
        messages_.warn(warning);
    }

    static std::string nameOf(const MetadataSet& set) {
        return Metadata::className(set) + " " + Platform::toUtf8(set.instanceUID().toString());
    }

    const Metadata::PartitionMetadata& metadata_;
    bool structuralOnly_;
    Messages& messages_;
    std::unordered_set<const MetadataSet*> written_;
    std::vector<Reference> waiting_; ///< those of a set reversed, so that its first is the next
    std::size_t leftOut_ = 0;
};

} // namespace

void warnOfLeftOutReferences(const Metadata::PartitionMetadata& metadata, const MetadataSet& start,
                             bool structuralOnly, Messages& messages) {
    Walk walk(metadata, structuralOnly, messages);
    walk.write(start);
    walk.forgetWritten();
    Templates::vector<const MetadataSet*> order;
    const std::size_t outside = metadata.calculateSerializationOrder(order, true, false);
    std::for_each(order.end() - static_cast<std::ptrdiff_t>(outside), order.end(),
                  [&walk](const MetadataSet* set) { walk.write(*set); });
    walk.warnOfTheRest();
}

} // namespace Corvid::Tool
