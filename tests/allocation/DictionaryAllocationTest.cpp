#include "host/dictionary/Dictionary.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/MetadataSet.h"
#include "tests/allocation/Sweep.h"

namespace Corvid::Testing {
namespace {

/// Asks a set of the dictionary for its properties.
class ListsProperties : public Subject {
public:
    void call() override { count_ = set_.attributes().size(); }
    std::string result() override { return std::to_string(count_); }

private:
    const MetaMetadata::MetaMetadataSet& set_ = *MetaMetadata::Dictionary::builtIn()->findSet(
        Metadata::Structural::StructuralMetadataKeys::preface());
    std::size_t count_ = 0;
};

using DictionaryWithoutMemory = WithoutMemory;

TEST_F(DictionaryWithoutMemory, listsOnTheNextUseWhatItCouldNotListOnTheFirst) {
    sweepFirstUse([] { return std::make_unique<ListsProperties>(); });
}

} // namespace
} // namespace Corvid::Testing
