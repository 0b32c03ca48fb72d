#include "inspection/DefinitionUses.h"

#include "host/dictionary/Dictionary.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Corvid;
using Inspection::DefinitionUses;
using MetaMetadata::MetaElement;
using MetaMetadata::MetaMetadataSet;

namespace {

/// The sets of the dictionary for which a statement is true.
template <class Statement> DefinitionUses::Sets setsThat(Statement statement) {
    const auto& dictionary = *MetaMetadata::Dictionary::builtIn();
    DefinitionUses::Sets sets;
    std::copy_if(dictionary.metaMetadataSetBegin(), dictionary.metaMetadataSetEnd(),
                 std::back_inserter(sets), statement);
    return sets;
}

bool descendsFrom(const MetaMetadataSet* set, const MetaMetadataSet* ancestor) {
    while (set != nullptr && set != ancestor) {
        set = set->parent();
    }
    return set != nullptr;
}

TEST(DefinitionUses, areWhatASearchOfTheWholeDictionaryFinds) {
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    const DefinitionUses uses(*dictionary);
    for (auto i = dictionary->metaMetadataSetBegin(); i != dictionary->metaMetadataSetEnd(); ++i) {
        const MetaMetadataSet* const set = *i;
        EXPECT_EQ(uses.heirs(*set),
                  setsThat([&](const auto* other) { return other->parent() == set; }));
        EXPECT_EQ(uses.countDescendants(*set), setsThat([&](const auto* other) {
                                                   return other != set && descendsFrom(other, set);
                                               }).size());
    }
    for (auto i = dictionary->metaElementBegin(); i != dictionary->metaElementEnd(); ++i) {
        const MetaElement* const property = *i;
        EXPECT_EQ(uses.setsWith(*property), setsThat([&](const auto* set) {
                      const auto& label = property->label();
                      return set->find(label) != nullptr &&
                             (set->parent() == nullptr || set->parent()->find(label) == nullptr);
                  }));
    }
}

} // namespace
