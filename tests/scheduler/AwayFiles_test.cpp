// SPDX-License-Identifier: MIT
#include "platform/memory/FailingFiles.h"
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

constexpr const wchar_t* sRules = L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC1.rls";
constexpr const wchar_t* sListBak = L"C:\\Radio\\Scheduler\\MainCats.txt.bak";

// A station with files of every kind, saved by an earlier run.
class AwayFilesTest : public StationTest
{
protected:
    AwayFilesTest()
    {
        for (const wchar_t* sKey : {L"r1", L"r2", L"r3"})
            Add(sKey, L"Rock");
        cPorts.cFiles.Put(SifPath(L"Rock"), order);
        cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nSoul");
        cPorts.cFiles.Put(sSettingsPath, "10\r\n20\r\n30\r\n");
        cPorts.cFiles.Put(sRules, rules);
        cLib.cSchedMan->SetRotatesAllowed(true);
    }

    void Pick() { cLib.Pick(L"Rock\t1"); }
    std::string Get(const std::wstring& sPath) const
    {
        return cPorts.cFiles.FileExists(sPath) ? cPorts.cFiles.Get(sPath) : "none";
    }

    const std::string order = SifCut("r3", 1) + SifCut("r2", 1) + SifCut("r1", 1);
    const std::string rules = std::string("\x0F\0\0\0\x14\0\0\0\0\0", 10) + "Rock\xAC\xAC\xAC" + "1" +
                              std::string(47, ' ') + std::string("\x1E\0\0\0", 4);
};

TEST_F(AwayFilesTest, AFolderAwayAtTheStartIsNotOverwrittenLater)
{
    cPorts.cFiles.SetAway(L"C:\\Radio\\Scheduler", error::PathNotFound);
    cLib.Populate();
    EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 60);
    cPorts.cFiles.SetAway(L"C:\\Radio\\Scheduler", 0);
    Pick();
    Level(L"Rock", 1)->Rules(); // asked for when the file is there again
    cLib.End();
    EXPECT_EQ(Get(SifPath(L"Rock") + L".bak"), order) << "kept before the pick's save";
    EXPECT_EQ(Get(SifPath(L"Rock")), SifCut("r2", 1) + SifCut("r3", 1) + SifCut("r1", 1));
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nSoul") << "the category without cuts is kept in the list";
    EXPECT_EQ(Get(sSettingsPath), "10\r\n20\r\n30\r\n");
    EXPECT_EQ(Get(sRules), rules);
}

TEST_F(AwayFilesTest, ADriveThatLooksEmptyAtTheStartIsNotOverwrittenEither)
{
    // A drive letter without a drive: the files are not unknown but absent, and the folders cannot be made.
    const std::map<std::wstring, std::string> old = {{SifPath(L"Rock"), order},
                                                     {sMainCatsPath, "\r\nRock\r\nSoul"},
                                                     {sSettingsPath, "10\r\n20\r\n30\r\n"},
                                                     {sRules, rules}};
    for (const auto& [sPath, bytes] : old)
        cPorts.cFiles.Delete(sPath);
    cLib.Populate();
    const std::shared_ptr<clsCatRules> cRules = Level(L"Rock", 1)->Rules();
    for (const auto& [sPath, bytes] : old)
        cPorts.cFiles.Put(sPath, bytes);
    Pick();
    EXPECT_EQ(Get(SifPath(L"Rock") + L".bak"), order);
    cLib.End();
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nSoul");
    EXPECT_EQ(Get(sListBak), "\r\nRock\r\nSoul") << "kept before it was written, with its own names";
    EXPECT_EQ(Get(sSettingsPath), "10\r\n20\r\n30\r\n") << "no setter has run";
    EXPECT_EQ(Get(sRules), rules) << "a release leaves it alone";
    cRules->SetTitleSepMins(9);
    EXPECT_EQ(cRules->ArtistSepMins(), 15) << "a setter reads it first";
    EXPECT_EQ(cRules->AlbumSepMins(), 30);
}

