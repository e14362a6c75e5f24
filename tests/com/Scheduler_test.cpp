// SPDX-License-Identifier: MIT
// The scheduler over the embedded database, as an early-bound host uses the two together.
#include "com/BoxAnswerer.h"
#include "com/Station.h"

namespace ravlo
{

namespace
{

using Texts = std::vector<std::wstring>;

class SchedulerTest : public StationTest
{
protected:
    // The parameters of NextCutFromRotation that come back.
    struct Answer
    {
        ComPtr<_clsCut> cCut;
        ComPtr<_clsCat> cMainCat;
        ComPtr<_clsCat> cSubCat;
        Bstr sMainCatKey;
    };
    void Ask(const wchar_t* sKey, Answer& answer, VARIANT_BOOL bForEditablePlaylist = VARIANT_TRUE)
    {
        _clsCat* pMainCat = answer.cMainCat.Detach();
        _clsCat* pSubCat = answer.cSubCat.Detach();
        BSTR sMainCatKey = answer.sMainCatKey.Detach();
        EXPECT_EQ(m_cMan->get_NextCutFromRotation(Bstr(sKey).Get(), VARIANT_FALSE, nullptr, &pMainCat,
                                                  &pSubCat, &sMainCatKey, bForEditablePlaylist, VARIANT_FALSE,
                                                  answer.cCut.Receive()),
                  S_OK);
        answer.cMainCat = ComPtr<_clsCat>::Adopt(pMainCat);
        answer.cSubCat = ComPtr<_clsCat>::Adopt(pSubCat);
        *answer.sMainCatKey.Receive() = sMainCatKey;
    }
};

TEST_F(SchedulerTest, NothingIsKnownBeforePopulation)
{
    ComPtr<_clsDataBase> cDataBase;
    EXPECT_EQ(m_cMan->get_DataBase(cDataBase.Receive()), S_OK);
    EXPECT_FALSE(cDataBase);
    ComPtr<_clsCollection> col;
    EXPECT_EQ(m_cMan->get_colMainCats(col.Receive()), S_OK);
    EXPECT_FALSE(col);
    EXPECT_EQ(m_cMan->get_colCuts(Bstr(L"Rock").Get(), 0, col.Receive()), S_OK);
    EXPECT_FALSE(col);
    EXPECT_EQ(m_cMan->get_colIllegalChars(col.Receive()), S_OK);
    EXPECT_EQ(ItemsOf(col.Get()), (Texts{L"*", L"/", L":", L"<", L">", L"?", L"\\", L"|", L"\""}));
    VARIANT_BOOL bAllowed = VARIANT_TRUE;
    EXPECT_EQ(m_cMan->get_RotatesAllowed(&bAllowed), S_OK);
    EXPECT_EQ(bAllowed, VARIANT_FALSE);
    VARIANT_BOOL bShowing = VARIANT_TRUE;
    EXPECT_EQ(m_cMan->get_UIShowing(&bShowing), S_OK);
    EXPECT_EQ(bShowing, VARIANT_FALSE);
    EXPECT_EQ(m_cMan->ReloadAll(), S_OK);
}

TEST_F(SchedulerTest, PopulationFilesTheDatabasesOwnCutsAndRemembersThePath)
{
    const auto cFirst = AddCut(L"First", L"Rock", 1);
    AddCut(L"Second", L"Rock/Pop", 2);
    Populate();
    EXPECT_EQ(TextOfProperty(m_cMan, &_clsSchedMan::get_AppPath), Folder().wstring() + L"\\");
    EXPECT_EQ(TitlesIn(MainCat(L"Rock")), (Texts{L"First", L"Second"}));
    EXPECT_EQ(TitlesIn(Level(L"Pop", L"2")), Texts{L"Second"});
    ComPtr<_clsCollection> colCuts;
    ASSERT_EQ(m_cMan->get_colCuts(Bstr(L"rock").Get(), 1, colCuts.Receive()), S_OK);
    Variant cItem;
    ASSERT_EQ(colCuts->get_Item(Text(L"c:\\FIRST.mp3"), &cItem), S_OK);
    EXPECT_TRUE(IsSame(ObjectIn<_clsCut>(cItem), cFirst));
    ComPtr<_clsDataBase> cBack;
    ASSERT_EQ(m_cMan->get_DataBase(cBack.Receive()), S_OK);
    EXPECT_TRUE(IsSame(cBack, m_cDataBase));
}

TEST_F(SchedulerTest, PopulationTellsItsProgress)
{
    AddCut(L"One", L"Rock", 1);
    const auto cSink = NewObject<Sink>(DIID___clsSchedMan);
    Advise(PointOf(m_cMan, DIID___clsSchedMan), cSink);
    Populate();
    std::vector<Heard> colHeard = cSink->m_colHeard;
    std::erase_if(colHeard, [](const Heard& heard) { return heard.lEvent == 3; });
    ASSERT_GE(colHeard.size(), 3u);
    EXPECT_EQ(colHeard[0], (Heard{2, L"Initialising Scheduler - creating categories|1"}));
    EXPECT_EQ(colHeard[1], (Heard{4, L"Got Main and Sub Categories for scheduler."}));
    EXPECT_EQ(colHeard[2], (Heard{2, L"Creating Scheduler Items|1"}));
}

TEST_F(SchedulerTest, TheChosenCutComesWithItsCategoryLevelAndKey)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    Answer answer;
    // Whatever the variables held before is let go.
    answer.cMainCat = Create<_clsCat>(CLSID_clsCat);
    answer.cSubCat = answer.cMainCat;
    *answer.sMainCatKey.Receive() = NewBstr(L"before");
    Ask(L"Rock\t1", answer);
    EXPECT_EQ(TextOfProperty(answer.cCut, &_clsCut::get_Title), L"First");
    EXPECT_EQ(LongOfProperty(answer.cCut, &_clsCut::get_KindCode), 0);
    EXPECT_EQ(TextOfProperty(answer.cCut, &_clsCut::get_CategoryKey), L"Rock\t1");
    EXPECT_TRUE(IsSame(answer.cMainCat, MainCat(L"Rock")));
    EXPECT_TRUE(IsSame(answer.cSubCat, Level(L"Rock", L"1")));
    EXPECT_EQ(answer.sMainCatKey.Text(), L"Rock\t0");
}

TEST_F(SchedulerTest, ACallerMayDoWithoutWhatComesBack)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    ComPtr<_clsCut> cCut;
    EXPECT_EQ(m_cMan->get_NextCutFromRotation(Bstr(L"Rock\t1").Get(), VARIANT_FALSE, nullptr, nullptr,
                                              nullptr, nullptr, VARIANT_TRUE, VARIANT_FALSE, cCut.Receive()),
              S_OK);
    EXPECT_EQ(LongOfProperty(cCut, &_clsCut::get_KindCode), 0);
    EXPECT_EQ(m_cMan->get_NextCutFromRotation(nullptr, VARIANT_FALSE, nullptr, nullptr, nullptr, nullptr,
                                              VARIANT_TRUE, VARIANT_FALSE, nullptr),
              E_POINTER);
}

