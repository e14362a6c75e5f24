// SPDX-License-Identifier: MIT
// Trees and grids of a host, which the scheduler knows only by their members' names.
#include "com/Station.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace ravlo
{

namespace
{

// An automation object whose members are known by name alone; without type information.
class NamedObject : public HostObject<IDispatch>
{
public:
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* psName, UINT lNames, LCID, DISPID* plId) override
    {
        EXPECT_EQ(lNames, 1u);
        m_colNames.emplace_back(psName[0]);
        *plId = static_cast<DISPID>(m_colNames.size());
        return S_OK;
    }
    STDMETHODIMP Invoke(DISPID lMember, REFIID, LCID, WORD wFlags, DISPPARAMS* pParameters, VARIANT* pResult,
                        EXCEPINFO* pInfo, UINT*) override
    {
        const std::vector<Variant> arguments(std::reverse_iterator(pParameters->rgvarg + pParameters->cArgs),
                                             std::reverse_iterator(pParameters->rgvarg));
        const std::wstring sName = lMember == DISPID_NEWENUM ? L"_NewEnum" : m_colNames.at(lMember - 1u);
        if (sName == m_sFailing)
        {
            pInfo->wCode = 1004;
            pInfo->bstrDescription = NewBstr(L"This grid is full");
            return DISP_E_EXCEPTION;
        }
        if (sName == m_sMissing)
            return DISP_E_MEMBERNOTFOUND;
        if (const auto hook = m_OnCall)
            hook(sName);
        const Variant cResult = Member(sName, (wFlags & DISPATCH_PROPERTYPUT) != 0, arguments);
        if (pResult)
            *pResult = Variant(cResult).Detach();
        return S_OK;
    }

    std::wstring m_sFailing; // the member that answers with an error of its own
    std::wstring m_sMissing; // the one it does not have
    std::function<void(const std::wstring& sMember)> m_OnCall; // a host's object may do anything in it

protected:
    virtual Variant Member(const std::wstring& sName, bool bPut, const std::vector<Variant>& arguments) = 0;

private:
    std::vector<std::wstring> m_colNames;
};

class TestNode final : public NamedObject
{
public:
    std::map<std::wstring, Variant> m_colValues;

private:
    Variant Member(const std::wstring& sName, bool bPut, const std::vector<Variant>& arguments) override
    {
        if (bPut)
            m_colValues[sName] = arguments.at(0);
        return m_colValues[sName];
    }
};

class TestNodes final : public NamedObject
{
public:
    std::vector<ComPtr<TestNode>> m_colNodes;

private:
    Variant Member(const std::wstring& sName, bool, const std::vector<Variant>& arguments) override
    {
        if (sName == L"Clear")
            m_colNodes.clear();
        else if (sName == L"Add")
            return Added(arguments);
        else if (sName == L"Count")
            return Long(static_cast<LONG>(m_colNodes.size()));
        else if (sName == L"Item")
            return Object(m_colNodes.at(static_cast<std::size_t>(arguments.at(0).lVal) - 1));
        else if (sName == L"_NewEnum")
            return Variant(NewEnumerator(
                               ComPtr<IUnknown>(this), [this] { return m_colNodes.size(); },
                               [this](std::size_t i) { return Object(m_colNodes.at(i)); })
                               .Get());
        else
            ADD_FAILURE() << "an unexpected member";
        return {};
    }
    Variant Added(const std::vector<Variant>& arguments)
    {
        const auto cNode = NewObject<TestNode>();
        EXPECT_EQ(IsOmitted(arguments.at(0)), m_colNodes.empty());
        EXPECT_EQ(IsOmitted(arguments.at(1)), m_colNodes.empty());
        cNode->m_colValues[L"Relative"] = m_colNodes.empty() ? Text(L"none") : arguments[0];
        EXPECT_TRUE(m_colNodes.empty() || arguments[1].lVal == 4); // a child
        cNode->m_colValues[L"Key"] = arguments.at(2);
        cNode->m_colValues[L"Text"] = arguments.at(3);
        cNode->m_colValues[L"Image"] = arguments.at(4);
        for (const auto& cParent : m_colNodes)
            if (TextOf(cParent->m_colValues[L"Key"].bstrVal) ==
                TextOf(cNode->m_colValues[L"Relative"].bstrVal))
                cNode->m_colValues[L"Parent"] = Object(cParent);
        m_colNodes.push_back(cNode);
        return Object(cNode);
    }
};

class TestTree final : public NamedObject
{
public:
    ComPtr<TestNodes> m_colNodes = NewObject<TestNodes>();

    std::wstring Value(std::size_t node, const wchar_t* sName)
    {
        const auto cText = m_colNodes->m_colNodes.at(node)->m_colValues[sName].As(VT_BSTR);
        return cText ? TextOf(cText->bstrVal) : L"";
    }

private:
    Variant Member(const std::wstring& sName, bool, const std::vector<Variant>&) override
    {
        EXPECT_EQ(sName, L"Nodes");
        return Object(m_colNodes);
    }
};

// Notes what is done to it.
class TestGrid final : public NamedObject
{
public:
    std::vector<std::wstring> m_colDone;
    long m_lColumns = 0;

private:
    static std::wstring TextIn(const Variant& value)
    {
        const auto cText = value.As(VT_BSTR);
        return cText ? TextOf(cText->bstrVal) : L"?";
    }
    Variant Member(const std::wstring& sName, bool, const std::vector<Variant>& arguments) override
    {
        if (sName == L"ColCount")
            return Long(m_lColumns);
        std::wstring sDone = sName;
        for (const Variant& argument : arguments)
            sDone += L" " + TextIn(argument);
        m_colDone.push_back(sDone);
        m_lColumns += sName == L"AddCol";
        return {};
    }
};

class OwnViews : public ComStationTest
{
protected:
    HRESULT Show(std::wstring sKey, IDispatch* cTree = nullptr, IDispatch* cImages = nullptr)
    {
        Bstr sKeyUsed(sKey);
        BSTR sInOut = sKeyUsed.Detach();
        const HRESULT hResult = m_cMan->ShowGridCuts(m_cGrid.Get(), &sInOut, cTree, cImages, &m_bAll,
                                                     &m_bSeveral, m_cShown.Receive());
        m_sKey = TextOf(sInOut);
        SysFreeString(sInOut);
        return hResult;
    }

    void DeleteFirstCategory()
    {
        const auto colMainCats = Get(m_cMan, &_clsSchedMan::get_colMainCats);
        if (Get(colMainCats, &_clsCollection::get_Count) == 0)
            return;
        const auto cFirst = Get(colMainCats, &_clsCollection::get_Item, Long(1));
        EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::DeleteCats, CollectionOf({cFirst})));
    }

    ComPtr<TestTree> m_cTree = NewObject<TestTree>();
    ComPtr<TestGrid> m_cGrid = NewObject<TestGrid>();
    VARIANT_BOOL m_bAll = VARIANT_FALSE;
    VARIANT_BOOL m_bSeveral = VARIANT_FALSE;
    ComPtr<_clsCat> m_cShown;
    std::wstring m_sKey;
};

} // namespace

