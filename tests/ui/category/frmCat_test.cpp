// SPDX-License-Identifier: MIT
#include "ui/category/frmCatPresenter.h"

#include "ui/category/CategoryTest.h"

#include <functional>
#include <map>
#include <optional>

namespace ravlo::test
{

namespace
{

using enum RuleBox;

constexpr const wchar_t* sGlobalTitle =
    L"Global Rules (for all categories where separations not explictly set).";

const ShownBox PendingChanges(const std::wstring& sCat)
{
    return {BoxIcon::Question, BoxButtons::YesNo, L"Press No To Discard the Rule Changes You Made.",
            L"Save the pending rules changes to: " + sCat};
}

// The window without a screen. Filling a box is reported back, as the system's boxes do.
class ScreenForm final : public frmCatView
{
public:
    void SetCaption(const std::wstring& s) override { sCaption = s; }
    void ShowNewButtons(bool bShow) override { bNewButtons = bShow; }
    void ChoosePane(RulesPane ePaneIn) override { ePane = ePaneIn; }
    void SetRulesTitle(const std::wstring& sTitle) override { sRulesTitle = sTitle; }
    std::wstring BoxText(RuleBox eBox) const override { return texts.at(eBox); }
    void SetBoxText(RuleBox eBox, const std::wstring& sText) override
    {
        texts[eBox] = sText;
        cForm->BoxChanged(eBox);
    }
    void EnableBox(RuleBox eBox, bool bEnable) override { enabled[eBox] = bEnable; }
    bool IgnoreChecked() const override { return bIgnore; }
    void CheckIgnore(bool bCheck) override { bIgnore = bCheck; }
    void EnableApply(bool bEnable) override { bApply = bEnable; }
    void ShowRulesArea(bool bShow) override { bRulesArea = bShow; }
    void EnableLibraryMenu(bool bEnable) override { bLibraryMenu = bEnable; }
    void SetBusy(bool bBusyIn) override { bBusy = bBusyIn; }
    void ShowModal() override
    {
        bOpen = true;
        if (OnModal)
            OnModal();
    }
    void Close() override { bOpen = false; }

    frmCatPresenter* cForm = nullptr;
    std::function<void()> OnModal; // what the user does while it is open
    std::wstring sCaption = L"Category";
    std::wstring sRulesTitle;
    std::map<RuleBox, std::wstring> texts;
    std::map<RuleBox, bool> enabled;
    std::optional<RulesPane> ePane;
    bool bNewButtons = false;
    bool bIgnore = false;
    bool bApply = false;
    bool bRulesArea = false;
    bool bLibraryMenu = true;
    bool bOpen = false;
    bool bBusy = false;
};

// Windows of which only the library's showing matters.
class OtherWindows final : public SchedulerWindows
{
public:
    bool LibraryExists() const override { return bShowing; }
    bool LibraryShowing() const override { return bShowing; }
    void ReloadLibrary() override {}
    void RefreshLibrary() override {}
    void ShowLibrary() override
    {
        ++lShown;
        if (OnShow)
            OnShow();
    }
    std::int32_t ShowCategory(CategoryRequest&) override { return lNotChosen; }

    bool bShowing = false;
    int lShown = 0;
    std::function<void()> OnShow;
};

struct Form : CategoryTest
{
    ~Form() override { cSchedMan->SetWindows(nullptr); }

    // Opens the window on a level (0 for all), does something, and closes it as that leaves it.
    std::int32_t Open(const std::wstring& sCat, int lLevel, const std::function<void()>& OnModal)
    {
        if (!sCat.empty())
        {
            request.cMainCatChosen = MainCat(sCat);
            request.cSubCatChosen = lLevel > 0 ? Level(sCat, lLevel) : nullptr;
        }
        cView.OnModal = OnModal;
        return Show(cSchedMan);
    }
    // A window shows itself once.
    std::int32_t Show(const std::shared_ptr<clsSchedMan>& cManager)
    {
        cView.cForm = &cForm.emplace(cView, cSelector, cMod);
        return cForm->ShowUI(cManager, request);
    }
    void Type(RuleBox eBox, const std::wstring& sText)
    {
        cView.texts[eBox] = sText;
        cForm->BoxChanged(eBox);
    }
    void ClickIgnore(bool bChecked)
    {
        cView.bIgnore = bChecked;
        cForm->IgnoreClick();
    }
    void Repopulate() { cSchedMan->PopulateFromDataBase(cDataBase, sRadio); }
    // Whether nothing in the window, its selector included, can be used.
    bool Disabled() const
    {
        for (const SelectorControl eControl :
             {lstCat, lstlvl, lstsongs0, lstsongs1, chkOpener, chkSortedSongs})
            if (cScreen.enabled.at(eControl))
                return false;
        return cView.bBusy && cScreen.bHourglass;
    }
    // Does something whenever messages are pumped, and counts how often.
    void WhilePumping(const std::function<void()>& what)
    {
        cPorts.cHostLoop.OnPump = [this, what] {
            ++lPumps;
            what();
        };
    }
    void Answers(BoxAnswer eAnswer) { cPorts.cMessages.eDefaultAnswer = eAnswer; }
    std::string Settings() const { return cPorts.cFiles.Get(L"C:\\Radio\\Scheduler\\SchedulerSettings.dat"); }
    bool HasSettings() const
    {
        return cPorts.cFiles.FileExists(L"C:\\Radio\\Scheduler\\SchedulerSettings.dat");
    }
    clsCatRules& Rules(const std::wstring& sCat, int lLevel)
    {
        return *(lLevel > 0 ? Level(sCat, lLevel) : MainCat(sCat))->Rules();
    }

