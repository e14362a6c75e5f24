// SPDX-License-Identifier: MIT
#include "ui/library/RowBeginnings.h"

#include "base/SearchText.h"

#include <exception>

namespace ravlo
{

namespace
{

std::string Read(const Cut& cCut, RowBeginnings::Field eField)
{
    try
    {
        return FoldForSearch(eField == RowBeginnings::Field::Artist ? cCut.Artist() : cCut.Title());
    }
    catch (const std::exception&)
    {
        return {};
    }
}

} // namespace

void RowBeginnings::Reset(std::size_t listed)
{
    m_listed = listed;
    ++m_resets;
    m_colArtists = {};
    m_colTitles = {};
}

std::vector<std::optional<std::string>>& RowBeginnings::TextsOf(Field eField) noexcept
{
    return eField == Field::Artist ? m_colArtists : m_colTitles;
}

bool RowBeginnings::Begins(const std::shared_ptr<Cut>& cCut, std::size_t listed, Field eField,
                           const std::string& sFoldedBeginning)
{
    if (TextsOf(eField).empty())
        TextsOf(eField).resize(m_listed);
    if (const std::optional<std::string>& sKnown = TextsOf(eField)[listed])
        return sKnown->starts_with(sFoldedBeginning);
    const std::size_t resets = m_resets;
    // A reference of its own: while it is asked, a host's cut may replace the list that cCut is in.
    std::string sText = Read(*std::shared_ptr<Cut>(cCut), eField);
    const bool bBegins = sText.starts_with(sFoldedBeginning);
    if (resets == m_resets)
        TextsOf(eField)[listed] = std::move(sText);
    return bBegins;
}

} // namespace ravlo
