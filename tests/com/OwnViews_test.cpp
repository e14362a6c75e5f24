// SPDX-License-Identifier: MIT
// Trees and grids of a host, whose members the scheduler calls by name.
#include "com/Station.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace ravlo
{
namespace
{

// An automation object without type information: its members have names only.
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

    std::wstring m_sFailing;                                   // a member that fails with an error
    std::wstring m_sMissing;                                   // a member the object does not have
    std::function<void(const std::wstring& sMember)> m_OnCall; // runs in every call

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

// A tree that is its own list of nodes.
class TestTree final : public NamedObject
{
public:
    std::vector<ComPtr<TestNode>> m_colNodes;

    std::wstring Value(std::size_t node, const wchar_t* sName)
    {
        return TextIn(m_colNodes.at(node)->m_colValues[sName]);
    }

private:
    Variant Member(const std::wstring& sName, bool, const std::vector<Variant>& arguments) override
    {
        if (sName == L"Nodes")
            return Object(ComPtr<TestTree>(this));
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
        EXPECT_TRUE(m_colNodes.empty() || arguments[1].lVal == 4); // a child
        auto& colValues = cNode->m_colValues;
        colValues = {{L"Relative", m_colNodes.empty() ? Text(L"none") : arguments[0]},
                     {L"Key", arguments.at(2)},
                     {L"Text", arguments.at(3)},
                     {L"Image", arguments.at(4)}};
        for (const auto& cParent : m_colNodes)
            if (TextIn(cParent->m_colValues[L"Key"]) == TextIn(colValues[L"Relative"]))
                colValues[L"Parent"] = Object(cParent);
        m_colNodes.push_back(cNode);
        return Object(cNode);
    }
};

// Records the calls of its members.
class TestGrid final : public NamedObject
{
public:
    std::vector<std::wstring> m_colDone;
    long m_lColumns = 0;

private:
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

    // The view deletes the first category each time the member is called.
    void DeleteFirstCategoryIn(NamedObject& cView, const wchar_t* sInMember)
    {
        cView.m_OnCall = [this, sInMember](const std::wstring& sMember) {
            const auto colMainCats = Get(m_cMan, &_clsSchedMan::get_colMainCats);
            if (sMember != sInMember || Get(colMainCats, &_clsCollection::get_Count) == 0)
                return;
            const auto cFirst = ItemAt<_clsCat>(colMainCats, Long(1));
            EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::DeleteCats, CollectionOf(cFirst)));
        };
    }
    void PopulateTree() { EXPECT_EQ(m_cMan->PopulateTreeView(m_cTree.Get()), S_OK); }
    void PopulateWith(std::initializer_list<const wchar_t*> colTitles)
    {
        for (const wchar_t* sTitle : colTitles)
            AddCut(sTitle);
        Populate();
    }
    // The images of the tree's nodes while the grid shows a level.
    Texts ImagesFor(const wchar_t* sKey, IDispatch* cImages)
    {
        EXPECT_EQ(Show(sKey, m_cTree.Get(), cImages), S_OK);
        Texts colImages;
        for (std::size_t node = 0; node < m_cTree->m_colNodes.size(); ++node)
            colImages.push_back(m_cTree->Value(node, L"Image"));
        return colImages;
    }
    ~OwnViews() override { m_cTree->m_colNodes.clear(); } // parents and children hold each other

    ComPtr<TestTree> m_cTree = NewObject<TestTree>();
    ComPtr<TestGrid> m_cGrid = NewObject<TestGrid>();
    VARIANT_BOOL m_bAll = VARIANT_FALSE;
    VARIANT_BOOL m_bSeveral = VARIANT_FALSE;
    ComPtr<_clsCat> m_cShown;
    std::wstring m_sKey;
};

TEST_F(OwnViews, ATreeIsFilledNodeByNodeAndShowsWhatTheGridLists)
{
    AddCut(L"One", L"Rock", 2);
    Populate();
    PopulateTree();
    ASSERT_EQ(m_cTree->m_colNodes.size(), 3u);
    EXPECT_EQ(m_cTree->Value(0, L"Key"), L"ALL AUDIO\t0");
    EXPECT_EQ(m_cTree->Value(1, L"Relative"), L"ALL AUDIO\t0");
    EXPECT_EQ(m_cTree->Value(1, L"Text"), L"Rock");
    EXPECT_EQ(m_cTree->Value(2, L"Key"), L"Rock\t2");
    EXPECT_EQ(m_cTree->Value(2, L"Text"), L"2");
    for (const auto& [node, sName] : {std::pair(0u, L"Sorted"), {1u, L"Sorted"}, {0u, L"Expanded"}})
        EXPECT_EQ(m_cTree->m_colNodes[node]->m_colValues[sName].boolVal, VARIANT_TRUE) << node;

    const Texts colPathOpen{L"Closed", L"Open", L"Open"};
    const auto cImages = NewObject<TestNode>();
    EXPECT_EQ(ImagesFor(L"ROCK\t2", cImages.Get()), colPathOpen);
    EXPECT_EQ(m_sKey, L"ROCK\t2");
    EXPECT_EQ(ImagesFor(L"ALL AUDIO\t0", nullptr), colPathOpen) << "without images the tree is left alone";

    PopulateTree();
    m_cTree->m_sMissing = L"_NewEnum"; // such a tree is walked by number
    EXPECT_EQ(ImagesFor(L"Rock\t2", cImages.Get()), colPathOpen);
}

