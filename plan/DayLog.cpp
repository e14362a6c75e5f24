// SPDX-License-Identifier: MIT
#include "plan/DayLog.h"

#include "base/Text.h"
#include "base/Utf8.h"
#include "base/csv/CsvReader.h"
#include "base/csv/CsvWriter.h"

#include <charconv>
#include <cmath>
#include <map>
#include <utility>

namespace ravlo
{

namespace
{

std::wstring GapField(const std::optional<double>& dGapMins)
{
    return dGapMins ? MinutesText(*dGapMins) : L"";
}

std::wstring LineOf(const LogRow& row)
{
    const PlayedCut none;
    const PlayedCut& cut = row.cut ? *row.cut : none;
    const std::wstring fields[] = {IsoText(row.dtStart),
                                   row.slot.sCategory,
                                   DecimalText(row.slot.lLevel),
                                   row.slot.bOpener ? L"Y" : L"N",
                                   DecimalText(row.lKind),
                                   cut.sArtist,
                                   cut.sTitle,
                                   cut.sAlbum,
                                   cut.sPath,
                                   row.cut ? DecimalText(cut.lDurationmS) : L"",
                                   GapField(row.dArtistGapMins),
                                   GapField(row.dTitleGapMins)};
    return CsvLine(fields);
}

std::optional<std::int32_t> LongIn(const std::string& sField)
{
    std::int32_t lNumber{};
    const char* const pEnd = sField.data() + sField.size();
    const auto [pStop, eError] = std::from_chars(sField.data(), pEnd, lNumber);
    return eError == std::errc() && pStop == pEnd ? std::optional(lNumber) : std::nullopt;
}

std::optional<double> GapIn(const std::string& sField)
{
    return sField.empty() ? std::nullopt : NumericValue(TextFromStore(sField));
}

// Reads what LineOf wrote.
class LogReader : public CsvSink
{
public:
    std::vector<LogRow> rows;

    void OnRow(std::size_t, std::span<const std::string> fields) override
    {
        constexpr std::size_t columns = 12;
        if (fields.size() != columns)
            return;
        const std::optional<DateTime> dtStart = ParseIso(TextFromStore(fields[0]));
        const std::optional<std::int32_t> lLevel = LongIn(fields[2]);
        const std::optional<std::int32_t> lKind = LongIn(fields[4]);
        if (!dtStart || !lLevel || !lKind) // the heading
            return;
        LogRow& row = rows.emplace_back(
            LogRow{*dtStart, {TextFromStore(fields[1]), *lLevel, fields[3] == "Y", 0}, *lKind, {}, {}, {}});
        if (const std::optional<std::int32_t> lDurationmS = LongIn(fields[9]))
            row.cut = PlayedCut{TextFromStore(fields[5]), TextFromStore(fields[6]), TextFromStore(fields[7]),
                                TextFromStore(fields[8]), *lDurationmS};
        row.dArtistGapMins = GapIn(fields[10]);
        row.dTitleGapMins = GapIn(fields[11]);
    }
    void OnBadRow(std::size_t, CsvFault) override {}
};

// "60.20 min (artist)", or a dash when no gap is known.
std::wstring SmallestGap(const std::vector<LogRow>& rows, std::optional<double> LogRow::*gap,
                         std::wstring PlayedCut::*name)
{
    const LogRow* smallest = nullptr;
    for (const LogRow& row : rows)
        if (row.cut && row.*gap && (!smallest || *(row.*gap) < *(smallest->*gap)))
            smallest = &row;
    return smallest ? MinutesText(*(smallest->*gap)) + L" min (" + (*smallest->cut).*name + L")" : L"-";
}

std::wstring KindsText(const std::vector<LogRow>& rows)
{
    std::map<std::int32_t, std::int64_t> kinds;
    for (const LogRow& row : rows)
        ++kinds[row.lKind];
    std::wstring sText;
    for (const auto& [lKind, count] : kinds)
        sText += (sText.empty() ? L"" : L", ") + DecimalText(lKind) + L" x " + DecimalText(count);
    return sText.empty() ? L"-" : sText;
}

} // namespace

std::wstring MinutesText(double dMins)
{
    const std::int64_t hundredths = std::llround(dMins * 100.0);
    const std::wstring sDecimals = DecimalText(hundredths % 100);
    return DecimalText(hundredths / 100) + L"." + (sDecimals.size() < 2 ? L"0" : L"") + sDecimals;
}

LogBytes::LogBytes()
    : m_bytes("start,category,level,opener,kind,artist,title,album,path,duration_ms,artist_gap_min,"
              "title_gap_min\n")
{
}

void LogBytes::Add(const LogRow& row) { m_bytes += Utf8Of(LineOf(row)); }

std::string LogCsv(const std::vector<LogRow>& rows)
{
    LogBytes log;
    for (const LogRow& row : rows)
        log.Add(row);
    return log.Take();
}

std::vector<LogRow> ParseLogCsv(std::string_view bytes)
{
    LogReader reader;
    ReadCsv(bytes, reader);
    return std::move(reader.rows);
}

std::wstring LogLine(const LogRow& row)
{
    std::wstring sLine =
        IsoText(row.dtStart) + L"  " + LevelText(row.slot) + (row.slot.bOpener ? L" opener" : L"") + L"  ";
    sLine += row.cut ? row.cut->sArtist + L" - " + row.cut->sTitle : L"(nothing)";
    return row.lKind == 0 ? sLine : sLine + L"  [kind " + DecimalText(row.lKind) + L"]";
}

std::wstring Summary(const std::vector<LogRow>& rows, DateTime dtEnd)
{
    std::int64_t filled = 0;
    for (const LogRow& row : rows)
        filled += row.cut ? 1 : 0;
    const DateTime dtBegin = rows.empty() ? dtEnd : rows.front().dtStart;
    return L"From " + IsoText(dtBegin) + L" to " + IsoText(dtEnd) + L"\n" +                   //
           L"Slots: " + DecimalText(static_cast<std::int64_t>(rows.size())) + L", filled: " + //
           DecimalText(filled) + L"\n" +                                                      //
           L"Kinds: " + KindsText(rows) + L"\n" +                                             //
           L"Smallest artist gap: " + SmallestGap(rows, &LogRow::dArtistGapMins, &PlayedCut::sArtist) +
           L"\n" + L"Smallest title gap: " + SmallestGap(rows, &LogRow::dTitleGapMins, &PlayedCut::sTitle) +
           L"\n";
}

} // namespace ravlo
