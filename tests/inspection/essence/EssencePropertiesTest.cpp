#include "inspection/essence/EssenceProperties.h"

#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/Dictionary.h"
#include "host/dictionary/MetaCollectionElement.h"

#include <gtest/gtest.h>

namespace Corvid::Testing {
namespace {

/// A property whose label the dictionary does not know is never found.
TEST(EssenceProperties, areThoseOfTheDictionary) {
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    const auto nameOf = [&](const auto& property) {
        const auto* const element = dictionary->findElement(property.label());
        return element == nullptr ? std::string("?") : MetaMetadata::tagName(*element);
    };
#define CORVID_ESSENCE_PROPERTY(constant, Type, item, name)                                        \
    EXPECT_EQ(nameOf(Inspection::Structural::constant), name);
#include "inspection/essence/EssenceProperties.def"
}

/// The number that the dictionary names the class of a value by.
int numberOf(const std::string& wanted) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    if (wanted == #Class) {                                                                        \
        return Id;                                                                                 \
    }
#include "host/types/ValueTypes.def"
    return -1;
}

/// Nor is one with values of another type.
TEST(EssenceProperties, haveTheTypesOfTheDictionary) {
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    const auto typeOf = [&](const auto& property) {
        const auto* const element = dictionary->findElement(property.label());
        const auto* const collection =
            dynamic_cast<const MetaMetadata::MetaCollectionElement*>(element);
        return collection != nullptr ? static_cast<int>(collection->dataSubType())
               : element != nullptr  ? static_cast<int>(element->dataType())
                                     : 0;
    };
#define CORVID_ESSENCE_PROPERTY(constant, Type, item, name)                                        \
    EXPECT_EQ(typeOf(Inspection::Structural::constant), numberOf(#Type)) << name;
#include "inspection/essence/EssenceProperties.def"
}

} // namespace
} // namespace Corvid::Testing
