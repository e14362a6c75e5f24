// SPDX-License-Identifier: MIT
#include "base/TextKey.h"

#include <utility>

namespace ravlo
{

TextKey::TextKey(std::wstring sText)
{
    if (sText.empty())
        return; // equal to a default-constructed key
    const std::size_t hash = HashIgnoringCase(sText);
    m_cShared = std::make_shared<const Shared>(Shared{std::move(sText), hash});
}

const std::wstring& TextKey::EmptyText() noexcept
{
    static const std::wstring sEmpty;
    return sEmpty;
}

std::size_t TextKey::EmptyHash() noexcept
{
    static const std::size_t hash = HashIgnoringCase({});
    return hash;
}

// Most equal texts have the same letters, which is much faster to compare.
bool TextKey::SameText(const std::wstring& sLeft, const std::wstring& sRight) noexcept
{
    return sLeft == sRight || EqualIgnoringCase(sLeft, sRight);
}

} // namespace ravlo
