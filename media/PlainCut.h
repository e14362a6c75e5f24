// SPDX-License-Identifier: MIT
#pragma once

#include "media/CountsChanges.h"
#include "media/CutValues.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ravlo
{

// A cut that is values in memory and belongs to no database: for placeholders and copies. A database's own
// class derives from it and overrides Change, through which all stored values are set but the time of the
// last play.
class PlainCut : public Cut, public CountsChanges
{
public:
    PlainCut() = default;
    PlainCut(CutValues values, std::int32_t lID) noexcept : m_values(std::move(values)), m_lID(lID) {}

    const CutValues& Values() const noexcept { return m_values; }

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
    void SetLastPlayed(DateTime dtWhen) override { TakeLastPlayed(dtWhen); }
    void SetOpener(bool bOpener) override { Set(&CutValues::bOpener, bOpener); }
    void SetCatLevel(std::int32_t lLevel) override { Set(&CutValues::lCatLevel, lLevel); }

    std::wstring CategoryKey() const override { return m_cCategoryKey.Text(); }
    void SetCategoryKey(const std::wstring& sKey) override { SetForHost(m_cCategoryKey, TextKey(sKey)); }
    bool MustBeOpener() const override { return m_bMustBeOpener; }
    void SetMustBeOpener(bool bMust) override { SetForHost(m_bMustBeOpener, bMust); }
    std::int32_t KindCode() const override { return m_lKind; }
    void SetKindCode(std::int32_t lKind) override { SetForHost(m_lKind, lKind); }

    std::shared_ptr<Cut> CloneCut() const override { return std::make_shared<PlainCut>(*this); }
    std::uint64_t Revision() const noexcept override { return m_revision; }

protected:
    // Gives the cut its new values. When it throws, nothing has changed.
    virtual void Change(CutValues next) { Take(std::move(next)); }

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
    void TakeID(std::int32_t lID) noexcept { m_lID = lID; }

private:
    template <class Value> void Set(Value CutValues::*pMember, Value value)
    {
        CutValues next = m_values;
        next.*pMember = std::move(value);
        Change(std::move(next));
    }
    template <class Value> void SetForHost(Value& member, Value value)
    {
        member = std::move(value);
        ++m_revision;
    }

    CutValues m_values;
    TextKey m_cCategoryKey;
    std::uint64_t m_revision = 1;
    std::int32_t m_lID = 0;
    std::int32_t m_lKind = eKindChosen;
    bool m_bMustBeOpener = false;
};

std::shared_ptr<Cut> NewPlainCut();

// What a selection reads of a cut. Keys share their texts.
struct PlainCutValues
{
    TextKey cKey;
    TextKey cArtist;
    TextKey cTitle;
    TextKey cAlbum;
    std::int32_t lID = 0;
    std::int32_t lDurationmS = 0;
    DateTime dtLastPlayed = 0; // 0 = never
    bool bOpener = false;
};
// A plain cut with these values; the path is empty.
std::shared_ptr<Cut> NewPlainCut(const PlainCutValues& values);

// "m:ss", minutes without padding; a negative duration counts as 0. Milliseconds are cut off.
std::wstring DurationTextOf(std::int32_t lDurationmS);

} // namespace ravlo
