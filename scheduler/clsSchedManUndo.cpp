// SPDX-License-Identifier: MIT
// Undo and redo.

#include "base/ScopedFlag.h"
#include "scheduler/ChangeReversal.h"
#include "scheduler/SchedManParts.h"

namespace ravlo
{

bool clsSchedMan::CanUndo() const noexcept { return m_cParts->cUndo.Has(UndoWay::Undo); }
bool clsSchedMan::CanRedo() const noexcept { return m_cParts->cUndo.Has(UndoWay::Redo); }

std::wstring clsSchedMan::UndoText() const
{
    return CanUndo() ? L"Undo " + m_cParts->cUndo.What(UndoWay::Undo) : std::wstring();
}

std::wstring clsSchedMan::RedoText() const
{
    return CanRedo() ? L"Redo " + m_cParts->cUndo.What(UndoWay::Redo) : std::wstring();
}

std::wstring clsSchedMan::Undo()
{
    return L"Undone: " + Reverse(UndoWay::Undo, L"undo", L"Error in Undo [cSchedMan]");
}

std::wstring clsSchedMan::Redo()
{
    return L"Redone: " + Reverse(UndoWay::Redo, L"redo", L"Error in Redo [cSchedMan]");
}

std::wstring clsSchedMan::Reverse(UndoWay eWay, const std::wstring& sVerb, const wchar_t* sTitle)
{
    Parts& my = *m_cParts;
    const Call cCall(*this);
    if (!my.colMainCats)
        throw RuntimeError(error::ObjectNotSet);
    RefuseWhilePopulating();
    if (my.bReversing)
        throw RuntimeError(error::PermissionDenied, L"An undo or redo is running just now");
    const ScopedFlag cReversing(my.bReversing);
    const std::optional<UndoSteps::Step> step = my.cUndo.Next(eWay);
    if (!step)
        throw RuntimeError(error::InvalidProcedureCall, L"There is nothing to " + sVerb);
    PassedOver passedOver;
    try
    {
        passedOver = ReverseChange(my, my.cSync, step->record, sTitle, [&](const ChangeRecord& inverse) {
            my.cUndo.Reversed(*step, eWay, inverse);
        });
    }
    catch (...)
    {
        const RuntimeError cError = CurrentError();
        throw RuntimeError(cError.Number(), L"Could not " + sVerb + L" the " + step->sWhat +
                                                L"; nothing was changed: " + cError.Description());
    }
    my.cMod.ShowWaiting();
    return step->sWhat + passedOver.Text();
}

} // namespace ravlo
