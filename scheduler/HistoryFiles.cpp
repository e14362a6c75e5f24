// SPDX-License-Identifier: MIT
#include "scheduler/HistoryFiles.h"

#include "collections/CaseFolding.h"
#include "collections/Text.h"
#include "model/LittleEndian.h"
#include "scheduler/CategoryList.h"
#include "scheduler/modscheduler/FileNames.h"

#include <algorithm>
#include <limits>

namespace ravlo
{

namespace
{

constexpr std::size_t lAtArtist = 0;
constexpr std::size_t lAtTitle = 255;
constexpr std::size_t lAtPath = 510;
constexpr std::size_t lAtLevel = 765;
constexpr std::size_t lAtMarker = 769;
constexpr std::size_t lReserved = 1212; // zero bytes up to the record's end
static_assert(lAtMarker + 2 + lReserved == HistoryFiles::lRecordSize);

constexpr std::size_t lRecordsPerYield = 50;
constexpr std::uint32_t lReadPauseMs = 20;

bool TellsProgress(HistoryFiles::Manner eManner)
{
    return eManner == HistoryFiles::Manner::Explicit || eManner == HistoryFiles::Manner::WithoutBox;
}

std::wstring PathOf(const std::wstring& sAppPath, const std::wstring& sCatName)
{
    return sAppPath + L"Scheduler\\History_and_Ordering\\" + sCatName + L".sif";
}

std::string_view TrimBlanks(std::string_view bytes)
{
    const std::size_t lFirst = bytes.find_first_not_of(' ');
    if (lFirst == std::string_view::npos)
        return {};
    return bytes.substr(lFirst, bytes.find_last_not_of(' ') - lFirst + 1);
}

} // namespace

// ---- saving

struct HistoryFiles::Snapshot
{
    struct Entry
    {
        std::int32_t lLevel;       // of the level marker; a cut's own level is read when its record is filled
        std::shared_ptr<Cut> cCut; // null for a level marker
    };
    std::wstring sCatName;
    std::wstring sPath;
    std::uint64_t lNumber;
    std::vector<Entry> colEntries;
};

bool HistoryFiles::SaveAll(const std::shared_ptr<CatCollection>& colMainCats)
{
    std::vector<TextKey> colKeys;
    for (std::size_t lAt = 0; lAt < colMainCats->Count(); ++lAt)
        if (const TextKey* cKey = colMainCats->KeyAt(lAt))
            colKeys.push_back(*cKey);
    bool bAll = true;
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

void HistoryFiles::SaveQuietly(const std::shared_ptr<clsCat>& cMainCat)
{
    if (Save(cMainCat, Manner::Quiet) == Saved::Failed)
        m_colOwed.insert(cMainCat->CatID());
}

void HistoryFiles::SaveOwed(const CatCollection& colMainCats)
{
    for (const std::wstring& sKey : std::exchange(m_colOwed, {}))
        if (const std::shared_ptr<clsCat>* cMainCat = colMainCats.Find(sKey))
            SaveQuietly(std::shared_ptr(*cMainCat));
}

HistoryFiles::Saved HistoryFiles::Save(const std::shared_ptr<clsCat>& cMainCat, Manner eManner)
{
    if (cMainCat->CatLevel() != 0)
    {
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle,
                   L"SaveScheduleInfo was expecting a MAIN (level 0) cat!");
        return Saved::NotMain;
    }
    try
    {
        const Snapshot cSnapshot = TakeSnapshot(*cMainCat);
        if (cSnapshot.colEntries.empty())
            return Saved::NoRecords;
        RequireFileName(cSnapshot.sCatName);
        Write(cSnapshot, Fill(cSnapshot, eManner), eManner);
        m_colOwed.erase(cMainCat->CatID());
        return Saved::Yes;
    }
    catch (...)
    {
        if (eManner == Manner::Explicit || eManner == Manner::WithoutProgress)
            m_cMod.ShowCriticalError(L"Error in SaveHistoryAndOrdering [cSchedMan]", CurrentError());
        else
            m_cMod.LogError(L"SaveHistoryAndOrdering " + cMainCat->CatName(), CurrentError());
        return Saved::Failed;
    }
}

HistoryFiles::Snapshot HistoryFiles::TakeSnapshot(const clsCat& cMainCat)
{
    Snapshot cSnapshot{cMainCat.CatName(), SavePathOf(cMainCat.CatName()), ++m_lSnapshots, {}};
    cSnapshot.colEntries.reserve(static_cast<std::size_t>(cMainCat.TotalCuts()) +
                                 cMainCat.SubCats()->Count());
    for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat.SubCats())
    {
        if (cSubCat->CatLevel() <= 0)
            continue;
        const std::shared_ptr<CutCollection> colCuts = cSubCat->SchedCuts();
        if (colCuts->Empty())
            cSnapshot.colEntries.push_back({cSubCat->CatLevel(), nullptr});
        for (const std::shared_ptr<Cut>& cCut : *colCuts)
            cSnapshot.colEntries.push_back({cSubCat->CatLevel(), cCut});
    }
    return cSnapshot;
}

