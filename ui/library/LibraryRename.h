// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/LibraryCommand.h"
#include "ui/library/LibraryPanes.h"
#include "ui/library/LibraryResults.h"
#include "ui/library/LibraryWork.h"

#include <memory>
#include <optional>
#include <string>

namespace ravlo
{

// Renames the category that is selected in the tree; its name is edited in place. Levels are numbers and keep
// them.
class LibraryRename
{
public:
    // Owns none of them.
    LibraryRename(LibraryPanes& cPanes, LibraryWork& cWork, LibraryResults& cResults)
        : m_cPanes(cPanes), m_cWork(cWork), m_cResults(cResults)
    {
    }

    // Disabled when no category is selected.
    MenuItem Item() const;
    // Lets the user edit the name. Until Edited, the tree is not refreshed and no other command runs.
    void Begin();
    // The user has finished; sName is nothing when there is no new name.
    void Edited(const std::optional<std::wstring>& sName);

private:
    void Rename(clsSchedMan& cSchedMan, const std::wstring& sFrom, const std::wstring& sTo);

    LibraryPanes& m_cPanes;
    LibraryWork& m_cWork;
    LibraryResults& m_cResults;
    std::wstring m_sName; // of the category that is edited
    std::unique_ptr<LibraryWork::Working> m_cEditing;
};

} // namespace ravlo
