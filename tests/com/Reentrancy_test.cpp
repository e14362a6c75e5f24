// SPDX-License-Identifier: MIT
// A host that calls back into the scheduler from inside each of its events, through COM: every call gets its
// correct answer or a clear refusal, and the categories are whole afterwards.
#include "com/BoxAnswerer.h"
#include "com/Station.h"

#include <algorithm>
#include <set>

namespace ravlo
{
namespace
{

class HostCallbackTest : public ComStationTest
{
protected:
    HostCallbackTest()
    {
        AddSongs(L"Song", 120, L"Rock/Pop");
        m_lCookie = Advise(m_cPoint, m_cSink);
    }
    ~HostCallbackTest() override
    {
        m_cSink->m_onEvent = nullptr;
        EXPECT_EQ(m_cPoint->Unadvise(m_lCookie), S_OK);
    }
    // Every other one is in the categories given, the rest in Rock.
    void AddSongs(const std::wstring& sPrefix, int lCount, const wchar_t* sCategories)
    {
        std::vector<Variant> colNew;
        for (int i = 1; i <= lCount; ++i)
            colNew.push_back(Object(NewCut(sPrefix + std::to_wstring(i), i % 2 ? L"Rock" : sCategories)));
        EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::AddCuts, CollectionOf(colNew)), lCount);
    }
    void PopulateAndAllowRotation()
    {
        Populate();
        AllowRotation();
    }
    // Calls fCall in every event except those that it causes itself.
    void InEachEvent(std::function<void()> fCall)
    {
        m_cSink->m_onEvent = [this, fCall = std::move(fCall)](DISPID, DISPPARAMS&) {
            if (m_bInside)
                return;
            m_bInside = true;
            ++m_lEvents;
            fCall();
            m_bInside = false;
        };
    }
    void InTheFirstEvent(std::function<void()> fCall)
    {
        InEachEvent([this, fCall = std::move(fCall)] {
            if (m_lEvents == 1)
                fCall();
        });
    }
    bool Delete(const wchar_t* sName)
    {
        return Get(m_cMan, &_clsSchedMan::DeleteCats, CollectionOf(MainCat(sName)));
    }
    void MoveRockToPop(::eCatDragOptions eOption)
    {
        const auto cRock = Level(L"Rock", L"1");
        MassChange(eOption, cRock, Level(L"Pop", L"1"), CutsOf(cRock));
    }
    LONG CutsInLevel(const std::wstring& sName, const wchar_t* sLevel = L"1")
    {
        return CutsIn(Level(sName, sLevel));
    }

    ComPtr<Sink> m_cSink = NewObject<Sink>(DIID___clsSchedMan);
    ComPtr<IConnectionPoint> m_cPoint = PointOf(m_cMan, DIID___clsSchedMan);
    DWORD m_lCookie = 0;
    bool m_bInside = false;
    int m_lEvents = 0;
};

TEST_F(HostCallbackTest, DuringAPopulationThereAreNoCutsAndEditsAreRefused)
{
    std::set<long> colKinds;
    InEachEvent([&] {
        colKinds.insert(Kind(L"Rock\t1"));
        BSTR sName = NewBstr(L"Jazz");
        EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::CreateMainCat, &sName));
        SysFreeString(sName);
        Populate();
        EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_UIShowing));
    });
    AllowRotation();
    const Texts colSaid = BoxesOf([&] { Populate(); });
    EXPECT_GE(m_lEvents, 3);
    EXPECT_EQ(colSaid, Texts(static_cast<std::size_t>(m_lEvents),
                             L"Error in CreateMainCat [cSchedMan]: 70 The categories are being read from "
                             L"the database just now"))
        << "one refusal for each edit";
    EXPECT_EQ(colKinds, std::set<long>{9}) << "there is no such category yet";
    EXPECT_EQ(CutsInLevel(L"Rock"), 120);
    EXPECT_EQ(CutsInLevel(L"Pop"), 60);
}

