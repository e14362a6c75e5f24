// SPDX-License-Identifier: MIT
#include "ui/category/FormTest.h"

namespace ravlo::test
{

// ---- opening ----

TEST_F(Form, ShowsTheCaptionAndNewButtonsOfTheRequest)
{
    const auto expectShown = [&](const wchar_t* sCaption, bool bNewButtons) {
        Open(L"", 0, [&] {
            EXPECT_EQ(cView.sCaption, sCaption);
            EXPECT_EQ(cView.bNewButtons, bNewButtons);
        });
    };
    expectShown(L"Category", false);
    request.sCaption = L"Pick one";
    request.bAllowNew = true;
    expectShown(L"Pick one", true);
}

TEST_F(Form, OpensOnTheGivenCategoryLevelAndOpenerFilter)
{
    request.bOpenerChosen = true;
    Open(L"Rock", 3, [&] {
        ExpectCurrent(L"Rock", L"3");
        EXPECT_TRUE(cScreen.Checked(chkOpener));
    });
    Open(L"Rock", 0, [&] { ExpectCurrent(L"Rock", L"ALL"); });
}

TEST_F(Form, AMarkedCutIsShownOnlyWithMultiSelect)
{
    request.cCut = CutOf(2);
    Open(L"", 0, [&] { EXPECT_EQ(cScreen.Selected(lstCat), Texts()); });
    request.bAllowMultiSelect = true;
    Open(L"", 0, [&] {
        EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Rock"}));
        EXPECT_EQ(cScreen.Current(lstlvl), L"3");
    });
}

TEST_F(Form, SaysThatItNeedsTheCategoriesBeforeAnyPopulation)
{
    const auto cFresh = std::make_shared<clsSchedMan>(cMod);
    request.bOpenerChosen = true;
    cView.OnModal = [&] {
        EXPECT_TRUE(cScreen.Checked(chkOpener));
        cForm->OKClick();
    };
    EXPECT_EQ(Show(cFresh), lChosen);
    EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                    L"Cat Selector NEEDS the collection of main cats!")}));
    EXPECT_EQ(request.cMainCatChosen, nullptr);
    cFresh->PopulateFromDataBase(std::make_shared<FakeDataBase>(), L"C:\\Other\\");
    Shown().clear();
    Show(cFresh);
    EXPECT_EQ(Shown(), Boxes()) << "a station may have no category";
}

// ---- what is returned ----

TEST_F(Form, OKReturnsTheChoice)
{
    OpenAndOK(L"", 0, [&] {
        ClickCat(L"Rock");
        ClickOpener(true);
        cScreen.lists[lstsongs1].lSelected = {0};
    });
    ExpectChosen(MainCat(L"Rock"), Level(L"Rock", 1));
    EXPECT_TRUE(request.bOpenerChosen);
    EXPECT_EQ(request.colSelCuts, (Cuts{CutOf(1)}));
    EXPECT_FALSE(cView.bOpen);
}

TEST_F(Form, OKWithoutAnotherChoiceReturnsWhatWasGiven)
{
    request.bOpenerChosen = true;
    OpenAndOK(L"Rock", 3);
    ExpectChosen(MainCat(L"Rock"), Level(L"Rock", 3));
    EXPECT_TRUE(request.bOpenerChosen);
    OpenAndOK(L"Rock", 3, [&] { ClickLevel(L"ALL"); });
    ExpectChosen(MainCat(L"Rock"), nullptr);
}

TEST_F(Form, CancelOrAnyOtherEndChangesNothing)
{
    MultiSelect(0);
    request.colSelCuts = {CutOf(4)};
    for (const bool bCancel : {true, false})
    {
        const auto choose = [&] {
            ClickCat(L"Jazz");
            ClickOpener(true);
            if (bCancel)
                cForm->CancelClick();
        };
        EXPECT_EQ(Open(L"Rock", 3, choose), lNotChosen);
        ExpectChosen(MainCat(L"Rock"), Level(L"Rock", 3));
        EXPECT_FALSE(request.bOpenerChosen);
        EXPECT_EQ(request.colSelCuts, (Cuts{CutOf(4)}));
        ExpectCut(0, L"Rock", 1);
        EXPECT_EQ(cView.bOpen, !bCancel);
    }
}

