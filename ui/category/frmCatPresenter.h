// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/LevelOutlook.h"
#include "scheduler/clsSchedMan.h"
#include "ui/category/CatSelectorPresenter.h"
#include "ui/category/frmCatView.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The category window: its selector chooses a main category, a level, the opener filter and cuts; its buttons
// make new categories and levels; its panes edit separation rules, the global ones and the chosen category's.
//
// Each box remembers whether the user has changed it. Only changed boxes are saved, so that a global value
// shown in place of a category's own does not become the category's own. A tick says which boxes of the
// category pane are not set there; typing into such a box takes the tick away.
class frmCatPresenter
{
public:
    // Listens to the selector. Owns none of them.
    frmCatPresenter(frmCatView& cView, CatSelectorPresenter& cSelector, ModScheduler& cMod);
    frmCatPresenter(const frmCatPresenter&) = delete;
    frmCatPresenter& operator=(const frmCatPresenter&) = delete;

    // Shows the window until it is closed. Call once. Returns lChosen after OK: the request then has the
    // choice, and its cut the new level and categories (unless "ALL" was chosen, which is refused with a
    // box). Otherwise returns lNotChosen and leaves the request unchanged.
    std::int32_t ShowUI(std::shared_ptr<clsSchedMan> cSchedMan, CategoryRequest& request);

    // What the user does.
    void TabClick(RulesPane ePane);
    void BoxChanged(RuleBox eBox);
    void IgnoreClick();
    void InheritClick(RuleBox eBox);
    void ApplyClick();
    void OKClick();
    void CancelClick();
    void NewClick();
    void NewLevelClick();
    void MenuOpening();
    void SchedLibClick();
    void StripClick(bool bToggle); // Label1, Label2 and Label3

private:
    class Busy;
    void SetBusy(bool bBusy) noexcept;
    bool Ready() const noexcept { return !m_bInCommand && !m_bClosed; }
    void Open(const CategoryRequest& request);
    void Choose(const CategoryRequest& request);
    void TakeChoice(CategoryRequest& request) const;
    void OnCatChanged(const std::shared_ptr<clsCat>& cCat);
    void RefreshSelector();
    std::shared_ptr<clsCat> MainCat() const;
    std::shared_ptr<clsCat> SubCat() const;
    std::shared_ptr<clsCat> RulesCat() const { return m_cSubCat ? SubCat() : MainCat(); }

    void ShowPane(RulesPane ePane);
    void ShowRules();
    void FillGlobalPane();
    void FillCategoryPane();
    void EnableArtistAndTitle();
    void ShowOutlook();
    void ForgetOutlook() noexcept { m_outlook.reset(); }
    std::int32_t MinsToKeep(RuleBox eBox) const;
    void FillRule(RuleBox eBox, std::int32_t lMins, bool bInherit);
    void Fill(RuleBox eBox, std::int32_t lMins);
    std::wstring Heading() const;

    bool Edited(RuleBox eBox) const { return m_bEdited[static_cast<std::size_t>(eBox)]; }
    bool PaneEdited(RulesPane ePane) const;
    void ForgetEdits(RulesPane ePane);
    bool QuestionDue() const;
    bool AskPending();
    void Save(RulesPane ePane);
    void SaveGlobal();
    void SaveCategory();
    void StoreGlobalArtistAndTitle();
    std::optional<std::int32_t> Minutes(RuleBox eBox) const;
    std::optional<std::int32_t> AbsoluteMinutes(RuleBox eBox) const;
    std::optional<std::int32_t> OwnMinutes(RuleBox eBox) const;
    void Finish();
    std::vector<std::wstring> NamesForTheCut();

    frmCatView& m_cView;
    CatSelectorPresenter& m_cSelector;
    ModScheduler& m_cMod;
    std::shared_ptr<clsSchedMan> m_cSchedMan;
    // The chosen objects. The host may have reloaded or deleted them since, so what is saved or returned is
    // looked up by name and level with MainCat() and SubCat().
    std::shared_ptr<clsCat> m_cMainCat;
    std::shared_ptr<clsCat> m_cSubCat; // null for all levels
    std::shared_ptr<Cut> m_cCut;
    Cuts m_colSelCuts;
    std::optional<std::vector<std::wstring>> m_colNames; // chosen for the cut
    std::array<bool, ruleBoxes> m_bEdited{};
    std::optional<LevelOutlook> m_outlook; // of the chosen level, once it has been shown
    RulesPane m_ePane = RulesPane::Global;
    bool m_bIgnoreEdited = false;
    bool m_bOpener = false;
    bool m_bRulesShown = true;
    bool m_bFilling = false;
    bool m_bInCommand = false;
    bool m_bClosed = false;
    bool m_bCancelled = true;
};

} // namespace ravlo
