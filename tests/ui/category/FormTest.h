// SPDX-License-Identifier: MIT
#pragma once

#include "support/SchedulerTest.h"
#include "ui/category/CategoryTest.h"
#include "ui/category/frmCatPresenter.h"

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>

namespace ravlo::test
{

using enum RuleBox;
using Minutes = std::array<std::int32_t, 3>;

inline constexpr const wchar_t* sGlobalTitle =
    L"Global Rules (for all categories where separations not explictly set).";

inline ShownBox PendingChanges(const std::wstring& sCat)
{
    return {BoxIcon::Question, BoxButtons::YesNo, L"Press No To Discard the Rule Changes You Made.",
            L"Save the pending rules changes to: " + sCat};
}

// The window without a screen. Like the system's boxes, it reports each text that is set.
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
    bool InheritChecked(RuleBox eBox) const override { return inherit.at(eBox); }
    void CheckInherit(RuleBox eBox, bool bCheck) override { inherit[eBox] = bCheck; }
    void EnableInherit(RuleBox eBox, bool bEnable) override { inheritEnabled[eBox] = bEnable; }
    void SetOutlook(const std::wstring& sText) override { sOutlook = sText; }
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
    std::map<RuleBox, bool> inherit;
    std::map<RuleBox, bool> inheritEnabled;
    std::wstring sOutlook;
    std::optional<RulesPane> ePane;
    bool bNewButtons = false;
    bool bIgnore = false;
    bool bApply = false;
    bool bRulesArea = false;
    bool bLibraryMenu = true;
    bool bOpen = false;
    bool bBusy = false;
};

// Windows that only count how often the library is shown.
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

// The category window's presenter with a screen in memory.
struct Form : CategoryTest
{
    ~Form() override { cSchedMan->SetWindows(nullptr); }

    // Opens the window on a level (0 for all), and does something while it is open.
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
    void OpenAndOK(
        const std::wstring& sCat, int lLevel, const std::function<void()>& act = [] {})
    {
        const auto actAndOK = [&] {
            act();
            cForm->OKClick();
        };
        EXPECT_EQ(Open(sCat, lLevel, actAndOK), lChosen);
    }
    // On the category pane.
    void OpenRules(const std::wstring& sCat, int lLevel, const std::function<void()>& act)
    {
        Open(sCat, lLevel, [&] {
            cForm->TabClick(RulesPane::Category);
            act();
        });
    }
    // With a new presenter: each shows its window once.
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
    void EditBothPanes()
    {
        Type(txtArtistSepMins1, L"46");
        Type(txtTitleSepMins0, L"47");
        Type(txtGlobalAlbumSepMins, L"48");
    }
    void ClickIgnore(bool bChecked)
    {
        cView.bIgnore = bChecked;
        cForm->IgnoreClick();
    }
    void TypeAll(RulesPane ePane, const std::wstring& sText)
    {
        for (const RuleBox eBox : BoxesOf(ePane))
            Type(eBox, sText);
    }
    // Opens the window on a level and applies one rule of it.
    void ApplyRule(const std::wstring& sCat, int lLevel, RuleBox eBox, const std::wstring& sText)
    {
        OpenRules(sCat, lLevel, [&] {
            Type(eBox, sText);
            cForm->ApplyClick();
        });
    }
    static std::array<RuleBox, 3> BoxesOf(RulesPane ePane) // artist, title, album
    {
        if (ePane == RulesPane::Global)
            return {txtArtistSepMins0, txtTitleSepMins0, txtGlobalAlbumSepMins};
        return {txtArtistSepMins1, txtTitleSepMins1, txtAlbumSepMins};
    }
    Texts TextsOf(RulesPane ePane)
    {
        Texts colTexts;
        for (const RuleBox eBox : BoxesOf(ePane))
            colTexts.push_back(cView.texts[eBox]);
        return colTexts;
    }
    // Artist, title and album.
    Minutes GlobalMins() const
    {
        return {cMod.GlobalArtistSepMins(), cMod.GlobalTitleSepMins(), cMod.GlobalAlbumSepMins()};
    }
    void SetGlobalMins(const Minutes& lMins)
    {
        cMod.SetGlobalArtistSepMins(lMins[0]);
        cMod.SetGlobalTitleSepMins(lMins[1]);
        cMod.SetGlobalAlbumSepMins(lMins[2]);
    }
    Minutes Mins(const std::wstring& sCat, int lLevel)
    {
        const clsCatRules& cRules = Rules(sCat, lLevel);
        return {cRules.ArtistSepMins(), cRules.TitleSepMins(), cRules.AlbumSepMins()};
    }
    // The window is for the categories of a cut.
    void MultiSelect(std::size_t cut)
    {
        request.cCut = CutOf(cut);
        request.bAllowMultiSelect = true;
    }
    void ExpectChosen(const std::shared_ptr<clsCat>& cMainCat, const std::shared_ptr<clsCat>& cLevel) const
    {
        EXPECT_EQ(request.cMainCatChosen, cMainCat);
        EXPECT_EQ(request.cSubCatChosen, cLevel);
    }
    void ExpectCut(std::size_t cut, const std::wstring& sCategories, int lLevel) const
    {
        EXPECT_EQ(CutOf(cut)->CategoryText(), sCategories);
        EXPECT_EQ(CutOf(cut)->CatLevel(), lLevel);
    }
    // Everything that a user can do but for the lists.
    void ClickEverything()
    {
        cForm->OKClick();
        cForm->CancelClick();
        cForm->ApplyClick();
        cForm->NewClick();
        cForm->NewLevelClick();
        cForm->SchedLibClick();
        cForm->StripClick(true);
        cForm->TabClick(RulesPane::Category);
    }
    void Repopulate() { cSchedMan->PopulateFromDataBase(cDataBase, sRadio); }
    // Whether nothing in the window and its selector can be used.
    bool Disabled() const
    {
        for (const SelectorControl eControl :
             {lstCat, lstlvl, lstsongs0, lstsongs1, chkOpener, chkSortedSongs})
            if (cScreen.enabled.at(eControl))
                return false;
        return cView.bBusy && cScreen.bHourglass;
    }
    // The lists of categories and of levels: what is current.
    void ExpectCurrent(const std::wstring& sCat, const std::wstring& sLevel)
    {
        EXPECT_EQ(cScreen.Current(lstCat), sCat);
        EXPECT_EQ(cScreen.Current(lstlvl), sLevel);
    }
    void Answers(BoxAnswer eAnswer) { cPorts.cMessages.eDefaultAnswer = eAnswer; }
    std::string Settings() const { return cPorts.cFiles.Get(sSettingsPath); }
    bool HasRules(const wchar_t* sLevel) const // a rules file of Rock
    {
        return cPorts.cFiles.FileExists(L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC" +
                                        std::wstring(sLevel) + L".rls");
    }
    clsCatRules& Rules(const std::wstring& sCat, int lLevel)
    {
        return *(lLevel > 0 ? Level(sCat, lLevel) : MainCat(sCat))->Rules();
    }

    ScreenForm cView;
    OtherWindows cWindows;
    std::optional<frmCatPresenter> cForm;
    CategoryRequest request;
};

} // namespace ravlo::test