TEST_F(Form, OnlyWithMultiSelectTheCutReceivesLevelAndCategories)
{
    request.cCut = CutOf(3);
    OpenAndOK(L"Rock", 3);
    ExpectCut(3, L"Jazz", 2);
    request = {};
    MultiSelect(3);
    OpenAndOK(L"", 0, [&] {
        ClickCat(L"Rock", true); // with Jazz
        ClickLevel(L"3");
    });
    ExpectCut(3, L"Rock/Jazz", 3);
    EXPECT_EQ(Level(L"Rock", 3)->SchedCuts()->At(Level(L"Rock", 3)->SchedCuts()->Count() - 1), CutOf(3));
    EXPECT_FALSE(Level(L"Jazz", 2)->SchedCuts()->Exists(CutOf(3)->Key())) << "placed, not only named";
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Form, WithMultiSelectALLIsRefusedAndTheCutStaysAsItWas)
{
    const auto chooseAll = [&] {
        ClickCat(L"Rock");
        ClickLevel(L"ALL");
    };
    request.bAllowMultiSelect = true;
    OpenAndOK(L"", 0, chooseAll);
    EXPECT_EQ(Shown(), Boxes()) << "without a cut it is an answer like another";
    ExpectChosen(MainCat(L"Rock"), nullptr);
    MultiSelect(3);
    OpenAndOK(L"", 0, chooseAll);
    EXPECT_EQ(Shown(),
              (Boxes{OkBox(BoxIcon::Exclamation, L"'ALL' is Not Valid",
                           L"Choose a level other than 'ALL' to be able to multi-select categories")}));
    ExpectCut(3, L"Jazz", 2);
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
}

TEST_F(Form, WithMultiSelectACutWhoseLastCategoryIsUnmarkedStaysAsItWas)
{
    MultiSelect(3);
    OpenAndOK(L"", 0, [&] {
        MainCat(L"Jazz")->AddSubCat(std::make_shared<clsCat>(cMod, L"Jazz", 5));
        cScreen.lists[lstCat].lSelected.clear();
        cSelector.CatClick();
        ClickLevel(L"5");
    });
    ExpectCut(3, L"Jazz", 2);
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Form, ACutThatCannotBeChangedIsAnErrorAndNothingIsReturned)
{
    MultiSelect(3);
    CutOf(3)->failing = {"SetCategoryText"};
    const auto change = [&] {
        ClickCat(L"Rock");
        ClickLevel(L"3");
    };
    EXPECT_THROW(OpenAndOK(L"Rock", 3, change), RuntimeError);
    EXPECT_EQ(request.colSelCuts, Cuts());
    ExpectCut(3, L"Jazz", 2); // as before, though it took the level at first
}

TEST_F(Form, ClicksAfterClosingAreIgnored)
{
    OpenAndOK(L"Rock", 3, [&] {
        Type(txtGlobalAlbumSepMins, L"46");
        cForm->OKClick();
        ClickEverything();
    });
    EXPECT_EQ(cMod.GlobalAlbumSepMins(), 60);
    EXPECT_TRUE(cView.bRulesArea);
    EXPECT_EQ(cView.ePane, RulesPane::Global);
}

// ---- a host that reloads or deletes while the window is open ----

TEST_F(Form, OKAfterAReloadReturnsTheCurrentCategoryAndLevel)
{
    const auto cBefore = MainCat(L"Rock");
    for (const bool bInQuestion : {false, true})
    {
        cPorts.cMessages.OnShown = [&] { Repopulate(); };
        OpenAndOK(L"Rock", 3, [&] { bInQuestion ? Type(txtArtistSepMins1, L"46") : Repopulate(); });
        ASSERT_NE(MainCat(L"Rock"), cBefore);
        ExpectChosen(MainCat(L"Rock"), Level(L"Rock", 3));
    }
}

TEST_F(Form, OKReturnsNeitherADeletedCategoryNorADeletedLevel)
{
    OpenAndOK(L"Rock", 3, [&] { cSchedMan->DeleteCats({Level(L"Rock", 3)}); });
    ExpectChosen(MainCat(L"Rock"), nullptr);
    OpenAndOK(L"Rock", 1, [&] { cSchedMan->DeleteCats({MainCat(L"Rock")}); });
    ExpectChosen(nullptr, nullptr);
}