TEST_F(OwnViews, ATreeIsFilledNodeByNodeAndShowsWhatTheGridLists)
{
    AddCut(L"One", L"Rock", 2);
    Populate();
    ASSERT_EQ(m_cMan->PopulateTreeView(m_cTree.Get()), S_OK);
    ASSERT_EQ(m_cTree->m_colNodes->m_colNodes.size(), 3u);
    EXPECT_EQ(m_cTree->Value(0, L"Key"), L"ALL AUDIO\t0");
    EXPECT_EQ(m_cTree->Value(1, L"Relative"), L"ALL AUDIO\t0");
    EXPECT_EQ(m_cTree->Value(1, L"Text"), L"Rock");
    EXPECT_EQ(m_cTree->Value(2, L"Key"), L"Rock\t2");
    EXPECT_EQ(m_cTree->Value(2, L"Text"), L"2");
    EXPECT_EQ(m_cTree->m_colNodes->m_colNodes[0]->m_colValues[L"Sorted"].boolVal, VARIANT_TRUE);
    EXPECT_EQ(m_cTree->m_colNodes->m_colNodes[1]->m_colValues[L"Sorted"].boolVal, VARIANT_TRUE);
    EXPECT_EQ(m_cTree->m_colNodes->m_colNodes[0]->m_colValues[L"Expanded"].boolVal, VARIANT_TRUE);

    const auto cImages = NewObject<TestNode>();
    EXPECT_EQ(Show(L"ROCK\t2", m_cTree.Get(), cImages.Get()), S_OK);
    EXPECT_EQ(m_sKey, L"ROCK\t2");
    EXPECT_EQ(m_cTree->Value(0, L"Image"), L"Closed");
    EXPECT_EQ(m_cTree->Value(1, L"Image"), L"Open");
    EXPECT_EQ(m_cTree->Value(2, L"Image"), L"Open");
    // Without images the tree is left alone.
    EXPECT_EQ(Show(L"ALL AUDIO\t0", m_cTree.Get(), nullptr), S_OK);
    EXPECT_EQ(m_cTree->Value(0, L"Image"), L"Closed");
    m_cTree->m_colNodes->m_colNodes.clear();
}

