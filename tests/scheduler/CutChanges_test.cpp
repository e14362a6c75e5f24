// SPDX-License-Identifier: MIT
#include "scheduler/CutChanges.h"

#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

// A station without a manager: Rock 1 with a to e, Rock 2 with x, Pop 1 with p.
class CutChangesTest : public testing::Test
{
protected:
    CutChangesTest()
    {
        cMod.StoreAppPath(sRadio);
        cPorts.cFiles.MakeFolders(std::wstring(sRadio) + L"Scheduler\\History_and_Ordering");
        cState.cHistoryFiles.Serve(sRadio);
        cState.cDataBase = cDataBase;
        cState.colMainCats = std::make_shared<CatCollection>();
        cDataBase->cInner.AddTree(L"Rock 1: a b c d e | Rock 2: x | Pop 1: p");
        for (const std::shared_ptr<Cut>& cCut : cDataBase->cInner.colCuts)
            PlaceInTree(cCut);
    }
    void PlaceInTree(const std::shared_ptr<Cut>& cCut)
    {
        bool bCreated = false;
        EnsureMainCat(cMod, *cState.colMainCats, cCut->CategoryText())->AddCut(cCut, bCreated);
        cState.cPlacedCuts.Remember(*cCut);
    }
    std::shared_ptr<Cut> CutOf(const std::wstring& sKey) const { return cDataBase->CutByKey(TextKey(sKey)); }
    Cuts CutsOf(std::initializer_list<const wchar_t*> colKeys) const
    {
        Cuts colCuts;
        for (const wchar_t* sKey : colKeys)
            colCuts.push_back(CutOf(sKey));
        return colCuts;
    }
    SchedulerState::Place Place(const std::wstring& sName, std::int32_t lLevel) const
    {
        const std::shared_ptr<clsCat> cMainCat = cState.MainCat(sName);
        return {cMainCat, cMainCat->SubCat(lLevel)};
    }
    // Tree, run times and cuts as text.
    std::wstring Now() const
    {
        std::wstring sNow = TreeText(*cState.colMainCats);
        for (const std::shared_ptr<clsCat>& cMainCat : *cState.colMainCats)
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                sNow += L", " + std::to_wstring(cSubCat->AverageRunTimemS());
        for (const std::shared_ptr<Cut>& cCut : cDataBase->cInner.colCuts)
            sNow += L", " + cCut->Key().Text() + L"=" + std::to_wstring(cCut->CatLevel()) + L" " +
                    cCut->CategoryText();
        return sNow;
    }
    using Step = std::function<void(const std::shared_ptr<Cut>& cCut)>;
    void Run(CutChanges& cChanges, std::initializer_list<const wchar_t*> colKeys, const Step& step,
             const CutChanges::Rhythm& rhythm = {}) const
    {
        cChanges.Run(
            CutsOf(colKeys), [&](const std::shared_ptr<Cut>& cCut, std::size_t) { step(cCut); }, rhythm);
    }
    // Gives a cut other names, and its places in the tree.
    static void Rename(CutChanges& cChanges, const std::shared_ptr<Cut>& cCut, const std::wstring& sNames)
    {
        cCut->SetCategoryText(sNames);
        cChanges.ModifyCut(cCut);
    }
    CutChanges::Ending Quietly()
    {
        CutChanges::Ending ending;
        ending.show = [this](const RuntimeError& cError) { colShown.push_back(cError.Description()); };
        return ending;
    }
    // What an undo does with a record.
    void Apply(const ChangeRecord& record);

    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    std::shared_ptr<BatchingDataBase> cDataBase = std::make_shared<BatchingDataBase>();
    SchedulerState cState{cMod};
    Synchronisation cSync{cState};
    Lines colShown;
};