TEST_F(Form, CutIsNotPlacedInACategoryDeletedDuringTheCall)
{
    MultiSelect(0); // in Rock 1
    OpenAndOK(L"", 0, [&] {
        ClickCat(L"Jazz", true);
        cSchedMan->DeleteCats({MainCat(L"Rock")});
    });
    EXPECT_EQ(MainCat(L"Rock"), nullptr);
    ExpectCut(0, L"Jazz", 2);
}

TEST_F(Form, ApplyOrYesAfterAReloadChangesTheCurrentRules)
{
    OpenRules(L"Rock", 3, [&] {
        Repopulate();
        Type(txtArtistSepMins1, L"46");
        cForm->ApplyClick();
    });
    EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 46);
    Answers(BoxAnswer::Yes);
    OpenAndOK(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"47");
        Repopulate();
    });
    EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 47);
}

TEST_F(Form, ApplyToADeletedCategorySavesNothingAndShowsWhatIsLeft)
{
    OpenRules(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"46");
        cSchedMan->DeleteCats({MainCat(L"Rock")});
        Shown().clear();
        cForm->ApplyClick();
        EXPECT_EQ(cScreen.Entries(lstCat), (Texts{L"Jazz", L"NOCAT"}));
        EXPECT_EQ(cView.ePane, RulesPane::Global);
        EXPECT_FALSE(cView.bApply);
    });
    EXPECT_EQ(Shown(), Boxes());
    EXPECT_FALSE(HasRules(L"3"));
}

// ---- the panes ----

TEST_F(Form, StartsWithTheGlobalRules)
{
    SetGlobalMins({11, 12, 13});
    Open(L"Rock", 3, [&] {
        EXPECT_EQ(cView.ePane, RulesPane::Global);
        EXPECT_EQ(TextsOf(RulesPane::Global), (Texts{L"11", L"12", L"13"}));
        EXPECT_FALSE(cView.bApply);
        ClickCat(L"Jazz");
        EXPECT_EQ(cView.sRulesTitle, sGlobalTitle) << "the title names the rules that are shown";
        cForm->TabClick(RulesPane::Category);
        EXPECT_EQ(cView.sRulesTitle, L"Showing Rules for: Jazz 2");
        cForm->TabClick(RulesPane::Global);
        EXPECT_EQ(cView.sRulesTitle, sGlobalTitle);
    });
}

TEST_F(Form, TheCategoryPaneShowsTheRulesOfTheChosenCategory)
{
    Rules(L"Rock", 3).Apply({21, 22, 23, true});
    Rules(L"Rock", 0).Apply({31, std::nullopt, -1, false});
    Rules(L"Jazz", 2).Apply({41, 42, 43, false});
    const auto expectRules = [&](const std::wstring& sOf, const Texts& colMinutes, bool bIgnored) {
        EXPECT_EQ(cView.sRulesTitle, L"Showing Rules for: " + sOf);
        EXPECT_EQ(TextsOf(RulesPane::Category), colMinutes);
        EXPECT_EQ(cView.bIgnore, bIgnored);
        EXPECT_EQ(cView.enabled[txtArtistSepMins1], !bIgnored);
        EXPECT_EQ(cView.enabled[txtTitleSepMins1], !bIgnored);
    };
    OpenRules(L"Rock", 3, [&] {
        EXPECT_EQ(cView.ePane, RulesPane::Category);
        expectRules(L"Rock 3", {L"21", L"22", L"23"}, true);
        ClickLevel(L"ALL");
        expectRules(L"Rock [ALL LEVELS].", {L"31", L"60", L"-1"}, false); // 60: the global one
        ClickCat(L"Jazz");
        expectRules(L"Jazz 2", {L"41", L"42", L"43"}, false);
        EXPECT_FALSE(cView.bApply);
        EXPECT_EQ(Shown(), Boxes());
    });
}

TEST_F(Form, CategoryRulesAndNewLevelsNeedACategory)
{
    OpenRules(L"", 0, [&] {
        EXPECT_EQ(cView.ePane, RulesPane::Global);
        EXPECT_EQ(cView.sRulesTitle, sGlobalTitle);
        cForm->NewLevelClick();
        Type(txtArtistSepMins0, L"46");
        cForm->CancelClick();
    });
    EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::Information, L"ALL SONGS Is Not Valid For This!",
                                    L"First use the category selector to choose a category"),
                              OkBox(BoxIcon::None, L"Impossible!",
                                    L"Impossible to create a level is we dont know which main cat it's in!"),
                              PendingChanges(L"")}));
}

