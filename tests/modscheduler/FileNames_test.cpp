// SPDX-License-Identifier: MIT
#include "modscheduler/FileNames.h"

#include "base/RuntimeError.h"

#include <gtest/gtest.h>

#include <string>

namespace ravlo::test
{
namespace
{

struct Name
{
    const wchar_t* sName;
    bool bCanBe;
};

constexpr Name names[] = {
    {L"Pop", true},
    {L"Pop\u00AC\u00AC\u00AC2", true},
    {L"R.E.M.", true},
    {L"..", true},
    {L".", true},
    {L"...", true},
    {L" ", true},
    {L"Pop ", true},
    {L"~Pop", true},
    {L"\u65E5\u672C", true},
    {L"Caf\u00E9", true},
    {L"", false},
    // separators and the platform's own characters
    {L"A*B", false},
    {L"A/B", false},
    {L"A:B", false},
    {L"A<B", false},
    {L"A>B", false},
    {L"A?B", false},
    {L"A\\B", false},
    {L"A|B", false},
    {L"A\"B", false},
    {L"..\\..\\autoexec", false},
    // control characters
    {L"A\tB", false},
    {L"A\rB", false},
    {L"A\nB", false},
    {L"\x01", false},
    {L"\x1F", false},
    {L"A\x7F", true},
    // devices stay devices with any extension
    {L"CON", false},
    {L"con", false},
    {L"PRN", false},
    {L"AUX", false},
    {L"NUL", false},
    {L"NUL.Pop", false},
    {L"nul .Pop", false},
    {L"CONIN$", false},
    {L"CONOUT$", false},
    {L"COM1", false},
    {L"com9", false},
    {L"LPT1", false},
    {L"Lpt9.x", false},
    {L"COM\u00B9", false},
    {L"LPT\u00B2", false},
    {L"COM\u00B3", false},
    // what only looks like one
    {L"CONCERT", true},
    {L"COM", true},
    {L"COM0", true},
    {L"COM10", true},
    {L"LPTX", true},
    {L"COMA", true},
    {L"Pop.CON", true},
    {L" CON", true},
};

TEST(FileNames, ANameCanBeAFilesNameUnlessItLeavesItsFolderOrNamesADevice)
{
    for (const Name& name : names)
        EXPECT_EQ(CanBeFileName(name.sName), name.bCanBe) << testing::PrintToString(std::wstring(name.sName));
    EXPECT_FALSE(CanBeFileName(std::wstring_view(L"A\0B", 3)));
}

TEST(FileNames, ARefusedNameIsNamedInTheError)
{
    EXPECT_NO_THROW(RequireFileName(L"R.E.M."));
    try
    {
        RequireFileName(L"AC/DC");
        FAIL() << "no error";
    }
    catch (const RuntimeError& cError)
    {
        EXPECT_EQ(cError.Number(), 52);
        EXPECT_EQ(cError.Description(), L"Bad file name: \"AC/DC\"");
    }
}

} // namespace
} // namespace ravlo::test
