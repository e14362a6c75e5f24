// SPDX-License-Identifier: MIT
#include "scheduler/HistoryFiles.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "modscheduler/FileNames.h"
#include "scheduler/CutTexts.h"
#include "scheduler/OrderRestorer.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::size_t recordsPerYield = 50;
constexpr std::uint32_t lReadPauseMs = 20;
constexpr std::size_t mostNamed = 30; // categories in one box

constexpr bool IsQuiet(SaveMode mode) { return !mode.bProgress && !mode.bBoxes; }

std::wstring PathOf(const std::wstring& sAppPath, const std::wstring& sCatName)
{
    return sAppPath + L"Scheduler\\History_and_Ordering\\" + sCatName + L".sif";
}

// The same error with the category's name in its description.
RuntimeError OfCategory(const RuntimeError& cError, const std::wstring& sCatName)
{
    if (cError.Description().find(sCatName) != std::wstring::npos)
        return cError;
    return {cError.Number(), cError.Description() + L": " + sCatName};
}

} // namespace

void HistoryFiles::Serve(const std::wstring& sAppPath)
{
    if (!EqualIgnoringCase(sAppPath, std::exchange(m_sAppPath, sAppPath)))
        m_cUnsaved.ForgetAll();
}

// ---- saving

HistoryFiles::EmptyingLevels::EmptyingLevels(HistoryFiles& cFiles, std::wstring sCatName,
                                             std::vector<std::int32_t> colLevels)
    : m_cFiles(cFiles), m_sCatName(std::move(sCatName)), m_colLevels(std::move(colLevels))
{
    m_cFiles.m_colEmptying.push_back(this);
}

HistoryFiles::EmptyingLevels::~EmptyingLevels() { std::erase(m_cFiles.m_colEmptying, this); }

bool HistoryFiles::IsEmptying(const std::wstring& sCatName, std::int32_t lLevel) const
{
    return std::any_of(m_colEmptying.begin(), m_colEmptying.end(), [&](const EmptyingLevels* cEmptying) {
        const std::vector<std::int32_t>& colLevels = cEmptying->m_colLevels;
        return EqualIgnoringCase(cEmptying->m_sCatName, sCatName) &&
               std::find(colLevels.begin(), colLevels.end(), lLevel) != colLevels.end();
    });
}

bool HistoryFiles::SaveAll(const std::shared_ptr<CatCollection>& colMainCats)
{
    std::vector<TextKey> colKeys;
    bool bAll = true;
    for (std::size_t at = 0; at < colMainCats->Count(); ++at)
        if (const TextKey* cKey = colMainCats->KeyAt(at))
            colKeys.push_back(*cKey);
        else
        {
            m_cMod.WriteDebugLog(L"Not saved, it was added without a key: " + colMainCats->At(at)->CatName());
            bAll = false;
        }
    for (const TextKey& cKey : colKeys)
    {
        const std::shared_ptr<clsCat>* cMainCat = colMainCats->Find(cKey);
        if (!cMainCat)
            continue;
        const Saved eSaved = Save(std::shared_ptr(*cMainCat));
        bAll = bAll && eSaved == Saved::Yes;
        if (eSaved == Saved::NotMain)
            break;
    }
    return bAll;
}

HistoryFiles::Saved HistoryFiles::Save(const std::shared_ptr<clsCat>& cMainCat, SaveMode mode)
{
    if (cMainCat->CatLevel() != 0)
    {
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle,
                   L"SaveScheduleInfo was expecting a MAIN (level 0) cat!");
        return Saved::NotMain;
    }
    const std::wstring sCatName = cMainCat->CatName();
    if (IsQuiet(mode) && !CanBeFileName(sCatName) && !IsNews(sCatName))
        return Saved::Failed; // no save can succeed; logged once
    try
    {
        const Snapshot cSnapshot = TakeSnapshot(*cMainCat);
        const Saved eSaved = SaveSnapshot(cSnapshot, mode);
        m_cUnsaved.Settled(sCatName, cSnapshot.stamp);
        return eSaved;
    }
    catch (...)
    {
        return Failed(sCatName, mode);
    }
}

