// SPDX-License-Identifier: MIT
// A host that brings a media database of its own: plain objects with the interfaces of RavloBase and nothing
// else.
#include "com/BoxAnswerer.h"
#include "com/Station.h"

namespace ravlo
{

namespace
{

class HostDatabaseTest : public HostStationTest
{
protected:
    void FireCuts(DISPID lEvent, const ComPtr<HostCutObject>& cCut)
    {
        const auto colCuts = NewObject<HostCollection>();
        colCuts->m_colItems.emplace_back(cCut->m_sKey, Object(cCut));
        m_cDataBase->m_cEvents.Fire(lEvent, {Object(colCuts)});
    }
};

TEST_F(HostDatabaseTest, TheHostsCutsArePlacedAsTheHostsOwnObjects)
{
    const auto cFirst = m_cDataBase->AddCut(L"First", L"Rock", 1);
    const auto cSecond = m_cDataBase->AddCut(L"Second", L"Rock", 2);
    cFirst->FileIn(L"Gold");
    Populate();
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(CutsOf(L"Rock", 1), Long(1)), cFirst));
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(CutsOf(L"Gold", 1), Long(1)), cFirst));
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(CutsOf(L"Rock", 0), Long(2)), cSecond));
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_DataBase), m_cDataBase));
}

TEST_F(HostDatabaseTest, TheChosenCutIsTheHostsCopyWithTheCategoryAskedFor)
{
    const auto cOriginal = m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate();
    const auto cCut = Next(L"Rock\t1");
    EXPECT_FALSE(IsSame(cCut, cOriginal));
    const auto* pCopy = static_cast<HostCutObject*>(cCut.Get());
    EXPECT_EQ(pCopy->m_sTitle, L"One");
    EXPECT_EQ(pCopy->m_sCategoryKey, L"Rock\t1");
    EXPECT_EQ(pCopy->m_lKind, 0);
    EXPECT_EQ(cOriginal->m_sCategoryKey, L"") << "the database's own cut stays as it is";
}

TEST_F(HostDatabaseTest, APlaceholderIsANewCutOfTheHosts)
{
    Populate();
    const auto cCut = Next(L"Nowhere\t1");
    const auto* pCut = dynamic_cast<HostCutObject*>(cCut.Get());
    ASSERT_NE(pCut, nullptr);
    EXPECT_EQ(pCut->m_lKind, 9);
}

TEST_F(HostDatabaseTest, AReportedPlayReachesTheHostsOwnCut)
{
    const auto cOriginal = m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate();
    const auto cPlayed = Next(L"Rock\t1");
    static_cast<HostCutObject*>(cPlayed.Get())->m_dtLastPlayed = 45000.5;
    ASSERT_EQ(m_cMan->UpdateArtistTitleHistory(cPlayed.Get()), S_OK);
    EXPECT_EQ(cOriginal->m_dtLastPlayed, 45000.5);
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_TitleHistoryCut, L"ONE"), cOriginal));
}

TEST_F(HostDatabaseTest, FilingAndRemovingChangeTheHostsListOfNames)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate();
    const auto cPop = Create<_clsCat>(CLSID_clsCat);
    ASSERT_EQ(cPop->put_CatName(Bstr(L"Pop").Get()), S_OK);
    VARIANT_BOOL bCreated = VARIANT_FALSE;
    EXPECT_TRUE(Get(cPop, &_clsCat::AddCut, cCut, &bCreated));
    EXPECT_EQ(bCreated, VARIANT_TRUE);
    EXPECT_EQ(Get(cCut, &_clsCut::get_CategoryText), L"Rock/Pop");
    EXPECT_TRUE(Get(Level(L"Rock", L"1"), &_clsCat::RemoveCut, cCut));
    EXPECT_EQ(Get(cCut, &_clsCut::get_CategoryText), L"Pop");
}

TEST_F(HostDatabaseTest, ItsEventsReachTheCategories)
{
    Populate();
    EXPECT_FALSE(CutsOf(L"Rock", 1));
    const auto cCut = m_cDataBase->AddCut(L"New", L"Rock", 1);
    FireCuts(1, cCut);
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(CutsOf(L"Rock", 1), Long(1)), cCut));
    cCut->m_lLevel = 2;
    FireCuts(2, cCut);
    EXPECT_EQ(CountOf(L"Rock", 1), 0);
    EXPECT_EQ(CountOf(L"Rock", 2), 1);
    FireCuts(3, cCut);
    EXPECT_EQ(CountOf(L"Rock", 2), 0);
}