TEST_F(Form, IgnoringRulesDisablesArtistAndTitleOnly)
{
    Open(L"Rock", 3, [&] {
        for (const bool bIgnore : {true, false})
        {
            ClickIgnore(bIgnore);
            EXPECT_EQ(cView.enabled[txtArtistSepMins1], !bIgnore);
            EXPECT_EQ(cView.enabled[txtTitleSepMins1], !bIgnore);
            EXPECT_FALSE(cView.enabled.count(txtAlbumSepMins)); // never touched
        }
    });
}

TEST_F(Form, ApplyIsEnabledByAnEditOfTheVisiblePane)
{
    const auto expectEnabled = [&](RulesPane ePane, RulesPane eOther) {
        for (const RuleBox eBox : BoxesOf(ePane))
        {
            cForm->TabClick(ePane);
            Type(eBox, L"5");
            EXPECT_TRUE(cView.bApply);
            cForm->TabClick(eOther);
            EXPECT_FALSE(cView.bApply);
            cForm->TabClick(ePane);
            EXPECT_TRUE(cView.bApply);
            cForm->ApplyClick();
            EXPECT_FALSE(cView.bApply);
        }
    };
    Open(L"Rock", 3, [&] {
        expectEnabled(RulesPane::Global, RulesPane::Category);
        expectEnabled(RulesPane::Category, RulesPane::Global);
        ClickIgnore(true);
        EXPECT_TRUE(cView.bApply);
    });
}

// ---- saving ----

TEST_F(Form, ApplyStoresTheGlobalRules)
{
    // Artist and title become absolute, a negative album becomes 60; what is no number changes nothing.
    const auto expectStored = [&](const wchar_t* sTyped, std::int32_t lArtistOrTitle, std::int32_t lAlbum) {
        const std::wstring sBoth = std::to_wstring(lArtistOrTitle);
        const std::string both = std::to_string(lArtistOrTitle) + "\r\n";
        SetGlobalMins({33, 33, 33});
        Open(L"Rock", 3, [&] {
            TypeAll(RulesPane::Global, sTyped);
            cForm->ApplyClick();
            EXPECT_EQ(TextsOf(RulesPane::Global), (Texts{sBoth, sBoth, std::to_wstring(lAlbum)}));
        });
        EXPECT_EQ(GlobalMins(), (Minutes{lArtistOrTitle, lArtistOrTitle, lAlbum}));
        EXPECT_EQ(Settings(), both + both + std::to_string(lAlbum) + "\r\n");
    };
    expectStored(L"45", 45, 45);
    expectStored(L"0", 0, 0);
    expectStored(L"-5", 5, 60);
    expectStored(L" 7.5 ", 8, 8);
    expectStored(L"6.5", 6, 6);
    expectStored(L"1e2", 100, 100);
    expectStored(L"abc", 33, 33);
    expectStored(L"", 33, 33);
    expectStored(L"&H10", 16, 16);
    expectStored(L"9999999999", 33, 33);
    expectStored(L"-2147483648", 33, 60);
}

TEST_F(Form, ApplyStoresTheRulesOfTheCategory)
{
    // As the global rules, but an album below zero unsets the rule.
    const auto expectStored = [&](const wchar_t* sTyped, std::int32_t lArtistOrTitle, std::int32_t lAlbum) {
        Rules(L"Rock", 3).Apply({20, 20, 20, false});
        OpenRules(L"Rock", 3, [&] {
            TypeAll(RulesPane::Category, sTyped);
            ClickIgnore(true);
            cForm->ApplyClick();
        });
        EXPECT_EQ(Mins(L"Rock", 3), (Minutes{lArtistOrTitle, lArtistOrTitle, lAlbum}));
        EXPECT_TRUE(Rules(L"Rock", 3).IgnoreRules());
    };
    expectStored(L"45", 45, 45);
    expectStored(L"-5", 5, -5);
    expectStored(L"0", 0, 0);
    expectStored(L"x", 20, 20);
    expectStored(L"7.5", 8, 8);
    expectStored(L"9999999999", 20, 20);
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Form, TheRulesOfALLAreTheMainCategorysOwn)
{
    ApplyRule(L"Rock", 0, txtArtistSepMins1, L"77");
    EXPECT_EQ(Rules(L"Rock", 0).ArtistSepMins(), 77);
    EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 60);
    EXPECT_TRUE(HasRules(L"0"));
}

