// SPDX-License-Identifier: MIT
#include "scheduler/CategoryCreation.h"

#include "platform/memory/FailingFiles.h"
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

const ShownInput askForName{L"New Category Creation", L"Type the name for the new category"};

ShownBox Question(const std::wstring& sTitle, const std::wstring& sText)
{
    return {BoxIcon::Question, BoxButtons::YesNo, sTitle, sText + L"\r\n\r\nTry Again?"};
}
const ShownBox numericBox = Question(L"Invalid Category Name", L"Category Names must not be numeric!");
const ShownBox tooLongBox = Question(L"Category Name Too Long! [max 50 chars]", L"Category Name too long!");
ShownBox ExistsBox(const std::wstring& sName)
{
    return Question(L"Category " + sName + L" Already Exists!", L"There is already a category by this name!");
}
ShownBox UnableBox(const std::wstring& sName)
{
    return Question(L"Invalid Category Name", L"Unable to create a category with the name: " + sName);
}

class CreateMainCatTest : public StationTest
{
protected:
    CreateMainCatTest()
    {
        Add(L"a", L"Rock");
        Start();
    }

    // Creates with that name handed in; returns the name as created, or "refused".
    std::wstring Create(std::wstring sName)
    {
        return cLib.cSchedMan->CreateMainCat(sName) ? sName : L"refused";
    }
    // Nothing was made, written or told.
    void ExpectNothingChanged() const
    {
        EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock"}));
        EXPECT_EQ(said, Lines());
        for (const std::wstring& sOperation : cPorts.cFiles.Operations())
            EXPECT_TRUE(sOperation.ends_with(L".tst") || sOperation.starts_with(L"Append"));
        for (const std::wstring& sPath : cPorts.cFiles.Paths())
            EXPECT_FALSE(sPath.ends_with(L".tst"));
    }

    std::deque<std::optional<std::wstring>>& typed = cPorts.cMessages.Typed;
    std::deque<BoxAnswer>& answers = cPorts.cMessages.Answers;
    std::vector<ShownInput>& inputs = cPorts.cMessages.Inputs;
};

TEST_F(CreateMainCatTest, ANewCategoryHasALevel1AndIsListedAndSaved)
{
    EXPECT_EQ(Create(L"Jazz"), L"Jazz");
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Jazz"}));
    EXPECT_EQ(MainCat(L"Jazz")->CatLevel(), 0);
    EXPECT_EQ(MainCat(L"Jazz")->SubCats()->Count(), 1u);
    EXPECT_EQ(Level(L"Jazz", 1)->CatName(), L"Jazz");
    EXPECT_EQ(Level(L"Jazz", 1)->MainCat(), MainCat(L"Jazz"));
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nRock\r\nJazz");
    EXPECT_EQ(File(L"Jazz"), SifMarker(1));
    EXPECT_EQ(Written(), (Lines{L"Jazz"}));
    EXPECT_EQ(said, SaveSaid(L"Jazz", 1));
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(inputs, std::vector<ShownInput>());
}

TEST_F(CreateMainCatTest, NameIsTriedAsAFileOfTheLibrarysFolderAndRemoved)
{
    EXPECT_EQ(Create(L"Jazz"), L"Jazz");
    const std::wstring sTried = L"C:\\Program Files\\Ravlo\\Jazz.tst";
    const auto& colOperations = cPorts.cFiles.Operations();
    ASSERT_GE(colOperations.size(), 2u);
    EXPECT_EQ(colOperations[0], L"WriteNew " + sTried);
    EXPECT_EQ(colOperations[1], L"Delete " + sTried);
}

TEST_F(CreateMainCatTest, ANameThatIsMissingIsAskedForAndTrimmed)
{
    typed = {L"  Jazz  "};
    EXPECT_EQ(Create(L""), L"Jazz");
    EXPECT_EQ(inputs, (std::vector<ShownInput>{askForName}));
    EXPECT_EQ(Create(L"  Soul "), L"Soul") << "a name handed in is trimmed too";
    typed = {L"Funk"};
    EXPECT_EQ(Create(L"   "), L"Funk") << "blanks are no name";
}

