// SPDX-License-Identifier: MIT
// A host's assignments of the form name TAB level, and a host that refuses to be followed.
#include "com/HostObjects.h"
#include "comkit/HostCut.h"

#include <fstream>
#include <sstream>

namespace ravlo
{

namespace
{

using Texts = std::vector<std::wstring>;

class HostCutTest : public ComTest
{
protected:
    void Populate()
    {
        ASSERT_EQ(m_cMan->PopulateFromDataBase(m_cDataBase.Get(), Bstr(Folder().wstring()).Get()), S_OK);
    }
    ComPtr<_clsCat> MainCat(const std::wstring& sName)
    {
        ComPtr<_clsCollection> colMainCats;
        EXPECT_EQ(m_cMan->get_colMainCats(colMainCats.Receive()), S_OK);
        Variant cItem;
        EXPECT_EQ(colMainCats->get_Item(Text(sName + L"\t0"), &cItem), S_OK);
        return ObjectIn<_clsCat>(cItem);
    }
    void RemoveFrom(const std::wstring& sName, const ComPtr<HostCutObject>& cCut, LONG lLevel = 0)
    {
        _clsCollection* pAffected = nullptr;
        EXPECT_EQ(m_cMan->RemoveCutFromCategory(MainCat(sName).Get(), cCut.Get(), &pAffected, lLevel), S_OK);
        const auto colAffected = ComPtr<_clsCollection>::Adopt(pAffected);
    }
    static Texts Assignments(const ComPtr<HostCutObject>& cCut) { return ItemsOf(cCut->m_colNames.Get()); }
    long CutsIn(const std::wstring& sName) { return LongOfProperty(MainCat(sName), &_clsCat::get_TotalCuts); }

    ComPtr<_clsSchedMan> m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    ComPtr<HostDataBaseObject> m_cDataBase = NewObject<HostDataBaseObject>();
};

TEST_F(HostCutTest, AnAssignmentWithALevelFilesUnderTheCutsOwnLevel)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Rock\t7", 2);
    cCut->FileIn(L"Pop\t1");
    Populate();
    EXPECT_EQ(CutsIn(L"Rock"), 1);
    EXPECT_EQ(CutsIn(L"Pop"), 1);
    ComPtr<_clsCollection> colCuts;
    ASSERT_EQ(m_cMan->get_colCuts(Bstr(L"Rock").Get(), 2, colCuts.Receive()), S_OK);
    EXPECT_EQ(LongOfProperty(colCuts, &_clsCollection::get_Count), 1);
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
    ComPtr<_clsCollection> colCuts;
    ASSERT_EQ(m_cMan->get_colCuts(Bstr(L"Rock").Get(), 1, colCuts.Receive()), S_OK);
    const auto cCut = NewObject<HostCutObject>(L"C:\\Three.mp3");
    int lLeft = 2;
    cCut->m_onAsked = [&] {
        while (lLeft-- > 0)
            EXPECT_EQ(colCuts->Remove(Long(1)), S_OK);
    };
    EXPECT_EQ(colCuts->Add(Object(cCut), Text(cCut->m_sKey), Variant::Omitted(), Long(2)), S_OK);
    ASSERT_EQ(LongOfProperty(colCuts, &_clsCollection::get_Count), 1);
    Variant cItem;
    ASSERT_EQ(colCuts->get_Item(Long(1), &cItem), S_OK);
    EXPECT_TRUE(IsSame(ObjectIn<_clsCut>(cItem), cCut));
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
    const auto logs = Folder() / L"Debugging Logs" / L"Scheduler";
    std::filesystem::create_directories(logs);
    Populate();
    EXPECT_EQ(CutsIn(L"Rock"), 1);
    std::ostringstream text;
    for (const auto& entry : std::filesystem::directory_iterator(logs))
        text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
    EXPECT_NE(
        text.str().find("Advise [HostDatabase] -2147220991 The database's changes will not be followed."),
        std::string::npos)
        << text.str();
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
    ComPtr<_clsDataBase> cBack;
    ASSERT_EQ(m_cMan->get_DataBase(cBack.Receive()), S_OK);
    EXPECT_TRUE(IsSame(cBack, m_cDataBase));
    // Handed in once more it is the same database still: nothing is connected twice or left behind.
    Populate();
    EXPECT_EQ(CutsIn(L"Rock"), 1);
    cPoints->m_onUnadvise = nullptr;
}

// ---- hosts that count their changes

// A host's cut with IRevision, which counts what it is asked for.
class CountingCut final : public IRevision
{
public:
    explicit CountingCut(HostCutObject& cCut) : m_cCut(cCut) {}
    virtual ~CountingCut() = default;

