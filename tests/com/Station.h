// SPDX-License-Identifier: MIT
#pragma once

#include "com/HostObjects.h"

namespace ravlo
{

// A manager, and what tests ask of it.
class ManagerTest : public ComTest
{
protected:
    template <class DataBase> void PopulateFrom(const ComPtr<DataBase>& cDataBase)
    {
        Do(m_cMan, &_clsSchedMan::PopulateFromDataBase, cDataBase, Folder().wstring());
    }
    void AllowRotation() { Do(m_cMan, &_clsSchedMan::put_RotatesAllowed, true); }
    ComPtr<_clsCat> MainCat(const std::wstring& sName)
    {
        return ItemAt<_clsCat>(Get(m_cMan, &_clsSchedMan::get_colMainCats), Text(sName + L"\t0"));
    }
    ComPtr<_clsCat> Level(const std::wstring& sName, const wchar_t* sLevel)
    {
        return ItemAt<_clsCat>(Get(MainCat(sName), &_clsCat::get_SubCats), Text(sLevel));
    }
    static LONG CutsIn(const ComPtr<_clsCat>& cCat) { return Get(cCat, &_clsCat::get_TotalCuts); }
    static ComPtr<_clsCollection> CutsOf(const ComPtr<_clsCat>& cCat)
    {
        return Get(cCat, &_clsCat::get_SchedCuts);
    }
    ComPtr<_clsCollection> CutsOf(const wchar_t* sCatName, LONG lLevel)
    {
        return Get(m_cMan, &_clsSchedMan::get_colCuts, sCatName, lLevel);
    }
    LONG CountOf(const wchar_t* sCatName, LONG lLevel)
    {
        return Get(CutsOf(sCatName, lLevel), &_clsCollection::get_Count);
    }
    ComPtr<_clsCut> Next(const wchar_t* sKey, bool bForEditablePlaylist = true)
    {
        return Get(m_cMan, &_clsSchedMan::get_NextCutFromRotation, sKey, false, nullptr, nullptr, nullptr,
                   nullptr, bForEditablePlaylist, false);
    }
    // The kind of the cut that is next on air.
    LONG Kind(const wchar_t* sKey) { return Get(Next(sKey, false), &_clsCut::get_KindCode); }
    // Returns whether a level was created.
    bool MassChange(eCatDragOptions eOption, const ComPtr<_clsCat>& cFrom, const ComPtr<_clsCat>& cTo,
                    const ComPtr<_clsCollection>& colCuts)
    {
        return MassChange(eOption, CollectionOf(cFrom), cTo, colCuts);
    }
    bool MassChange(eCatDragOptions eOption, const ComPtr<_clsCollection>& colFrom,
                    const ComPtr<_clsCat>& cTo, const ComPtr<_clsCollection>& colCuts)
    {
        VARIANT_BOOL bCreated = VARIANT_FALSE;
        Do(m_cMan, &_clsSchedMan::DoMassCatChange, eOption, colFrom, cTo, colCuts, &bCreated);
        return bCreated != VARIANT_FALSE;
    }
    // Returns the categories that the cut left, added to those given.
    ComPtr<_clsCollection> RemoveFromCategory(const ComPtr<_clsCat>& cMainCat, const ComPtr<_clsCut>& cCut,
                                              LONG lLevel = 0, ComPtr<_clsCollection> colAffected = {})
    {
        _clsCollection* pAffected = colAffected.Detach();
        Do(m_cMan, &_clsSchedMan::RemoveCutFromCategory, cMainCat, cCut, &pAffected, lLevel);
        return ComPtr<_clsCollection>::Adopt(pAffected);
    }
    // The titles of a collection of cuts, in order.
    static Texts Titles(IDispatch* colCuts)
    {
        Texts colTitles;
        ForEachItem(colCuts, [&](const Variant& cItem) {
            colTitles.push_back(Get(ObjectIn<_clsCut>(cItem), &_clsCut::get_Title));
        });
        return colTitles;
    }
    template <class I> static Texts Titles(const ComPtr<I>& colCuts) { return Titles(colCuts.Get()); }
    static Texts TitlesIn(const ComPtr<_clsCat>& cCat) { return Titles(CutsOf(cCat)); }
    static Texts Sorted(Texts colTexts)
    {
        std::sort(colTexts.begin(), colTexts.end());
        return colTexts;
    }

    ComPtr<_clsSchedMan> m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
};

// A station over a database of the host's own.
class HostStationTest : public ManagerTest
{
protected:
    void Populate() { PopulateFrom(m_cDataBase); }

    ComPtr<HostDataBaseObject> m_cDataBase = NewObject<HostDataBaseObject>();
};

// A station over the embedded database, with a file in the test's folder.
class ComStationTest : public ManagerTest
{
protected:
    ComStationTest() { Do(m_cDataBase, &_clsDataBase::Open, File()); }
    std::wstring File() const { return (Folder() / L"station.db").wstring(); }
    void Populate() { PopulateFrom(m_cDataBase); }
    void Reopen()
    {
        Do(m_cDataBase, &_clsDataBase::Close);
        Do(m_cDataBase, &_clsDataBase::Open, File());
    }

    ComPtr<_clsCut> NewCut(const std::wstring& sTitle, const wchar_t* sCategories = L"Rock", LONG lLevel = 1)
    {
        const auto cCut = Get(m_cDataBase, &_clsDataBase::NewCut);
        Do(cCut, &_clsCut::put_Key, L"C:\\" + sTitle + L".mp3");
        Do(cCut, &_clsCut::put_Title, sTitle);
        Do(cCut, &_clsCut::put_Artist, L"Artist of " + sTitle);
        Do(cCut, &_clsCut::put_CategoryText, sCategories);
        Do(cCut, &_clsCut::put_CatLevel, lLevel);
        Do(cCut, &_clsCut::put_RunTimemS, 1000);
        return cCut;
    }
    // Adds a cut to the database.
    ComPtr<_clsCut> AddCut(const std::wstring& sTitle, const wchar_t* sCategories = L"Rock", LONG lLevel = 1)
    {
        const auto cCut = NewCut(sTitle, sCategories, lLevel);
        EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::AddCuts, CollectionOf(cCut)), 1);
        return cCut;
    }
    void RemoveCut(const ComPtr<_clsCut>& cCut)
    {
        EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::RemoveCuts, CollectionOf(cCut)), 1);
    }
    ComPtr<_clsCut> Cut(const std::wstring& sTitle)
    {
        return Get(m_cDataBase, &_clsDataBase::CutByKey, L"C:\\" + sTitle + L".mp3");
    }
    ComPtr<_clsCollection> AllCuts() { return Get(m_cDataBase, &_clsDataBase::get_Cuts); }

    ComPtr<_clsDataBase> m_cDataBase = Create<_clsDataBase>(CLSID_clsDataBase);
};

// Four places of three cuts.
class SmallStationTest : public ComStationTest
{
protected:
    SmallStationTest()
    {
        AddCut(L"First");
        AddCut(L"Second", L"Rock/Pop");
        AddCut(L"Third", L"Rock", 2);
        Populate();
    }
};

} // namespace ravlo
