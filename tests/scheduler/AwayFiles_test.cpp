// SPDX-License-Identifier: MIT
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

constexpr const wchar_t* sRules = L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC1.rls";
constexpr const wchar_t* sListBak = L"C:\\Radio\\Scheduler\\MainCats.txt.bak";

const std::string order = SifCuts("r3 r2 r1");
const std::string rules = std::string("\x0F\0\0\0\x14\0\0\0\0\0", 10) + "Rock\xAC\xAC\xAC" + "1" +
                          std::string(47, ' ') + std::string("\x1E\0\0\0", 4);
const std::string list = "\r\nRock\r\nSoul";
const std::string settings = "10\r\n20\r\n30\r\n";
const std::map<std::wstring, std::string> files = {
    {SifPath(L"Rock"), order}, {sMainCatsPath, list}, {sSettingsPath, settings}, {sRules, rules}};

// A station with files of every kind, saved by an earlier run.
class AwayFilesTest : public StationTest
{
protected:
    AwayFilesTest()
    {
        cLib.cDataBase->AddTree(L"Rock 1: r1 r2 r3");
        PutFiles();
        cLib.cSchedMan->SetRotatesAllowed(true);
    }

    void PutFiles()
    {
        for (const auto& [sPath, bytes] : files)
            cPorts.cFiles.Put(sPath, bytes);
    }
    void SetAway(std::int32_t lError) { cPorts.cFiles.SetAway(L"C:\\Radio\\Scheduler", lError); }
    void SetUnreadable(std::int32_t lError)
    {
        for (const wchar_t* sPath : {sRules, sSettingsPath})
            cPorts.cFiles.SetUnreadable(sPath, lError);
    }
    void Pick() { cLib.Pick(L"Rock\t1"); }
    void Shuffle() { cLib.cSchedMan->ShuffleCategories({MainCat(L"Rock")}); }
    std::string Get(const std::wstring& sPath) const
    {
        return cPorts.cFiles.FileExists(sPath) ? cPorts.cFiles.Get(sPath) : "none";
    }
    std::string List() const { return Get(sMainCatsPath); }
};

TEST_F(AwayFilesTest, AFolderAwayAtTheStartIsNotOverwrittenLater)
{
    SetAway(error::PathNotFound);
    cLib.Populate();
    EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 60);
    SetAway(0);
    Pick();
    Level(L"Rock", 1)->Rules(); // first used when the file is there again
    cLib.End();
    EXPECT_EQ(Get(SifPath(L"Rock") + L".bak"), order) << "kept before the pick's save";
    EXPECT_EQ(File(L"Rock"), SifCuts("r2 r3 r1"));
    EXPECT_EQ(List(), list) << "the category without cuts is kept in the list";
    EXPECT_EQ(Get(sSettingsPath), settings);
    EXPECT_EQ(Get(sRules), rules);
}

TEST_F(AwayFilesTest, ADriveThatLooksEmptyAtTheStartIsNotOverwrittenEither)
{
    // A drive letter without a drive: the files are not unknown but absent, and the folders cannot be made.
    for (const auto& [sPath, bytes] : files)
        cPorts.cFiles.Delete(sPath);
    cLib.Populate();
    const std::shared_ptr<clsCatRules> cRules = Level(L"Rock", 1)->Rules();
    PutFiles();
    Pick();
    EXPECT_EQ(Get(SifPath(L"Rock") + L".bak"), order);
    cLib.End();
    EXPECT_EQ(List(), list);
    EXPECT_EQ(Get(sListBak), list) << "kept before it was written, with its own names";
    EXPECT_EQ(Get(sSettingsPath), settings) << "no setter has run";
    EXPECT_EQ(Get(sRules), rules) << "a release leaves it alone";
    cRules->SetTitleSepMins(9);
    EXPECT_EQ(cRules->ArtistSepMins(), 15) << "a setter reads it first";
    EXPECT_EQ(cRules->AlbumSepMins(), 30);
}

