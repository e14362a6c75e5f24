// SPDX-License-Identifier: MIT
#include "base/SearchText.h"

#include "base/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>

namespace ravlo
{

namespace
{

struct SearchRange
{
    std::uint16_t first;
    std::uint16_t last;
    std::uint16_t step;
    std::int32_t lDelta;
};
struct SearchText
{
    const char16_t* sWhat;
    const char16_t* sFrom; // its characters, one by one
};

#include "base/SearchTable.inc"

constexpr std::size_t basicPlane = 0x10000;

// What each character is folded to. A table by character, since it is asked for each letter of a large
// library.
class FoldingTable
{
public:
    FoldingTable()
    {
        for (const SearchRange& range : aRanges)
            for (std::uint32_t lCode = range.first; lCode <= range.last; lCode += range.step)
                Set(lCode, std::u16string(
                               1, static_cast<char16_t>(static_cast<std::int32_t>(lCode) + range.lDelta)));
        for (const SearchText& text : aTexts)
            for (const char16_t* pFrom = text.sFrom; *pFrom != 0; ++pFrom)
                Set(*pFrom, text.sWhat);
        m_colNumbers.clear();
    }

    // Null for a character that stays as it is.
    const std::string* Of(wchar_t c) const noexcept
    {
        const auto lCode = static_cast<std::uint32_t>(c);
        const std::uint16_t number = lCode < basicPlane ? m_numbers[lCode] : std::uint16_t{0};
        return number == 0 ? nullptr : &m_colTexts[number];
    }

private:
    void Set(std::uint32_t lCode, const std::u16string& sWhat)
    {
        std::uint16_t& number = m_colNumbers[sWhat];
        if (number == 0)
        {
            number = static_cast<std::uint16_t>(m_colTexts.size());
            m_colTexts.push_back(Utf8Of(std::wstring(sWhat.begin(), sWhat.end())));
        }
        m_numbers[lCode] = number;
    }

    std::array<std::uint16_t, basicPlane> m_numbers{};
    std::vector<std::string> m_colTexts{std::string()}; // number 0 is not used
    std::map<std::u16string, std::uint16_t> m_colNumbers;
};

const FoldingTable& Table()
{
    static const FoldingTable cTable;
    return cTable;
}

bool IsAscii(wchar_t c) noexcept { return static_cast<std::uint32_t>(c) < 0x80; }

char FoldAscii(wchar_t c) noexcept
{
    if (c >= L'A' && c <= L'Z')
        return static_cast<char>(c - L'A' + L'a');
    return c < L' ' || c == 0x7F ? ' ' : static_cast<char>(c);
}

// Folds the character at that place, or a run of characters that stay as they are, and returns the next
// place.
std::size_t FoldAt(std::wstring_view sText, std::size_t at, const FoldingTable& cTable, std::string& sFolded)
{
    if (IsAscii(sText[at]))
    {
        sFolded += FoldAscii(sText[at]);
        return at + 1;
    }
    if (const std::string* pText = cTable.Of(sText[at]))
    {
        sFolded += *pText;
        return at + 1;
    }
    std::size_t end = at + 1; // both halves of a surrogate pair belong to one run
    while (end < sText.size() && !IsAscii(sText[end]) && !cTable.Of(sText[end]))
        ++end;
    sFolded += Utf8Of(sText.substr(at, end - at));
    return end;
}

} // namespace

std::string FoldForSearch(std::wstring_view sText)
{
    const FoldingTable& cTable = Table();
    std::string sFolded;
    sFolded.reserve(sText.size());
    for (std::size_t at = 0; at < sText.size();)
        at = FoldAt(sText, at, cTable, sFolded);
    return sFolded;
}

bool BeginsFolded(std::wstring_view sText, std::string_view sFoldedBeginning)
{
    const FoldingTable& cTable = Table();
    std::string sFolded;
    for (std::size_t at = 0; at < sText.size() && sFolded.size() < sFoldedBeginning.size();)
    {
        at = FoldAt(sText, at, cTable, sFolded);
        const std::size_t length = std::min(sFolded.size(), sFoldedBeginning.size());
        if (sFolded.compare(0, length, sFoldedBeginning.substr(0, length)) != 0)
            return false;
    }
    return sFolded.size() >= sFoldedBeginning.size();
}

SearchWords::SearchWords(std::wstring_view sQuery)
{
    const std::string sFolded = FoldForSearch(sQuery);
    for (std::size_t at = 0; at < sFolded.size();)
    {
        const std::size_t end = std::min(sFolded.find(' ', at), sFolded.size());
        if (end > at)
            m_colWords.push_back(sFolded.substr(at, end - at));
        at = end + 1;
    }
}

bool SearchWords::FoundIn(std::string_view sFoldedFields) const noexcept
{
    return std::all_of(m_colWords.begin(), m_colWords.end(), [&](const std::string& sWord) {
        return sFoldedFields.find(sWord) != std::string_view::npos;
    });
}

bool SearchWords::NarrowerThan(const SearchWords& cOther) const noexcept
{
    return std::all_of(cOther.m_colWords.begin(), cOther.m_colWords.end(), [&](const std::string& sWider) {
        return std::any_of(m_colWords.begin(), m_colWords.end(),
                           [&](const std::string& sWord) { return sWord.find(sWider) != std::string::npos; });
    });
}

} // namespace ravlo
