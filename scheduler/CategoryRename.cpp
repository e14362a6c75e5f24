// SPDX-License-Identifier: MIT
#include "scheduler/CategoryRename.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "modscheduler/FileNames.h"
#include "scheduler/CategoryCreation.h"
#include "scheduler/CutNames.h"
#include "scheduler/SchedulerState.h"
#include "scheduler/Synchronisation.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sWhere = L"RenameMainCat";

// The names of a cut as the text of NamesText, one of them replaced. A level behind a TAB stays. Empty when
// the cut does not have the name.
std::wstring Replaced(const Cut& cCut, const std::wstring& sFrom, const std::wstring& sTo)
{
    std::vector<std::wstring> colNames;
    bool bFound = false;
    for (const std::wstring& sName : cCut.CategoryNames())
    {
        const std::size_t base = std::min(sName.find(cTab), sName.size());
        const bool bThis = EqualIgnoringCase(std::wstring_view(sName).substr(0, base), sFrom);
        bFound = bFound || bThis;
        colNames.push_back(bThis ? sTo + sName.substr(base) : sName);
    }
    return bFound ? NamesText(colNames) : std::wstring();
}

// Shows in the library window how many cuts are done. Tells no host and processes no messages: the database's
// batch is open, and nothing else may run until all is renamed.
class CutsProgress
{
public:
    CutsProgress(SchedulerState& cState, std::size_t cuts)
        : m_cState(cState), m_cThrottle(cState.cMod.Ports().cClock), m_cuts(cuts)
    {
        Tell([&](ProgressEvents& cWindow) { cWindow.ProgressStart(L"Renaming...", AsLong(m_cuts)); });
    }
    ~CutsProgress()
    {
        Tell([](ProgressEvents& cWindow) { cWindow.ProgressDone(L"", L""); });
    }
    CutsProgress(const CutsProgress&) = delete;
    CutsProgress& operator=(const CutsProgress&) = delete;

    // Counted from 1.
    void Done(std::size_t cut)
    {
        if (!m_cThrottle.IsDue(cut))
            return;
        Tell([&](ProgressEvents& cWindow) {
            cWindow.Progress(L"Renaming " + CountText(cut) + L" of " + CountText(m_cuts), AsLong(cut),
                             AsLong(m_cuts));
        });
        m_cThrottle.Reported();
    }

private:
    static std::int32_t AsLong(std::size_t count)
    {
        return static_cast<std::int32_t>(
            std::min<std::size_t>(count, std::numeric_limits<std::int32_t>::max()));
    }
    template <class Say> void Tell(Say&& say) const noexcept
    {
        try
        {
            if (ProgressEvents* const pWindow = m_cState.cEvents.Follower())
                say(*pWindow);
        }
        catch (...)
        {
            m_cState.cMod.LogError(sWhere, CurrentError());
        }
    }

    SchedulerState& m_cState;
    ProgressThrottle m_cThrottle;
    std::size_t m_cuts;
};

class Renaming
{
public:
    Renaming(SchedulerState& cState, Synchronisation& cSync, std::wstring sFrom, std::wstring sTo)
        : m_cState(cState), m_cHold(cSync), m_sFrom(std::move(sFrom)), m_sTo(std::move(sTo)),
          m_cMainCat(cState.MainCat(m_sFrom)), m_population(cState.populations),
          m_bFilesStay(EqualIgnoringCase(m_sFrom, m_sTo))
    {
        for (const std::shared_ptr<clsCat>& cLevel : *m_cMainCat->SubCats())
            m_colLevels.push_back(cLevel->CatLevel());
    }

    bool Run(const std::function<void(const ChangeRecord&)>& renamed)
    {
        try
        {
            if (!Change())
            {
                TakeBack();
                return false;
            }
        }
        catch (...)
        {
            const RuntimeError cError = CurrentError();
            TakeBack();
            throw RuntimeError(cError);
        }
        m_colUndo.clear();
        ChangeRecord record;
        record.colRenamed = {{m_sFrom, m_sTo}};
        renamed(record);
        CleanUp();
        return true;
    }

private:
    bool Change();
    void SaveOrder(const std::wstring& sCatName);
    void CopyRules();
    void RenameInTree(const std::wstring& sFrom, const std::wstring& sTo);
    bool SaveListWithout();
    void RenameInCuts();
    void RenameInCut(const std::shared_ptr<Cut>& cCut, const std::wstring& sText);
    void CleanUp();
    void TakeBack() noexcept;
    void Attempt(const std::function<void()>& body) const noexcept;
    std::vector<std::pair<std::wstring, std::wstring>> RulesIDs() const;

