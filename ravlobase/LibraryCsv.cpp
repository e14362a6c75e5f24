// SPDX-License-Identifier: MIT
#include "ravlobase/LibraryCsv.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "base/csv/CsvReader.h"

#include <algorithm>
#include <limits>
#include <span>
#include <unordered_map>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::size_t shownOfACell = 40;

// A cell as it is quoted in a reason.
std::wstring Quoted(const std::wstring& sCell)
{
    return L'"' + (sCell.size() > shownOfACell ? sCell.substr(0, shownOfACell) + L"..." : sCell) + L'"';
}

// A whole number in plain decimal digits, perhaps signed, within the limits.
std::optional<std::int32_t> WholeNumber(const std::wstring& sText, std::int32_t lMin, std::int32_t lMax)
{
    const bool bNegative = !sText.empty() && sText.front() == L'-';
    const std::wstring_view sDigits = std::wstring_view(sText).substr(bNegative ? 1 : 0);
    if (sDigits.empty() || sDigits.find_first_not_of(L"0123456789") != std::wstring_view::npos)
        return std::nullopt;
    std::int64_t value = 0;
    for (const wchar_t c : sDigits)
    {
        value = value * 10 + (c - L'0');
        if (value > std::numeric_limits<std::int32_t>::max())
            return std::nullopt;
    }
    value = bNegative ? -value : value;
    if (value < lMin || value > lMax)
        return std::nullopt;
    return static_cast<std::int32_t>(value);
}

// Stores one cell in the row. Precondition: it is not blank. Returns false when it cannot be used.
using TakeCell = bool (*)(LibraryRow& row, const std::wstring& sCell);

template <std::optional<std::wstring> LibraryRow::*Field>
bool TakeText(LibraryRow& row, const std::wstring& sCell)
{
    row.*Field = sCell;
    return true;
}

template <std::optional<std::int32_t> LibraryRow::*Field, std::int32_t lMax>
bool TakeNumber(LibraryRow& row, const std::wstring& sCell)
{
    row.*Field = WholeNumber(Trim(sCell), 0, lMax);
    return (row.*Field).has_value();
}

bool TakePath(LibraryRow& row, const std::wstring& sCell)
{
    row.cPath = TextKey(sCell);
    return true;
}

bool TakeLevel(LibraryRow& row, const std::wstring& sCell)
{
    const std::optional<std::int32_t> lLevel =
        WholeNumber(Trim(sCell), 0, std::numeric_limits<std::int32_t>::max());
    if (lLevel.value_or(0) != 0)
        row.lLevel = lLevel;
    return lLevel.has_value();
}

bool TakeCategories(LibraryRow& row, const std::wstring& sCell)
{
    std::vector<std::wstring> colNames;
    for (const std::wstring& sPiece : Split(sCell, L"/"))
        if (std::wstring sName = Trim(sPiece); !sName.empty())
            colNames.push_back(std::move(sName));
    if (!colNames.empty())
        row.colCategories = std::move(colNames);
    return true;
}

bool TakeOpener(LibraryRow& row, const std::wstring& sCell)
{
    const std::wstring sFlag = Trim(sCell);
    row.bOpener = EqualIgnoringCase(sFlag, L"Y");
    return *row.bOpener || EqualIgnoringCase(sFlag, L"N");
}

bool TakeLastPlayed(LibraryRow& row, const std::wstring& sCell)
{
    row.dtLastPlayed = ParseIso(Trim(sCell));
    return row.dtLastPlayed.has_value();
}

// "3:25", "1:02:03" or seconds, perhaps with a fraction.
bool TakeLength(LibraryRow& row, const std::wstring& sCell)
{
    double dSeconds = 0;
    for (const std::wstring& sPart : Split(Trim(sCell), L":"))
    {
        const bool bDigits = !sPart.empty() && sPart.find_first_not_of(L"0123456789.") == std::wstring::npos;
        const std::optional<double> dPart = bDigits ? NumericValue(sPart) : std::nullopt;
        if (!dPart)
            return false;
        dSeconds = dSeconds * 60 + *dPart;
    }
    if (dSeconds * 1000 > std::numeric_limits<std::int32_t>::max())
        return false;
    row.lDurationmS = static_cast<std::int32_t>(dSeconds * 1000);
    row.lRunTimemS = row.lRunTimemS.value_or(*row.lDurationmS);
    return true;
}