// Call inside a catch block.
HistoryFiles::Saved HistoryFiles::Failed(const std::wstring& sCatName, SaveMode mode)
{
    const RuntimeError cError = CurrentError();
    if (CanBeFileName(sCatName))
        m_cUnsaved.SaveFailed(sCatName, m_cMod.Saved().Begin());
    if (mode.bBoxes)
        m_cMod.ShowCriticalError(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                 OfCategory(cError, sCatName));
    else
        m_cMod.LogError(L"SaveHistoryAndOrdering " + sCatName, cError);
    return Saved::Failed;
}

HistoryFiles::Snapshot HistoryFiles::TakeSnapshot(const clsCat& cMainCat)
{
    const std::wstring& sCatName = cMainCat.CatName();
    Snapshot cSnapshot{sCatName, SavePathOf(sCatName), m_cMod.Saved().Begin(), {}};
    m_cUnsaved.Changed(sCatName, cSnapshot.stamp);
    cSnapshot.colEntries.reserve(static_cast<std::size_t>(cMainCat.TotalCuts()) +
                                 cMainCat.SubCats()->Count());
    for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat.SubCats())
    {
        const std::int32_t lLevel = cSubCat->CatLevel();
        if (lLevel <= 0)
            continue;
        const std::shared_ptr<CutCollection> colCuts = cSubCat->SchedCuts();
        if (colCuts->Empty() || IsEmptying(sCatName, lLevel))
            cSnapshot.colEntries.push_back({lLevel, nullptr});
        for (const std::shared_ptr<Cut>& cCut : *colCuts)
            cSnapshot.colEntries.push_back({lLevel, cCut});
    }
    return cSnapshot;
}

HistoryFiles::Saved HistoryFiles::SaveSnapshot(const Snapshot& cSnapshot, SaveMode mode)
{
    if (cSnapshot.colEntries.empty())
    {
        if (m_cUnsaved.IsToDelete(cSnapshot.sCatName))
            DeleteFile(cSnapshot.sCatName);
        else
            EmptyNotUnderstood(cSnapshot, mode);
        return Saved::NoRecords;
    }
    RequireFileName(cSnapshot.sCatName);
    try
    {
        const OrderContent cContent = Fill(cSnapshot, mode);
        if (mode.bProgress)
            TellOfWriting(cSnapshot);
        Write(cSnapshot, cContent.Bytes(), mode);
    }
    catch (...)
    {
        if (mode.bProgress)
            m_cEvents.ProgressDone(L"Could not save Scheduler Info for: " + cSnapshot.sCatName);
        throw;
    }
    if (mode.bProgress)
        m_cEvents.ProgressDone(L"Saved Scheduler Info for: " + cSnapshot.sCatName);
    return Saved::Yes;
}

OrderContent HistoryFiles::Fill(const Snapshot& cSnapshot, SaveMode mode)
{
    const std::size_t total = cSnapshot.colEntries.size();
    if (mode.bProgress)
        m_cEvents.ProgressStart(L"Saving Ordering and hist for: " + cSnapshot.sCatName,
                                std::ssize(cSnapshot.colEntries));
    ProgressThrottle cThrottle(m_cMod.Ports().cClock);
    OrderContent cContent(total);
    CutTexts cTexts(m_cMod, cSnapshot.sCatName);
    for (std::size_t at = 0; at < total; ++at)
    {
        const Snapshot::Entry& entry = cSnapshot.colEntries[at];
        if (entry.cCut)
            cContent.PutCut(at, cTexts.Of(*entry.cCut), entry.cCut->CatLevel());
        else
            cContent.PutMarker(at, entry.lLevel);
        if (mode.bProgress && cThrottle.IsDue(at + 1))
        {
            m_cEvents.Progress(L"Saved: " + CountText(at + 1) + L" of " + CountText(total),
                               static_cast<std::int64_t>(at + 1), static_cast<std::int64_t>(total));
            cThrottle.Reported();
            m_cMod.Pump();
        }
    }
    cTexts.Report();
    return cContent;
}

