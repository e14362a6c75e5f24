// SPDX-License-Identifier: MIT
#include "host/client/Categories.h"

#include "base/Text.h"
#include "comkit/Errors.h"
#include "host/day/HostError.h"

namespace ravlo
{

std::wstring NameOf(_clsCat& cCat)
{
    Bstr sName;
    ThrowIfFailed(cCat.get_CatName(sName.Receive()));
    return sName.Text();
}

std::int32_t LevelOf(_clsCat& cCat)
{
    LONG lLevel = 0;
    ThrowIfFailed(cCat.get_CatLevel(&lLevel));
    return lLevel;
}

namespace
{

LevelOrder OrderOf(_clsCat& cLevel)
{
    LevelOrder order{NameOf(cLevel), LevelOf(cLevel), 0, {}};
    LONG lAveragemS = 0;
    ThrowIfFailed(cLevel.get_AverageRunTimemS(&lAveragemS));
    order.lAverageRunTimemS = lAveragemS;
    ComPtr<_clsCollection> colCuts;
    ThrowIfFailed(cLevel.get_SchedCuts(colCuts.Receive()));
    ForEach(*colCuts, [&](IDispatch& cItem) {
        if (const auto cCut = ComPtr<IDispatch>(&cItem).As<_clsCut>())
            order.cuts.push_back(PlayedCutOf(*cCut));
    });
    return order;
}

// The item under a key; none when there is none.
ComPtr<_clsCat> ItemOf(_clsCollection& colCats, const std::wstring& sKey)
{
    const Variant key{std::wstring_view(sKey)};
    VARIANT_BOOL bExists = VARIANT_FALSE;
    ThrowIfFailed(colCats.Exists(key, &bExists));
    if (bExists == VARIANT_FALSE)
        return nullptr;
    Variant item;
    ThrowIfFailed(colCats.get_Item(key, &item));
    return ObjectIn<_clsCat>(item);
}

void ForEachCat(_clsCollection& colCats, const std::function<void(_clsCat& cCat)>& visit)
{
    ForEach(colCats, [&](IDispatch& cItem) {
        if (const auto cCat = ComPtr<IDispatch>(&cItem).As<_clsCat>())
            visit(*cCat);
    });
}

ComPtr<_clsCollection> SubCats(_clsCat& cMainCat)
{
    ComPtr<_clsCollection> colLevels;
    ThrowIfFailed(cMainCat.get_SubCats(colLevels.Receive()));
    return colLevels;
}

} // namespace

ComPtr<_clsCollection> Categories::MainCats() const
{
    ComPtr<_clsCollection> colMainCats;
    ThrowIfFailed(m_cManager.get_colMainCats(colMainCats.Receive()));
    if (!colMainCats)
        throw HostError(L"the scheduler could not read the station");
    return colMainCats;
}

Rotation Categories::Orders() const
{
    Rotation rotation;
    ForEachCat(*MainCats(), [&](_clsCat& cMainCat) {
        const std::size_t before = rotation.size();
        ForEachCat(*SubCats(cMainCat), [&](_clsCat& cLevel) { rotation.push_back(OrderOf(cLevel)); });
        if (rotation.size() == before)
            rotation.push_back({NameOf(cMainCat), 0, 0, {}});
    });
    return rotation;
}

ComPtr<_clsCat> Categories::Find(const CategoryName& name) const
{
    const ComPtr<_clsCat> cMainCat = ItemOf(*MainCats(), CategoryKey(name.sName, 0));
    if (!cMainCat)
        throw HostError(L"there is no category " + name.sName);
    if (name.lLevel == 0)
        return cMainCat;
    ComPtr<_clsCat> cLevel = ItemOf(*SubCats(*cMainCat), DecimalText(name.lLevel));
    if (!cLevel)
        throw HostError(NameOf(*cMainCat) + L" has no level " + DecimalText(name.lLevel));
    return cLevel;
}

std::vector<ComPtr<_clsCat>> Categories::LevelsOf(const CategoryName& name) const
{
    const ComPtr<_clsCat> cFound = Find(name);
    std::vector<ComPtr<_clsCat>> levels;
    if (name.lLevel != 0)
        levels.push_back(cFound);
    else
        ForEachCat(*SubCats(*cFound), [&](_clsCat& cLevel) { levels.emplace_back(&cLevel); });
    return levels;
}

Target Categories::TargetOf(const CategoryName& name) const
{
    const ComPtr<_clsCat> cCat = Find(name);
    LONG lCuts = 0;
    ThrowIfFailed(cCat->get_TotalCuts(&lCuts));
    return {{NameOf(*cCat), name.lLevel}, static_cast<std::size_t>(lCuts)};
}

ComPtr<_clsCollection> NewCollection()
{
    void* pvObject = nullptr;
    ThrowIfFailed(CoCreateInstance(CLSID_clsCollection, nullptr, CLSCTX_INPROC_SERVER,
                                   __uuidof(_clsCollection), &pvObject));
    return ComPtr<_clsCollection>::Adopt(static_cast<_clsCollection*>(pvObject));
}

void Append(_clsCollection& colItems, IDispatch& cItem)
{
    ThrowIfFailed(colItems.Add(Variant(&cItem), Variant::Omitted(), Variant::Omitted(), Variant::Omitted()));
}

} // namespace ravlo
