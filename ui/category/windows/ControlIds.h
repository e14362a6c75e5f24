// SPDX-License-Identifier: MIT
#pragma once

namespace ravlo
{

// The ids of the controls, by the controls' names. OK and Cancel are IDOK and IDCANCEL.
enum ControlId : int
{
    // CatSelector1
    eIdCategoriesLabel = 100,
    eIdlstCat,
    eIdLevelsLabel,
    eIdlstlvl,
    eIdlblMatch,
    eIdlstsongs0,
    eIdMatchLabel1, // lstsongs1's own lblMatch
    eIdlstsongs1,
    eIdchkOpener,
    eIdchkSortedSongs,
    eIdFindCats,
    eIdmnuFind, // of the pop-up menu of the categories
    eIdmnuSortByName,

    // frmCat
    eIdCatSelector1 = 200,
    eIdcmdNew,
    eIdcmdNewLevel,
    eIdlblRulesTitle,
    eIdTabStrip1,
    eIdpicRules0,
    eIdpicRules1,
    eIdcmdApply,
    eIdLabel1,
    eIdLabel2,
    eIdLabel3,
    eIdmnuSchedLib,
    eIdNextTab, // Ctrl+Tab

    // picRules
    eIdArtistLabel = 300,
    eIdtxtArtistSepMins,
    eIdTitleLabel,
    eIdtxtTitleSepMins,
    eIdAlbumLabel,
    eIdtxtAlbumSepMins, // txtGlobalAlbumSepMins in the global pane
    eIdchkIgnore,
    eIdNote,
    eIdInheritArtist, // the ticks of the category pane, in the order of its boxes
    eIdInheritTitle,
    eIdInheritAlbum,
    eIdOutlook,
};

// What the windows are called among window classes.
inline constexpr const wchar_t* sfrmCatClass = L"RavloCategory";
inline constexpr const wchar_t* sCatSelectorClass = L"RavloCatSelector";
inline constexpr const wchar_t* sRulesPaneClass = L"RavloRulesPane";

} // namespace ravlo