TEST_F(OwnViews, AGridReceivesColumnsOnceAndEachCutCellByCell)
{
    PopulateWith({L"One"});
    EXPECT_EQ(Show(L"Rock\t1"), S_OK);
    EXPECT_EQ(m_cShown ? Get(m_cShown, &_clsCat::get_CatLevel) : 0, 1);
    EXPECT_EQ(m_bAll, VARIANT_FALSE);
    EXPECT_EQ(m_bSeveral, VARIANT_FALSE);
    Texts colDone = m_cGrid->m_colDone;
    ASSERT_FALSE(colDone.empty());
    EXPECT_EQ(colDone.back(), L"Redraw -1");
    std::erase_if(colDone, [](const std::wstring& sDone) { return sDone.starts_with(L"Redraw"); });
    Texts colExpected{L"RowCount 0"};
    for (const wchar_t* sColumn :
         {L"Pos Pos", L"ID ID", L"Artist Artist", L"Title Title", L"Dur Dur", L"Cat Categories", L"Lvl Lvl",
          L"Year Year", L"Opener Opener", L"Path Path"})
        colExpected.push_back(std::wstring(L"AddCol ") + sColumn);
    colExpected.push_back(L"RowCount 1");
    colExpected.push_back(L"RowKey 1 C:\\One.mp3");
    for (const wchar_t* sCell : {L"Pos 1", L"ID 1", L"Artist Artist of One", L"Title One", L"Dur 0:00",
                                 L"Cat Rock", L"Lvl 1", L"Year 0", L"Opener N", L"Path C:\\One.mp3"})
        colExpected.push_back(std::wstring(L"CellValue 1 ") + sCell);
    EXPECT_EQ(colDone, colExpected);

    m_cGrid->m_colDone.clear();
    EXPECT_EQ(Show(L"Rock\t0"), S_OK);
    EXPECT_EQ(m_bSeveral, VARIANT_TRUE);
    EXPECT_EQ(std::count(m_cGrid->m_colDone.begin(), m_cGrid->m_colDone.end(), L"AddCol Pos Pos"), 0);
}

TEST_F(OwnViews, ErrorsOfAHostsViewAreLoggedAndReturnedWithoutABox)
{
    StartLog();
    PopulateWith({L"One"});
    m_cGrid->m_sFailing = L"CellValue";
    EXPECT_EQ(Show(L"Rock\t1"), ErrorResult(1004));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"This grid is full");
    EXPECT_EQ(m_cGrid->m_colDone.back(), L"Redraw -1") << "it is drawn again";
    m_cTree->m_sFailing = L"Add";
    EXPECT_EQ(m_cMan->PopulateTreeView(m_cTree.Get()), ErrorResult(1004));
    for (const char* sMember : {"ShowGridCuts", "PopulateTreeView"})
        EXPECT_EQ(LogLinesWith(std::string(sMember) + " [clsSchedMan] 1004 This grid is full"), 1) << Log();
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
        AddCut(sName, sName);
    Populate();
    DeleteFirstCategoryIn(*m_cTree.Get(), L"Add");
    PopulateTree();
    m_cTree->m_OnCall = nullptr;
    ASSERT_EQ(m_cTree->m_colNodes.size(), 7u) << "as it was at the call";
    EXPECT_EQ(m_cTree->Value(6, L"Key"), L"Pop\t1");
    PopulateTree();
    EXPECT_EQ(m_cTree->m_colNodes.size(), 1u);
}

TEST_F(OwnViews, AGridMayDeleteCategoriesWhileItIsFilled)
{
    PopulateWith({L"One", L"Two", L"Three"});
    DeleteFirstCategoryIn(*m_cGrid.Get(), L"RowKey");
    EXPECT_EQ(Show(L"Rock\t0"), S_OK);
    m_cGrid->m_OnCall = nullptr;
    const Texts& colDone = m_cGrid->m_colDone;
    EXPECT_EQ(std::count(colDone.begin(), colDone.end(), L"RowKey 3 C:\\Three.mp3"), 1);
    EXPECT_EQ(colDone.back(), L"Redraw -1");
}

} // namespace
} // namespace ravlo
