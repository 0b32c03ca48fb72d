#include "XMLBuilder/schema/Schemas.h"
#include "fuzz/FuzzInput.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/Dictionary.h"

using namespace Corvid;
using MetaMetadata::Dictionary;

namespace {

/// Something to inherit from and to contradict: the built-in dictionary would take most of the
/// time.
constexpr const char* base = R"(
namespace  rp210  urn:SMPTE:RP210
namespace  s377m  urn:SMPTE:S377M
set       s377m:InterchangeObject    06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.01.00  -  abstract
property  rp210:InstanceUID          06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00  3c.0a  UUID  required  1
property  rp210:GenerationUID        06.0e.2b.34.01.01.01.02.05.20.07.01.08.00.00.00  01.02  UUID  optional  2
set       s377m:DescriptiveObject    06.0e.2b.34.02.53.01.01.0d.01.04.00.00.00.00.00  s377m:InterchangeObject  abstract
set       s377m:SubDescriptor        06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.59.00  s377m:InterchangeObject  abstract
set       s377m:SourcePackage        06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.37.00  s377m:InterchangeObject  concrete
property  rp210:EssenceDescription   06.0e.2b.34.01.01.01.02.06.01.01.04.02.03.00.00  47.01  StrongReference  required  3
)";

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Dictionary::Texts texts;
    texts.push_back({"base", base});
    texts.push_back({"input", {reinterpret_cast<const char*>(bytes), size}});
    try {
        const auto dictionary = Dictionary::fromTexts(texts);
        // What was taken over is found again.
        for (auto set = dictionary->metaMetadataSetBegin(); set != dictionary->metaMetadataSetEnd();
             ++set) {
            if (dictionary->findSet((*set)->key()) != *set) {
                Fuzzing::fail("a set is not found by its key");
            }
        }
        for (auto each = dictionary->metaElementBegin(); each != dictionary->metaElementEnd();
             ++each) {
            if (dictionary->findElement((*each)->label()) != *each) {
                Fuzzing::fail("a property is not found by its label");
            }
        }
        XMLBuilder::makeSchemas(*dictionary);
    } catch (const Exceptions::BaseException&) {
        // Refused, as it should be.
    }
    return 0;
}
