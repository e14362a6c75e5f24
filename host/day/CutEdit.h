// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace ravlo
{

// The contents of the cut editor's fields.
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

// The values of the fields, ready to be set on the cut.
struct EditedCut
{
    std::wstring sArtist;
    std::wstring sTitle;
    std::wstring sAlbum;
    std::int32_t lYear = 0; // 0: not known
    std::wstring sCategoryText;
    std::int32_t lLevel = 1;
    bool bOpener = false;

    bool operator==(const EditedCut&) const = default;
};

enum class CutField
{
    Year,
    Categories,
    Level,
};

// Why a field cannot be accepted, and which one.
struct CutProblem
{
    CutField eField;
    std::wstring sText;
};

CutFields FieldsOf(const EditedCut& values);

// Trims texts and drops duplicate categories, ignoring case. Refuses a category whose name cannot name an
// order file, unless the cut was already in it.
std::variant<EditedCut, CutProblem> ValuesOf(const CutFields& fields, const EditedCut& before);

} // namespace ravlo