TEST_F(AwayFilesTest, AFileLockedForAMomentIsNotOverwrittenByASetter)
{
    cPorts.cFiles.SetUnreadable(sRules, error::PermissionDenied);
    cPorts.cFiles.SetUnreadable(sSettingsPath, error::PermissionDenied);
    cLib.Populate();
    const std::shared_ptr<clsCatRules> cRules = Level(L"Rock", 1)->Rules();
    cPorts.cFiles.SetUnreadable(sRules, 0);
    cPorts.cFiles.SetUnreadable(sSettingsPath, 0);
    cRules->SetTitleSepMins(9);
    EXPECT_EQ(cRules->ArtistSepMins(), 15);
    EXPECT_EQ(cRules->TitleSepMins(), 9);
    EXPECT_EQ(cRules->AlbumSepMins(), 30);
    std::string expected = rules;
    expected[4] = '\x09';
    EXPECT_EQ(Get(sRules), expected);
    cLib.cMod.SetGlobalAlbumSepMins(7);
    EXPECT_EQ(Get(sSettingsPath), "10\r\n20\r\n7\r\n");
}

TEST_F(AwayFilesTest, APublicReadingOfTheListTakesNoProtectionOffIt)
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

TEST_F(AwayFilesTest, OneBoxTellsOfAllOrdersThatCannotBeRead)
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

TEST_F(AwayFilesTest, RulesThatAPickCannotReadAreShownOnceSomebodyEdits)
{
    cLib.Populate();
    Forget();
    cPorts.cFiles.SetLocked(sRules, -1);
    Pick();
    EXPECT_EQ(boxes, Boxes()) << "no box on air";
    EXPECT_EQ(cPorts.cFiles.AttemptsOn(sRules), 1) << "and no waiting";
    cLib.cSchedMan->ShuffleCategories({MainCat(L"Rock")});
    EXPECT_EQ(boxes, Boxes{HandledError(L"GetRules", L"Permission denied", L"70")});
    cLib.cSchedMan->ShuffleCategories({MainCat(L"Rock")});
    EXPECT_EQ(boxes.size(), 1u) << "once";
}

TEST_F(AwayFilesTest, RulesLockedForAMomentAreReadByALaterPick)
{
    cLib.Populate();
    cPorts.cFiles.SetLocked(sRules, -1);
    Pick();
    const std::shared_ptr<clsCatRules> cRules = Level(L"Rock", 1)->Rules();
    EXPECT_EQ(cRules->AlbumSepMins(), -1);
    EXPECT_EQ(cPorts.cFiles.AttemptsOn(sRules), 1) << "at most once a second";
    cPorts.cFiles.SetLocked(sRules, 0);
    cPorts.cClock.Advance(1000);
    Pick();
    EXPECT_EQ(cRules->AlbumSepMins(), 30);
    EXPECT_EQ(cRules->ArtistSepMins(), 15);
}

// ---- a day in which any one operation on a file fails, or all from there on

class FailingDayTest : public AwayFilesTest
{
protected:
    // Whether the file or a copy of it holds what says yes to bHolds.
    bool Kept(const std::wstring& sPath, const std::function<bool(const std::string&)>& bMatches) const
    {
        if (bMatches(Get(sPath)))
            return true;
        for (const wchar_t* sCopy : {L".bak", L".bak2", L".bak3"})
            if (bMatches(Get(sPath + sCopy)))
                return true;
        return false;
    }
    // A start, a pick, a rule and a global separation set, a new category, an explicit save, and the end.
    void Day(Files& cFiles)
    {
        Library cDay(cPorts, cFiles);
        cDay.cDataBase = cLib.cDataBase;
        cDay.cSchedMan->SetRotatesAllowed(true);
        cDay.Populate();
        if (!cDay.cSchedMan->colMainCats())
            return;
        cDay.Pick(L"Rock\t1");
        cDay.Level(L"Rock", 1)->Rules()->SetTitleSepMins(9);
        cDay.cMod.SetGlobalTitleSepMins(8);
        std::wstring sName = L"Jazz";
        cDay.cSchedMan->CreateMainCat(sName);
        cDay.cSchedMan->SaveHistoryAndOrdering(nullptr);
    }
};

