// SPDX-License-Identifier: MIT
#pragma once

#include "com/HostObjects.h"

namespace ravlo
{

// A manager, and what tests ask of it.
class ManagerTest : public ComTest
{
protected:
    void PopulateFrom(_clsDataBase* pDataBase)
    {
        EXPECT_EQ(m_cMan->PopulateFromDataBase(pDataBase, Bstr(Folder().wstring()).Get()), S_OK);
    }
    ComPtr<_clsCat> MainCat(const std::wstring& sName)
    {
        return ItemAt<_clsCat>(Get(m_cMan, &_clsSchedMan::get_colMainCats), Text(sName + L"\t0"));
    }
    ComPtr<_clsCat> Level(const std::wstring& sName, const wchar_t* sLevel)
    {
        return ItemAt<_clsCat>(Get(MainCat(sName), &_clsCat::get_SubCats), Text(sLevel));
    }
    ComPtr<_clsCollection> CutsOf(const wchar_t* sCatName, LONG lLevel)
    {
        return Get(m_cMan, &_clsSchedMan::get_colCuts, sCatName, lLevel);
    }
    long CountOf(const wchar_t* sCatName, LONG lLevel)
    {
        return Get(CutsOf(sCatName, lLevel), &_clsCollection::get_Count);
    }
    ComPtr<_clsCut> Next(const wchar_t* sKey, bool bForEditablePlaylist = true)
    {
        return Get(m_cMan, &_clsSchedMan::get_NextCutFromRotation, sKey, false, nullptr, nullptr, nullptr,
                   nullptr, bForEditablePlaylist, false);
    }
    // The titles of a collection of cuts, in order.
    static std::vector<std::wstring> Titles(IDispatch* colCuts)
    {
        std::vector<std::wstring> colTitles;
        ForEachItem(colCuts, [&](const Variant& cItem) {
            colTitles.push_back(Get(ObjectIn<_clsCut>(cItem), &_clsCut::get_Title));
        });
        return colTitles;
    }
    static std::vector<std::wstring> TitlesIn(const ComPtr<_clsCat>& cCat)
    {
        return Titles(Get(cCat, &_clsCat::get_SchedCuts).Get());
    }

    ComPtr<_clsSchedMan> m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
};

// A station over a database of the host's own.
class HostStationTest : public ManagerTest
{
protected:
    void Populate() { PopulateFrom(m_cDataBase.Get()); }

    ComPtr<HostDataBaseObject> m_cDataBase = NewObject<HostDataBaseObject>();
};

// A station over the embedded database, with a file in the test's folder.
class ComStationTest : public ManagerTest
{
protected:
    ComStationTest() { EXPECT_EQ(m_cDataBase->Open(Bstr((Folder() / L"station.db").wstring()).Get()), S_OK); }
    void Populate() { PopulateFrom(m_cDataBase.Get()); }

    ComPtr<_clsCut> NewCut(const std::wstring& sTitle, const wchar_t* sCategories, LONG lLevel)
    {
        const auto cCut = Get(m_cDataBase, &_clsDataBase::NewCut);
        EXPECT_EQ(cCut->put_Key(Bstr(L"C:\\" + sTitle + L".mp3").Get()), S_OK);
        EXPECT_EQ(cCut->put_Title(Bstr(sTitle).Get()), S_OK);
        EXPECT_EQ(cCut->put_Artist(Bstr(L"Artist of " + sTitle).Get()), S_OK);
        EXPECT_EQ(cCut->put_CategoryText(Bstr(sCategories).Get()), S_OK);
        EXPECT_EQ(cCut->put_CatLevel(lLevel), S_OK);
        EXPECT_EQ(cCut->put_RunTimemS(1000), S_OK);
        return cCut;
    }
    // Puts a cut into the database.
    ComPtr<_clsCut> AddCut(const std::wstring& sTitle, const wchar_t* sCategories, LONG lLevel)
    {
        const auto cCut = NewCut(sTitle, sCategories, lLevel);
        EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::AddCuts, CollectionOf({Object(cCut)})), 1);
        return cCut;
    }
    void RemoveCut(const ComPtr<_clsCut>& cCut)
    {
        EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::RemoveCuts, CollectionOf({Object(cCut)})), 1);
    }

    ComPtr<_clsDataBase> m_cDataBase = Create<_clsDataBase>(CLSID_clsDataBase);
};

} // namespace ravlo
