// SPDX-License-Identifier: MIT
#include "ui/library/LibraryRotation.h"

#include "frmUILibTest.h"
#include "scheduler/StepParts.h"
#include "scheduler/UndoRecords.h"

namespace ravlo::test
{
namespace
{

using enum LibraryCommand;

class LibraryRotationTest : public frmUILibTest
{
protected:
    // Records what is opened.
    void GiveDialogs()
    {
        cForm.Rotation().SetDialogs({[this](clsSchedMan&, const std::wstring& sLevelKey, const TextKey&) {
            colOpened.push_back(L"explanation " + sLevelKey);
                                     },
                                     [this](clsSchedMan&, const std::wstring& sLevelKey) {
            colOpened.push_back(L"next cuts " + sLevelKey);
        },
                                    [this](clsSchedMan&) { colOpened.push_back(L"health"); }});
    }
    std::vector<bool> Enabled() const
    {
        std::vector<bool> bEnabled;
        for (const LibraryCommand eCommand : {mnuExplainNext, mnuNextCuts, mnuHealth})
            bEnabled.push_back(cForm.ItemOf(eCommand).bEnabled);
        return bEnabled;
    }

    Lines colOpened;
};

TEST_P(LibraryRotationTest, CommandsWithoutAWindowAreDisabled)
{
    EXPECT_EQ(Enabled(), (std::vector<bool>{false, false, false}));
    ShowNode(L"Rock", 1);
    for (const LibraryCommand eCommand : {mnuExplainNext, mnuNextCuts, mnuHealth})
        Do(eCommand);
    EXPECT_EQ(Enabled(), (std::vector<bool>{false, false, false}));
}

TEST_P(LibraryRotationTest, CommandsOfALevelNeedOneInTheGrid)
{
    GiveDialogs();
    for (const auto& [sName, lLevel, bLevel] :
         {std::tuple{L"ALL AUDIO", 0, false}, {L"Rock", 0, false}, {L"Rock", 2, true}})
    {
        ShowNode(sName, lLevel);
        colOpened.clear();
        for (const LibraryCommand eCommand : {mnuExplainNext, mnuNextCuts, mnuHealth})
            Do(eCommand);
        EXPECT_EQ(colOpened, bLevel ? (Lines{L"explanation Rock\t2", L"next cuts Rock\t2", L"health"})
                                    : (Lines{L"health"}));
        EXPECT_EQ(Enabled(), (std::vector<bool>{bLevel, bLevel, true}));
    }
}

TEST_P(LibraryRotationTest, FairRotationIsTickedWhileItIsOn)
{
    for (const bool bOn : {true, false})
    {
        Do(mnuFairRotation);
        EXPECT_EQ(Man().Options().bFairRotation, bOn);
        EXPECT_EQ(cForm.ItemOf(mnuFairRotation).bTicked, bOn);
    }
}

TEST_P(LibraryRotationTest, AFailedSwitchIsShownAndTheTickStaysRight)
{
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler", true);
    Do(mnuFairRotation);
    ASSERT_EQ(Shown().size(), 1u);
    EXPECT_EQ(Shown()[0].sTitle, L"mnuFairRotation_Click");
    EXPECT_FALSE(cForm.ItemOf(mnuFairRotation).bTicked);
    ExpectIdle();
}

TEST_P(LibraryRotationTest, NothingIsEnabledWithoutAManager)
{
    GiveDialogs();
    cForm.SetSchedMan(nullptr);
    for (const LibraryCommand eCommand : {mnuUndo, mnuRedo, mnuFairRotation, mnuExplainNext, mnuHealth})
        EXPECT_FALSE(cForm.ItemOf(eCommand).bEnabled);
}

TEST_P(LibraryRotationTest, UndoAndRedoNameTheirStepAndSayWhatTheyDid)
{
    ShowNode(L"Rock", 1);
    Remove({0});
    EXPECT_EQ(RowKeys(), (Keys{L"b", L"c"}));
    EXPECT_FALSE(cForm.ItemOf(mnuRedo).bEnabled);
    EXPECT_EQ(cForm.ItemOf(mnuUndo).sText, Man().UndoText());
    Do(mnuUndo);
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c"}));
    EXPECT_TRUE(cView.sResult.starts_with(L"Undone: ")) << cView.sResult.size();
    EXPECT_FALSE(cForm.ItemOf(mnuUndo).bEnabled);
    EXPECT_EQ(cForm.ItemOf(mnuUndo).sText, L"Undo");
    EXPECT_EQ(cForm.ItemOf(mnuRedo).sText, Man().RedoText());
    Do(mnuRedo);
    EXPECT_EQ(RowKeys(), (Keys{L"b", L"c"}));
    EXPECT_FALSE(cForm.ItemOf(mnuRedo).bEnabled);
}

TEST_P(LibraryRotationTest, TheMenuNamesAStepInOneShortLine)
{
    const std::wstring sLong = L"Night\nand " + std::wstring(100, L'x');
    Add(L"g", sLong, 1);
    Man().PopulateFromDataBase(cLibrary.cDataBase, Man().AppPath());
    cForm.ReloadAll();
    ShowNode(sLong, 1);
    Remove({0});
    ASSERT_GT(Man().UndoText().size(), 100u);
    const std::wstring sText = cForm.ItemOf(mnuUndo).sText;
    EXPECT_EQ(sText.size(), 80u);
    EXPECT_EQ(sText.back(), L'\u2026');
    EXPECT_NE(sText.find(L"Night and xxx"), std::wstring::npos);
}

TEST_P(LibraryRotationTest, WithoutAStepUndoAndRedoSaySo)
{
    Do(mnuUndo);
    EXPECT_EQ(cView.sResult, L"There is nothing to undo");
    Do(mnuRedo);
    EXPECT_EQ(cView.sResult, L"There is nothing to redo");
    EXPECT_TRUE(Shown().empty());
}

TEST_P(NewLibraryTest, FairRotationIsDisabledBeforeAPopulation)
{
    EXPECT_FALSE(cForm.ItemOf(mnuFairRotation).bEnabled);
}

TEST_P(LibraryRotationTest, WhatAWindowHasChangedIsSaidWhenItIsClosed)
{
    CategoryWindows windows(Man());
    windows.OnCategory = [&](CategoryRequest&) { Man().ApplyRules(Level(L"Rock", 1), {5, {}, {}, {}}); };
    Do(mnuCatUI);
    EXPECT_EQ(cView.sResult, L"Last change: artist separation of Rock 1");
    windows.OnCategory = [](CategoryRequest&) {};
    cView.sResult = L"";
    Do(mnuCatUI);
    EXPECT_EQ(cView.sResult, L"") << "nothing was changed";
    LibraryDialogs dialogs;
    dialogs.ShowHealth = [](clsSchedMan& cSchedMan) { cSchedMan.SetFairRotation(true); };
    cForm.Rotation().SetDialogs(dialogs);
    Do(mnuHealth);
    EXPECT_EQ(cView.sResult, L"Last change: fair rotation");
}

TEST_P(LibraryRotationTest, StepsThatWereNotWrittenAreWrittenWhenNothingRuns)
{
    const std::wstring sPath = std::wstring(sRadio) + L"Scheduler\\Undo.dat";
    CatCollection colLeft;
    cLibrary.cSchedMan->RemoveCutFromCategory(cLibrary.MainCat(L"Rock"), cLibrary.CutsOf(L"Rock")[0],
                                              colLeft);
    EXPECT_FALSE(cPorts.cFiles.FileExists(sPath)) << "what a host removes one by one is saved later";
    cForm.Tick();
    EXPECT_TRUE(cPorts.cFiles.FileExists(sPath));
    cPorts.cFiles.ClearOperations();
    cForm.Tick();
    EXPECT_EQ(cPorts.cFiles.Operations(), Lines()) << "nothing is owed";
}

TEST_P(LibraryRotationTest, AnInterruptedStepIsSaidWhenTheWindowOpens)
{
    cForm.Tick();
    ChangeRecord record;
    record.colOrders = {{{L"Rock", 1}, {TextKey(L"b"), TextKey(L"a")}}};
    StepParts cKilled(cLibrary.cMod);
    cKilled.Begin(std::wstring(sRadio) + L"Scheduler\\Undo.parts", UndoFileCheck(""), L"deletion of Rock 1");
    cKilled.Add(record);
    cForm.Tick();
    EXPECT_EQ(cView.sResult, L"") << "it is open for long";
    cView.OnModal = [this] { cForm.Tick(); };
    cForm.ShowModalUI();
    EXPECT_EQ(cView.sResult, L"The deletion of Rock 1 was interrupted; Undo brings back what it has done");
}

TEST_P(LibraryRotationTest, SpreadingNeedsTicks)
{
    Do(mnuSpread);
    EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::Information, L"You Need to Check (tick) Them In The Tree.",
                                    L"First, select some categories to spread")}));
}

TEST_P(LibraryRotationTest, SpreadCategoriesAreSavedAndShown)
{
    const Cuts& colCuts = DataBase().colCuts;
    colCuts[0]->SetArtist(L"Abba");
    colCuts[1]->SetArtist(L"Abba");
    colCuts[2]->SetArtist(L"Blur");
    ShowNode(L"Rock", 1);
    Tick(L"Rock", 1);
    Answers({BoxAnswer::Yes});
    ForgetSifs();
    Do(mnuSpread);
    EXPECT_EQ(RowKeys()[1], L"c");
    EXPECT_EQ(RowKeys(), Order(L"Rock", 1));
    EXPECT_TRUE(SifSaved(L"Rock"));
    ExpectIdle();
}

INSTANTIATE_TEST_SUITE_P(Objects, LibraryRotationTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test
