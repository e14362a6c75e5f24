// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/Fuzz.h"

#include "base/CaseFolding.h"
#include "base/RuntimeError.h"
#include "base/Text.h"
#include "base/csv/CsvReader.h"
#include "ravlobase/LibraryCsv.h"

#include <set>
#include <string>
#include <vector>

namespace ravlo::fuzz
{

// What was read of a library: every row is a cut with values in their ranges or a reject with a reason, and
// no path occurs twice.
class Library final : public LibraryCsvSink
{
public:
    void OnCut(LibraryRow row) override
    {
        Next(row.line);
        RAVLO_REQUIRE(!row.cPath.Empty());
        RAVLO_REQUIRE(m_colPaths.insert(FoldCase(row.cPath.Text())).second);
        RAVLO_REQUIRE(!row.lYear || (*row.lYear >= 0 && *row.lYear <= 9999));
        RAVLO_REQUIRE(row.lDurationmS.value_or(0) >= 0 && row.lRunTimemS.value_or(0) >= 0);
        RAVLO_REQUIRE(row.lLevel.value_or(1) >= 1);
        if (row.colCategories)
        {
            RAVLO_REQUIRE(!row.colCategories->empty());
            for (const std::wstring& sName : *row.colCategories)
                RAVLO_REQUIRE(!sName.empty() && Trim(sName) == sName &&
                              sName.find(L'/') == std::wstring::npos);
        }
        colRows.push_back(std::move(row));
    }
    void OnReject(std::size_t line, const std::wstring& sReason) override
    {
        Next(line);
        RAVLO_REQUIRE(!sReason.empty());
        RAVLO_REQUIRE(sReason.size() < 200);
        ++rejects;
    }

    std::vector<LibraryRow> colRows;
    std::size_t rejects = 0;

private:
    void Next(std::size_t line)
    {
        RAVLO_REQUIRE(line > m_last);
        m_last = line;
    }

    std::set<std::wstring> m_colPaths;
    std::size_t m_last = 0;
};

inline void Cell(std::string& sText, std::wstring_view sCell)
{
    sText += "\"";
    for (const char c : Utf8Of(sCell))
        sText.append(c == '"' ? 2 : 1, c);
    sText += "\",";
}

inline std::string Written(const std::vector<LibraryRow>& colRows)
{
    std::string sText = "artist,title,album,secondary_key,year,duration_ms,run_time_ms,level,opener,"
                        "last_played,categories,path\n";
    const auto number = [&](const std::optional<std::int32_t>& lValue) {
        Cell(sText, lValue ? DecimalText(*lValue) : L"");
    };
    for (const LibraryRow& row : colRows)
    {
        for (const auto& sValue : {row.sArtist, row.sTitle, row.sAlbum, row.sSecondaryKey})
            Cell(sText, sValue.value_or(L""));
        for (const auto& lValue : {row.lYear, row.lDurationmS, row.lRunTimemS, row.lLevel})
            number(lValue);
        Cell(sText, !row.bOpener ? L"" : *row.bOpener ? L"y" : L"n");
        Cell(sText, row.dtLastPlayed ? IsoText(*row.dtLastPlayed) : L"");
        std::wstring sCategories;
        for (const std::wstring& sName : row.colCategories.value_or(std::vector<std::wstring>()))
            sCategories += sName + L"/";
        Cell(sText, sCategories);
        Cell(sText, row.cPath.Text());
        sText.back() = '\n';
    }
    return sText;
}

inline bool SameRow(const LibraryRow& left, const LibraryRow& right)
{
    const auto seconds = [](const std::optional<DateTime>& dt) { return dt ? WholeSeconds(*dt) : -1; };
    return left.cPath.Text() == right.cPath.Text() && left.sArtist == right.sArtist &&
           left.sTitle == right.sTitle && left.sAlbum == right.sAlbum && left.lYear == right.lYear &&
           left.lDurationmS == right.lDurationmS && left.lRunTimemS == right.lRunTimemS &&
           left.colCategories == right.colCategories && left.lLevel == right.lLevel &&
           left.bOpener == right.bOpener && left.sSecondaryKey == right.sSecondaryKey &&
           seconds(left.dtLastPlayed) == seconds(right.dtLastPlayed);
}

// The rows that were read stay the same when written as a library CSV and read again.
inline void RequireSameAgain(const Library& cRead)
{
    Library cAgain;
    ReadLibraryCsv(Written(cRead.colRows), cAgain);
    RAVLO_REQUIRE(cAgain.rejects == 0);
    RAVLO_REQUIRE(cAgain.colRows.size() == cRead.colRows.size());
    for (std::size_t row = 0; row < cRead.colRows.size(); ++row)
        RAVLO_REQUIRE(SameRow(cAgain.colRows[row], cRead.colRows[row]));
}

} // namespace ravlo::fuzz
