// SPDX-License-Identifier: MIT
#include "base/CaseFolding.h"
#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <random>
#include <utility>

namespace ravlo::test
{
namespace
{

// ---- the reference: what a station is, written with vectors and maps

struct RefCut
{
    std::shared_ptr<FakeCut> cCut; // the database's
    std::wstring sKey;
    std::vector<std::wstring> colNames;
    std::int32_t lLevel;
    std::int32_t lRunTime;
    bool bOpener;
    // What it was placed under: a cut that is announced without a change is left where it stands.
    std::vector<std::wstring> colPlacedNames{};
    std::int32_t lPlacedLevel = 0;
};
using RefOrder = std::vector<RefCut*>;

struct RefMain
{
    std::wstring sName;
    std::map<std::int32_t, RefOrder> colLevels;
};

struct RefRecord
{
    std::int32_t lLevel;
    bool bMarker;
    std::wstring sKey;

    friend bool operator==(const RefRecord&, const RefRecord&) = default;
};

std::wstring Lower(const std::wstring& sName) { return FoldCase(sName); }

bool HasName(const RefCut& cut, const std::wstring& sName)
{
    return std::any_of(cut.colNames.begin(), cut.colNames.end(),
                       [&](const std::wstring& sOther) { return EqualIgnoringCase(sOther, sName); });
}
void AddName(RefCut& cut, const std::wstring& sName)
{
    if (!HasName(cut, sName))
        cut.colNames.push_back(sName);
}
void RemoveName(RefCut& cut, const std::wstring& sName)
{
    std::erase_if(cut.colNames,
                  [sGone = sName](const std::wstring& sOther) { return EqualIgnoringCase(sOther, sGone); });
}
bool Contains(const RefOrder& colOrder, const RefCut* pCut)
{
    return std::find(colOrder.begin(), colOrder.end(), pCut) != colOrder.end();
}

void NotePlaced(RefCut& cut)
{
    cut.colPlacedNames = cut.colNames;
    cut.lPlacedLevel = cut.lLevel;
}
bool IsPlacedAsItIs(const RefCut& cut)
{
    return cut.lPlacedLevel == cut.lLevel &&
           std::equal(cut.colNames.begin(), cut.colNames.end(), cut.colPlacedNames.begin(),
                      cut.colPlacedNames.end(), EqualIgnoringCase);
}

class Reference
{
public:
    std::vector<std::unique_ptr<RefCut>> colCuts; // in the database's order
    std::vector<std::unique_ptr<RefMain>> colMains;
    std::map<std::wstring, std::vector<RefRecord>> colFiles; // by folded name
    std::set<std::wstring> colTouched;                       // files written or deleted in this step
    std::set<std::wstring>
        colUnsaved; // folded names of categories that picks have moved cuts in without saving
    std::vector<std::wstring> colList; // the names in the list of categories

    RefMain* Main(const std::wstring& sName) const
    {
        for (const auto& pMain : colMains)
            if (EqualIgnoringCase(pMain->sName, sName))
                return pMain.get();
        return nullptr;
    }
    RefMain& Ensure(const std::wstring& sName)
    {
        if (RefMain* pMain = Main(sName))
            return *pMain;
        colMains.push_back(std::make_unique<RefMain>(RefMain{sName, {}}));
        return *colMains.back();
    }
    // True when it was placed; a level that is made is told.
    bool File(RefCut& cut, RefMain& main, bool& bCreated)
    {
        bCreated = bCreated || main.colLevels.count(cut.lLevel) == 0;
        RefOrder& colOrder = main.colLevels[cut.lLevel];
        AddName(cut, main.sName);
        if (Contains(colOrder, &cut))
            return false;
        colOrder.push_back(&cut);
        return true;
    }
    // bAhead: with a marker in front of each level, as it is written ahead of a change.
    void Save(const RefMain& main, bool bAhead = false)
    {
        colUnsaved.erase(Lower(main.sName));
        std::vector<RefRecord> colRecords;
        for (const auto& [lLevel, colOrder] : main.colLevels)
        {
            if (colOrder.empty() || bAhead)
                colRecords.push_back({lLevel, true, L""});
            for (const RefCut* pCut : colOrder)
                colRecords.push_back({pCut->lLevel, false, pCut->sKey});
        }
        // Without a record the file stays, unless it asks for a level that is not there at every start.
        if (colRecords.empty() && colNotApplied.count(Lower(main.sName)) == 0)
            return;
        colFiles[Lower(main.sName)] = colRecords;
        colTouched.insert(Lower(main.sName));
        colNotApplied.erase(Lower(main.sName));
    }
    // Of a file that is there, if without a record.
    const std::vector<RefRecord>* Records(const std::wstring& sFolded) const
    {
        const auto found = colFiles.find(sFolded);
        return found == colFiles.end() ? nullptr : &found->second;
    }
    void DeleteFile(const RefMain& main)
    {
        colUnsaved.erase(Lower(main.sName));
        colFiles.erase(Lower(main.sName));
        colNotApplied.erase(Lower(main.sName));
        colTouched.insert(Lower(main.sName));
    }
    void Save(const std::set<RefMain*>& colAffected)
    {
        for (const RefMain* pMain : colAffected)
            Save(*pMain);
    }
    void SaveList()
    {
        colList.clear();
        for (const auto& pMain : colMains)
            colList.push_back(pMain->sName);
    }
    bool IsPlacedAsNamed(const RefCut& cut) const
    {
        return std::all_of(cut.colNames.begin(), cut.colNames.end(), [&](const std::wstring& sName) {
            const RefMain* pMain = Main(sName);
            const auto level = pMain ? pMain->colLevels.find(cut.lLevel) : decltype(pMain->colLevels.end())();
            return pMain && level != pMain->colLevels.end() && Contains(level->second, &cut);
        });
    }
    // Takes the cut out of a level; the name goes with the last level of the main category.
    bool TakeOut(RefCut& cut, RefMain& main, std::int32_t lLevel)
    {
        const auto level = main.colLevels.find(lLevel);
        if (level == main.colLevels.end() || std::erase(level->second, &cut) == 0)
            return false;
        if (std::none_of(main.colLevels.begin(), main.colLevels.end(),
                         [&](const auto& other) { return Contains(other.second, &cut); }))
            RemoveName(cut, main.sName);
        return true;
    }
    // Places the cut where its names and level say, and nowhere else, unless nothing has changed.
    void Follow(RefCut& cut, std::set<RefMain*>& colAffected)
    {
        if (IsPlacedAsItIs(cut) && IsPlacedAsNamed(cut))
            return;
        NotePlaced(cut);
        for (const auto& pMain : colMains)
            for (auto& [lLevel, colOrder] : pMain->colLevels)
                if ((lLevel != cut.lLevel || !HasName(cut, pMain->sName)) && std::erase(colOrder, &cut) > 0)
                    colAffected.insert(pMain.get());
        bool bCreated = false;
        for (const std::wstring& sName : std::vector(cut.colNames))
        {
            RefMain& main = Ensure(sName);
            if (File(cut, main, bCreated))
                colAffected.insert(&main);
        }
    }
    // What picks have left unsaved is saved before a population reads the files.
    void SaveUnsaved()
    {
        for (const auto& pMain : colMains)
            if (colUnsaved.count(Lower(pMain->sName)) != 0)
                Save(*pMain);
    }
    // So is the list, when it lacks a category without cuts, which nothing else would bring back.
    void SaveListBeforeReading()
    {
        const auto IsLost = [&](const auto& pMain) {
            return std::all_of(pMain->colLevels.begin(), pMain->colLevels.end(),
                               [](const auto& level) { return level.second.empty(); }) &&
                   std::none_of(colList.begin(), colList.end(), [&](const std::wstring& sName) {
                       return Lower(sName) == Lower(pMain->sName);
                   });
        };
        if (std::any_of(colMains.begin(), colMains.end(), IsLost))
            SaveList();
    }
    // A restart has no tree to take the orders from when a file cannot be applied in full.
    void Restart()
    {
        colMains.clear();
        Reload();
    }
    void Reload()
    {
        const auto colOld = std::exchange(colMains, {});
        colUnsaved.clear();
        bool bCreated = false;
        for (const auto& pCut : colCuts)
            for (const std::wstring& sName : pCut->colNames)
                Ensure(sName);
        for (const auto& pCut : colCuts)
        {
            for (const std::wstring& sName : std::vector(pCut->colNames))
                File(*pCut, Ensure(sName), bCreated);
            NotePlaced(*pCut);
        }
        for (const std::wstring& sName : colList)
            Ensure(sName);
        colNotApplied.clear();
        for (const auto& pMain : colMains)
            if (const auto* pRecords = Records(Lower(pMain->sName)); pRecords && !Apply(*pMain, *pRecords))
            {
                colNotApplied.insert(Lower(pMain->sName));
                for (const auto& pOld : colOld)
                    if (Lower(pOld->sName) == Lower(pMain->sName))
                        Carry(*pOld, *pMain);
            }
    }

private:
    std::set<std::wstring> colNotApplied; // folded names whose files ask for a level that is not there

