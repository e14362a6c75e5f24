// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

// Searching as a person types: without regard to case, accents, width of characters and kinds of quotes and
// dashes, the same on every platform.

// Returns the bytes by which a text is searched: UTF-8 of its letters in lower case, without accents. Texts
// that differ only in what people leave out have the same bytes: Bjork and Björk, strasse and Straße, Елка
// and Ёлка. White space and control characters become blanks. Folding is done character by character, by a
// table made from the Unicode Character Database (base/make-search-table.py), and folding again changes
// nothing.
std::string FoldForSearch(std::wstring_view sText);

// Whether a text begins with a folded one. Folds no more of it than it needs.
bool BeginsFolded(std::wstring_view sText, std::string_view sFoldedBeginning);

// What a person looks for: words in any order, each of which must occur in one of the fields of what is
// searched.
class SearchWords
{
public:
    // Ends each field of a searched text; no word contains it.
    static constexpr char cFieldEnd = '\n';

    SearchWords() = default;
    explicit SearchWords(std::wstring_view sQuery);

    // Finds everything.
    bool Empty() const noexcept { return m_colWords.empty(); }
    // Precondition: folded fields, with cFieldEnd behind each.
    bool FoundIn(std::string_view sFoldedFields) const noexcept;
    // Whether cOther finds everything that these words find.
    bool NarrowerThan(const SearchWords& cOther) const noexcept;

    friend bool operator==(const SearchWords&, const SearchWords&) = default;

private:
    std::vector<std::string> m_colWords;
};

} // namespace ravlo
