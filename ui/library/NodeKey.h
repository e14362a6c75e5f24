// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace ravlo
{

// What the key of a tree node names: name TAB level, with level 0 for a main category.
struct NodeKey
{
    std::wstring sName;
    std::wstring sLevel;                // the text after the first TAB
    std::optional<std::int32_t> lLevel; // nothing when that text is no level
    bool bAllAudio = false;
};
NodeKey ParseNodeKey(const std::wstring& sKey);

std::wstring RootKey();
// The key of a node's main category; the root's own for the root.
std::wstring MainKeyOf(const std::wstring& sKey);

// The category of that key in the manager's present tree; null for the root and for a missing one.
std::shared_ptr<clsCat> CatOf(const clsSchedMan& cSchedMan, const std::wstring& sKey);

} // namespace ravlo
