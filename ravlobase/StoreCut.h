// SPDX-License-Identifier: MIT
#pragma once

#include "media/CountsChanges.h"
#include "ravlobase/CutValues.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ravlo
{

class StoreCut;

// Stores the changes of a database's cuts.
class CutOwner
{
public:
    virtual ~CutOwner() = default;
    // Gives the cut its new values, on the disk first. When it throws, nothing has changed.
    virtual void Change(StoreCut& cCut, CutValues next) = 0;
    // As Change, for a play alone, which the owner may write later.
    virtual void ChangeLastPlayed(StoreCut& cCut, DateTime dtWhen) = 0;
};

// A cut of an embedded database, or a free-standing one that such a database made. A cut without an owner is
// only values in memory. When a cut is removed from its database, or its database is closed, it loses its
// owner and keeps its values.
class StoreCut final : public Cut, public CountsChanges
{
public:
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
    void SetSecondaryKey(const std::wstring& sKey) override { Set(&CutValues::cSecondaryKey, TextKey(sKey)); }
    void SetPath(const std::wstring& sPath) override { Set(&CutValues::cPath, TextKey(sPath)); }
    void SetArtist(const std::wstring& sArtist) override { Set(&CutValues::cArtist, TextKey(sArtist)); }
    void SetTitle(const std::wstring& sTitle) override { Set(&CutValues::cTitle, TextKey(sTitle)); }
    void SetAlbum(const std::wstring& sAlbum) override { Set(&CutValues::cAlbum, TextKey(sAlbum)); }
    void SetYear(std::int32_t lYear) override { Set(&CutValues::lYear, lYear); }
    void SetRunTimemS(std::int32_t lRunTime) override { Set(&CutValues::lRunTimemS, lRunTime); }
    void SetDurationmS(std::int32_t lDuration) override { Set(&CutValues::lDurationmS, lDuration); }
    void SetLastPlayed(DateTime dtWhen) override;
    void SetOpener(bool bOpener) override { Set(&CutValues::bOpener, bOpener); }
    void SetCatLevel(std::int32_t lLevel) override { Set(&CutValues::lCatLevel, lLevel); }

    std::wstring CategoryKey() const override { return m_cCategoryKey.Text(); }
    void SetCategoryKey(const std::wstring& sKey) override
    {
        m_cCategoryKey = TextKey(sKey);
        ++m_revision;
    }
    bool MustBeOpener() const override { return m_bMustBeOpener; }
    void SetMustBeOpener(bool bMust) override
    {
        m_bMustBeOpener = bMust;
        ++m_revision;
    }
    std::int32_t KindCode() const override { return m_lKind; }
    void SetKindCode(std::int32_t lKind) override
    {
        m_lKind = lKind;
        ++m_revision;
    }

    std::shared_ptr<Cut> CloneCut() const override;
    std::uint64_t Revision() const noexcept override { return m_revision; }

    // For the owner.
    void Attach(CutValues values, std::int32_t lID, CutOwner& cOwner) noexcept;
    void Detach() noexcept { m_pOwner = nullptr; }
    const CutValues& Values() const noexcept { return m_values; }
    const CutOwner* Owner() const noexcept { return m_pOwner; }
    void Take(CutValues values) noexcept
    {
        m_values = std::move(values);
        ++m_revision;
    }
    void TakeLastPlayed(DateTime dtWhen) noexcept
    {
        m_values.dtLastPlayed = dtWhen;
        ++m_revision;
    }

private:
    void Change(CutValues next);
    template <class Value> void Set(Value CutValues::*pMember, Value value)
    {
        CutValues next = m_values;
        next.*pMember = std::move(value);
        Change(std::move(next));
    }

    CutValues m_values;
    CutOwner* m_pOwner = nullptr;
    TextKey m_cCategoryKey;
    std::uint64_t m_revision = 1;
    std::int32_t m_lID = 0;
    std::int32_t m_lKind = eKindChosen;
    bool m_bMustBeOpener = false;
};

} // namespace ravlo