// A shown global value must not become the category's own because another box was changed.
TEST_F(Form, BoxesTheUserDidNotChangeAreNotStored)
{
    ApplyRule(L"Rock", 3, txtTitleSepMins1, L"5");
    cMod.SetGlobalArtistSepMins(99);
    EXPECT_EQ(Mins(L"Rock", 3), (Minutes{99, 5, -1}));
    OpenAndOK(L"Rock", 3, [&] {
        cMod.SetGlobalArtistSepMins(17); // a host, while the window is open
    });
    EXPECT_EQ(cMod.GlobalArtistSepMins(), 17);
}

TEST_F(Form, ApplySavesTheVisiblePaneAndKeepsEditsOfTheOther)
{
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins0, L"45");
        Type(txtTitleSepMins1, L"46");
        cForm->ApplyClick();
        cForm->TabClick(RulesPane::Category);
        EXPECT_EQ(cView.texts[txtTitleSepMins1], L"46");
        EXPECT_TRUE(cView.bApply);
        EXPECT_EQ(cMod.GlobalArtistSepMins(), 45);
        EXPECT_EQ(Rules(L"Rock", 3).TitleSepMins(), 60);
        Type(txtArtistSepMins0, L"47");
        cForm->ApplyClick();
        EXPECT_EQ(Rules(L"Rock", 3).TitleSepMins(), 46);
        EXPECT_EQ(cMod.GlobalArtistSepMins(), 45);
    });
}

TEST_F(Form, NewGlobalValuesShowInTheCategoryPaneWhereItHasNoneOfItsOwn)
{
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins0, L"45");
        cForm->ApplyClick();
        EXPECT_EQ(TextsOf(RulesPane::Category), (Texts{L"45", L"60", L"-1"}));
    });
}

TEST_F(Form, RulesThatCannotBeSavedAreReported)
{
    cPorts.cFiles.MakeFolders(L"C:\\Radio\\Scheduler\\Rules");
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\Rules");
    ApplyRule(L"Rock", 3, txtArtistSepMins1, L"46");
    ASSERT_EQ(Shown().size(), 2u); // the second one after the error itself
    EXPECT_EQ(Shown()[0].sTitle, L"SaveRules");
    EXPECT_EQ(Shown()[1],
              OkBox(BoxIcon::None, L"RavloScheduler", L"Cant save rules for: Rock\u00AC\u00AC\u00AC3"));
}

// ---- the pending-change question ----

TEST_F(Form, ChangingTheCategoryAsksOnceAndYesSavesEveryEditedPane)
{
    Answers(BoxAnswer::Yes);
    Open(L"Rock", 3, [&] {
        EditBothPanes();
        ClickCat(L"Jazz");
        EXPECT_EQ(Shown(), (Boxes{PendingChanges(L"Rock")}));
        ClickLevel(L"ALL");
        EXPECT_EQ(Shown().size(), 1u);
    });
    EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 46);
    EXPECT_EQ(Rules(L"Jazz", 2).ArtistSepMins(), 60);
    EXPECT_EQ(GlobalMins(), (Minutes{60, 47, 48}));
}

TEST_F(Form, NoLosesTheEdits)
{
    for (const BoxAnswer eAnswer : {BoxAnswer::No, BoxAnswer::None})
    {
        Shown().clear();
        Answers(eAnswer);
        OpenAndOK(L"Rock", 3, [&] {
            EditBothPanes();
            ClickCat(L"Jazz");
            EXPECT_EQ(TextsOf(RulesPane::Global), (Texts{L"60", L"60", L"60"}));
            ClickCat(L"Rock");
            ClickLevel(L"3");
            EXPECT_EQ(cView.texts[txtArtistSepMins1], L"60");
        });
        EXPECT_EQ(Shown(), (Boxes{PendingChanges(L"Rock")}));
        EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 60);
        EXPECT_EQ(GlobalMins(), (Minutes{60, 60, 60}));
    }
}

