// SPDX-License-Identifier: MIT
// A host's assignments of the form name TAB level, hosts that refuse to be followed, and hosts that count
// their changes.
#include "com/Station.h"
#include "comkit/HostCut.h"

namespace ravlo
{
namespace
{

class HostCutTest : public HostStationTest
{
protected:
    static Texts Assignments(const ComPtr<HostCutObject>& cCut) { return ItemsOf(cCut->m_colNames); }
    LONG CutsInCategory(const std::wstring& sName) { return CutsIn(MainCat(sName)); }
};

TEST_F(HostCutTest, AnAssignmentsLevelIsIgnoredAndItsNameCountsOnce)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Rock\t7", 2);
    for (const wchar_t* sName : {L"Pop\t1", L"ROCK", L"rock\t2"})
        cCut->FileIn(sName);
    Populate();
    EXPECT_EQ(CutsInCategory(L"Rock"), 1);
    EXPECT_EQ(CutsInCategory(L"Pop"), 1);
    EXPECT_EQ(CountOf(L"Rock", 2), 1) << "the cut's own level";
    EXPECT_EQ(Assignments(cCut), (Texts{L"Rock\t7", L"Pop\t1", L"ROCK", L"rock\t2"})) << "no name is added";
}

TEST_F(HostCutTest, RemovingTakesEveryFormOfTheName)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Rock\t1", 1);
    for (const wchar_t* sName : {L"Pop", L"rock\t2", L"Rock", L"Rocker\t1"})
        cCut->FileIn(sName);
    Populate();
    RemoveFromCategory(MainCat(L"Rock"), cCut);
    EXPECT_EQ(Assignments(cCut), (Texts{L"Pop", L"Rocker\t1"}));
    EXPECT_EQ(CutsInCategory(L"Rock"), 0);
    EXPECT_EQ(CutsInCategory(L"Rocker"), 1);
}

TEST_F(HostCutTest, RemovingGoesByPositionWhereTheHostKeysItsListInItsOwnWay)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Pop", 1);
    cCut->m_colNames->m_colItems.emplace_back(L"#1", Text(L"Rock\t1"));
    cCut->m_colNames->m_colItems.emplace_back(L"#2", Text(L"Rock"));
    Populate();
    RemoveFromCategory(MainCat(L"Rock"), cCut);
    EXPECT_EQ(Assignments(cCut), Texts{L"Pop"});
}

TEST_F(HostCutTest, ACutMayShortenTheListThatItIsBeingAddedTo)
{
    m_cDataBase->AddCut(L"One", L"Rock", 1);
    m_cDataBase->AddCut(L"Two", L"Rock", 1);
    Populate();
    const auto colCuts = CutsOf(L"Rock", 1);
    const auto cCut = NewObject<HostCutObject>(L"C:\\Three.mp3");
    int lLeft = 2;
    cCut->m_onAsked = [&] {
        while (lLeft-- > 0)
            EXPECT_EQ(colCuts->Remove(Long(1)), S_OK);
    };
    Do(colCuts, &_clsCollection::Add, Object(cCut), Text(cCut->m_sKey), Variant::Omitted(), Long(2));
    ASSERT_EQ(Get(colCuts, &_clsCollection::get_Count), 1);
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(colCuts, Long(1)), cCut));
    cCut->m_onAsked = nullptr;
}

// A host's own connection points: a sink may join if bAccepts; m_onUnadvise runs when the scheduler leaves.
class HostPoints final : public Unknown<IConnectionPointContainer>
{
public:
    class Point final : public Unknown<IConnectionPoint>
    {
    public:
        explicit Point(HostPoints& cOwner) : m_cOwner(cOwner) {}
        STDMETHODIMP GetConnectionInterface(IID*) override { return E_NOTIMPL; }
        STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) override { return E_NOTIMPL; }
        STDMETHODIMP Advise(IUnknown*, DWORD* plCookie) override
        {
            *plCookie = 7;
            return m_cOwner.m_bAccepts ? S_OK : CONNECT_E_ADVISELIMIT;
        }
        STDMETHODIMP Unadvise(DWORD) override
        {
            if (const auto onUnadvise = std::exchange(m_cOwner.m_onUnadvise, nullptr))
                onUnadvise();
            return S_OK;
        }
        STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

    private:
        HostPoints& m_cOwner;
    };
    explicit HostPoints(bool bAccepts) : m_bAccepts(bAccepts) {}

    bool m_bAccepts;
    std::function<void()> m_onUnadvise;

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID, IConnectionPoint** ppPoint) override
    {
        *ppPoint = NewObject<Point>(*this).Detach();
        return S_OK;
    }
};

TEST_F(HostCutTest, ADatabaseThatRefusesToBeFollowedPopulatesAndIsLogged)
{
    m_cDataBase->m_cOwnPoints = NewObject<HostPoints>(false);
    m_cDataBase->AddCut(L"One", L"Rock", 1);
    StartLog();
    Populate();
    EXPECT_EQ(CutsInCategory(L"Rock"), 1);
    EXPECT_EQ(LogLinesWith("Advise [HostDatabase] -2147220991 The database's changes will not be followed."),
              1)
        << Log();
}