    ScreenForm cView;
    OtherWindows cWindows;
    std::optional<frmCatPresenter> cForm;
    CategoryRequest request;
    int lPumps = 0;
};

} // namespace

// ---- opening ----

TEST_F(Form, ShowsItsCaptionOrTheGivenOne)
{
    Open(L"", 0, [&] { EXPECT_EQ(cView.sCaption, L"Category"); });
    request.sCaption = L"Pick one";
    Open(L"", 0, [&] { EXPECT_EQ(cView.sCaption, L"Pick one"); });
}

TEST_F(Form, ShowsTheNewButtonsOnlyWhenNewIsAllowed)
{
    Open(L"", 0, [&] { EXPECT_FALSE(cView.bNewButtons); });
    request.bAllowNew = true;
    Open(L"", 0, [&] { EXPECT_TRUE(cView.bNewButtons); });
}

TEST_F(Form, OpensOnTheGivenCategoryLevelAndOpenerFilter)
{
    request.bOpenerChosen = true;
    Open(L"Rock", 3, [&] {
        EXPECT_EQ(cScreen.Current(lstCat), L"Rock");
        EXPECT_EQ(cScreen.Current(lstlvl), L"3");
        EXPECT_TRUE(cScreen.Checked(chkOpener));
    });
}

TEST_F(Form, OpensOnAllLevelsWithoutAGivenLevel)
{
    Open(L"Rock", 0, [&] { EXPECT_EQ(cScreen.Current(lstlvl), L"ALL"); });
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
}

TEST_F(Form, AStationWithoutAnyCategoryOpensWithoutABox)
{
    const auto cFresh = std::make_shared<clsSchedMan>(cMod);
    cFresh->PopulateFromDataBase(std::make_shared<FakeDataBase>(), L"C:\\Other\\");
    Shown().clear();
    Show(cFresh);
    EXPECT_EQ(Shown(), Boxes());
}

// ---- what comes back ----

TEST_F(Form, OKReturnsTheChoice)
{
    const auto lAnswer = Open(L"", 0, [&] {
        ClickCat(L"Rock");
        ClickOpener(true);
        cScreen.lists[lstsongs1].lSelected = {0};
        cForm->OKClick();
    });
    EXPECT_EQ(lAnswer, 1);
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
    EXPECT_EQ(request.cSubCatChosen, Level(L"Rock", 1));
    EXPECT_TRUE(request.bOpenerChosen);
    EXPECT_EQ(request.colSelCuts, (Cuts{CutOf(1)}));
    EXPECT_FALSE(cView.bOpen);
}

TEST_F(Form, OKOnALLReturnsTheMainCategoryAndNoLevel)
{
    Open(L"Rock", 3, [&] {
        ClickLevel(L"ALL");
        cForm->OKClick();
    });
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
    EXPECT_EQ(request.cSubCatChosen, nullptr);
}

TEST_F(Form, OKWithoutTouchingAnythingReturnsWhatWasGiven)
{
    request.bOpenerChosen = true;
    Open(L"Rock", 3, [&] { cForm->OKClick(); });
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
    EXPECT_EQ(request.cSubCatChosen, Level(L"Rock", 3));
    EXPECT_TRUE(request.bOpenerChosen);
}

TEST_F(Form, CancelReturnsTwoAndChangesNothing)
{
    request.colSelCuts = {CutOf(4)};
    request.cCut = CutOf(0);
    request.bAllowMultiSelect = true;
    const auto lAnswer = Open(L"Rock", 3, [&] {
        ClickCat(L"Jazz");
        ClickOpener(true);
        cForm->CancelClick();
    });
    EXPECT_EQ(lAnswer, 2);
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
    EXPECT_EQ(request.cSubCatChosen, Level(L"Rock", 3));
    EXPECT_FALSE(request.bOpenerChosen);
    EXPECT_EQ(request.colSelCuts, (Cuts{CutOf(4)}));
    EXPECT_EQ(CutOf(0)->CategoryText(), L"Rock");
    EXPECT_FALSE(cView.bOpen);
}

TEST_F(Form, AWindowThatEndsInAnyOtherWayCountsAsCancelled)
{
    EXPECT_EQ(Open(L"Rock", 3, [&] { ClickCat(L"Jazz"); }), lNotChosen);
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
}

TEST_F(Form, WithMultiSelectTheCutReceivesLevelAndCategories)
{
    request.cCut = CutOf(3);
    request.bAllowMultiSelect = true;
    Open(L"", 0, [&] {
        ClickCat(L"Rock", true); // beside Jazz
        ClickLevel(L"3");
        cForm->OKClick();
    });
    EXPECT_EQ(CutOf(3)->CatLevel(), 3);
    EXPECT_EQ(CutOf(3)->CategoryText(), L"Rock/Jazz");
    EXPECT_EQ(Level(L"Rock", 3)->SchedCuts()->At(Level(L"Rock", 3)->SchedCuts()->Count() - 1), CutOf(3));
    EXPECT_FALSE(Level(L"Jazz", 2)->SchedCuts()->Exists(CutOf(3)->Key())) << "filed, not only named";
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Form, WithMultiSelectALLIsRefusedAndTheCutStaysAsItWas)
{
    request.cCut = CutOf(3);
    request.bAllowMultiSelect = true;
    const auto lAnswer = Open(L"", 0, [&] {
        ClickCat(L"Rock");
        ClickLevel(L"ALL");
        cForm->OKClick();
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(Shown(),
              (Boxes{OkBox(BoxIcon::Exclamation, L"'ALL' is Not Valid",
                           L"Choose a level other than 'ALL' to be able to multi-select categories")}));
    EXPECT_EQ(CutOf(3)->CatLevel(), 2);
    EXPECT_EQ(CutOf(3)->CategoryText(), L"Jazz");
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
}

TEST_F(Form, WithMultiSelectACutWhoseLastCategoryIsUnmarkedStaysAsItWas)
{
    request.cCut = CutOf(3);
    request.bAllowMultiSelect = true;
    const auto lAnswer = Open(L"", 0, [&] {
        MainCat(L"Jazz")->AddSubCat(std::make_shared<clsCat>(cMod, L"Jazz", 5));
        cScreen.lists[lstCat].lSelected.clear();
        cSelector.CatClick();
        ClickLevel(L"5");
        cForm->OKClick();
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(CutOf(3)->CatLevel(), 2);
    EXPECT_EQ(CutOf(3)->CategoryText(), L"Jazz");
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Form, WithMultiSelectButNoCutALLIsAnAnswerLikeAnother)
{
    request.bAllowMultiSelect = true;
    const auto lAnswer = Open(L"", 0, [&] {
        ClickCat(L"Rock");
        ClickLevel(L"ALL");
        cForm->OKClick();
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(Shown(), Boxes());
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
    EXPECT_EQ(request.cSubCatChosen, nullptr);
}

TEST_F(Form, WithoutMultiSelectTheCutIsLeftAlone)
{
    request.cCut = CutOf(3);
    Open(L"Rock", 3, [&] { cForm->OKClick(); });
    EXPECT_EQ(CutOf(3)->CategoryText(), L"Jazz");
}

TEST_F(Form, ACutThatCannotBeChangedIsAnErrorAndNothingComesBack)
{
    request.cCut = CutOf(3);
    request.bAllowMultiSelect = true;
    CutOf(3)->failing = {"SetCategoryText"};
    EXPECT_THROW(Open(
                     L"Rock", 3,
                     [&] {
        ClickCat(L"Rock");
        ClickLevel(L"3");
        cForm->OKClick();
                     }),
                 RuntimeError);
    EXPECT_EQ(request.colSelCuts, Cuts());
    EXPECT_EQ(CutOf(3)->CatLevel(), 2); // as before, though it took the new one at first
    EXPECT_EQ(CutOf(3)->CategoryText(), L"Jazz");
}

TEST_F(Form, ClicksAfterClosingAreIgnored)
{
    const auto lAnswer = Open(L"Rock", 3, [&] {
        Type(txtGlobalAlbumSepMins, L"46");
        cForm->OKClick();
        cForm->CancelClick();
        cForm->ApplyClick();
        cForm->StripClick(true);
        cForm->TabClick(RulesPane::Category);
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(cMod.GlobalAlbumSepMins(), 60);
    EXPECT_TRUE(cView.bRulesArea);
    EXPECT_EQ(cView.ePane, RulesPane::Global);
}

// ---- a host that reloads or deletes meanwhile ----

TEST_F(Form, OKAfterAReloadReturnsThePresentCategoryAndLevel)
{
    const auto cBefore = MainCat(L"Rock");
    Open(L"Rock", 3, [&] {
        Repopulate();
        cForm->OKClick();
    });
    ASSERT_NE(MainCat(L"Rock"), cBefore);
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
    EXPECT_EQ(request.cSubCatChosen, Level(L"Rock", 3));
}

TEST_F(Form, OKAfterAReloadDuringTheQuestionReturnsThePresentOnes)
{
    cPorts.cMessages.OnShown = [&] { Repopulate(); };
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"46");
        cForm->OKClick();
    });
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
    EXPECT_EQ(request.cSubCatChosen, Level(L"Rock", 3));
}

TEST_F(Form, OKReturnsNeitherADeletedCategoryNorADeletedLevel)
{
    Open(L"Rock", 3, [&] {
        cSchedMan->DeleteCats({Level(L"Rock", 3)});
        cForm->OKClick();
    });
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
    EXPECT_EQ(request.cSubCatChosen, nullptr);
    Open(L"Rock", 1, [&] {
        cSchedMan->DeleteCats({MainCat(L"Rock")});
        cForm->OKClick();
    });
    EXPECT_EQ(request.cMainCatChosen, nullptr);
    EXPECT_EQ(request.cSubCatChosen, nullptr);
}

TEST_F(Form, CutIsNotPlacedInACategoryDeletedDuringTheCall)
{
    request.cCut = CutOf(0); // in Rock 1
    request.bAllowMultiSelect = true;
    Open(L"", 0, [&] {
        ClickCat(L"Jazz", true);
        cSchedMan->DeleteCats({MainCat(L"Rock")});
        cForm->OKClick();
    });
    EXPECT_EQ(MainCat(L"Rock"), nullptr);
    EXPECT_EQ(CutOf(0)->CategoryText(), L"Jazz");
    EXPECT_EQ(CutOf(0)->CatLevel(), 2);
}

TEST_F(Form, ApplyAfterAReloadChangesTheRulesThatAreInForce)
{
    Open(L"Rock", 3, [&] {
        cForm->TabClick(RulesPane::Category);
        Repopulate();
        Type(txtArtistSepMins1, L"46");
        cForm->ApplyClick();
    });
    EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 46);
}

TEST_F(Form, YesAfterAReloadChangesTheRulesThatAreInForce)
{
    Answers(BoxAnswer::Yes);
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"46");
        Repopulate();
        cForm->OKClick();
    });
    EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 46);
}

TEST_F(Form, ApplyToADeletedCategorySavesNothingAndShowsWhatIsLeft)
{
    Open(L"Rock", 3, [&] {
        cForm->TabClick(RulesPane::Category);
        Type(txtArtistSepMins1, L"46");
        cSchedMan->DeleteCats({MainCat(L"Rock")});
        Shown().clear();
        cForm->ApplyClick();
        EXPECT_EQ(cScreen.Entries(lstCat), (Texts{L"Jazz", L"NOCAT"}));
        EXPECT_EQ(cView.ePane, RulesPane::Global);
        EXPECT_FALSE(cView.bApply);
    });
    EXPECT_EQ(Shown(), Boxes());
    EXPECT_FALSE(cPorts.cFiles.FileExists(L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC3.rls"));
}

// ---- the panes ----

TEST_F(Form, StartsWithTheGlobalRules)
{
    cMod.SetGlobalArtistSepMins(11);
    cMod.SetGlobalTitleSepMins(12);
    cMod.SetGlobalAlbumSepMins(13);
    Open(L"Rock", 3, [&] {
        EXPECT_EQ(cView.ePane, RulesPane::Global);
        EXPECT_EQ(cView.sRulesTitle, sGlobalTitle);
        EXPECT_EQ(cView.texts[txtArtistSepMins0], L"11");
        EXPECT_EQ(cView.texts[txtTitleSepMins0], L"12");
        EXPECT_EQ(cView.texts[txtGlobalAlbumSepMins], L"13");
        EXPECT_FALSE(cView.bApply);
    });
}

TEST_F(Form, TheCategoryPaneShowsTheRulesOfTheLevel)
{
    Rules(L"Rock", 3).Apply({21, 22, 23, true});
    Open(L"Rock", 3, [&] {
        cForm->TabClick(RulesPane::Category);
        EXPECT_EQ(cView.ePane, RulesPane::Category);
        EXPECT_EQ(cView.sRulesTitle, L"Showing Rules for: Rock 3");
        EXPECT_EQ(cView.texts[txtArtistSepMins1], L"21");
        EXPECT_EQ(cView.texts[txtTitleSepMins1], L"22");
        EXPECT_EQ(cView.texts[txtAlbumSepMins], L"23");
        EXPECT_TRUE(cView.bIgnore);
        EXPECT_FALSE(cView.enabled[txtArtistSepMins1]);
        EXPECT_FALSE(cView.enabled[txtTitleSepMins1]);
        EXPECT_FALSE(cView.enabled.count(txtAlbumSepMins)); // never touched
    });
}

TEST_F(Form, TheCategoryPaneShowsTheRulesOfTheMainCategoryForALL)
{
    Rules(L"Rock", 0).Apply({31, std::nullopt, -1, false});
    Open(L"Rock", 0, [&] {
        cForm->TabClick(RulesPane::Category);
        EXPECT_EQ(cView.sRulesTitle, L"Showing Rules for: Rock [ALL LEVELS].");
        EXPECT_EQ(cView.texts[txtArtistSepMins1], L"31");
        EXPECT_EQ(cView.texts[txtTitleSepMins1], L"60"); // the global one
        EXPECT_EQ(cView.texts[txtAlbumSepMins], L"-1");
        EXPECT_TRUE(cView.enabled[txtArtistSepMins1]);
    });
}

TEST_F(Form, ChoosingAnotherCategoryShowsItsRules)
{
    Rules(L"Jazz", 2).Apply({41, 42, 43, false});
    Open(L"Rock", 3, [&] {
        cForm->TabClick(RulesPane::Category);
        ClickCat(L"Jazz");
        EXPECT_EQ(cView.sRulesTitle, L"Showing Rules for: Jazz 2");
        EXPECT_EQ(cView.texts[txtArtistSepMins1], L"41");
        EXPECT_FALSE(cView.bApply);
        EXPECT_EQ(Shown(), Boxes());
    });
}

// The values of another pane than the title names would be a trap.
TEST_F(Form, TheTitleNamesTheRulesThatAreToBeSeen)
{
    Open(L"Rock", 3, [&] {
        ClickCat(L"Jazz");
        EXPECT_EQ(cView.sRulesTitle, sGlobalTitle);
        cForm->TabClick(RulesPane::Category);
        EXPECT_EQ(cView.sRulesTitle, L"Showing Rules for: Jazz 2");
        cForm->TabClick(RulesPane::Global);
        EXPECT_EQ(cView.sRulesTitle, sGlobalTitle);
    });
}

TEST_F(Form, CategoryRulesNeedACategory)
{
    Open(L"", 0, [&] {
        cForm->TabClick(RulesPane::Category);
        EXPECT_EQ(cView.ePane, RulesPane::Global);
        EXPECT_EQ(cView.sRulesTitle, sGlobalTitle);
        EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::Information, L"ALL SONGS Is Not Valid For This!",
                                        L"First use the category selector to choose a category")}));
    });
}