TEST_F(CreateMainCatTest, AnEmptyAnswerAndCancelEndIt)
{
    for (const std::optional<std::wstring>& sAnswer :
         {std::optional<std::wstring>(), std::optional<std::wstring>(L""),
          std::optional<std::wstring>(L"  ")})
    {
        typed = {sAnswer};
        EXPECT_EQ(Create(L""), L"refused");
    }
    EXPECT_EQ(inputs.size(), 3u);
    EXPECT_EQ(boxes, Boxes());
    ExpectNothingChanged();
}

TEST_F(CreateMainCatTest, EachRefusalIsOneQuestionAndNoEndsIt)
{
    struct Case
    {
        std::wstring sName;
        ShownBox box;
    };
    const std::wstring s51(51, L'n');
    for (const Case& c : {
             Case{L"2024", numericBox},
             Case{L" 1,234.5 ", numericBox},
             Case{L"&H1F", numericBox},
             Case{L"(12)", numericBox},
             Case{s51, tooLongBox},
             Case{L"Rock", ExistsBox(L"Rock")},
             Case{L"rOCK", ExistsBox(L"rOCK")},
             Case{L"ALL AUDIO", UnableBox(L"ALL AUDIO")},
             Case{L"all audio", UnableBox(L"all audio")},
             Case{L"CON", UnableBox(L"CON")},
             Case{L"nul", UnableBox(L"nul")},
             Case{L"Com1.hits", UnableBox(L"Com1.hits")},
             Case{L"Ro\tck", UnableBox(L"Ro\tck")},
             Case{L"Ro\r\nck", UnableBox(L"Ro\r\nck")},
         })
    {
        boxes.clear();
        EXPECT_EQ(Create(c.sName), L"refused");
        EXPECT_EQ(boxes, (Boxes{c.box}));
        ExpectNothingChanged();
    }
    EXPECT_EQ(inputs, std::vector<ShownInput>());
}

TEST_F(CreateMainCatTest, YesAsksForAnotherNameUntilOneIsAccepted)
{
    answers = {BoxAnswer::Yes, BoxAnswer::Yes, BoxAnswer::Yes, BoxAnswer::Yes};
    typed = {std::wstring(51, L'n'), L"Rock", L"PRN", L"Jazz"};
    EXPECT_EQ(Create(L"7"), L"Jazz");
    EXPECT_EQ(boxes, (Boxes{numericBox, tooLongBox, ExistsBox(L"Rock"), UnableBox(L"PRN")}));
    std::vector<ShownInput> colAsked;
    for (const std::wstring& sRefused :
         {std::wstring(L"7"), std::wstring(51, L'n'), std::wstring(L"Rock"), std::wstring(L"PRN")})
        colAsked.push_back({askForName.sTitle, askForName.sPrompt, sRefused});
    EXPECT_EQ(inputs, colAsked) << "each starts from what was refused";
}

TEST_F(CreateMainCatTest, AClosedQuestionIsNotYes)
{
    answers = {BoxAnswer::None};
    EXPECT_EQ(Create(L"7"), L"refused");
    EXPECT_EQ(inputs, std::vector<ShownInput>());
}

