#include "XMLBuilder/CallerContract.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace Corvid::Testing {
namespace {

TEST(CallerContract, measuresTheItemsOfFiveTypesOnly) {
    std::set<std::string> measured;
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    if (XMLBuilder::CallerContract::hasVariableSize(Types::Identifiers::Class)) {                  \
        measured.insert(#Class);                                                                   \
    }
#include "host/types/ValueTypes.def"
    EXPECT_EQ(measured, (std::set<std::string>{"DataStream", "DataValue", "ISO7String",
                                               "UTF16String", "Unknown"}));
}

} // namespace
} // namespace Corvid::Testing