struct CsvColumn
{
    const wchar_t* sName;
    TakeCell Take;
    const wchar_t* sExpected; // what a cell must be
    bool bOnlyMapped = false; // other files may have a column of this name with another content
};

constexpr std::int32_t lMaxLong = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t lMaxYear = 9999;

constexpr CsvColumn csvColumns[] = {
    {L"path", TakePath, L""},
    {L"artist", TakeText<&LibraryRow::sArtist>, L""},
    {L"title", TakeText<&LibraryRow::sTitle>, L""},
    {L"album", TakeText<&LibraryRow::sAlbum>, L""},
    {L"year", TakeNumber<&LibraryRow::lYear, lMaxYear>, L"a year from 0 to 9999"},
    {L"duration_ms", TakeNumber<&LibraryRow::lDurationmS, lMaxLong>, L"a whole number from 0 to 2147483647"},
    {L"run_time_ms", TakeNumber<&LibraryRow::lRunTimemS, lMaxLong>, L"a whole number from 0 to 2147483647"},
    {L"categories", TakeCategories, L""},
    {L"level", TakeLevel, L"a whole number from 1 to 2147483647"},
    {L"opener", TakeOpener, L"Y or N"},
    {L"secondary_key", TakeText<&LibraryRow::sSecondaryKey>, L""},
    {L"last_played", TakeLastPlayed, L"a date in ISO 8601 form"},
    {L"duration", TakeLength, L"a length such as 3:25", true},
};

const CsvColumn* ColumnNamed(std::wstring_view sName)
{
    for (const CsvColumn& column : csvColumns)
        if (EqualIgnoringCase(column.sName, sName))
            return &column;
    return nullptr;
}

[[noreturn]] void RefuseFile(const std::wstring& sReason)
{
    throw RuntimeError(error::InvalidFileFormat, L"This is no library CSV: " + sReason + L".");
}

class LibraryReader : public CsvSink
{
public:
    LibraryReader(LibraryCsvSink& cSink, const ColumnMap& map) : m_cSink(cSink), m_map(map) {}

    bool HasHeader() const noexcept { return !m_columns.empty(); }

    void OnRow(std::size_t line, std::span<const std::string> fields) override
    {
        if (!HasHeader())
        {
            ReadHeader(fields);
            return;
        }
        LibraryRow row;
        row.line = line;
        if (const std::wstring sReason = TakeRow(row, fields); !sReason.empty())
        {
            m_cSink.OnReject(line, sReason);
            return;
        }
        m_cSink.OnCut(std::move(row));
    }

    void OnBadRow(std::size_t line, CsvFault eFault) override
    {
        if (!HasHeader())
            RefuseFile(L"in its header line " + TextOf(eFault));
        m_cSink.OnReject(line, TextOf(eFault));
    }

private:
    void ReadHeader(std::span<const std::string> fields)
    {
        for (const std::string& bytes : fields)
        {
            const std::optional<std::wstring> sName = TextFromUtf8(bytes);
            const CsvColumn* pColumn = sName ? ColumnCalled(Trim(*sName)) : nullptr;
            for (const CsvColumn* pEarlier : m_columns)
            {
                if (pColumn != nullptr && pEarlier == pColumn)
                    RefuseFile(L"its header line names the column \"" + std::wstring(pColumn->sName) +
                               L"\" twice");
            }
            m_columns.push_back(pColumn);
        }
        for (const MappedColumn& mapped : m_map)
            if (std::find(m_columns.begin(), m_columns.end(), ColumnNamed(mapped.sOurs)) == m_columns.end())
                RefuseFile(L"its header line has no column \"" + mapped.sTheirs + L"\"");
        for (const CsvColumn* pColumn : m_columns)
            if (pColumn == &csvColumns[0])
                return;
        RefuseFile(L"its header line has no column \"path\" (columns are parted by commas)");
    }