TEST_F(CreateMainCatTest, FiftyCharactersAreAccepted)
{
    const std::wstring s50(50, L'n');
    EXPECT_EQ(Create(s50), s50);
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(CreateMainCatTest, ReplacedCharactersAreMentionedToWhoTypedThem)
{
    typed = {L"AC/DC", L"Jazz"};
    EXPECT_EQ(Create(L""), L"AC_DC");
    const Boxes mentioned{{BoxIcon::Information, BoxButtons::Ok, L"New Category Creation",
                           L"The category is named: AC_DC\r\n"
                           L"A file of its name is kept, in which these characters cannot stand: "
                           L"* / : < > ? \\ | \""}};
    EXPECT_EQ(boxes, mentioned);
    EXPECT_EQ(Create(L""), L"Jazz");
    EXPECT_EQ(Create(L"A/B"), L"A_B") << "a program gets the name back";
    EXPECT_EQ(boxes, mentioned);
}

TEST_F(CreateMainCatTest, EachIllegalCharacterIsReplacedAndTheNameAsCreatedComesBack)
{
    EXPECT_EQ(Create(L"Jazz/Funk"), L"Jazz_Funk");
    EXPECT_EQ(Create(L"A?B"), L"A_B");
    EXPECT_EQ(Create(L"a*b/c:d<e>f?g\\h|i\"j"), L"a_b_c_d_e_f_g_h_i_j");
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Jazz_Funk", L"A_B", L"a_b_c_d_e_f_g_h_i_j"}));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(CreateMainCatTest, ANameCannotLeaveItsFolder)
{
    EXPECT_EQ(Create(L"..\\..\\evil"), L".._.._evil");
    EXPECT_EQ(Create(L"../x"), L".._x");
    EXPECT_EQ(Create(L"C:\\x"), L"C__x");
    for (const std::wstring& sPath : cPorts.cFiles.Paths())
        EXPECT_TRUE(sPath.starts_with(L"C:\\Radio\\Scheduler\\") ||
                    sPath.starts_with(L"C:\\Radio\\Debugging Logs\\"));
}

TEST_F(CreateMainCatTest, DotsAreFineAnywhere)
{
    EXPECT_EQ(Create(L"R.E.M."), L"R.E.M.");
    EXPECT_EQ(Create(L".."), L"..");
    EXPECT_EQ(File(L"R.E.M."), SifMarker(1));
    EXPECT_EQ(File(L".."), SifMarker(1));
}

TEST_F(CreateMainCatTest, TheReplacedNameMayNotExistEither)
{
    EXPECT_EQ(Create(L"A_B"), L"A_B");
    EXPECT_EQ(Create(L"A?B"), L"refused");
    EXPECT_EQ(boxes, (Boxes{ExistsBox(L"A_B")})) << "the title shows the name it would get";
}

TEST_F(CreateMainCatTest, TheUnableQuestionShowsTheNameAsTyped)
{
    cPorts.cFiles.SetReadOnly(L"C:\\Program Files\\Ravlo");
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler");
    EXPECT_EQ(Create(L"A?B"), L"refused");
    EXPECT_EQ(boxes, (Boxes{UnableBox(L"A?B")}));
    ExpectNothingChanged();
}

TEST_F(CreateMainCatTest, WhereTheLibrarysFolderCannotBeWrittenTheStationsFolderTells)
{
    cPorts.cFiles.SetReadOnly(L"C:\\Program Files\\Ravlo");
    EXPECT_EQ(Create(L"Jazz"), L"Jazz");
    EXPECT_EQ(boxes, Boxes());
    const auto& colOperations = cPorts.cFiles.Operations();
    EXPECT_EQ(
        std::count(colOperations.begin(), colOperations.end(), L"WriteNew C:\\Radio\\Scheduler\\Jazz.tst"),
        1);
    EXPECT_FALSE(cPorts.cFiles.FileExists(L"C:\\Radio\\Scheduler\\Jazz.tst"));
}

TEST_F(CreateMainCatTest, AFileOfThatNameIsNeverOverwritten)
{
    cPorts.cFiles.Put(L"C:\\Program Files\\Ravlo\\Jazz.tst", "mine");
    EXPECT_EQ(Create(L"Jazz"), L"Jazz");
    EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Program Files\\Ravlo\\Jazz.tst"), "mine");
}

TEST_F(CreateMainCatTest, ANameTheListCouldNotBringBackIsRefusedLikeOneThatCanBeNoFile)
{
    for (const wchar_t* sName : {L"\u0420\u043E\u043A", L"Jazz \u266B", L"Ro\u030Cck"})
    {
        boxes.clear();
        EXPECT_EQ(Create(sName), L"refused");
        EXPECT_EQ(boxes, (Boxes{UnableBox(sName)}));
        ExpectNothingChanged();
    }
    boxes.clear();
    typed = {L"\u0420\u043E\u043A", L"Jazz"};
    answers = {BoxAnswer::Yes};
    EXPECT_EQ(Create(L""), L"Jazz");
    EXPECT_EQ(boxes, (Boxes{UnableBox(L"\u0420\u043E\u043A")})) << "whether it is handed in or typed";
}

TEST_F(CreateMainCatTest, CreatedCategorySurvivesARestartWithItsLevels)
{
    const std::wstring sName = L"Caf\u00E9 50\u20AC";
    EXPECT_EQ(Create(sName), sName);
    typed = {L"7"};
    EXPECT_TRUE(cLib.cSchedMan->CreateCatLevel(MainCat(sName)));
    cLib.Restart();
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", sName}));
    EXPECT_TRUE(Level(sName, 1));
    EXPECT_TRUE(Level(sName, 7));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(CreateMainCatTest, ANameOutsideTheCodePageIsTakenFromTheDatabaseAllTheSame)
{
    const std::wstring sName = L"\u0420\u043E\u043A";
    Added({Add(L"b", sName)});
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", sName}));
    EXPECT_EQ(File(sName), SifCut("b", 1));
    cLib.Restart();
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", sName}));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(CreateMainCatTest, SavesThatFailAreEachShownAndTheCategoryIsThere)
{
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler");
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering");
    EXPECT_EQ(Create(L"Jazz"), L"Jazz");
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in SaveCatNames [cSchedMan]", CriticalText(75)),
                            CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                        CriticalText(75) + L": Jazz")}));
    EXPECT_TRUE(Level(L"Jazz", 1));
}