    SchedulerState& m_cState;
    const Synchronisation::Hold m_cHold;
    const std::wstring m_sFrom;
    const std::wstring m_sTo;
    const std::shared_ptr<clsCat> m_cMainCat;
    const std::uint64_t m_population;
    const bool m_bFilesStay; // the names differ only in case, which files do not tell apart
    std::vector<std::int32_t> m_colLevels;
    std::unique_ptr<DataBase::Batch> m_cBatch;
    std::vector<std::unique_ptr<HistoryFiles::EmptyingLevels>> m_colGuards;
    std::vector<std::function<void()>> m_colUndo;
};

// The order of the steps is the one that a kill between any two of them survives.
bool Renaming::Change()
{
    m_cBatch = m_cState.cDataBase->BeginBatch();
    if (!m_cBatch)
        for (const std::wstring& sName : {m_sFrom, m_sTo})
            m_colGuards.push_back(
                std::make_unique<HistoryFiles::EmptyingLevels>(m_cState.cHistoryFiles, sName, m_colLevels));
    SaveOrder(m_sFrom); // also shows that the old file can be written
    CopyRules();
    m_colUndo.emplace_back([this] { RenameInTree(m_sTo, m_sFrom); });
    RenameInTree(m_sFrom, m_sTo);
    if (!m_bFilesStay)
        m_colUndo.emplace_back([this] { m_cState.cHistoryFiles.DeleteFile(m_sTo); });
    SaveOrder(m_sTo);
    if (!m_bFilesStay && !SaveListWithout())
        return false;
    RenameInCuts();
    if (m_cState.populations != m_population)
        throw RuntimeError(error::PermissionDenied, L"The categories were read again from the database");
    if (m_cBatch)
        m_cBatch->Commit();
    m_cBatch.reset();
    return true;
}

void Renaming::SaveOrder(const std::wstring& sCatName)
{
    if (m_cState.cHistoryFiles.Save(m_cMainCat, {.bProgress = false, .bBoxes = false}) ==
        HistoryFiles::Saved::Failed)
        throw RuntimeError(error::PathFileAccess,
                           L"The order of " + sCatName + L" cannot be saved; the debug log has the reason");
}

std::vector<std::pair<std::wstring, std::wstring>> Renaming::RulesIDs() const
{
    std::vector<std::pair<std::wstring, std::wstring>> colIDs{
        {clsCat::RulesID(m_sFrom, 0), clsCat::RulesID(m_sTo, 0)}};
    for (const std::int32_t lLevel : m_colLevels)
        colIDs.emplace_back(clsCat::RulesID(m_sFrom, lLevel), clsCat::RulesID(m_sTo, lLevel));
    return colIDs;
}

void Renaming::CopyRules()
{
    if (m_bFilesStay)
        return;
    for (const auto& [sFromID, sToID] : RulesIDs())
        if (clsCatRules::CopyFile(m_cState.cMod, sFromID, sToID))
            m_colUndo.emplace_back([this, sID = sToID] { clsCatRules::DeleteFile(m_cState.cMod, sID); });
}

void Renaming::RenameInTree(const std::wstring& sFrom, const std::wstring& sTo)
{
    CatCollection& colMainCats = *m_cState.colMainCats;
    const TextKey cFrom(CategoryKey(sFrom, 0));
    const std::optional<std::size_t> position = colMainCats.PositionOf(cFrom);
    if (!position || colMainCats.At(*position) != m_cMainCat)
        return;
    const TextKey cTo(CategoryKey(sTo, 0));
    colMainCats.RemoveAt(*position);
    colMainCats.Insert(*position, &cTo, m_cMainCat);
    m_cMainCat->Rename(sTo);
}

bool Renaming::SaveListWithout()
{
    CatCollection colOthers;
    for (const std::shared_ptr<clsCat>& cMainCat : *m_cState.colMainCats)
        if (cMainCat != m_cMainCat)
            colOthers.Add(TextKey(CategoryKey(cMainCat->CatName(), 0)), cMainCat);
    // A category without cuts is only in the list: its name is replaced there in one step.
    const bool bInCuts = std::any_of(m_cMainCat->SubCats()->begin(), m_cMainCat->SubCats()->end(),
                                     [](const auto& cLevel) { return !cLevel->SchedCuts()->Empty(); });
    m_cState.cCategoryList.Created(m_sTo);
    const CatCollection& colListed = bInCuts ? colOthers : *m_cState.colMainCats;
    if (!m_cState.cCategoryList.SaveCatNames(&colListed, m_cState.AppPath()))
        return false;
    // The tree has the old name again by then: what was done last is undone first.
    m_colUndo.insert(m_colUndo.begin(), [this] {
        m_cState.cCategoryList.Created(m_sFrom);
        m_cState.cCategoryList.SaveCatNames(m_cState.colMainCats.get(), m_cState.AppPath());
    });
    return true;
}

