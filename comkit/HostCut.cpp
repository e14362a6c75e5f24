// SPDX-License-Identifier: MIT
#include "comkit/HostCut.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "comkit/Collection.h"
#include "comkit/CutFace.h"

#include <algorithm>
#include <unordered_set>

namespace ravlo
{

namespace
{

// The category of a host's assignment: the text before a TAB and a level, if there are any.
std::wstring BareName(const std::wstring& sAssignment)
{
    return std::wstring(SplitCategoryKey(sAssignment).sName);
}

} // namespace

std::wstring HostCut::Text(Getter<BSTR> get) const
{
    Bstr sText;
    Call(get, sText.Receive());
    return sText.Text();
}

std::int32_t HostCut::Long(Getter<LONG> get) const
{
    LONG lValue = 0;
    Call(get, &lValue);
    return static_cast<std::int32_t>(lValue);
}

bool HostCut::Bool(Getter<VARIANT_BOOL> get) const
{
    VARIANT_BOOL bValue = VARIANT_FALSE;
    Call(get, &bValue);
    return bValue != VARIANT_FALSE;
}

void HostCut::Set(Setter<BSTR> set, const std::wstring& sText)
{
    const Bstr sValue{std::wstring_view(sText)};
    Call(set, sValue.Get());
}
void HostCut::Set(Setter<LONG> set, std::int32_t lValue) { Call(set, static_cast<LONG>(lValue)); }
void HostCut::Set(Setter<VARIANT_BOOL> set, bool bValue) { Call(set, BoolOf(bValue)); }

TextKey HostCut::KeptText(Keepable eText, Getter<BSTR> get) const
{
    const std::uint64_t revision = Revision();
    if (revision == 0)
        return TextKey(Text(get));
    if (m_cKept && m_cKept->revision == revision && m_cKept->cTexts[eText])
        return *m_cKept->cTexts[eText];
    TextKey cText(Text(get));
    // The revision from before the text was read, so that a change in between is noticed next time.
    if (!m_cKept)
        m_cKept = std::make_unique<Kept>();
    if (m_cKept->revision != revision)
        *m_cKept = Kept{revision, {}};
    m_cKept->cTexts[eText] = cText;
    return cText;
}

TextKey HostCut::Key() const { return KeptText(eKey, &_clsCut::get_Key); }
TextKey HostCut::ArtistKey() const { return KeptText(eArtist, &_clsCut::get_Artist); }
TextKey HostCut::TitleKey() const { return KeptText(eTitle, &_clsCut::get_Title); }
TextKey HostCut::AlbumKey() const { return KeptText(eAlbum, &_clsCut::get_Album); }
std::wstring HostCut::SecondaryKey() const { return Text(&_clsCut::get_SecondaryKey); }
std::int32_t HostCut::ID() const { return Long(&_clsCut::get_ID); }
std::wstring HostCut::Path() const { return Text(&_clsCut::get_Path); }
std::wstring HostCut::Artist() const { return Text(&_clsCut::get_Artist); }
std::wstring HostCut::Title() const { return Text(&_clsCut::get_Title); }
std::wstring HostCut::Album() const { return Text(&_clsCut::get_Album); }
std::int32_t HostCut::Year() const { return Long(&_clsCut::get_Year); }
std::int32_t HostCut::RunTimemS() const { return Long(&_clsCut::get_RunTimemS); }
std::int32_t HostCut::DurationmS() const { return Long(&_clsCut::get_DurationmS); }
std::wstring HostCut::DurationText() const { return Text(&_clsCut::get_DurationText); }
DateTime HostCut::LastPlayed() const
{
    DATE dtWhen = 0;
    Call(&_clsCut::get_LastPlayed, &dtWhen);
    return dtWhen;
}
bool HostCut::Opener() const { return Bool(&_clsCut::get_Opener); }
std::int32_t HostCut::CatLevel() const { return Long(&_clsCut::get_CatLevel); }

ComPtr<_clsCollection> HostCut::Categories() const
{
    return CallForObject<_clsCollection>(&_clsCut::get_Categories);
}

std::vector<std::wstring> HostCut::CategoryNames() const
{
    std::vector<std::wstring> colNames;
    std::unordered_set<std::wstring> colSeen;
    for (const std::wstring& sAssignment : AssignmentsIn(*Categories()))
    {
        std::wstring sName = BareName(sAssignment);
        if (colSeen.insert(FoldCase(sName)).second)
            colNames.push_back(std::move(sName));
    }
    return colNames;
}

std::vector<std::wstring> HostCut::AssignmentsIn(_clsCollection& colNames) const
{
    std::vector<std::wstring> colAssignments;
    ForEachItem(&colNames,
                [&](const Variant& cName) { colAssignments.push_back(TextAdapter::FromVariant(cName)); });
    return colAssignments;
}

bool HostCut::HasKey(_clsCollection& colNames, std::wstring_view sKey) const
{
    VARIANT_BOOL bExists = VARIANT_FALSE;
    const Variant cKey(sKey);
    ThrowIfFailed(Outgoing([&] { return colNames.Exists(cKey, &bExists); }), colNames, IID__clsCollection);
    return bExists != VARIANT_FALSE;
}

// Most names are their own keys, which the host finds quickly; only otherwise search the list.
bool HostCut::Contains(_clsCollection& colNames, std::wstring_view sName) const
{
    if (HasKey(colNames, sName))
        return true;
    const std::wstring sFolded = FoldCase(sName);
    const std::vector<std::wstring> colAssignments = AssignmentsIn(colNames);
    return std::any_of(colAssignments.begin(), colAssignments.end(), [&](const std::wstring& sAssignment) {
        return FoldCase(BareName(sAssignment)) == sFolded;
    });
}

bool HostCut::HasCategoryName(std::wstring_view sName) const { return Contains(*Categories(), sName); }

void HostCut::AddCategoryName(const std::wstring& sName)
{
    const ComPtr<_clsCollection> colNames = Categories();
    if (Contains(*colNames, sName))
        return;
    const Variant cName{std::wstring_view(sName)};
    const Variant cOmitted = Variant::Omitted();
    ThrowIfFailed(Outgoing([&] { return colNames->Add(cName, cName, cOmitted, cOmitted); }), *colNames,
                  IID__clsCollection);
}

void HostCut::RemoveCategoryName(const std::wstring& sName)
{
    const ComPtr<_clsCollection> colNames = Categories();
    const auto remove = [&](const Variant& cIndex) {
        ThrowIfFailed(Outgoing([&] { return colNames->Remove(cIndex); }), *colNames, IID__clsCollection);
    };
    if (HasKey(*colNames, sName))
        remove(Variant{std::wstring_view(sName)});
    // The rest is removed by position, the last one first: the keys of assignments are the host's choice.
    const std::wstring sFolded = FoldCase(sName);
    const std::vector<std::wstring> colAssignments = AssignmentsIn(*colNames);
    for (std::size_t i = colAssignments.size(); i-- > 0;)
        if (FoldCase(BareName(colAssignments[i])) == sFolded)
            remove(Variant(static_cast<std::int32_t>(i + 1)));
}

std::wstring HostCut::CategoryText() const { return Text(&_clsCut::get_CategoryText); }
void HostCut::SetCategoryText(const std::wstring& sText) { Set(&_clsCut::put_CategoryText, sText); }
void HostCut::SetKey(const std::wstring& sKey) { Set(&_clsCut::put_Key, sKey); }
void HostCut::SetSecondaryKey(const std::wstring& sKey) { Set(&_clsCut::put_SecondaryKey, sKey); }
void HostCut::SetPath(const std::wstring& sPath) { Set(&_clsCut::put_Path, sPath); }
void HostCut::SetArtist(const std::wstring& sArtist) { Set(&_clsCut::put_Artist, sArtist); }
void HostCut::SetTitle(const std::wstring& sTitle) { Set(&_clsCut::put_Title, sTitle); }
void HostCut::SetAlbum(const std::wstring& sAlbum) { Set(&_clsCut::put_Album, sAlbum); }
void HostCut::SetYear(std::int32_t lYear) { Set(&_clsCut::put_Year, lYear); }
void HostCut::SetRunTimemS(std::int32_t lRunTime) { Set(&_clsCut::put_RunTimemS, lRunTime); }
void HostCut::SetDurationmS(std::int32_t lDuration) { Set(&_clsCut::put_DurationmS, lDuration); }
void HostCut::SetLastPlayed(DateTime dtWhen) { Call(&_clsCut::put_LastPlayed, dtWhen); }
void HostCut::SetOpener(bool bOpener) { Set(&_clsCut::put_Opener, bOpener); }
void HostCut::SetCatLevel(std::int32_t lLevel) { Set(&_clsCut::put_CatLevel, lLevel); }
std::wstring HostCut::CategoryKey() const { return Text(&_clsCut::get_CategoryKey); }
void HostCut::SetCategoryKey(const std::wstring& sKey) { Set(&_clsCut::put_CategoryKey, sKey); }
bool HostCut::MustBeOpener() const { return Bool(&_clsCut::get_MustBeOpener); }
void HostCut::SetMustBeOpener(bool bMust) { Set(&_clsCut::put_MustBeOpener, bMust); }
std::int32_t HostCut::KindCode() const { return Long(&_clsCut::get_KindCode); }
void HostCut::SetKindCode(std::int32_t lKind) { Set(&_clsCut::put_KindCode, lKind); }

std::shared_ptr<Cut> HostCut::CloneCut() const
{
    return CutFrom(CallForObject<_clsCut>(&_clsCut::CloneCut).Get());
}

} // namespace ravlo
