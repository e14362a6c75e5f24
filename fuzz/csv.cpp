// SPDX-License-Identifier: MIT
// The CSV reader: any bytes can be read, and rows stay the same when written and read again.
#include "fuzz/Fuzz.h"

#include "base/csv/CsvReader.h"

#include <vector>

namespace ravlo::fuzz
{

namespace
{

class Rows final : public CsvSink
{
public:
    explicit Rows(std::size_t lines) : m_lines(lines) {}

    void OnRow(std::size_t line, std::span<const std::string> fields) override
    {
        Next(line);
        RAVLO_REQUIRE(!fields.empty());
        colRows.emplace_back(fields.begin(), fields.end());
        for (const std::string& sField : fields)
            fieldBytes += sField.size();
    }
    void OnBadRow(std::size_t line, CsvFault) override
    {
        Next(line);
        ++bad;
    }

    std::vector<std::vector<std::string>> colRows;
    std::size_t fieldBytes = 0;
    std::size_t bad = 0;

private:
    // Rows come in the order of their first lines, each line once.
    void Next(std::size_t line)
    {
        RAVLO_REQUIRE(line > m_last && line <= m_lines);
        m_last = line;
    }

    std::size_t m_lines;
    std::size_t m_last = 0;
};

std::string Written(const std::vector<std::vector<std::string>>& colRows)
{
    std::string sText;
    for (const std::vector<std::string>& row : colRows)
    {
        for (std::size_t field = 0; field < row.size(); ++field)
        {
            sText += field == 0 ? "\"" : ",\"";
            for (const char c : row[field])
                sText.append(c == '"' ? 2 : 1, c);
            sText += '"';
        }
        sText += "\r\n";
    }
    return sText;
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    const std::string_view bytes = fuzz::BytesOf(pBytes, size);
    const std::size_t lines = CountLines(bytes);
    RAVLO_REQUIRE(lines <= size);
    fuzz::Rows cRead(lines);
    ReadCsv(bytes, cRead);
    RAVLO_REQUIRE(cRead.fieldBytes <= size);

    const std::string sWritten = fuzz::Written(cRead.colRows);
    fuzz::Rows cAgain(CountLines(sWritten));
    ReadCsv(sWritten, cAgain);
    RAVLO_REQUIRE(cAgain.bad == 0);
    RAVLO_REQUIRE(cAgain.colRows == cRead.colRows);
    return 0;
}