TEST_F(Form, IgnoringRulesDisablesArtistAndTitleOnly)
{
    Open(L"Rock", 3, [&] {
        ClickIgnore(true);
        EXPECT_FALSE(cView.enabled[txtArtistSepMins1]);
        EXPECT_FALSE(cView.enabled[txtTitleSepMins1]);
        EXPECT_FALSE(cView.enabled.count(txtAlbumSepMins));
        ClickIgnore(false);
        EXPECT_TRUE(cView.enabled[txtArtistSepMins1]);
        EXPECT_TRUE(cView.enabled[txtTitleSepMins1]);
    });
}

TEST_F(Form, ApplyIsEnabledByAnEditOfTheVisiblePane)
{
    Open(L"Rock", 3, [&] {
        for (const RuleBox eBox : {txtArtistSepMins0, txtTitleSepMins0, txtGlobalAlbumSepMins})
        {
            Type(eBox, L"5");
            EXPECT_TRUE(cView.bApply);
            cForm->TabClick(RulesPane::Category);
            EXPECT_FALSE(cView.bApply);
            cForm->TabClick(RulesPane::Global);
            EXPECT_TRUE(cView.bApply);
            cForm->ApplyClick();
            EXPECT_FALSE(cView.bApply);
        }
        cForm->TabClick(RulesPane::Category);
        for (const RuleBox eBox : {txtArtistSepMins1, txtTitleSepMins1, txtAlbumSepMins})
        {
            Type(eBox, L"5");
            EXPECT_TRUE(cView.bApply);
            cForm->ApplyClick();
            EXPECT_FALSE(cView.bApply);
        }
        ClickIgnore(true);
        EXPECT_TRUE(cView.bApply);
    });
}