TEST_F(OwnViews, AGridReceivesColumnsOnceAndEachCutCellByCell)
{
    AddCut(L"One", L"Rock", 1);
    Populate();
    EXPECT_EQ(Show(L"Rock\t1"), S_OK);
    EXPECT_EQ(m_cShown ? Get(m_cShown, &_clsCat::get_CatLevel) : 0, 1);
    EXPECT_EQ(m_bAll, VARIANT_FALSE);
    EXPECT_EQ(m_bSeveral, VARIANT_FALSE);
    const std::vector<std::wstring> expected = {
        L"RowCount 0",
        L"AddCol Pos Pos",
        L"AddCol ID ID",
        L"AddCol Artist Artist",
        L"AddCol Title Title",
        L"AddCol Dur Dur",
        L"AddCol Cat Categories",
        L"AddCol Lvl Lvl",
        L"AddCol Year Year",
        L"AddCol Opener Opener",
        L"AddCol Path Path",
        L"RowCount 1",
        L"RowKey 1 C:\\One.mp3",
        L"CellValue 1 Pos 1",
        L"CellValue 1 ID 1",
        L"CellValue 1 Artist Artist of One",
        L"CellValue 1 Title One",
        L"CellValue 1 Dur 0:00",
        L"CellValue 1 Cat Rock",
        L"CellValue 1 Lvl 1",
        L"CellValue 1 Year 0",
        L"CellValue 1 Opener N",
        L"CellValue 1 Path C:\\One.mp3",
    };
    std::vector<std::wstring> colDone = m_cGrid->m_colDone;
    ASSERT_FALSE(colDone.empty());
    EXPECT_EQ(colDone.back(), L"Redraw -1");
    std::erase_if(colDone, [](const std::wstring& sDone) { return sDone.starts_with(L"Redraw"); });
    EXPECT_EQ(colDone, expected);

    m_cGrid->m_colDone.clear();
    EXPECT_EQ(Show(L"Rock\t0"), S_OK);
    EXPECT_EQ(m_bSeveral, VARIANT_TRUE);
    EXPECT_EQ(std::count(m_cGrid->m_colDone.begin(), m_cGrid->m_colDone.end(), L"AddCol Pos Pos"), 0);
}

TEST_F(OwnViews, AFailingGridIsDrawnAgainAndItsErrorComesBack)
{
    AddCut(L"One", L"Rock", 1);
    Populate();
    m_cGrid->m_sFailing = L"CellValue";
    EXPECT_EQ(Show(L"Rock\t1"), ErrorResult(1004));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"This grid is full");
    EXPECT_EQ(m_cGrid->m_colDone.back(), L"Redraw -1");
}