TEST_F(SchedulerTest, RotationHappensWhenTheHostAllowsIt)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    Answer answer;
    Ask(L"Rock\t1", answer, VARIANT_FALSE);
    EXPECT_EQ(LongOfProperty(answer.cCut, &_clsCut::get_KindCode), 17);
    ASSERT_EQ(m_cMan->put_RotatesAllowed(VARIANT_TRUE), S_OK);
    Ask(L"Rock\t1", answer, VARIANT_FALSE);
    EXPECT_EQ(LongOfProperty(answer.cCut, &_clsCut::get_KindCode), 0);
}

TEST_F(SchedulerTest, APlayIsFoundByArtistTitleAndAlbum)
{
    const auto cCut = AddCut(L"First", L"Rock", 1);
    ASSERT_EQ(cCut->put_Album(Bstr(L"Album").Get()), S_OK);
    Populate();
    ComPtr<_clsCut> cCopy;
    ASSERT_EQ(cCut->CloneCut(cCopy.Receive()), S_OK);
    ASSERT_EQ(cCopy->put_LastPlayed(45000), S_OK);
    ASSERT_EQ(m_cMan->UpdateArtistTitleHistory(cCopy.Get()), S_OK);
    ComPtr<_clsCut> cHistory;
    ASSERT_EQ(m_cMan->get_ArtistHistoryCut(Bstr(L"artist of first").Get(), cHistory.Receive()), S_OK);
    EXPECT_TRUE(IsSame(cHistory, cCut));
    ASSERT_EQ(m_cMan->get_AlbumHistoryCut(Bstr(L"ALBUM").Get(), cHistory.Receive()), S_OK);
    EXPECT_TRUE(IsSame(cHistory, cCut));
    ASSERT_EQ(m_cMan->get_TitleHistoryCut(Bstr(L"never played").Get(), cHistory.Receive()), S_OK);
    EXPECT_FALSE(cHistory);
}

