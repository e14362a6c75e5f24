// SPDX-License-Identifier: MIT
// A host's assignments of the form name TAB level, and a host that refuses to be followed.
#include "com/Station.h"
#include "comkit/HostCut.h"

namespace ravlo
{

namespace
{

using Texts = std::vector<std::wstring>;

class HostCutTest : public HostStationTest
{
protected:
    void RemoveFrom(const std::wstring& sName, const ComPtr<HostCutObject>& cCut, LONG lLevel = 0)
    {
        _clsCollection* pAffected = nullptr;
        EXPECT_EQ(m_cMan->RemoveCutFromCategory(MainCat(sName).Get(), cCut.Get(), &pAffected, lLevel), S_OK);
        const auto colAffected = ComPtr<_clsCollection>::Adopt(pAffected);
    }
    static Texts Assignments(const ComPtr<HostCutObject>& cCut) { return ItemsOf(cCut->m_colNames.Get()); }
    long CutsIn(const std::wstring& sName) { return Get(MainCat(sName), &_clsCat::get_TotalCuts); }
};

TEST_F(HostCutTest, AnAssignmentWithALevelFilesUnderTheCutsOwnLevel)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Rock\t7", 2);
    cCut->FileIn(L"Pop\t1");
    Populate();
    EXPECT_EQ(CutsIn(L"Rock"), 1);
    EXPECT_EQ(CutsIn(L"Pop"), 1);
    EXPECT_EQ(CountOf(L"Rock", 2), 1);
    EXPECT_EQ(Assignments(cCut), (Texts{L"Rock\t7", L"Pop\t1"}))
        << "filing adds no second name for the same category";
}

TEST_F(HostCutTest, TheSameCategoryInBothFormsCountsOnce)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Rock", 1);
    cCut->FileIn(L"ROCK\t1");
    cCut->FileIn(L"rock\t2");
    Populate();
    EXPECT_EQ(CutsIn(L"Rock"), 1);
    EXPECT_EQ(Assignments(cCut), (Texts{L"Rock", L"ROCK\t1", L"rock\t2"}));
}

TEST_F(HostCutTest, RemovingTakesEveryFormOfTheName)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Rock\t1", 1);
    for (const wchar_t* sName : {L"Pop", L"rock\t2", L"Rock", L"Rocker\t1"})
        cCut->FileIn(sName);
    Populate();
    RemoveFrom(L"Rock", cCut);
    EXPECT_EQ(Assignments(cCut), (Texts{L"Pop", L"Rocker\t1"}));
    EXPECT_EQ(CutsIn(L"Rock"), 0);
    EXPECT_EQ(CutsIn(L"Rocker"), 1);
}

TEST_F(HostCutTest, RemovingGoesByPositionWhereTheHostKeysItsListInItsOwnWay)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Pop", 1);
    cCut->m_colNames->m_colItems.emplace_back(L"#1", Text(L"Rock\t1"));
    cCut->m_colNames->m_colItems.emplace_back(L"#2", Text(L"Rock"));
    Populate();
    RemoveFrom(L"Rock", cCut);
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
    EXPECT_EQ(colCuts->Add(Object(cCut), Text(cCut->m_sKey), Variant::Omitted(), Long(2)), S_OK);
    ASSERT_EQ(Get(colCuts, &_clsCollection::get_Count), 1);
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(colCuts, Long(1)), cCut));
    cCut->m_onAsked = nullptr;
}

// A connection point that takes no sinks.
class RefusingPoints final : public Unknown<IConnectionPointContainer>
{
public:
    class Point final : public Unknown<IConnectionPoint>
    {
    public:
        STDMETHODIMP GetConnectionInterface(IID*) override { return E_NOTIMPL; }
        STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) override { return E_NOTIMPL; }
        STDMETHODIMP Advise(IUnknown*, DWORD*) override { return CONNECT_E_ADVISELIMIT; }
        STDMETHODIMP Unadvise(DWORD) override { return CONNECT_E_NOCONNECTION; }
        STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }
    };
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID, IConnectionPoint** ppPoint) override
    {
        *ppPoint = NewObject<Point>().Detach();
        return S_OK;
    }
};

