// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "rotation/Explanation.h"
#include "ui/rotation/ListPage.h"

#include <cstddef>
#include <optional>
#include <string>

namespace ravlo
{

// A cut that a person asks about, and its place in the level's order from 1; no place: it is not there.
struct AskedCut
{
    TextKey cKey;
    std::wstring sName;
    std::optional<std::size_t> place;
};

// Why the next cut of a level is that one: the choice and its reason above, the candidates in the order in
// which the pick examines them below. Selected first is the cut asked about, else the choice. A cut asked
// about that the pick does not reach is named above.
ListPage ExplanationPage(const Explanation& explanation, DateTime dtNow,
                         const std::optional<AskedCut>& asked = {});

} // namespace ravlo
