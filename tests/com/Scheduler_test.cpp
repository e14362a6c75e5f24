// SPDX-License-Identifier: MIT
// The scheduler over the embedded database, as an early-bound host uses the two together.
#include "com/BoxAnswerer.h"
#include "com/Station.h"

namespace ravlo
{

namespace
{

using Texts = std::vector<std::wstring>;

class SchedulerTest : public ComStationTest
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
    void Ask(const wchar_t* sKey, Answer& answer)
    {
        _clsCat* pMainCat = answer.cMainCat.Detach();
        _clsCat* pSubCat = answer.cSubCat.Detach();
        BSTR sMainCatKey = answer.sMainCatKey.Detach();
        answer.cCut = Get(m_cMan, &_clsSchedMan::get_NextCutFromRotation, sKey, false, nullptr, &pMainCat,
                          &pSubCat, &sMainCatKey, true, false);
        answer.cMainCat = ComPtr<_clsCat>::Adopt(pMainCat);
        answer.cSubCat = ComPtr<_clsCat>::Adopt(pSubCat);
        *answer.sMainCatKey.Receive() = sMainCatKey;
    }
};

TEST_F(SchedulerTest, NothingIsKnownBeforePopulation)
{
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_DataBase));
    ComPtr<_clsCollection> col;
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_colMainCats));
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_colCuts, L"Rock", 0));
    EXPECT_EQ(m_cMan->get_colIllegalChars(col.Receive()), S_OK);
    EXPECT_EQ(ItemsOf(col.Get()), (Texts{L"*", L"/", L":", L"<", L">", L"?", L"\\", L"|", L"\""}));
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_RotatesAllowed));
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_UIShowing));
    EXPECT_EQ(m_cMan->ReloadAll(), S_OK);
}

TEST_F(SchedulerTest, PopulationFilesTheDatabasesOwnCutsAndRemembersThePath)
{
    const auto cFirst = AddCut(L"First", L"Rock", 1);
    AddCut(L"Second", L"Rock/Pop", 2);
    Populate();
    EXPECT_EQ(Get(m_cMan, &_clsSchedMan::get_AppPath), Folder().wstring() + L"\\");
    EXPECT_EQ(TitlesIn(MainCat(L"Rock")), (Texts{L"First", L"Second"}));
    EXPECT_EQ(TitlesIn(Level(L"Pop", L"2")), Texts{L"Second"});
    const auto colCuts = Get(m_cMan, &_clsSchedMan::get_colCuts, L"rock", 1);
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(colCuts, Text(L"c:\\FIRST.mp3")), cFirst));
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_DataBase), m_cDataBase));
}

TEST_F(SchedulerTest, PopulationReportsItsProgress)
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
    EXPECT_EQ(Get(answer.cCut, &_clsCut::get_Title), L"First");
    EXPECT_EQ(Get(answer.cCut, &_clsCut::get_KindCode), 0);
    EXPECT_EQ(Get(answer.cCut, &_clsCut::get_CategoryKey), L"Rock\t1");
    EXPECT_TRUE(IsSame(answer.cMainCat, MainCat(L"Rock")));
    EXPECT_TRUE(IsSame(answer.cSubCat, Level(L"Rock", L"1")));
    EXPECT_EQ(answer.sMainCatKey.Text(), L"Rock\t0");
}

TEST_F(SchedulerTest, OutputsAreOptional)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    EXPECT_EQ(Get(Next(L"Rock\t1"), &_clsCut::get_KindCode), 0);
    EXPECT_EQ(m_cMan->get_NextCutFromRotation(nullptr, VARIANT_FALSE, nullptr, nullptr, nullptr, nullptr,
                                              VARIANT_TRUE, VARIANT_FALSE, nullptr),
              E_POINTER);
}

TEST_F(SchedulerTest, RotationHappensWhenTheHostAllowsIt)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    EXPECT_EQ(Get(Next(L"Rock\t1", false), &_clsCut::get_KindCode), 17);
    ASSERT_EQ(m_cMan->put_RotatesAllowed(VARIANT_TRUE), S_OK);
    EXPECT_EQ(Get(Next(L"Rock\t1", false), &_clsCut::get_KindCode), 0);
}