TEST_F(CreateMainCatTest, WithoutAPopulationItIsAnError)
{
    RadioPorts cEmpty;
    Library cOther(cEmpty);
    std::wstring sName = L"Jazz";
    EXPECT_FALSE(cOther.cSchedMan->CreateMainCat(sName));
    EXPECT_EQ(cEmpty.cMessages.Boxes,
              (Boxes{CriticalBox(L"Error in CreateMainCat [cSchedMan]", CriticalText(91))}));
    EXPECT_EQ(cEmpty.cFiles.Paths(), Lines());
}

TEST_F(CreateMainCatTest, TheFirstCategoryOfANewStationCanBeCreated)
{
    RadioPorts cEmpty;
    Library cOther(cEmpty);
    cOther.Populate();
    std::wstring sName = L"Jazz";
    EXPECT_TRUE(cOther.cSchedMan->CreateMainCat(sName));
    EXPECT_EQ(cEmpty.cMessages.Boxes, Boxes());
    EXPECT_EQ(cEmpty.cFiles.Get(sMainCatsPath), "\r\nJazz");
}

TEST_F(CreateMainCatTest, NoFailingStepLeavesATestFileOrAHalfCategory)
{
    for (int lGood = 0;; ++lGood)
    {
        SCOPED_TRACE(lGood);
        RadioPorts cOwn;
        {
            Library cBefore(cOwn);
            cBefore.Populate();
        }
        FailingFiles cFiles(cOwn.cFiles, lGood);
        Library cOther(cOwn, cFiles);
        cOther.Populate();
        std::wstring sName = L"Jazz";
        if (cOther.cSchedMan->CreateMainCat(sName))
        {
            EXPECT_TRUE(cOther.Level(L"Jazz", 1));
        }
        else
        {
            EXPECT_EQ(cOther.MainCatNames(), Lines());
        }
        EXPECT_EQ(cOwn.TemporaryFiles(), Lines());
        // The station's folder tells when the library's cannot; what is left there is removed.
        EXPECT_FALSE(cOwn.cFiles.FileExists(L"C:\\Radio\\Scheduler\\Jazz.tst"));
        EXPECT_LE(cOwn.cMessages.Boxes.size(), 1u);
        if (!cFiles.bFailed)
            break;
    }
}

