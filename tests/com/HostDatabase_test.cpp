// SPDX-License-Identifier: MIT
// A host that brings a media database of its own: plain objects with the interfaces of RavloBase and nothing
// else.
#include "com/BoxAnswerer.h"
#include "com/HostObjects.h"

#include <fstream>
#include <sstream>

namespace ravlo
{

namespace
{

class HostDatabaseTest : public ComTest
{
protected:
    void Populate(const ComPtr<HostDataBaseObject>& cDataBase)
    {
        const Bstr sFolder{Folder().wstring()};
        ASSERT_EQ(m_cMan->PopulateFromDataBase(cDataBase.Get(), sFolder.Get()), S_OK);
    }
    ComPtr<_clsCollection> CutsOf(const wchar_t* sCatName, LONG lLevel)
    {
        ComPtr<_clsCollection> colCuts;
        EXPECT_EQ(m_cMan->get_colCuts(Bstr(sCatName).Get(), lLevel, colCuts.Receive()), S_OK);
        return colCuts;
    }
    ComPtr<_clsCut> CutAt(const ComPtr<_clsCollection>& colCuts, LONG lPosition)
    {
        Variant cItem;
        EXPECT_EQ(colCuts->get_Item(Long(lPosition), &cItem), S_OK);
        return ObjectIn<_clsCut>(cItem);
    }
    ComPtr<_clsCut> Next(const wchar_t* sKey)
    {
        ComPtr<_clsCut> cCut;
        EXPECT_EQ(m_cMan->get_NextCutFromRotation(Bstr(sKey).Get(), VARIANT_FALSE, nullptr, nullptr, nullptr,
                                                  nullptr, VARIANT_TRUE, VARIANT_FALSE, cCut.Receive()),
                  S_OK);
        return cCut;
    }
    void FireCuts(const ComPtr<HostDataBaseObject>& cDataBase, DISPID lEvent,
                  const ComPtr<HostCutObject>& cCut)
    {
        const auto colCuts = NewObject<HostCollection>();
        colCuts->m_colItems.emplace_back(cCut->m_sKey, Object(cCut));
        cDataBase->m_cEvents.Fire(lEvent, {Object(colCuts)});
    }

