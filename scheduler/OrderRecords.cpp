// SPDX-License-Identifier: MIT
#include "scheduler/OrderRecords.h"

#include "model/LittleEndian.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr std::size_t atArtist = 0;
constexpr std::size_t atTitle = 255;
constexpr std::size_t atPath = 510;
constexpr std::size_t atLevel = 765;
constexpr std::size_t atMarker = 769;
constexpr std::ptrdiff_t atReserved = 771;
constexpr std::size_t reserved = 1212; // zero bytes up to the record's end
static_assert(atReserved + reserved == orderRecordSize);

// Removes the blanks at both ends. A field is mostly padding, so its end is compared eight bytes at a time.
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
    PutLong(record, atLevel, lLevel);
    PutInteger(record, atMarker, bMarker ? -1 : 0);
    std::fill_n(record.begin() + atReserved, reserved, '\0');
}

} // namespace

// The memory is not cleared: the records write every byte.
OrderContent::OrderContent(std::size_t records)
    : m_size(records * orderRecordSize), m_pBytes(std::make_unique_for_overwrite<char[]>(m_size))
{
}

void OrderContent::PutCut(std::size_t number, const OrderTexts& texts, std::int32_t lLevel)
{
    const std::span<char> record = Record(number);
    PutText(record, atArtist, orderTextWidth, texts.artist);
    PutText(record, atTitle, orderTextWidth, texts.title);
    PutText(record, atPath, orderTextWidth, texts.path);
    PutLevel(record, lLevel, false);
}

void OrderContent::PutMarker(std::size_t number, std::int32_t lLevel)
{
    const std::span<char> record = Record(number);
    std::fill_n(record.begin(), atLevel, '\0');
    PutLevel(record, lLevel, true);
}

OrderRecord FirstOrderRecord(std::string_view bytes)
{
    return {GetLong(bytes, atLevel), GetInteger(bytes, atMarker) != 0,
            TrimBlanks(bytes.substr(atPath, orderTextWidth))};
}

std::string OrderPathField(const CodePage& cCodePage, const std::wstring& sPath)
{
    const std::string bytes = cCodePage.Encode(sPath);
    return std::string(TrimBlanks(std::string_view(bytes).substr(0, orderTextWidth)));
}

} // namespace ravlo