TEST_F(Form, ClosingAsksAboutEachEditButTheGlobalAlbum)
{
    const auto expectQuestion = [&](const std::function<void()>& edit, bool bAsks) {
        for (const bool bOK : {true, false})
        {
            Shown().clear();
            Open(L"Rock", 3, [&] {
                edit();
                bOK ? cForm->OKClick() : cForm->CancelClick();
            });
            EXPECT_EQ(Shown(), bAsks ? Boxes{PendingChanges(L"Rock")} : Boxes());
        }
    };
    for (const RulesPane ePane : {RulesPane::Global, RulesPane::Category})
        for (const RuleBox eBox : BoxesOf(ePane))
        {
            SCOPED_TRACE(static_cast<int>(eBox));
            expectQuestion([&] { Type(eBox, L"46"); }, eBox != txtGlobalAlbumSepMins);
        }
    expectQuestion([&] { ClickIgnore(true); }, true);
}

TEST_F(Form, NothingIsAskedWhenNothingIsPending)
{
    OpenAndOK(L"Rock", 3, [&] {
        ClickCat(L"Jazz");
        Type(txtArtistSepMins1, L"46");
        cForm->TabClick(RulesPane::Category);
        cForm->ApplyClick();
        ClickCat(L"Rock");
    });
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Form, TheSelectedCutsAreTakenBeforeTheQuestion)
{
    cPorts.cMessages.OnShown = [&] { cScreen.lists[lstsongs1].lSelected.clear(); };
    OpenAndOK(L"Rock", 1, [&] {
        cScreen.lists[lstsongs1].lSelected = {1};
        Type(txtArtistSepMins1, L"46");
    });
    EXPECT_EQ(request.colSelCuts, (Cuts{CutOf(1)}));
}

TEST_F(Form, ClicksWhileTheQuestionIsOpenAreIgnored)
{
    cPorts.cMessages.OnShown = [&] { ClickEverything(); };
    OpenAndOK(L"Rock", 3, [&] { Type(txtArtistSepMins1, L"46"); });
    EXPECT_EQ(Shown().size(), 1u);
    EXPECT_TRUE(cPorts.cMessages.Inputs.empty());
}

// ---- storing on closing ----

TEST_F(Form, ClosingStoresGlobalArtistAndTitleNeverTheAlbum)
{
    EXPECT_FALSE(cPorts.cFiles.FileExists(sSettingsPath));
    Open(L"Rock", 3, [&] { cForm->CancelClick(); });
    EXPECT_EQ(Settings(), "60\r\n60\r\n60\r\n");
    for (const BoxAnswer eAnswer : {BoxAnswer::Yes, BoxAnswer::No})
    {
        Answers(eAnswer);
        SetGlobalMins({60, 60, 60});
        Open(L"Rock", 3, [&] {
            Type(txtArtistSepMins0, L"-31");
            Type(txtTitleSepMins0, L"abc");
            cForm->CancelClick();
        });
        EXPECT_EQ(GlobalMins(), (Minutes{31, 60, 60}));
    }
    OpenAndOK(L"Rock", 3, [&] { Type(txtGlobalAlbumSepMins, L"34"); });
    EXPECT_EQ(cMod.GlobalAlbumSepMins(), 60);
}

// ---- new categories and levels ----

TEST_F(Form, ANewCategoryIsListedAndChosen)
{
    OpenAndOK(L"Rock", 3, [&] {
        cForm->NewClick(); // given up
        ExpectCurrent(L"Rock", L"3");
        cPorts.cMessages.Typed = {L"Swing/Bop"};
        cForm->NewClick();
        EXPECT_EQ(cScreen.Entries(lstCat), (Texts{L"Rock", L"Jazz", L"NOCAT", L"Swing_Bop"}));
        EXPECT_EQ(cScreen.Current(lstCat), L"Swing_Bop");
        EXPECT_EQ(Shown().size(), 1u) << "that it is named so";
        EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"1", L"ALL"}));
    });
    ExpectChosen(MainCat(L"Swing_Bop"), Level(L"Swing_Bop", 1));
}

// The cut is placed in it only when the user asks for that.
TEST_F(Form, WithMultiSelectANewCategoryIsCurrentButNotSelected)
{
    cSchedMan->DeleteCats({MainCat(L"NOCAT")});
    MultiSelect(3);
    for (const wchar_t* sName : {L"Swing", L"NOCAT"})
    {
        cPorts.cMessages.Typed = {sName};
        Open(L"", 0, [&] {
            cForm->NewClick();
            EXPECT_EQ(cScreen.Current(lstCat), sName);
            EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"1", L"ALL"}));
            EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Jazz"}));
            EXPECT_TRUE(cScreen.enabled.at(lstCat));
            EXPECT_FALSE(cScreen.enabled.at(lstsongs1));
            cForm->OKClick();
        });
        EXPECT_EQ(CutOf(3)->CategoryText(), L"Jazz");
        EXPECT_EQ(request.cMainCatChosen, MainCat(sName));
        request.cMainCatChosen = request.cSubCatChosen = nullptr;
    }
}