TEST_F(SchedulerTest, NothingAsAPlayIsNoErrorAndChangesNoHistory)
{
    EXPECT_EQ(m_cMan->UpdateArtistTitleHistory(nullptr), S_OK) << "before a population, too";
    const auto cCut = AddCut(L"First", L"Rock", 1);
    Populate();
    ASSERT_EQ(cCut->put_LastPlayed(45000), S_OK);
    ASSERT_EQ(m_cMan->UpdateArtistTitleHistory(cCut.Get()), S_OK);
    EXPECT_EQ(m_cMan->UpdateArtistTitleHistory(nullptr), S_OK);
    ComPtr<_clsCut> cHistory;
    ASSERT_EQ(m_cMan->get_ArtistHistoryCut(Bstr(L"Artist of First").Get(), cHistory.Receive()), S_OK);
    EXPECT_TRUE(IsSame(cHistory, cCut));
    ASSERT_EQ(m_cMan->get_ArtistHistoryCut(Bstr(L"").Get(), cHistory.Receive()), S_OK);
    EXPECT_FALSE(cHistory);
}

TEST_F(SchedulerTest, ChangesOfTheDatabaseReachTheCategoriesAtOnce)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    const auto cLevel = Level(L"Rock", L"1");
    ComPtr<_clsCollection> colCuts;
    ASSERT_EQ(cLevel->get_SchedCuts(colCuts.Receive()), S_OK);
    const auto cSecond = AddCut(L"Second", L"Rock", 1);
    EXPECT_EQ(Titles(colCuts.Get()), (Texts{L"First", L"Second"})) << "the collection is the level's own";
    LONG lRemoved = 0;
    ASSERT_EQ(m_cDataBase->RemoveCuts(CollectionOf({Object(cSecond)}).Get(), &lRemoved), S_OK);
    EXPECT_EQ(Titles(colCuts.Get()), Texts{L"First"});
}

TEST_F(SchedulerTest, ALevelTakesItsCutsFromAnyCollection)
{
    AddCut(L"First", L"Rock", 1);
    AddCut(L"Second", L"Rock", 1);
    Populate();
    const auto cLevel = Level(L"Rock", L"1");
    ComPtr<_clsCollection> colCuts;
    ASSERT_EQ(cLevel->get_SchedCuts(colCuts.Receive()), S_OK);
    Variant cFirst;
    Variant cSecond;
    ASSERT_EQ(colCuts->get_Item(Long(1), &cFirst), S_OK);
    ASSERT_EQ(colCuts->get_Item(Long(2), &cSecond), S_OK);
    const auto colHosts = NewObject<HostCollection>();
    colHosts->m_colItems = {{L"", cSecond}, {L"", cFirst}};
    ASSERT_EQ(cLevel->putref_SchedCuts(colHosts.Get()), S_OK);
    EXPECT_EQ(TitlesIn(cLevel), (Texts{L"Second", L"First"}));
    ASSERT_EQ(cLevel->putref_SchedCuts(CollectionOf({cFirst, cSecond}).Get()), S_OK);
    EXPECT_EQ(TitlesIn(cLevel), (Texts{L"First", L"Second"}));

    EXPECT_EQ(cLevel->putref_SchedCuts(nullptr), S_OK);
    BoxAnswerer cAnswerer;
    EXPECT_EQ(cLevel->putref_SchedCuts(CollectionOf({cFirst, Long(1)}).Get()), S_OK);
    EXPECT_EQ(cLevel->putref_SchedCuts(m_cMan.Get()), S_OK);
    EXPECT_EQ(cAnswerer.Stop(),
              (Texts{L"SchedCuts [clsCat]: Handled Error!\r\nType mismatch\r\n13",
                     L"SchedCuts [clsCat]: Handled Error!\r\nObject not a collection\r\n451"}));
    EXPECT_EQ(TitlesIn(cLevel), (Texts{L"First", L"Second"})) << "nothing changed";
}

TEST_F(SchedulerTest, AMainCategorysCutsAreACopy)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    ComPtr<_clsCollection> colCuts;
    ASSERT_EQ(MainCat(L"Rock")->get_SchedCuts(colCuts.Receive()), S_OK);
    ASSERT_EQ(colCuts->Remove(Long(1)), S_OK);
    EXPECT_EQ(TitlesIn(MainCat(L"Rock")), Texts{L"First"});
}