TEST_F(SchedulerTest, APlayIsFoundByArtistTitleAndAlbum)
{
    const auto cCut = AddCut(L"First", L"Rock", 1);
    ASSERT_EQ(cCut->put_Album(Bstr(L"Album").Get()), S_OK);
    Populate();
    const auto cCopy = Get(cCut, &_clsCut::CloneCut);
    ASSERT_EQ(cCopy->put_LastPlayed(45000), S_OK);
    ASSERT_EQ(m_cMan->UpdateArtistTitleHistory(cCopy.Get()), S_OK);
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_ArtistHistoryCut, L"artist of first"), cCut));
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_AlbumHistoryCut, L"ALBUM"), cCut));
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_TitleHistoryCut, L"never played"));
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
    const auto colCuts = Get(cLevel, &_clsCat::get_SchedCuts);
    const auto cSecond = AddCut(L"Second", L"Rock", 1);
    EXPECT_EQ(Titles(colCuts.Get()), (Texts{L"First", L"Second"})) << "the collection is the level's own";
    RemoveCut(cSecond);
    EXPECT_EQ(Titles(colCuts.Get()), Texts{L"First"});
}

TEST_F(SchedulerTest, ALevelTakesItsCutsFromAnyCollection)
{
    AddCut(L"First", L"Rock", 1);
    AddCut(L"Second", L"Rock", 1);
    Populate();
    const auto cLevel = Level(L"Rock", L"1");
    const auto colCuts = Get(cLevel, &_clsCat::get_SchedCuts);
    const auto cFirst = Get(colCuts, &_clsCollection::get_Item, Long(1));
    const auto cSecond = Get(colCuts, &_clsCollection::get_Item, Long(2));
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
    const auto colCuts = Get(MainCat(L"Rock"), &_clsCat::get_SchedCuts);
    ASSERT_EQ(colCuts->Remove(Long(1)), S_OK);
    EXPECT_EQ(TitlesIn(MainCat(L"Rock")), Texts{L"First"});
}

TEST_F(SchedulerTest, ALevelOutlivesItsManager)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    const auto cLevel = Level(L"Rock", L"1");
    m_cMan = nullptr;
    EXPECT_EQ(Get(cLevel, &_clsCat::get_TotalCuts), 1);
    EXPECT_FALSE(Get(cLevel, &_clsCat::get_MainCat)) << "a back reference keeps nothing alive";
    const auto cRules = Get(cLevel, &_clsCat::get_Rules);
    EXPECT_EQ(cRules->put_ArtistSepMins(25), S_OK);
}

TEST_F(SchedulerTest, RulesAreSavedWithTheirLastRelease)
{
    AddCut(L"First", L"Rock", 2);
    Populate();
    const auto file = Folder() / L"Scheduler" / L"Rules" / L"Rock\u00AC\u00AC\u00AC2.rls";
    auto cLevel = Level(L"Rock", L"2");
    ComPtr<_clsCatRules> cRules;
    ASSERT_EQ(cLevel->get_Rules(cRules.Receive()), S_OK);
    EXPECT_EQ(Get(cRules, &_clsCatRules::get_CatID), L"Rock\u00AC\u00AC\u00AC2");
    EXPECT_EQ(Get(cRules, &_clsCatRules::get_AlbumSepMins), -1);
    EXPECT_EQ(Get(cRules, &_clsCatRules::get_ArtistSepMins), 60) << "the global separation";
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
    EXPECT_TRUE(IsSame(Get(cCat, &_clsCat::get_Rules), cRules));
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
    EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::SaveHistoryAndOrdering, MainCat(L"Rock")));
    EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::SaveHistoryAndOrdering, nullptr));
    EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::SaveCatNames));
    m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    Populate();
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), (Texts{L"First", L"Third", L"Second"}));
    EXPECT_EQ(ItemsOf(Get(m_cMan, &_clsSchedMan::colSavedCatNames).Get()), Texts{L"Rock"});
}

TEST_F(SchedulerTest, AForeignCategoryIsATypeMismatch)
{
    const auto cForeign = NewObject<HostCatObject>();
    VARIANT_BOOL bResult = VARIANT_TRUE;
    EXPECT_EQ(m_cMan->SaveHistoryAndOrdering(cForeign.Get(), &bResult), ErrorResult(13));
    BoxAnswerer cAnswerer;
    EXPECT_EQ(Get(m_cMan, &_clsSchedMan::ListCats, CollectionOf({Object(cForeign)})), L"");
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
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::DeleteCats, colWrong));
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
    EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::CreateMainCat, &sName));
    EXPECT_EQ(TextOf(sName), L"Jazz_Funk");
    SysFreeString(sName);
    EXPECT_EQ(Get(Level(L"Jazz_Funk", L"1"), &_clsCat::get_CatLevel), 1);

    Variant cName = Text(L"A?B");
    EXPECT_EQ(Call(m_cMan.Get(), L"CreateMainCat", DISPATCH_METHOD, {ByReference(cName)}).cResult.boolVal,
              VARIANT_TRUE);
    EXPECT_EQ(TextOf(cName.bstrVal), L"A_B");
}

