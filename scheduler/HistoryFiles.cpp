// SPDX-License-Identifier: MIT
#include "scheduler/HistoryFiles.h"

#include "collections/CaseFolding.h"
#include "collections/Text.h"
#include "model/LittleEndian.h"
#include "scheduler/CategoryList.h"
#include "scheduler/modscheduler/FileNames.h"

#include <algorithm>
#include <limits>
#include <span>

namespace ravlo
{

namespace
{

constexpr std::size_t lAtArtist = 0;
constexpr std::size_t lAtTitle = 255;
constexpr std::size_t lAtPath = 510;
constexpr std::size_t lAtLevel = 765;
constexpr std::size_t lAtMarker = 769;
constexpr std::ptrdiff_t lAtReserved = 771;
constexpr std::size_t lReserved = 1212; // zero bytes up to the record's end
static_assert(lAtReserved + lReserved == HistoryFiles::lRecordSize);

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

// Without the blanks at both ends. A field is mostly padding, so its end is looked at eight bytes at a time.
std::string_view TrimBlanks(std::string_view bytes)
{
    constexpr std::string_view eightBlanks = "        ";
    while (bytes.ends_with(eightBlanks))
        bytes.remove_suffix(eightBlanks.size());
    while (bytes.ends_with(' '))
        bytes.remove_suffix(1);
    while (bytes.starts_with(' '))
        bytes.remove_prefix(1);
    return bytes;
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
        m_colOwed[cMainCat->CatID()] = ++m_lSnapshots; // no snapshot taken so far pays it
}

void HistoryFiles::SaveOwed(const CatCollection& colMainCats)
{
    for (const auto& [sKey, lSince] : std::exchange(m_colOwed, {}))
        if (const std::shared_ptr<clsCat>* cMainCat = colMainCats.Find(sKey))
            SaveQuietly(std::shared_ptr(*cMainCat));
}

// A file's bytes. Every byte is written by the records, so the memory is not cleared first.
class HistoryFiles::Content
{
public:
    explicit Content(std::size_t lRecords)
        : m_lSize(lRecords * lRecordSize), m_pBytes(std::make_unique_for_overwrite<char[]>(m_lSize))
    {
    }
    std::span<char> Record(std::size_t lRecord)
    {
        return {m_pBytes.get() + lRecord * lRecordSize, lRecordSize};
    }
    std::string_view Bytes() const noexcept { return {m_pBytes.get(), m_lSize}; }

private:
    std::size_t m_lSize;
    std::unique_ptr<char[]> m_pBytes;
};

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
        const Content cContent = Fill(cSnapshot, eManner);
        Write(cSnapshot, cContent.Bytes(), eManner);
        // A pick meanwhile may owe an order that is newer than the one written here.
        if (const auto owed = m_colOwed.find(cMainCat->CatID());
            owed != m_colOwed.end() && owed->second <= cSnapshot.lNumber)
            m_colOwed.erase(owed);
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

HistoryFiles::Content HistoryFiles::Fill(const Snapshot& cSnapshot, Manner eManner)
{
    const std::size_t lTotal = cSnapshot.colEntries.size();
    const bool bTell = TellsProgress(eManner);
    if (bTell)
        m_cEvents.ProgressStart(L"Saving Ordering and hist for: " + cSnapshot.sCatName,
                                std::ssize(cSnapshot.colEntries));
    ProgressThrottle cThrottle(m_cMod.Outside().cClock);
    Content cContent(lTotal);
    for (std::size_t lEntry = 0; lEntry < lTotal; ++lEntry)
    {
        const Snapshot::Entry& entry = cSnapshot.colEntries[lEntry];
        FillRecord(cContent.Record(lEntry), entry.cCut.get(), entry.lLevel);
        if (bTell && cThrottle.IsDue(lEntry + 1))
        {
            m_cEvents.Progress(L"Saved: " + CountText(lEntry + 1) + L" of " + CountText(lTotal),
                               static_cast<std::int64_t>(lEntry + 1), static_cast<std::int64_t>(lTotal));
            cThrottle.Reported();
            m_cMod.Pump();
        }
    }
    return cContent;
}

// A cut's record, or without a cut the marker of a level that holds none.
void HistoryFiles::FillRecord(std::span<char> record, const Cut* cCut, std::int32_t lLevelOfMarker) const
{
    const CodePage& cCodePage = m_cMod.Outside().cCodePage;
    if (cCut)
    {
        PutText(record, lAtArtist, lTextWidth, cCodePage.Encode(cCut->Artist()));
        PutText(record, lAtTitle, lTextWidth, cCodePage.Encode(cCut->Title()));
        PutText(record, lAtPath, lTextWidth, cCodePage.Encode(cCut->Key().Text()));
    }
    else
        std::fill_n(record.begin(), lAtLevel, '\0');
    PutLong(record, lAtLevel, cCut ? cCut->CatLevel() : lLevelOfMarker);
    PutInteger(record, lAtMarker, cCut ? 0 : -1);
    std::fill_n(record.begin() + lAtReserved, lReserved, '\0');
}

void HistoryFiles::Write(const Snapshot& cSnapshot, std::string_view bytes, Manner eManner)
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
            m_cEvents.Progress(L"Saving item " + CountText(lItem) + L" of " + CountText(lTotal), lItem,
                               lTotal);
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