// ---- levels ----

const ShownInput askForLevel{L"Enter The New Category Level",
                             L"This level will be placed under category: Rock\r\nValid Values: Greater than "
                             L"zero\r\nType the numeric NEW category level"};
const ShownBox noNumberBox = OkBox(BoxIcon::Exclamation, L"Must Be a Number!", L"Invalid Entry!");
const ShownBox rangeBox = OkBox(BoxIcon::Exclamation, L"Invalid Category Level Entry",
                                L"Invalid - must be greater than zero and less than 32675!");

class CreateCatLevelTest : public CreateMainCatTest
{
protected:
    bool CreateLevel() { return cLib.cSchedMan->CreateCatLevel(MainCat(L"Rock")); }
    Keys Levels() const
    {
        Keys colLevels;
        for (const std::shared_ptr<clsCat>& cSubCat : *MainCat(L"Rock")->SubCats())
            colLevels.push_back(cSubCat->CatID());
        return colLevels;
    }
};

TEST_F(CreateCatLevelTest, ALevelIsMadeUnderItsMainCategoryAndSaved)
{
    typed = {L" 3 "};
    EXPECT_TRUE(CreateLevel());
    EXPECT_EQ(inputs, (std::vector<ShownInput>{askForLevel}));
    EXPECT_EQ(Levels(), (Keys{L"1", L"3"}));
    EXPECT_EQ(Level(L"Rock", 3)->CatName(), L"Rock");
    EXPECT_EQ(Level(L"Rock", 3)->MainCat(), MainCat(L"Rock"));
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1) + SifMarker(3));
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
    EXPECT_EQ(said, SaveSaid(L"Rock", 2));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(CreateCatLevelTest, NothingGivenIsImpossible)
{
    EXPECT_FALSE(cLib.cSchedMan->CreateCatLevel(nullptr));
    EXPECT_EQ(boxes, (Boxes{OkBox(BoxIcon::None, L"Impossible!",
                                  L"Impossible to create a level is we dont know which main cat it's in!")}));
    EXPECT_EQ(inputs, std::vector<ShownInput>());
}

TEST_F(CreateCatLevelTest, AMainCategoryTheTreeDoesNotHoldEndsIt)
{
    EXPECT_FALSE(cLib.cSchedMan->CreateCatLevel(std::make_shared<clsCat>(cLib.cMod, L"Gone", 0)));
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Category Level Creation Aborted",
                                        L"Unexpected! - cant find main cat: Gone")}));
    EXPECT_EQ(inputs, std::vector<ShownInput>());
}

TEST_F(CreateCatLevelTest, AllSongsIsNoCategoryForALevel)
{
    ASSERT_EQ(Create(L"all Songs"), L"all Songs");
    Forget();
    EXPECT_FALSE(cLib.cSchedMan->CreateCatLevel(MainCat(L"ALL SONGS")));
    EXPECT_EQ(boxes, (Boxes{OkBox(BoxIcon::Exclamation, L"Choose a specific category please.",
                                  L"ALL SONGS is not valid here!")}));
    EXPECT_EQ(inputs, std::vector<ShownInput>());
}