TEST_F(SchedulerTest, ALevelThatAHostKeepsWorksAfterItsManagerIsGone)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    const auto cLevel = Level(L"Rock", L"1");
    m_cMan = nullptr;
    EXPECT_EQ(LongOfProperty(cLevel, &_clsCat::get_TotalCuts), 1);
    ComPtr<_clsCat> cMainCat;
    EXPECT_EQ(cLevel->get_MainCat(cMainCat.Receive()), S_OK);
    EXPECT_FALSE(cMainCat) << "a back reference keeps nothing alive";
    ComPtr<_clsCatRules> cRules;
    ASSERT_EQ(cLevel->get_Rules(cRules.Receive()), S_OK);
    EXPECT_EQ(cRules->put_ArtistSepMins(25), S_OK);
}

TEST_F(SchedulerTest, RulesAreSavedWhenTheirLastHolderLetsThemGo)
{
    AddCut(L"First", L"Rock", 2);
    Populate();
    const auto file = Folder() / L"Scheduler" / L"Rules" / L"Rock\u00AC\u00AC\u00AC2.rls";
    auto cLevel = Level(L"Rock", L"2");
    ComPtr<_clsCatRules> cRules;
    ASSERT_EQ(cLevel->get_Rules(cRules.Receive()), S_OK);
    EXPECT_EQ(TextOfProperty(cRules, &_clsCatRules::get_CatID), L"Rock\u00AC\u00AC\u00AC2");
    EXPECT_EQ(LongOfProperty(cRules, &_clsCatRules::get_AlbumSepMins), -1);
    EXPECT_EQ(LongOfProperty(cRules, &_clsCatRules::get_ArtistSepMins), 60) << "the global separation";
    cLevel = nullptr;
    m_cMan = nullptr;
    EXPECT_FALSE(std::filesystem::exists(file));
    cRules = nullptr;
    EXPECT_EQ(std::filesystem::file_size(file), 69u);
}

TEST_F(SchedulerTest, ACategoryTakesAnotherRulesObject)
{
    const auto cCat = Create<_clsCat>(CLSID_clsCat);
    const auto cRules = Create<_clsCatRules>(CLSID_clsCatRules);
    ASSERT_EQ(cCat->putref_Rules(cRules.Get()), S_OK);
    ComPtr<_clsCatRules> cBack;
    ASSERT_EQ(cCat->get_Rules(cBack.Receive()), S_OK);
    EXPECT_TRUE(IsSame(cBack, cRules));
}

TEST_F(SchedulerTest, TerminationSavesTheCategories)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    const auto file = Folder() / L"Scheduler" / L"MainCats.txt";
    std::filesystem::remove(file);
    m_cMan = nullptr;
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(SchedulerTest, TheOrderIsSavedAndComesBack)
{
    AddCut(L"First", L"Rock", 1);
    const auto cSecond = AddCut(L"Second", L"Rock", 1);
    AddCut(L"Third", L"Rock", 1);
    Populate();
    ASSERT_EQ(
        m_cMan->MoveCutsInCategory(Level(L"Rock", L"1").Get(), CollectionOf({Object(cSecond)}).Get(), 99),
        S_OK);
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), (Texts{L"First", L"Third", L"Second"}));
    VARIANT_BOOL bSaved = VARIANT_FALSE;
    EXPECT_EQ(m_cMan->SaveHistoryAndOrdering(MainCat(L"Rock").Get(), &bSaved), S_OK);
    EXPECT_EQ(bSaved, VARIANT_TRUE);
    EXPECT_EQ(m_cMan->SaveHistoryAndOrdering(nullptr, &bSaved), S_OK);
    EXPECT_EQ(bSaved, VARIANT_TRUE);
    EXPECT_EQ(m_cMan->SaveCatNames(&bSaved), S_OK);
    EXPECT_EQ(bSaved, VARIANT_TRUE);
    m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    Populate();
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), (Texts{L"First", L"Third", L"Second"}));
    ComPtr<_clsCollection> colNames;
    ASSERT_EQ(m_cMan->colSavedCatNames(colNames.Receive()), S_OK);
    EXPECT_EQ(ItemsOf(colNames.Get()), Texts{L"Rock"});
}

