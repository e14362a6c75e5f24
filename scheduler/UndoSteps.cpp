// SPDX-License-Identifier: MIT
#include "scheduler/UndoSteps.h"

#include "base/Text.h"

#include <utility>

namespace ravlo
{

std::wstring CutsText(std::size_t count) { return CountText(count) + (count == 1 ? L" cut" : L" cuts"); }

void UndoSteps::Add(const std::wstring& sWhat, ChangeRecord record) noexcept
{
    if (record.IsEmpty())
        return;
    m_colRedo.clear();
    Push(UndoWay::Undo, sWhat, std::move(record));
}

void UndoSteps::Push(UndoWay eWay, const std::wstring& sWhat, ChangeRecord record) noexcept
{
    if (record.IsEmpty())
        return;
    try
    {
        Steps(eWay).push_back({++m_lNumbers, sWhat, std::move(record)});
        if (Steps(eWay).size() > mostSteps)
            Steps(eWay).pop_front();
    }
    catch (...)
    {
        m_cMod.LogError(L"UndoSteps", CurrentError());
    }
}

std::wstring UndoSteps::What(UndoWay eWay) const
{
    return Has(eWay) ? Steps(eWay).back().sWhat : std::wstring();
}

std::optional<UndoSteps::Step> UndoSteps::Next(UndoWay eWay) const
{
    return Has(eWay) ? std::optional(Steps(eWay).back()) : std::nullopt;
}

void UndoSteps::Reversed(const Step& step, UndoWay eWay, ChangeRecord inverse) noexcept
{
    // Others may have added steps while cuts were read.
    std::erase_if(Steps(eWay), [&](const Step& other) { return other.lNumber == step.lNumber; });
    Push(eWay == UndoWay::Undo ? UndoWay::Redo : UndoWay::Undo, step.sWhat, std::move(inverse));
}

} // namespace ravlo