    static void Carry(const RefMain& from, RefMain& to)
    {
        for (const auto& [lLevel, colFrom] : from.colLevels)
        {
            RefOrder& colOrder = to.colLevels[lLevel];
            for (const RefCut* pCut : colFrom)
                if (const auto found = std::find(colOrder.begin(), colOrder.end(), pCut);
                    found != colOrder.end())
                    std::rotate(found, found + 1, colOrder.end());
        }
        std::erase_if(to.colLevels, [&](const auto& level) {
            return level.second.empty() && from.colLevels.count(level.first) == 0;
        });
    }
    static bool Apply(RefMain& main, const std::vector<RefRecord>& colRecords)
    {
        for (const RefRecord& record : colRecords)
        {
            if (main.colLevels.count(record.lLevel) == 0 && !record.bMarker)
                return false;
            RefOrder& colOrder = main.colLevels[record.lLevel];
            const auto found = std::find_if(colOrder.begin(), colOrder.end(),
                                            [&](const RefCut* pCut) { return pCut->sKey == record.sKey; });
            if (!record.bMarker && found != colOrder.end())
                std::rotate(found, found + 1, colOrder.end());
        }
        return true;
    }
};

// ---- a manager and the reference side by side

const std::array<const wchar_t*, 6> sPool{L"Rock", L"Pop", L"Jazz", L"Soul", L"R.E.M.", L"Caf\u00E9"};
constexpr std::size_t mostCuts = 20;
constexpr std::int32_t lMostLevel = 4;

class Model
{
public:
    // Odd seeds work on a database that hands out another object for the same cut each time; of four seeds
    // in a row two work on one with batches.
    explicit Model(std::uint32_t lSeed) : m_engine(lSeed)
    {
        m_cDataBase->cInner.bFreshObjects = lSeed % 2 != 0;
        m_cDataBase->bHasBatches = lSeed % 4 >= 2;
        m_cLib.cSchedMan->SetRotatesAllowed(true);
        Populate();
        m_ref.Reload();
    }

    // One random operation on both; its name, for the trace.
    const char* Step()
    {
        m_cPorts.cMessages.Boxes.clear();
        m_cPorts.cMessages.Inputs.clear();
        m_cPorts.cFiles.ClearOperations();
        m_cLib.cHost.colSaid.clear();
        m_ref.colTouched.clear();
        struct Operation
        {
            const char* sName;
            unsigned lWeight;
            void (Model::*run)();
        };
        static constexpr std::array operations{
            Operation{"add", 10, &Model::AddCuts},
            Operation{"modify", 12, &Model::ModifyCuts},
            Operation{"remove", 6, &Model::RemoveCuts},
            Operation{"take out", 6, &Model::TakeOut},
            Operation{"take out many", 5, &Model::TakeOutMany},
            Operation{"assign", 8, &Model::Assign},
            Operation{"file", 6, &Model::File},
            Operation{"file twice", 8, &Model::PlaceTwice},
            Operation{"unfile", 4, &Model::Unfile},
            Operation{"create category", 3, &Model::CreateMainCat},
            Operation{"create level", 4, &Model::CreateLevel},
            Operation{"delete", 3, &Model::Delete},
            Operation{"delete what is gone", 1, &Model::DeleteGone},
            Operation{"shuffle", 5, &Model::Shuffle},
            Operation{"move in category", 8, &Model::MoveInCategory},
            Operation{"mass move", 10, &Model::MassMove},
            Operation{"mass copy", 7, &Model::MassCopy},
            Operation{"pick", 14, &Model::PickCut},
            Operation{"save", 3, &Model::Save},
            Operation{"reload", 2, &Model::Reload},
            Operation{"restart", 1, &Model::Restart},
        };
        unsigned lTotal = 0;
        for (const Operation& operation : operations)
            lTotal += operation.lWeight;
        unsigned lDrawn = Draw(lTotal);
        for (const Operation& operation : operations)
        {
            if (lDrawn < operation.lWeight)
            {
                (this->*operation.run)();
                return operation.sName;
            }
            lDrawn -= operation.lWeight;
        }
        return "";
    }

    void CompareTree()
    {
        const CatCollection& colMainCats = *m_cLib.cSchedMan->colMainCats();
        ASSERT_EQ(colMainCats.Count(), m_ref.colMains.size());
        for (std::size_t lMain = 0; lMain < colMainCats.Count(); ++lMain)
            CompareMain(*colMainCats.At(lMain), *colMainCats.KeyAt(lMain), *m_ref.colMains[lMain]);
        for (const auto& pCut : m_ref.colCuts)
        {
            ASSERT_EQ(pCut->cCut->CatLevel(), pCut->lLevel) << pCut->sKey;
            ASSERT_EQ(pCut->cCut->CategoryNames(), pCut->colNames) << pCut->sKey;
        }
    }

