// SPDX-License-Identifier: MIT
#include "ui/library/LibraryRename.h"

#include "base/Text.h"
#include "ui/library/NodeKey.h"

namespace ravlo
{

MenuItem LibraryRename::Item() const
{
    const NodeKey node = ParseNodeKey(m_cPanes.SelectedKey());
    return {.bEnabled = !node.sName.empty() && !node.bAllAudio && node.lLevel == 0};
}

void LibraryRename::Begin()
{
    const std::wstring sKey = m_cPanes.SelectedKey();
    if (!Item().bEnabled)
        return m_cResults.Remark(sKey.empty() || sKey == RootKey()
                                     ? L"Select the category to rename"
                                     : L"A level keeps its number; select its category to rename that");
    m_sName = ParseNodeKey(sKey).sName;
    m_cEditing = std::make_unique<LibraryWork::Working>(m_cWork);
    if (!m_cPanes.EditSelectedName())
        m_cEditing.reset();
}

void LibraryRename::Edited(const std::optional<std::wstring>& sName)
{
    if (!m_cEditing)
        return;
    m_cEditing.reset();
    if (sName)
        m_cWork.Handle(L"mnuRename_Click",
                       [&](clsSchedMan& cSchedMan) { Rename(cSchedMan, m_sName, *sName); });
}

void LibraryRename::Rename(clsSchedMan& cSchedMan, const std::wstring& sFrom, const std::wstring& sTo)
{
    const LibraryWork::Busy cBusy(m_cWork);
    if (!cSchedMan.RenameMainCat(sFrom, sTo))
        return;
    const std::shared_ptr<clsCat> cMainCat = MainCatByName(cSchedMan.colMainCats().get(), Trim(sTo));
    if (cMainCat)
        m_cResults.Say(L"Renamed " + sFrom + L" to " + CatsText({cMainCat}));
    m_cPanes.ShowRenamed(cSchedMan, sFrom, Trim(sTo));
}

} // namespace ravlo