TEST_F(SchedulerTest, AForeignCategoryIsATypeMismatch)
{
    // An object with the interface that is none of this library's.
    class ForeignCat final : public HostObject<_clsCat>
    {
    public:
        STDMETHODIMP get_MainCat(_clsCat**) override { return E_NOTIMPL; }
        STDMETHODIMP putref_MainCat(_clsCat*) override { return E_NOTIMPL; }
        STDMETHODIMP put_CatName(BSTR) override { return E_NOTIMPL; }
        STDMETHODIMP get_CatName(BSTR*) override { return E_NOTIMPL; }
        STDMETHODIMP get_CatLevel(LONG*) override { return E_NOTIMPL; }
        STDMETHODIMP put_CatLevel(LONG) override { return E_NOTIMPL; }
        STDMETHODIMP get_Rules(_clsCatRules**) override { return E_NOTIMPL; }
        STDMETHODIMP putref_Rules(_clsCatRules*) override { return E_NOTIMPL; }
        STDMETHODIMP get_AverageRunTimemS(LONG*) override { return E_NOTIMPL; }
        STDMETHODIMP get_SchedCuts(_clsCollection**) override { return E_NOTIMPL; }
        STDMETHODIMP putref_SchedCuts(IDispatch*) override { return E_NOTIMPL; }
        STDMETHODIMP AddCut(_clsCut*, VARIANT_BOOL*, VARIANT_BOOL*) override { return E_NOTIMPL; }
        STDMETHODIMP RemoveCut(_clsCut*, VARIANT_BOOL*) override { return E_NOTIMPL; }
        STDMETHODIMP get_TotalCuts(LONG*) override { return E_NOTIMPL; }
        STDMETHODIMP get_SubCats(_clsCollection**) override { return E_NOTIMPL; }
        STDMETHODIMP AddSubCat(_clsCat*, VARIANT_BOOL*) override { return E_NOTIMPL; }
        STDMETHODIMP RemoveSubCat(_clsCat*, VARIANT_BOOL*) override { return E_NOTIMPL; }
        STDMETHODIMP get_CatID(BSTR*) override { return E_NOTIMPL; }
    };
    const auto cForeign = NewObject<ForeignCat>();
    VARIANT_BOOL bResult = VARIANT_TRUE;
    EXPECT_EQ(m_cMan->SaveHistoryAndOrdering(cForeign.Get(), &bResult), ErrorResult(13));
    BoxAnswerer cAnswerer;
    Bstr sList;
    EXPECT_EQ(m_cMan->ListCats(CollectionOf({Object(cForeign)}).Get(), sList.Receive()), S_OK);
    EXPECT_EQ(sList.Text(), L"");
    EXPECT_EQ(cAnswerer.Stop(), Texts{L"Error in ListCats [cSchedMan]: 13 Type mismatch"});
}

TEST_F(SchedulerTest, ItemsOfTheWrongKindAreShownUnderTheMembersTitle)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    const auto cLevel = Level(L"Rock", L"1");
    const auto colWrong = CollectionOf({Long(1)});
    const auto colRight = CollectionOf({Object(cLevel)});
    VARIANT_BOOL bResult = VARIANT_TRUE;
    Bstr sList;
    BoxAnswerer cAnswerer;
    EXPECT_EQ(m_cMan->MoveCutsInCategory(cLevel.Get(), colWrong.Get(), 1), S_OK);
    EXPECT_EQ(m_cMan->ShuffleCategories(colWrong.Get(), VARIANT_FALSE), S_OK);
    EXPECT_EQ(m_cMan->ListCats(colWrong.Get(), sList.Receive()), S_OK);
    EXPECT_EQ(m_cMan->DeleteCats(colWrong.Get(), &bResult), S_OK);
    EXPECT_EQ(bResult, VARIANT_FALSE);
    EXPECT_EQ(m_cMan->DoMassCatChange(eCopyHere, colWrong.Get(), cLevel.Get(), colRight.Get(), &bResult),
              S_OK);
    EXPECT_EQ(m_cMan->DoMassCatChange(eCopyHere, colRight.Get(), cLevel.Get(), colWrong.Get(), &bResult),
              S_OK);
    Texts colExpected;
    for (const wchar_t* sMember : {L"InsertCuts", L"ShuffleCategories", L"ListCats", L"DeleteCats",
                                   L"DoMassCatChange", L"DoMassCatChange"})
        colExpected.push_back(L"Error in " + std::wstring(sMember) + L" [cSchedMan]: 13 Type mismatch");
    EXPECT_EQ(cAnswerer.Stop(), colExpected);
    EXPECT_EQ(TitlesIn(cLevel), Texts{L"First"});
}

