// SPDX-License-Identifier: MIT
#include "ui/health/HealthFakes.h"

namespace ravlo::test
{
namespace
{

constexpr const wchar_t* sClock = L"C:\\Radio\\clock.txt";
const std::wstring sNow = L"2024-03-01 12:00";

// ---- what is shown

TEST_F(HealthTest, FirstOpeningAsksEachLevelInTurn)
{
    memory.plan = {};
    Do([&] {
        EXPECT_EQ(view.colChoices, (Lines{L"Each level in turn"}));
        EXPECT_EQ(view.plan, (PlanTexts{L"Each level in turn", sNow, L"28"}));
        EXPECT_EQ(view.sSummary,
                  L"28 days from 2024-03-01 12:00, 12096 slots. 1 level red, 0 yellow, 1 green.");
        EXPECT_EQ(view.sStatus, L"");
    });
    EXPECT_EQ(Show(), std::nullopt);
}

TEST_F(HealthTest, WorstLevelIsOnTopAndChosen)
{
    Do([&] {
        EXPECT_EQ(Column(HealthTable::Levels, 0), (Lines{L"red", L"green"}));
        EXPECT_EQ(Column(HealthTable::Levels, 1), (Lines{L"Pop 1", L"Jazz 1"}));
        EXPECT_EQ(view.selected[HealthTable::Levels], 0u);
        EXPECT_EQ(view.sReasons,
                  L"Pop 1 is red. 1 cut never plays. 1 cut plays less than half of its due. The "
                  L"artist separation of 35 minutes leaves little room: at most 40 can be kept.");
        EXPECT_EQ(Column(HealthTable::Advice, 0),
                  (Lines{L"Fair rotation", L"Spread", L"1 cut of Abba fewer"}));
        EXPECT_EQ(Column(HealthTable::Advice, 1), (Lines{L"1 -> 0", L"1 -> 0", L"1 -> 0"}));
    });
    Show();
}

TEST_F(HealthTest, LevelsCarryTheirFigures)
{
    Do([&] {
        Lines colRow;
        for (std::size_t column = 2; column < form.Table(HealthTable::Levels).Columns().size(); ++column)
            colRow.push_back(Column(HealthTable::Levels, column)[0]);
        EXPECT_EQ(colRow, (Lines{L"12", L"11", L"35", L"40", L"35", L"80", L"1", L"0", L"216"}));
    });
    Show();
}

TEST_F(HealthTest, ChosenLevelFillsItsTables)
{
    Do([&] {
        EXPECT_EQ(form.Table(HealthTable::Seldom).Rows(), 1u);
        Lines colRow;
        for (std::size_t column = 0; column < 6; ++column)
            colRow.push_back(Column(HealthTable::Seldom, column)[0]);
        EXPECT_EQ(colRow, (Lines{L"Abba", L"Title of Pop1", L"0", L"20", L"artist separation",
                                 L"Abba - Title of Pop0"}));
        EXPECT_EQ(Column(HealthTable::Plays, 3)[0], L"0") << "the fewest plays come first";
        EXPECT_EQ(form.Table(HealthTable::Gaps).Rows(), 11u);
        form.RowSelected(HealthTable::Levels, 1);
        EXPECT_EQ(form.Table(HealthTable::Seldom).Rows(), 0u);
        EXPECT_EQ(form.Table(HealthTable::Hours).Rows(), 6u);
        EXPECT_EQ(view.sReasons, L"Jazz 1 is green. Every cut plays its share and no rule is broken.");
        EXPECT_FALSE(view.bCarryOut);
    });
    Show();
}

TEST_F(HealthTest, HeadingSortsAndKeepsTheChosenLevel)
{
    Do([&] {
        form.HeadingClick(HealthTable::Levels, 1);
        EXPECT_EQ(Column(HealthTable::Levels, 1), (Lines{L"Jazz 1", L"Pop 1"}));
        EXPECT_EQ(view.selected[HealthTable::Levels], 1u);
        EXPECT_EQ(form.Level()->sKey, L"Pop\t1");
        form.HeadingClick(HealthTable::Levels, 99);
    });
    Show();
}

TEST_F(HealthTest, LevelsThatAreNotAskedOrEmptySaySo)
{
    cLib.MainCat(L"Jazz")->AddSubCat(std::make_shared<clsCat>(cLib.cMod, L"Jazz", 2));
    cPorts.cFiles.Put(sClock, "Pop,1\n");
    memory.plan.sClock = sClock;
    Do([&] {
        EXPECT_EQ(Column(HealthTable::Levels, 0), (Lines{L"red", L"not asked", L"empty"}));
        form.RowSelected(HealthTable::Levels, 1);
        EXPECT_EQ(view.sReasons, L"The plan does not ask for Jazz 1.");
        form.RowSelected(HealthTable::Levels, 2);
        EXPECT_EQ(view.sReasons, L"Jazz 2 has no cuts.");
    });
    Show();
    EXPECT_NE(view.sSummary.find(L"2 not asked or empty"), std::wstring::npos);
}

// ---- the plan

TEST_F(HealthTest, HostsPlanIsAskedFirst)
{
    Plan plan;
    plan.AddSlot({L"Jazz", 1});
    Do([&] {
        EXPECT_EQ(view.colChoices, (Lines{L"Plan of the program (1 slot)", L"Each level in turn"}));
        EXPECT_EQ(Column(HealthTable::Levels, 0), (Lines{L"green", L"not asked"}));
    });
    Show(plan);
    EXPECT_EQ(view.plan.sClock, L"Plan of the program (1 slot)");
}

TEST_F(HealthTest, PlanThatCannotBeUsedChangesNothing)
{
    cPorts.cFiles.Put(sClock, "Pop,1\nPop,9\n");
    const struct
    {
        PlanTexts plan;
        const wchar_t* sStatus;
    } cases[] = {
        {{L" ", sNow, L"1"}, L"Choose a clock file, or \"Each level in turn\"."},
        {{HealthPlan::sEachLevel, L"today", L"1"},
         L"The start is no date and time such as 2026-11-22 06:00."},
        {{HealthPlan::sEachLevel, sNow, L"0"}, L"Days is a number from 1 to 3660."},
        {{HealthPlan::sEachLevel, sNow, L"many"}, L"Days is a number from 1 to 3660."},
        {{L"C:\\none.txt", sNow, L"1"}, L"C:\\none.txt is not there."},
        {{sClock, sNow, L"1"}, L"C:\\Radio\\clock.txt, line 2: there is no level Pop:9"},
    };
    for (const auto& each : cases)
    {
        Do([&] {
            view.plan = each.plan;
            form.SimulateClick();
        });
        Do([&] {
            EXPECT_EQ(view.sStatus, each.sStatus);
            EXPECT_EQ(form.Station()->dDays, 1) << "the figures of before";
        });
    }
    Show();
}

TEST_F(HealthTest, ClockIsRememberedForItsStation)
{
    cPorts.cFiles.Put(sClock, "Jazz,1\n");
    view.sFile = sClock;
    Do([&] { form.BrowseClick(); });
    Show();
    EXPECT_EQ(view.sAsked, L"") << "no file was chosen before";
    memory = {};
    Do([&] {
        EXPECT_EQ(view.colChoices, (Lines{L"Each level in turn", sClock}));
        EXPECT_EQ(view.plan.sClock, sClock);
        EXPECT_EQ(Column(HealthTable::Levels, 0), (Lines{L"green", L"not asked"}));
        form.BrowseClick();
        EXPECT_EQ(view.sAsked, sClock);
    });
    Show();
}

TEST_F(HealthTest, RememberedClockThatIsGoneIsReplaced)
{
    memory.plan.sClock = L"C:\\gone.txt";
    Do([&] {
        EXPECT_EQ(view.plan.sClock, L"Each level in turn");
        EXPECT_EQ(form.Table(HealthTable::Levels).Rows(), 2u);
    });
    Show();
    EXPECT_NE(std::find(view.colStatus.begin(), view.colStatus.end(),
                        L"C:\\gone.txt is not there. Each level is asked in turn instead."),
              view.colStatus.end());
}

TEST_F(HealthTest, StationThatIsNotLoadedSaysSo)
{
    cLib.Restart();
    cLib.cSchedMan = std::make_shared<clsSchedMan>(cLib.cMod);
    frmHealthPresenter other{view, cLib.cMod, cLib.cSchedMan, memory};
    view.cForm = &other;
    other.ShowModalUI(std::nullopt);
    EXPECT_EQ(view.colStatus, (Lines{L"The station is not loaded."}));
}

// ---- carrying out

TEST_F(HealthTest, FairRotationIsCarriedOutAndSeen)
{
    Do([&] { CarryOut(L"Fair rotation"); });
    Do([&] {
        EXPECT_TRUE(cLib.cSchedMan->Options().bFairRotation);
        EXPECT_EQ(Column(HealthTable::Levels, 8), (Lines{L"0", L"0"}));
        EXPECT_EQ(view.sSummary.find(L"before the last change"), std::wstring::npos);
    });
    Show();
    EXPECT_NE(std::find(view.colStatus.begin(), view.colStatus.end(), L"Fair rotation is on."),
              view.colStatus.end());
    EXPECT_EQ(cLib.cSchedMan->Undo(), L"Undone: fair rotation");
    EXPECT_FALSE(cLib.cSchedMan->Options().bFairRotation);
}

TEST_F(HealthTest, SpreadGivesWhatWasPredicted)
{
    const Keys colBefore = cLib.Order(L"Pop", 1);
    Do([&] { CarryOut(L"Spread"); });
    Do([&] {
        EXPECT_NE(cLib.Order(L"Pop", 1), colBefore);
        EXPECT_EQ(Column(HealthTable::Levels, 8), (Lines{L"0", L"0"}));
    });
    Show();
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty()) << "nothing is asked";
    EXPECT_EQ(cLib.cSchedMan->Undo(), L"Undone: spread of Pop 1");
    EXPECT_EQ(cLib.Order(L"Pop", 1), colBefore);
}

TEST_F(HealthTest, SeparationIsSavedInTheLevelsRules)
{
    cLib.Level(L"Jazz", 1)->Rules()->Apply({90, std::nullopt, std::nullopt, std::nullopt});
    memory.sLevelKey = L"jazz\t1";
    Do([&] { CarryOut(L"Artist separation 34"); });
    Show();
    EXPECT_EQ(cLib.Level(L"Jazz", 1)->PresentRules()->ArtistSepMins(), 34);
    EXPECT_NE(std::find(view.colStatus.begin(), view.colStatus.end(),
                        L"The artist separation of Jazz 1 is 34 minutes."),
              view.colStatus.end());
    EXPECT_EQ(cLib.cSchedMan->Undo(), L"Undone: artist separation of Jazz 1");
    EXPECT_EQ(cLib.Level(L"Jazz", 1)->PresentRules()->ArtistSepMins(), 90);
}

TEST_F(HealthTest, SeparationThatCannotBeSavedChangesNothing)
{
    cLib.Level(L"Jazz", 1)->Rules()->Apply({90, std::nullopt, std::nullopt, std::nullopt});
    memory.sLevelKey = L"jazz\t1";
    Do([&] {
        cPorts.cFiles.SetReadOnly(std::wstring(sRadio) + L"Scheduler\\Rules");
        CarryOut(L"Artist separation 34");
        EXPECT_EQ(view.sStatus, StandardDescription(error::PathFileAccess));
    });
    Show();
    EXPECT_EQ(cLib.Level(L"Jazz", 1)->PresentRules()->ArtistSepMins(), 90);
    EXPECT_FALSE(cLib.cSchedMan->CanUndo());
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
}

TEST_F(HealthTest, TitleSeparationIsSavedInTheLevelsRulesToo)
{
    cLib.Level(L"Jazz", 1)->Rules()->Apply({std::nullopt, 90, std::nullopt, std::nullopt});
    memory.sLevelKey = L"jazz\t1";
    Do([&] { CarryOut(L"Title separation 34"); });
    Show();
    EXPECT_EQ(cLib.Level(L"Jazz", 1)->PresentRules()->TitleSepMins(), 34);
    EXPECT_NE(std::find(view.colStatus.begin(), view.colStatus.end(),
                        L"The title separation of Jazz 1 is 34 minutes."),
              view.colStatus.end());
    EXPECT_EQ(cLib.cSchedMan->Undo(), L"Undone: title separation of Jazz 1");
    EXPECT_EQ(cLib.Level(L"Jazz", 1)->PresentRules()->TitleSepMins(), 90);
}

TEST_F(HealthTest, OtherCutsCannotBeCarriedOut)
{
    Do([&] {
        EXPECT_TRUE(view.bCarryOut) << "the first remedy is selected";
        form.RowSelected(HealthTable::Advice, RowOf(HealthTable::Advice, 0, L"1 cut of Abba fewer"));
        EXPECT_FALSE(view.bCarryOut);
        const std::wstring sTree = cLib.Tree();
        form.CarryOutClick();
        EXPECT_EQ(cLib.Tree(), sTree);
    });
    Show();
}

TEST_F(HealthTest, LevelThatIsGoneIsNotCarriedOut)
{
    Do([&] {
        cLib.cSchedMan->DeleteCats({cLib.Level(L"Pop", 1)});
        CarryOut(L"Spread");
        EXPECT_EQ(view.sStatus, L"Pop 1 is no longer there: simulate again.");
    });
    Show();
}

// ---- going to a cut

TEST_F(HealthTest, CutToGoToClosesTheWindow)
{
    Do([&] { form.GoTo(7); }); // there is no such row
    Do([&] { form.GoTo(0); });
    Do([] { FAIL() << "the window is still open"; });
    EXPECT_EQ(Show(), (HealthTarget{L"Pop\t1", L"Pop1"}));
    view.colActions.clear();
    EXPECT_EQ(Show(), std::nullopt) << "once";
}

TEST_F(HealthTest, NextOpeningBeginsWithTheLastFigures)
{
    Do([&] { form.RowSelected(HealthTable::Levels, 1); });
    Show();
    const std::shared_ptr<HealthForecast> cBefore = memory.cForecast;
    Once(cPorts.cHostLoop.OnPump, [&] {
        EXPECT_EQ(memory.cForecast, cBefore);
        EXPECT_EQ(form.Level()->sKey, L"Jazz\t1");
        EXPECT_EQ(view.sSummary.find(L"These figures are of before the last change"), 0u);
    });
    Do([&] {
        EXPECT_NE(memory.cForecast, cBefore);
        EXPECT_EQ(form.Level()->sKey, L"Jazz\t1");
        EXPECT_EQ(view.sSummary.find(L"1 day"), 0u);
    });
    Show();
}

// ---- changes, and what is asked for while something runs

TEST_F(HealthTest, ChangesOfTheDataBaseMarkTheFigures)
{
    Do([&] {
        cLib.cDataBase->Announce(&DataBaseEvents::CutsModified, Cuts{cLib.cDataBase->colCuts[0]});
        EXPECT_EQ(view.sSummary.find(L"These figures are of before the last change: simulate again. 1 day"),
                  0u);
        form.SimulateClick();
    });
    Do([&] { EXPECT_EQ(view.sSummary.find(L"1 day"), 0u); });
    Show();
}

TEST_F(HealthTest, ChangeDuringASimulationMarksItsFigures)
{
    Once(cPorts.cHostLoop.OnPump, [&] { form.NoteChange(); });
    Do([&] { EXPECT_EQ(view.sSummary.find(L"These figures are of before"), 0u); });
    Show();
}

TEST_F(HealthTest, CancelledSimulationKeepsTheFigures)
{
    Do([&] {
        Once(cPorts.cHostLoop.OnPump, [&] {
            EXPECT_TRUE(view.bRunning);
            form.CancelClick();
        });
        view.plan.sDays = L"5";
        form.SimulateClick();
    });
    Do([&] {
        EXPECT_EQ(view.sStatus, L"Cancelled.");
        EXPECT_FALSE(view.bRunning);
        EXPECT_EQ(form.Station()->dDays, 1);
        EXPECT_EQ(view.sSummary.find(L"1 day"), 0u);
    });
    Show();
}

TEST_F(HealthTest, ClosingCancelsTheSimulation)
{
    Once(cPorts.cHostLoop.OnPump, [&] { form.RequestClose(); });
    Do([] { FAIL() << "the window is still open"; });
    Show();
    EXPECT_EQ(memory.cForecast, nullptr);
}

TEST_F(HealthTest, LevelChosenDuringAdviceReplacesIt)
{
    cLib.Level(L"Jazz", 1)->Rules()->Apply({90, 90, 0, false});
    memory.sLevelKey = L"Pop\t1";
    bool bChosen = false;
    cPorts.cHostLoop.OnPump = [&] {
        if (!bChosen && view.sStatus == L"Working out what helps Pop 1 ...")
        {
            bChosen = true;
            form.RowSelected(HealthTable::Levels, RowOf(HealthTable::Levels, 1, L"Jazz 1"));
        }
    };
    Do([&] {
        EXPECT_TRUE(bChosen);
        EXPECT_EQ(form.Level()->sKey, L"Jazz\t1");
        EXPECT_NE(memory.cForecast->adviser.Of(*memory.cForecast->LevelOf(L"Jazz\t1")), nullptr);
        EXPECT_EQ(memory.cForecast->adviser.Of(*memory.cForecast->LevelOf(L"Pop\t1")), nullptr);
    });
    Show();
}

TEST_F(HealthTest, CancelledAdviceIsFoundWhenTheLevelIsChosenAgain)
{
    Once(cPorts.cHostLoop.OnPump, [&] {
        cPorts.cHostLoop.OnPump = [&] {
            if (view.sStatus.starts_with(L"Working out"))
                form.CancelClick();
        };
    });
    Do([&] {
        EXPECT_TRUE(view.sReasons.ends_with(L"What helps was not worked out; choose the level again."));
        cPorts.cHostLoop.OnPump = nullptr;
        form.RowSelected(HealthTable::Levels, 0);
    });
    Do([&] { EXPECT_EQ(form.Table(HealthTable::Advice).Rows(), 3u); });
    Show();
}

TEST_F(HealthTest, SimulationAskedForDuringAdviceFollowsIt)
{
    cPorts.cHostLoop.OnPump = [&] {
        if (view.plan.sDays == L"1" && view.sStatus.starts_with(L"Working out"))
        {
            view.plan.sDays = L"3";
            form.SimulateClick();
        }
    };
    Do([&] { EXPECT_EQ(form.Station()->dDays, 3); });
    Show();
}

TEST_F(HealthTest, ShowingAgainComesToTheFront)
{
    Do([&] { EXPECT_EQ(form.ShowModalUI(std::nullopt), std::nullopt); });
    Show();
    EXPECT_EQ(view.lFronts, 1);
}

TEST_F(HealthTest, ManagerMayEndWhileTheWindowIsOpen)
{
    Do([&] {
        cLib.End();
        CarryOut(L"Spread");
        form.SimulateClick();
    });
    Do([&] { EXPECT_EQ(view.sStatus, L"The station is not loaded."); });
    Show();
}

// ---- the report

TEST_F(HealthTest, ReportHasTheAdviceOfEveryLevel)
{
    for (const auto& [sPath, sFirst] :
         {std::pair(L"C:\\Radio\\r.html", "<!DOCTYPE html>"), std::pair(L"C:\\Radio\\r.JSON", "{\"start\"")})
    {
        Do([&, sFile = sPath] {
            view.sFile = sFile;
            form.SaveReportClick();
        });
        Do([&, sFile = sPath, sBegin = sFirst] {
            EXPECT_EQ(view.sAsked, L"Rotation health.html");
            const std::string bytes = cPorts.cFiles.Get(sFile);
            EXPECT_EQ(bytes.find(sBegin), 0u);
            EXPECT_NE(bytes.find("spread"), std::string::npos);
            EXPECT_EQ(view.sStatus, std::wstring(L"Saved in ") + sFile + L".");
        });
    }
    Show();
}

TEST_F(HealthTest, ReportThatCannotBeWrittenSaysWhy)
{
    view.sFile = L"C:\\nowhere\\r.html";
    Do([&] { form.SaveReportClick(); });
    Do([&] { EXPECT_EQ(view.sStatus, StandardDescription(error::PathNotFound)); });
    Show();
}

} // namespace
} // namespace ravlo::test