// ---- saving ----

TEST_F(Form, ApplyStoresTheGlobalRules)
{
    const struct
    {
        const wchar_t* sTyped;
        std::int32_t lArtistOrTitle; // absolute
        std::int32_t lAlbum;         // as it stands; negative becomes 60
    } table[] = {
        {L"45", 45, 45},          {L"0", 0, 0},
        {L"-5", 5, 60},           {L" 7.5 ", 8, 8},
        {L"6.5", 6, 6},           {L"1e2", 100, 100},
        {L"abc", 33, 33},         {L"", 33, 33},
        {L"&H10", 16, 16},        {L"9999999999", 33, 33},
        {L"-2147483648", 33, 60},
    };
    for (const auto& row : table)
    {
        cMod.SetGlobalArtistSepMins(33);
        cMod.SetGlobalTitleSepMins(33);
        cMod.SetGlobalAlbumSepMins(33);
        Open(L"Rock", 3, [&] {
            for (const RuleBox eBox : {txtArtistSepMins0, txtTitleSepMins0, txtGlobalAlbumSepMins})
                Type(eBox, row.sTyped);
            cForm->ApplyClick();
            // The boxes show what is stored now.
            EXPECT_EQ(cView.texts[txtArtistSepMins0], std::to_wstring(row.lArtistOrTitle));
            EXPECT_EQ(cView.texts[txtGlobalAlbumSepMins], std::to_wstring(row.lAlbum));
        });
        EXPECT_EQ(cMod.GlobalArtistSepMins(), row.lArtistOrTitle);
        EXPECT_EQ(cMod.GlobalTitleSepMins(), row.lArtistOrTitle);
        EXPECT_EQ(cMod.GlobalAlbumSepMins(), row.lAlbum);
        const auto line = [](std::int32_t lValue) { return std::to_string(lValue) + "\r\n"; };
        EXPECT_EQ(Settings(), line(row.lArtistOrTitle) + line(row.lArtistOrTitle) + line(row.lAlbum));
    }
}

