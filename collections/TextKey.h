// SPDX-License-Identifier: MIT
#pragma once

#include "collections/CaseFolding.h"

#include <memory>
#include <string>
#include <string_view>

namespace ravlo
{

// An immutable text that serves as a key without regard to case. Copies share one text, and its hash is computed once,
// so a cut's key can stand in many collections for the price of a pointer each. A default-made key is empty text.
class TextKey
{
public:
    TextKey() noexcept = default;
    explicit TextKey(std::wstring sText);

    const std::wstring& Text() const noexcept;
    std::size_t Hash() const noexcept;
    bool Empty() const noexcept { return Text().empty(); }

    friend bool operator==(const TextKey& cLeft, const TextKey& cRight) noexcept;

private:
    struct Shared
    {
        std::wstring sText;
        std::size_t lHash;
    };
    std::shared_ptr<const Shared> m_cShared;
};

} // namespace ravlo