TEST_F(AwayFilesTest, AFileLockedForAMomentIsNotOverwrittenByASetter)
{
    SetUnreadable(error::PermissionDenied);
    cLib.Populate();
    const std::shared_ptr<clsCatRules> cRules = Level(L"Rock", 1)->Rules();
    SetUnreadable(0);
    cRules->SetTitleSepMins(9);
    std::string expected = rules;
    expected[4] = '\x09';
    EXPECT_EQ(Get(sRules), expected);
    EXPECT_EQ(cRules->ArtistSepMins(), 15);
    cLib.cMod.SetGlobalAlbumSepMins(7);
    EXPECT_EQ(Get(sSettingsPath), "10\r\n20\r\n7\r\n");
}

TEST_F(AwayFilesTest, APublicReadingOfTheListLeavesItProtected)
{
    const std::string damaged = "\r\nRock\r\nRock\r\nSoul";
    cPorts.cFiles.Put(sMainCatsPath, damaged);
    cLib.Populate();
    cPorts.cFiles.SetUnreadable(sMainCatsPath, error::PermissionDenied);
    cLib.Restart();
    cPorts.cFiles.SetUnreadable(sMainCatsPath, 0);
    EXPECT_EQ(cLib.cSchedMan->colSavedCatNames()->Count(), 1u);
    EXPECT_TRUE(cLib.cSchedMan->SaveCatNames());
    EXPECT_EQ(Get(sListBak), damaged);
}

TEST_F(AwayFilesTest, OneBoxReportsAllOrdersThatCannotBeRead)
{
    for (int lCat = 1; lCat <= 40; ++lCat)
        Add(L"c" + std::to_wstring(lCat), L"Cat" + std::to_wstring(lCat));
    cPorts.cFiles.SetAway(L"C:\\Radio\\Scheduler\\History_and_Ordering", error::PathNotFound);
    cLib.Populate();
    ASSERT_EQ(boxes.size(), 2u) << "one of the folder, one of the files";
    EXPECT_EQ(boxes[1].sTitle, L"Error in ApplyHistory");
    EXPECT_TRUE(boxes[1].sText.starts_with(L"75 Path/File access error: Rock, Cat1, Cat2, "));
    EXPECT_TRUE(boxes[1].sText.ends_with(L", Cat29... (+12)"));
}

// ---- rules in a pick

TEST_F(AwayFilesTest, RulesThatAPickCannotReadAreRetriedAndShownAtTheNextEdit)
{
    cLib.Populate();
    Forget();
    cPorts.cFiles.SetLocked(sRules, -1);
    Pick();
    const std::shared_ptr<clsCatRules> cRules = Level(L"Rock", 1)->Rules();
    EXPECT_EQ(cRules->AlbumSepMins(), -1);
    EXPECT_EQ(boxes, Boxes()) << "no box on air";
    EXPECT_EQ(cPorts.cFiles.AttemptsOn(sRules), 1) << "at most once a second, without waiting";
    for (int lEdit = 1; lEdit <= 2; ++lEdit)
    {
        Shuffle();
        EXPECT_EQ(boxes, Boxes{HandledError(L"GetRules", L"Permission denied", L"70")}) << "once";
    }
    cPorts.cFiles.SetLocked(sRules, 0);
    WaitForRetry();
    Pick();
    EXPECT_EQ(cRules->AlbumSepMins(), 30);
    EXPECT_EQ(cRules->ArtistSepMins(), 15);
}

// ---- the list of categories and another program

class SharedListTest : public AwayFilesTest
{
protected:
    SharedListTest() { cLib.Populate(); }
    bool Create(const std::wstring& sName) { return cLib.CreateMainCat(sName); }
    bool Delete(const std::wstring& sName) { return cLib.cSchedMan->DeleteCats({MainCat(sName)}); }
    bool SaveList() { return cLib.cSchedMan->SaveCatNames(); }
    void PutList(const std::string& bytes) { cPorts.cFiles.Put(sMainCatsPath, bytes); }
};

