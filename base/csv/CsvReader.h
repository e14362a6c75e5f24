// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace ravlo
{

// Why a row of a CSV file could not be taken apart.
enum class CsvFault
{
    eStrayQuote,        // a quotation mark inside an unquoted field, or text after a closing one
    eUnterminatedQuote, // the file ends inside a quoted field
};

// What ReadCsv hands out, row by row in file order. Lines count from 1; a row's line is the first one it
// stands on.
class CsvSink
{
public:
    virtual ~CsvSink() = default;
    // The fields without their quotation marks, otherwise byte for byte. They hold for the length of the
    // call.
    virtual void OnRow(std::size_t line, std::span<const std::string> fields) = 0;
    virtual void OnBadRow(std::size_t line, CsvFault eFault) = 0;
};

// Takes RFC 4180 bytes apart: fields between commas, quoted ones with "" for a quotation mark. A line ends
// with CRLF, LF or CR; empty lines are no rows. Any bytes will do. A bad row costs only itself: reading goes
// on with the line after the one it began on. What the sink throws comes through.
void ReadCsv(std::string_view bytes, CsvSink& cSink);

// The number of lines, whatever stands on them; a line end at the end of the file begins no further line.
std::size_t CountLines(std::string_view bytes) noexcept;

} // namespace ravlo
