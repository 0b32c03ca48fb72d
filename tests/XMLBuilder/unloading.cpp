// Writes a document through a module that is unloaded while the dictionary lives on. The exit
// status says whether that worked.

#include "host/dictionary/Dictionary.h"
#include "host/metadata/PartitionMetadata.h"

#include <dlfcn.h>

using namespace Corvid;

int main() {
    void* const module = dlopen(CORVID_TEST_MODULE, RTLD_NOW);
    if (module == nullptr) {
        return 1;
    }
    using Write = bool (*)(Metadata::PartitionMetadata*);
    const auto write = reinterpret_cast<Write>(dlsym(module, "corvidTestWrite"));
    // One that goes before the program ends: what documents kept with its definitions goes, too.
    Metadata::PartitionMetadata partition(MetaMetadata::Dictionary::extend(
        *MetaMetadata::Dictionary::builtIn(), MetaMetadata::Dictionary::Texts()));
    partition.createMetadataSet(Metadata::Structural::StructuralMetadataKeys::preface());
    const bool isWritten = write != nullptr && write(&partition);
    return isWritten && dlclose(module) == 0 ? 0 : 1;
}