    ComPtr<_clsSchedMan> m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    ComPtr<HostDataBaseObject> m_cDataBase = NewObject<HostDataBaseObject>();
};

TEST_F(HostDatabaseTest, TheHostsCutsArePlacedAndComeBackAsTheHostsOwnObjects)
{
    const auto cFirst = m_cDataBase->AddCut(L"First", L"Rock", 1);
    const auto cSecond = m_cDataBase->AddCut(L"Second", L"Rock", 2);
    cFirst->FileIn(L"Gold");
    Populate(m_cDataBase);
    EXPECT_TRUE(IsSame(CutAt(CutsOf(L"Rock", 1), 1), cFirst));
    EXPECT_TRUE(IsSame(CutAt(CutsOf(L"Gold", 1), 1), cFirst));
    EXPECT_TRUE(IsSame(CutAt(CutsOf(L"Rock", 0), 2), cSecond));
    ComPtr<_clsDataBase> cBack;
    ASSERT_EQ(m_cMan->get_DataBase(cBack.Receive()), S_OK);
    EXPECT_TRUE(IsSame(cBack, m_cDataBase));
}

TEST_F(HostDatabaseTest, TheChosenCutIsTheHostsOwnCopyAndTellsWhatWasAskedFor)
{
    const auto cOriginal = m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate(m_cDataBase);
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
    Populate(m_cDataBase);
    const auto cCut = Next(L"Nowhere\t1");
    const auto* pCut = dynamic_cast<HostCutObject*>(cCut.Get());
    ASSERT_NE(pCut, nullptr);
    EXPECT_EQ(pCut->m_lKind, 9);
}

TEST_F(HostDatabaseTest, AReportedPlayReachesTheHostsOwnCut)
{
    const auto cOriginal = m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate(m_cDataBase);
    const auto cPlayed = Next(L"Rock\t1");
    static_cast<HostCutObject*>(cPlayed.Get())->m_dtLastPlayed = 45000.5;
    ASSERT_EQ(m_cMan->UpdateArtistTitleHistory(cPlayed.Get()), S_OK);
    EXPECT_EQ(cOriginal->m_dtLastPlayed, 45000.5);
    ComPtr<_clsCut> cHistory;
    ASSERT_EQ(m_cMan->get_TitleHistoryCut(Bstr(L"ONE").Get(), cHistory.Receive()), S_OK);
    EXPECT_TRUE(IsSame(cHistory, cOriginal));
}

TEST_F(HostDatabaseTest, FilingAndRemovingChangeTheHostsListOfNames)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate(m_cDataBase);
    ComPtr<_clsCollection> colMainCats;
    ASSERT_EQ(m_cMan->get_colMainCats(colMainCats.Receive()), S_OK);
    Variant cItem;
    ASSERT_EQ(colMainCats->get_Item(Text(L"Rock\t0"), &cItem), S_OK);
    const auto cRock = ObjectIn<_clsCat>(cItem);
    const auto cPop = Create<_clsCat>(CLSID_clsCat);
    ASSERT_EQ(cPop->put_CatName(Bstr(L"Pop").Get()), S_OK);
    VARIANT_BOOL bCreated = VARIANT_FALSE;
    VARIANT_BOOL bDone = VARIANT_FALSE;
    ASSERT_EQ(cPop->AddCut(cCut.Get(), &bCreated, &bDone), S_OK);
    EXPECT_EQ(bDone, VARIANT_TRUE);
    EXPECT_EQ(bCreated, VARIANT_TRUE);
    Bstr sText;
    ASSERT_EQ(cCut->get_CategoryText(sText.Receive()), S_OK);
    EXPECT_EQ(sText.Text(), L"Rock/Pop");
    ComPtr<_clsCollection> colLevels;
    ASSERT_EQ(cRock->get_SubCats(colLevels.Receive()), S_OK);
    cItem = Variant();
    ASSERT_EQ(colLevels->get_Item(Long(1), &cItem), S_OK);
    ASSERT_EQ(ObjectIn<_clsCat>(cItem)->RemoveCut(cCut.Get(), &bDone), S_OK);
    EXPECT_EQ(bDone, VARIANT_TRUE);
    ASSERT_EQ(cCut->get_CategoryText(sText.Receive()), S_OK);
    EXPECT_EQ(sText.Text(), L"Pop");
}

TEST_F(HostDatabaseTest, ItsEventsReachTheCategories)
{
    Populate(m_cDataBase);
    EXPECT_FALSE(CutsOf(L"Rock", 1));
    const auto cCut = m_cDataBase->AddCut(L"New", L"Rock", 1);
    FireCuts(m_cDataBase, 1, cCut);
    EXPECT_TRUE(IsSame(CutAt(CutsOf(L"Rock", 1), 1), cCut));
    cCut->m_lLevel = 2;
    FireCuts(m_cDataBase, 2, cCut);
    EXPECT_EQ(LongOfProperty(CutsOf(L"Rock", 1), &_clsCollection::get_Count), 0);
    EXPECT_EQ(LongOfProperty(CutsOf(L"Rock", 2), &_clsCollection::get_Count), 1);
    FireCuts(m_cDataBase, 3, cCut);
    EXPECT_EQ(LongOfProperty(CutsOf(L"Rock", 2), &_clsCollection::get_Count), 0);
}

TEST_F(HostDatabaseTest, EventsWithTheWrongArgumentsAreRefusedWithoutHarm)
{
    m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate(m_cDataBase);
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
    EXPECT_EQ(LongOfProperty(CutsOf(L"Rock", 1), &_clsCollection::get_Count), 1);
}

// A list that ends in a failure after its first item.
class BrokenList final : public HostObject<IDispatch>
{
public:
    explicit BrokenList(Variant cFirst) : m_cFirst(std::move(cFirst)) {}
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* pResult, EXCEPINFO*, UINT*) override
    {
        *pResult = Variant(NewEnumerator(
                               ComPtr<IUnknown>(this),
                               [] {
            return std::size_t{2};
                               },
                               [this](std::size_t i) {
            return i == 0 ? m_cFirst : throw RuntimeError(error::PermissionDenied);
                   }).Get())
            .Detach();
        return S_OK;
    }

private:
    Variant m_cFirst;
};

