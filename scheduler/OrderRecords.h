// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CodePage.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace ravlo
{

// The records of a history/ordering file; no file access. File format: docs/formats/sif.md.

inline constexpr std::size_t orderRecordSize = 1983;
inline constexpr std::size_t orderTextWidth = 255; // of artist, title and path, in bytes of the code page

struct OrderRecord
{
    std::int32_t lLevel;
    bool bLevelMarker;
    std::string_view path; // the field's bytes without blanks at both ends
};

// A cut's texts, in bytes of the code page.
struct OrderTexts
{
    std::string artist;
    std::string title;
    std::string path;
};

// The bytes of a file while its records are written. Every record must be written once.
class OrderContent
{
public:
    explicit OrderContent(std::size_t records);
    void PutCut(std::size_t record, const OrderTexts& texts, std::int32_t lLevel);
    void PutMarker(std::size_t record, std::int32_t lLevel);
    std::string_view Bytes() const noexcept { return {m_pBytes.get(), m_size}; }

private:
    std::span<char> Record(std::size_t record)
    {
        return {m_pBytes.get() + record * orderRecordSize, orderRecordSize};
    }

    std::size_t m_size;
    std::unique_ptr<char[]> m_pBytes;
};

// Whether bytes consist of whole records.
inline bool AreOrderRecords(std::string_view bytes) noexcept { return bytes.size() % orderRecordSize == 0; }
// The first record of bytes. Precondition: there is one.
OrderRecord FirstOrderRecord(std::string_view bytes);

// A path as a record's field contains it, without blanks at both ends. Used to find cuts again.
std::string OrderPathField(const CodePage& cCodePage, const std::wstring& sPath);

} // namespace ravlo
