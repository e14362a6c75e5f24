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
    ComPtr<_clsCut> CutAt(const wchar_t* sCatName, LONG lLevel, std::int32_t lPosition)
    {
        return ItemAt<_clsCut>(CutsOf(sCatName, lLevel), Long(lPosition));
    }
};

TEST_F(HostDatabaseTest, TheHostsCutsArePlacedAsTheHostsOwnObjects)
{
    const auto cFirst = m_cDataBase->AddCut(L"First", L"Rock", 1);
    const auto cSecond = m_cDataBase->AddCut(L"Second", L"Rock", 2);
    cFirst->FileIn(L"Gold");
    auto& colItems = m_cDataBase->m_colCuts->m_colItems;
    colItems.insert(colItems.begin(), {L"", Text(L"no cut")}); // is skipped
    Populate();
    EXPECT_TRUE(IsSame(CutAt(L"Rock", 1, 1), cFirst));
    EXPECT_TRUE(IsSame(CutAt(L"Gold", 1, 1), cFirst));
    EXPECT_TRUE(IsSame(CutAt(L"Rock", 0, 2), cSecond));
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_DataBase), m_cDataBase));
}

TEST_F(HostDatabaseTest, TheChosenCutIsTheHostsCopyAndItsPlayReachesTheOriginal)
{
    const auto cOriginal = m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate();
    const auto cCut = Next(L"Rock\t1");
    EXPECT_FALSE(IsSame(cCut, cOriginal));
    auto* pCopy = static_cast<HostCutObject*>(cCut.Get());
    EXPECT_EQ(pCopy->m_sTitle, L"One");
    EXPECT_EQ(pCopy->m_sCategoryKey, L"Rock\t1");
    EXPECT_EQ(pCopy->m_lKind, 0);
    EXPECT_EQ(cOriginal->m_sCategoryKey, L"") << "the database's own cut stays as it is";
    pCopy->m_dtLastPlayed = 45000.5;
    Do(m_cMan, &_clsSchedMan::UpdateArtistTitleHistory, cCut);
    EXPECT_EQ(cOriginal->m_dtLastPlayed, 45000.5);
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_TitleHistoryCut, L"ONE"), cOriginal));

    const auto cPlaceholder = Next(L"Nowhere\t1");
    const auto* pPlaceholder = dynamic_cast<HostCutObject*>(cPlaceholder.Get());
    ASSERT_NE(pPlaceholder, nullptr) << "a placeholder is a new cut of the host's";
    EXPECT_EQ(pPlaceholder->m_lKind, 9);
}

TEST_F(HostDatabaseTest, AddingAndRemovingChangeTheHostsListOfNames)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate();
    const auto cPop = Create<_clsCat>(CLSID_clsCat);
    Do(cPop, &_clsCat::put_CatName, L"Pop");
    VARIANT_BOOL bCreated = VARIANT_FALSE;
    EXPECT_TRUE(Get(cPop, &_clsCat::AddCut, cCut, &bCreated));
    EXPECT_EQ(bCreated, VARIANT_TRUE);
    EXPECT_EQ(Get(cCut, &_clsCut::get_CategoryText), L"Rock/Pop");
    EXPECT_TRUE(Get(Level(L"Rock", L"1"), &_clsCat::RemoveCut, cCut));
    EXPECT_EQ(Get(cCut, &_clsCut::get_CategoryText), L"Pop");
}

