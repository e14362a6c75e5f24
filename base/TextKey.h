// SPDX-License-Identifier: MIT
#pragma once

#include "base/CaseFolding.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace ravlo
{

// An immutable text that is compared without regard to case. Copies share the text and its hash, which is
// computed once, so a copy costs a pointer. A default-constructed key is the empty text.
class TextKey
{
public:
    TextKey() noexcept = default;
    explicit TextKey(std::wstring sText);

    const std::wstring& Text() const noexcept { return m_cShared ? m_cShared->sText : EmptyText(); }
    std::size_t Hash() const noexcept { return m_cShared ? m_cShared->hash : EmptyHash(); }
    bool Empty() const noexcept { return !m_cShared; }

    friend bool operator==(const TextKey& cLeft, const TextKey& cRight) noexcept
    {
        return cLeft.m_cShared == cRight.m_cShared ||
               (cLeft.Hash() == cRight.Hash() && SameText(cLeft.Text(), cRight.Text()));
    }

private:
    struct Shared
    {
        std::wstring sText;
        std::size_t hash;
    };
    static const std::wstring& EmptyText() noexcept;
    static std::size_t EmptyHash() noexcept;
    static bool SameText(const std::wstring& sLeft, const std::wstring& sRight) noexcept;

    std::shared_ptr<const Shared> m_cShared; // null for empty text
};

} // namespace ravlo

template <> struct std::hash<ravlo::TextKey>
{
    // Without noexcept on purpose: unordered containers keep the hash in their nodes then, and compare only
    // the texts whose hashes are equal.
    std::size_t operator()(const ravlo::TextKey& cKey) const { return cKey.Hash(); }
};