TEST_F(Form, ApplyStoresTheRulesOfTheCategory)
{
    const struct
    {
        const wchar_t* sTyped;
        std::int32_t lArtistOrTitle; // absolute
        std::int32_t lAlbum;         // as it stands: below zero unsets the rule
    } table[] = {{L"45", 45, 45}, {L"-5", 5, -5}, {L"0", 0, 0},
                 {L"x", 20, 20},  {L"7.5", 8, 8}, {L"9999999999", 20, 20}};
    for (const auto& row : table)
    {
        Rules(L"Rock", 3).Apply({20, 20, 20, false});
        Open(L"Rock", 3, [&] {
            cForm->TabClick(RulesPane::Category);
            for (const RuleBox eBox : {txtArtistSepMins1, txtTitleSepMins1, txtAlbumSepMins})
                Type(eBox, row.sTyped);
            ClickIgnore(true);
            cForm->ApplyClick();
        });
        EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), row.lArtistOrTitle);
        EXPECT_EQ(Rules(L"Rock", 3).TitleSepMins(), row.lArtistOrTitle);
        EXPECT_EQ(Rules(L"Rock", 3).AlbumSepMins(), row.lAlbum);
        EXPECT_TRUE(Rules(L"Rock", 3).IgnoreRules());
    }
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Form, TheRulesOfALLAreTheMainCategorysOwn)
{
    Open(L"Rock", 0, [&] {
        cForm->TabClick(RulesPane::Category);
        Type(txtArtistSepMins1, L"77");
        cForm->ApplyClick();
    });
    EXPECT_EQ(Rules(L"Rock", 0).ArtistSepMins(), 77);
    EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 60);
    EXPECT_TRUE(cPorts.cFiles.FileExists(L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC0.rls"));
}

// A shown global value must not become the category's own because something else was changed.
TEST_F(Form, BoxesTheUserDidNotChangeAreNotStored)
{
    Open(L"Rock", 3, [&] {
        cForm->TabClick(RulesPane::Category);
        Type(txtTitleSepMins1, L"5");
        cForm->ApplyClick();
    });
    cMod.SetGlobalArtistSepMins(99);
    EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 99);
    EXPECT_EQ(Rules(L"Rock", 3).TitleSepMins(), 5);
    EXPECT_EQ(Rules(L"Rock", 3).AlbumSepMins(), -1);
}

TEST_F(Form, NewGlobalValuesShowInTheCategoryPaneWhereItHasNoneOfItsOwn)
{
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins0, L"45");
        cForm->ApplyClick();
        cForm->TabClick(RulesPane::Category);
        EXPECT_EQ(cView.texts[txtArtistSepMins1], L"45");
    });
}

