#include "tests/support/ExportedNames.h"

#include <gmock/gmock.h>
#include <set>

namespace Corvid::Testing {
namespace {

/// The classes and functions of the library that a name belongs to; of other names all.
std::string interfaceOf(const std::string& name) {
    const std::string library = "Corvid::Editing::";
    const auto at = name.find(library);
    return at == std::string::npos ? name
                                   : name.substr(at, name.find("::", at + library.size()) - at);
}

TEST(Exports, areTheInterfaceAndNothingElse) {
    std::set<std::string> names;
    for (const std::string& name : exportedNames(CORVID_TEST_EDITING_LIBRARY)) {
        names.insert(interfaceOf(name));
    }
    std::set<std::string> expected{
        "Corvid::Editing::ClipEditor",   "Corvid::Editing::blockSizeOf",
        "Corvid::Editing::carryOut",     "Corvid::Editing::currentTime",
        "Corvid::Editing::essenceHash",  "Corvid::Editing::headerHashes",
        "Corvid::Editing::undoEdit",     "Corvid::Editing::wayOf",
        "Corvid::Editing::Differences",  "Corvid::Editing::DocumentMistakes",
        "Corvid::Editing::compare",      "Corvid::Editing::compareWithRoundTrip",
        "Corvid::Editing::readDocument", "Corvid::Editing::requireCertainEssence",
        "Corvid::Editing::valueText",    "Corvid::Editing::writeDocument"};
    for (const char* caught : {"InvalidFormat", "LimitExceeded", "ParseError"}) {
        for (const char* part : {"typeinfo for ", "typeinfo name for ", "vtable for "}) {
            expected.insert(std::string(part) + "Corvid::Exceptions::" + caught);
        }
    }
    EXPECT_THAT(names, testing::ContainerEq(expected));
}

} // namespace
} // namespace Corvid::Testing