// Yields and reports progress for the records, before the one write that saves them all.
void HistoryFiles::TellOfWriting(const Snapshot& cSnapshot)
{
    const std::size_t total = cSnapshot.colEntries.size();
    m_cEvents.ProgressStart(L"Saving info for: " + cSnapshot.sCatName + L" to file.",
                            static_cast<std::int64_t>(total));
    ProgressThrottle cThrottle(m_cMod.Ports().cClock);
    for (std::size_t item = 1; item <= total; ++item)
    {
        if (item % recordsPerYield == 0)
            m_cMod.Pump();
        if (!cThrottle.IsDue(item))
            continue;
        m_cEvents.Progress(L"Saving item " + CountText(item) + L" of " + CountText(total),
                           static_cast<std::int64_t>(item), static_cast<std::int64_t>(total));
        cThrottle.Reported();
    }
}

void HistoryFiles::Write(const Snapshot& cSnapshot, std::string_view bytes, SaveMode mode)
{
    m_cMod.FlushDebugLog();
    m_cMod.Saved().Replace(cSnapshot.sPath, cSnapshot.stamp, bytes, this, SavedFiles::Unseen::KeepAside,
                           IsQuiet(mode) ? Patience::None : Patience::UpToASecond);
    m_colLogged.erase(FoldCase(cSnapshot.sCatName));
}

// A category without records keeps its file, except one that was not understood: that would be reported at
// every start.
void HistoryFiles::EmptyNotUnderstood(const Snapshot& cSnapshot, SaveMode mode)
{
    if (m_cMod.Saved().StateOf(cSnapshot.sPath, this) == SavedFiles::State::NotUnderstood)
        Write(cSnapshot, {}, mode);
}

// ---- reading

// Errors of reading, each with its categories: when a drive is missing, all have the same error.
class HistoryFiles::ReadErrors
{
public:
    void Add(const RuntimeError& cError, const std::wstring& sCatName)
    {
        const auto known = std::find_if(m_colErrors.begin(), m_colErrors.end(), [&](const Group& group) {
            return group.cError.Number() == cError.Number() &&
                   group.cError.Description() == cError.Description();
        });
        Group& group = known == m_colErrors.end() ? m_colErrors.emplace_back(Group{cError, {}, 0}) : *known;
        if (++group.count <= mostNamed)
            group.sNames += (group.sNames.empty() ? L"" : L", ") + sCatName;
    }
    void Show(ModScheduler& cMod) const
    {
        for (const Group& group : m_colErrors)
        {
            const std::wstring sMore =
                group.count > mostNamed ? L"... (+" + CountText(group.count - mostNamed) + L")" : L"";
            cMod.ShowCriticalError(L"Error in ApplyHistory", OfCategory(group.cError, group.sNames + sMore));
        }
    }

private:
    struct Group
    {
        RuntimeError cError;
        std::wstring sNames;
        std::size_t count;
    };
    std::vector<Group> m_colErrors;
};

void HistoryFiles::ApplyHistory(const CatCollection& colMainCats, const std::wstring& sAppPath)
{
    ReadErrors cErrors;
    for (const std::shared_ptr<clsCat>& cMainCat : colMainCats)
    {
        const std::wstring sPath = PathOf(sAppPath, cMainCat->CatName());
        const SavedFiles::Stamp stamp = m_cMod.Saved().Begin(); // later picks are newer
        m_cUnsaved.Read(cMainCat->CatName(), 0);
        std::optional<std::string> bytes;
        try
        {
            bytes = RetrieveHistoryAndOrdering(*cMainCat, sPath);
            if (bytes && Apply(*cMainCat, *bytes, sPath))
                m_cUnsaved.Read(cMainCat->CatName(), stamp);
        }
        catch (...)
        {
            cErrors.Add(CurrentError(), cMainCat->CatName());
            if (bytes)
                m_cMod.Saved().NotUnderstood(sPath, this);
        }
    }
    cErrors.Show(m_cMod);
}