TEST_F(Form, EditsOfTheCategoryPaneSurviveApplyingTheGlobalOne)
{
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"9");
        Type(txtArtistSepMins0, L"45");
        cForm->ApplyClick();
        EXPECT_EQ(cView.texts[txtArtistSepMins1], L"9");
        cForm->TabClick(RulesPane::Category);
        EXPECT_TRUE(cView.bApply);
    });
}

TEST_F(Form, ApplySavesTheVisiblePaneOnly)
{
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins0, L"45");
        Type(txtArtistSepMins1, L"46");
        cForm->TabClick(RulesPane::Category);
        cForm->ApplyClick();
        EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 46);
        EXPECT_EQ(cMod.GlobalArtistSepMins(), 60);
    });
}

TEST_F(Form, RulesThatCannotBeSavedAreReported)
{
    cPorts.cFiles.MakeFolders(L"C:\\Radio\\Scheduler\\Rules");
    Open(L"Rock", 3, [&] {
        cForm->TabClick(RulesPane::Category);
        Type(txtArtistSepMins1, L"46");
        cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\Rules");
        cForm->ApplyClick();
    });
    ASSERT_EQ(Shown().size(), 2u); // the second one after the error itself
    EXPECT_EQ(Shown()[0].sTitle, L"SaveRules");
    EXPECT_EQ(Shown()[1],
              OkBox(BoxIcon::None, L"RavloScheduler", L"Cant save rules for: Rock\u00AC\u00AC\u00AC3"));
}

// ---- the pending-change question ----

TEST_F(Form, ChangingTheCategoryAsksOnceAndYesSavesToTheOldOne)
{
    Answers(BoxAnswer::Yes);
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"46");
        ClickCat(L"Jazz");
        EXPECT_EQ(Shown(), (Boxes{PendingChanges(L"Rock")}));
        ClickLevel(L"ALL");
        EXPECT_EQ(Shown().size(), 1u);
    });
    EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 46);
    EXPECT_EQ(Rules(L"Jazz", 2).ArtistSepMins(), 60);
}

TEST_F(Form, NoLosesTheEdits)
{
    for (const BoxAnswer eAnswer : {BoxAnswer::No, BoxAnswer::None})
    {
        Shown().clear();
        Answers(eAnswer);
        Open(L"Rock", 3, [&] {
            Type(txtArtistSepMins1, L"46");
            Type(txtTitleSepMins0, L"47");
            Type(txtGlobalAlbumSepMins, L"48");
            ClickCat(L"Jazz");
            EXPECT_EQ(cView.texts[txtTitleSepMins0], L"60");
            EXPECT_EQ(cView.texts[txtGlobalAlbumSepMins], L"60");
            ClickCat(L"Rock");
            ClickLevel(L"3");
            EXPECT_EQ(cView.texts[txtArtistSepMins1], L"60");
            EXPECT_EQ(Shown(), (Boxes{PendingChanges(L"Rock")}));
            cForm->OKClick();
        });
        EXPECT_EQ(Shown().size(), 1u);
        EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 60);
        EXPECT_EQ(cMod.GlobalTitleSepMins(), 60);
        EXPECT_EQ(cMod.GlobalAlbumSepMins(), 60);
    }
}

TEST_F(Form, YesSavesEveryEditedPane)
{
    Answers(BoxAnswer::Yes);
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"46");
        Type(txtTitleSepMins0, L"47");
        Type(txtGlobalAlbumSepMins, L"48");
        ClickCat(L"Jazz");
    });
    EXPECT_EQ(Rules(L"Rock", 3).ArtistSepMins(), 46);
    EXPECT_EQ(cMod.GlobalTitleSepMins(), 47);
    EXPECT_EQ(cMod.GlobalAlbumSepMins(), 48);
}

TEST_F(Form, EachOfThePendingEditsRaisesTheQuestionOnClosing)
{
    const std::pair<RuleBox, bool> table[] = {{txtArtistSepMins0, true},      {txtTitleSepMins0, true},
                                              {txtGlobalAlbumSepMins, false}, {txtArtistSepMins1, true},
                                              {txtTitleSepMins1, true},       {txtAlbumSepMins, true}};
    for (const bool bOK : {true, false})
    {
        for (const auto& row : table)
        {
            const RuleBox eBox = row.first;
            const bool bAsks = row.second;
            Shown().clear();
            Open(L"Rock", 3, [&] {
                Type(eBox, L"46");
                bOK ? cForm->OKClick() : cForm->CancelClick();
            });
            EXPECT_EQ(Shown(), bAsks ? Boxes{PendingChanges(L"Rock")} : Boxes()) << static_cast<int>(eBox);
        }
        Shown().clear();
        Open(L"Rock", 3, [&] {
            ClickIgnore(true);
            bOK ? cForm->OKClick() : cForm->CancelClick();
        });
        EXPECT_EQ(Shown(), Boxes{PendingChanges(L"Rock")});
    }
}

TEST_F(Form, NothingIsAskedWhenNothingIsPending)
{
    Open(L"Rock", 3, [&] {
        ClickCat(L"Jazz");
        Type(txtArtistSepMins1, L"46");
        cForm->TabClick(RulesPane::Category);
        cForm->ApplyClick();
        ClickCat(L"Rock");
        cForm->OKClick();
    });
    EXPECT_EQ(Shown(), Boxes());
}

TEST_F(Form, WithoutACategoryTheQuestionNamesNone)
{
    Open(L"", 0, [&] {
        Type(txtArtistSepMins0, L"46");
        cForm->CancelClick();
    });
    EXPECT_EQ(Shown(), (Boxes{PendingChanges(L"")}));
}

