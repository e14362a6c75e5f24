// SPDX-License-Identifier: MIT
#include "plan/Slots.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "base/csv/CsvReader.h"
#include "plan/PlanError.h"

#include <span>

namespace ravlo
{

namespace
{

constexpr std::string_view sByteOrderMark = "\xEF\xBB\xBF";

std::wstring Where(const std::wstring& sName, std::size_t line)
{
    return sName + L", line " + std::to_wstring(line) + L": ";
}

std::wstring Quoted(const std::wstring& sText) { return L"\"" + sText + L"\""; }

// The fields of every line that is not ignored, as trimmed text.
class LineSink : public CsvSink
{
public:
    struct Line
    {
        std::size_t number;
        std::vector<std::wstring> fields;
    };

    explicit LineSink(const std::wstring& sName) : m_sName(sName) {}

    void OnRow(std::size_t line, std::span<const std::string> fields) override
    {
        if (fields.empty() || fields[0].starts_with('#') || (fields.size() == 1 && IsBlank(fields[0])))
            return;
        Line row{line, {}};
        for (const std::string& bytes : fields)
        {
            const std::optional<std::wstring> sText = TextFromUtf8(bytes);
            if (!sText)
                throw PlanError(Where(m_sName, line) + L"not UTF-8");
            row.fields.push_back(Trim(*sText));
        }
        m_lines.push_back(std::move(row));
    }

    void OnBadRow(std::size_t line, CsvFault eFault) override
    {
        throw PlanError(Where(m_sName, line) + TextOf(eFault));
    }

    std::vector<Line> Take() { return std::move(m_lines); }

private:
    static bool IsBlank(const std::string& bytes)
    {
        return bytes.find_first_not_of(" \t") == std::string::npos;
    }

    const std::wstring& m_sName;
    std::vector<Line> m_lines;
};

// Removes the text of '#' lines, since quotation marks in it would open a field. Their line ends stay, so
// that lines keep their numbers.
std::string WithoutComments(std::string_view bytes)
{
    std::string sRest;
    bool bLineStart = true;
    bool bComment = false;
    for (const char c : bytes)
    {
        const bool bEnd = c == '\n' || c == '\r';
        bComment = bEnd ? false : bComment || (bLineStart && c == '#');
        bLineStart = bEnd;
        if (!bComment)
            sRest += c;
    }
    return sRest;
}

std::vector<LineSink::Line> ReadLines(std::string_view bytes, const std::wstring& sName)
{
    if (bytes.starts_with(sByteOrderMark))
        bytes.remove_prefix(sByteOrderMark.size());
    LineSink sink(sName);
    ReadCsv(WithoutComments(bytes), sink);
    return sink.Take();
}

bool IsHeading(const LineSink::Line& line, std::span<const wchar_t* const> names)
{
    if (line.fields.size() != names.size())
        return false;
    for (std::size_t field = 0; field < names.size(); ++field)
        if (!EqualIgnoringCase(line.fields[field], names[field]))
            return false;
    return true;
}

std::optional<std::int32_t> LevelOf(const std::wstring& sText)
{
    if (sText.empty() || sText.size() > 9 || sText.find_first_not_of(L"0123456789") != std::wstring::npos)
        return std::nullopt;
    const auto lLevel = static_cast<std::int32_t>(std::stol(sText));
    return lLevel > 0 ? std::optional(lLevel) : std::nullopt;
}

// The slot that the fields from first on describe.
Slot SlotOf(const LineSink::Line& line, std::size_t first, const std::wstring& sName)
{
    const std::size_t fields = line.fields.size() - first;
    const std::wstring sWhere = Where(sName, line.number);
    if (fields < 2 || fields > 3)
        throw PlanError(sWhere + L"expected " + (first ? L"slot_at," : L"") + L"category,level,opener");
    Slot slot;
    slot.line = line.number;
    slot.sCategory = line.fields[first];
    if (slot.sCategory.empty())
        throw PlanError(sWhere + L"the category is empty");
    const std::wstring& sLevel = line.fields[first + 1];
    const std::optional<std::int32_t> lLevel = LevelOf(sLevel);
    if (!lLevel)
        throw PlanError(sWhere + L"the level must be a whole number from 1, not " + Quoted(sLevel));
    slot.lLevel = *lLevel;
    const std::wstring sOpener = fields == 3 ? line.fields[first + 2] : std::wstring();
    slot.bOpener = EqualIgnoringCase(sOpener, L"Y");
    if (!slot.bOpener && !sOpener.empty() && !EqualIgnoringCase(sOpener, L"N"))
        throw PlanError(sWhere + L"the opener must be Y or N, not " + Quoted(sOpener));
    return slot;
}

DateTime TimeOf(const LineSink::Line& line, const std::wstring& sName)
{
    const std::wstring& sTime = line.fields[0];
    const std::optional<DateTime> dtAt = ParseIso(sTime);
    if (!dtAt || *dtAt <= 0)
        throw PlanError(Where(sName, line.number) + Quoted(sTime) +
                        L" is no time (expected yyyy-mm-ddThh:nn:ss)");
    return *dtAt;
}

} // namespace

std::wstring LevelText(const Slot& slot) { return slot.sCategory + L":" + DecimalText(slot.lLevel); }

std::vector<Slot> ParseClock(std::string_view bytes, const std::wstring& sName)
{
    static constexpr const wchar_t* heading[] = {L"category", L"level", L"opener"};
    const std::vector<LineSink::Line> lines = ReadLines(bytes, sName);
    std::vector<Slot> slots;
    for (const LineSink::Line& line : lines)
        if (&line != &lines.front() || !IsHeading(line, heading))
            slots.push_back(SlotOf(line, 0, sName));
    if (slots.empty())
        throw PlanError(sName + L" holds no slot");
    return slots;
}

std::vector<TimedSlot> ParseSlots(std::string_view bytes, const std::wstring& sName)
{
    static constexpr const wchar_t* heading[] = {L"slot_at", L"category", L"level", L"opener"};
    const std::vector<LineSink::Line> lines = ReadLines(bytes, sName);
    if (lines.empty() || !IsHeading(lines.front(), heading))
        throw PlanError(sName + L" does not begin with the heading slot_at,category,level,opener");
    std::vector<TimedSlot> slots;
    for (std::size_t row = 1; row < lines.size(); ++row)
    {
        slots.push_back({TimeOf(lines[row], sName), SlotOf(lines[row], 1, sName)});
        if (row > 1 && slots[row - 1].dtAt < slots[row - 2].dtAt)
            throw PlanError(Where(sName, lines[row].number) +
                            L"the time is earlier than that of the slot before");
    }
    if (slots.empty())
        throw PlanError(sName + L" holds no slot");
    return slots;
}

const Slot& ClockHand::Next(DateTime dtStart)
{
    const std::int64_t hour = WholeSeconds(dtStart) / 3600;
    if (m_hour != hour || m_next == m_slots.size())
        m_next = 0;
    m_hour = hour;
    return m_slots[m_next++];
}

} // namespace ravlo
