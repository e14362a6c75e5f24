// SPDX-License-Identifier: MIT
// What a screen reader reads of the library window's tree.
#include "ui/windows/LibraryFixture.h"

#include <oleacc.h>

namespace ravlo::test
{

namespace
{

struct LibraryReader : FilledLibrary
{
    // As the tree view of current Windows numbers its items for readers; not every one does.
    static LRESULT CALLBACK NumberItems(HWND hTree, UINT lMessage, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                        DWORD_PTR pItems)
    {
        if (lMessage != TVM_MAPACCIDTOHTREEITEM)
            return ::DefSubclassProc(hTree, lMessage, wParam, lParam);
        const auto& hItems = *reinterpret_cast<const std::vector<HTREEITEM>*>(pItems);
        return wParam <= hItems.size() ? reinterpret_cast<LRESULT>(hItems[wParam - 1]) : 0;
    }
    // Descriptions of these items as a reader asks for them, on the window's own thread.
    Texts Descriptions(const User& user, const std::vector<HTREEITEM>& hItems)
    {
        Texts colTexts;
        Run(user, [&] {
            constexpr UINT_PTR lId = 99;
            ::SetWindowSubclass(hTree, &LibraryReader::NumberItems, lId,
                                reinterpret_cast<DWORD_PTR>(&hItems));
            void* pObject = nullptr;
            ASSERT_EQ(::AccessibleObjectFromWindow(hTree, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                                                   &pObject),
                      S_OK);
            auto* pTree = static_cast<IAccessible*>(pObject);
            VARIANT child{};
            child.vt = VT_I4;
            BSTR sName = nullptr;
            EXPECT_EQ(pTree->get_accName(child, &sName), S_OK);
            EXPECT_STREQ(sName, L"Categories") << "the rest is the system's";
            ::SysFreeString(sName);
            for (child.lVal = 1; static_cast<std::size_t>(child.lVal) <= hItems.size(); ++child.lVal)
            {
                BSTR sText = nullptr;
                EXPECT_EQ(pTree->get_accDescription(child, &sText), S_OK);
                colTexts.emplace_back(sText ? sText : L"");
                ::SysFreeString(sText);
            }
            pTree->Release();
            ::RemoveWindowSubclass(hTree, &LibraryReader::NumberItems, lId);
        });
        return colTexts;
    }
};

} // namespace

TEST_F(LibraryReader, HearsNumbersOfCutsAndPartlyTickedCategories)
{
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        ClickBox(user, Item(L"Rock", L"2"));
        EXPECT_EQ(Descriptions(user, {Root(), Item(L"Jazz"), Item(L"Rock"), Item(L"Rock", L"2")}),
                  (Texts{L"9 cuts", L"1 cut", L"7 cuts, some levels ticked", L"1 cut"}));
    });
}

} // namespace ravlo::test
