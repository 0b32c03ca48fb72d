#include "tools/corvid/terminal/Table.h"

#include <gtest/gtest.h>

using namespace Corvid::Tool;

namespace {

TEST(Table, alignsItsColumns) {
    Table table(2);
    table.add({"A", "B"});
    table.add({"long", "x"});
    table.add({"y", "z"});
    EXPECT_EQ(table.toString("<", ">"), "<  A     B>\n  long  x\n  y     z\n");
}

TEST(Table, doesNotWidenAllRowsForOneLongCell) {
    Table table(0);
    table.add({"A", "B"});
    table.add({std::string(1000, 'x'), "1"});
    table.add({"y", "2"});
    EXPECT_EQ(table.toString("", ""), "A" + std::string(121, ' ') + "B\n" + std::string(1000, 'x') +
                                          "  1\n" + "y" + std::string(121, ' ') + "2\n");
}

} // namespace
