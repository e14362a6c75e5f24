// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The artists and titles that typing in the list goes to. Each is read and folded once per listing: any
// letter of those that a person types may have to look at all cuts.
class RowBeginnings
{
public:
    enum class Field : std::uint8_t
    {
        Artist,
        Title
    };

    // Other cuts are listed, or the same ones, which may have been edited.
    void Reset(std::size_t listed);
    // Whether the text of a listed cut begins with a folded one. Of a cut that cannot be read none does.
    // Asking a host's cut may call Reset.
    bool Begins(const std::shared_ptr<Cut>& cCut, std::size_t listed, Field eField,
                const std::string& sFoldedBeginning);

private:
    std::vector<std::optional<std::string>>& TextsOf(Field eField) noexcept;

    std::size_t m_listed = 0;
    std::size_t m_resets = 0;
    std::vector<std::optional<std::string>> m_colArtists; // by listed row; none before the first letter
    std::vector<std::optional<std::string>> m_colTitles;
};

} // namespace ravlo