void CutChangesTest::Apply(const ChangeRecord& record)
{
    for (const ChangeRecord::Cut& changed : record.colCuts)
    {
        const std::shared_ptr<Cut> cCut = cDataBase->CutByKey(changed.cKey);
        cCut->SetCatLevel(changed.before.lCatLevel);
        cCut->SetCategoryText(changed.before.sCategoryText);
    }
    for (auto deleted = record.colDeleted.rbegin(); deleted != record.colDeleted.rend(); ++deleted)
    {
        const auto cMainCat = EnsureMainCat(cMod, *cState.colMainCats, deleted->sCatName);
        if (deleted->lLevel != 0)
            cMainCat->AddSubCat(std::make_shared<clsCat>(cMod, deleted->sCatName, deleted->lLevel));
    }
    for (const ChangeRecord::Order& order : record.colOrders)
    {
        const std::shared_ptr<clsCat> cSubCat = Place(order.category.sCatName, order.category.lLevel).cSubCat;
        cSubCat->SchedCuts()->Clear();
        for (const TextKey& cKey : order.colKeys)
            cSubCat->SchedCuts()->Add(cKey, cDataBase->CutByKey(cKey));
        cSubCat->RecalcTotalRunTime();
    }
    for (auto made = record.colMade.rbegin(); made != record.colMade.rend(); ++made)
        if (made->lLevel != 0)
            Place(made->sCatName, made->lLevel).cMainCat->SubCats()->Remove(std::to_wstring(made->lLevel));
        else
            cState.colMainCats->Remove(CategoryKey(made->sCatName, 0));
}

TEST_F(CutChangesTest, WithoutFinishTheOpenStepIsUndone)
{
    const std::wstring sBefore = Now();
    struct Stop
    {
    };
    for (const bool bThrows : {true, false})
    {
        SCOPED_TRACE(bThrows);
        const int lCommitted = cDataBase->lCommitted;
        try
        {
            CutChanges cChanges(cState, cSync, CutChanges::Origin::Own);
            CutChanges::Rhythm rhythm;
            int lAsked = 0;
            rhythm.goOn = [&] { return ++lAsked < 4 || !bThrows ? true : throw Stop(); };
            Run(
                cChanges, {L"c", L"a", L"x", L"e", L"p"},
                [&](const std::shared_ptr<Cut>& cCut) {
                cCut->SetCatLevel(7);
                Rename(cChanges, cCut, L"Pop/New");
                EXPECT_NE(Now(), sBefore);
                },
                rhythm);
            EXPECT_FALSE(bThrows);
            EXPECT_EQ(cDataBase->lCommitted, lCommitted + 1) << "the end of Run commits";
        }
        catch (const Stop&)
        {
            EXPECT_EQ(cDataBase->lCommitted, lCommitted);
            EXPECT_EQ(cDataBase->lRolledBack, 1);
            EXPECT_EQ(Now(), sBefore);
            EXPECT_EQ(cPorts.cMessages.Boxes, Boxes());
        }
    }
    EXPECT_NE(Now(), sBefore) << "what was committed stays";
    EXPECT_TRUE(cPorts.cFiles.FileExists(SifPath(L"Rock"))) << "and is saved";
    EXPECT_TRUE(cPorts.cFiles.FileExists(SifPath(L"New")));
    EXPECT_EQ(cPorts.cMessages.Boxes, Boxes());
}

TEST_F(CutChangesTest, WithoutFinishOrBatchesTheOpenStepIsUndoneToo)
{
    cDataBase->bRefusesBegin = true;
    const std::wstring sBefore = Now();
    {
        CutChanges cChanges(cState, cSync, CutChanges::Origin::Own);
        CutChanges::Rhythm rhythm;
        rhythm.goOn = [asked = std::make_shared<int>(0)] { return ++*asked < 3 ? true : throw 1; };
        const auto TakeOut = [&](const std::shared_ptr<Cut>& cCut) {
            cChanges.TakeOut(cCut, cState.PlacesOf(cCut->Key()).front());
        };
        EXPECT_THROW(Run(cChanges, {L"b", L"x", L"p"}, TakeOut, rhythm), int);
        EXPECT_NE(Now(), sBefore);
    }
    EXPECT_EQ(Now(), sBefore);
}

