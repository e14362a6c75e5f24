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

using Texts = std::vector<std::wstring>;

class ReentrancyTest : public ComStationTest
{
protected:
    ReentrancyTest()
    {
        for (int i = 1; i <= 120; ++i)
            m_colNew.push_back(
                Object(NewCut(L"Song" + std::to_wstring(i), i % 2 ? L"Rock" : L"Rock/Pop", 1)));
        EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::AddCuts, CollectionOf(m_colNew)), 120);
        m_cSink = NewObject<Sink>(DIID___clsSchedMan);
        m_lCookie = Advise(PointOf(m_cMan, DIID___clsSchedMan), m_cSink);
    }
    ~ReentrancyTest() override
    {
        m_cSink->m_onEvent = nullptr;
        EXPECT_EQ(PointOf(m_cMan, DIID___clsSchedMan)->Unadvise(m_lCookie), S_OK);
    }
    // Calls fCall in every event, but not in those that it causes itself.
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
    long Kind(const wchar_t* sKey)
    {
        const auto cCut = Next(sKey, false);
        EXPECT_TRUE(cCut);
        return cCut ? Get(cCut, &_clsCut::get_KindCode) : -1;
    }
    Texts Sorted(const ComPtr<_clsCat>& cCat)
    {
        Texts colTitles = TitlesIn(cCat);
        std::sort(colTitles.begin(), colTitles.end());
        return colTitles;
    }
    ComPtr<_clsCollection> CutsOf(const std::wstring& sName, const wchar_t* sLevel)
    {
        ComPtr<_clsCollection> colCuts;
        EXPECT_EQ(Level(sName, sLevel)->get_SchedCuts(colCuts.Receive()), S_OK);
        return colCuts;
    }
    void Move(const std::wstring& sFrom, const std::wstring& sTo, ::eCatDragOptions eOption)
    {
        EXPECT_EQ(m_cMan->DoMassCatChange(eOption, CollectionOf({Object(Level(sFrom, L"1"))}).Get(),
                                          Level(sTo, L"1").Get(), CutsOf(sFrom, L"1").Get(), nullptr),
                  S_OK);
    }

    std::vector<Variant> m_colNew;
    ComPtr<Sink> m_cSink;
    DWORD m_lCookie = 0;
    bool m_bInside = false;
    int m_lEvents = 0;
};

TEST_F(ReentrancyTest, DuringAPopulationCutsAreAskedForInVainAndEditsAreRefused)
{
    std::set<long> colKinds;
    InEachEvent([&] {
        colKinds.insert(Kind(L"Rock\t1"));
        VARIANT_BOOL bDone = VARIANT_TRUE;
        BSTR sName = NewBstr(L"Jazz");
        EXPECT_EQ(m_cMan->CreateMainCat(&sName, &bDone), S_OK);
        SysFreeString(sName);
        EXPECT_EQ(bDone, VARIANT_FALSE);
        EXPECT_EQ(m_cMan->PopulateFromDataBase(m_cDataBase.Get(), Bstr(Folder().wstring()).Get()), S_OK);
        EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_UIShowing));
    });
    ASSERT_EQ(m_cMan->put_RotatesAllowed(VARIANT_TRUE), S_OK);
    BoxAnswerer cAnswerer;
    Populate();
    const Texts colSaid = cAnswerer.Stop();
    EXPECT_GE(m_lEvents, 3);
    EXPECT_EQ(static_cast<int>(colSaid.size()), m_lEvents) << "one refusal for each edit";
    EXPECT_EQ(
        std::set<std::wstring>(colSaid.begin(), colSaid.end()),
        std::set<std::wstring>{L"Error in CreateMainCat [cSchedMan]: 70 The categories are being read from "
                               L"the database just now"});
    EXPECT_EQ(colKinds, std::set<long>{9}) << "there is no such category yet";
    EXPECT_EQ(Get(Level(L"Rock", L"1"), &_clsCat::get_TotalCuts), 120);
    EXPECT_EQ(Get(Level(L"Pop", L"1"), &_clsCat::get_TotalCuts), 60);
}

TEST_F(ReentrancyTest, DuringAMoveCutsArePickedCategoriesListedAndSaved)
{
    Populate();
    ASSERT_EQ(m_cMan->put_RotatesAllowed(VARIANT_TRUE), S_OK);
    InEachEvent([&] {
        EXPECT_EQ(Kind(L"Pop\t1"), 0);
        EXPECT_EQ(Get(m_cMan, &_clsSchedMan::ListCats, CollectionOf({Object(MainCat(L"Rock"))})), L"Rock");
        EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::SaveHistoryAndOrdering, MainCat(L"Pop")));
    });
    Move(L"Rock", L"Pop", ::eMoveHere);
    EXPECT_GT(m_lEvents, 3);
    EXPECT_EQ(Get(Level(L"Rock", L"1"), &_clsCat::get_TotalCuts), 0);
    EXPECT_EQ(Get(Level(L"Pop", L"1"), &_clsCat::get_TotalCuts), 120);
}

