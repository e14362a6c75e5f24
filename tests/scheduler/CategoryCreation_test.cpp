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
    CreateMainCatTest() { Start(L"Rock 1: a"); }

    // Creates with that name handed in; returns the name as created, or "refused".
    std::wstring Create(std::wstring sName)
    {
        return cLib.cSchedMan->CreateMainCat(sName) ? sName : L"refused";
    }
    // Nothing was made, written or said.
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

TEST_F(CreateMainCatTest, NewCategoryHasALevel1AndIsListedAndSaved)
{
    EXPECT_EQ(Create(L"Jazz"), L"Jazz");
    EXPECT_EQ(Tree(), L"Rock 1: a | Jazz 1:");
    EXPECT_EQ(MainCat(L"Jazz")->CatLevel(), 0);
    EXPECT_EQ(Level(L"Jazz", 1)->CatName(), L"Jazz");
    EXPECT_EQ(Level(L"Jazz", 1)->MainCat(), MainCat(L"Jazz"));
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nRock\r\nJazz");
    EXPECT_EQ(File(L"Jazz"), SifMarker(1));
    EXPECT_EQ(Written(), (Lines{L"Jazz"}));
    EXPECT_EQ(said, SaveSaid(L"Jazz", 1));
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(inputs, std::vector<ShownInput>());
}

TEST_F(CreateMainCatTest, MissingNameIsAskedForAndTrimmed)
{
    typed = {L"  Jazz  ", L"Funk"};
    EXPECT_EQ(Create(L""), L"Jazz");
    EXPECT_EQ(Create(L"   "), L"Funk") << "blanks are no name";
    EXPECT_EQ(inputs, (std::vector<ShownInput>{askForName, askForName}));
}

TEST_F(CreateMainCatTest, EmptyAnswerAndCancelEndIt)
{
    typed = {std::nullopt, L"", L"  "};
    for (int lTime = 1; lTime <= 3; ++lTime)
        EXPECT_EQ(Create(L""), L"refused");
    EXPECT_EQ(inputs.size(), 3u);
    EXPECT_EQ(boxes, Boxes());
    ExpectNothingChanged();
}

TEST_F(CreateMainCatTest, EachRefusalIsOneQuestionAndNoEndsIt)
{
    const auto ExpectRefused = [&](const std::wstring& sName, const ShownBox& box) {
        boxes.clear();
        EXPECT_EQ(Create(sName), L"refused");
        EXPECT_EQ(boxes, (Boxes{box}));
        ExpectNothingChanged();
    };
    for (const wchar_t* sNumber : {L"2024", L" 1,234.5 ", L"&H1F", L"(12)"})
        ExpectRefused(sNumber, numericBox);
    ExpectRefused(std::wstring(51, L'n'), tooLongBox);
    for (const wchar_t* sKnown : {L"Rock", L"rOCK"})
        ExpectRefused(sKnown, ExistsBox(sKnown));
    for (const wchar_t* sReserved :
         {L"ALL AUDIO", L"all audio", L"CON", L"nul", L"Com1.hits", L"Ro\tck", L"Ro\r\nck"})
        ExpectRefused(sReserved, UnableBox(sReserved));
    // The list of categories could not bring these back.
    for (const wchar_t* sForeign : {L"\u0420\u043E\u043A", L"Jazz \u266B", L"Ro\u030Cck"})
        ExpectRefused(sForeign, UnableBox(sForeign));
    EXPECT_EQ(inputs, std::vector<ShownInput>());
}

TEST_F(CreateMainCatTest, YesAsksForAnotherNameUntilOneIsAccepted)
{
    const Lines colRefused{L"7", std::wstring(51, L'n'), L"Rock", L"PRN", L"\u0420\u043E\u043A"};
    answers.assign(colRefused.size(), BoxAnswer::Yes);
    typed.assign(colRefused.begin() + 1, colRefused.end());
    typed.push_back(L"Jazz");
    EXPECT_EQ(Create(colRefused[0]), L"Jazz");
    EXPECT_EQ(boxes, (Boxes{numericBox, tooLongBox, ExistsBox(L"Rock"), UnableBox(L"PRN"),
                            UnableBox(L"\u0420\u043E\u043A")}));
    std::vector<ShownInput> colAsked;
    for (const std::wstring& sRefused : colRefused)
        colAsked.push_back({askForName.sTitle, askForName.sPrompt, sRefused});
    EXPECT_EQ(inputs, colAsked) << "each starts from what was refused";
}