TEST_F(SharedListTest, AListThatDidNotChangeHereIsNotWrittenAtTheEnd)
{
    PutList("\r\nRock\r\nSoul\r\nX");
    cPorts.cFiles.ClearOperations();
    cLib.End();
    for (const std::wstring& sOperation : cPorts.cFiles.Operations())
        EXPECT_EQ(sOperation.find(L"MainCats.txt"), std::wstring::npos) << testing::PrintToString(sOperation);
    EXPECT_EQ(List(), "\r\nRock\r\nSoul\r\nX");
}

TEST_F(SharedListTest, AListChangedByAnotherProgramIsMerged)
{
    const struct
    {
        const char* sRule;
        const char* theirs; // null: they have deleted it
        const wchar_t* sCreated;
        const char* merged;
    } rows[] = {
        {"an added name", "\r\nRock\r\nX\r\nSoul", L"Jazz", "\r\nRock\r\nSoul\r\nJazz\r\nX"},
        {"a removed name", "\r\nRock", L"Jazz", "\r\nRock\r\nJazz"},
        {"a removed name that contains cuts here", "\r\nSoul", nullptr, "\r\nRock\r\nSoul"},
        {"a list that is gone has removed nothing", nullptr, nullptr, "\r\nRock\r\nSoul"},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.sRule);
        cLib.End();
        PutList(list);
        cLib.Restart();
        if (row.theirs)
            PutList(row.theirs);
        else
            cPorts.cFiles.Delete(sMainCatsPath);
        EXPECT_TRUE(row.sCreated ? Create(row.sCreated) : SaveList());
        EXPECT_EQ(List(), row.merged);
        EXPECT_TRUE(SaveList());
        cLib.End();
        EXPECT_EQ(List(), row.merged) << "and stays so";
    }
}

TEST_F(SharedListTest, ACategoryDeletedHereIsNotMergedBack)
{
    ASSERT_TRUE(Delete(L"Soul"));
    EXPECT_EQ(List(), "\r\nRock");
    PutList(list);
    SetAway(error::PathNotFound);
    cLib.Restart();
    SetAway(0);
    ASSERT_TRUE(Delete(L"Rock"));
    EXPECT_EQ(List(), "\r\nSoul") << "nor after a list that could not be read";
}

TEST_F(SharedListTest, ARemovedNameThatIsCreatedAgainIsSaved)
{
    PutList("\r\nRock");
    ASSERT_TRUE(SaveList());
    ASSERT_TRUE(Delete(L"Soul"));
    ASSERT_TRUE(Create(L"Soul"));
    EXPECT_EQ(List(), list);
    cLib.Restart();
    EXPECT_NE(MainCat(L"Soul"), nullptr);
    const auto recreate = [&] { // deleted while the list cannot be saved
        cPorts.cFiles.SetReadOnly(sMainCatsPath);
        EXPECT_FALSE(Delete(L"Soul"));
        PutList("\r\nRock");
        cPorts.cFiles.SetReadOnly(sMainCatsPath, false);
        EXPECT_TRUE(Create(L"Soul"));
        EXPECT_EQ(List(), list);
    };
    recreate(); // removed after the deletion
    PutList("\r\nRock");
    ASSERT_TRUE(SaveList());
    EXPECT_EQ(List(), "\r\nRock");
    recreate(); // removed, as this manager knows, before it
}

