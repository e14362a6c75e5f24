// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "base/TextKey.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

// Why the host received a cut: the kind code of cuts that NextCutFromRotation returns.
enum CutKind : std::int32_t
{
    eKindChosen = 0,              // broke no rule
    eKindLevelEmpty = 7,          // placeholder: the level has no cuts
    eKindMainCatNotFound = 9,     // placeholder: no such main category, or a key without TAB
    eKindLevelNotFound = 10,      // placeholder: no such level
    eKindNothingSchedulable = 11, // placeholder: nothing in the level could be scheduled
    eKindLevelZero = 12,          // placeholder: a main category was requested
    eKindNoCategory = 13,         // placeholder: no category was given
    eKindArtistViolation = 14,    // every candidate broke a rule; this one broke the artist's
    eKindTitleViolation = 15,
    eKindRotationDeferred = 17, // placeholder: rotation is not allowed just now
    eKindAlbumViolation = 18,
};

// Whether the kind is that of a real cut, not of a placeholder.
constexpr bool IsRealCut(std::int32_t lKind) noexcept
{
    return lKind == eKindChosen || lKind == eKindArtistViolation || lKind == eKindTitleViolation ||
           lKind == eKindAlbumViolation;
}

// One audio item of a media database, as far as the scheduler needs it. A cut may belong to a host's own
// database, so any call may throw RuntimeError and any value may change between two calls.
class Cut
{
public:
    virtual ~Cut() = default;

    // The unique key, which is the file path: the cut's identity inside the scheduler.
    virtual TextKey Key() const = 0;
    virtual std::wstring SecondaryKey() const = 0;
    virtual std::int32_t ID() const = 0; // the database's number; 0 for a cut that is in none
    virtual std::wstring Path() const = 0;
    virtual std::wstring Artist() const = 0;
    virtual std::wstring Title() const = 0;
    virtual std::wstring Album() const = 0;
    // The same three texts as keys. A cut that stores keys returns them without copying or folding texts.
    virtual TextKey ArtistKey() const { return TextKey(Artist()); }
    virtual TextKey TitleKey() const { return TextKey(Title()); }
    virtual TextKey AlbumKey() const { return TextKey(Album()); }
    virtual std::int32_t Year() const = 0;
    virtual std::int32_t RunTimemS() const = 0;
    virtual std::int32_t DurationmS() const = 0;
    virtual std::wstring DurationText() const = 0; // "m:ss"
    virtual DateTime LastPlayed() const = 0;       // 0 = never
    virtual bool Opener() const = 0;               // the cut's own flag

    virtual std::int32_t CatLevel() const = 0;
    // The names of the categories it is placed in, in order; each name once without regard to case.
    virtual std::vector<std::wstring> CategoryNames() const = 0;
    virtual bool HasCategoryName(std::wstring_view sName) const = 0;
    virtual void AddCategoryName(const std::wstring& sName) = 0;    // an existing name stays unchanged
    virtual void RemoveCategoryName(const std::wstring& sName) = 0; // a missing one is ignored
    virtual std::wstring CategoryText() const = 0;                  // the names joined with "/"
    virtual void SetCategoryText(const std::wstring& sText) = 0;    // split at "/", empty pieces skipped

    virtual void SetKey(const std::wstring& sKey) = 0; // and the path; error 70 on a cut of a database
    virtual void SetSecondaryKey(const std::wstring& sKey) = 0;
    virtual void SetPath(const std::wstring& sPath) = 0;
    virtual void SetArtist(const std::wstring& sArtist) = 0;
    virtual void SetTitle(const std::wstring& sTitle) = 0;
    virtual void SetAlbum(const std::wstring& sAlbum) = 0;
    virtual void SetYear(std::int32_t lYear) = 0;
    virtual void SetRunTimemS(std::int32_t lRunTime) = 0;
    virtual void SetDurationmS(std::int32_t lDuration) = 0;
    virtual void SetLastPlayed(DateTime dtWhen) = 0;
    virtual void SetOpener(bool bOpener) = 0;
    virtual void SetCatLevel(std::int32_t lLevel) = 0;

    // Set on the cuts returned to a host; never stored by a database.
    virtual std::wstring CategoryKey() const = 0; // the requested key
    virtual void SetCategoryKey(const std::wstring& sKey) = 0;
    virtual bool MustBeOpener() const = 0; // whether an opener was requested
    virtual void SetMustBeOpener(bool bMust) = 0;
    virtual std::int32_t KindCode() const = 0; // a CutKind
    virtual void SetKindCode(std::int32_t lKind) = 0;

    // An independent copy that belongs to no database. It keeps the ID.
    virtual std::shared_ptr<Cut> CloneCut() const = 0;
};

} // namespace ravlo