TEST_F(HostDatabaseTest, EventsWithTheWrongArgumentsAreRefusedWithoutHarm)
{
    m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate();
    ComPtr<IEnumConnections> cConnections;
    ASSERT_EQ(PointOf(m_cDataBase, DIID___clsDataBase)->EnumConnections(cConnections.Receive()), S_OK);
    CONNECTDATA connection{};
    ASSERT_EQ(cConnections->Next(1, &connection, nullptr), S_OK);
    const auto cSink = ComPtr<IUnknown>::Adopt(connection.pUnk).As<IDispatch>();
    const auto fire = [&](DISPID lEvent, std::vector<VARIANT> colArguments) {
        DISPPARAMS arguments{colArguments.data(), nullptr, static_cast<UINT>(colArguments.size()), 0};
        return cSink->Invoke(lEvent, IID_NULL, 0, DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(fire(1, {}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(fire(1, {Text(L"no collection")}), ErrorResult(13));
    EXPECT_EQ(fire(4, {Text(L"reason")}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(fire(5, {Text(L"max"), Text(L"count"), Text(L"text")}), ErrorResult(13));
    EXPECT_EQ(fire(99, {}), S_OK) << "an event nobody knows";
    EXPECT_EQ(CountOf(L"Rock", 1), 1);
}

// A list that ends in a failure after its first item.
class BrokenList final : public HostObject<IDispatch>
{
public:
    explicit BrokenList(Variant cFirst) : m_cFirst(std::move(cFirst)) {}
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* pResult, EXCEPINFO*, UINT*) override
    {
        const auto count = [] { return std::size_t{2}; };
        const auto at = [this](std::size_t i) {
            return i == 0 ? m_cFirst : throw RuntimeError(error::PermissionDenied);
        };
        *pResult = Variant(NewEnumerator(ComPtr<IUnknown>(this), count, at).Get()).Detach();
        return S_OK;
    }

private:
    Variant m_cFirst;
};

TEST_F(HostDatabaseTest, AnnouncedItemsThatAreNoCutsAreLogged)
{
    StartLog();
    Populate();
    const auto cCut = m_cDataBase->AddCut(L"New", L"Rock", 1);
    const auto colCuts = NewObject<HostCollection>();
    colCuts->m_colItems = {{L"", Variant(static_cast<IDispatch*>(nullptr))},
                           {L"", Text(L"no cut")},
                           {L"", Object(m_cDataBase)},
                           {L"", Object(cCut)}};
    m_cDataBase->m_cEvents.Fire(1, {Object(colCuts)});
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(CutsOf(L"Rock", 1), Long(1)), cCut));
    cCut->m_lLevel = 2;
    m_cDataBase->m_cEvents.Fire(2, {Object(colCuts)});
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(CutsOf(L"Rock", 2), Long(1)), cCut));
    m_cDataBase->m_cEvents.Fire(3, {Object(NewObject<BrokenList>(Object(cCut)))});
    EXPECT_EQ(CountOf(L"Rock", 2), 0);
    m_cDataBase->m_cEvents.Fire(3, {Object(m_cDataBase)}); // no collection at all
    EXPECT_EQ(LogLinesWith("m_cDataBase_CutsAdded 13 "), 3) << Log();
    EXPECT_EQ(LogLinesWith("m_cDataBase_CutsModified 13 "), 3) << Log();
    EXPECT_EQ(LogLinesWith("m_cDataBase_CutsRemoved 70 "), 1) << Log();
    EXPECT_EQ(LogLinesWith("m_cDataBase_CutsRemoved 451 "), 1) << Log();
}

TEST_F(HostDatabaseTest, APopulationSkipsItemsThatAreNoCuts)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Rock", 1);
    m_cDataBase->m_colCuts->m_colItems.insert(m_cDataBase->m_colCuts->m_colItems.begin(),
                                              {L"", Text(L"no cut")});
    Populate();
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(CutsOf(L"Rock", 1), Long(1)), cCut));
}