TEST_F(EditingTest, CategoriesAreListedByNameAndLevel)
{
    EXPECT_EQ(Get(m_cMan, &_clsSchedMan::ListCats,
                  CollectionOf({Object(MainCat(L"Pop")), Object(Level(L"Rock", L"2"))})),
              L"Pop, Rock 2");
    EXPECT_EQ(Get(m_cMan, &_clsSchedMan::ListCats, nullptr), L"");
}

TEST_F(EditingTest, ALevelIsDeletedWithItsFiling)
{
    EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::DeleteCats, CollectionOf({Object(Level(L"Rock", L"2"))})));
    EXPECT_EQ(TitlesIn(MainCat(L"Rock")), (Texts{L"First", L"Second"}));
}

TEST_F(EditingTest, AShuffleKeepsTheCuts)
{
    ASSERT_EQ(m_cMan->ShuffleCategories(CollectionOf({Object(MainCat(L"Rock"))}).Get(), VARIANT_FALSE), S_OK);
    auto colTitles = TitlesIn(Level(L"Rock", L"1"));
    std::sort(colTitles.begin(), colTitles.end());
    EXPECT_EQ(colTitles, (Texts{L"First", L"Second"}));
}

TEST_F(EditingTest, CutsAreMovedAndTheFlagReportsNewLevels)
{
    const auto colCuts = Get(Level(L"Rock", L"1"), &_clsCat::get_SchedCuts);
    const auto cFirst = Get(colCuts, &_clsCollection::get_Item, Text(L"C:\\First.mp3"));
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
    const auto colCuts = Get(m_cDataBase, &_clsDataBase::get_Cuts);
    const auto cSecond = ItemAt<_clsCut>(colCuts, Text(L"C:\\Second.mp3"));
    _clsCollection* pAffected = nullptr;
    ASSERT_EQ(m_cMan->RemoveCutFromCategory(MainCat(L"Pop").Get(), cSecond.Get(), &pAffected, 0), S_OK);
    const auto colAffected = ComPtr<_clsCollection>::Adopt(pAffected);
    ASSERT_TRUE(colAffected);
    EXPECT_TRUE(IsSame(ItemAt<_clsCat>(colAffected, Text(L"pop")), MainCat(L"Pop")));

    // A collection that is handed in is added to, once for each category.
    const auto colGiven = Create<_clsCollection>(CLSID_clsCollection);
    pAffected = colGiven.Get();
    ASSERT_EQ(m_cMan->RemoveCutFromCategory(nullptr, cSecond.Get(), &pAffected, 0), S_OK);
    EXPECT_EQ(pAffected, colGiven.Get());
    ASSERT_EQ(m_cMan->RemoveCutFromCategory(nullptr, cSecond.Get(), &pAffected, 0), S_OK);
    EXPECT_EQ(Get(colGiven, &_clsCollection::get_Count), 1);
    EXPECT_EQ(Get(cSecond, &_clsCut::get_CategoryText), L"");
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
    const auto cItem = Get(colNew, &_clsCollection::get_Item, Text(L"7"));
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

TEST_F(EditingTest, AnErrorBoxShowsWhatCannotBeShuffled)
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
            const auto sNames = Get(cCut, &_clsCut::get_CategoryText);
            for (auto& [sName, colTitles] : expected)
                if (sNames.find(sName) != std::wstring::npos)
                    colTitles.push_back(Get(cCut, &_clsCut::get_Title));
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
        const auto colCuts = Get(Level(L"Rock", L"1"), &_clsCat::get_SchedCuts);
        return ItemAt<_clsCut>(colCuts, Long(static_cast<std::int32_t>(position)));
    }

    ComPtr<_clsCat> m_cOldRock;
    ComPtr<_clsCat> m_cOldLevel;
    BoxAnswerer m_cAnswerer; // an edit may be refused with a box
};

TEST_F(StaleTest, MovingInAStaleLevelLosesAndDoublesNoCut)
{
    m_cMan->MoveCutsInCategory(m_cOldLevel.Get(), CollectionOf({Object(Cut(1))}).Get(), 99);
    m_cMan->MoveCutsInCategory(m_cOldRock.Get(), CollectionOf({Object(Cut(1))}).Get(), 99);
    EXPECT_EQ(Get(Level(L"Rock", L"1"), &_clsCat::get_TotalCuts), 2);
}

TEST_F(StaleTest, RemovingFromAStaleCategoryKeepsNamesAndLevelsEqual)
{
    for (const auto& cOld : {m_cOldRock, m_cOldLevel})
    {
        _clsCollection* pAffected = nullptr;
        m_cMan->RemoveCutFromCategory(cOld.Get(), Cut(1).Get(), &pAffected, 0);
        ComPtr<_clsCollection>::Adopt(pAffected);
    }
}

TEST_F(StaleTest, MovingIntoAStaleLevelKeepsNamesAndLevelsEqual)
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
