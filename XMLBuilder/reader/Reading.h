#pragma once

#include "XMLBuilder/format/DictionaryNames.h"
#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/reader/ExtensionTags.h"
#include "XMLBuilder/reader/InstanceNameTable.h"
#include "XMLBuilder/reader/Supplement.h"
#include "XMLBuilder/reader/nodes/ChildSteps.h"
#include "XMLBuilder/reader/nodes/NodePool.h"
#include "XMLBuilder/reader/nodes/PrefixScope.h"
#include "XMLBuilder/reader/strict/Strictness.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/Dictionary.h"

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace Corvid::MetaMetadata {
class MetaElement;
class MetaMetadataSet;
} // namespace Corvid::MetaMetadata

namespace Corvid::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Corvid::Metadata

namespace Corvid::XMLBuilder {

/// What is being read, for messages.
struct ReadingPlace {
    const DocumentNode* set = nullptr;      ///< null outside of sets
    const DocumentNode* property = nullptr; ///< null between the properties of the set

    /// "set Preface 06.0e. ...: rp210:OperationalPattern: message"; the message alone outside of
    /// sets.
    std::string inFrontOf(const std::string& message) const;
};

class OpenSet;

/// What one call of the reader knows: shared by all its visitors, gone when the call returns.
class Reading {
public:
    /// All are borrowed.
    /// @param root        of the document, without its children.
    /// @param queries     null where the document is no DOM.
    /// @param names       null for a document that is read strictly: what it writes stays.
    /// @param supplement  null for a document that has nothing but its elements.
    /// @param strictness  null for a document that is read leniently.
    Reading(const DocumentNode& root, DomQueries* queries, Metadata::PartitionMetadata& partition,
            InstanceNameTable* names, Supplement* supplement = nullptr,
            Strictness* strictness = nullptr);
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    const DocumentNode& root() const noexcept { return root_; }
    DomQueries* queries() noexcept { return queries_; }
    Metadata::PartitionMetadata& partition() noexcept { return partition_; }
    ExtensionTags& tags() noexcept { return tags_; }
    Supplement* supplement() const noexcept { return supplement_; }
    Strictness* strictness() const noexcept { return strictness_; }

    /// The class of an element, or null: by its local name, or strictly by its expanded one.
    const MetaMetadata::MetaMetadataSet* findSet(const DocumentNode& element) const;
    /// Whether an element or attribute has a name of the format: as written, or strictly by
    /// namespace.
    bool isNamed(const DocumentNode& node, const Names::Namespace& names,
                 const char16_t* qualified) const;
    /// The attribute of an element with a name of the format, or null.
    const DocumentNode* attribute(const DocumentNode& element, const Names::Namespace& names,
                                  const char16_t* qualified) const;
    /// Its value, strictly without white space around it; empty where there is none.
    std::u16string_view attributeText(const DocumentNode& element, const Names::Namespace& names,
                                      const char16_t* qualified) const;
    std::u16string_view textOf(const DocumentNode* attribute) const;

    /// The property that an extension element is named after, or null: by its expanded name, for
    /// which only the declarations of the root count unless the document is read strictly.
    const MetaMetadata::MetaElement* findProperty(const DocumentNode& extension) const;

    /// The namespaces of prefixes at the root.
    PrefixScope& prefixesOfRoot() noexcept { return prefixesOfRoot_; }

    /// The namespace of the parts of values. Without a declaration of their prefix at the root this
    /// fails as the query for a part does.
    const char16_t* uriOfParts(const Names::Namespace& parts);

    /// Whether an extension element needs a tag that can only be made when the whole document is
    /// read: a stream does not say before which tags it names.
    bool mustWait(const DocumentNode& extension) const;
    /// Keeps an extension element of a set, and those after it, for then.
    void wait(Metadata::MetadataSet& set, const DocumentNode& extension);
    /// Reads them. To be called at the end of a document that is a stream.
    void readWaiting();

    /// A new set for an element. It has an InstanceUID, unless the document is read strictly and
    /// says which.
    Metadata::MetadataSet& makeSet(const MetaMetadata::MetaMetadataSet& definition,
                                   const DocumentNode& element);
    /// The InstanceUID that a written identifier has in the partition, where the document is read
    /// leniently.
    /// @param make  gives one for what comes up for the first time.
    template <class Make> Types::UUID identifierOf(std::u16string_view written, Make make) {
        return names_->findOrAdd(written, make);
    }

    /// Whether an element is a dark set, which may be in another namespace under the prefix.
    static bool isDarkSet(const DocumentNode& element) {
        return element.local == std::u16string_view(Names::localPart(Names::darkMetadata));
    }

    /// Calls the body. When a document is read strictly, what the body throws because of the
    /// document is a mistake at the node.
    template <class Body> void attempt(const DocumentNode& node, Body body) {
        if (strictness_ == nullptr) {
            body();
            return;
        }
        try {
            body();
        } catch (const Exceptions::InvalidFormat& error) {
            addMistake(node, error);
        } catch (const Exceptions::InvalidLength& error) {
            addMistake(node, error);
        } catch (const Exceptions::LimitExceeded& error) {
            addMistake(node, error);
        }
    }

    /// Passes on that nothing is read from an element at the present place.
    void leaveOut(const DocumentNode& element) const;

    /// A caller that changes the place restores it, except after an exception.
    ReadingPlace& place() noexcept { return place_; }

private:
    friend class OpenSet;

    void addMistake(const DocumentNode& node, const Exceptions::BaseException& error);

    const DocumentNode& root_;
    DomQueries* queries_;
    Metadata::PartitionMetadata& partition_;
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary_;
    const DictionaryNames& definitions_;
    InstanceNameTable* names_;
    ExtensionTags tags_;
    Supplement* supplement_;
    Strictness* strictness_;
    PrefixScope prefixesOfRoot_;
    ReadingPlace place_;
    std::deque<ChildSteps> children_; ///< one for each depth, kept for the next set there
    OpenSet* innermost_ = nullptr;    ///< the set that is being read; null outside of sets

    struct Waiting {
        Metadata::MetadataSet* set;
        const DocumentNode* extension;
    };
    std::vector<Waiting> waiting_;
    NodePool ofWaiting_;
    bool isComplete_ = false; ///< all of the document is read but what waits
};

/// A set's element while it is being read.
class OpenSet {
public:
    /// @throws LimitExceeded  sets are nested deeper than greatestInlineDepth.
    OpenSet(Reading& reading, const DocumentNode& element);
    OpenSet(const OpenSet&) = delete;
    OpenSet& operator=(const OpenSet&) = delete;
    ~OpenSet() { reading_.innermost_ = outer_; }

    const ChildSteps& children() const noexcept { return *children_; }
    PrefixScope& prefixes() noexcept { return prefixes_; }

private:
    Reading& reading_;
    OpenSet* outer_;    ///< the set around it, or null
    std::size_t depth_; ///< how many sets are around it
    ChildSteps* children_;
    PrefixScope prefixes_;
};

} // namespace Corvid::XMLBuilder