class EditingTest : public SchedulerTest
{
protected:
    EditingTest()
    {
        AddCut(L"First", L"Rock", 1);
        AddCut(L"Second", L"Rock/Pop", 1);
        AddCut(L"Third", L"Rock", 2);
        Populate();
    }
};

TEST_F(EditingTest, ACategoryIsCreatedUnderTheNameThatComesBack)
{
    BSTR sName = NewBstr(L"Jazz/Funk");
    VARIANT_BOOL bCreated = VARIANT_FALSE;
    EXPECT_EQ(m_cMan->CreateMainCat(&sName, &bCreated), S_OK);
    EXPECT_EQ(bCreated, VARIANT_TRUE);
    EXPECT_EQ(TextOf(sName), L"Jazz_Funk");
    SysFreeString(sName);
    EXPECT_EQ(LongOfProperty(Level(L"Jazz_Funk", L"1"), &_clsCat::get_CatLevel), 1);

    Variant cName = Text(L"A?B");
    EXPECT_EQ(Call(m_cMan.Get(), L"CreateMainCat", DISPATCH_METHOD, {ByReference(cName)}).cResult.boolVal,
              VARIANT_TRUE);
    EXPECT_EQ(TextOf(cName.bstrVal), L"A_B");
}

TEST_F(EditingTest, CategoriesAreListedByNameAndLevel)
{
    Bstr sList;
    ASSERT_EQ(m_cMan->ListCats(CollectionOf({Object(MainCat(L"Pop")), Object(Level(L"Rock", L"2"))}).Get(),
                               sList.Receive()),
              S_OK);
    EXPECT_EQ(sList.Text(), L"Pop, Rock 2");
    ASSERT_EQ(m_cMan->ListCats(nullptr, sList.Receive()), S_OK);
    EXPECT_EQ(sList.Text(), L"");
}

TEST_F(EditingTest, ALevelIsDeletedWithItsFiling)
{
    VARIANT_BOOL bDeleted = VARIANT_FALSE;
    ASSERT_EQ(m_cMan->DeleteCats(CollectionOf({Object(Level(L"Rock", L"2"))}).Get(), &bDeleted), S_OK);
    EXPECT_EQ(bDeleted, VARIANT_TRUE);
    EXPECT_EQ(TitlesIn(MainCat(L"Rock")), (Texts{L"First", L"Second"}));
}

TEST_F(EditingTest, AShuffleKeepsTheCuts)
{
    ASSERT_EQ(m_cMan->ShuffleCategories(CollectionOf({Object(MainCat(L"Rock"))}).Get(), VARIANT_FALSE), S_OK);
    auto colTitles = TitlesIn(Level(L"Rock", L"1"));
    std::sort(colTitles.begin(), colTitles.end());
    EXPECT_EQ(colTitles, (Texts{L"First", L"Second"}));
}

TEST_F(EditingTest, CutsAreMovedAndTheFlagTellsOfNewLevels)
{
    ComPtr<_clsCollection> colCuts;
    ASSERT_EQ(Level(L"Rock", L"1")->get_SchedCuts(colCuts.Receive()), S_OK);
    Variant cFirst;
    ASSERT_EQ(colCuts->get_Item(Text(L"C:\\First.mp3"), &cFirst), S_OK);
    VARIANT_BOOL bCreated = VARIANT_FALSE;
    const auto colFrom = CollectionOf({Object(Level(L"Rock", L"1"))});
    ASSERT_EQ(m_cMan->DoMassCatChange(::eMoveHere, colFrom.Get(), Level(L"Rock", L"2").Get(),
                                      CollectionOf({cFirst}).Get(), &bCreated),
              S_OK);
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"2")), (Texts{L"Third", L"First"}));
    EXPECT_EQ(bCreated, VARIANT_FALSE);
    EXPECT_EQ(m_cMan->DoMassCatChange(::eMoveHere, nullptr, nullptr, nullptr, nullptr), S_OK);
}

