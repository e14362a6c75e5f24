// SPDX-License-Identifier: MIT
// A host's assignments of the form name TAB level, and a host that refuses to be followed.
#include "com/HostObjects.h"

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
    cCut->m_onAsked = [&]
    {
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
    cPoints->m_onUnadvise = [&]
    { EXPECT_EQ(cOther->PopulateFromDataBase(m_cDataBase.Get(), Bstr(Folder().wstring()).Get()), S_OK); };
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

} // namespace

} // namespace ravlo