    hyper m_lRevision = 1;

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override
    {
        return m_cCut.QueryInterface(iid, ppvObject);
    }
    STDMETHODIMP_(ULONG) AddRef() override { return m_cCut.AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return m_cCut.Release(); }
    STDMETHODIMP Revision(hyper* pVal) override
    {
        *pVal = m_lRevision;
        return S_OK;
    }

private:
    HostCutObject& m_cCut;
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

TEST_F(HostCutTest, TheEmbeddedDatabaseAndItsCutsCountTheirChanges)
{
    const auto cDataBase = Create<_clsDataBase>(CLSID_clsDataBase);
    ASSERT_EQ(cDataBase->Open(Bstr((Folder() / "revisions.db").wstring()).Get()), S_OK);
    Revisions cOfDataBase;
    const std::uint64_t empty = cOfDataBase.Of(cDataBase.Get());
    EXPECT_GT(empty, 0u);
    ComPtr<_clsCut> cNew;
    ASSERT_EQ(cDataBase->NewCut(cNew.Receive()), S_OK);
    ASSERT_EQ(cNew->put_Key(Bstr(L"C:\\a.mp3").Get()), S_OK);
    const auto colCuts = Create<_clsCollection>(CLSID_clsCollection);
    ASSERT_EQ(colCuts->Add(Variant(static_cast<IDispatch*>(cNew.Get())), Variant::Omitted(),
                           Variant::Omitted(), Variant::Omitted()),
              S_OK);
    LONG lAdded = 0;
    ASSERT_EQ(cDataBase->AddCuts(colCuts.Get(), &lAdded), S_OK);
    const std::uint64_t withOne = cOfDataBase.Of(cDataBase.Get());
    EXPECT_NE(withOne, empty);

    ComPtr<_clsCut> cCut;
    ASSERT_EQ(cDataBase->CutByKey(Bstr(L"C:\\a.mp3").Get(), cCut.Receive()), S_OK);
    Revisions cOfCut;
    std::uint64_t before = cOfCut.Of(cCut.Get());
    EXPECT_GT(before, 0u);
    const std::function<HRESULT()> colChanges[] = {[&] { return cCut->put_Artist(Bstr(L"Ash").Get()); },
                                                   [&] { return cCut->put_Title(Bstr(L"Sun").Get()); },
                                                   [&] { return cCut->put_Album(Bstr(L"Sky").Get()); },
                                                   [&] { return cCut->put_CatLevel(3); },
                                                   [&] { return cCut->put_KindCode(14); }};
    for (const auto& change : colChanges)
    {
        ASSERT_EQ(change(), S_OK);
        EXPECT_NE(cOfCut.Of(cCut.Get()), before);
        before = cOfCut.Of(cCut.Get());
    }
    EXPECT_EQ(cOfDataBase.Of(cDataBase.Get()), withOne) << "it still holds the same cuts";
    LONG lRemoved = 0;
    ASSERT_EQ(cDataBase->RemoveCuts(colCuts.Get(), &lRemoved), S_OK);
    const std::uint64_t withNone = cOfDataBase.Of(cDataBase.Get());
    EXPECT_NE(withNone, withOne);
    EXPECT_NE(withNone, empty) << "a number never returns";
    ASSERT_EQ(cDataBase->Close(), S_OK);
    EXPECT_EQ(cOfDataBase.Of(cDataBase.Get()), 0u) << "closed";
    ASSERT_EQ(cDataBase->Open(Bstr((Folder() / "others.db").wstring()).Get()), S_OK);
    const std::uint64_t others = cOfDataBase.Of(cDataBase.Get());
    EXPECT_GT(others, withNone) << "another file counts on";
    ASSERT_EQ(cDataBase->Close(), S_OK);
}

TEST_F(HostCutTest, APickSeesChangesAndRemovalsBetweenTwoPicks)
{
    const auto cDataBase = Create<_clsDataBase>(CLSID_clsDataBase);
    ASSERT_EQ(cDataBase->Open(Bstr((Folder() / "picks.db").wstring()).Get()), S_OK);
    const auto colCuts = Create<_clsCollection>(CLSID_clsCollection);
    for (const wchar_t* sKey : {L"C:\\a.mp3", L"C:\\b.mp3"})
    {
        ComPtr<_clsCut> cNew;
        ASSERT_EQ(cDataBase->NewCut(cNew.Receive()), S_OK);
        ASSERT_EQ(cNew->put_Key(Bstr(sKey).Get()), S_OK);
        ASSERT_EQ(cNew->put_Title(Bstr(sKey).Get()), S_OK);
        ASSERT_EQ(cNew->put_CategoryText(Bstr(L"Rock").Get()), S_OK);
        ASSERT_EQ(colCuts->Add(Variant(static_cast<IDispatch*>(cNew.Get())), Variant::Omitted(),
                               Variant::Omitted(), Variant::Omitted()),
                  S_OK);
    }
    LONG lCount = 0;
    ASSERT_EQ(cDataBase->AddCuts(colCuts.Get(), &lCount), S_OK);
    ASSERT_EQ(m_cMan->PopulateFromDataBase(cDataBase.Get(), Bstr(Folder().wstring()).Get()), S_OK);
    ASSERT_EQ(m_cMan->put_RotatesAllowed(VARIANT_TRUE), S_OK);
    const auto Next = [&] {
        ComPtr<_clsCat> cMainCat, cSubCat;
        Bstr sMainCatKey;
        ComPtr<_clsCut> cCut;
        EXPECT_EQ(m_cMan->get_NextCutFromRotation(
                      Bstr(L"Rock\t1").Get(), VARIANT_FALSE, nullptr, cMainCat.Receive(), cSubCat.Receive(),
                      sMainCatKey.Receive(), VARIANT_FALSE, VARIANT_FALSE, cCut.Receive()),
                  S_OK);
        Bstr sTitle;
        EXPECT_EQ(cCut->get_Title(sTitle.Receive()), S_OK);
        return sTitle.Text();
    };
    EXPECT_EQ(Next(), L"C:\\a.mp3");
    EXPECT_EQ(Next(), L"C:\\b.mp3");
    // A change of a text and a removal between two picks are both seen.
    ComPtr<_clsCut> cFirst;
    ASSERT_EQ(cDataBase->CutByKey(Bstr(L"C:\\a.mp3").Get(), cFirst.Receive()), S_OK);
    ASSERT_EQ(cFirst->put_Title(Bstr(L"changed").Get()), S_OK);
    EXPECT_EQ(Next(), L"changed");
    const auto colGone = Create<_clsCollection>(CLSID_clsCollection);
    ASSERT_EQ(colGone->Add(Variant(static_cast<IDispatch*>(cFirst.Get())), Variant::Omitted(),
                           Variant::Omitted(), Variant::Omitted()),
              S_OK);
    ASSERT_EQ(cDataBase->RemoveCuts(colGone.Get(), &lCount), S_OK);
    EXPECT_EQ(Next(), L"C:\\b.mp3");
    EXPECT_EQ(Next(), L"C:\\b.mp3");
}

TEST_F(HostCutTest, APlayFindsTheCutThatReplacedARemovedOne)
{
    const auto cDataBase = Create<_clsDataBase>(CLSID_clsDataBase);
    ASSERT_EQ(cDataBase->Open(Bstr((Folder() / "replaced.db").wstring()).Get()), S_OK);
    const auto Added = [&] {
        ComPtr<_clsCut> cCut;
        EXPECT_EQ(cDataBase->NewCut(cCut.Receive()), S_OK);
        EXPECT_EQ(cCut->put_Key(Bstr(L"C:\\a.mp3").Get()), S_OK);
        EXPECT_EQ(cCut->put_Title(Bstr(L"Sun").Get()), S_OK);
        const auto colCuts = Create<_clsCollection>(CLSID_clsCollection);
        EXPECT_EQ(colCuts->Add(Variant(static_cast<IDispatch*>(cCut.Get())), Variant::Omitted(),
                               Variant::Omitted(), Variant::Omitted()),
                  S_OK);
        LONG lCount = 0;
        EXPECT_EQ(cDataBase->AddCuts(colCuts.Get(), &lCount), S_OK);
        return std::pair(cCut, colCuts);
    };
    const auto [cOld, colOld] = Added();
    ASSERT_EQ(m_cMan->PopulateFromDataBase(cDataBase.Get(), Bstr(Folder().wstring()).Get()), S_OK);
    const auto Report = [&](DATE dtWhen) {
        EXPECT_EQ(cOld->put_LastPlayed(dtWhen), S_OK);
        EXPECT_EQ(m_cMan->UpdateArtistTitleHistory(cOld.Get()), S_OK);
    };
    Report(45000.5);
    LONG lCount = 0;
    ASSERT_EQ(cDataBase->RemoveCuts(colOld.Get(), &lCount), S_OK);
    ASSERT_EQ(lCount, 1);
    Added();
    Report(45001.5);
    ComPtr<_clsCut> cNew;
    ASSERT_EQ(cDataBase->CutByKey(Bstr(L"C:\\a.mp3").Get(), cNew.Receive()), S_OK);
    DATE dtPlayed = 0;
    ASSERT_EQ(cNew->get_LastPlayed(&dtPlayed), S_OK);
    EXPECT_EQ(dtPlayed, 45001.5);
}

} // namespace

} // namespace ravlo