TEST_F(EditingTest, RemovingACutCollectsTheCategoriesItLeft)
{
    ComPtr<_clsCollection> colCuts;
    ASSERT_EQ(m_cDataBase->get_Cuts(colCuts.Receive()), S_OK);
    Variant cItem;
    ASSERT_EQ(colCuts->get_Item(Text(L"C:\\Second.mp3"), &cItem), S_OK);
    const auto cSecond = ObjectIn<_clsCut>(cItem);
    _clsCollection* pAffected = nullptr;
    ASSERT_EQ(m_cMan->RemoveCutFromCategory(MainCat(L"Pop").Get(), cSecond.Get(), &pAffected, 0), S_OK);
    const auto colAffected = ComPtr<_clsCollection>::Adopt(pAffected);
    ASSERT_TRUE(colAffected);
    cItem = Variant();
    ASSERT_EQ(colAffected->get_Item(Text(L"pop"), &cItem), S_OK);
    EXPECT_TRUE(IsSame(ObjectIn<_clsCat>(cItem), MainCat(L"Pop")));

    // A collection that is handed in is added to, once for each category.
    const auto colGiven = Create<_clsCollection>(CLSID_clsCollection);
    pAffected = colGiven.Get();
    ASSERT_EQ(m_cMan->RemoveCutFromCategory(nullptr, cSecond.Get(), &pAffected, 0), S_OK);
    EXPECT_EQ(pAffected, colGiven.Get());
    ASSERT_EQ(m_cMan->RemoveCutFromCategory(nullptr, cSecond.Get(), &pAffected, 0), S_OK);
    EXPECT_EQ(LongOfProperty(colGiven, &_clsCollection::get_Count), 1);
    EXPECT_EQ(TextOfProperty(cSecond, &_clsCut::get_CategoryText), L"");
}

TEST_F(EditingTest, AShuffledCollectionIsANewOneWithTheSameItemsAndKeys)
{
    const auto colOld = Create<_clsCollection>(CLSID_clsCollection);
    for (std::int32_t i = 1; i <= 20; ++i)
        ASSERT_EQ(colOld->Add(Long(i), Text(std::to_wstring(i)), Variant::Omitted(), Variant::Omitted()),
                  S_OK);
    const Texts colBefore = ItemsOf(colOld.Get());
    Variant cVariable = Object(colOld);
    ASSERT_EQ(m_cMan->RandomizeCollection(&cVariable), S_OK);
    const auto colNew = ObjectIn<_clsCollection>(cVariable);
    ASSERT_TRUE(colNew);
    EXPECT_FALSE(IsSame(colNew, colOld));
    EXPECT_EQ(ItemsOf(colOld.Get()), colBefore) << "the collection handed in stays as it is";
    Texts colAfter = ItemsOf(colNew.Get());
    EXPECT_TRUE(std::is_permutation(colAfter.begin(), colAfter.end(), colBefore.begin(), colBefore.end()));
    EXPECT_NE(colAfter, colBefore) << "one chance in 20!";
    Variant cItem;
    ASSERT_EQ(colNew->get_Item(Text(L"7"), &cItem), S_OK);
    EXPECT_EQ(cItem.lVal, 7);
}

TEST_F(EditingTest, AShuffledCollectionReachesATypedVariable)
{
    const auto colOld = CollectionOf({Long(1), Long(2)});
    IDispatch* pVariable = ComPtr<_clsCollection>(colOld).Detach();
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_DISPATCH;
    reference.ppdispVal = &pVariable;
    ASSERT_EQ(m_cMan->RandomizeCollection(&reference), S_OK);
    const auto colNew = ComPtr<IDispatch>::Adopt(pVariable);
    EXPECT_FALSE(IsSame(colNew, colOld));
    EXPECT_EQ(ItemsOf(colNew.Get()).size(), 2u);
    EXPECT_EQ(reference.vt, VT_BYREF | VT_DISPATCH);
    colOld->AddRef();
    EXPECT_EQ(colOld->Release(), 1u) << "the variable has let go of it";

    Variant cVariable = Object(colOld);
    reference = ByReference(cVariable);
    ASSERT_EQ(m_cMan->RandomizeCollection(&reference), S_OK);
    EXPECT_FALSE(IsSame(ObjectIn<IDispatch>(cVariable), colOld));
    EXPECT_EQ(reference.vt, VT_BYREF | VT_VARIANT);
}

TEST_F(EditingTest, WhatCannotBeShuffledIsShownAndStaysAsItIs)
{
    Variant cVariable = Object(m_cMan);
    Variant cNothing = Long(7);
    BoxAnswerer cAnswerer;
    EXPECT_EQ(m_cMan->RandomizeCollection(&cVariable), S_OK);
    EXPECT_EQ(m_cMan->RandomizeCollection(&cNothing), S_OK);
    const Texts colSaid = cAnswerer.Stop();
    ASSERT_EQ(colSaid.size(), 2u);
    EXPECT_TRUE(colSaid[0].starts_with(L"Error in Randomize Collection : 451 "))
        << testing::PrintToString(colSaid[0]);
    EXPECT_TRUE(colSaid[1].starts_with(L"Error in Randomize Collection : 91 "))
        << testing::PrintToString(colSaid[1]);
    EXPECT_TRUE(IsSame(ObjectIn<_clsSchedMan>(cVariable), m_cMan));
    EXPECT_EQ(cNothing.lVal, 7);
}