void Renaming::RenameInCuts()
{
    const Cuts colCuts = m_cState.cDataBase->AllCuts();
    CutsProgress cProgress(m_cState, colCuts.size());
    std::size_t done = 0;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        if (const std::wstring sText = cCut ? Replaced(*cCut, m_sFrom, m_sTo) : std::wstring();
            !sText.empty())
            RenameInCut(cCut, sText);
        cProgress.Done(++done);
    }
}

void Renaming::RenameInCut(const std::shared_ptr<Cut>& cCut, const std::wstring& sText)
{
    const std::wstring sBefore = NamesTextOf(*cCut);
    const TextKey cKey = cCut->Key();
    m_colUndo.emplace_back([this, cCut, sBefore, cKey, placed = m_cState.cPlacedCuts.Recall(cKey)] {
        m_cState.cPlacedCuts.Restore(cKey, placed);
        if (NamesTextOf(*cCut) != sBefore)
            SetNamesText(*cCut, sBefore);
    });
    const PlacedCuts::OwnChange cOwnChange(m_cState.cPlacedCuts, *cCut);
    SetNamesText(*cCut, sText);
}

void Renaming::TakeBack() noexcept
{
    m_cBatch.reset(); // the database undoes its part
    while (!m_colUndo.empty())
    {
        Attempt(m_colUndo.back());
        m_colUndo.pop_back();
    }
    m_colGuards.clear();
}

// What fails here is done at the next save or does no harm.
void Renaming::CleanUp()
{
    if (!m_colGuards.empty())
    {
        m_colGuards.clear();
        Attempt([&] { m_cState.cHistoryFiles.Save(m_cMainCat, quietly); });
    }
    if (!m_bFilesStay)
    {
        m_cState.cCategoryList.Deleted(m_sFrom);
        Attempt([&] { m_cState.cHistoryFiles.DeleteFile(m_sFrom); });
        for (const auto& [sFromID, sToID] : RulesIDs())
            Attempt([&, sID = sFromID] { clsCatRules::DeleteFile(m_cState.cMod, sID); });
    }
    m_cState.cCategoryList.SaveCatNames(m_cState.colMainCats.get(), m_cState.AppPath());
    m_cState.RetrySaves();
}

void Renaming::Attempt(const std::function<void()>& body) const noexcept
{
    try
    {
        body();
    }
    catch (...)
    {
        m_cState.cMod.LogError(sWhere, CurrentError());
    }
}

} // namespace

std::wstring WhyNotRename(const SchedulerState& cState, const std::wstring& sCatName,
                          const std::wstring& sNewName)
{
    const auto HasIllegalChar = [&] {
        const std::shared_ptr<NameCollection> colChars = IllegalChars();
        return std::any_of(colChars->begin(), colChars->end(), [&](const std::wstring& sChar) {
            return sNewName.find(sChar) != std::wstring::npos;
        });
    };
    if (!cState.MainCat(sCatName))
        return L"There is no category named " + sCatName + L" any more.";
    if (sNewName.empty())
        return L"A category needs a name.";
    if (IsNumeric(sNewName))
        return L"A category name must not be a number.";
    if (sNewName.size() > maxCatNameLength)
        return L"A category name has at most 50 characters.";
    if (!EqualIgnoringCase(sCatName, sNewName) && cState.MainCat(sNewName))
        return L"There is already a category named " + cState.MainCat(sNewName)->CatName() + L".";
    if (HasIllegalChar())
        return L"A category name must not contain any of * / : < > ? \\ | \"";
    if (EqualIgnoringCase(sNewName, sAllAudio) || EqualIgnoringCase(sNewName, sNoCat) ||
        cState.cCategoryList.AsSaved(sNewName) != sNewName || !CanBeFileName(sNewName))
        return L"A category cannot be named " + sNewName + L".";
    return {};
}

bool RenameMainCat(SchedulerState& cState, Synchronisation& cSync, const std::wstring& sCatName,
                   const std::wstring& sNewName, const std::function<void(const ChangeRecord&)>& renamed)
{
    if (!cState.cDataBase)
        throw RuntimeError(error::ObjectNotSet);
    return Renaming(cState, cSync, cState.MainCat(sCatName)->CatName(), sNewName).Run(renamed);
}

} // namespace ravlo
