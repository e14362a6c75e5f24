// SPDX-License-Identifier: MIT
#pragma once

#include "base/csv/CsvReader.h"
#include "fuzz/Fuzz.h"
#include "plan/PlanError.h"
#include "plan/Slots.h"

#include <optional>

namespace ravlo::fuzz
{

// The parser's result; nothing when it refuses the bytes, which must name the file.
template <class Item>
std::optional<std::vector<Item>> SlotsIn(std::vector<Item> (*parse)(std::string_view, const std::wstring&),
                                         std::string_view bytes)
{
    try
    {
        return parse(bytes, L"the.file");
    }
    catch (const PlanError& e)
    {
        RAVLO_REQUIRE(e.Description().starts_with(L"the.file"));
        return std::nullopt;
    }
}

// "category,level,opener", the category quoted.
inline std::string LineOf(const Slot& slot)
{
    RAVLO_REQUIRE(slot.lLevel >= 1 && !slot.sCategory.empty());
    std::string sLine = "\"";
    for (const char c : Utf8Of(slot.sCategory))
        sLine.append(c == '"' ? 2 : 1, c);
    return sLine + "\"," + std::to_string(slot.lLevel) + (slot.bOpener ? ",y" : "");
}

// Compares everything except the line number.
inline bool SameSlot(const Slot& left, const Slot& right)
{
    return left.sCategory == right.sCategory && left.lLevel == right.lLevel && left.bOpener == right.bOpener;
}

} // namespace ravlo::fuzz