TEST_F(FailingDayTest, LosesNothingOfAnyFile)
{
    const MemoryFiles cState = cPorts.cFiles;
    for (const bool bStaysBroken : {false, true})
        for (int lGood = 0;; ++lGood)
        {
            SCOPED_TRACE(lGood);
            cPorts.cFiles = cState;
            boxes.clear();
            FailingFiles cFailing(cPorts.cFiles, lGood);
            cFailing.bCountReads = cFailing.bCountLooks = true;
            cFailing.bStaysBroken = bStaysBroken;
            Day(cFailing);
            // As it was, or after r3 has aired.
            const std::string aired = SifCut("r2", 1) + SifCut("r1", 1) + SifCut("r3", 1);
            EXPECT_TRUE(Kept(SifPath(L"Rock"),
                             [&](const std::string& bytes) { return bytes == order || bytes == aired; }));
            EXPECT_TRUE(Kept(sMainCatsPath, [](const std::string& bytes) {
                return bytes.find("\r\nSoul") != std::string::npos;
            }));
            EXPECT_TRUE(Kept(sSettingsPath, [](const std::string& bytes) {
                return bytes.starts_with("10\r\n") && bytes.ends_with("\r\n30\r\n");
            }));
            EXPECT_TRUE(Kept(sRules, [this](const std::string& bytes) {
                return bytes.size() == 69 && bytes.substr(0, 4) == rules.substr(0, 4) &&
                       bytes.substr(65) == rules.substr(65);
            }));
            if (!cFailing.bFailed)
            {
                EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nSoul\r\nJazz");
                EXPECT_EQ(Get(SifPath(L"Rock") + L".bak"), "none");
                EXPECT_GT(lGood, 60) << "of every file";
                break;
            }
        }
}

// ---- the list of categories and another program

class SharedListTest : public AwayFilesTest
{
protected:
    SharedListTest() { cLib.Populate(); }
    bool Create(std::wstring sName) { return cLib.cSchedMan->CreateMainCat(sName); }
};

TEST_F(SharedListTest, AListThatDidNotChangeHereIsNotWrittenAtTheEnd)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nSoul\r\nX");
    cPorts.cFiles.ClearOperations();
    cLib.End();
    for (const std::wstring& sOperation : cPorts.cFiles.Operations())
        EXPECT_EQ(sOperation.find(L"MainCats.txt"), std::wstring::npos) << testing::PrintToString(sOperation);
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nSoul\r\nX");
}

TEST_F(SharedListTest, NamesAddedByAnotherProgramAreMerged)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nX\r\nSoul");
    ASSERT_TRUE(Create(L"Jazz"));
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nSoul\r\nJazz\r\nX");
    EXPECT_TRUE(cLib.cSchedMan->SaveCatNames());
    cLib.End();
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nSoul\r\nJazz\r\nX") << "and stay";
}

TEST_F(SharedListTest, ANameRemovedByAnotherProgramStaysRemoved)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock");
    ASSERT_TRUE(Create(L"Jazz"));
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nJazz");
    EXPECT_TRUE(cLib.cSchedMan->SaveCatNames());
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nJazz") << "also with the next save";
}

TEST_F(SharedListTest, RemovedNameThatContainsCutsHereIsWritten)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nSoul");
    EXPECT_TRUE(cLib.cSchedMan->SaveCatNames());
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nSoul");
}

TEST_F(SharedListTest, ACategoryDeletedHereIsNotMergedBack)
{
    ASSERT_TRUE(cLib.cSchedMan->DeleteCats({MainCat(L"Soul")}));
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock");
}

TEST_F(SharedListTest, ARemovedNameThatIsCreatedAgainIsSaved)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock");
    ASSERT_TRUE(cLib.cSchedMan->SaveCatNames());
    ASSERT_TRUE(cLib.cSchedMan->DeleteCats({MainCat(L"Soul")}));
    ASSERT_TRUE(Create(L"Soul"));
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nSoul");
    cLib.Restart();
    EXPECT_NE(MainCat(L"Soul"), nullptr);
}