    // A record that names this path: field is its bytes, sPath the same decoded.
    void Take(const HistoryFiles& cFiles, std::string_view field, const std::wstring& sPath)
    {
        // Cuts that stood together mostly stand together still, so the next one is tried first.
        const std::size_t lNext =
            colPlaced.empty() || colPlaced.back() == lNowhere ? 0 : colPlaced.back() + 1;
        if (lNext < colPlaceOf.size() && colPlaceOf[lNext] == lNowhere)
            if (const TextKey* cKey = colCuts->KeyAt(lNext); cKey && cKey->Text() == sPath)
                return Place(lNext);
        const std::optional<std::size_t> lExact = colCuts->PositionOf(sPath);
        if (lExact && colPlaceOf[*lExact] == lNowhere)
            Place(*lExact);
        else if (const auto lAlike = NextAlike(cFiles, std::string(field)))
            Place(*lAlike);
        else if (lExact)
            Place(*lExact); // named twice: the last mention holds
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
        TrapCritical(m_cMod, L"Error in ApplyHistory",
                     [&]
                     {
                         try
                         {
                             if (const auto bytes = RetrieveHistoryAndOrdering(*cMainCat))
                                 Apply(*cMainCat, *bytes);
                         }
                         catch (...)
                         {
                             m_colNotApplied.insert(FoldCase(ReadPathOf(cMainCat->CatName())));
                             throw;
                         }
                     });
}

std::optional<std::string> HistoryFiles::RetrieveHistoryAndOrdering(const clsCat& cMainCat)
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
    std::string bytes = cFiles.ReadAll(sPath);
    const std::size_t lCount = bytes.size() / lRecordSize;
    if (bytes.size() % lRecordSize != 0)
    {
        m_cMod.WriteDebugLog(L"Ignored, its length is no multiple of a record's: " + sPath);
        m_colNotApplied.insert(FoldCase(sPath));
        return std::nullopt;
    }
    if (lCount == 0)
        return bytes;
    m_cEvents.ProgressStart(L"Getting Ordering and Scheduler History for: " + cMainCat.CatName(), lCount);
    ProgressThrottle cThrottle(m_cMod.Outside().cClock);
    for (std::size_t lRecord = 0; lRecord < lCount; ++lRecord)
    {
        if (!cThrottle.IsDue(lRecord + 1))
            continue;
        m_cMod.Sleep(lReadPauseMs);
        m_cEvents.Progress(L"Retrieving " + CountText(lRecord + 1) + L" of " + CountText(lCount), lRecord + 1,
                           lCount);
        cThrottle.Reported();
    }
    m_cMod.Pump();
    m_cEvents.ProgressDone(L"Got Scheduler [from file] Info for: " + cMainCat.CatName());
    return bytes;
}

void HistoryFiles::Apply(clsCat& cMainCat, std::string_view bytes)
{
    std::unordered_map<std::int32_t, LevelOrder> colLevels;
    LevelOrder* cLevel = nullptr; // of the record before: a level's records stand together
    for (; bytes.size() >= lRecordSize; bytes.remove_prefix(lRecordSize))
    {
        const Record record{GetLong(bytes, lAtLevel), GetInteger(bytes, lAtMarker) != 0,
                            TrimBlanks(bytes.substr(lAtPath, lTextWidth))};
        if (record.lLevel == 0)
            continue;
        if (!cLevel || cLevel->cSubCat->CatLevel() != record.lLevel)
        {
            const auto found = colLevels.find(record.lLevel);
            cLevel = found == colLevels.end() ? nullptr : &found->second;
        }
        if (!cLevel && !EnsureLevel(cMainCat, record))
        {
            m_colNotApplied.insert(FoldCase(ReadPathOf(cMainCat.CatName())));
            if (record.bLevelMarker)
                continue;
            break;
        }
        if (!cLevel)
            cLevel = &colLevels.try_emplace(record.lLevel, cMainCat.SubCat(record.lLevel)).first->second;
        if (!record.bLevelMarker)
            cLevel->Take(*this, record.path, m_cMod.Outside().cCodePage.Decode(record.path));
    }
    for (auto& [lLevel, cFinished] : colLevels)
        cFinished.Finish();
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