TEST_F(CreateCatLevelTest, WhatIsTypedIsCheckedInOrder)
{
    struct Case
    {
        const wchar_t* sTyped;
        std::optional<ShownBox> box; // none: accepted
        std::int32_t lLevel;
    };
    for (const Case& c : {
             Case{L"abc", noNumberBox, 0},
             Case{L"1x", noNumberBox, 0},
             Case{L"0", rangeBox, 0},
             Case{L"-1", rangeBox, 0},
             Case{L"1-", rangeBox, 0},
             Case{L"(5)", rangeBox, 0},
             Case{L"32765", rangeBox, 0},
             Case{L"32766", rangeBox, 0},
             Case{L"40000", rangeBox, 0},
             Case{L"99999999999", rangeBox, 0},
             Case{L"-99999999999", rangeBox, 0},
             Case{L"1e300", rangeBox, 0},
             Case{L"0.5", rangeBox, 0},
             Case{L"32764.5", {}, 32764},
             Case{L"32764", {}, 32764},
             Case{L"2.5", {}, 2},
             Case{L"3.5", {}, 4},
             Case{L"&H10", {}, 16},
             Case{L"1,000", {}, 1000},
             Case{L"$7", {}, 7},
             Case{L"2E2", {}, 200},
         })
    {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.sTyped)));
        Forget();
        typed = {std::wstring(c.sTyped), std::nullopt}; // asked again, the user cancels
        EXPECT_EQ(CreateLevel(), !c.box);
        EXPECT_EQ(boxes, c.box ? Boxes{*c.box} : Boxes());
        EXPECT_EQ(inputs.size(), c.box ? 2u : 1u);
        EXPECT_EQ(inputs.back().sText, c.box ? c.sTyped : L"");
        EXPECT_EQ(Written(), c.box ? Lines() : Lines{L"Rock"});
        if (!c.box)
        {
            EXPECT_TRUE(Level(L"Rock", c.lLevel));
            MainCat(L"Rock")->RemoveSubCat(Level(L"Rock", c.lLevel));
        }
        EXPECT_EQ(Levels(), (Keys{L"1"}));
        typed.clear();
    }
}

TEST_F(CreateCatLevelTest, AnEmptyAnswerAndCancelEndIt)
{
    typed = {L"", std::nullopt, L"   "};
    for (int lTime = 1; lTime <= 3; ++lTime)
        EXPECT_FALSE(CreateLevel());
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Levels(), (Keys{L"1"}));
    EXPECT_EQ(Written(), Lines());
}

TEST_F(CreateCatLevelTest, ALevelThatIsThereIsAskedAboutAndYesAsksAgain)
{
    const ShownBox present =
        Question(L"Category Level Already Present!", L"There is already a category level 1 under Rock");
    typed = {L"1"};
    EXPECT_FALSE(CreateLevel()) << "No ends it";
    EXPECT_EQ(boxes, (Boxes{present}));
    Forget();
    answers = {BoxAnswer::Yes};
    typed = {L"1", L"2"};
    EXPECT_TRUE(CreateLevel());
    EXPECT_EQ(boxes, (Boxes{present}));
    EXPECT_EQ(inputs,
              (std::vector<ShownInput>{askForLevel, {askForLevel.sTitle, askForLevel.sPrompt, L"1"}}));
    EXPECT_EQ(Levels(), (Keys{L"1", L"2"}));
}

TEST_F(CreateCatLevelTest, AMainCategoryDeletedWhileTheQuestionIsOpenIsNotBroughtBack)
{
    typed = {L"3"};
    cPorts.cMessages.OnShown = [&] {
        cPorts.cMessages.OnShown = nullptr;
        cLib.cSchedMan->DeleteCats({MainCat(L"Rock")});
    };
    EXPECT_FALSE(CreateLevel());
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Category Level Creation Aborted",
                                        L"Unexpected! - cant find main cat: Rock")}));
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Rock")));
}

TEST_F(CreateCatLevelTest, AReloadWhileTheQuestionIsOpenKeepsTheAnswerForTheNewTree)
{
    typed = {L"3"};
    cPorts.cMessages.OnShown = [&] {
        cPorts.cMessages.OnShown = nullptr;
        cLib.Populate();
    };
    EXPECT_TRUE(CreateLevel());
    EXPECT_EQ(Levels(), (Keys{L"1", L"3"}));
    EXPECT_EQ(inputs.size(), 1u);
}

} // namespace
} // namespace ravlo::test