TEST_F(ReentrancyTest, DuringAMoveTheDatabaseMayChange)
{
    Populate();
    int lAdded = 0;
    InEachEvent([&] {
        if (lAdded < 5) // each raises events of its own when its turn comes
            AddCut(L"Late" + std::to_wstring(++lAdded), L"Rock", 3);
    });
    Move(L"Rock", L"Pop", ::eMoveExclusiveHere);
    ASSERT_EQ(lAdded, 5);
    EXPECT_EQ(Get(Level(L"Rock", L"3"), &_clsCat::get_TotalCuts), lAdded);
    EXPECT_EQ(Get(Level(L"Pop", L"1"), &_clsCat::get_TotalCuts), 120);
}

TEST_F(ReentrancyTest, DuringADeletionAnotherCategoryMayBeDeleted)
{
    Populate();
    bool bFirst = true;
    VARIANT_BOOL bInner = VARIANT_FALSE;
    InEachEvent([&] {
        if (std::exchange(bFirst, false))
        {
            EXPECT_EQ(m_cMan->DeleteCats(CollectionOf({Object(MainCat(L"Pop"))}).Get(), &bInner), S_OK);
        }
    });
    const auto bOuter = Get(m_cMan, &_clsSchedMan::DeleteCats, CollectionOf({Object(MainCat(L"Rock"))}));
    EXPECT_EQ(bInner, VARIANT_TRUE);
    EXPECT_TRUE(bOuter);
    const auto colMainCats = Get(m_cMan, &_clsSchedMan::get_colMainCats);
    EXPECT_EQ(Get(colMainCats, &_clsCollection::get_Count), 0);
}

TEST_F(ReentrancyTest, DuringAMoveItsTargetMayBeDeleted)
{
    Populate();
    bool bFirst = true;
    InEachEvent([&] {
        if (std::exchange(bFirst, false))
        {
            EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::DeleteCats, CollectionOf({Object(MainCat(L"Pop"))})));
        }
    });
    BoxAnswerer cAnswerer;
    Move(L"Rock", L"Pop", ::eMoveHere);
    cAnswerer.Stop();
    // Every cut stands where it says, and none is lost.
    EXPECT_EQ(Get(Level(L"Rock", L"1"), &_clsCat::get_TotalCuts), 120);
    for (const Variant& cItem : m_colNew)
        EXPECT_EQ(Get(ObjectIn<_clsCut>(cItem), &_clsCut::get_CategoryText), L"Rock");
}

TEST_F(ReentrancyTest, DuringAnImportTheHostMayShuffleAndPick)
{
    Populate();
    ASSERT_EQ(m_cMan->put_RotatesAllowed(VARIANT_TRUE), S_OK);
    InEachEvent([&] {
        EXPECT_EQ(Kind(L"Rock\t1"), 0);
        EXPECT_EQ(m_cMan->ShuffleCategories(CollectionOf({Object(MainCat(L"Rock"))}).Get(), VARIANT_FALSE),
                  S_OK);
    });
    const Texts colBefore = Sorted(Level(L"Rock", L"1"));
    std::vector<Variant> colMore;
    for (int i = 1; i <= 70; ++i)
        colMore.push_back(Object(NewCut(L"More" + std::to_wstring(i), L"Rock", 1)));
    Get(m_cDataBase, &_clsDataBase::AddCuts, CollectionOf(colMore));
    EXPECT_GT(m_lEvents, 3);
    const Texts colAfter = Sorted(Level(L"Rock", L"1"));
    EXPECT_EQ(colAfter.size(), 190u);
    EXPECT_EQ(std::adjacent_find(colAfter.begin(), colAfter.end()), colAfter.end())
        << "none stands there twice";
    EXPECT_TRUE(std::includes(colAfter.begin(), colAfter.end(), colBefore.begin(), colBefore.end()));
}

TEST_F(ReentrancyTest, DuringAnEditRequestTheHostMayEditAndAnnounceTheCut)
{
    Populate();
    ASSERT_EQ(m_cMan->put_RotatesAllowed(VARIANT_TRUE), S_OK);
    const auto cCut = ObjectIn<_clsCut>(m_colNew[0]);
    m_cSink->m_onEvent = [&](DISPID lEvent, DISPPARAMS& arguments) {
        if (lEvent != 5)
            return;
        EXPECT_EQ(cCut->put_CatLevel(4), S_OK);
        Get(m_cDataBase, &_clsDataBase::ModifyCuts, CollectionOf({m_colNew[0]}));
        EXPECT_EQ(Kind(L"Rock\t4"), 0) << "it stands there already";
        *arguments.rgvarg[0].pvarVal = Long(1).Detach();
    };
    Variant cResult;
    ASSERT_EQ(m_cMan->RaiseEditRequestCutEvent(cCut.Get(), &cResult), S_OK);
    EXPECT_EQ(cResult.vt, VT_I4);
    EXPECT_EQ(cResult.lVal, 1);
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"4")), Texts{L"Song1"});
}

} // namespace

} // namespace ravlo
