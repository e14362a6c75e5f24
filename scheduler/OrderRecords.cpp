// SPDX-License-Identifier: MIT
#include "scheduler/OrderRecords.h"

#include "model/LittleEndian.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr std::size_t lAtArtist = 0;
constexpr std::size_t lAtTitle = 255;
constexpr std::size_t lAtPath = 510;
constexpr std::size_t lAtLevel = 765;
constexpr std::size_t lAtMarker = 769;
constexpr std::ptrdiff_t lAtReserved = 771;
constexpr std::size_t lReserved = 1212; // zero bytes up to the record's end
static_assert(lAtReserved + lReserved == lOrderRecordSize);

// Without the blanks at both ends. A field is mostly padding, so its end is looked at eight bytes at a time.
std::string_view TrimBlanks(std::string_view bytes)
{
    constexpr std::string_view eightBlanks = "        ";
    while (bytes.ends_with(eightBlanks))
        bytes.remove_suffix(eightBlanks.size());
    while (bytes.ends_with(' '))
        bytes.remove_suffix(1);
    while (bytes.starts_with(' '))
        bytes.remove_prefix(1);
    return bytes;
}

void PutLevel(std::span<char> record, std::int32_t lLevel, bool bMarker)
{
    PutLong(record, lAtLevel, lLevel);
    PutInteger(record, lAtMarker, bMarker ? -1 : 0);
    std::fill_n(record.begin() + lAtReserved, lReserved, '\0');
}

} // namespace

// Every byte is written by the records, so the memory is not cleared first.
OrderContent::OrderContent(std::size_t lRecords)
    : m_lSize(lRecords * lOrderRecordSize), m_pBytes(std::make_unique_for_overwrite<char[]>(m_lSize))
{
}

void OrderContent::PutCut(std::size_t lRecord, const OrderTexts& texts, std::int32_t lLevel)
{
    const std::span<char> record = Record(lRecord);
    PutText(record, lAtArtist, lOrderTextWidth, texts.artist);
    PutText(record, lAtTitle, lOrderTextWidth, texts.title);
    PutText(record, lAtPath, lOrderTextWidth, texts.path);
    PutLevel(record, lLevel, false);
}

void OrderContent::PutMarker(std::size_t lRecord, std::int32_t lLevel)
{
    const std::span<char> record = Record(lRecord);
    std::fill_n(record.begin(), lAtLevel, '\0');
    PutLevel(record, lLevel, true);
}

OrderRecord FirstOrderRecord(std::string_view bytes)
{
    return {GetLong(bytes, lAtLevel), GetInteger(bytes, lAtMarker) != 0,
            TrimBlanks(bytes.substr(lAtPath, lOrderTextWidth))};
}

std::string OrderPathField(const CodePage& cCodePage, const std::wstring& sPath)
{
    const std::string bytes = cCodePage.Encode(sPath);
    return std::string(TrimBlanks(std::string_view(bytes).substr(0, lOrderTextWidth)));
}

} // namespace ravlo