std::string HistoryFiles::Fill(const Snapshot& cSnapshot, Manner eManner)
{
    const CodePage& cCodePage = m_cMod.Outside().cCodePage;
    const std::size_t lTotal = cSnapshot.colEntries.size();
    const bool bTell = TellsProgress(eManner);
    if (bTell)
        m_cEvents.ProgressStart(L"Saving Ordering and hist for: " + cSnapshot.sCatName, lTotal);
    ProgressThrottle cThrottle(m_cMod.Outside().cClock);
    std::string bytes(lTotal * lRecordSize, '\0');
    for (std::size_t lEntry = 0; lEntry < lTotal; ++lEntry)
    {
        const Snapshot::Entry& entry = cSnapshot.colEntries[lEntry];
        const std::size_t lAt = lEntry * lRecordSize;
        if (entry.cCut)
        {
            PutText(bytes, lAt + lAtArtist, lTextWidth, cCodePage.Encode(entry.cCut->Artist()));
            PutText(bytes, lAt + lAtTitle, lTextWidth, cCodePage.Encode(entry.cCut->Title()));
            PutText(bytes, lAt + lAtPath, lTextWidth, cCodePage.Encode(entry.cCut->Key().Text()));
        }
        PutLong(bytes, lAt + lAtLevel, entry.cCut ? entry.cCut->CatLevel() : entry.lLevel);
        PutInteger(bytes, lAt + lAtMarker, entry.cCut ? 0 : -1);
        if (bTell && cThrottle.IsDue(lEntry + 1))
        {
            m_cEvents.Progress(L"Saved: " + DecimalText(static_cast<std::int64_t>(lEntry + 1)) + L" of " +
                                   DecimalText(static_cast<std::int64_t>(lTotal)),
                               lEntry + 1, lTotal);
            cThrottle.Reported();
            m_cMod.Pump();
        }
    }
    return bytes;
}

void HistoryFiles::Write(const Snapshot& cSnapshot, const std::string& bytes, Manner eManner)
{
    const std::size_t lTotal = cSnapshot.colEntries.size();
    if (TellsProgress(eManner))
    {
        // The yields and reports that go with the records come before the one write that puts them all on the
        // disk.
        m_cEvents.ProgressStart(L"Saving info for: " + cSnapshot.sCatName + L" to file.", lTotal);
        ProgressThrottle cThrottle(m_cMod.Outside().cClock);
        for (std::size_t lItem = 1; lItem <= lTotal; ++lItem)
        {
            if (lItem % lRecordsPerYield == 0)
                m_cMod.Pump();
            if (!cThrottle.IsDue(lItem))
                continue;
            m_cEvents.Progress(L"Saving item " + DecimalText(static_cast<std::int64_t>(lItem)) + L" of " +
                                   DecimalText(static_cast<std::int64_t>(lTotal)),
                               lItem, lTotal);
            cThrottle.Reported();
        }
    }
    m_cMod.FlushDebugLog();
    Files& cFiles = m_cMod.Outside().cFiles;
    const std::wstring sFolded = FoldCase(cSnapshot.sPath);
    if (m_colNewestWritten[sFolded] < cSnapshot.lNumber)
    {
        if (m_colNotApplied.count(sFolded) != 0 && cFiles.FileExists(cSnapshot.sPath))
            KeepAside(cFiles, cSnapshot.sPath);
        ReplaceFile(cFiles, cSnapshot.sPath, bytes);
        m_colNotApplied.erase(sFolded);
        m_colNewestWritten[sFolded] = cSnapshot.lNumber;
    }
    if (TellsProgress(eManner))
        m_cEvents.ProgressDone(L"Saved Scheduler Info for: " + cSnapshot.sCatName);
}

void HistoryFiles::DeleteFile(const std::wstring& sCatName)
{
    const std::wstring sPath = SavePathOf(sCatName);
    Files& cFiles = m_cMod.Outside().cFiles;
    m_colNewestWritten[FoldCase(sPath)] =
        ++m_lSnapshots; // a save still on its way must not bring the file back
    if (CanBeFileName(sCatName) && cFiles.FileExists(sPath))
        cFiles.Delete(sPath);
}