TEST_F(SharedListTest, CategoriesWhoseListCouldNotBeSavedSurviveAReload)
{
    for (const bool bFree : {false, true}) // while it is locked, or when it is free again
    {
        cPorts.cFiles.SetReadOnly(sMainCatsPath);
        const std::wstring sName = bFree ? L"Jazz" : L"Blues";
        EXPECT_TRUE(Create(sName));
        if (!bFree)
        {
            EXPECT_FALSE(Delete(L"Soul"));
        }
        cPorts.cFiles.SetReadOnly(sMainCatsPath, !bFree);
        boxes.clear();
        cLib.Populate();
        EXPECT_EQ(boxes, Boxes());
        EXPECT_EQ(cLib.MainCatNames(),
                  bFree ? (Lines{L"Rock", L"Blues", L"Jazz"}) : (Lines{L"Rock", L"Blues"}));
        EXPECT_NE(Level(sName, 1), nullptr);
    }
    EXPECT_EQ(List(), "\r\nRock\r\nBlues\r\nJazz");
    cLib.Restart();
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Blues", L"Jazz"}));
}

TEST_F(SharedListTest, AListThatAMoveCannotSaveIsShown)
{
    cPorts.cFiles.SetReadOnly(sMainCatsPath);
    EXPECT_TRUE(Create(L"Jazz"));
    boxes.clear();
    cPorts.cFiles.MakeFolders(L"C:\\Other");
    cLib.Populate(L"C:\\Other");
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in SaveCatNames [cSchedMan]", CriticalText(75))});
    EXPECT_EQ(MainCat(L"Jazz"), nullptr) << "it is not carried into another folder";
}

TEST_F(SharedListTest, ACategoryMadeByANotificationSurvivesAReload)
{
    const auto cCut = Add(L"new", L"Folk");
    Added({cCut});
    cCut->SetCategoryText(L"Rock");
    Modified({cCut});
    cLib.Populate();
    EXPECT_NE(MainCat(L"Folk"), nullptr);
}

TEST_F(SharedListTest, SettingsOfAFolderSpelledOtherwiseAreSavedAtTheEnd)
{
    auto cOther = std::make_shared<clsSchedMan>(cLib.cMod);
    cOther->PopulateFromDataBase(cLib.cDataBase, L"c:\\RADIO");
    cPorts.cFiles.Delete(sSettingsPath);
    cLib.End();
    EXPECT_EQ(Get(sSettingsPath), settings);
}

// ---- saving what is no longer there

TEST_F(SharedListTest, ACategoryOfAnOlderTreeIsNotSaved)
{
    const std::shared_ptr<clsCat> cOld = MainCat(L"Rock");
    cLib.Populate();
    Pick();
    const std::string present = File(L"Rock");
    EXPECT_FALSE(cLib.cSchedMan->SaveHistoryAndOrdering(cOld));
    EXPECT_EQ(File(L"Rock"), present);
    const std::shared_ptr<clsCat> cSoul = MainCat(L"Soul");
    cSoul->AddSubCat(std::make_shared<clsCat>(cLib.cMod, L"Soul", 1));
    ASSERT_TRUE(cLib.cSchedMan->DeleteCats({cSoul}));
    EXPECT_FALSE(cLib.cSchedMan->SaveHistoryAndOrdering(cSoul));
    EXPECT_EQ(File(L"Soul"), "none");
}

TEST_F(SharedListTest, ACategoryThatLeftTheDatabaseIsReportedOnce)
{
    for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
        cCut->SetCategoryText(L"Soul");
    cLib.Restart();
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"BUT DIDNT", L"Was expecting to find: Rock 1")});
    EXPECT_FALSE(cLib.SaveAll()) << "Rock has no record";
    EXPECT_EQ(Get(SifPath(L"Rock") + L".bak"), order);
    boxes.clear();
    cLib.Restart();
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(SharedListTest, ACategoryWithoutAKeyIsNotSaved)
{
    auto cLoose = std::make_shared<clsCat>(cLib.cMod, L"Loose", 0);
    cLoose->AddSubCat(std::make_shared<clsCat>(cLib.cMod, L"Loose", 1));
    Delete(L"Soul"); // which has no records
    ASSERT_TRUE(cLib.SaveAll());
    cLib.cSchedMan->colMainCats()->Add(cLoose);
    EXPECT_FALSE(cLib.SaveAll());
    EXPECT_EQ(File(L"Loose"), "none");
}

} // namespace
} // namespace ravlo::test
