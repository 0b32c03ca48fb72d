#pragma once

#include "host/base/Templates.h"
#include "host/dictionary/DictionaryText.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/dictionary/MetaMetadataSet.h"

#include <memory>

namespace Corvid::MetaMetadata {

/// The definitions of sets and properties. Once made it does not change, so any number of threads
/// may use it.
class CORVID_EXPORT Dictionary {
public:
    /// Random-access iterators; a definition has the same place in every run.
    using SetIterator = const MetaMetadataSet* const*;
    using ElementIterator = const MetaElement* const*;
    using Texts = Templates::vector<DictionaryText>;

    ~Dictionary();
    Dictionary(const Dictionary&) = delete;
    Dictionary& operator=(const Dictionary&) = delete;

    /// The dictionary that comes with the library: what the SMPTE registers hold, and what else is
    /// in use (docs/dictionary.md). Made on first use, the same object for every caller; safe to
    /// call from any thread.
    static Templates::SharedPtr<Dictionary> builtIn();

    /// What the SMPTE registers hold, alone. Otherwise as builtIn().
    static Templates::SharedPtr<Dictionary> registered();

    /// A dictionary with everything in `base` and in the texts, which may refer to each other.
    ///
    /// @throws InvalidDictionary  a text breaks a rule of the format or contradicts another
    ///     definition; names text, line, reason and, in a conflict, the other party.
    static Templates::SharedPtr<Dictionary> extend(const Dictionary& base, const Texts& texts);

    /// A dictionary with what the texts define and nothing else.
    /// @throws InvalidDictionary  as extend() does.
    static Templates::SharedPtr<Dictionary> fromTexts(const Texts& texts);

    /// The definitions of sets, in the order of their keys.
    SetIterator metaMetadataSetBegin() const noexcept;
    SetIterator metaMetadataSetEnd() const noexcept;

    /// The definitions of properties, in the order of their labels.
    ElementIterator metaElementBegin() const noexcept;
    ElementIterator metaElementEnd() const noexcept;

    /// The set with that key, whatever its version byte (the eighth), or null. The key of a local
    /// set is found with either coding of its properties' lengths (sixth byte 53 or 13), no other.
    const MetaMetadataSet* findSet(const KLV::Key& key) const noexcept;

    /// The property with that label, whatever its version byte (the eighth), or null.
    const MetaElement* findElement(const Types::UniversalLabel& label) const noexcept;

    /// The property that the standard gives that local tag for good, or null.
    const MetaElement* findElementByStaticTag(unsigned short tag) const noexcept;

    /// For the library of the document format: the definitions by their names in documents.
    const Platform::Attached& documentNames() const noexcept;

private:
    struct Content;
    explicit Dictionary(std::unique_ptr<Content> content) noexcept;
    static Templates::SharedPtr<Dictionary> make(std::unique_ptr<Content> content);

    std::unique_ptr<Content> content_;
};

} // namespace Corvid::MetaMetadata
