// SPDX-License-Identifier: MIT
// The CSV reader: any bytes can be read, and the rows that come out, written again, come out again.
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
    explicit Rows(std::size_t lLines) : m_lLines(lLines) {}

    void OnRow(std::size_t lLine, std::span<const std::string> fields) override
    {
        Next(lLine);
        RAVLO_REQUIRE(!fields.empty());
        colRows.emplace_back(fields.begin(), fields.end());
        for (const std::string& sField : fields)
            lFieldBytes += sField.size();
    }
    void OnBadRow(std::size_t lLine, CsvFault) override
    {
        Next(lLine);
        ++lBad;
    }

    std::vector<std::vector<std::string>> colRows;
    std::size_t lFieldBytes = 0;
    std::size_t lBad = 0;

private:
    // Rows are told in the order of their first lines, each line once.
    void Next(std::size_t lLine)
    {
        RAVLO_REQUIRE(lLine > m_lLast && lLine <= m_lLines);
        m_lLast = lLine;
    }

    std::size_t m_lLines;
    std::size_t m_lLast = 0;
};

std::string Written(const std::vector<std::vector<std::string>>& colRows)
{
    std::string sText;
    for (const std::vector<std::string>& row : colRows)
    {
        for (std::size_t lField = 0; lField < row.size(); ++lField)
        {
            sText += lField == 0 ? "\"" : ",\"";
            for (const char c : row[lField])
                sText.append(c == '"' ? 2 : 1, c);
            sText += '"';
        }
        sText += "\r\n";
    }
    return sText;
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t lSize)
{
    using namespace ravlo;
    const std::string_view bytes = fuzz::BytesOf(pBytes, lSize);
    const std::size_t lLines = CountLines(bytes);
    RAVLO_REQUIRE(lLines <= lSize);
    fuzz::Rows cRead(lLines);
    ReadCsv(bytes, cRead);
    RAVLO_REQUIRE(cRead.lFieldBytes <= lSize);

    const std::string sWritten = fuzz::Written(cRead.colRows);
    fuzz::Rows cAgain(CountLines(sWritten));
    ReadCsv(sWritten, cAgain);
    RAVLO_REQUIRE(cAgain.lBad == 0);
    RAVLO_REQUIRE(cAgain.colRows == cRead.colRows);
    return 0;
}
