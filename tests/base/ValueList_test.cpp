// SPDX-License-Identifier: MIT
#include "base/ValueList.h"

#include <gtest/gtest.h>
#include <vector>

namespace ravlo
{
namespace
{

TEST(ValueList, GivesItsValuesInAscendingOrderAndKeepsEqualOnes)
{
    ValueList<float> cList;
    EXPECT_TRUE(cList.Empty());
    for (const float sngValue : {12.5f, -3.0f, 40.0f, 12.5f})
        cList.Add(sngValue);
    EXPECT_EQ(cList.Count(), 4u);
    EXPECT_EQ(std::vector<float>(cList.begin(), cList.end()),
              (std::vector<float>{-3.0f, 12.5f, 12.5f, 40.0f}));
    EXPECT_EQ(cList.Last(), 40.0f);
    EXPECT_FALSE(cList.Empty());
}

} // namespace
} // namespace ravlo
