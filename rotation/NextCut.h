// SPDX-License-Identifier: MIT
#pragma once

#include "rotation/Selection.h"

#include <memory>
#include <optional>
#include <string>

namespace ravlo
{

// What a host asks for.
struct RotationRequest
{
    std::wstring strSubCatKey; // <name> TAB <level>
    bool bMustBeOpener = false;
    std::shared_ptr<Cut> cPrevSchedCut; // null for none
    bool bForEditablePlaylist = false;
    bool bRotatesAllowed = false;
};

// What it gets. The categories are null and the main key empty as far as the key did not lead to them.
struct RotationAnswer
{
    std::shared_ptr<Cut> cCut; // never null; carries the key and the opener wish of the request
    std::shared_ptr<clsCat> cMainCat;
    std::shared_ptr<clsCat> cSubCat;
    std::wstring sMainCatKey;
    bool bMovedCuts = false; // whether an order changed that may want saving
};

// Follows the key to a level and picks the next cut there. Placeholders: 9 (no TAB in the key, or no such
// main category; colMainCats may be null), 10 (no such level; a key with two TABs names none), 17 (rotation
// is not allowed just now and the request is not for an editable playlist), and those of the pick. An error
// is reported and gives kind 11.
RotationAnswer NextCutFromRotation(const CatCollection* colMainCats, const RotationRequest& request,
                                   const SelectionContext& context);

// The picks of one manager on air. An error is shown once an incident, since a box at every pick would hold
// up the station: an incident begins with a pick that meets an error, and ends when a pick of the same level
// meets none. Until then errors are logged.
class PicksOnAir
{
public:
    // As NextCutFromRotation, with context's reports shown once an incident.
    RotationAnswer NextCut(const CatCollection* colMainCats, const RotationRequest& request,
                           SelectionContext context);
    // The levels are other ones now.
    void EndIncident() noexcept { m_cFailing.reset(); }

private:
    std::optional<TextKey> m_cFailing; // the key that was asked for when the error was shown
};

} // namespace ravlo