    // The column that a name in the header line means; null for none.
    const CsvColumn* ColumnCalled(const std::wstring& sName) const
    {
        const CsvColumn* pOwn = ColumnNamed(sName);
        if (pOwn != nullptr && pOwn->bOnlyMapped)
            pOwn = nullptr;
        for (const MappedColumn& mapped : m_map)
        {
            if (EqualIgnoringCase(mapped.sTheirs, sName))
                return ColumnNamed(mapped.sOurs);
            if (pOwn == ColumnNamed(mapped.sOurs))
                pOwn = nullptr; // another column has that content
        }
        return pOwn;
    }

    // The reason why the row cannot be used; empty when it can.
    std::wstring TakeRow(LibraryRow& row, std::span<const std::string> fields)
    {
        if (fields.size() != m_columns.size())
            return DecimalText(static_cast<std::int64_t>(fields.size())) +
                   (fields.size() == 1 ? L" field" : L" fields") + L" instead of " +
                   DecimalText(static_cast<std::int64_t>(m_columns.size()));
        for (std::size_t i = 0; i < fields.size(); ++i)
        {
            if (m_columns[i] == nullptr || fields[i].find_first_not_of(' ') == std::string::npos)
                continue;
            if (std::wstring sReason = Take(*m_columns[i], row, fields[i]); !sReason.empty())
                return sReason;
        }
        if (row.cPath.Empty())
            return L"no path";
        const auto [it, bNew] = m_lineOfPath.try_emplace(row.cPath, row.line);
        return bNew ? L""
                    : L"line " + DecimalText(static_cast<std::int64_t>(it->second)) + L" has the same path";
    }

    static std::wstring Take(const CsvColumn& column, LibraryRow& row, const std::string& bytes)
    {
        const std::wstring sColumn = column.sName;
        const std::optional<std::wstring> sCell = TextFromUtf8(bytes);
        if (!sCell)
            return sColumn + L": not UTF-8";
        if (sCell->find(L'\0') != std::wstring::npos)
            return sColumn + L": a NUL character";
        return column.Take(row, *sCell) ? L""
                                        : sColumn + L": " + Quoted(*sCell) + L" is not " + column.sExpected;
    }

    LibraryCsvSink& m_cSink;
    const ColumnMap& m_map;
    std::vector<const CsvColumn*> m_columns; // one for each field; null where the column is unknown
    std::unordered_map<TextKey, std::size_t> m_lineOfPath;
};

} // namespace

ColumnMap ParseColumnMap(const std::wstring& sMap)
{
    ColumnMap map;
    if (Trim(sMap).empty())
        return map;
    for (const std::wstring& sPair : Split(sMap, L","))
    {
        const std::size_t sign = sPair.find(L'=');
        const std::wstring sOurs = Trim(sPair.substr(0, sign));
        const std::wstring sTheirs = sign == std::wstring::npos ? L"" : Trim(sPair.substr(sign + 1));
        if (sTheirs.empty())
            throw RuntimeError(error::InvalidProcedureCall,
                               Quoted(sPair) + L" maps no column (expected: artist=Their name).");
        if (ColumnNamed(sOurs) == nullptr)
            throw RuntimeError(error::InvalidProcedureCall, Quoted(sOurs) + L" is no column of a library.");
        map.push_back({sOurs, sTheirs});
    }
    return map;
}

void ReadLibraryCsv(std::string_view bytes, LibraryCsvSink& cSink, const ColumnMap& map, char cDelimiter)
{
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
        RefuseFile(L"it is UTF-16, and UTF-8 is needed");
    bytes = WithoutByteOrderMark(bytes);
    LibraryReader cReader(cSink, map);
    ReadCsv(bytes, cReader, cDelimiter);
    if (!cReader.HasHeader())
        RefuseFile(L"it has no header line");
}

} // namespace ravlo