TEST_F(HostDatabaseTest, ItsEventsReachTheCategoriesOfEachManager)
{
    Populate();
    EXPECT_FALSE(CutsOf(L"Rock", 1));
    const auto cFirstManager = m_cMan;
    m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    Populate();
    const auto cCut = m_cDataBase->AddCut(L"New", L"Rock", 1);
    FireCuts(1, cCut);
    EXPECT_EQ(CountOf(L"Rock", 1), 1);
    m_cMan = cFirstManager;
    EXPECT_TRUE(IsSame(CutAt(L"Rock", 1, 1), cCut));
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
    const auto cConnections =
        Get(PointOf(m_cDataBase, DIID___clsDataBase), &IConnectionPoint::EnumConnections);
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
    EXPECT_EQ(fire(99, {}), S_OK) << "an unknown event";
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
    EXPECT_TRUE(IsSame(CutAt(L"Rock", 1, 1), cCut));
    cCut->m_lLevel = 2;
    m_cDataBase->m_cEvents.Fire(2, {Object(colCuts)});
    EXPECT_TRUE(IsSame(CutAt(L"Rock", 2, 1), cCut));
    m_cDataBase->m_cEvents.Fire(3, {Object(NewObject<BrokenList>(Object(cCut)))});
    EXPECT_EQ(CountOf(L"Rock", 2), 0);
    m_cDataBase->m_cEvents.Fire(3, {Object(m_cDataBase)}); // no collection at all
    EXPECT_EQ(LogLinesWith("m_cDataBase_CutsAdded 13 "), 3) << Log();
    EXPECT_EQ(LogLinesWith("m_cDataBase_CutsModified 13 "), 3) << Log();
    EXPECT_EQ(LogLinesWith("m_cDataBase_CutsRemoved 70 "), 1) << Log();
    EXPECT_EQ(LogLinesWith("m_cDataBase_CutsRemoved 451 "), 1) << Log();
}

TEST_F(HostDatabaseTest, TheConnectionEndsWithTheManagerOrAnotherDatabase)
{
    Populate();
    EXPECT_TRUE(m_cDataBase->m_cEvents.HasSinks());
    const auto cOther = NewObject<HostDataBaseObject>();
    cOther->AddCut(L"Two", L"Jazz", 1);
    PopulateFrom(cOther);
    EXPECT_FALSE(m_cDataBase->m_cEvents.HasSinks());
    EXPECT_TRUE(cOther->m_cEvents.HasSinks());
    EXPECT_EQ(CountOf(L"Jazz", 1), 1);
    const auto cSilent = NewObject<HostDataBaseObject>(false); // without events
    cSilent->AddCut(L"One", L"Rock", 1);
    PopulateFrom(cSilent);
    EXPECT_EQ(CountOf(L"Rock", 1), 1);
    PopulateFrom(cOther);
    m_cMan = nullptr;
    EXPECT_FALSE(cOther->m_cEvents.HasSinks());
}

TEST_F(HostDatabaseTest, AFailureOfAHostsCutBecomesARunTimeError)
{
    const auto cCut = NewObject<HostCutObject>(L"C:\\a.mp3");
    const auto cLevel = Create<_clsCat>(CLSID_clsCat);
    Do(cLevel, &_clsCat::put_CatLevel, 1);
    constexpr auto hUnknown = static_cast<HRESULT>(0x80040123);
    for (const auto& [hHost, hSeen] :
         std::initializer_list<std::pair<HRESULT, HRESULT>>{{ErrorResult(70), ErrorResult(70)},
                                                            {E_ACCESSDENIED, ErrorResult(70)},
                                                            {DISP_E_TYPEMISMATCH, ErrorResult(13)},
                                                            {E_NOTIMPL, ErrorResult(445)},
                                                            {hUnknown, hUnknown}})
    {
        cCut->m_hKey = hHost;
        VARIANT_BOOL bAdded = VARIANT_FALSE;
        EXPECT_EQ(Try(cLevel, &_clsCat::AddCut, cCut, nullptr, &bAdded), hSeen);
        EXPECT_EQ(TakeErrorInfo().sSource, L"RavloScheduler.clsCat");
    }
    EXPECT_EQ(CutsIn(cLevel), 0);
}

TEST_F(HostDatabaseTest, APopulationThatFailsIsShown)
{
    m_cDataBase->m_hCuts = ErrorResult(75);
    const Texts colSaid = BoxesOf([&] { Populate(); });
    ASSERT_EQ(colSaid.size(), 1u);
    EXPECT_NE(colSaid[0].find(L"75"), std::wstring::npos);
    EXPECT_NE(colSaid[0].find(L"Path/File access error"), std::wstring::npos);
    const auto populateFromNothing = [&] {
        Do(m_cMan, &_clsSchedMan::PopulateFromDataBase, m_cDataBase, nullptr);
        Do(m_cMan, &_clsSchedMan::PopulateFromDataBase, nullptr, Folder().wstring());
    };
    EXPECT_EQ(BoxesOf(populateFromNothing),
              (Texts{L"RavloScheduler: 'strAppPath' Must be the 'app.path' of the calling app!",
                     L"RavloScheduler: PopulateFromDatabase in clsSchedMan actually does need a database!"}));
}

} // namespace
} // namespace ravlo
