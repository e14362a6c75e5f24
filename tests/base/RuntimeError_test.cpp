// SPDX-License-Identifier: MIT
#include "base/RuntimeError.h"

#include <gtest/gtest.h>
#include <string>

namespace ravlo
{
namespace
{

TEST(RuntimeError, HasTheStandardDescriptionOfItsNumber)
{
    const struct
    {
        std::int32_t lNumber;
        const wchar_t* sDescription;
    } aCases[] = {
        {3, L"Return without GoSub"},
        {5, L"Invalid procedure call or argument"},
        {6, L"Overflow"},
        {7, L"Out of memory"},
        {9, L"Subscript out of range"},
        {13, L"Type mismatch"},
        {51, L"Internal error"},
        {52, L"Bad file name or number"},
        {53, L"File not found"},
        {57, L"Device I/O error"},
        {58, L"File already exists"},
        {61, L"Disk full"},
        {62, L"Input past end of file"},
        {67, L"Too many files"},
        {70, L"Permission denied"},
        {75, L"Path/File access error"},
        {76, L"Path not found"},
        {91, L"Object variable or With block variable not set"},
        {424, L"Object required"},
        {445, L"Object doesn't support this action"},
        {457, L"This key is already associated with an element of this collection"},
        {462, L"The remote server machine does not exist or is unavailable"},
    };
    for (const auto& testCase : aCases)
    {
        const RuntimeError cError(testCase.lNumber);
        EXPECT_EQ(cError.Number(), testCase.lNumber);
        EXPECT_EQ(cError.Description(), testCase.sDescription);
    }
}

TEST(RuntimeError, NumberWithoutADescriptionIsTheApplications)
{
    for (const std::int32_t lNumber : {0, -1, 4, 1000, 463, -2147467259})
        EXPECT_EQ(StandardDescription(lNumber), L"Application-defined or object-defined error") << lNumber;
}

TEST(RuntimeError, CarriesADescriptionOfItsOwn)
{
    const RuntimeError cError(52, L"Bad file name: \"\u00C4\t\"");
    EXPECT_EQ(cError.Number(), 52);
    EXPECT_EQ(cError.Description(), L"Bad file name: \"\u00C4\t\"");
    EXPECT_STREQ(cError.what(), "Bad file name: \"??\"");
}

} // namespace
} // namespace ravlo
