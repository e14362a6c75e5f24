// SPDX-License-Identifier: MIT
#pragma once

#include "rotation/Explanation.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// A host's request for the next cut of a level.
struct RotationRequest
{
    std::wstring strSubCatKey; // <name> TAB <level>
    bool bMustBeOpener = false;
    std::shared_ptr<Cut> cPrevSchedCut = nullptr;
    bool bForEditablePlaylist = false;
    bool bRotatesAllowed = false; // set by the manager
};

// The answer. The categories and the main key are set as far as the request's key was found.
struct RotationAnswer
{
    std::shared_ptr<Cut> cCut; // never null; has the request's key and opener wish
    std::shared_ptr<clsCat> cMainCat;
    std::shared_ptr<clsCat> cSubCat;
    std::wstring sMainCatKey;
    CutKind eKind = eKindNothingSchedulable;
    bool bMovedCuts = false; // whether an order changed, which the caller may save
};

// Finds the level of the key and picks the next cut there. Returns these placeholders: 9 (no TAB in the key,
// or no such main category; colMainCats may be null), 10 (no such level; a key with two TABs names none), 17
// (rotation is not allowed now and the request is not for an editable playlist), and those of the pick. An
// error is reported and gives kind 11.
RotationAnswer NextCutFromRotation(const CatCollection* colMainCats, const RotationRequest& request,
                                   const SelectionContext& context);

// The level of a category key; null when the key leads to none.
std::shared_ptr<clsCat> LevelByKey(const CatCollection* colMainCats, std::wstring_view strSubCatKey);

// The picks of one manager on air. Shows an error once per incident, since a box at every pick would hold up
// the station, and logs it until the incident ends. An incident begins with a pick that fails and ends when a
// pick from the same level succeeds.
class PicksOnAir
{
public:
    // As NextCutFromRotation, but shows errors once per incident.
    RotationAnswer NextCut(const CatCollection* colMainCats, const RotationRequest& request,
                           SelectionContext context);
    // Call when the tree was replaced.
    void EndIncident() noexcept { m_cFailing.reset(); }

    // Why the last pick from the level chose its cut, also when an error ended it; null when there was none.
    // A request whose rotation was deferred was no pick. A renamed level keeps its last pick; one that was
    // deleted and made again has none.
    std::shared_ptr<const Explanation> LastExplanation(const std::shared_ptr<const clsCat>& cSubCat) const;
    // Call when a tree was replaced: the last picks of its levels are those of the new ones of their names.
    void MoveExplanations(const CatCollection& colFrom, const CatCollection& colTo);

private:
    RotationAnswer NextCutExplained(const CatCollection* colMainCats, const RotationRequest& request,
                                    SelectionContext& context);

    // By level.
    using Explanations = std::map<std::weak_ptr<const clsCat>, std::shared_ptr<const Explanation>,
                                  std::owner_less<std::weak_ptr<const clsCat>>>;
    Explanations m_colExplanations;
    std::optional<TextKey> m_cFailing; // the requested key when the error was shown
    int m_lRunning = 0;                // picks, one inside the pump of another
    std::vector<TextKey> m_colChosen;  // cuts that they have chosen since the outermost began
};

} // namespace ravlo