    // What either side has written or deleted in this step; the rest was compared before.
    void CompareTouchedFiles()
    {
        CompareList();
        std::set<std::wstring> colTouched = m_ref.colTouched;
        for (const std::wstring& sOperation : m_cPorts.cFiles.Operations())
            if (sOperation.ends_with(L".sif"))
            {
                const std::size_t name = sOperation.find_last_of(L'\\') + 1;
                colTouched.insert(Lower(sOperation.substr(name, sOperation.size() - 4 - name)));
            }
        for (const std::wstring& sName : colTouched)
        {
            const std::vector<RefRecord>* pRecords = m_ref.Records(sName);
            ASSERT_EQ(m_cPorts.cFiles.FileExists(SifPath(sName)), pRecords != nullptr);
            if (pRecords)
            {
                ASSERT_EQ(Decoded(m_cPorts.cFiles.Get(SifPath(sName))), *pRecords);
            }
        }
    }

    void CompareList()
    {
        std::string list;
        for (const std::wstring& sName : m_ref.colList)
            list += "\r\n" + m_cPorts.cCodePage.Encode(sName);
        if (m_cPorts.cFiles.FileExists(sMainCatsPath))
            ASSERT_EQ(m_cPorts.cFiles.Get(sMainCatsPath), list);
        else
            ASSERT_TRUE(m_ref.colList.empty());
    }

    // All of them, and that there are no others.
    void CompareFiles()
    {
        CompareList();
        std::set<std::wstring> colThere;
        for (const std::wstring& sPath : m_cPorts.cFiles.Paths())
            if (sPath.ends_with(L".sif"))
                colThere.insert(Lower(sPath));
        for (const auto& [sName, colRecords] : m_ref.colFiles)
        {
            ASSERT_EQ(colThere.erase(Lower(SifPath(sName))), 1u);
            ASSERT_EQ(Decoded(m_cPorts.cFiles.Get(SifPath(sName))), colRecords);
        }
        ASSERT_TRUE(colThere.empty()) << "a file too many";
        ASSERT_EQ(m_cPorts.TemporaryFiles(), Lines());
    }

    void ForgetLog() { m_cPorts.cFiles.Delete(RadioPorts::LogPath()); }

private:
    unsigned Draw(std::size_t below) { return below == 0 ? 0 : static_cast<unsigned>(m_engine() % below); }
    bool Chance(unsigned lPercent) { return Draw(100) < lPercent; }
    std::wstring DrawName()
    {
        std::wstring sName = sPool[Draw(sPool.size())];
        return Chance(10) ? FoldCase(sName) : sName;
    }
    std::vector<std::wstring> DrawNames()
    {
        RefCut cut{};
        for (unsigned lLeft = Draw(4); lLeft > 0; --lLeft)
            AddName(cut, DrawName());
        return cut.colNames;
    }
    std::int32_t DrawLevel() { return 1 + static_cast<std::int32_t>(Draw(lMostLevel)); }
    RefCut* DrawCut()
    {
        return m_ref.colCuts.empty() ? nullptr : m_ref.colCuts[Draw(m_ref.colCuts.size())].get();
    }
    RefMain* DrawMain()
    {
        return m_ref.colMains.empty() ? nullptr : m_ref.colMains[Draw(m_ref.colMains.size())].get();
    }
    // A main category and one of its levels; none when there is none.
    std::optional<std::pair<RefMain*, std::int32_t>> DrawPlace()
    {
        RefMain* pMain = DrawMain();
        if (!pMain || pMain->colLevels.empty())
            return std::nullopt;
        return std::pair(pMain, std::next(pMain->colLevels.begin(), Draw(pMain->colLevels.size()))->first);
    }
    std::vector<RefCut*> DrawCuts(unsigned lMost)
    {
        std::vector<RefCut*> colDrawn;
        for (unsigned lLeft = 1 + Draw(lMost); lLeft > 0 && !m_ref.colCuts.empty(); --lLeft)
            if (RefCut* pCut = DrawCut(); !Contains(colDrawn, pCut))
                colDrawn.push_back(pCut);
        return colDrawn;
    }
    std::shared_ptr<Cut> ObjectOf(const RefCut& cut) const
    {
        return m_cDataBase->cInner.bFreshObjects ? cut.cCut->Twin() : cut.cCut;
    }
    // What a host hands in: the database's object, or a copy.
    std::shared_ptr<Cut> GivenOf(const RefCut& cut)
    {
        return Chance(20) ? cut.cCut->CloneCut() : ObjectOf(cut);
    }
    Cuts CutsOf(const std::vector<RefCut*>& colRefs) const
    {
        Cuts colCuts;
        for (const RefCut* pCut : colRefs)
            colCuts.push_back(ObjectOf(*pCut));
        return colCuts;
    }
    Cuts GivenOf(const std::vector<RefCut*>& colRefs)
    {
        Cuts colCuts;
        for (const RefCut* pCut : colRefs)
            colCuts.push_back(GivenOf(*pCut));
        return colCuts;
    }

    // ---- failures

    // What goes wrong in one operation: the database refuses to commit, or one cut refuses one member.
    struct Trouble
    {
        bool bRefusesCommit = false;
        const RefCut* pCut = nullptr;
        std::string sMember;

        bool Hits(const RefCut& cut, const char* sUsed) const { return pCut == &cut && sMember == sUsed; }
    };
    Trouble DrawTrouble(const std::vector<RefCut*>& colCuts)
    {
        static const std::array sMembers{"SetCatLevel", "SetCategoryText", "AddCategoryName",
                                         "RemoveCategoryName"};
        Trouble trouble;
        if (Chance(8))
            trouble.bRefusesCommit = m_cDataBase->bHasBatches;
        else if (Chance(25) && !colCuts.empty())
        {
            trouble.pCut = colCuts[Draw(colCuts.size())];
            trouble.sMember = sMembers[Draw(sMembers.size())];
        }
        m_cDataBase->bRefusesCommit = trouble.bRefusesCommit;
        if (trouble.pCut)
            trouble.pCut->cCut->failing = {trouble.sMember};
        return trouble;
    }
    // What the operation has said, once.
    void EndTrouble(const Trouble& trouble, std::size_t failed, bool bRefusedCopies = false)
    {
        m_cDataBase->bRefusesCommit = false;
        if (trouble.pCut)
            trouble.pCut->cCut->failing.clear();
        EXPECT_EQ(m_cPorts.cMessages.Boxes.size(),
                  (trouble.bRefusesCommit || failed > 0 ? 1u : 0u) + (bRefusedCopies ? 1u : 0u));
    }
    std::shared_ptr<clsCat> CatOf(const RefMain& main) const { return m_cLib.MainCat(main.sName); }
    std::shared_ptr<clsCat> CatOf(const RefMain& main, std::int32_t lLevel) const
    {
        return m_cLib.Level(main.sName, lLevel);
    }
    void Announce(void (DataBaseEvents::*pEvent)(const Cuts&), const std::vector<RefCut*>& colRefs)
    {
        m_cDataBase->cInner.Announce(pEvent, CutsOf(colRefs));
    }
    static void GiveNames(RefCut& cut, std::vector<std::wstring> colNames)
    {
        cut.colNames = std::move(colNames);
        std::wstring sText;
        for (const std::wstring& sName : cut.colNames)
            sText += sName + L"/";
        cut.cCut->SetCategoryText(sText);
    }