TEST_F(CreateMainCatTest, ClosedQuestionIsNotYes)
{
    answers = {BoxAnswer::None};
    EXPECT_EQ(Create(L"7"), L"refused");
    EXPECT_EQ(inputs, std::vector<ShownInput>());
}

TEST_F(CreateMainCatTest, ReplacedCharactersAreMentionedWhenTyped)
{
    typed = {L"AC/DC", L"Jazz"};
    EXPECT_EQ(Create(L""), L"AC_DC");
    const Boxes mentioned{{BoxIcon::Information, BoxButtons::Ok, L"New Category Creation",
                           L"The category is named: AC_DC\r\n"
                           L"A file of its name is kept, which cannot contain these characters: "
                           L"* / : < > ? \\ | \""}};
    EXPECT_EQ(boxes, mentioned);
    EXPECT_EQ(Create(L""), L"Jazz");
    EXPECT_EQ(Create(L"A/B"), L"A_B") << "a program gets the name back";
    EXPECT_EQ(boxes, mentioned);
}

TEST_F(CreateMainCatTest, AcceptedNamesAreTrimmedAndTheirIllegalCharactersReplaced)
{
    const std::wstring s50(50, L'n');
    const std::pair<std::wstring, std::wstring> colNames[]{
        {L"  Soul ", L"Soul"},
        {s50, s50},
        {L"Jazz/Funk", L"Jazz_Funk"},
        {L"A?B", L"A_B"},
        {L"a*b/c:d<e>f?g\\h|i\"j", L"a_b_c_d_e_f_g_h_i_j"},
        {L"..\\..\\evil", L".._.._evil"},
        {L"../x", L".._x"},
        {L"C:\\x", L"C__x"},
        {L"R.E.M.", L"R.E.M."},
        {L"..", L".."},
    };
    Lines colExpected{L"Rock"};
    for (const auto& [sGiven, sCreated] : colNames)
    {
        EXPECT_EQ(Create(sGiven), sCreated);
        EXPECT_EQ(File(sCreated), SifMarker(1));
        colExpected.push_back(sCreated);
    }
    EXPECT_EQ(cLib.MainCatNames(), colExpected);
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(inputs, std::vector<ShownInput>());
    for (const std::wstring& sPath : cPorts.cFiles.Paths())
        EXPECT_TRUE(sPath.starts_with(L"C:\\Radio\\Scheduler\\") ||
                    sPath.starts_with(L"C:\\Radio\\Debugging Logs\\"));
    EXPECT_EQ(Create(L"A:B"), L"refused");
    EXPECT_EQ(boxes, (Boxes{ExistsBox(L"A_B")})) << "the title shows the name it would get";
}

TEST_F(CreateMainCatTest, NameIsTriedAsAFileThatIsRemovedAndOverwritesNothing)
{
    const std::wstring sLibrary = L"C:\\Program Files\\Ravlo";
    const std::wstring sStation = L"C:\\Radio\\Scheduler";
    const auto Tried = [&](const std::wstring& sPath) {
        const Lines& colOperations = cPorts.cFiles.Operations();
        const Lines colTried{L"WriteNew " + sPath, L"Delete " + sPath};
        return std::search(colOperations.begin(), colOperations.end(), colTried.begin(), colTried.end()) !=
                   colOperations.end() &&
               !cPorts.cFiles.FileExists(sPath);
    };
    EXPECT_EQ(Create(L"Jazz"), L"Jazz");
    EXPECT_TRUE(Tried(sLibrary + L"\\Jazz.tst"));
    cPorts.cFiles.Put(sLibrary + L"\\Soul.tst", "mine");
    EXPECT_EQ(Create(L"Soul"), L"Soul");
    EXPECT_EQ(cPorts.cFiles.Get(sLibrary + L"\\Soul.tst"), "mine");
    cPorts.cFiles.SetReadOnly(sLibrary);
    EXPECT_EQ(Create(L"Funk"), L"Funk");
    EXPECT_TRUE(Tried(sStation + L"\\Funk.tst")) << "where the library's folder cannot be written";
    EXPECT_EQ(boxes, Boxes());
    cPorts.cFiles.SetReadOnly(sStation);
    EXPECT_EQ(Create(L"A?B"), L"refused");
    EXPECT_EQ(boxes, (Boxes{UnableBox(L"A?B")})) << "the name as typed";
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Jazz", L"Soul", L"Funk"}));
}

