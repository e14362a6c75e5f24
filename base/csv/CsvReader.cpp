// SPDX-License-Identifier: MIT
#include "base/csv/CsvReader.h"

#include <csv.h>

#include <exception>
#include <new>
#include <vector>

namespace ravlo
{

namespace
{

// The length of the first line, its line end included.
std::size_t LineLength(std::string_view bytes) noexcept
{
    const std::size_t end = bytes.find_first_of("\r\n");
    if (end == std::string_view::npos)
        return bytes.size();
    return bytes.substr(end, 2) == "\r\n" ? end + 2 : end + 1;
}

int NoSpace(unsigned char) { return 0; } // blanks belong to their field

// Feeds the parser line by line, so that it can return to the line on which a row began.
class Reader
{
public:
    Reader(std::string_view bytes, CsvSink& cSink, char cDelimiter)
        : m_bytes(bytes), m_cSink(cSink), m_cDelimiter(cDelimiter)
    {
        Start();
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { csv_free(&m_parser); }

    void Run()
    {
        while (ReadToEnd())
        {
        }
    }

private:
    void Start()
    {
        if (csv_init(&m_parser, CSV_STRICT | CSV_STRICT_FINI) != 0)
            throw std::bad_alloc();
        csv_set_space_func(&m_parser, NoSpace);
        csv_set_delim(&m_parser, static_cast<unsigned char>(m_cDelimiter));
        csv_set_blk_size(&m_parser, 4096);
        m_fieldCount = 0;
        m_bInRow = false;
    }

    // Returns true after a bad row: continue after its first line.
    bool ReadToEnd()
    {
        while (m_at < m_bytes.size())
        {
            const std::string_view sLine = m_bytes.substr(m_at, LineLength(m_bytes.substr(m_at)));
            if (!m_bInRow)
            {
                m_rowAt = m_at;
                m_rowLine = m_line;
            }
            m_bRowEnded = false;
            const std::size_t done =
                csv_parse(&m_parser, sLine.data(), sLine.size(), &OnField, &OnRowEnd, this);
            RethrowFromSink();
            if (done != sLine.size())
                return Reject(CsvFault::StrayQuote);
            m_bInRow =
                !m_bRowEnded && (m_bInRow || sLine.find_first_not_of("\r\n") != std::string_view::npos);
            m_at += sLine.size();
            ++m_line;
        }
        const bool bWhole = csv_fini(&m_parser, &OnField, &OnRowEnd, this) == 0;
        RethrowFromSink();
        return !bWhole && Reject(CsvFault::UnterminatedQuote);
    }

    bool Reject(CsvFault eFault)
    {
        if (csv_error(&m_parser) == CSV_ENOMEM || csv_error(&m_parser) == CSV_ETOOBIG)
            throw std::bad_alloc();
        m_cSink.OnBadRow(m_rowLine, eFault);
        m_at = m_rowAt + LineLength(m_bytes.substr(m_rowAt));
        m_line = m_rowLine + 1;
        csv_free(&m_parser);
        Start();
        return true;
    }

    static void OnField(void* pBytes, std::size_t length, void* pReader)
    {
        auto& cReader = *static_cast<Reader*>(pReader);
        cReader.KeepException([&] { cReader.AddField({static_cast<const char*>(pBytes), length}); });
    }

    static void OnRowEnd(int, void* pReader)
    {
        auto& cReader = *static_cast<Reader*>(pReader);
        cReader.KeepException([&] { cReader.EndRow(); });
    }

    void AddField(std::string_view bytes)
    {
        if (m_fieldCount == m_fields.size())
            m_fields.emplace_back();
        m_fields[m_fieldCount++].assign(bytes);
    }

    void EndRow()
    {
        m_bRowEnded = true;
        const std::size_t count = m_fieldCount;
        m_fieldCount = 0;
        m_cSink.OnRow(m_rowLine, std::span<const std::string>(m_fields).first(count));
    }

    // The parser is C code: no exception may pass through it.
    template <class Work> void KeepException(Work work) noexcept
    {
        if (m_thrown)
            return;
        try
        {
            work();
        }
        catch (...)
        {
            m_thrown = std::current_exception();
        }
    }

    void RethrowFromSink()
    {
        if (m_thrown)
            std::rethrow_exception(m_thrown);
    }

    std::string_view m_bytes;
    CsvSink& m_cSink;
    char m_cDelimiter;
    csv_parser m_parser{};
    std::vector<std::string> m_fields; // reused from row to row; only the first m_fieldCount are in use
    std::size_t m_fieldCount = 0;
    std::size_t m_at = 0;      // of the next line to be parsed
    std::size_t m_line = 1;    // its number
    std::size_t m_rowAt = 0;   // where the current row begins
    std::size_t m_rowLine = 1; // on which line
    bool m_bInRow = false;
    bool m_bRowEnded = false;
    std::exception_ptr m_thrown;
};

} // namespace

std::wstring TextOf(CsvFault eFault)
{
    return eFault == CsvFault::StrayQuote ? L"a quotation mark is where none may be"
                                          : L"a quotation mark is never closed";
}

void ReadCsv(std::string_view bytes, CsvSink& cSink, char cDelimiter)
{
    Reader(bytes, cSink, cDelimiter).Run();
}

char DelimiterOf(std::string_view bytes) noexcept
{
    constexpr std::string_view sDelimiters = ",;\t";
    std::size_t counts[sDelimiters.size()] = {};
    bool bQuoted = false;
    for (const char c : bytes.substr(0, LineLength(bytes)))
    {
        bQuoted = bQuoted != (c == '"');
        if (const std::size_t at = sDelimiters.find(c); !bQuoted && at != std::string_view::npos)
            ++counts[at];
    }
    std::size_t best = 0;
    for (std::size_t i = 1; i < sDelimiters.size(); ++i)
        best = counts[i] > counts[best] ? i : best;
    return sDelimiters[best];
}

std::size_t CountLines(std::string_view bytes) noexcept
{
    std::size_t lines = 0;
    for (; !bytes.empty(); bytes.remove_prefix(LineLength(bytes)))
        ++lines;
    return lines;
}

} // namespace ravlo
