// SPDX-License-Identifier: MIT
#include "collections/TextKey.h"

#include <utility>

namespace ravlo
{

namespace
{

const std::wstring& EmptyText() noexcept
{
    static const std::wstring sEmpty;
    return sEmpty;
}

} // namespace

TextKey::TextKey(std::wstring sText)
{
    if (sText.empty())
        return; // the same as a default-made key
    const std::size_t lHash = HashIgnoringCase(sText);
    m_cShared = std::make_shared<const Shared>(Shared{std::move(sText), lHash});
}

const std::wstring& TextKey::Text() const noexcept { return m_cShared ? m_cShared->sText : EmptyText(); }

std::size_t TextKey::Hash() const noexcept { return m_cShared ? m_cShared->lHash : HashIgnoringCase({}); }

bool operator==(const TextKey& cLeft, const TextKey& cRight) noexcept
{
    if (cLeft.m_cShared == cRight.m_cShared)
        return true;
    return cLeft.Hash() == cRight.Hash() && EqualIgnoringCase(cLeft.Text(), cRight.Text());
}

} // namespace ravlo
