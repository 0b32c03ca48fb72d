#pragma once

#include "host/base/Templates.h"
#include "host/dictionary/AbstractMetaAttribute.h"
#include "host/dictionary/AttributeRequiredStatus.h"
#include "host/dictionary/MetaDefinition.h"
#include "host/klv/Key.h"
#include "host/types/IdentifierTypes.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <utility>

namespace Corvid::MetaMetadata {

class MetaAttribute;
class MetaElement;

/// The definition of a set: its key, ancestors, name and properties.
class CORVID_EXPORT MetaMetadataSet : public MetaDefinition {
public:
    using Attribute = Templates::SharedPtr<const AbstractMetaAttribute>;
    using Attributes = Templates::vector<Attribute>;

    MetaMetadataSet(const Names& names, const KLV::Key& key, bool concrete);
    ~MetaMetadataSet() override;

    /// The key as it is in files (local set with 2-byte tags and lengths), version byte
    /// included.
    const KLV::Key& key() const noexcept { return key_; }

    /// The set that this one inherits from, or null.
    const MetaMetadataSet* parent() const noexcept { return parent_; }

    /// False for a class that only others inherit from. Files hold such sets nevertheless.
    bool isConcrete() const noexcept { return concrete_; }

    /// The MetaAttributes of the set, inherited ones included: those of the oldest ancestor first,
    /// each class's own in the order of the dictionary. May be called by any number of threads.
    const Attributes& attributes() const;

    /// The attribute among attributes() whose label is the given one but for the version byte, or
    /// null. May be called by any number of threads; the pointer lives as long as the set.
    const Attribute* find(const Types::UniversalLabel& label) const;

    /// Sets the parent, which must outlive the object. Only its dictionary calls this, while it is
    /// built; so with add() and reserve().
    void inheritFrom(const MetaMetadataSet& parent) noexcept { parent_ = &parent; }

    /// Adds a property of the set's own, which must outlive the object.
    void add(const MetaElement& element, AttributeRequiredStatus::Status status);

    /// Makes room for so many properties of the set's own.
    void reserve(std::size_t properties);

private:
    struct Inherited;
    const Inherited& inherited() const;
    std::unique_ptr<Inherited> makeInherited() const;

    KLV::Key key_;
    const MetaMetadataSet* parent_ = nullptr;
    bool concrete_;
    Templates::vector<std::pair<const MetaElement*, AttributeRequiredStatus::Status>> own_;
    // Owned; made on first use, for most sets of a dictionary never occur in a file.
    mutable std::atomic<Inherited*> inherited_{nullptr};
};

} // namespace Corvid::MetaMetadata