TEST_F(HostDatabaseTest, WhatIsNoCutInAnAnnouncementIsPassedOverAndLogged)
{
    const auto logs = Folder() / L"Debugging Logs" / L"Scheduler";
    std::filesystem::create_directories(logs);
    Populate(m_cDataBase);
    const auto cCut = m_cDataBase->AddCut(L"New", L"Rock", 1);
    const auto colCuts = NewObject<HostCollection>();
    colCuts->m_colItems = {{L"", Variant(static_cast<IDispatch*>(nullptr))},
                           {L"", Text(L"no cut")},
                           {L"", Object(m_cDataBase)},
                           {L"", Object(cCut)}};
    m_cDataBase->m_cEvents.Fire(1, {Object(colCuts)});
    EXPECT_TRUE(IsSame(CutAt(CutsOf(L"Rock", 1), 1), cCut));
    cCut->m_lLevel = 2;
    m_cDataBase->m_cEvents.Fire(2, {Object(colCuts)});
    EXPECT_TRUE(IsSame(CutAt(CutsOf(L"Rock", 2), 1), cCut));
    m_cDataBase->m_cEvents.Fire(3, {Object(NewObject<BrokenList>(Object(cCut)))});
    EXPECT_EQ(LongOfProperty(CutsOf(L"Rock", 2), &_clsCollection::get_Count), 0);
    m_cDataBase->m_cEvents.Fire(3, {Object(m_cDataBase)}); // no collection at all
    std::ostringstream text;
    for (const auto& entry : std::filesystem::directory_iterator(logs))
        text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
    const auto linesWith = [&](const std::string& sWhat) {
        int lLines = 0;
        for (std::size_t l = text.str().find(sWhat); l != std::string::npos;
             l = text.str().find(sWhat, l + 1))
            ++lLines;
        return lLines;
    };
    EXPECT_EQ(linesWith("m_cDataBase_CutsAdded 13 "), 3) << text.str();
    EXPECT_EQ(linesWith("m_cDataBase_CutsModified 13 "), 3) << text.str();
    EXPECT_EQ(linesWith("m_cDataBase_CutsRemoved 70 "), 1) << text.str();
    EXPECT_EQ(linesWith("m_cDataBase_CutsRemoved 451 "), 1) << text.str();
}

TEST_F(HostDatabaseTest, WhatIsNoCutDoesNotStopAPopulation)
{
    const auto cCut = m_cDataBase->AddCut(L"One", L"Rock", 1);
    m_cDataBase->m_colCuts->m_colItems.insert(m_cDataBase->m_colCuts->m_colItems.begin(),
                                              {L"", Text(L"no cut")});
    Populate(m_cDataBase);
    EXPECT_TRUE(IsSame(CutAt(CutsOf(L"Rock", 1), 1), cCut));
}

TEST_F(HostDatabaseTest, ADatabaseWithoutEventsPopulatesToo)
{
    const auto cSilent = NewObject<HostDataBaseObject>(false);
    cSilent->AddCut(L"One", L"Rock", 1);
    Populate(cSilent);
    EXPECT_EQ(LongOfProperty(CutsOf(L"Rock", 1), &_clsCollection::get_Count), 1);
}

TEST_F(HostDatabaseTest, TheConnectionEndsWithTheManager)
{
    Populate(m_cDataBase);
    EXPECT_TRUE(m_cDataBase->m_cEvents.HasSinks());
    m_cMan = nullptr;
    EXPECT_FALSE(m_cDataBase->m_cEvents.HasSinks());
}

TEST_F(HostDatabaseTest, TwoManagersShareOneConnectionAndEachHearsEverything)
{
    Populate(m_cDataBase);
    const auto cFirst = m_cMan;
    m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    Populate(m_cDataBase);
    FireCuts(m_cDataBase, 1, m_cDataBase->AddCut(L"New", L"Rock", 1));
    EXPECT_EQ(LongOfProperty(CutsOf(L"Rock", 1), &_clsCollection::get_Count), 1);
    m_cMan = cFirst;
    EXPECT_EQ(LongOfProperty(CutsOf(L"Rock", 1), &_clsCollection::get_Count), 1);
}

TEST_F(HostDatabaseTest, AnotherDatabaseReplacesTheFirst)
{
    m_cDataBase->AddCut(L"One", L"Rock", 1);
    Populate(m_cDataBase);
    const auto cOther = NewObject<HostDataBaseObject>();
    cOther->AddCut(L"Two", L"Jazz", 1);
    Populate(cOther);
    EXPECT_FALSE(m_cDataBase->m_cEvents.HasSinks());
    EXPECT_TRUE(cOther->m_cEvents.HasSinks());
    EXPECT_EQ(LongOfProperty(CutsOf(L"Jazz", 1), &_clsCollection::get_Count), 1);
}

struct Failure
{
    HRESULT hHost;
    HRESULT hSeen;
};

TEST_F(HostDatabaseTest, AFailureOfAHostsCutIsTheErrorItStandsFor)
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
    EXPECT_EQ(LongOfProperty(cLevel, &_clsCat::get_TotalCuts), 0);
}

TEST_F(HostDatabaseTest, ADatabaseThatCannotTellItsCutsIsReportedToThePerson)
{
    m_cDataBase->m_hCuts = ErrorResult(75);
    BoxAnswerer cAnswerer;
    Populate(m_cDataBase);
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
