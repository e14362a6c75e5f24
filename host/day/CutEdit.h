// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace ravlo
{

// What stands in the fields of the cut editor.
struct CutFields
{
    std::wstring sArtist;
    std::wstring sTitle;
    std::wstring sAlbum;
    std::wstring sYear;
    std::wstring sCategories; // names joined with "/"
    std::wstring sLevel;
    bool bOpener = false;
};

// What the fields say, ready to be given to the cut.
struct CutValues
{
    std::wstring sArtist;
    std::wstring sTitle;
    std::wstring sAlbum;
    std::int32_t lYear = 0; // 0: not known
    std::wstring sCategoryText;
    std::int32_t lLevel = 1;
    bool bOpener = false;

    bool operator==(const CutValues&) const = default;
};

enum class CutField
{
    Year,
    Categories,
    Level,
};

// Why the fields cannot be taken, and which one it is.
struct CutProblem
{
    CutField eField;
    std::wstring sText;
};

CutFields FieldsOf(const CutValues& values);

// Trims texts and drops duplicate categories, ignoring case. Refuses a category whose name cannot name an
// order file, unless the cut was already in it.
std::variant<CutValues, CutProblem> ValuesOf(const CutFields& fields, const CutValues& before);

} // namespace ravlo
