// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace ravlo
{

// The panes of the rules area and, in the same order, the tabs above them.
enum class RulesPane
{
    Global,
    Category,
};

// The boxes for minutes: three in each pane.
enum class RuleBox
{
    txtArtistSepMins0, // global pane
    txtTitleSepMins0,
    txtGlobalAlbumSepMins,
    txtArtistSepMins1, // category pane
    txtTitleSepMins1,
    txtAlbumSepMins,
};
inline constexpr std::size_t ruleBoxes = 6;

// The category window on the screen, without its selector. Does not report changes made by its presenter,
// except that it may report the filling of a box.
class frmCatView
{
public:
    virtual ~frmCatView() = default;
    virtual void SetCaption(const std::wstring& sCaption) = 0;
    virtual void ShowNewButtons(bool bShow) = 0;  // cmdNew and cmdNewLevel
    virtual void ChoosePane(RulesPane ePane) = 0; // its tab is chosen, its pane shown, the other hidden
    virtual void SetRulesTitle(const std::wstring& sTitle) = 0;
    virtual std::wstring BoxText(RuleBox eBox) const = 0;
    virtual void SetBoxText(RuleBox eBox, const std::wstring& sText) = 0;
    virtual void EnableBox(RuleBox eBox, bool bEnable) = 0;
    virtual bool IgnoreChecked() const = 0; // chkIgnore
    virtual void CheckIgnore(bool bCheck) = 0;
    // The ticks of the category pane's boxes: the level sets no minutes of its own. A box whose tick is set
    // shows its text greyed, but can be typed into.
    virtual bool InheritChecked(RuleBox eBox) const = 0;
    virtual void CheckInherit(RuleBox eBox, bool bCheck) = 0;
    virtual void EnableInherit(RuleBox eBox, bool bEnable) = 0;
    virtual void SetOutlook(const std::wstring& sText) = 0; // of the category pane: what can be kept
    virtual void EnableApply(bool bEnable) = 0;             // cmdApply
    virtual void ShowRulesArea(bool bShow) = 0;             // and points the strip's arrows the other way
    virtual void EnableLibraryMenu(bool bEnable) = 0;       // mnuSchedLib
    // While busy, everything but the selector's controls is disabled. Afterwards Apply and the boxes have the
    // states set during that time.
    virtual void SetBusy(bool bBusy) = 0;
    // Shows the window and returns when it is closed: after Close, or because the program ends.
    virtual void ShowModal() = 0;
    virtual void Close() = 0;
};

} // namespace ravlo
