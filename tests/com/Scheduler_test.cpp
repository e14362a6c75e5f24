// SPDX-License-Identifier: MIT
// The scheduler over the embedded database, as an early-bound host uses the two together.
#include "com/BoxAnswerer.h"
#include "com/Station.h"

namespace ravlo
{
namespace
{

class SchedulerTest : public ComStationTest
{
protected:
    // Plays a cut, by a copy of it.
    void Play(const ComPtr<_clsCut>& cCut)
    {
        const auto cCopy = Get(cCut, &_clsCut::CloneCut);
        Do(cCopy, &_clsCut::put_LastPlayed, 45000.0);
        Do(m_cMan, &_clsSchedMan::UpdateArtistTitleHistory, cCopy);
    }
};

TEST_F(SchedulerTest, NothingIsKnownBeforePopulation)
{
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_DataBase));
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_colMainCats));
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_colCuts, L"Rock", 0));
    EXPECT_EQ(ItemsOf(Get(m_cMan, &_clsSchedMan::get_colIllegalChars)),
              (Texts{L"*", L"/", L":", L"<", L">", L"?", L"\\", L"|", L"\""}));
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_RotatesAllowed));
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_UIShowing));
    EXPECT_EQ(m_cMan->ReloadAll(), S_OK);
}

TEST_F(SchedulerTest, PopulationPlacesTheDatabasesOwnCuts)
{
    const auto cFirst = AddCut(L"First");
    AddCut(L"Second", L"Rock/Pop", 2);
    const auto cSink = NewObject<Sink>(DIID___clsSchedMan);
    Advise(PointOf(m_cMan, DIID___clsSchedMan), cSink);
    Populate();
    EXPECT_EQ(Get(m_cMan, &_clsSchedMan::get_AppPath), Folder().wstring() + L"\\");
    EXPECT_EQ(TitlesIn(MainCat(L"Rock")), (Texts{L"First", L"Second"}));
    EXPECT_EQ(TitlesIn(Level(L"Pop", L"2")), Texts{L"Second"});
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(CutsOf(L"rock", 1), Text(L"c:\\FIRST.mp3")), cFirst));
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_DataBase), m_cDataBase));

    std::vector<Heard> colHeard = cSink->m_colHeard;
    std::erase_if(colHeard, [](const Heard& heard) { return heard.lEvent == 3; });
    ASSERT_GE(colHeard.size(), 3u);
    EXPECT_EQ(colHeard[0], (Heard{2, L"Initialising Scheduler - creating categories|2"}));
    EXPECT_EQ(colHeard[1], (Heard{4, L"Got Main and Sub Categories for scheduler."}));
    EXPECT_EQ(colHeard[2], (Heard{2, L"Creating Scheduler Items|2"}));
}

TEST_F(SchedulerTest, TheChosenCutComesWithItsCategoryLevelAndKey)
{
    AddCut(L"First");
    Populate();
    // The variables' former values are released.
    _clsCat* pMainCat = Create<_clsCat>(CLSID_clsCat).Detach();
    _clsCat* pSubCat = ComPtr<_clsCat>(pMainCat).Detach();
    BSTR sMainCatKey = NewBstr(L"before");
    const auto cCut = Get(m_cMan, &_clsSchedMan::get_NextCutFromRotation, L"Rock\t1", false, nullptr,
                          &pMainCat, &pSubCat, &sMainCatKey, true, false);
    EXPECT_EQ(Get(cCut, &_clsCut::get_Title), L"First");
    EXPECT_EQ(Get(cCut, &_clsCut::get_KindCode), 0);
    EXPECT_EQ(Get(cCut, &_clsCut::get_CategoryKey), L"Rock\t1");
    EXPECT_TRUE(IsSame(ComPtr<_clsCat>::Adopt(pMainCat), MainCat(L"Rock")));
    EXPECT_TRUE(IsSame(ComPtr<_clsCat>::Adopt(pSubCat), Level(L"Rock", L"1")));
    EXPECT_EQ(TextOf(sMainCatKey), L"Rock\t0");
    SysFreeString(sMainCatKey);

    EXPECT_EQ(Get(Next(L"Rock\t1"), &_clsCut::get_KindCode), 0) << "outputs are optional";
    EXPECT_EQ(m_cMan->get_NextCutFromRotation(nullptr, VARIANT_FALSE, nullptr, nullptr, nullptr, nullptr,
                                              VARIANT_TRUE, VARIANT_FALSE, nullptr),
              E_POINTER);
    EXPECT_EQ(Kind(L"Rock\t1"), 17) << "rotation is not allowed yet";
    AllowRotation();
    EXPECT_EQ(Kind(L"Rock\t1"), 0);
}

TEST_F(SchedulerTest, APlayIsFoundByArtistTitleAndAlbum)
{
    EXPECT_EQ(m_cMan->UpdateArtistTitleHistory(nullptr), S_OK) << "before a population, too";
    const auto cCut = AddCut(L"First");
    Do(cCut, &_clsCut::put_Album, L"Album");
    Populate();
    Play(cCut);
    EXPECT_EQ(m_cMan->UpdateArtistTitleHistory(nullptr), S_OK) << "nothing changes no history";
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_ArtistHistoryCut, L"artist of first"), cCut));
    EXPECT_TRUE(IsSame(Get(m_cMan, &_clsSchedMan::get_AlbumHistoryCut, L"ALBUM"), cCut));
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_TitleHistoryCut, L"never played"));
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::get_ArtistHistoryCut, L""));
}