TEST_F(CreateMainCatTest, CreatedCategorySurvivesARestartWithItsLevels)
{
    const std::wstring sName = L"Caf\u00E9 50\u20AC";
    EXPECT_EQ(Create(sName), sName);
    typed = {L"7"};
    EXPECT_TRUE(cLib.cSchedMan->CreateCatLevel(MainCat(sName)));
    cLib.Restart();
    EXPECT_EQ(Tree(), L"Rock 1: a | " + sName + L" 1: | " + sName + L" 7:");
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(CreateMainCatTest, NameOutsideTheCodePageIsTakenFromTheDatabase)
{
    const std::wstring sName = L"\u0420\u043E\u043A";
    Added({Add(L"b", sName)});
    EXPECT_EQ(File(sName), SifCut("b", 1));
    cLib.Restart();
    EXPECT_EQ(Tree(), L"Rock 1: a | " + sName + L" 1: b");
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

TEST_F(CreateMainCatTest, FirstCategoryOfANewStationNeedsAPopulation)
{
    RadioPorts cEmpty;
    Library cOther(cEmpty);
    std::wstring sName = L"Jazz";
    EXPECT_FALSE(cOther.cSchedMan->CreateMainCat(sName));
    EXPECT_EQ(cEmpty.cMessages.Boxes,
              (Boxes{CriticalBox(L"Error in CreateMainCat [cSchedMan]", CriticalText(91))}));
    EXPECT_EQ(cEmpty.cFiles.Paths(), Lines());
    cOther.Populate();
    EXPECT_TRUE(cOther.cSchedMan->CreateMainCat(sName));
    EXPECT_EQ(cEmpty.cMessages.Boxes.size(), 1u);
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
        const bool bCreated = cOther.cSchedMan->CreateMainCat(sName);
        EXPECT_EQ(cOther.Tree(), bCreated ? L"Jazz 1:" : L"");
        EXPECT_EQ(cOwn.TemporaryFiles(), Lines());
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
};

TEST_F(CreateCatLevelTest, LevelIsMadeUnderItsMainCategoryAndSaved)
{
    typed = {L" 3 "};
    EXPECT_TRUE(CreateLevel());
    EXPECT_EQ(inputs, (std::vector<ShownInput>{askForLevel}));
    EXPECT_EQ(Tree(), L"Rock 1: a | Rock 3:");
    EXPECT_EQ(Level(L"Rock", 3)->CatName(), L"Rock");
    EXPECT_EQ(Level(L"Rock", 3)->MainCat(), MainCat(L"Rock"));
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1) + SifMarker(3));
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
    EXPECT_EQ(said, SaveSaid(L"Rock", 2));
    EXPECT_EQ(boxes, Boxes());
}

ShownBox GoneBox(const std::wstring& sName)
{
    return CriticalBox(L"Category Level Creation Aborted", L"Unexpected! - cant find main cat: " + sName);
}

TEST_F(CreateCatLevelTest, LevelNeedsAMainCategoryOfTheTreeThatIsNotAllSongs)
{
    ASSERT_EQ(Create(L"all Songs"), L"all Songs");
    Forget();
    for (const auto& cGiven :
         {std::shared_ptr<clsCat>(), std::make_shared<clsCat>(cLib.cMod, L"Gone", 0), MainCat(L"ALL SONGS")})
        EXPECT_FALSE(cLib.cSchedMan->CreateCatLevel(cGiven));
    EXPECT_EQ(boxes, (Boxes{OkBox(BoxIcon::None, L"Impossible!",
                                  L"Impossible to create a level is we dont know which main cat it's in!"),
                            GoneBox(L"Gone"),
                            OkBox(BoxIcon::Exclamation, L"Choose a specific category please.",
                                  L"ALL SONGS is not valid here!")}));
    EXPECT_EQ(inputs, std::vector<ShownInput>());
}