// The cuts are what was selected when OK was clicked, not what a changed list holds after the question.
TEST_F(Form, TheSelectedCutsAreTakenBeforeTheQuestion)
{
    cPorts.cMessages.OnShown = [&] { cScreen.lists[lstsongs1].lSelected.clear(); };
    Open(L"Rock", 1, [&] {
        cScreen.lists[lstsongs1].lSelected = {1};
        Type(txtArtistSepMins1, L"46");
        cForm->OKClick();
    });
    EXPECT_EQ(request.colSelCuts, (Cuts{CutOf(1)}));
}

TEST_F(Form, ClicksWhileTheQuestionIsOpenAreIgnored)
{
    cPorts.cMessages.OnShown = [&] {
        cForm->OKClick();
        cForm->CancelClick();
        cForm->ApplyClick();
        cForm->NewClick();
        cForm->NewLevelClick();
        cForm->SchedLibClick();
    };
    EXPECT_EQ(Open(
                  L"Rock", 3,
                  [&] {
        Type(txtArtistSepMins1, L"46");
        cForm->OKClick();
                  }),
              lChosen);
    EXPECT_EQ(Shown().size(), 1u);
    EXPECT_TRUE(cPorts.cMessages.Inputs.empty());
}

// ---- storing on closing ----

TEST_F(Form, ClosingStoresGlobalArtistAndTitleNeverTheAlbum)
{
    for (const BoxAnswer eAnswer : {BoxAnswer::Yes, BoxAnswer::No})
    {
        Answers(eAnswer);
        cMod.SetGlobalAlbumSepMins(60);
        Open(L"Rock", 3, [&] {
            Type(txtArtistSepMins0, L"-31");
            Type(txtTitleSepMins0, L"abc");
            cForm->CancelClick();
        });
        EXPECT_EQ(cMod.GlobalArtistSepMins(), 31);
        EXPECT_EQ(cMod.GlobalTitleSepMins(), 60);
    }
    Open(L"Rock", 3, [&] {
        Type(txtGlobalAlbumSepMins, L"34");
        cForm->OKClick();
    });
    EXPECT_EQ(cMod.GlobalAlbumSepMins(), 60);
}

TEST_F(Form, ClosingWritesTheSettingsFile)
{
    EXPECT_FALSE(HasSettings());
    Open(L"Rock", 3, [&] { cForm->CancelClick(); });
    EXPECT_EQ(Settings(), "60\r\n60\r\n60\r\n");
}

// Somebody else may have set them since the window opened.
TEST_F(Form, ClosingLeavesGlobalValuesTheUserDidNotTouch)
{
    Open(L"Rock", 3, [&] {
        cMod.SetGlobalArtistSepMins(17);
        cForm->OKClick();
    });
    EXPECT_EQ(cMod.GlobalArtistSepMins(), 17);
}

// ---- new categories and levels ----

TEST_F(Form, ANewCategoryIsListedAndChosen)
{
    cPorts.cMessages.Typed = {L"Swing/Bop"};
    Open(L"Rock", 3, [&] {
        cForm->NewClick();
        EXPECT_EQ(cScreen.Entries(lstCat), (Texts{L"Rock", L"Jazz", L"NOCAT", L"Swing_Bop"}));
        EXPECT_EQ(cScreen.Current(lstCat), L"Swing_Bop");
        EXPECT_EQ(Shown().size(), 1u) << "that it is named so";
        EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"1", L"ALL"}));
        cForm->OKClick();
    });
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Swing_Bop"));
    EXPECT_EQ(request.cSubCatChosen, Level(L"Swing_Bop", 1));
}

// Placement the cut in it is for the user to ask for.
TEST_F(Form, WithMultiSelectANewCategoryIsCurrentButNotSelected)
{
    cPorts.cMessages.Typed = {L"Swing"};
    request.cCut = CutOf(3);
    request.bAllowMultiSelect = true;
    Open(L"", 0, [&] {
        cForm->NewClick();
        EXPECT_EQ(cScreen.Current(lstCat), L"Swing");
        EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Jazz"}));
        cForm->OKClick();
    });
    EXPECT_EQ(CutOf(3)->CategoryText(), L"Jazz");
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Swing"));
}

TEST_F(Form, WithMultiSelectANewNoCatIsNotMarkedAndUnmarked)
{
    cSchedMan->DeleteCats({MainCat(L"NOCAT")});
    cPorts.cMessages.Typed = {L"NOCAT"};
    request.cCut = CutOf(3);
    request.bAllowMultiSelect = true;
    Open(L"", 0, [&] {
        cForm->NewClick();
        EXPECT_EQ(cScreen.Current(lstCat), L"NOCAT");
        EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"1", L"ALL"}));
        EXPECT_EQ(cScreen.Selected(lstCat), (Texts{L"Jazz"}));
        cForm->OKClick();
    });
    EXPECT_EQ(CutOf(3)->CategoryText(), L"Jazz");
}

TEST_F(Form, NothingCanBeUsedWhileALevelIsMadeAndSaved)
{
    for (int i = 0; i < 1000; ++i) // enough for the save to pump messages
        Add(L"more " + std::to_wstring(i), L"Rock", 1, L"A", std::to_wstring(i));
    Repopulate();
    cPorts.cMessages.Typed = {L"2"};
    const auto tryEverything = [&] {
        EXPECT_TRUE(Disabled());
        cForm->OKClick();
        cForm->CancelClick();
        cForm->TabClick(RulesPane::Category);
        cForm->StripClick(true);
        EXPECT_EQ(cView.ePane, RulesPane::Global);
        EXPECT_TRUE(cView.bRulesArea);
        EXPECT_TRUE(cView.bOpen);
    };
    cPorts.cMessages.OnShown = tryEverything;
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"46");
        WhilePumping(tryEverything);
        cForm->NewLevelClick();
        EXPECT_FALSE(cView.bBusy);
        EXPECT_TRUE(cScreen.enabled.at(lstCat));
        EXPECT_FALSE(cScreen.bHourglass);
    });
    EXPECT_GT(lPumps, 0);
    EXPECT_EQ(Shown(), Boxes());
    EXPECT_TRUE(Level(L"Rock", 2));
}