TEST_F(HostCallbackTest, DuringAMoveCutsArePickedCategoriesListedAndSaved)
{
    PopulateAndAllowRotation();
    InEachEvent([&] {
        EXPECT_EQ(Kind(L"Pop\t1"), 0);
        EXPECT_EQ(Get(m_cMan, &_clsSchedMan::ListCats, CollectionOf(MainCat(L"Rock"))), L"Rock");
        EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::SaveHistoryAndOrdering, MainCat(L"Pop")));
    });
    MoveRockToPop(::eMoveHere);
    EXPECT_GT(m_lEvents, 3);
    EXPECT_EQ(CutsInLevel(L"Rock"), 0);
    EXPECT_EQ(CutsInLevel(L"Pop"), 120);
}

TEST_F(HostCallbackTest, DuringAMoveTheDatabaseMayChange)
{
    Populate();
    int lAdded = 0;
    InEachEvent([&] {
        if (lAdded < 5) // each raises events of its own later
            AddCut(L"Late" + std::to_wstring(++lAdded), L"Rock", 3);
    });
    MoveRockToPop(::eMoveExclusiveHere);
    ASSERT_EQ(lAdded, 5);
    EXPECT_EQ(CutsInLevel(L"Rock", L"3"), lAdded);
    EXPECT_EQ(CutsInLevel(L"Pop"), 120);
}

TEST_F(HostCallbackTest, DuringADeletionAnotherCategoryMayBeDeleted)
{
    Populate();
    InTheFirstEvent([&] { EXPECT_TRUE(Delete(L"Pop")); });
    EXPECT_TRUE(Delete(L"Rock"));
    EXPECT_GT(m_lEvents, 0);
    EXPECT_EQ(Get(Get(m_cMan, &_clsSchedMan::get_colMainCats), &_clsCollection::get_Count), 0);
}

TEST_F(HostCallbackTest, DuringAMoveItsTargetMayBeDeleted)
{
    Populate();
    InTheFirstEvent([&] { EXPECT_TRUE(Delete(L"Pop")); });
    BoxesOf([&] { MoveRockToPop(::eMoveHere); });
    EXPECT_EQ(CutsInLevel(L"Rock"), 120);
    ForEachItem(AllCuts().Get(), [](const Variant& cItem) {
        EXPECT_EQ(Get(ObjectIn<_clsCut>(cItem), &_clsCut::get_CategoryText), L"Rock");
    });
}

TEST_F(HostCallbackTest, DuringAnImportTheHostMayShuffleAndPick)
{
    PopulateAndAllowRotation();
    InEachEvent([&] {
        EXPECT_EQ(Kind(L"Rock\t1"), 0);
        Do(m_cMan, &_clsSchedMan::ShuffleCategories, CollectionOf(MainCat(L"Rock")), false);
    });
    AddSongs(L"More", 70, L"Rock");
    EXPECT_GT(m_lEvents, 3);
    EXPECT_EQ(Sorted(TitlesIn(Level(L"Rock", L"1"))), Sorted(Titles(AllCuts())));
    EXPECT_EQ(CutsInLevel(L"Rock"), 190);
}

TEST_F(HostCallbackTest, DuringAnEditRequestTheHostMayEditAndAnnounceTheCut)
{
    PopulateAndAllowRotation();
    const auto cCut = Cut(L"Song1");
    m_cSink->m_onEvent = [&](DISPID lEvent, DISPPARAMS& arguments) {
        if (lEvent != 5)
            return;
        Do(cCut, &_clsCut::put_CatLevel, 4);
        Get(m_cDataBase, &_clsDataBase::ModifyCuts, CollectionOf(cCut));
        EXPECT_EQ(Kind(L"Rock\t4"), 0) << "it is there already";
        *arguments.rgvarg[0].pvarVal = Long(1).Detach();
    };
    Variant cResult;
    Do(m_cMan, &_clsSchedMan::RaiseEditRequestCutEvent, cCut, &cResult);
    EXPECT_EQ(cResult.vt, VT_I4);
    EXPECT_EQ(cResult.lVal, 1);
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"4")), Texts{L"Song1"});
}

} // namespace
} // namespace ravlo
