// SPDX-License-Identifier: MIT
#include "host/day/TextTable.h"

#include <gtest/gtest.h>

namespace ravlo
{

TEST(TextTable, AlignsEachColumnToItsSideAndEndsLinesWithoutBlanks)
{
    TextTable table({TextTable::Side::Left, TextTable::Side::Right, TextTable::Side::Left});
    table.Row({L"a", L"1", L"x"});
    table.Row({L"long", L"100", L""});
    EXPECT_EQ(table.Text(), L"a       1  x\nlong  100\n");
    EXPECT_EQ(TextTable({}).Text(), L"");
}

} // namespace ravlo