    // ---- operations

    void AddCuts()
    {
        std::vector<RefCut*> colNew;
        std::set<RefMain*> colAffected;
        for (unsigned lLeft = 1 + Draw(3); lLeft > 0 && m_ref.colCuts.size() < mostCuts; --lLeft)
        {
            auto pCut = std::make_unique<RefCut>();
            pCut->sKey = L"M:\\" + std::to_wstring(++m_lKeys) + L".mp3";
            pCut->lLevel = DrawLevel();
            pCut->lRunTime = static_cast<std::int32_t>(Draw(400'000));
            pCut->cCut = m_cDataBase->cInner.Add(pCut->sKey, L"", pCut->lLevel, pCut->lRunTime);
            pCut->cCut->SetArtist(L"Artist " + std::to_wstring(Draw(5)));
            pCut->cCut->SetTitle(pCut->sKey);
            pCut->cCut->SetOpener(pCut->bOpener = Chance(30));
            GiveNames(*pCut, DrawNames());
            colNew.push_back(pCut.get());
            m_ref.colCuts.push_back(std::move(pCut));
        }
        Announce(&DataBaseEvents::CutsAdded, colNew);
        for (RefCut* pCut : colNew)
        {
            pCut->lPlacedLevel = 0;
            m_ref.Follow(*pCut, colAffected);
        }
        m_ref.Save(colAffected);
    }

    void ModifyCuts()
    {
        const std::vector<RefCut*> colCuts = DrawCuts(4);
        for (RefCut* pCut : colCuts)
        {
            if (Chance(50))
                GiveNames(*pCut, DrawNames());
            if (Chance(50))
                pCut->cCut->SetCatLevel(pCut->lLevel = DrawLevel());
        }
        Announce(&DataBaseEvents::CutsModified, colCuts);
        std::set<RefMain*> colAffected;
        for (RefCut* pCut : colCuts)
            m_ref.Follow(*pCut, colAffected);
        m_ref.Save(colAffected);
    }

    void RemoveCuts()
    {
        const std::vector<RefCut*> colCuts = DrawCuts(2);
        for (const RefCut* pCut : colCuts)
            m_cDataBase->cInner.Remove(*pCut->cCut);
        Announce(&DataBaseEvents::CutsRemoved, colCuts);
        std::set<RefMain*> colAffected;
        for (RefCut* pCut : colCuts)
        {
            pCut->colNames.clear();
            m_ref.Follow(*pCut, colAffected);
            EXPECT_EQ(pCut->cCut->CategoryText(), L"");
            std::erase_if(m_ref.colCuts, [&](const auto& pOwn) { return pOwn.get() == pCut; });
        }
        m_ref.Save(colAffected);
    }

    void TakeOut()
    {
        RefCut* pCut = DrawCut();
        if (!pCut)
            return;
        RefMain* pOnly = Chance(70) ? DrawMain() : nullptr;
        const std::int32_t lGiven = Chance(30) ? DrawLevel() : 0;
        const Trouble trouble = DrawTrouble({pCut});
        CatCollection colFrom;
        m_cLib.cSchedMan->RemoveCutFromCategory(pOnly ? CatOf(*pOnly) : nullptr, GivenOf(*pCut), colFrom,
                                                lGiven);
        const std::set<RefMain*> colAhead =
            WrittenAhead({pCut}, [&](const RefMain& main, std::int32_t lLevel) {
                return (!pOnly || pOnly == &main) && (lGiven == 0 || lGiven == lLevel);
            });
        for (const RefMain* pMain : colAhead)
            m_ref.Save(*pMain, true);
        std::vector<RefMain*> colLeft;
        const std::size_t failed = TakeOutOf(*pCut, pOnly, lGiven, trouble, colLeft) ? 0 : 1;
        EndTrouble(trouble, failed);
        for (RefMain* pMain : colAhead)
            if (std::find(colLeft.begin(), colLeft.end(), pMain) == colLeft.end())
                m_ref.Save(*pMain);
        for (const RefMain* pMain : colLeft)
            EXPECT_TRUE(colFrom.Exists(pMain->sName));
        EXPECT_EQ(colFrom.Count(), colLeft.size());
    }

    // The same in the reference, unless trouble prevents it: false when the cut fails.
    bool TakeOutOf(RefCut& cut, const RefMain* pOnly, std::int32_t lGiven, const Trouble& trouble,
                   std::vector<RefMain*>& colLeft)
    {
        const std::int32_t lLevel = lGiven != 0 ? lGiven : cut.lLevel;
        std::vector<RefMain*> colFrom;
        bool bLosesName = false;
        for (const auto& pMain : m_ref.colMains)
        {
            const auto level = pMain->colLevels.find(lLevel);
            if ((pOnly ? pOnly != pMain.get() : !HasName(cut, pMain->sName)) ||
                level == pMain->colLevels.end() || !Contains(level->second, &cut))
                continue;
            colFrom.push_back(pMain.get());
            bLosesName = bLosesName || LevelsOf(*pMain, cut).size() == 1;
        }
        if (bLosesName && trouble.Hits(cut, "RemoveCategoryName"))
            return false;
        if (trouble.bRefusesCommit)
            return true;
        for (RefMain* pMain : colFrom)
            m_ref.TakeOut(cut, *pMain, lLevel);
        NotePlaced(cut);
        colLeft.insert(colLeft.end(), colFrom.begin(), colFrom.end());
        return true;
    }
    // The main categories with a level that holds only these cuts and may lose them: they are written ahead
    // of the change, so they are saved whatever becomes of it. To be asked before the change.
    std::set<RefMain*> WrittenAhead(const std::vector<RefCut*>& colCuts,
                                    const std::function<bool(const RefMain&, std::int32_t)>& mayLeave) const
    {
        std::set<RefMain*> colAhead;
        for (const auto& pMain : m_ref.colMains)
            for (const auto& [lLevel, colOrder] : pMain->colLevels)
                if (!colOrder.empty() && mayLeave(*pMain, lLevel) &&
                    std::all_of(colOrder.begin(), colOrder.end(),
                                [&](const RefCut* pCut) { return Contains(colCuts, pCut); }))
                    colAhead.insert(pMain.get());
        return colAhead;
    }
    static std::vector<std::int32_t> LevelsOf(const RefMain& main, const RefCut& cut)
    {
        std::vector<std::int32_t> colLevels;
        for (const auto& [lLevel, colOrder] : main.colLevels)
            if (Contains(colOrder, &cut))
                colLevels.push_back(lLevel);
        return colLevels;
    }

    void TakeOutMany()
    {
        const std::vector<RefCut*> colCuts = DrawCuts(4);
        const Trouble trouble = DrawTrouble(colCuts);
        std::vector<CutRemoval> colRemovals;
        std::vector<RefMain*> colLeft;
        std::vector<RefMain*> colOnly;
        for (const RefCut* pCut : colCuts)
        {
            colOnly.push_back(Chance(60) ? DrawMain() : nullptr);
            colRemovals.push_back({GivenOf(*pCut), colOnly.back() ? CatOf(*colOnly.back()) : nullptr,
                                   Chance(30) ? DrawLevel() : 0});
        }
        m_cLib.cSchedMan->RemoveCutsFromCategories(colRemovals, [](std::size_t) {});
        std::size_t failed = 0;
        std::set<RefMain*> colSaved = WrittenAhead(colCuts, [&](const RefMain& main, std::int32_t lLevel) {
            for (std::size_t lAt = 0; lAt < colCuts.size(); ++lAt)
                if ((!colOnly[lAt] || colOnly[lAt] == &main) &&
                    (colRemovals[lAt].lLevel == 0 || colRemovals[lAt].lLevel == lLevel))
                    return true;
            return false;
        });
        for (std::size_t lAt = 0; lAt < colCuts.size(); ++lAt)
            failed +=
                TakeOutOf(*colCuts[lAt], colOnly[lAt], colRemovals[lAt].lLevel, trouble, colLeft) ? 0 : 1;
        EndTrouble(trouble, failed);
        colSaved.insert(colLeft.begin(), colLeft.end());
        m_ref.Save(colSaved);
    }

    void Assign()
    {
        RefCut* pCut = DrawCut();
        std::vector<std::wstring> colNames = DrawNames();
        if (!pCut || colNames.empty())
            return;
        const std::int32_t lLevel = DrawLevel();
        const Trouble trouble = DrawTrouble({pCut});
        const bool bSetsText = pCut->colNames != colNames;
        const bool bFiles = !WouldStand(*pCut, colNames, lLevel);
        const bool bFails = (lLevel != pCut->lLevel && trouble.Hits(*pCut, "SetCatLevel")) ||
                            (bSetsText && trouble.Hits(*pCut, "SetCategoryText")) ||
                            (bFiles && trouble.Hits(*pCut, "AddCategoryName"));
        bool bThrown = false;
        try
        {
            m_cLib.cSchedMan->AssignCut(GivenOf(*pCut), lLevel, colNames);
        }
        catch (const RuntimeError&)
        {
            bThrown = true;
        }
        EXPECT_EQ(bThrown, bFails || trouble.bRefusesCommit);
        std::set<RefMain*> colAffected = WrittenAhead({pCut}, [&](const RefMain& main, std::int32_t lAt) {
            return lAt != lLevel || std::none_of(colNames.begin(), colNames.end(), [&](const auto& sName) {
                       return EqualIgnoringCase(sName, main.sName);
                   });
        });
        if (!bThrown)
        {
            const std::size_t mainsBefore = m_ref.colMains.size();
            pCut->colNames = std::move(colNames);
            pCut->lLevel = lLevel;
            m_ref.Follow(*pCut, colAffected);
            NotePlaced(*pCut);
            if (m_ref.colMains.size() != mainsBefore)
                m_ref.SaveList();
        }
        m_ref.Save(colAffected);
        m_cPorts.cMessages.Boxes.clear();
        EndTrouble({false, trouble.pCut, trouble.sMember}, 0);
    }
    // Whether the cut, with these names and level, would be in each of its places already.
    bool WouldStand(const RefCut& cut, const std::vector<std::wstring>& colNames, std::int32_t lLevel) const
    {
        return std::all_of(colNames.begin(), colNames.end(), [&](const std::wstring& sName) {
            const RefMain* pMain = m_ref.Main(sName);
            if (!pMain)
                return false;
            const std::vector<std::int32_t> colLevels = LevelsOf(*pMain, cut);
            return std::find(colLevels.begin(), colLevels.end(), lLevel) != colLevels.end();
        });
    }

    // A host places a cut into a second level of a category it is in.
    void PlaceTwice()
    {
        RefCut* pCut = DrawCut();
        const auto place = DrawPlace();
        if (!pCut || !place || !HasName(*pCut, place->first->sName) ||
            Contains(place->first->colLevels[place->second], pCut))
            return;
        bool bCreated = false;
        EXPECT_TRUE(CatOf(*place->first, place->second)->AddCut(ObjectOf(*pCut), bCreated));
        place->first->colLevels[place->second].push_back(pCut);
    }

    void File()
    {
        RefCut* pCut = DrawCut();
        RefMain* pMain = DrawMain();
        if (!pCut || !pMain)
            return;
        bool bCreated = false;
        bool bRefCreated = false;
        const bool bPlaced = CatOf(*pMain)->AddCut(ObjectOf(*pCut), bCreated);
        EXPECT_EQ(bPlaced, m_ref.File(*pCut, *pMain, bRefCreated));
        EXPECT_EQ(bCreated, bRefCreated);
        AnnounceModified(*pCut); // a host that edits announces it
    }
    void AnnounceModified(RefCut& cut)
    {
        Announce(&DataBaseEvents::CutsModified, {&cut});
        std::set<RefMain*> colAffected;
        m_ref.Follow(cut, colAffected);
        m_ref.Save(colAffected);
    }

    void Unfile()
    {
        RefCut* pCut = DrawCut();
        const auto place = DrawPlace();
        if (!pCut || !place)
            return;
        const auto [pMain, lLevel] = *place;
        const bool bThere = std::erase(pMain->colLevels[lLevel], pCut) > 0;
        EXPECT_EQ(CatOf(*pMain, lLevel)->RemoveCut(ObjectOf(*pCut)), bThere);
        if (bThere)
            RemoveName(*pCut, pMain->sName);
        AnnounceModified(*pCut);
    }

    void CreateMainCat()
    {
        std::wstring sName = DrawName();
        const bool bThere = m_ref.Main(sName) != nullptr;
        EXPECT_EQ(m_cLib.cSchedMan->CreateMainCat(sName), !bThere);
        if (bThere)
            return;
        RefMain& main = m_ref.Ensure(sName);
        main.colLevels[1];
        m_ref.Save(main);
        m_ref.SaveList();
    }

    void CreateLevel()
    {
        RefMain* pMain = DrawMain();
        if (!pMain)
            return;
        const std::int32_t lLevel = DrawLevel();
        const bool bThere = pMain->colLevels.count(lLevel) != 0;
        m_cPorts.cMessages.Typed = {std::to_wstring(lLevel)};
        EXPECT_EQ(m_cLib.cSchedMan->CreateCatLevel(CatOf(*pMain)), !bThere);
        if (bThere)
            return;
        pMain->colLevels[lLevel];
        m_ref.Save(*pMain);
    }

    // Main categories (level 0) and levels, as a user ticks them.
    std::vector<std::pair<RefMain*, std::int32_t>> DrawTicks()
    {
        std::vector<std::pair<RefMain*, std::int32_t>> colTicks;
        for (unsigned lLeft = 1 + Draw(3); lLeft > 0; --lLeft)
        {
            if (RefMain* pMain = DrawMain(); pMain && Chance(30))
                colTicks.push_back({pMain, 0});
            else if (const auto place = DrawPlace())
                colTicks.push_back(*place);
        }
        return colTicks;
    }
    Cats CatsOf(const std::vector<std::pair<RefMain*, std::int32_t>>& colTicks) const
    {
        Cats colCats;
        for (const auto& [pMain, lLevel] : colTicks)
            colCats.push_back(lLevel == 0 ? CatOf(*pMain) : CatOf(*pMain, lLevel));
        return colCats;
    }

    void Delete()
    {
        const auto colTicks = DrawTicks();
        const Trouble trouble = DrawTrouble(DrawCuts(1));
        const bool bAnswer = m_cLib.cSchedMan->DeleteCats(CatsOf(colTicks));
        std::vector<RefMain*> colConcerned;
        for (const auto& [pMain, lLevel] : colTicks)
            if (std::find(colConcerned.begin(), colConcerned.end(), pMain) == colConcerned.end())
                colConcerned.push_back(pMain);
        bool bAll = true;
        std::set<const RefCut*> colFailed;
        bool bRefused = false;
        for (RefMain* pMain : colConcerned)
        {
            std::vector<std::int32_t> colLevels;
            bool bMain = false;
            for (const auto& [pTicked, lLevel] : colTicks)
                if (pTicked == pMain && lLevel == 0)
                    bMain = true;
                else if (pTicked == pMain &&
                         std::find(colLevels.begin(), colLevels.end(), lLevel) == colLevels.end())
                    colLevels.push_back(lLevel);
            if (colLevels.empty())
                for (const auto& [lLevel, colOrder] : pMain->colLevels)
                    colLevels.push_back(lLevel);
            for (const std::int32_t lLevel : colLevels)
            {
                bRefused = bRefused || trouble.bRefusesCommit;
                for (RefCut* pCut : RefOrder(pMain->colLevels[lLevel]))
                {
                    if (LevelsOf(*pMain, *pCut).size() == 1 && HasName(*pCut, pMain->sName) &&
                        trouble.Hits(*pCut, "RemoveCategoryName"))
                        colFailed.insert(pCut);
                    else if (!trouble.bRefusesCommit)
                    {
                        m_ref.TakeOut(*pCut, *pMain, lLevel);
                        NotePlaced(*pCut);
                    }
                }
                if (pMain->colLevels[lLevel].empty())
                    pMain->colLevels.erase(lLevel);
                else
                    bAll = false;
            }
            if (!pMain->colLevels.empty())
            {
                m_ref.Save(*pMain);
                continue;
            }
            m_ref.DeleteFile(*pMain);
            if (!bMain)
                continue;
            std::erase_if(m_ref.colMains, [&](const auto& pOwn) { return pOwn.get() == pMain; });
            m_ref.SaveList();
        }
        EXPECT_EQ(bAnswer, bAll && !bRefused);
        EndTrouble({bRefused, trouble.pCut, trouble.sMember}, colFailed.size());
    }

    void DeleteGone()
    {
        EXPECT_FALSE(m_cLib.cSchedMan->DeleteCats({std::make_shared<clsCat>(m_cLib.cMod, L"Gone", Draw(3))}));
    }

    void Shuffle()
    {
        const auto colTicks = DrawTicks();
        m_cLib.cSchedMan->ShuffleCategories(CatsOf(colTicks));
        // Main category by main category, each level once; a main category stands for all its levels.
        std::vector<std::pair<RefMain*, std::vector<std::int32_t>>> colChosen;
        for (const auto& [pMain, lLevel] : colTicks)
        {
            auto found =
                std::find_if(colChosen.begin(), colChosen.end(),
                             [&, pSought = pMain](const auto& chosen) { return chosen.first == pSought; });
            if (found == colChosen.end())
                found = colChosen.insert(colChosen.end(), {pMain, {}});
            if (std::find(found->second.begin(), found->second.end(), lLevel) == found->second.end())
                found->second.push_back(lLevel);
        }
        for (auto& [pMain, colLevels] : colChosen)
        {
            if (std::find(colLevels.begin(), colLevels.end(), 0) != colLevels.end())
            {
                colLevels.clear();
                for (const auto& [lLevel, colOrder] : pMain->colLevels)
                    colLevels.push_back(lLevel);
            }
            for (const std::int32_t lLevel : colLevels)
            {
                RefOrder& colOrder = pMain->colLevels[lLevel];
                RefOrder colShuffled;
                while (!colOrder.empty())
                {
                    const auto lDrawn = static_cast<std::ptrdiff_t>(m_cSameChance.Next() *
                                                                    static_cast<double>(colOrder.size()));
                    colShuffled.push_back(colOrder[static_cast<std::size_t>(lDrawn)]);
                    colOrder.erase(colOrder.begin() + lDrawn);
                }
                colOrder = colShuffled;
            }
            m_ref.Save(*pMain);
        }
    }

    void MoveInCategory()
    {
        const auto place = DrawPlace();
        if (!place)
            return;
        const auto [pMain, lLevel] = *place;
        RefOrder& colOrder = pMain->colLevels[lLevel];
        std::vector<RefCut*> colMoved = DrawCuts(3);
        for (RefCut* pCut : colOrder)
            if (Chance(30) && !Contains(colMoved, pCut))
                colMoved.push_back(pCut);
        const std::int32_t lPosInto = static_cast<std::int32_t>(Draw(colOrder.size() + 5)) - 2;
        m_cLib.cSchedMan->MoveCutsInCategory(CatOf(*pMain, lLevel), CutsOf(colMoved), lPosInto);
        std::erase_if(colMoved, [&](const RefCut* pCut) { return !Contains(colOrder, pCut); });
        if (colMoved.empty())
            return;
        RefOrder colNew;
        for (std::size_t lAt = 0; lAt <= colOrder.size(); ++lAt)
        {
            const auto into = static_cast<std::size_t>(
                std::clamp<std::int32_t>(lPosInto, 1, static_cast<std::int32_t>(colOrder.size()) + 1));
            if (lAt + 1 == into)
                colNew.insert(colNew.end(), colMoved.begin(), colMoved.end());
            if (lAt < colOrder.size() && !Contains(colMoved, colOrder[lAt]))
                colNew.push_back(colOrder[lAt]);
        }
        colOrder = colNew;
        m_ref.Save(*pMain);
    }

    void MassMove()
    {
        const auto place = DrawPlace();
        const auto source = DrawPlace();
        const std::vector<RefCut*> colCuts = DrawCuts(5);
        if (!place || !source)
            return;
        RefMain* pTo = place->first;
        const std::int32_t lTo = Chance(30) ? 0 : place->second;
        const bool bExclusive = Chance(40);
        const Trouble trouble = DrawTrouble(colCuts);
        bool bCreated = false;
        m_cLib.cSchedMan->DoMassCatChange(
            bExclusive ? eMoveExclusiveHere : eMoveHere, {CatOf(*source->first, source->second)},
            lTo == 0 ? CatOf(*pTo) : CatOf(*pTo, lTo), GivenOf(colCuts), bCreated);
        std::set<RefMain*> colAffected = WrittenAhead(colCuts, [&](const RefMain& main, std::int32_t lLevel) {
            const bool bLeaves =
                &main != pTo && (bExclusive || (&main == source->first && lLevel == source->second));
            return bLeaves || (lTo != 0 && lTo != lLevel);
        });
        std::size_t failed = 0;
        const auto lLevelsBefore = CountLevels();
        for (RefCut* pCut : colCuts)
            failed += MoveOne(*pCut, *pTo, lTo, bExclusive, *source, trouble, colAffected) ? 0 : 1;
        EXPECT_EQ(bCreated, CountLevels() != lLevelsBefore);
        EndTrouble(trouble, failed);
        m_ref.Save(colAffected);
    }
    // Main category by main category: it leaves, stays at its place, or comes to the end of its level. False
    // when trouble prevents it.
    bool MoveOne(RefCut& cut, RefMain& to, std::int32_t lTo, bool bExclusive,
                 const std::pair<RefMain*, std::int32_t>& source, const Trouble& trouble,
                 std::set<RefMain*>& colAffected)
    {
        const std::int32_t lLevel = lTo != 0 ? lTo : cut.lLevel;
        std::vector<RefMain*> colStays, colLeaves, colJoins;
        for (const auto& pMain : m_ref.colMains)
        {
            const std::vector<std::int32_t> colAt = LevelsOf(*pMain, cut);
            const bool bTarget = pMain.get() == &to;
            const auto IsLeft = [&](std::int32_t lAt) {
                return !bTarget && (bExclusive || std::pair(pMain.get(), lAt) == source);
            };
            if (colAt.empty() && !bTarget)
                continue;
            if (!bTarget && std::all_of(colAt.begin(), colAt.end(), IsLeft))
                colLeaves.push_back(pMain.get());
            else if (std::find(colAt.begin(), colAt.end(), lLevel) != colAt.end() && !IsLeft(lLevel))
                colStays.push_back(pMain.get());
            else
                colJoins.push_back(pMain.get());
        }
        if ((lLevel != cut.lLevel && trouble.Hits(cut, "SetCatLevel")) ||
            (!colJoins.empty() && trouble.Hits(cut, "AddCategoryName")) ||
            (!colLeaves.empty() && trouble.Hits(cut, "RemoveCategoryName")))
            return false;
        if (trouble.bRefusesCommit)
            return true;
        for (RefMain* pMain : colStays)
            if (pMain == &to || lLevel != cut.lLevel || LevelsOf(*pMain, cut).size() > 1)
                colAffected.insert(pMain);
        cut.lLevel = lLevel;
        for (const auto* pColMains : {&colLeaves, &colStays, &colJoins})
            for (RefMain* pMain : *pColMains)
                for (auto& [lAt, colOrder] : pMain->colLevels)
                    if (pColMains != &colStays || lAt != lLevel)
                        std::erase(colOrder, &cut);
        for (RefMain* pMain : colLeaves)
            RemoveName(cut, pMain->sName);
        bool bCreated = false;
        for (RefMain* pMain : colJoins)
            m_ref.File(cut, *pMain, bCreated);
        NotePlaced(cut);
        colAffected.insert(colLeaves.begin(), colLeaves.end());
        colAffected.insert(colJoins.begin(), colJoins.end());
        return true;
    }
    std::size_t CountLevels() const
    {
        std::size_t count = 0;
        for (const auto& pMain : m_ref.colMains)
            count += pMain->colLevels.size();
        return count;
    }

    void MassCopy()
    {
        const auto place = DrawPlace();
        std::vector<RefCut*> colCuts = DrawCuts(5);
        if (!place)
            return;
        RefMain* pTo = place->first;
        const std::int32_t lTo = Chance(50) ? 0 : place->second;
        const Trouble trouble = DrawTrouble(colCuts);
        bool bCreated = false;
        bool bRefCreated = false;
        m_cLib.cSchedMan->DoMassCatChange(eCopyHere, {CatOf(*pTo, place->second)},
                                          lTo == 0 ? CatOf(*pTo) : CatOf(*pTo, lTo), GivenOf(colCuts),
                                          bCreated);
        const bool bRefusedCopies =
            std::erase_if(colCuts, [&](const RefCut* pCut) { return lTo != 0 && pCut->lLevel != lTo; }) > 0;
        bool bPlaced = false;
        std::size_t failed = 0;
        for (RefCut* pCut : colCuts)
            if (trouble.Hits(*pCut, "AddCategoryName"))
                ++failed;
            else if (!trouble.bRefusesCommit)
            {
                bPlaced = m_ref.File(*pCut, *pTo, bRefCreated) || bPlaced;
                NotePlaced(*pCut);
            }
        EXPECT_EQ(bCreated, bRefCreated);
        EndTrouble({trouble.bRefusesCommit && !colCuts.empty(), trouble.pCut, trouble.sMember}, failed,
                   bRefusedCopies);
        if (bPlaced)
            m_ref.Save(*pTo);
    }

    void PickCut()
    {
        const std::wstring sName = DrawName();
        const std::int32_t lLevel = DrawLevel();
        const bool bOpener = Chance(40);
        const bool bSave = Chance(60);
        std::shared_ptr<clsCat> cMainCat;
        std::shared_ptr<clsCat> cSubCat;
        std::wstring sMainCatKey;
        const std::shared_ptr<Cut> cPicked =
            m_cLib.cSchedMan->NextCutFromRotation(sName + L"\t" + std::to_wstring(lLevel), bOpener, nullptr,
                                                  cMainCat, cSubCat, sMainCatKey, Chance(50), bSave);
        ASSERT_TRUE(cPicked);
        RefMain* pMain = m_ref.Main(sName);
        if (!pMain || pMain->colLevels.count(lLevel) == 0)
        {
            EXPECT_EQ(cPicked->KindCode(), pMain ? eKindLevelNotFound : eKindMainCatNotFound);
            return;
        }
        RefOrder& colOrder = pMain->colLevels[lLevel];
        const bool bEmpty = colOrder.empty();
        const RefCut* pChosen = nullptr;
        for (std::size_t lLeft = colOrder.size(); lLeft > 0 && !pChosen; --lLeft)
        {
            RefCut* pHead = colOrder.front();
            std::rotate(colOrder.begin(), colOrder.begin() + 1, colOrder.end());
            if (!bOpener || pHead->bOpener)
                pChosen = pHead;
        }
        EXPECT_EQ(cPicked->KindCode(), pChosen  ? eKindChosen
                                       : bEmpty ? eKindLevelEmpty
                                                : eKindNothingSchedulable);
        EXPECT_EQ(cPicked->Key().Text(), pChosen ? pChosen->sKey : L"");
        if (bSave && !bEmpty)
            m_ref.Save(*pMain);
        else if (!bEmpty)
            m_ref.colUnsaved.insert(Lower(pMain->sName));
    }

    void Save()
    {
        if (RefMain* pMain = DrawMain(); pMain && Chance(50))
        {
            EXPECT_EQ(m_cLib.cSchedMan->SaveHistoryAndOrdering(CatOf(*pMain)), !pMain->colLevels.empty());
            m_ref.Save(*pMain);
            return;
        }
        bool bAll = true;
        for (const auto& pMain : m_ref.colMains)
        {
            bAll = bAll && !pMain->colLevels.empty();
            m_ref.Save(*pMain);
        }
        EXPECT_EQ(m_cLib.cSchedMan->SaveHistoryAndOrdering(nullptr), bAll);
        EXPECT_TRUE(m_cLib.cSchedMan->SaveCatNames());
        m_ref.SaveList();
        CompareFiles();
    }

    void Reload()
    {
        CompareFiles();
        m_ref.SaveUnsaved();
        m_ref.SaveListBeforeReading();
        Populate();
        m_ref.Reload();
    }
    void Populate() { m_cLib.cSchedMan->PopulateFromDataBase(m_cDataBase, sRadio); }

    void Restart()
    {
        m_cLib.cSchedMan = std::make_shared<clsSchedMan>(m_cLib.cMod);
        Populate();
        m_cLib.cSchedMan->SetRotatesAllowed(true);
        m_ref.SaveList();
        m_ref.Restart();
        CompareFiles();
    }

    // ---- comparing

    static void CompareMain(clsCat& cMainCat, const TextKey& cKey, const RefMain& main)
    {
        ASSERT_EQ(cMainCat.CatName(), main.sName);
        ASSERT_TRUE(EqualIgnoringCase(cKey.Text(), main.sName + L"\t0"));
        const CatCollection& colSubCats = *cMainCat.SubCats();
        ASSERT_EQ(colSubCats.Count(), main.colLevels.size());
        std::size_t lAt = 0;
        for (const auto& [lLevel, colOrder] : main.colLevels)
        {
            clsCat& cSubCat = *colSubCats.At(lAt);
            ASSERT_EQ(cSubCat.CatLevel(), lLevel);
            ASSERT_EQ(cSubCat.CatName(), main.sName);
            ASSERT_EQ(cSubCat.MainCat().get(), &cMainCat);
            ASSERT_EQ(colSubCats.KeyAt(lAt++)->Text(), std::to_wstring(lLevel));
            CompareLevel(cSubCat, colOrder);
        }
    }

    static void CompareLevel(clsCat& cSubCat, const RefOrder& colOrder)
    {
        const CutCollection& colCuts = *cSubCat.SchedCuts();
        ASSERT_EQ(colCuts.Count(), colOrder.size());
        ASSERT_EQ(cSubCat.TotalCuts(), static_cast<std::int32_t>(colOrder.size()));
        std::int64_t lTotal = 0;
        for (std::size_t lAt = 0; lAt < colOrder.size(); ++lAt)
        {
            ASSERT_EQ(colCuts.KeyAt(lAt)->Text(), colOrder[lAt]->sKey);
            const Cut& cCut = *colCuts.At(lAt);
            ASSERT_EQ(cCut.Key(), *colCuts.KeyAt(lAt));
            // Of the database: its names are the database's, whichever object it is.
            ASSERT_EQ(cCut.CategoryNames(), colOrder[lAt]->colNames);
            lTotal += colOrder[lAt]->lRunTime;
        }
        const double dAverage =
            colOrder.empty() ? 0 : static_cast<double>(lTotal) / static_cast<double>(colOrder.size());
        ASSERT_EQ(cSubCat.AverageRunTimemS(), static_cast<std::int32_t>(std::nearbyint(dAverage)));
    }

    std::vector<RefRecord> Decoded(const std::string& bytes) const
    {
        constexpr std::size_t size = 1983;
        std::vector<RefRecord> colRecords;
        EXPECT_EQ(bytes.size() % size, 0u);
        for (std::size_t lAt = 0; lAt + size <= bytes.size(); lAt += size)
        {
            const auto Byte = [&](std::size_t offset) {
                return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[lAt + offset]));
            };
            const std::uint32_t lLevel = Byte(765) | Byte(766) << 8 | Byte(767) << 16 | Byte(768) << 24;
            const std::uint32_t lMarker = Byte(769) | Byte(770) << 8;
            EXPECT_TRUE(lMarker == 0 || lMarker == 0xFFFF);
            const std::string path = bytes.substr(lAt + 510, 255);
            const std::string key = lMarker == 0 ? path.substr(0, path.find_last_not_of(' ') + 1) : "";
            if (lMarker != 0)
            {
                EXPECT_EQ(bytes.substr(lAt, 765), std::string(765, '\0'));
            }
            static const std::string reserved(1212, '\0');
            EXPECT_EQ(bytes.compare(lAt + 771, reserved.size(), reserved), 0);
            colRecords.push_back({static_cast<std::int32_t>(lLevel), lMarker != 0, {key.begin(), key.end()}});
        }
        return colRecords;
    }