TEST_F(CutChangesTest, NotificationsWaitForTheEnd)
{
    std::optional<CutChanges> cChanges;
    cChanges.emplace(cState, cSync, CutChanges::Origin::Own);
    cSync.Follow(cDataBase, {});
    const auto cNew = cDataBase->cInner.Add(L"new", L"Jazz", 1);
    PlaceInTree(cNew);
    cNew->SetCatLevel(2);
    cDataBase->cInner.Announce(&DataBaseEvents::CutsModified, Cuts{cNew});
    cChanges->Finish(Quietly());
    EXPECT_EQ(Place(L"Jazz", 2).cSubCat, nullptr);
    cChanges.reset();
    EXPECT_NE(Place(L"Jazz", 2).cSubCat, nullptr);
}

TEST_F(CutChangesTest, ErrorAfterTheSavesIsThrownAfterTheReport)
{
    CutChanges cChanges(cState, cSync, CutChanges::Origin::Own);
    Run(cChanges, {L"a"}, [](const auto&) { throw RuntimeError(error::DeviceIo); });
    CutChanges::Ending ending = Quietly();
    ending.afterSave = [] { throw RuntimeError(error::ObjectNotSet); };
    EXPECT_THROW(cChanges.Finish(ending), RuntimeError);
    EXPECT_EQ(colShown, (Lines{StandardText(57) + L" (1 cuts could not be handled)"}));
}

// ---- what is recorded

TEST_F(CutChangesTest, RecordTakesAChangeBack)
{
    const std::wstring sBefore = Now();
    std::optional<CutChanges> cChanges;
    const std::pair<const char*, Step> changes[] =
        {
            {"assignments",
             [&](const auto& cCut) {
        cCut->SetCatLevel(cCut->CatLevel() + 2);
        Rename(*cChanges, cCut, L"Pop/New/Rock");
             }},
            {"removals",
             [&](const auto& cCut) {
        for (const SchedulerState::Place& place : cState.PlacesOf(cCut->Key()))
            cChanges->TakeOut(cCut, place);
             }},
                                       {"copies",
                                        [&](const auto& cCut) {
        cChanges->Place(cCut, cState.MainCat(L"Pop"));
                                        }},
        {"new places",
         [&](const auto& cCut) { cChanges->PlaceLast(cCut, cState.MainCat(cCut->CategoryText())); }},
        };
    CutChanges::Rhythm rhythm;
    rhythm.cuts = 2;
    rhythm.tell = [](std::size_t) {};
    for (const auto& [sName, change] : changes)
    {
        SCOPED_TRACE(sName);
        cChanges.emplace(cState, cSync, CutChanges::Origin::Own);
        Run(*cChanges, {L"d", L"x", L"a", L"d"}, change, rhythm);
        Run(*cChanges, {L"b", L"a"}, change, rhythm);
        const ChangeRecord record = cChanges->Finish(Quietly());
        EXPECT_EQ(record.colCuts.size(), std::string_view(sName) == "new places" ? 0u : 4u) << "each once";
        EXPECT_NE(Now(), sBefore);
        Apply(record);
        EXPECT_EQ(Now(), sBefore);
        EXPECT_EQ(colShown, Lines());
    }
}

TEST_F(CutChangesTest, RecordNamesWhatWasMadeAndDeleted)
{
    const std::wstring sBefore = Now();
    CutChanges cChanges(cState, cSync, CutChanges::Origin::Own);
    const SchedulerState::Place place = Place(L"Rock", 2);
    Run(cChanges, {L"x"}, [&](const auto& cCut) { Rename(cChanges, cCut, L"New"); });
    cChanges.Deleting(*place.cSubCat);
    place.cMainCat->RemoveSubCat(place.cSubCat);
    const ChangeRecord record = cChanges.Finish(Quietly());
    using Categories = std::vector<ChangeRecord::Category>;
    EXPECT_EQ(record.colMade, (Categories{{L"New", 0}, {L"New", 2}}));
    EXPECT_EQ(record.colDeleted, (Categories{{L"Rock", 2}}));
    EXPECT_EQ(record.colOrders.size(), 1u) << "the made level had none";
    Apply(record);
    EXPECT_EQ(Now(), sBefore);
}

