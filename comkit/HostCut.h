// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/HostWrapper.h"
#include "media/Cut.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace ravlo
{

// A host's cut as the core sees it. Every call goes to the host's object, except that the keys of a cut with
// IRevision are kept until its revision changes; a failure is thrown as RuntimeError. An item of its
// Categories may be a category's name, or a name, TAB and a level; the level is ignored, and either form is
// found and removed by the name.
class HostCut final : public Cut, public HostWrapper<HostCut, _clsCut>
{
public:
    HostCut(ComPtr<_clsCut> cHost, ComPtr<IUnknown> cIdentity)
        : HostWrapper(std::move(cHost), std::move(cIdentity))
    {
    }

    TextKey Key() const override;
    std::wstring SecondaryKey() const override;
    std::int32_t ID() const override;
    std::wstring Path() const override;
    std::wstring Artist() const override;
    std::wstring Title() const override;
    std::wstring Album() const override;
    TextKey ArtistKey() const override;
    TextKey TitleKey() const override;
    TextKey AlbumKey() const override;
    std::int32_t Year() const override;
    std::int32_t RunTimemS() const override;
    std::int32_t DurationmS() const override;
    std::wstring DurationText() const override;
    DateTime LastPlayed() const override;
    bool Opener() const override;
    std::int32_t CatLevel() const override;
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
    std::wstring CategoryKey() const override;
    void SetCategoryKey(const std::wstring& sKey) override;
    bool MustBeOpener() const override;
    void SetMustBeOpener(bool bMust) override;
    std::int32_t KindCode() const override;
    void SetKindCode(std::int32_t lKind) override;
    std::shared_ptr<Cut> CloneCut() const override;

private:
    template <class Value> using Getter = HRESULT (STDMETHODCALLTYPE _clsCut::*)(Value*);
    template <class Value> using Setter = HRESULT (STDMETHODCALLTYPE _clsCut::*)(Value);

    // Texts of the revision at which they were read.
    enum Keepable : std::size_t
    {
        eKey,
        eArtist,
        eTitle,
        eAlbum,
        eKeepables,
    };
    struct Kept
    {
        std::uint64_t revision = 0;
        std::optional<TextKey> cTexts[eKeepables];
    };

    TextKey KeptText(Keepable eText, Getter<BSTR> get) const;
    std::wstring Text(Getter<BSTR> get) const;
    std::int32_t Long(Getter<LONG> get) const;
    bool Bool(Getter<VARIANT_BOOL> get) const;
    void Set(Setter<BSTR> set, const std::wstring& sText);
    void Set(Setter<LONG> set, std::int32_t lValue);
    void Set(Setter<VARIANT_BOOL> set, bool bValue);
    ComPtr<_clsCollection> Categories() const;
    // The items of the host's list, unchanged.
    std::vector<std::wstring> AssignmentsIn(_clsCollection& colNames) const;
    bool HasKey(_clsCollection& colNames, std::wstring_view sKey) const;
    bool Contains(_clsCollection& colNames, std::wstring_view sName) const;

    mutable std::unique_ptr<Kept> m_cKept; // null without revisions
};

} // namespace ravlo