TEST_F(CreateCatLevelTest, WhatIsTypedIsANumberWithinTheRange)
{
    const auto Type = [&](const std::wstring& sTyped) {
        Forget();
        typed = {sTyped, std::nullopt}; // asked again, the user cancels
        const bool bCreated = CreateLevel();
        typed.clear();
        return bCreated;
    };
    const auto ExpectRefused = [&](const std::wstring& sTyped, const ShownBox& box) {
        SCOPED_TRACE(testing::PrintToString(sTyped));
        EXPECT_FALSE(Type(sTyped));
        EXPECT_EQ(boxes, (Boxes{box}));
        ASSERT_EQ(inputs.size(), 2u);
        EXPECT_EQ(inputs[1].sText, sTyped);
        EXPECT_EQ(Written(), Lines());
        EXPECT_EQ(Tree(), L"Rock 1: a");
    };
    for (const wchar_t* sTyped : {L"abc", L"1x"})
        ExpectRefused(sTyped, noNumberBox);
    for (const wchar_t* sTyped : {L"0", L"-1", L"1-", L"(5)", L"32765", L"32766", L"40000", L"99999999999",
                                  L"-99999999999", L"1e300", L"0.5"})
        ExpectRefused(sTyped, rangeBox);
    const std::pair<const wchar_t*, std::int32_t> accepted[]{
        {L"32764.5", 32764}, {L"32764", 32764}, {L"2.5", 2}, {L"3.5", 4},
        {L"&H10", 16},       {L"1,000", 1000},  {L"$7", 7},  {L"2E2", 200}};
    for (const auto& [sTyped, lLevel] : accepted)
    {
        SCOPED_TRACE(testing::PrintToString(std::wstring(sTyped)));
        EXPECT_TRUE(Type(sTyped));
        EXPECT_EQ(boxes, Boxes());
        EXPECT_EQ(inputs.size(), 1u);
        EXPECT_EQ(inputs.back().sText, L"");
        EXPECT_EQ(Written(), Lines{L"Rock"});
        EXPECT_EQ(Tree(), L"Rock 1: a | Rock " + std::to_wstring(lLevel) + L":");
        MainCat(L"Rock")->RemoveSubCat(Level(L"Rock", lLevel));
    }
}

TEST_F(CreateCatLevelTest, EmptyAnswerAndCancelEndIt)
{
    typed = {L"", std::nullopt, L"   "};
    for (int lTime = 1; lTime <= 3; ++lTime)
        EXPECT_FALSE(CreateLevel());
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Tree(), L"Rock 1: a");
    EXPECT_EQ(Written(), Lines());
}

TEST_F(CreateCatLevelTest, ExistingLevelIsMentionedAndYesAsksAgain)
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
    EXPECT_EQ(Tree(), L"Rock 1: a | Rock 2:");
}

TEST_F(CreateCatLevelTest, MainCategoryDeletedWhileTheQuestionIsOpenIsNotBroughtBack)
{
    typed = {L"3"};
    Once(cPorts.cMessages.OnShown, [&] { cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}); });
    EXPECT_FALSE(CreateLevel());
    EXPECT_EQ(boxes, (Boxes{GoneBox(L"Rock")}));
    EXPECT_EQ(File(L"Rock"), "none");
}

TEST_F(CreateCatLevelTest, AnswerGivenDuringAReloadCountsForTheNewTree)
{
    typed = {L"3"};
    Once(cPorts.cMessages.OnShown, [&] { cLib.Populate(); });
    EXPECT_TRUE(CreateLevel());
    EXPECT_EQ(Tree(), L"Rock 1: a | Rock 3:");
    EXPECT_EQ(inputs.size(), 1u);
}

} // namespace
} // namespace ravlo::test