TEST_F(SchedulerTest, ChangesOfTheDatabaseReachTheCategoriesAtOnce)
{
    AddCut(L"First");
    Populate();
    const auto colCuts = CutsOf(Level(L"Rock", L"1"));
    const auto cSecond = AddCut(L"Second");
    EXPECT_EQ(Titles(colCuts), (Texts{L"First", L"Second"})) << "the collection is the level's own";
    RemoveCut(cSecond);
    EXPECT_EQ(Titles(colCuts), Texts{L"First"});
    Do(CutsOf(MainCat(L"Rock")), &_clsCollection::Remove, Long(1));
    EXPECT_EQ(TitlesIn(MainCat(L"Rock")), Texts{L"First"}) << "a main category hands out a copy";
}

TEST_F(SchedulerTest, ALevelTakesItsCutsFromAnyCollection)
{
    const Variant cFirst = Object(AddCut(L"First"));
    const Variant cSecond = Object(AddCut(L"Second"));
    Populate();
    const auto cLevel = Level(L"Rock", L"1");
    const auto colHosts = NewObject<HostCollection>();
    colHosts->m_colItems = {{L"", cSecond}, {L"", cFirst}};
    Do(cLevel, &_clsCat::putref_SchedCuts, colHosts);
    EXPECT_EQ(TitlesIn(cLevel), (Texts{L"Second", L"First"}));
    Do(cLevel, &_clsCat::putref_SchedCuts, CollectionOf({cFirst, cSecond}));
    EXPECT_EQ(TitlesIn(cLevel), (Texts{L"First", L"Second"}));

    Do(cLevel, &_clsCat::putref_SchedCuts, nullptr);
    const auto setWrong = [&] {
        Do(cLevel, &_clsCat::putref_SchedCuts, CollectionOf({cFirst, Long(1)}));
        Do(cLevel, &_clsCat::putref_SchedCuts, m_cMan);
    };
    EXPECT_EQ(BoxesOf(setWrong),
              (Texts{L"SchedCuts [clsCat]: Handled Error!\r\nType mismatch\r\n13",
                     L"SchedCuts [clsCat]: Handled Error!\r\nObject not a collection\r\n451"}));
    EXPECT_EQ(TitlesIn(cLevel), (Texts{L"First", L"Second"})) << "nothing changed";
}

TEST_F(SchedulerTest, ALevelAndItsRulesOutliveTheirManager)
{
    AddCut(L"First");
    Populate();
    auto cLevel = Level(L"Rock", L"1");
    auto cRules = Get(cLevel, &_clsCat::get_Rules);
    EXPECT_EQ(Get(cRules, &_clsCatRules::get_CatID), L"Rock\u00AC\u00AC\u00AC1");
    EXPECT_EQ(Get(cRules, &_clsCatRules::get_AlbumSepMins), -1);
    EXPECT_EQ(Get(cRules, &_clsCatRules::get_ArtistSepMins), 60) << "the global separation";
    const auto list = Folder() / L"Scheduler" / L"MainCats.txt";
    std::filesystem::remove(list);
    m_cMan = nullptr;
    EXPECT_TRUE(std::filesystem::exists(list)) << "the manager's end saves the categories";
    EXPECT_EQ(CutsIn(cLevel), 1);
    EXPECT_FALSE(Get(cLevel, &_clsCat::get_MainCat)) << "a back reference keeps nothing alive";
    cLevel = nullptr;
    const auto file = Folder() / L"Scheduler" / L"Rules" / L"Rock\u00AC\u00AC\u00AC1.rls";
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(cRules->put_ArtistSepMins(25), S_OK);
    std::filesystem::remove(file);
    cRules = nullptr;
    EXPECT_EQ(std::filesystem::file_size(file), 69u) << "their last release saves the rules";
}

TEST_F(SchedulerTest, ACategoryTakesAnotherRulesObject)
{
    const auto cCat = Create<_clsCat>(CLSID_clsCat);
    const auto cRules = Create<_clsCatRules>(CLSID_clsCatRules);
    Do(cCat, &_clsCat::putref_Rules, cRules);
    EXPECT_TRUE(IsSame(Get(cCat, &_clsCat::get_Rules), cRules));
}

TEST_F(SchedulerTest, TheOrderIsSavedAndRestored)
{
    for (const wchar_t* sTitle : {L"First", L"Second", L"Third"})
        AddCut(sTitle);
    Populate();
    const Texts colOrder{L"First", L"Third", L"Second"};
    Do(m_cMan, &_clsSchedMan::MoveCutsInCategory, Level(L"Rock", L"1"), CollectionOf(Cut(L"Second")), 99);
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), colOrder);
    EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::SaveHistoryAndOrdering, MainCat(L"Rock")));
    EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::SaveHistoryAndOrdering, nullptr));
    EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::SaveCatNames));
    m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    Populate();
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), colOrder);
    EXPECT_EQ(ItemsOf(Get(m_cMan, &_clsSchedMan::colSavedCatNames)), Texts{L"Rock"});
}

} // namespace
} // namespace ravlo