TEST_F(CutChangesTest, DeletedCategoriesAreRecordedAtTheirFormerPositions)
{
    for (const wchar_t* sName : {L"A", L"B", L"C"})
        EnsureMainCat(cMod, *cState.colMainCats, sName);
    CutChanges cChanges(cState, cSync, CutChanges::Origin::Own);
    for (const wchar_t* sName : {L"B", L"A", L"C"})
    {
        cChanges.Deleting(*cState.MainCat(sName));
        cState.colMainCats->Remove(CategoryKey(sName, 0));
    }
    EXPECT_EQ(cChanges.Finish(Quietly()).colDeleted,
              (std::vector<ChangeRecord::Category>{{L"B", 0, 3}, {L"A", 0, 2}, {L"C", 0, 4}}));
}

TEST_F(CutChangesTest, WhatWasPutBackIsNotRecorded)
{
    const std::wstring sBefore = Now();
    for (const bool bRefused : {false, true})
    {
        cDataBase->bRefusesCommit = bRefused;
        CutChanges cChanges(cState, cSync, CutChanges::Origin::Own);
        Run(cChanges, {L"a", L"x"}, [&](const auto& cCut) {
            Rename(cChanges, cCut, L"New");
            if (!bRefused)
                throw RuntimeError(error::DeviceIo);
        });
        const ChangeRecord record = cChanges.Finish(Quietly());
        EXPECT_TRUE(record.colCuts.empty());
        EXPECT_TRUE(record.colMade.empty());
        EXPECT_EQ(Now(), sBefore);
    }
    EXPECT_EQ(colShown, (Lines{StandardText(57) + L" (2 cuts could not be handled)", StandardText(61)}));
}

TEST_F(CutChangesTest, CutMovedToTheEndIsPutBackToItsPlace)
{
    const std::wstring sBefore = Now();
    const struct
    {
        std::initializer_list<const wchar_t*> colKeys;
        bool bRefused; // the commit fails, else each cut does
        int lOthers;   // cuts that a host sends to the back in between
    } rows[] = {{{L"b", L"a", L"e"}, false, 0}, {{L"b", L"a", L"e"}, true, 0}, {{L"b"}, false, 4}};
    for (const auto& row : rows)
    {
        cDataBase->bRefusesCommit = row.bRefused;
        CutChanges cChanges(cState, cSync, CutChanges::Origin::Own);
        Run(cChanges, row.colKeys, [&](const std::shared_ptr<Cut>& cCut) {
            cChanges.PlaceLast(cCut, cState.MainCat(L"Rock"));
            for (int lOther = 0; lOther < row.lOthers; ++lOther)
                Place(L"Rock", 1).cSubCat->SchedCuts()->MoveToEnd(0);
            if (!row.bRefused)
                throw RuntimeError(error::DeviceIo);
        });
        EXPECT_TRUE(cChanges.Finish(Quietly()).colOrders.empty());
        EXPECT_EQ(Now(), sBefore);
    }
}

TEST_F(CutChangesTest, ChangeOfTheDatabasesIsFollowedAsFarAsPossible)
{
    const auto cCut = std::dynamic_pointer_cast<FakeCut>(CutOf(L"a"));
    CutChanges cChanges(cState, cSync, CutChanges::Origin::DataBase);
    cCut->SetCategoryText(L"New/Pop");
    int lPlaced = 0;
    cCut->OnCall = [&](std::string_view sMember) {
        if (sMember == "RunTimemS" && ++lPlaced == 2)
            throw RuntimeError(error::DeviceIo);
    };
    Run(cChanges, {L"a"}, [&](const auto& cEach) { cChanges.ModifyCut(cEach); });
    cCut->OnCall = nullptr;
    const ChangeRecord record = cChanges.Finish(Quietly());
    EXPECT_EQ(cDataBase->lBegun, 0);
    EXPECT_EQ(cCut->CategoryText(), L"New/Pop") << "as the database set them";
    EXPECT_EQ(TreeText(*cState.colMainCats), L"Rock 1: b c d e | Rock 2: x | Pop 1: p | New 1: a");
    EXPECT_TRUE(record.colCuts.empty());
}

} // namespace
} // namespace ravlo::test
