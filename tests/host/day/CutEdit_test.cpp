// SPDX-License-Identifier: MIT
#include "host/day/CutEdit.h"

#include <gtest/gtest.h>

namespace ravlo
{

namespace
{

CutFields Good() { return {L"Abba", L"Waterloo", L"Gold", L"1974", L"Pop/Gold", L"2", true}; }

// Good fields with another value in one of them.
CutFields With(std::wstring CutFields::*field, std::wstring sValue)
{
    CutFields fields = Good();
    fields.*field = std::move(sValue);
    return fields;
}

EditedCut Taken(const CutFields& fields, const EditedCut& before = {})
{
    return std::get<EditedCut>(ValuesOf(fields, before));
}

CutProblem Refused(const CutFields& fields) { return std::get<CutProblem>(ValuesOf(fields, {})); }

} // namespace

TEST(CutEdit, UnchangedFieldsGiveTheSameValues)
{
    const EditedCut values{L"Abba", L"Waterloo", L"Gold", 1974, L"Pop/Gold", 2, true};
    EXPECT_EQ(Taken(FieldsOf(values)), values);
    const EditedCut unknown{L"", L"", L"", 0, L"", 1, false};
    EXPECT_EQ(FieldsOf(unknown).sYear, L"");
    EXPECT_EQ(Taken(FieldsOf(unknown)), unknown);
}

TEST(CutEdit, TrimsTextsAndNamesAndDropsRepeatedNames)
{
    CutFields fields = Good();
    fields.sArtist = L"  Abba ";
    fields.sYear = L" 1974 ";
    fields.sLevel = L" 3 ";
    fields.sCategories = L" Pop / Gold //pop/ ";
    const EditedCut values = Taken(fields);
    EXPECT_EQ(values.sArtist, L"Abba");
    EXPECT_EQ(values.lYear, 1974);
    EXPECT_EQ(values.lLevel, 3);
    EXPECT_EQ(values.sCategoryText, L"Pop/Gold");
}

TEST(CutEdit, AYearHasAtMostFourDigits)
{
    for (const wchar_t* sYear : {L"12345", L"-1", L"197x", L"19.5"})
        EXPECT_EQ(Refused(With(&CutFields::sYear, sYear)).eField, CutField::Year) << sYear;
}

TEST(CutEdit, ALevelIsAWholeNumberOfTheSchedulersRange)
{
    for (const wchar_t* sLevel : {L"", L"0", L"-1", L"1.5", L"32765", L"99999", L"one"})
    {
        const CutProblem problem = Refused(With(&CutFields::sLevel, sLevel));
        EXPECT_EQ(problem.eField, CutField::Level) << sLevel;
        EXPECT_EQ(problem.sText, L"The level is a whole number from 1 to 32764.");
    }
    EXPECT_EQ(Taken(With(&CutFields::sLevel, L"32764")).lLevel, 32764);
}

TEST(CutEdit, ACategoryThatCannotBeIsRefusedWithTheReason)
{
    const std::wstring sLetters = L"a name contains no tabulator and none of * / : < > ? \\ | \".";
    const std::wstring sNumber = L"a name must not be a number.";
    const std::wstring sDevice = L"this is the name of a device.";
    const std::wstring sOwn = L"the scheduler uses this name itself.";
    const std::pair<std::wstring, std::wstring> refusals[] = {
        {L"Pop\t2", sLetters}, {L"..\\x", sLetters},
        {L"a:b", sLetters},    {L"12", sNumber},
        {L"1,000", sNumber},   {L"&H1F", sNumber},
        {L"CON", sDevice},     {L"com1.old", sDevice},
        {L"All Audio", sOwn},  {L"NOCAT", sOwn},
        {L"ALL SONGS", sOwn},  {std::wstring(51, L'x'), L"a name has at most 50 characters."},
    };
    for (const auto& [sName, sReason] : refusals)
    {
        const CutProblem problem = Refused(With(&CutFields::sCategories, L"Pop/" + sName));
        EXPECT_EQ(problem.eField, CutField::Categories) << sName;
        EXPECT_EQ(problem.sText, L"There can be no category \"" + sName + L"\": " + sReason);
    }
    for (const auto& sName : {L"80s", L"Rock'n'Roll", L"x.y", L"\u65E5\u672C", L"Console"})
        EXPECT_EQ(Taken(With(&CutFields::sCategories, sName)).sCategoryText, sName);
}

TEST(CutEdit, ACutMayKeepAnyCategoryOfItsDatabase)
{
    EditedCut before;
    before.sCategoryText = L"12/CON";
    EXPECT_EQ(Taken(With(&CutFields::sCategories, L"Pop/12/con"), before).sCategoryText, L"Pop/12/con");
}

} // namespace ravlo