TEST_F(Form, NothingCanBeUsedWhileACategoryOrLevelIsMadeAndEditsAreKept)
{
    for (int i = 0; i < 1000; ++i) // enough for the save to pump messages
        Add(L"more " + std::to_wstring(i), L"Rock", 1, L"A", std::to_wstring(i));
    Repopulate();
    int lTries = 0;
    const auto tryEverything = [&] {
        ++lTries;
        EXPECT_TRUE(Disabled());
        ClickEverything();
        EXPECT_EQ(cView.ePane, RulesPane::Global);
        EXPECT_TRUE(cView.bRulesArea);
        EXPECT_TRUE(cView.bOpen);
    };
    cPorts.cMessages.OnShown = tryEverything;
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"46");
        cForm->NewClick();
        EXPECT_EQ(lTries, 1) << "asked for its name";
        EXPECT_FALSE(cView.bBusy);
        cPorts.cMessages.Typed = {L"2"};
        cPorts.cHostLoop.OnPump = tryEverything;
        cForm->NewLevelClick();
        EXPECT_FALSE(cView.bBusy);
        EXPECT_TRUE(cScreen.enabled.at(lstCat));
        EXPECT_FALSE(cScreen.bHourglass);
        EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"1", L"2", L"3", L"ALL"}));
        ExpectCurrent(L"Rock", L"3");
        EXPECT_EQ(cView.texts[txtArtistSepMins1], L"46");
    });
    EXPECT_GT(lTries, 2);
    EXPECT_EQ(cPorts.cMessages.Inputs.size(), 2u);
    EXPECT_EQ(Shown(), Boxes());
    EXPECT_TRUE(Level(L"Rock", 2));
}

TEST_F(Form, ClickOnADeletedLevelMeansAllLevels)
{
    OpenAndOK(L"Rock", 1, [&] {
        cForm->TabClick(RulesPane::Category);
        MainCat(L"Rock")->RemoveSubCat(Level(L"Rock", 3));
        ClickLevel(L"3");
        EXPECT_EQ(cView.sRulesTitle, L"Showing Rules for: Rock [ALL LEVELS].");
    });
    ExpectChosen(MainCat(L"Rock"), nullptr);
}

// ---- the library and the strip ----

TEST_F(Form, TheMenuOpensTheLibraryUnlessItIsShowing)
{
    cSchedMan->SetWindows(&cWindows);
    Open(L"Rock", 3, [&] {
        for (const bool bShowing : {false, true})
        {
            cWindows.bShowing = bShowing;
            cForm->MenuOpening();
            EXPECT_EQ(cView.bLibraryMenu, !bShowing);
            cForm->SchedLibClick();
            EXPECT_EQ(cWindows.lShown, 1);
        }
    });
}

TEST_F(Form, WhatTheLibraryDeletedIsGoneFromTheWindow)
{
    cSchedMan->SetWindows(&cWindows);
    cWindows.OnShow = [&] { cSchedMan->DeleteCats({MainCat(L"Rock")}); };
    OpenAndOK(L"Rock", 3, [&] {
        cForm->TabClick(RulesPane::Category);
        Type(txtArtistSepMins1, L"46");
        cForm->SchedLibClick();
        EXPECT_EQ(cScreen.Entries(lstCat), (Texts{L"Jazz", L"NOCAT"}));
        EXPECT_EQ(cView.ePane, RulesPane::Global);
    });
    EXPECT_EQ(Shown(), Boxes());
    ExpectChosen(nullptr, nullptr);
}

TEST_F(Form, TheStripShowsAndHidesTheRulesAndIsRemembered)
{
    for (const bool bShown : {true, false, true})
        Open(L"", 0, [&] {
            EXPECT_EQ(cView.bRulesArea, bShown);
            cForm->StripClick(false);
            EXPECT_EQ(cView.bRulesArea, bShown);
            cForm->StripClick(true);
            EXPECT_EQ(cView.bRulesArea, !bShown);
        });
}

} // namespace ravlo::test
