// SPDX-License-Identifier: MIT
#include "media/PlainCut.h"

#include "base/CaseFolding.h"
#include "base/Text.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

namespace
{

class PlainCut final : public Cut
{
public:
    PlainCut() = default;

    explicit PlainCut(const PlainCutValues& values)
        : m_cKey(values.cKey), m_lID(values.lID), m_cArtist(values.cArtist), m_cTitle(values.cTitle),
          m_cAlbum(values.cAlbum), m_lDurationmS(values.lDurationmS), m_dtLastPlayed(values.dtLastPlayed),
          m_bOpener(values.bOpener)
    {
    }

    explicit PlainCut(const Cut& cCut)
        : m_cKey(cCut.Key()), m_sSecondaryKey(cCut.SecondaryKey()), m_lID(cCut.ID()), m_sPath(cCut.Path()),
          m_cArtist(cCut.ArtistKey()), m_cTitle(cCut.TitleKey()), m_cAlbum(cCut.AlbumKey()),
          m_lYear(cCut.Year()), m_lRunTimemS(cCut.RunTimemS()), m_lDurationmS(cCut.DurationmS()),
          m_dtLastPlayed(cCut.LastPlayed()), m_bOpener(cCut.Opener()), m_lCatLevel(cCut.CatLevel()),
          m_sCategoryNames(cCut.CategoryNames()), m_sCategoryKey(cCut.CategoryKey()),
          m_bMustBeOpener(cCut.MustBeOpener()), m_lKindCode(cCut.KindCode())
    {
    }

    TextKey Key() const override { return m_cKey; }
    std::wstring SecondaryKey() const override { return m_sSecondaryKey; }
    std::int32_t ID() const override { return m_lID; }
    std::wstring Path() const override { return m_sPath; }
    std::wstring Artist() const override { return m_cArtist.Text(); }
    std::wstring Title() const override { return m_cTitle.Text(); }
    std::wstring Album() const override { return m_cAlbum.Text(); }
    TextKey ArtistKey() const override { return m_cArtist; }
    TextKey TitleKey() const override { return m_cTitle; }
    TextKey AlbumKey() const override { return m_cAlbum; }
    std::int32_t Year() const override { return m_lYear; }
    std::int32_t RunTimemS() const override { return m_lRunTimemS; }
    std::int32_t DurationmS() const override { return m_lDurationmS; }
    std::wstring DurationText() const override { return DurationTextOf(m_lDurationmS); }
    DateTime LastPlayed() const override { return m_dtLastPlayed; }
    bool Opener() const override { return m_bOpener; }

    std::int32_t CatLevel() const override { return m_lCatLevel; }
    std::vector<std::wstring> CategoryNames() const override { return m_sCategoryNames; }
    bool HasCategoryName(std::wstring_view sName) const override
    {
        return std::any_of(m_sCategoryNames.begin(), m_sCategoryNames.end(),
                           [&](const std::wstring& sOther) { return EqualIgnoringCase(sOther, sName); });
    }
    void AddCategoryName(const std::wstring& sName) override
    {
        if (!HasCategoryName(sName))
            m_sCategoryNames.push_back(sName);
    }
    void RemoveCategoryName(const std::wstring& sName) override
    {
        // Compared with a copy: the name may be one of the list's own.
        std::erase_if(m_sCategoryNames, [sGone = sName](const std::wstring& sOther) {
            return EqualIgnoringCase(sOther, sGone);
        });
    }
    std::wstring CategoryText() const override
    {
        std::wstring sText;
        for (std::size_t i = 0; i < m_sCategoryNames.size(); ++i)
            sText += (i > 0 ? L"/" : L"") + m_sCategoryNames[i];
        return sText;
    }
    void SetCategoryText(const std::wstring& sText) override
    {
        m_sCategoryNames.clear();
        for (const std::wstring& sName : Split(sText, L"/"))
        {
            if (!sName.empty())
                AddCategoryName(sName);
        }
    }

    void SetKey(const std::wstring& sKey) override
    {
        m_cKey = TextKey(sKey);
        m_sPath = sKey;
    }
    void SetSecondaryKey(const std::wstring& sKey) override { m_sSecondaryKey = sKey; }
    void SetPath(const std::wstring& sPath) override { m_sPath = sPath; }
    void SetArtist(const std::wstring& sArtist) override { m_cArtist = TextKey(sArtist); }
    void SetTitle(const std::wstring& sTitle) override { m_cTitle = TextKey(sTitle); }
    void SetAlbum(const std::wstring& sAlbum) override { m_cAlbum = TextKey(sAlbum); }
    void SetYear(std::int32_t lYear) override { m_lYear = lYear; }
    void SetRunTimemS(std::int32_t lRunTime) override { m_lRunTimemS = lRunTime; }
    void SetDurationmS(std::int32_t lDuration) override { m_lDurationmS = lDuration; }
    void SetLastPlayed(DateTime dtWhen) override { m_dtLastPlayed = dtWhen; }
    void SetOpener(bool bOpener) override { m_bOpener = bOpener; }
    void SetCatLevel(std::int32_t lLevel) override { m_lCatLevel = lLevel; }

    std::wstring CategoryKey() const override { return m_sCategoryKey; }
    void SetCategoryKey(const std::wstring& sKey) override { m_sCategoryKey = sKey; }
    bool MustBeOpener() const override { return m_bMustBeOpener; }
    void SetMustBeOpener(bool bMust) override { m_bMustBeOpener = bMust; }
    std::int32_t KindCode() const override { return m_lKindCode; }
    void SetKindCode(std::int32_t lKind) override { m_lKindCode = lKind; }

    std::shared_ptr<Cut> CloneCut() const override { return std::make_shared<PlainCut>(*this); }

private:
    TextKey m_cKey;
    std::wstring m_sSecondaryKey;
    std::int32_t m_lID = 0;
    std::wstring m_sPath;
    TextKey m_cArtist;
    TextKey m_cTitle;
    TextKey m_cAlbum;
    std::int32_t m_lYear = 0;
    std::int32_t m_lRunTimemS = 0;
    std::int32_t m_lDurationmS = 0;
    DateTime m_dtLastPlayed = 0;
    bool m_bOpener = false;
    std::int32_t m_lCatLevel = 0;
    std::vector<std::wstring> m_sCategoryNames;
    std::wstring m_sCategoryKey;
    bool m_bMustBeOpener = false;
    std::int32_t m_lKindCode = eKindChosen;
};

} // namespace

std::shared_ptr<Cut> NewPlainCut() { return std::make_shared<PlainCut>(); }

std::shared_ptr<Cut> NewPlainCut(const PlainCutValues& values) { return std::make_shared<PlainCut>(values); }

std::shared_ptr<Cut> PlainCopyOf(const Cut& cCut) { return std::make_shared<PlainCut>(cCut); }

std::wstring DurationTextOf(std::int32_t lDurationmS)
{
    const std::int32_t lSeconds = lDurationmS > 0 ? lDurationmS / 1000 : 0;
    const std::wstring sRest = DecimalText(lSeconds % 60);
    return DecimalText(lSeconds / 60) + (sRest.size() < 2 ? L":0" : L":") + sRest;
}

} // namespace ravlo