TEST_F(HostCutTest, ADatabaseThatRefusesToBeFollowedPopulatesAndIsLogged)
{
    m_cDataBase->m_cOwnPoints = NewObject<RefusingPoints>();
    m_cDataBase->AddCut(L"One", L"Rock", 1);
    StartLog();
    Populate();
    EXPECT_EQ(CutsIn(L"Rock"), 1);
    EXPECT_EQ(LogLinesWith("Advise [HostDatabase] -2147220991 The database's changes will not be followed."),
              1)
        << Log();
}

// What a host's connection point does when the scheduler leaves it.
class LeavingPoints final : public Unknown<IConnectionPointContainer>
{
public:
    class Point final : public Unknown<IConnectionPoint>
    {
    public:
        explicit Point(std::function<void()>& onUnadvise) : m_onUnadvise(onUnadvise) {}
        STDMETHODIMP GetConnectionInterface(IID*) override { return E_NOTIMPL; }
        STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) override { return E_NOTIMPL; }
        STDMETHODIMP Advise(IUnknown*, DWORD* plCookie) override
        {
            *plCookie = 7;
            return S_OK;
        }
        STDMETHODIMP Unadvise(DWORD) override
        {
            if (const auto onUnadvise = std::exchange(m_onUnadvise, nullptr))
                onUnadvise();
            return S_OK;
        }
        STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

    private:
        std::function<void()>& m_onUnadvise;
    };
    std::function<void()> m_onUnadvise;

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID, IConnectionPoint** ppPoint) override
    {
        *ppPoint = NewObject<Point>(m_onUnadvise).Detach();
        return S_OK;
    }
};

TEST_F(HostCutTest, ADatabaseMayBeHandedToAnotherManagerWhileTheLastOneLeavesIt)
{
    const auto cPoints = NewObject<LeavingPoints>();
    m_cDataBase->m_cOwnPoints = cPoints;
    m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate();
    const auto cOther = Create<_clsSchedMan>(CLSID_clsSchedMan);
    cPoints->m_onUnadvise = [&] {
        EXPECT_EQ(cOther->PopulateFromDataBase(m_cDataBase.Get(), Bstr(Folder().wstring()).Get()), S_OK);
    };
    m_cMan = nullptr; // its database is let go, and is asked for again from inside
    EXPECT_FALSE(cPoints->m_onUnadvise);
    m_cMan = cOther;
    EXPECT_EQ(CutsIn(L"Rock"), 1);
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_DataBase), m_cDataBase));
    // Handed in once more it is the same database still: nothing is connected twice or left behind.
    Populate();
    EXPECT_EQ(CutsIn(L"Rock"), 1);
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
    cHost->m_pRevision = &cRevisions;
    cHost->m_sArtist = L"Ash";
    const auto cCut = HostCut::Of(cHost.Get());
    EXPECT_EQ(cCut->ArtistKey().Text(), L"Ash");
    EXPECT_EQ(cCut->Key().Text(), L"a.mp3");
    cHost->m_sArtist = L"Elm";
    cHost->m_sKey = L"b.mp3";
    EXPECT_EQ(cCut->ArtistKey().Text(), L"Ash") << "not asked again";
    EXPECT_EQ(cCut->Key().Text(), L"a.mp3");
    ++cRevisions.m_lRevision;
    EXPECT_EQ(cCut->ArtistKey().Text(), L"Elm");
    EXPECT_EQ(cCut->Key().Text(), L"b.mp3");
}

TEST_F(HostCutTest, WithoutRevisionsEveryLookAsksTheHost)
{
    const auto cHost = NewObject<HostCutObject>(L"a.mp3");
    cHost->m_sTitle = L"Sun";
    const auto cCut = HostCut::Of(cHost.Get());
    EXPECT_EQ(cCut->TitleKey().Text(), L"Sun");
    cHost->m_sTitle = L"Rain";
    EXPECT_EQ(cCut->TitleKey().Text(), L"Rain");
}

