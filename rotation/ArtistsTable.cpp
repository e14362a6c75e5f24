// SPDX-License-Identifier: MIT
#include "rotation/ArtistsTable.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "base/csv/CsvReader.h"

#include <algorithm>
#include <optional>
#include <span>

namespace ravlo
{

class ArtistsTable::Reader final : public CsvSink
{
public:
    Reader(ArtistsTable& cTable, Problems& problems) : m_cTable(cTable), m_problems(problems) {}

    void OnRow(std::size_t line, std::span<const std::string> fields) override
    {
        if (m_eHeading == Heading::Expected)
            return TakeHeading(line, fields);
        if (m_eHeading == Heading::Missing)
            return;
        if (fields.size() != 2)
            return Skip(line, CountText(fields.size()) + (fields.size() == 1 ? L" field" : L" fields") +
                                  L" instead of 2");
        const std::optional<std::wstring> sCredited = TextFromUtf8(fields[0]);
        const std::optional<std::wstring> sCountsAs = TextFromUtf8(fields[1]);
        if (!sCredited || !sCountsAs)
            return Skip(line, L"not UTF-8");
        if ((*sCredited + *sCountsAs).find(L'\0') != std::wstring::npos)
            return Skip(line, L"a NUL character");
        const TextKey cCredited(Trim(*sCredited));
        const TextKey cCountsAs(Trim(*sCountsAs));
        if (cCredited.Empty() || cCountsAs.Empty())
            return Skip(line, L"an empty field");
        m_cTable.m_colRows[cCredited].push_back(cCountsAs);
    }
    void OnBadRow(std::size_t line, CsvFault eFault) override
    {
        if (m_eHeading == Heading::Expected)
            return RefuseHeading(line);
        if (m_eHeading == Heading::Found)
            Skip(line, TextOf(eFault));
    }
    void OnEnd()
    {
        if (m_eHeading == Heading::Expected)
            RefuseHeading(1);
    }

private:
    enum class Heading
    {
        Expected,
        Found,
        Missing,
    };

    void TakeHeading(std::size_t line, std::span<const std::string> fields)
    {
        static constexpr std::wstring_view heading[] = {L"credited", L"counts_as"};
        const auto isColumn = [](const std::string& sField, std::wstring_view sColumn) {
            return EqualIgnoringCase(Trim(TextFromStore(sField)), sColumn);
        };
        if (!std::equal(fields.begin(), fields.end(), std::begin(heading), std::end(heading), isColumn))
            return RefuseHeading(line);
        m_eHeading = Heading::Found;
    }
    void RefuseHeading(std::size_t line)
    {
        Skip(line, L"the heading is not credited,counts_as: the file is not used");
        m_eHeading = Heading::Missing;
    }
    void Skip(std::size_t line, const std::wstring& sReason)
    {
        m_problems.push_back(L"line " + CountText(line) + L": " + sReason);
    }

    ArtistsTable& m_cTable;
    Problems& m_problems;
    Heading m_eHeading = Heading::Expected;
};

ArtistsTable ArtistsTable::Parse(std::string_view bytes, Problems& problems)
{
    ArtistsTable cTable;
    Reader cReader(cTable, problems);
    ReadCsv(WithoutByteOrderMark(bytes), cReader);
    cReader.OnEnd();
    return cTable;
}

const std::vector<TextKey>* ArtistsTable::Find(const TextKey& cCredit) const
{
    const auto it = m_colRows.find(cCredit);
    return it == m_colRows.end() ? nullptr : &it->second;
}

} // namespace ravlo
