#include "editing/apply/SameClip.h"

#include "editing/change/Owners.h"
#include "editing/change/StoredProperties.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/MetaElement.h"
#include "host/metadata/MetadataSet.h"

#include <algorithm>

namespace Corvid::Editing {

namespace {

constexpr Types::u16 identificationsTag = 0x3B06; ///< SMPTE ST 377-1

const mxf::LayoutItem* findPreface(const mxf::HeaderLayout& layout) {
    for (const mxf::LayoutItem& item : layout.items()) {
        if (item.kind == mxf::LayoutItem::Kind::set &&
            KLV::matches(item.triplet.key,
                         Metadata::Structural::StructuralMetadataKeys::preface())) {
            return &item;
        }
    }
    return nullptr;
}

std::vector<Types::UUID> identificationsOf(const mxf::HeaderLayout& layout,
                                           const mxf::LayoutItem& preface,
                                           const MetaMetadata::Dictionary& dictionary) {
    const auto& label = dictionary.findElementByStaticTag(identificationsTag)->label();
    const auto properties = storedProperties(layout, preface, dictionary);
    const auto found = properties.find({XMLBuilder::identityOf(label)});
    return found == properties.end() ? std::vector<Types::UUID>()
                                     : targetsOf(label, found->second.value, dictionary);
}

[[noreturn]] void refuseOther() {
    throw Exceptions::InvalidFormat("the document is of another clip: its sets have other "
                                    "InstanceUIDs",
                                    CORVID_HERE);
}

/// How many sets of a layout another one has too, and how many not.
struct Sets {
    Sets(const mxf::HeaderLayout& of, const mxf::HeaderLayout& other) {
        for (const mxf::LayoutItem& item : of.items()) {
            if (item.kind == mxf::LayoutItem::Kind::set) {
                if (const auto instance = of.instanceUID(item)) {
                    ++(other.find(*instance) ? known : unknown);
                }
            }
        }
    }
    bool areMostlyUnknown() const noexcept { return unknown > known; }

    std::size_t known = 0;
    std::size_t unknown = 0;
};

/// A document may hold a part of the clip, or add more sets than the clip has; but not both.
void requireKnownSets(const mxf::HeaderLayout& clip, const mxf::HeaderLayout& document) {
    if (Sets(document, clip).areMostlyUnknown() && Sets(clip, document).areMostlyUnknown()) {
        refuseOther();
    }
}

} // namespace

void requireSameClip(const mxf::HeaderLayout& clip, const mxf::HeaderLayout& document,
                     const MetaMetadata::Dictionary& dictionary) {
    requireKnownSets(clip, document);
    const auto* const ofClip = findPreface(clip);
    const auto* const ofDocument = findPreface(document);
    if (ofClip == nullptr || ofDocument == nullptr) {
        return; // a document may begin with another set
    }
    if (clip.instanceUID(*ofClip) != document.instanceUID(*ofDocument)) {
        refuseOther();
    }
    const auto inClip = identificationsOf(clip, *ofClip, dictionary);
    const auto inDocument = identificationsOf(document, *ofDocument, dictionary);
    if (inDocument.size() < inClip.size() &&
        std::equal(inDocument.begin(), inDocument.end(), inClip.begin())) {
        throw Exceptions::InvalidFormat(
            "the document is of an older state of the clip: it lacks Identification " +
                Platform::toUtf8(inClip[inDocument.size()].toString()) +
                " and what was modified then; to-xml makes a document of the present state",
            CORVID_HERE);
    }
}

} // namespace Corvid::Editing
