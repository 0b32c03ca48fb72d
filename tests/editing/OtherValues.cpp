#include "tests/editing/OtherValues.h"

#include "editing/values/AssignValue.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/metadata/Elements.h"
#include "host/metadata/MetadataSet.h"
#include "tests/support/Paths.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace Corvid::Testing {

using Editing::assignValue;
using Editing::textsOf;
using Strings = std::vector<std::string>;

std::vector<std::filesystem::path> realClips() {
    std::vector<std::filesystem::path> paths{sourceDir() / "examples" / "sample.mxf"};
    if (!samplesDir().empty()) {
        for (const auto& entry : std::filesystem::directory_iterator(samplesDir())) {
            if (entry.path().extension() == ".mxf") {
                paths.push_back(entry.path());
            }
        }
    }
    return paths;
}

std::vector<Metadata::Element*> elementsOf(const Metadata::MetadataSet& set) {
    std::vector<Metadata::Element*> elements;
    for (const auto& [label, element] : set.made()) {
        if (!element->isSkipped()) {
            elements.push_back(element);
        }
    }
    std::copy_if(
        set.invalidBegin(), set.invalidEnd(), std::back_inserter(elements),
        [](const auto* each) { return !each->isSkipped() && each->definition() != nullptr; });
    return elements;
}

std::vector<Metadata::Element*> elementsOf(const Metadata::PartitionMetadata& metadata) {
    std::vector<Metadata::Element*> elements;
    for (const auto* const set : metadata) {
        const auto more = elementsOf(*set);
        elements.insert(elements.end(), more.begin(), more.end());
    }
    return elements;
}

bool mayStay(const Metadata::Element& element) {
    namespace Identifiers = Types::Identifiers;
    const auto& definition = *element.definition();
    const auto texts = textsOf(element);
    const auto type =
        definition.isCollection()
            ? static_cast<const MetaMetadata::MetaCollectionElement&>(definition).dataSubType()
            : definition.dataType();
    const std::string name = MetaMetadata::tagName(definition);
    return texts.empty() || texts.front().empty() ||
           static_cast<unsigned char>(texts.front().back()) >= 0x80 ||
           type == Identifiers::StrongReference || type == Identifiers::WeakReference ||
           type == Identifiers::Timestamp || name == "InstanceUID" || name == "EssenceContainers";
}

bool assignAnother(Metadata::PartitionMetadata& metadata, Metadata::Element& element) {
    Strings texts = textsOf(element);
    if (texts.empty() || texts.front().empty() ||
        static_cast<unsigned char>(texts.front().back()) >= 0x80 ||
        MetaMetadata::tagName(*element.definition()) == "EssenceContainers") {
        return false;
    }
    for (const char last : {'1', '2', '0', '4'}) {
        texts.front().back() = last;
        try {
            if (assignValue(metadata, element, texts)) {
                EXPECT_EQ(textsOf(element), texts);
                return true;
            }
        } catch (const Exceptions::InvalidFormat&) {
            // Another digit may do.
        }
    }
    return false;
}

} // namespace Corvid::Testing
