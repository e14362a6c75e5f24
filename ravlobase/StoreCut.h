// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "media/CountsChanges.h"
#include "media/Cut.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

class StoreCut;

// What a database stores of a cut. Texts are shared between cuts and copies.
struct CutValues
{
    TextKey cKey;
    TextKey cPath;
    TextKey cSecondaryKey;
    TextKey cArtist;
    TextKey cTitle;
    TextKey cAlbum;
    std::vector<TextKey> colCategories; // each name once without regard to case, none empty
    DateTime dtLastPlayed = 0;
    std::int32_t lYear = 0;
    std::int32_t lRunTimemS = 0;
    std::int32_t lDurationmS = 0;
    std::int32_t lCatLevel = 0; // 0 only on a cut no database holds
    bool bOpener = false;
};

// Texts are compared letter by letter, unlike keys.
bool SameText(const TextKey& cLeft, const TextKey& cRight) noexcept;

// The values of any cut, its category names brought into order: a repeated name and an empty one are dropped.
CutValues ValuesOf(const Cut& cCut);

// Adds the names at the end, except those that are empty or there already without regard to case. Linear.
void AddNames(std::vector<TextKey>& colNames, const std::vector<std::wstring>& colMore);

// Who writes down the changes of the cuts that a database holds.
class CutOwner
{
public:
    virtual ~CutOwner() = default;
    // Makes the new values the cut's own, on the disk first. When it throws, nothing has changed.
    virtual void Change(StoreCut& cCut, CutValues next) = 0;
    // The same for a play alone, which the owner may write later.
    virtual void ChangeLastPlayed(StoreCut& cCut, DateTime dtWhen) = 0;
};

// A cut of an embedded database, or a free-standing one that such a database made. Without an owner it is
// values in memory. A cut that is removed from its database, or whose database is closed, loses its owner and
// keeps its values.
class StoreCut final : public Cut, public CountsChanges
{
public:
    StoreCut() = default;
    StoreCut(CutValues values, std::int32_t lID, CutOwner* pOwner);

    TextKey Key() const override { return m_values.cKey; }
    std::wstring SecondaryKey() const override { return m_values.cSecondaryKey.Text(); }
    std::int32_t ID() const override { return m_lID; }
    std::wstring Path() const override { return m_values.cPath.Text(); }
    std::wstring Artist() const override { return m_values.cArtist.Text(); }
    std::wstring Title() const override { return m_values.cTitle.Text(); }
    std::wstring Album() const override { return m_values.cAlbum.Text(); }
    TextKey ArtistKey() const override { return m_values.cArtist; }
    TextKey TitleKey() const override { return m_values.cTitle; }
    TextKey AlbumKey() const override { return m_values.cAlbum; }
    std::int32_t Year() const override { return m_values.lYear; }
    std::int32_t RunTimemS() const override { return m_values.lRunTimemS; }
    std::int32_t DurationmS() const override { return m_values.lDurationmS; }
    std::wstring DurationText() const override;
    DateTime LastPlayed() const override { return m_values.dtLastPlayed; }
    bool Opener() const override { return m_values.bOpener; }

    std::int32_t CatLevel() const override { return m_values.lCatLevel; }
    std::vector<std::wstring> CategoryNames() const override;
    bool HasCategoryName(std::wstring_view sName) const override;
    void AddCategoryName(const std::wstring& sName) override;
    void RemoveCategoryName(const std::wstring& sName) override;
    std::wstring CategoryText() const override;
    void SetCategoryText(const std::wstring& sText) override;

    void SetKey(const std::wstring& sKey) override;
    void SetSecondaryKey(const std::wstring& sKey) override;
    void SetPath(const std::wstring& sPath) override;
    void SetArtist(const std::wstring& sArtist) override;
    void SetTitle(const std::wstring& sTitle) override;
    void SetAlbum(const std::wstring& sAlbum) override;
    void SetYear(std::int32_t lYear) override;
    void SetRunTimemS(std::int32_t lRunTime) override;
    void SetDurationmS(std::int32_t lDuration) override;
    void SetLastPlayed(DateTime dtWhen) override;
    void SetOpener(bool bOpener) override;
    void SetCatLevel(std::int32_t lLevel) override;

    std::wstring CategoryKey() const override { return m_cCategoryKey.Text(); }
    void SetCategoryKey(const std::wstring& sKey) override
    {
        m_cCategoryKey = TextKey(sKey);
        ++m_lRevision;
    }
    bool MustBeOpener() const override { return m_bMustBeOpener; }
    void SetMustBeOpener(bool bMust) override
    {
        m_bMustBeOpener = bMust;
        ++m_lRevision;
    }
    std::int32_t KindCode() const override { return m_lKind; }
    void SetKindCode(std::int32_t lKind) override
    {
        m_lKind = lKind;
        ++m_lRevision;
    }

    std::shared_ptr<Cut> CloneCut() const override;
    std::uint64_t Revision() const noexcept override { return m_lRevision; }

    // For the owner.
    const CutValues& Values() const noexcept { return m_values; }
    const CutOwner* Owner() const noexcept { return m_pOwner; }
    void Take(CutValues values) noexcept
    {
        m_values = std::move(values);
        ++m_lRevision;
    }
    void TakeLastPlayed(DateTime dtWhen) noexcept
    {
        m_values.dtLastPlayed = dtWhen;
        ++m_lRevision;
    }
    void Attach(CutValues values, std::int32_t lID, CutOwner& cOwner) noexcept;
    void Detach() noexcept { m_pOwner = nullptr; }

private:
    void Set(CutValues next);

    CutValues m_values;
    CutOwner* m_pOwner = nullptr;
    TextKey m_cCategoryKey;
    std::uint64_t m_lRevision = 1;
    std::int32_t m_lID = 0;
    std::int32_t m_lKind = eKindChosen;
    bool m_bMustBeOpener = false;
};

} // namespace ravlo