TEST_F(HostCutTest, AnotherManagerMayTakeTheDatabaseWhileTheLastOneLeavesIt)
{
    const auto cPoints = NewObject<HostPoints>(true);
    m_cDataBase->m_cOwnPoints = cPoints;
    m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate();
    const auto cOther = Create<_clsSchedMan>(CLSID_clsSchedMan);
    cPoints->m_onUnadvise = [&] {
        Do(cOther, &_clsSchedMan::PopulateFromDataBase, m_cDataBase, Folder().wstring());
    };
    m_cMan = nullptr;
    EXPECT_FALSE(cPoints->m_onUnadvise);
    m_cMan = cOther;
    EXPECT_EQ(CutsInCategory(L"Rock"), 1);
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_DataBase), m_cDataBase));
    Populate(); // from the same database: nothing is connected twice or left behind
    EXPECT_EQ(CutsInCategory(L"Rock"), 1);
    cPoints->m_onUnadvise = nullptr;
}

// ---- hosts that count their changes

class CountingCut final : public Part<IRevision>
{
public:
    explicit CountingCut(HostCutObject& cCut) : Part(cCut) {}

    hyper m_lRevision = 1;

    STDMETHODIMP Revision(hyper* pVal) override
    {
        *pVal = m_lRevision;
        return S_OK;
    }
};

TEST_F(HostCutTest, KeysAreKeptUntilTheRevisionChanges)
{
    const auto cHost = NewObject<HostCutObject>(L"a.mp3");
    CountingCut cRevisions(*cHost);
    for (const bool bCounts : {false, true})
    {
        cHost->m_pRevision = bCounts ? &cRevisions : nullptr;
        cHost->m_sArtist = L"Ash";
        cHost->m_sKey = L"a.mp3";
        const auto cCut = HostCut::Of(cHost.Get());
        EXPECT_EQ(cCut->ArtistKey().Text(), L"Ash");
        EXPECT_EQ(cCut->Key().Text(), L"a.mp3");
        cHost->m_sArtist = L"Elm";
        cHost->m_sKey = L"b.mp3";
        EXPECT_EQ(cCut->ArtistKey().Text(), bCounts ? L"Ash" : L"Elm");
        EXPECT_EQ(cCut->Key().Text(), bCounts ? L"a.mp3" : L"b.mp3");
        ++cRevisions.m_lRevision;
        EXPECT_EQ(cCut->ArtistKey().Text(), L"Elm");
        EXPECT_EQ(cCut->Key().Text(), L"b.mp3");
    }
}

template <class I> hyper RevisionOf(const ComPtr<I>& cObject)
{
    hyper lRevision = 0;
    const auto cRevision = cObject.template As<IRevision>(IID_IRevision);
    return cRevision && SUCCEEDED(cRevision->Revision(&lRevision)) ? lRevision : 0;
}

using EmbeddedRevisionTest = ComStationTest;

TEST_F(EmbeddedRevisionTest, EveryChangeOfACutHasARevision)
{
    const auto cCut = AddCut(L"One");
    const std::function<void()> colChanges[] = {
        [&] { Do(cCut, &_clsCut::put_Artist, L"Ash"); }, [&] { Do(cCut, &_clsCut::put_Title, L"Sun"); },
        [&] { Do(cCut, &_clsCut::put_Album, L"Sky"); }, [&] { Do(cCut, &_clsCut::put_CatLevel, 3); },
        [&] { Do(cCut, &_clsCut::put_KindCode, 14); }};
    const hyper lOfDataBase = RevisionOf(m_cDataBase);
    hyper lBefore = RevisionOf(cCut);
    EXPECT_GT(lBefore, 0);
    for (const auto& change : colChanges)
    {
        change();
        EXPECT_NE(RevisionOf(cCut), lBefore);
        lBefore = RevisionOf(cCut);
    }
    EXPECT_EQ(RevisionOf(m_cDataBase), lOfDataBase) << "it still contains the same cuts";
}

TEST_F(EmbeddedRevisionTest, ARevisionOfTheDatabaseNeverReturns)
{
    const hyper lEmpty = RevisionOf(m_cDataBase);
    EXPECT_GT(lEmpty, 0);
    const auto cCut = AddCut(L"One");
    const hyper lWithOne = RevisionOf(m_cDataBase);
    EXPECT_NE(lWithOne, lEmpty);
    RemoveCut(cCut);
    const hyper lWithNone = RevisionOf(m_cDataBase);
    EXPECT_NE(lWithNone, lWithOne);
    EXPECT_NE(lWithNone, lEmpty);
    Do(m_cDataBase, &_clsDataBase::Close);
    EXPECT_EQ(RevisionOf(m_cDataBase), 0);
    Do(m_cDataBase, &_clsDataBase::Open, (Folder() / "others.db").wstring());
    EXPECT_GT(RevisionOf(m_cDataBase), lWithNone) << "another file";
}

TEST_F(EmbeddedRevisionTest, PicksAndPlaysSeeChangesAndRemovals)
{
    const auto cFirst = AddCut(L"a");
    AddCut(L"b");
    Populate();
    AllowRotation();
    const auto next = [&] { return Get(Next(L"Rock\t1", false), &_clsCut::get_Title); };
    const auto play = [&](DATE dtWhen) {
        Do(cFirst, &_clsCut::put_LastPlayed, dtWhen);
        Do(m_cMan, &_clsSchedMan::UpdateArtistTitleHistory, cFirst);
    };
    EXPECT_EQ(next(), L"a");
    EXPECT_EQ(next(), L"b");
    Do(cFirst, &_clsCut::put_Title, L"changed");
    EXPECT_EQ(next(), L"changed");
    play(45000.5);
    RemoveCut(cFirst);
    EXPECT_EQ(next(), L"b");
    EXPECT_EQ(next(), L"b");
    const auto cNew = AddCut(L"a", L"");
    play(45001.5);
    EXPECT_EQ(Get(cNew, &_clsCut::get_LastPlayed), 45001.5) << "the cut that replaced the removed one";
}

} // namespace
} // namespace ravlo