    std::mt19937 m_engine;
    RadioPorts m_cPorts;
    Library m_cLib{m_cPorts};
    std::shared_ptr<BatchingDataBase> m_cDataBase = std::make_shared<BatchingDataBase>();
    SeededRandom m_cSameChance; // draws what the manager's draws
    Reference m_ref;
    unsigned m_lKeys = 0;
};

void RunModel(std::uint32_t lSeed, int lSteps)
{
    SCOPED_TRACE("RAVLO_MODEL_SEED=" + std::to_string(lSeed));
    Model cModel(lSeed);
    for (int lStep = 1; lStep <= lSteps; ++lStep)
    {
        const char* sOperation = cModel.Step();
        cModel.CompareTree();
        cModel.CompareTouchedFiles();
        if (lStep % 50 == 0)
            cModel.CompareFiles();
        if (lStep % 1000 == 0)
            cModel.ForgetLog();
        ASSERT_FALSE(testing::Test::HasFailure()) << "step " << lStep << ": " << sOperation;
    }
}

// RAVLO_LONG=1 runs 400 000 operations; RAVLO_MODEL_SEED=n repeats one seed of them.
TEST(Model, RandomOperationsAgreeWithAPlainReference)
{
    constexpr std::uint32_t lSeeds = 8;
    const bool bLong = std::getenv("RAVLO_LONG") != nullptr;
    const char* sGiven = std::getenv("RAVLO_MODEL_SEED");
    const int lSteps = bLong || sGiven ? 50'000 : 1'000;
    const std::uint32_t lFirst = sGiven ? static_cast<std::uint32_t>(std::strtoul(sGiven, nullptr, 10)) : 1;
    for (std::uint32_t lSeed = lFirst; lSeed < lFirst + (sGiven ? 1 : lSeeds); ++lSeed)
    {
        std::cout << "seed " << lSeed << ", " << lSteps << " operations" << std::endl;
        RunModel(lSeed, lSteps);
        ASSERT_FALSE(HasFatalFailure());
    }
}

} // namespace
} // namespace ravlo::test
