// SPDX-License-Identifier: MIT
#include "rotation/Credits.h"

#include "base/CaseFolding.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::wstring_view sOpening = L"([{";
constexpr std::wstring_view sClosing = L")]}";

bool IsIn(wchar_t c, wchar_t cFirst, wchar_t cLast) { return c >= cFirst && c <= cLast; }

bool IsSpace(wchar_t c)
{
    return IsIn(c, 0x09, 0x0D) || c == L' ' || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           IsIn(c, 0x2000, 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

// Imported texts contain tabs and no-break spaces.
std::wstring WithoutOuterSpace(std::wstring_view sText)
{
    while (!sText.empty() && IsSpace(sText.front()))
        sText.remove_prefix(1);
    while (!sText.empty() && IsSpace(sText.back()))
        sText.remove_suffix(1);
    return std::wstring(sText);
}

// Letters and digits of any script; beyond Latin-1 everything but spaces and the blocks of punctuation.
bool IsLetterOrDigit(wchar_t c)
{
    if (c < 0x80)
        return IsIn(c, L'0', L'9') || IsIn(c, L'a', L'z') || IsIn(c, L'A', L'Z');
    if (c < 0x100)
        return c == 0xAA || c == 0xB5 || c == 0xBA || (c >= 0xC0 && c != 0xD7 && c != 0xF7);
    return !IsSpace(c) && !IsIn(c, 0x2000, 0x206F) && !IsIn(c, 0x3000, 0x303F);
}

// A feature word of a text, and where it lies.
struct FeatureWord
{
    std::size_t begin;
    std::size_t end;                      // behind its full stop
    std::optional<std::size_t> outermost; // the brackets it is in: where the first and the last one open
    std::optional<std::size_t> innermost;
};

// The end of the feature word that is the word from begin to end of the text; nothing when it is none.
std::optional<std::size_t> FeatureWordEnd(std::wstring_view sText, std::size_t begin, std::size_t end)
{
    const std::wstring_view sWord = sText.substr(begin, end - begin);
    if (EqualIgnoringCase(sWord, L"featuring"))
        return end;
    if (EqualIgnoringCase(sWord, L"feat") || EqualIgnoringCase(sWord, L"ft"))
        return end < sText.size() && sText[end] == L'.' ? end + 1 : end;
    return std::nullopt;
}

// A text with its feature words and brackets.
class Scan
{
public:
    explicit Scan(std::wstring_view sText) : m_sText(sText), m_closing(sText.size(), sText.size())
    {
        for (std::size_t at = 0; at < sText.size();)
            at = IsLetterOrDigit(sText[at]) ? TakeWord(at) : TakeSign(at);
    }

    // The feature words that count, in order, each with its guest part.
    struct Guest
    {
        FeatureWord word;
        std::wstring sNames;
    };
    std::vector<Guest> Guests(bool bNameBefore) const
    {
        std::vector<Guest> colGuests;
        std::size_t next = m_sText.size(); // where the next feature word that counts begins
        for (auto word = m_colWords.rbegin(); word != m_colWords.rend(); ++word)
        {
            std::wstring sNames = Trimmed(word->end, EndOfGuests(*word, next));
            if (SplitGuests(sNames).empty() || (bNameBefore && NameBefore(*word).empty()))
                continue;
            next = word->begin;
            colGuests.push_back({*word, std::move(sNames)});
        }
        std::reverse(colGuests.begin(), colGuests.end());
        return colGuests;
    }

    // The name before a feature word: what precedes its brackets, or else what precedes it in them.
    std::wstring NameBefore(const FeatureWord& word) const
    {
        if (!word.outermost)
            return Trimmed(0, word.begin);
        std::wstring sName = Trimmed(0, *word.outermost);
        return sName.empty() ? Trimmed(*word.innermost + 1, word.begin) : sName;
    }

private:
    std::size_t TakeWord(std::size_t begin)
    {
        std::size_t end = begin;
        while (end < m_sText.size() && IsLetterOrDigit(m_sText[end]))
            ++end;
        if (const std::optional<std::size_t> wordEnd = FeatureWordEnd(m_sText, begin, end))
        {
            FeatureWord word{begin, *wordEnd, {}, {}};
            if (!m_colOpen.empty())
                word = {begin, *wordEnd, m_colOpen.front(), m_colOpen.back()};
            m_colWords.push_back(word);
        }
        return end;
    }
    std::size_t TakeSign(std::size_t at)
    {
        const std::size_t bracket = sClosing.find(m_sText[at]);
        if (sOpening.find(m_sText[at]) != std::wstring_view::npos)
            m_colOpen.push_back(at);
        else if (bracket != std::wstring_view::npos && !m_colOpen.empty() &&
                 m_sText[m_colOpen.back()] == sOpening[bracket])
        {
            m_closing[m_colOpen.back()] = at;
            m_colOpen.pop_back();
        }
        return at + 1;
    }
    // Where the guest part of a word ends that the next word begins at next, or the text's end. Brackets
    // around the next word belong to that one when names precede them: "feat. Cher (feat. Kiss)".
    std::size_t EndOfGuests(const FeatureWord& word, std::size_t next) const
    {
        const std::size_t end = std::min(next, ClosingBracket(word));
        if (end == m_sText.size())
            return end;
        std::size_t bracket = word.end;
        while (bracket < end && !IsAround(bracket, next))
            ++bracket;
        return SplitGuests(Trimmed(word.end, bracket)).empty() ? end : bracket;
    }
    bool IsAround(std::size_t bracket, std::size_t at) const
    {
        return sOpening.find(m_sText[bracket]) != std::wstring_view::npos && m_closing[bracket] > at;
    }
    std::size_t ClosingBracket(const FeatureWord& word) const
    {
        return word.innermost ? m_closing[*word.innermost] : m_sText.size();
    }
    std::wstring Trimmed(std::size_t begin, std::size_t end) const
    {
        return WithoutOuterSpace(m_sText.substr(begin, end - begin));
    }

    std::wstring_view m_sText;
    std::vector<std::size_t> m_closing; // of the bracket that opens there; the text's end when it stays open
    std::vector<std::size_t> m_colOpen;
    std::vector<FeatureWord> m_colWords;
};

// The length of the separator of guests that begins at the head of the text, without its last space, which
// may be the first one of the next separator; 0 for none.
std::size_t SeparatorLength(std::wstring_view sText)
{
    if (sText.front() == L',')
        return 1;
    for (const std::wstring_view sWord : {L"&", L"and", L"x"})
        if (const std::size_t last = sWord.size() + 1;
            sText.size() > last && IsSpace(sText.front()) && IsSpace(sText[last]) &&
            EqualIgnoringCase(sText.substr(1, sWord.size()), sWord))
            return last;
    return 0;
}

} // namespace

ArtistParts SplitArtist(std::wstring_view sArtist)
{
    const Scan cScan(sArtist);
    ArtistParts parts;
    for (Scan::Guest& guest : cScan.Guests(true))
    {
        if (parts.colGuests.empty())
            parts.sMain = cScan.NameBefore(guest.word);
        parts.colGuests.push_back(std::move(guest.sNames));
    }
    return parts;
}

std::vector<std::wstring> GuestsInTitle(std::wstring_view sTitle)
{
    std::vector<std::wstring> colGuests;
    for (Scan::Guest& guest : Scan(sTitle).Guests(false))
        colGuests.push_back(std::move(guest.sNames));
    return colGuests;
}

std::vector<std::wstring> SplitGuests(std::wstring_view sGuests)
{
    std::vector<std::wstring> colNames;
    std::size_t begin = 0;
    const auto take = [&](std::size_t end) {
        std::wstring sName = WithoutOuterSpace(sGuests.substr(begin, end - begin));
        if (!sName.empty())
            colNames.push_back(std::move(sName));
    };
    for (std::size_t at = 0; at < sGuests.size();)
    {
        const std::size_t length = SeparatorLength(sGuests.substr(at));
        if (length != 0)
        {
            take(at);
            begin = at + length;
        }
        at += length != 0 ? length : 1;
    }
    take(sGuests.size());
    return colNames;
}

} // namespace ravlo
