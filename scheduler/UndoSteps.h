// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"
#include "scheduler/ChangeRecord.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace ravlo
{

// "1 cut", "12 cuts".
std::wstring CutsText(std::size_t count);

enum class UndoWay : int
{
    Undo,
    Redo,
};

// The units of work that can be undone, and the undone ones that can be redone. Each is kept as the record
// that takes it back; see ReverseChange.
class UndoSteps
{
public:
    struct Step
    {
        std::uint64_t lNumber;
        std::wstring sWhat; // such as "shuffle of pop 1"
        ChangeRecord record;
    };
    // When there are more, the oldest are dropped.
    static constexpr std::size_t mostSteps = 100;

    explicit UndoSteps(ModScheduler& cMod) noexcept : m_cMod(cMod) {}

    // Call when a unit of work is done, before anything else runs. From now on it is the next to be undone,
    // and nothing can be redone. Ignores a record of nothing. An error is logged: the work stays, without a
    // step.
    void Add(const std::wstring& sWhat, ChangeRecord record) noexcept;

    bool Has(UndoWay eWay) const noexcept { return !Steps(eWay).empty(); }
    // What the next step of that way did; empty when there is none.
    std::wstring What(UndoWay eWay) const;
    std::optional<Step> Next(UndoWay eWay) const;
    // Call when a step was reversed, before anything else runs. inverse reverses that: it is the next step of
    // the other way, unless it is a record of nothing.
    void Reversed(const Step& step, UndoWay eWay, ChangeRecord inverse) noexcept;

private:
    std::deque<Step>& Steps(UndoWay eWay) noexcept { return eWay == UndoWay::Undo ? m_colUndo : m_colRedo; }
    const std::deque<Step>& Steps(UndoWay eWay) const noexcept
    {
        return eWay == UndoWay::Undo ? m_colUndo : m_colRedo;
    }
    void Push(UndoWay eWay, const std::wstring& sWhat, ChangeRecord record) noexcept;

    ModScheduler& m_cMod;
    std::uint64_t m_lNumbers = 0;
    std::deque<Step> m_colUndo; // the next one last
    std::deque<Step> m_colRedo;
};

} // namespace ravlo