std::optional<std::string> HistoryFiles::RetrieveHistoryAndOrdering(const clsCat& cMainCat,
                                                                    const std::wstring& sPath)
{
    if (cMainCat.CatLevel() != 0)
    {
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle,
                   L"RetrieveHistoryAndOrdering expects a (level 0) cat!");
        return std::nullopt;
    }
    if (!CanBeFileName(cMainCat.CatName()))
        return std::nullopt;
    std::string bytes = m_cMod.Saved().Read(sPath, this).value_or("");
    if (bytes.empty())
        return bytes;
    if (!AreOrderRecords(bytes))
    {
        m_cMod.WriteDebugLog(L"Ignored, its length is no multiple of a record's: " + sPath);
        m_cMod.Saved().NotUnderstood(sPath, this);
        return std::nullopt;
    }
    TellOfReading(cMainCat.CatName(), bytes.size() / recordSize);
    return bytes;
}

void HistoryFiles::TellOfReading(const std::wstring& sCatName, std::size_t count)
{
    m_cEvents.ProgressStart(L"Getting Ordering and Scheduler History for: " + sCatName,
                            static_cast<std::int64_t>(count));
    ProgressThrottle cThrottle(m_cMod.Ports().cClock);
    for (std::size_t record = 1; record <= count; ++record)
    {
        if (!cThrottle.IsDue(record))
            continue;
        m_cMod.Sleep(lReadPauseMs);
        m_cEvents.Progress(L"Retrieving " + CountText(record) + L" of " + CountText(count),
                           static_cast<std::int64_t>(record), static_cast<std::int64_t>(count));
        cThrottle.Reported();
    }
    m_cMod.Pump();
    m_cEvents.ProgressDone(L"Got Scheduler [from file] Info for: " + sCatName);
}

bool HistoryFiles::Apply(clsCat& cMainCat, std::string_view bytes, const std::wstring& sPath)
{
    const OrderLeftOver leftOver = RestoreOrder(m_cMod, cMainCat, bytes);
    if (leftOver.bInTheMiddleOfAChange && IsNews(cMainCat.CatName()))
        m_cMod.WriteDebugLog(L"A change of category " + cMainCat.CatName() +
                             L" was interrupted: some of its cuts may be changed and others not.");
    if (leftOver.None())
        return true;
    m_cMod.Saved().NotUnderstood(sPath, this);
    for (const std::int32_t lLevel : leftOver.colImpossibleLevels)
        m_cMod.WriteDebugLog(L"Ignored, no level can have this number: " + cMainCat.CatName() + L" " +
                             DecimalText(lLevel));
    if (leftOver.lMissingLevel)
        m_cMod.Box(BoxIcon::Critical, BoxButtons::Ok, L"BUT DIDNT",
                   L"Was expecting to find: " + cMainCat.CatName() + L" " +
                       DecimalText(*leftOver.lMissingLevel));
    return false;
}

std::wstring HistoryFiles::SavePathOf(const std::wstring& sCatName) const
{
    const std::wstring sAppPath = m_sAppPath.empty() ? m_cMod.AppPath() : m_sAppPath;
    if (sAppPath.empty())
        throw RuntimeError(error::PathNotFound);
    return PathOf(sAppPath, sCatName);
}

bool HistoryFiles::IsNews(const std::wstring& sCatName)
{
    return m_colLogged.insert(FoldCase(sCatName)).second;
}

} // namespace ravlo