TEST_F(OwnViews, AMissingGridIsIgnoredAndAMissingTreeIsAnError)
{
    Populate();
    m_cGrid = nullptr;
    EXPECT_EQ(Show(L"Rock\t1"), S_OK);
    EXPECT_EQ(m_sKey, L"Rock\t1");
    EXPECT_EQ(m_cMan->PopulateTreeView(nullptr), ErrorResult(91));
}

TEST_F(OwnViews, ATreeMayDeleteCategoriesWhileItIsFilled)
{
    for (const wchar_t* sName : {L"Rock", L"Jazz", L"Pop"})
        AddCut(sName, sName, 1);
    Populate();
    m_cTree->m_colNodes->m_OnCall = [this](const std::wstring& sMember) {
        if (sMember == L"Add")
            DeleteFirstCategory();
    };
    EXPECT_EQ(m_cMan->PopulateTreeView(m_cTree.Get()), S_OK);
    m_cTree->m_colNodes->m_OnCall = nullptr;
    ASSERT_EQ(m_cTree->m_colNodes->m_colNodes.size(), 7u) << "as it was at the call";
    EXPECT_EQ(m_cTree->Value(6, L"Key"), L"Pop\t1");
    EXPECT_EQ(m_cMan->PopulateTreeView(m_cTree.Get()), S_OK);
    EXPECT_EQ(m_cTree->m_colNodes->m_colNodes.size(), 1u);
    m_cTree->m_colNodes->m_colNodes.clear();
}

TEST_F(OwnViews, AGridMayDeleteCategoriesWhileItIsFilled)
{
    for (const wchar_t* sTitle : {L"One", L"Two", L"Three"})
        AddCut(sTitle, L"Rock", 1);
    Populate();
    m_cGrid->m_OnCall = [this](const std::wstring& sMember) {
        if (sMember == L"RowKey")
            DeleteFirstCategory();
    };
    EXPECT_EQ(Show(L"Rock\t0"), S_OK);
    m_cGrid->m_OnCall = nullptr;
    const std::vector<std::wstring>& colDone = m_cGrid->m_colDone;
    EXPECT_EQ(std::count(colDone.begin(), colDone.end(), L"RowKey 3 C:\\Three.mp3"), 1);
    EXPECT_EQ(colDone.back(), L"Redraw -1");
}

TEST_F(OwnViews, ATreeWithoutAnEnumeratorIsWalkedByNumber)
{
    AddCut(L"One", L"Rock", 1);
    Populate();
    ASSERT_EQ(m_cMan->PopulateTreeView(m_cTree.Get()), S_OK);
    m_cTree->m_colNodes->m_sMissing = L"_NewEnum";
    const auto cImages = NewObject<TestNode>();
    EXPECT_EQ(Show(L"Rock\t1", m_cTree.Get(), cImages.Get()), S_OK);
    EXPECT_EQ(m_cTree->Value(0, L"Image"), L"Closed");
    EXPECT_EQ(m_cTree->Value(1, L"Image"), L"Open");
    EXPECT_EQ(m_cTree->Value(2, L"Image"), L"Open");
    m_cTree->m_colNodes->m_colNodes.clear();
}

TEST_F(OwnViews, ErrorsOfAHostsViewAreLoggedAndReturnedWithoutABox)
{
    StartLog();
    AddCut(L"One", L"Rock", 1);
    Populate();
    m_cGrid->m_sFailing = L"CellValue";
    m_cTree->m_colNodes->m_sFailing = L"Add";
    EXPECT_EQ(Show(L"Rock\t1"), ErrorResult(1004));
    EXPECT_EQ(m_cMan->PopulateTreeView(m_cTree.Get()), ErrorResult(1004));
    for (const char* sMember : {"ShowGridCuts", "PopulateTreeView"})
        EXPECT_EQ(LogLinesWith(std::string(sMember) + " [clsSchedMan] 1004 This grid is full"), 1) << Log();
}

} // namespace ravlo