// ---- reading

// Every cut a record names is put at the end, in the order of the file; the others stay in front as they
// stand.
struct HistoryFiles::LevelOrder
{
    static constexpr std::size_t lNowhere = std::numeric_limits<std::size_t>::max();

    std::shared_ptr<clsCat> cSubCat;
    std::shared_ptr<CutCollection> colCuts;
    std::vector<std::size_t>
        colPlaced; // positions of the cuts named so far, in order; lNowhere where one moved on
    std::vector<std::size_t> colPlaceOf; // by position: index into colPlaced, or lNowhere
    // By path field: the positions of the cuts that have it, in order, and how many of them are taken. Made
    // when a record cannot be told by its exact path.
    struct Alike
    {
        std::vector<std::size_t> colPositions;
        std::size_t lTaken = 0;
    };
    std::unordered_map<std::string, Alike> colAlike;
    bool bIndexed = false;

    explicit LevelOrder(std::shared_ptr<clsCat> cLevel)
        : cSubCat(std::move(cLevel)), colCuts(cSubCat->SchedCuts()), colPlaceOf(colCuts->Count(), lNowhere)
    {
        colPlaced.reserve(colCuts->Count());
    }

    void Place(std::size_t lPosition)
    {
        if (colPlaceOf[lPosition] != lNowhere)
            colPlaced[colPlaceOf[lPosition]] = lNowhere;
        colPlaceOf[lPosition] = colPlaced.size();
        colPlaced.push_back(lPosition);
    }

    void Index(const HistoryFiles& cFiles)
    {
        bIndexed = true;
        for (std::size_t lPosition = 0; lPosition < colCuts->Count(); ++lPosition)
            if (const TextKey* cKey = colCuts->KeyAt(lPosition))
                colAlike[cFiles.PathField(cKey->Text())].colPositions.push_back(lPosition);
    }

    // The next cut of that field that no record has named yet.
    std::optional<std::size_t> NextAlike(const HistoryFiles& cFiles, const std::string& field)
    {
        if (!bIndexed)
            Index(cFiles);
        const auto found = colAlike.find(field);
        if (found == colAlike.end())
            return std::nullopt;
        Alike& alike = found->second;
        while (alike.lTaken < alike.colPositions.size() &&
               colPlaceOf[alike.colPositions[alike.lTaken]] != lNowhere)
            ++alike.lTaken;
        if (alike.lTaken == alike.colPositions.size())
            return std::nullopt;
        return alike.colPositions[alike.lTaken];
    }

    void Finish()
    {
        std::vector<std::size_t> colOrder;
        colOrder.reserve(colPlaceOf.size());
        for (std::size_t lPosition = 0; lPosition < colPlaceOf.size(); ++lPosition)
            if (colPlaceOf[lPosition] == lNowhere)
                colOrder.push_back(lPosition);
        for (const std::size_t lPosition : colPlaced)
            if (lPosition != lNowhere)
                colOrder.push_back(lPosition);
        colCuts->Reorder(colOrder);
    }
};

void HistoryFiles::ApplyHistory(const CatCollection& colMainCats)
{
    for (const std::shared_ptr<clsCat>& cMainCat : colMainCats)
        TrapCritical(m_cMod, L"Error in ApplyHistory", false,
                     [&]
                     {
                         try
                         {
                             if (const auto colRecords = RetrieveHistoryAndOrdering(*cMainCat))
                                 Apply(*cMainCat, *colRecords);
                             return true;
                         }
                         catch (...)
                         {
                             m_colNotApplied.insert(FoldCase(ReadPathOf(cMainCat->CatName())));
                             throw;
                         }
                     });
}