TEST_F(HostDatabaseTest, ADatabaseWithoutEventsPopulatesToo)
{
    const auto cSilent = NewObject<HostDataBaseObject>(false);
    cSilent->AddCut(L"One", L"Rock", 1);
    PopulateFrom(cSilent.Get());
    EXPECT_EQ(CountOf(L"Rock", 1), 1);
}

TEST_F(HostDatabaseTest, TheConnectionEndsWithTheManager)
{
    Populate();
    EXPECT_TRUE(m_cDataBase->m_cEvents.HasSinks());
    m_cMan = nullptr;
    EXPECT_FALSE(m_cDataBase->m_cEvents.HasSinks());
}

TEST_F(HostDatabaseTest, TwoManagersShareOneConnectionAndEachHearsEverything)
{
    Populate();
    const auto cFirst = m_cMan;
    m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    Populate();
    FireCuts(1, m_cDataBase->AddCut(L"New", L"Rock", 1));
    EXPECT_EQ(CountOf(L"Rock", 1), 1);
    m_cMan = cFirst;
    EXPECT_EQ(CountOf(L"Rock", 1), 1);
}

TEST_F(HostDatabaseTest, AnotherDatabaseReplacesTheFirst)
{
    m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate();
    const auto cOther = NewObject<HostDataBaseObject>();
    cOther->AddCut(L"Two", L"Jazz", 1);
    PopulateFrom(cOther.Get());
    EXPECT_FALSE(m_cDataBase->m_cEvents.HasSinks());
    EXPECT_TRUE(cOther->m_cEvents.HasSinks());
    EXPECT_EQ(CountOf(L"Jazz", 1), 1);
}

struct Failure
{
    HRESULT hHost;
    HRESULT hSeen;
};

TEST_F(HostDatabaseTest, AFailureOfAHostsCutBecomesARunTimeError)
{
    const auto cCut = NewObject<HostCutObject>(L"C:\\a.mp3");
    const auto cLevel = Create<_clsCat>(CLSID_clsCat);
    ASSERT_EQ(cLevel->put_CatLevel(1), S_OK);
    for (const Failure& failure :
         {Failure{ErrorResult(70), ErrorResult(70)}, Failure{E_ACCESSDENIED, ErrorResult(70)},
          Failure{DISP_E_TYPEMISMATCH, ErrorResult(13)}, Failure{E_NOTIMPL, ErrorResult(445)},
          Failure{static_cast<HRESULT>(0x80040123), static_cast<HRESULT>(0x80040123)}})
    {
        cCut->m_hKey = failure.hHost;
        VARIANT_BOOL bCreated = VARIANT_FALSE;
        VARIANT_BOOL bAdded = VARIANT_FALSE;
        EXPECT_EQ(cLevel->AddCut(cCut.Get(), &bCreated, &bAdded), failure.hSeen);
        EXPECT_EQ(TakeErrorInfo().sSource, L"RavloScheduler.clsCat");
    }
    EXPECT_EQ(Get(cLevel, &_clsCat::get_TotalCuts), 0);
}

TEST_F(HostDatabaseTest, ADatabaseThatCannotTellItsCutsIsReportedToThePerson)
{
    m_cDataBase->m_hCuts = ErrorResult(75);
    BoxAnswerer cAnswerer;
    Populate();
    const auto colSaid = cAnswerer.Stop();
    ASSERT_EQ(colSaid.size(), 1u);
    EXPECT_NE(colSaid[0].find(L"75"), std::wstring::npos);
    EXPECT_NE(colSaid[0].find(L"Path/File access error"), std::wstring::npos);
}

TEST_F(HostDatabaseTest, NoDatabaseAndNoPathAreRefusedWithTheirBoxes)
{
    BoxAnswerer cAnswerer;
    EXPECT_EQ(m_cMan->PopulateFromDataBase(m_cDataBase.Get(), nullptr), S_OK);
    EXPECT_EQ(m_cMan->PopulateFromDataBase(nullptr, Bstr(Folder().wstring()).Get()), S_OK);
    const auto colSaid = cAnswerer.Stop();
    ASSERT_EQ(colSaid.size(), 2u);
    EXPECT_EQ(colSaid[0], L"RavloScheduler: 'strAppPath' Must be the 'app.path' of the calling app!");
    EXPECT_EQ(colSaid[1],
              L"RavloScheduler: PopulateFromDatabase in clsSchedMan actually does need a database!");
}

} // namespace

} // namespace ravlo
