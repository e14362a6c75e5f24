// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace ravlo
{

// Why a row of a CSV file cannot be parsed.
enum class CsvFault
{
    StrayQuote,        // a quotation mark inside an unquoted field, or text after a closing one
    UnterminatedQuote, // the file ends inside a quoted field
};

// The same in words, to follow the place of the row.
std::wstring TextOf(CsvFault eFault);

// Receives the rows of ReadCsv, in file order. Lines count from 1; the line of a row is its first one.
class CsvSink
{
public:
    virtual ~CsvSink() = default;
    // The fields without their quotation marks, otherwise byte for byte. Valid during the call.
    virtual void OnRow(std::size_t line, std::span<const std::string> fields) = 0;
    virtual void OnBadRow(std::size_t line, CsvFault eFault) = 0;
};

// Parses RFC 4180: fields between commas (or another delimiter), quoted ones with "" for a quotation mark. A
// line ends with CRLF, LF or CR; empty lines are no rows. Takes any bytes. After a bad row, reading continues
// with the line after its first one. What the sink throws is thrown on.
void ReadCsv(std::string_view bytes, CsvSink& cSink, char cDelimiter = ',');

// The delimiter of a file: comma, semicolon or TAB, the one that is most frequent in its first line outside
// quotation marks; a comma when none is.
char DelimiterOf(std::string_view bytes) noexcept;

// The number of lines. A line end at the end of the file begins no further line.
std::size_t CountLines(std::string_view bytes) noexcept;

} // namespace ravlo