// Objects that a host kept while the categories were built anew.
class StaleTest : public EditingTest
{
protected:
    StaleTest() : m_cOldRock(MainCat(L"Rock")), m_cOldLevel(Level(L"Rock", L"1"))
    {
        Populate();
        EXPECT_FALSE(IsSame(m_cOldLevel, Level(L"Rock", L"1")));
    }
    // Every cut stands once in each category it names, and in no other.
    ~StaleTest() override
    {
        ComPtr<_clsCollection> colCuts;
        EXPECT_EQ(m_cDataBase->get_Cuts(colCuts.Receive()), S_OK);
        std::map<std::wstring, Texts> expected{{L"Rock", {}}, {L"Pop", {}}};
        ForEachItem(colCuts.Get(), [&](const Variant& cItem) {
            const auto cCut = ObjectIn<_clsCut>(cItem);
            const auto sNames = TextOfProperty(cCut, &_clsCut::get_CategoryText);
            for (auto& [sName, colTitles] : expected)
                if (sNames.find(sName) != std::wstring::npos)
                    colTitles.push_back(TextOfProperty(cCut, &_clsCut::get_Title));
        });
        for (auto& [sName, colTitles] : expected)
        {
            Texts colFound = TitlesIn(MainCat(sName));
            std::sort(colFound.begin(), colFound.end());
            std::sort(colTitles.begin(), colTitles.end());
            EXPECT_EQ(colFound, colTitles) << testing::PrintToString(sName);
        }
    }
    ComPtr<_clsCut> Cut(std::size_t position)
    {
        ComPtr<_clsCollection> colCuts;
        EXPECT_EQ(Level(L"Rock", L"1")->get_SchedCuts(colCuts.Receive()), S_OK);
        Variant cItem;
        EXPECT_EQ(colCuts->get_Item(Long(static_cast<std::int32_t>(position)), &cItem), S_OK);
        return ObjectIn<_clsCut>(cItem);
    }

    ComPtr<_clsCat> m_cOldRock;
    ComPtr<_clsCat> m_cOldLevel;
    BoxAnswerer m_cAnswerer; // an edit may be refused with a box
};

TEST_F(StaleTest, CutsMovedWithinALevelOfBeforeAreNeitherLostNorDoubled)
{
    m_cMan->MoveCutsInCategory(m_cOldLevel.Get(), CollectionOf({Object(Cut(1))}).Get(), 99);
    m_cMan->MoveCutsInCategory(m_cOldRock.Get(), CollectionOf({Object(Cut(1))}).Get(), 99);
    EXPECT_EQ(LongOfProperty(Level(L"Rock", L"1"), &_clsCat::get_TotalCuts), 2);
}

TEST_F(StaleTest, ACutRemovedFromACategoryOfBeforeStandsWhereItSays)
{
    for (const auto& cOld : {m_cOldRock, m_cOldLevel})
    {
        _clsCollection* pAffected = nullptr;
        m_cMan->RemoveCutFromCategory(cOld.Get(), Cut(1).Get(), &pAffected, 0);
        ComPtr<_clsCollection>::Adopt(pAffected);
    }
}

TEST_F(StaleTest, CutsMovedIntoALevelOfBeforeStandWhereTheySay)
{
    VARIANT_BOOL bCreated = VARIANT_FALSE;
    m_cMan->DoMassCatChange(::eMoveHere, CollectionOf({Object(m_cOldLevel)}).Get(), m_cOldLevel.Get(),
                            CollectionOf({Object(Cut(1))}).Get(), &bCreated);
}

TEST_F(EditingTest, AHostsOwnCollectionIsShuffledToo)
{
    const auto colHosts = NewObject<HostCollection>();
    colHosts->m_colItems = {{L"a", Long(1)}, {L"b", Long(2)}};
    Variant cVariable = Object(colHosts);
    ASSERT_EQ(m_cMan->RandomizeCollection(&cVariable), S_OK);
    Texts colAfter = ItemsOf(cVariable.pdispVal);
    std::sort(colAfter.begin(), colAfter.end());
    EXPECT_EQ(colAfter, (Texts{L"1", L"2"}));
}

} // namespace

} // namespace ravlo
