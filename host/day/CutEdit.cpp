// SPDX-License-Identifier: MIT
#include "host/day/CutEdit.h"

#include "base/Text.h"
#include "base/TextKey.h"
#include "host/day/CategoryName.h"

#include <algorithm>
#include <vector>

namespace ravlo
{

namespace
{

constexpr std::int32_t lMostYear = 9999;

// Digits and nothing else, within the range.
std::optional<std::int32_t> WholeNumber(const std::wstring& sText, std::int32_t lLeast, std::int32_t lMost)
{
    const bool bDigits =
        !sText.empty() && sText.size() <= 5 &&
        std::all_of(sText.begin(), sText.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
    if (!bDigits)
        return std::nullopt;
    const std::int32_t lValue = static_cast<std::int32_t>(std::stol(sText));
    return lValue >= lLeast && lValue <= lMost ? std::optional(lValue) : std::nullopt;
}

// The names in a text, each once.
std::vector<TextKey> NamesIn(const std::wstring& sCategories)
{
    std::vector<TextKey> colNames;
    for (const std::wstring& sPiece : Split(sCategories, L"/"))
    {
        const TextKey cName(Trim(sPiece));
        if (!cName.Empty() && std::find(colNames.begin(), colNames.end(), cName) == colNames.end())
            colNames.push_back(cName);
    }
    return colNames;
}

std::wstring Joined(const std::vector<TextKey>& colNames)
{
    std::wstring sText;
    for (const TextKey& cName : colNames)
        sText += (sText.empty() ? L"" : L"/") + cName.Text();
    return sText;
}

} // namespace

CutFields FieldsOf(const EditedCut& values)
{
    return {values.sArtist,       values.sTitle,
            values.sAlbum,        values.lYear == 0 ? std::wstring() : DecimalText(values.lYear),
            values.sCategoryText, DecimalText(values.lLevel),
            values.bOpener};
}

std::variant<EditedCut, CutProblem> ValuesOf(const CutFields& fields, const EditedCut& before)
{
    const std::wstring sYear = Trim(fields.sYear);
    const std::optional<std::int32_t> lYear =
        sYear.empty() ? std::optional<std::int32_t>(0) : WholeNumber(sYear, 0, lMostYear);
    if (!lYear)
        return CutProblem{CutField::Year, L"The year is a number of at most four digits, or empty."};
    const std::vector<TextKey> colNames = NamesIn(fields.sCategories);
    const std::vector<TextKey> colBefore = NamesIn(before.sCategoryText);
    for (const TextKey& cName : colNames)
    {
        const bool bKnown = std::find(colBefore.begin(), colBefore.end(), cName) != colBefore.end();
        const std::wstring sReason = bKnown ? std::wstring() : WhyNoCategory(cName.Text());
        if (!sReason.empty())
            return CutProblem{CutField::Categories,
                              L"There can be no category \"" + cName.Text() + L"\": " + sReason};
    }
    const std::optional<std::int32_t> lLevel = WholeNumber(Trim(fields.sLevel), 1, lMostLevel);
    if (!lLevel)
        return CutProblem{CutField::Level,
                          L"The level is a whole number from 1 to " + DecimalText(lMostLevel) + L"."};
    return EditedCut{
        Trim(fields.sArtist), Trim(fields.sTitle), Trim(fields.sAlbum), *lYear, Joined(colNames), *lLevel,
        fields.bOpener};
}

} // namespace ravlo
