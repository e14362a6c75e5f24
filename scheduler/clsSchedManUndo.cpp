// SPDX-License-Identifier: MIT
// Undo and redo.

#include "base/ScopedFlag.h"
#include "scheduler/CategoryRename.h"
#include "scheduler/ChangeReversal.h"
#include "scheduler/SchedManParts.h"
#include "scheduler/SettingChanges.h"

#include <utility>

namespace ravlo
{

namespace
{

// Renames back, unless that is done, as by a process that was killed before it could save its steps. Throws,
// with nothing changed, when it is not possible.
PassedOver RenameBack(SchedulerState& cState, Synchronisation& cSync, const ChangeRecord::Renamed& before,
                      Failing eFailing, const std::function<void(const ChangeRecord&)>& reversed)
{
    PassedOver passedOver;
    ChangeRecord inverse;
    const std::wstring sWhyNot = WhyNotRename(cState, before.sTo, before.sFrom);
    const bool bThere = cState.MainCat(before.sTo) != nullptr;
    if (bThere && sWhyNot.empty())
    {
        if (!RenameMainCat(cState, cSync, before.sTo, before.sFrom, reversed))
            throw RuntimeError(error::PathFileAccess, L"The list of categories cannot be saved");
        return passedOver;
    }
    if (bThere && eFailing == Failing::Prevents)
        throw ReversalFailure(RuntimeError(error::InvalidProcedureCall, sWhyNot), L"passes it over");
    if (bThere)
        passedOver.bFailed = true;
    else if (cState.MainCat(before.sFrom))
        inverse.colRenamed = {{before.sTo, before.sFrom}};
    else
        passedOver.colGoneCats.push_back(before.sTo);
    reversed(inverse);
    return passedOver;
}

} // namespace

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

// For an undo from elsewhere: the window would show orders and positions that have passed.
void clsSchedMan::RefreshLibrary() noexcept
try
{
    if (m_cParts->cWindows && m_cParts->cWindows->LibraryExists())
        m_cParts->cWindows->RefreshLibrary();
}
catch (...)
{
    m_cParts->cMod.LogError(L"RefreshLibrary", CurrentError());
}

void clsSchedMan::SavePostponedSteps() noexcept
{
    if (!m_cParts->bPopulating)
        m_cParts->cUndo.Save();
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
    // A change that has not ended has no step yet: an undo inside it would take back the one before it.
    if (my.openChanges != 0 || my.cUndo.IsUnitOpen())
        throw RuntimeError(error::PermissionDenied, L"Cuts are being changed just now");
    const ScopedFlag cReversing(my.bReversing);
    const UndoSteps::SaveLast cSaveLast(my.cUndo);
    const std::uint64_t failed = std::exchange(my.failedStep, 0);
    const std::optional<UndoSteps::Step> step = my.cUndo.Next(eWay);
    if (!step)
        throw RuntimeError(error::InvalidProcedureCall, L"There is nothing to " + sVerb);
    const std::wstring sFailed = L"Could not " + sVerb + L" the " + step->sWhat;
    if (!step->record)
    {
        my.cUndo.Reversed(*step, eWay, {});
        throw RuntimeError(error::InvalidProcedureCall, sFailed + L"; its record is damaged and is dropped");
    }
    const Failing eFailing = failed == step->number ? Failing::IsLeftOut : Failing::Prevents;
    PassedOver passedOver;
    try
    {
        const auto reversed = [&](const ChangeRecord& inverse) { my.cUndo.Reversed(*step, eWay, inverse); };
        if (!step->record->colRenamed.empty())
            passedOver = RenameBack(my, my.cSync, step->record->colRenamed.front(), eFailing, reversed);
        else if (!step->record->settings.colItems.empty())
            passedOver = ReverseSettings(my, my.cRotationFiles, step->record->settings, eFailing, reversed);
        else
            passedOver = ReverseChange(my, my.cSync, *step->record, eFailing, sTitle, reversed);
    }
    catch (const ReversalFailure& cError)
    {
        my.failedStep = step->number;
        throw RuntimeError(cError.Number(), sFailed + L"; nothing was changed: " + cError.Description() +
                                                L" The next " + sVerb + L" " + cError.Next() + L".");
    }
    catch (...)
    {
        const RuntimeError cError = CurrentError();
        throw RuntimeError(cError.Number(), sFailed + L"; nothing was changed: " + cError.Description());
    }
    my.cPlayHistory.SetNames(my.cRotationFiles.Names()); // the option may be another one
    RefreshLibrary();
    my.cMod.ShowWaiting();
    return step->sWhat + passedOver.Text();
}

} // namespace ravlo