template <class I> hyper RevisionOf(const ComPtr<I>& cObject)
{
    hyper lRevision = 0;
    const auto cRevision = cObject.template As<IRevision>(IID_IRevision);
    return cRevision && SUCCEEDED(cRevision->Revision(&lRevision)) ? lRevision : 0;
}

class EmbeddedRevisionTest : public ComStationTest
{
};

TEST_F(EmbeddedRevisionTest, EveryChangeOfACutHasARevision)
{
    const auto cCut = AddCut(L"One", L"Rock", 1);
    const std::function<HRESULT()> colChanges[] = {[&] { return cCut->put_Artist(Bstr(L"Ash").Get()); },
                                                   [&] { return cCut->put_Title(Bstr(L"Sun").Get()); },
                                                   [&] { return cCut->put_Album(Bstr(L"Sky").Get()); },
                                                   [&] { return cCut->put_CatLevel(3); },
                                                   [&] { return cCut->put_KindCode(14); }};
    const hyper lOfDataBase = RevisionOf(m_cDataBase);
    hyper lBefore = RevisionOf(cCut);
    EXPECT_GT(lBefore, 0);
    for (const auto& change : colChanges)
    {
        ASSERT_EQ(change(), S_OK);
        EXPECT_NE(RevisionOf(cCut), lBefore);
        lBefore = RevisionOf(cCut);
    }
    EXPECT_EQ(RevisionOf(m_cDataBase), lOfDataBase) << "it still contains the same cuts";
}

TEST_F(EmbeddedRevisionTest, ARevisionOfTheDatabaseNeverReturns)
{
    const hyper lEmpty = RevisionOf(m_cDataBase);
    EXPECT_GT(lEmpty, 0);
    const auto cCut = AddCut(L"One", L"Rock", 1);
    const hyper lWithOne = RevisionOf(m_cDataBase);
    EXPECT_NE(lWithOne, lEmpty);
    RemoveCut(cCut);
    const hyper lWithNone = RevisionOf(m_cDataBase);
    EXPECT_NE(lWithNone, lWithOne);
    EXPECT_NE(lWithNone, lEmpty);
    ASSERT_EQ(m_cDataBase->Close(), S_OK);
    EXPECT_EQ(RevisionOf(m_cDataBase), 0);
    ASSERT_EQ(m_cDataBase->Open(Bstr((Folder() / "others.db").wstring()).Get()), S_OK);
    EXPECT_GT(RevisionOf(m_cDataBase), lWithNone) << "another file";
}

TEST_F(EmbeddedRevisionTest, APickSeesChangesAndRemovalsBetweenTwoPicks)
{
    const auto cFirst = AddCut(L"a", L"Rock", 1);
    AddCut(L"b", L"Rock", 1);
    Populate();
    ASSERT_EQ(m_cMan->put_RotatesAllowed(VARIANT_TRUE), S_OK);
    const auto next = [&] { return Get(Next(L"Rock\t1", false), &_clsCut::get_Title); };
    EXPECT_EQ(next(), L"a");
    EXPECT_EQ(next(), L"b");
    ASSERT_EQ(cFirst->put_Title(Bstr(L"changed").Get()), S_OK);
    EXPECT_EQ(next(), L"changed");
    RemoveCut(cFirst);
    EXPECT_EQ(next(), L"b");
    EXPECT_EQ(next(), L"b");
}

TEST_F(EmbeddedRevisionTest, APlayFindsTheCutThatReplacedARemovedOne)
{
    const auto cOld = AddCut(L"a", L"", 1);
    Populate();
    const auto report = [&](DATE dtWhen) {
        EXPECT_EQ(cOld->put_LastPlayed(dtWhen), S_OK);
        EXPECT_EQ(m_cMan->UpdateArtistTitleHistory(cOld.Get()), S_OK);
    };
    report(45000.5);
    RemoveCut(cOld);
    const auto cNew = AddCut(L"a", L"", 1);
    report(45001.5);
    EXPECT_EQ(Get(cNew, &_clsCut::get_LastPlayed), 45001.5);
}

} // namespace

} // namespace ravlo
