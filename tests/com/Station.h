// SPDX-License-Identifier: MIT
#pragma once

#include "com/HostObjects.h"

namespace ravlo
{

// A station with its own database file in the test's folder and a manager over it.
class StationTest : public ComTest
{
protected:
    StationTest() { EXPECT_EQ(m_cDataBase->Open(Bstr((Folder() / L"station.db").wstring()).Get()), S_OK); }

    ComPtr<_clsCut> NewCut(const std::wstring& sTitle, const wchar_t* sCategories, LONG lLevel)
    {
        ComPtr<_clsCut> cCut;
        EXPECT_EQ(m_cDataBase->NewCut(cCut.Receive()), S_OK);
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
        LONG lAdded = 0;
        EXPECT_EQ(m_cDataBase->AddCuts(CollectionOf({Object(cCut)}).Get(), &lAdded), S_OK);
        EXPECT_EQ(lAdded, 1);
        return cCut;
    }
    void Populate()
    {
        EXPECT_EQ(m_cMan->PopulateFromDataBase(m_cDataBase.Get(), Bstr(Folder().wstring()).Get()), S_OK);
    }
    ComPtr<_clsCat> MainCat(const std::wstring& sName)
    {
        ComPtr<_clsCollection> colMainCats;
        EXPECT_EQ(m_cMan->get_colMainCats(colMainCats.Receive()), S_OK);
        Variant cItem;
        EXPECT_EQ(colMainCats->get_Item(Text(sName + L"\t0"), &cItem), S_OK);
        return ObjectIn<_clsCat>(cItem);
    }
    ComPtr<_clsCat> Level(const std::wstring& sName, const wchar_t* sLevel)
    {
        ComPtr<_clsCollection> colLevels;
        EXPECT_EQ(MainCat(sName)->get_SubCats(colLevels.Receive()), S_OK);
        Variant cItem;
        EXPECT_EQ(colLevels->get_Item(Text(sLevel), &cItem), S_OK);
        return ObjectIn<_clsCat>(cItem);
    }
    // The titles of a collection of cuts, in order.
    static std::vector<std::wstring> Titles(IDispatch* colCuts)
    {
        std::vector<std::wstring> colTitles;
        ForEachItem(colCuts, [&](const Variant& cItem) {
            colTitles.push_back(TextOfProperty(ObjectIn<_clsCut>(cItem), &_clsCut::get_Title));
        });
        return colTitles;
    }
    static std::vector<std::wstring> TitlesIn(const ComPtr<_clsCat>& cCat)
    {
        ComPtr<_clsCollection> colCuts;
        EXPECT_EQ(cCat->get_SchedCuts(colCuts.Receive()), S_OK);
        return Titles(colCuts.Get());
    }

    ComPtr<_clsDataBase> m_cDataBase = Create<_clsDataBase>(CLSID_clsDataBase);
    ComPtr<_clsSchedMan> m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
};

} // namespace ravlo