TEST_F(SharedListTest, ARemovedNameThatIsDeletedAndCreatedIsSaved)
{
    const auto recreate = [&] { // deleted while the list cannot be saved
        cPorts.cFiles.SetReadOnly(sMainCatsPath);
        EXPECT_FALSE(cLib.cSchedMan->DeleteCats({MainCat(L"Soul")}));
        cPorts.cFiles.Put(sMainCatsPath, "\r\nRock");
        cPorts.cFiles.SetReadOnly(sMainCatsPath, false);
        EXPECT_TRUE(Create(L"Soul"));
        EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nSoul");
    };
    recreate(); // removed after the deletion
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock");
    ASSERT_TRUE(cLib.cSchedMan->SaveCatNames());
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock");
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
            EXPECT_FALSE(cLib.cSchedMan->DeleteCats({MainCat(L"Soul")}));
        }
        cPorts.cFiles.SetReadOnly(sMainCatsPath, !bFree);
        boxes.clear();
        cLib.Populate();
        EXPECT_EQ(boxes, Boxes());
        EXPECT_EQ(cLib.MainCatNames(),
                  bFree ? (Lines{L"Rock", L"Blues", L"Jazz"}) : (Lines{L"Rock", L"Blues"}));
        EXPECT_NE(Level(sName, 1), nullptr);
    }
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nBlues\r\nJazz");
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

TEST_F(SharedListTest, ACategoryThatOnlyAnAnnouncementMadeSurvivesAReload)
{
    const auto cCut = Add(L"new", L"Folk");
    Added({cCut});
    cCut->SetCategoryText(L"Rock");
    Modified({cCut});
    cLib.Populate();
    EXPECT_NE(MainCat(L"Folk"), nullptr);
}

TEST_F(SharedListTest, TheSettingsOfAFolderSpelledOtherwiseAreSavedAtTheEnd)
{
    auto cOther = std::make_shared<clsSchedMan>(cLib.cMod);
    cOther->PopulateFromDataBase(cLib.cDataBase, L"c:\\RADIO");
    cPorts.cFiles.Delete(sSettingsPath);
    cLib.End();
    EXPECT_EQ(Get(sSettingsPath), "10\r\n20\r\n30\r\n");
}

TEST_F(SharedListTest, ACategoryDeletedAfterAnUnreadListIsNotMergedBack)
{
    cPorts.cFiles.SetAway(L"C:\\Radio\\Scheduler", error::PathNotFound);
    cLib.Populate();
    cPorts.cFiles.SetAway(L"C:\\Radio\\Scheduler", 0);
    ASSERT_TRUE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    EXPECT_EQ(Get(sMainCatsPath), "\r\nSoul");
}

TEST_F(SharedListTest, AListThatIsGoneHasRemovedNothing)
{
    cPorts.cFiles.Delete(sMainCatsPath);
    EXPECT_TRUE(cLib.cSchedMan->SaveCatNames());
    EXPECT_EQ(Get(sMainCatsPath), "\r\nRock\r\nSoul");
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

TEST_F(SharedListTest, WhatIsOwedIsSavedBeforeAPopulationReads)
{
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    Pick();
    const Keys colOrder = Order(L"Rock", 1);
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
    cLib.Populate();
    EXPECT_EQ(Order(L"Rock", 1), colOrder);
}

TEST_F(SharedListTest, ACategoryThatLeftTheDatabaseIsComplainedOfOnce)
{
    for (const std::shared_ptr<Cut>& cCut : Cuts(cLib.cDataBase->colCuts))
        cCut->SetCategoryText(L"Soul");
    cLib.Restart();
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"BUT DIDNT", L"Was expecting to find: Rock 1")});
    EXPECT_FALSE(cLib.cSchedMan->SaveHistoryAndOrdering(nullptr)) << "Rock has no record";
    EXPECT_EQ(Get(SifPath(L"Rock") + L".bak"), order);
    boxes.clear();
    cLib.Restart();
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(SharedListTest, ACategoryWithoutAKeyIsNotSavedAndSaidSo)
{
    auto cLoose = std::make_shared<clsCat>(cLib.cMod, L"Loose", 0);
    cLoose->AddSubCat(std::make_shared<clsCat>(cLib.cMod, L"Loose", 1));
    cLib.cSchedMan->DeleteCats({MainCat(L"Soul")}); // which has no records
    ASSERT_TRUE(cLib.cSchedMan->SaveHistoryAndOrdering(nullptr));
    cLib.cSchedMan->colMainCats()->Add(cLoose);
    EXPECT_FALSE(cLib.cSchedMan->SaveHistoryAndOrdering(nullptr));
    EXPECT_EQ(File(L"Loose"), "none");
}

} // namespace
} // namespace ravlo::test