std::optional<std::vector<HistoryFiles::Record>>
HistoryFiles::RetrieveHistoryAndOrdering(const clsCat& cMainCat)
{
    if (cMainCat.CatLevel() != 0)
    {
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle,
                   L"RetrieveHistoryAndOrdering expects a (level 0) cat!");
        return std::nullopt;
    }
    const std::wstring sPath = ReadPathOf(cMainCat.CatName());
    Files& cFiles = m_cMod.Outside().cFiles;
    m_colNotApplied.erase(FoldCase(sPath));
    if (!CanBeFileName(cMainCat.CatName()) || !cFiles.FileExists(sPath))
        return std::nullopt;
    const std::string bytes = cFiles.ReadAll(sPath);
    const std::size_t lCount = bytes.size() / lRecordSize;
    if (bytes.size() % lRecordSize != 0)
    {
        m_cMod.WriteDebugLog(L"Ignored, its length is no multiple of a record's: " + sPath);
        m_colNotApplied.insert(FoldCase(sPath));
        return std::nullopt;
    }
    std::vector<Record> colRecords;
    if (lCount == 0)
        return colRecords;
    m_cEvents.ProgressStart(L"Getting Ordering and Scheduler History for: " + cMainCat.CatName(), lCount);
    ProgressThrottle cThrottle(m_cMod.Outside().cClock);
    colRecords.reserve(lCount);
    for (std::size_t lRecord = 0; lRecord < lCount; ++lRecord)
    {
        const std::string_view record = std::string_view(bytes).substr(lRecord * lRecordSize, lRecordSize);
        colRecords.push_back({GetLong(record, lAtLevel), GetInteger(record, lAtMarker) != 0,
                              std::string(TrimBlanks(record.substr(lAtPath, lTextWidth)))});
        if (!cThrottle.IsDue(lRecord + 1))
            continue;
        m_cMod.Sleep(lReadPauseMs);
        m_cEvents.Progress(L"Retrieving " + DecimalText(static_cast<std::int64_t>(lRecord + 1)) + L" of " +
                               DecimalText(static_cast<std::int64_t>(lCount)),
                           lRecord + 1, lCount);
        cThrottle.Reported();
    }
    m_cMod.Pump();
    m_cEvents.ProgressDone(L"Got Scheduler [from file] Info for: " + cMainCat.CatName());
    return colRecords;
}

void HistoryFiles::Apply(clsCat& cMainCat, const std::vector<Record>& colRecords)
{
    const CodePage& cCodePage = m_cMod.Outside().cCodePage;
    std::unordered_map<std::int32_t, LevelOrder> colLevels;
    for (const Record& record : colRecords)
    {
        if (record.lLevel == 0)
            continue;
        auto level = colLevels.find(record.lLevel);
        if (level == colLevels.end())
        {
            if (!EnsureLevel(cMainCat, record))
            {
                m_colNotApplied.insert(FoldCase(ReadPathOf(cMainCat.CatName())));
                if (record.bLevelMarker)
                    continue;
                break;
            }
            level = colLevels.try_emplace(record.lLevel, cMainCat.SubCat(record.lLevel)).first;
        }
        if (record.bLevelMarker)
            continue;
        LevelOrder& cLevel = level->second;
        const std::optional<std::size_t> lExact = cLevel.colCuts->PositionOf(cCodePage.Decode(record.path));
        if (lExact && cLevel.colPlaceOf[*lExact] == LevelOrder::lNowhere)
            cLevel.Place(*lExact);
        else if (const auto lAlike = cLevel.NextAlike(*this, record.path))
            cLevel.Place(*lAlike);
        else if (lExact)
            cLevel.Place(*lExact); // named twice: the last mention holds
    }
    for (auto& [lLevel, cLevel] : colLevels)
        cLevel.Finish();
}

bool HistoryFiles::EnsureLevel(clsCat& cMainCat, const Record& record)
{
    if (cMainCat.SubCat(record.lLevel))
        return true;
    if (!record.bLevelMarker)
    {
        m_cMod.Box(BoxIcon::Critical, BoxButtons::Ok, L"BUT DIDNT",
                   L"Was expecting to find: " + cMainCat.CatName() + L" " + DecimalText(record.lLevel));
        return false;
    }
    if (record.lLevel < 0)
    {
        m_cMod.WriteDebugLog(L"Ignored, no level can have this number: " + cMainCat.CatName() + L" " +
                             DecimalText(record.lLevel));
        return false;
    }
    return cMainCat.AddSubCat(std::make_shared<clsCat>(m_cMod, cMainCat.CatName(), record.lLevel));
}

std::wstring HistoryFiles::SavePathOf(const std::wstring& sCatName) const
{
    const std::wstring sAppPath = m_sAppPath.empty() ? m_cMod.AppPath() : m_sAppPath;
    if (sAppPath.empty())
        throw RuntimeError(error::PathNotFound);
    return PathOf(sAppPath, sCatName);
}

std::wstring HistoryFiles::ReadPathOf(const std::wstring& sCatName) const
{
    return PathOf(m_cMod.AppPath(), sCatName);
}

std::string HistoryFiles::PathField(const std::wstring& sPath) const
{
    const std::string bytes = m_cMod.Outside().cCodePage.Encode(sPath);
    return std::string(TrimBlanks(std::string_view(bytes).substr(0, lTextWidth)));
}

} // namespace ravlo
