// SPDX-License-Identifier: MIT
#include "modscheduler/FileNames.h"

#include "base/RuntimeError.h"

#include <gtest/gtest.h>

#include <string>

namespace ravlo::test
{
namespace
{

constexpr const wchar_t* possible[] = {L"Pop", L"Pop\u00AC\u00AC\u00AC2", L"R.E.M.", L"..", L".", L"...",
                                       L" ", L"Pop ", L"~Pop", L"\u65E5\u672C", L"Caf\u00E9", L"A\x7F",
                                       // only similar to a device
                                       L"CONCERT", L"COM", L"COM0", L"COM10", L"LPTX", L"COMA", L"Pop.CON",
                                       L" CON"};

constexpr const wchar_t* impossible[] = {
    L"",
    // separators and the platform's own characters
    L"A*B", L"A/B", L"A:B", L"A<B", L"A>B", L"A?B", L"A\\B", L"A|B", L"A\"B", L"..\\..\\autoexec",
    // control characters
    L"A\tB", L"A\rB", L"A\nB", L"\x01", L"\x1F",
    // devices, with any extension
    L"CON", L"con", L"PRN", L"AUX", L"NUL", L"NUL.Pop", L"nul .Pop", L"CONIN$", L"CONOUT$", L"COM1", L"com9",
    L"LPT1", L"Lpt9.x", L"COM\u00B9", L"LPT\u00B2", L"COM\u00B3"};

TEST(FileNames, NamesThatLeaveTheFolderOrNameADeviceAreRefused)
{
    for (const wchar_t* sName : possible)
        EXPECT_TRUE(CanBeFileName(sName)) << testing::PrintToString(sName);
    for (const wchar_t* sName : impossible)
        EXPECT_FALSE(CanBeFileName(sName)) << testing::PrintToString(sName);
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