TEST_F(Form, NothingCanBeUsedWhileACategoryIsMade)
{
    cPorts.cMessages.OnShown = [&] { EXPECT_TRUE(Disabled()); };
    Open(L"Rock", 3, [&] {
        cForm->NewClick();
        EXPECT_FALSE(cView.bBusy);
    });
    EXPECT_EQ(cPorts.cMessages.Inputs.size(), 1u);
}

TEST_F(Form, WithMultiSelectTheSongsStayDisabledAfterACommand)
{
    cPorts.cMessages.Typed = {L"Swing"};
    request.bAllowMultiSelect = true;
    Open(L"", 0, [&] {
        cForm->NewClick();
        EXPECT_TRUE(cScreen.enabled.at(lstCat));
        EXPECT_FALSE(cScreen.enabled.at(lstsongs1));
    });
}

TEST_F(Form, GivingUpANewCategoryKeepsTheChoice)
{
    Open(L"Rock", 3, [&] {
        cForm->NewClick();
        EXPECT_EQ(cScreen.Current(lstCat), L"Rock");
        EXPECT_EQ(cScreen.Current(lstlvl), L"3");
    });
}

TEST_F(Form, ANewLevelIsListedAndItsCategoryStaysChosen)
{
    cPorts.cMessages.Typed = {L"2"};
    Open(L"Rock", 3, [&] {
        cForm->NewLevelClick();
        EXPECT_EQ(cScreen.Entries(lstlvl), (Texts{L"1", L"2", L"3", L"ALL"}));
        EXPECT_EQ(cScreen.Current(lstCat), L"Rock");
        EXPECT_EQ(cScreen.Current(lstlvl), L"3");
    });
    EXPECT_TRUE(Level(L"Rock", 2));
}

TEST_F(Form, ClickOnADeletedLevelMeansAllLevels)
{
    Open(L"Rock", 1, [&] {
        cForm->TabClick(RulesPane::Category);
        MainCat(L"Rock")->RemoveSubCat(Level(L"Rock", 3));
        ClickLevel(L"3");
        EXPECT_EQ(cView.sRulesTitle, L"Showing Rules for: Rock [ALL LEVELS].");
        cForm->OKClick();
    });
    EXPECT_EQ(request.cMainCatChosen, MainCat(L"Rock"));
    EXPECT_EQ(request.cSubCatChosen, nullptr);
}

TEST_F(Form, ANewLevelNeedsACategory)
{
    Open(L"", 0, [&] { cForm->NewLevelClick(); });
    EXPECT_EQ(Shown(),
              (Boxes{OkBox(BoxIcon::None, L"Impossible!",
                           L"Impossible to create a level is we dont know which main cat it's in!")}));
}

TEST_F(Form, ANewLevelKeepsPendingEdits)
{
    cPorts.cMessages.Typed = {L"2"};
    Open(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"46");
        cForm->NewLevelClick();
        EXPECT_EQ(cView.texts[txtArtistSepMins1], L"46");
        EXPECT_EQ(Shown(), Boxes());
    });
}

// ---- the library ----

TEST_F(Form, TheMenuOpensTheLibraryUnlessItIsShowingAlready)
{
    cSchedMan->SetWindows(&cWindows);
    Open(L"Rock", 3, [&] {
        cForm->MenuOpening();
        EXPECT_TRUE(cView.bLibraryMenu);
        cForm->SchedLibClick();
        EXPECT_EQ(cWindows.lShown, 1);
        cWindows.bShowing = true;
        cForm->MenuOpening();
        EXPECT_FALSE(cView.bLibraryMenu);
        cForm->SchedLibClick();
        EXPECT_EQ(cWindows.lShown, 1);
    });
}

TEST_F(Form, WhatTheLibraryDeletedIsGoneFromTheWindow)
{
    cSchedMan->SetWindows(&cWindows);
    cWindows.OnShow = [&] { cSchedMan->DeleteCats({MainCat(L"Rock")}); };
    Open(L"Rock", 3, [&] {
        cForm->TabClick(RulesPane::Category);
        Type(txtArtistSepMins1, L"46");
        cForm->SchedLibClick();
        EXPECT_EQ(cScreen.Entries(lstCat), (Texts{L"Jazz", L"NOCAT"}));
        EXPECT_EQ(cView.ePane, RulesPane::Global);
        cForm->OKClick();
    });
    EXPECT_EQ(Shown(), Boxes());
    EXPECT_EQ(request.cMainCatChosen, nullptr);
    EXPECT_EQ(request.cSubCatChosen, nullptr);
}

// ---- the strip ----

TEST_F(Form, TheStripShowsAndHidesTheRulesAndIsRemembered)
{
    Open(L"", 0, [&] {
        EXPECT_TRUE(cView.bRulesArea);
        cForm->StripClick(false);
        EXPECT_TRUE(cView.bRulesArea);
        cForm->StripClick(true);
        EXPECT_FALSE(cView.bRulesArea);
    });
    Open(L"", 0, [&] {
        EXPECT_FALSE(cView.bRulesArea);
        cForm->StripClick(true);
        EXPECT_TRUE(cView.bRulesArea);
    });
    Open(L"", 0, [&] { EXPECT_TRUE(cView.bRulesArea); });
}

} // namespace ravlo::test
