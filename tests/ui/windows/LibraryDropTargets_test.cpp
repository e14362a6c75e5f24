// SPDX-License-Identifier: MIT
// The library window's tree and grid as targets of a drag: what they show of it, and how it ends.
#include "ui/library/windows/DragAndDrop.h"
#include "ui/windows/LibraryFixture.h"

#include <ole2.h>

namespace ravlo::test
{

using LibraryDropTargets = FilledLibrary;

// ---- the marked node ----

TEST_F(LibraryDropTargets, TheTargetStaysMarkedWhileTheDropAsks)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 0);
        DropOnNode(user, 0, Item(L"Rock"));
        EXPECT_EQ(PopUpItems(user)[1], L"Drop Into Rock Level 1");
        EXPECT_EQ(Marked(), Item(L"Rock"));
        Choose(user, 2); // level 2
        EXPECT_EQ(PopUpItems(user)[0], L"Copy Into Rock 2");
        EXPECT_EQ(Marked(), Item(L"Rock"));
        const auto expectRefusal = [&](const wchar_t* sTitle, HTREEITEM hMarked, const wchar_t* sShot) {
            EXPECT_EQ(user.Box().sTitle, sTitle);
            ShotWithBoxes(user, sShot);
            EXPECT_EQ(Marked(), hMarked);
            user.Answer(IDOK);
            user.Idle();
            EXPECT_EQ(Marked(), nullptr);
        };
        Choose(user, 0);
        expectRefusal(L"Multiple Category Levels Not Allowed!", Item(L"Rock"),
                      L"library-box-multiple-levels");
        EXPECT_EQ(Order(L"Rock", 2), (Texts{L"Slowdive"}));
        DropOnNode(user, 0, Root());
        expectRefusal(L"Invalid Drop!", Root(), L"library-box-invalid-drop");
    });
}

TEST_F(LibraryDropTargets, NoNodeStaysMarkedAfterADragThatLeaves)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 0);
        DragOverNode(user, 0, Item(L"Rock", L"2"));
        user.MoveTo(hGrid, RowAt(4));
        user.Until([&] { return Marked() == nullptr; }, "the mark to go");
        GiveUpDrag(user);
    });
}

// ---- scrolling ----

TEST_F(LibraryWindowTest, TheListScrollsWhileADragRestsAtItsEdges)
{
    for (int i = 0; i < 90; ++i)
        Add(L"C:\\Music\\" + std::to_wstring(i) + L".wav", L"Rock", 1, L"Artist " + std::to_wstring(i));
    OpenOnRock([&](const User& user) {
        const RECT client = ClientOf(hGrid);
        const LONG x = RowAt(0).x;
        ClickRow(user, 0);
        DragOver(user, 0, hGrid, {x, client.bottom - 6});
        user.Until([&] { return TopRow() >= 8; }, "the list to scroll down");
        // At the upper edge of the rows, below the header.
        const POINT top = RowAt(TopRow());
        const int lDown = TopRow();
        user.Until(
            [&] {
            user.MoveTo(hGrid, {x, top.y});
            return TopRow() < lDown;
            },
            "the list to scroll up");
        // In the middle it does not scroll: the drop is in front of the row that is there now.
        const POINT middle{x, client.bottom / 2};
        user.MoveTo(hGrid, middle);
        user.MoveTo(hGrid, {middle.x + 3, middle.y});
        LVHITTESTINFO hit{};
        hit.pt = middle;
        const auto lRow = static_cast<int>(Send(hGrid, LVM_HITTEST, 0, &hit));
        ASSERT_GT(lRow, 1);
        user.Release();
        EXPECT_EQ(Order(L"Rock", 1)[static_cast<std::size_t>(lRow) - 1], L"Artist 0");
    });
}

// ---- a destroyed owner ----

namespace
{

// Records whether a window still takes drops when it is destroyed.
struct AtItsEnd
{
    explicit AtItsEnd(HWND hWindow)
    {
        ::SetWindowSubclass(hWindow, &OnMessage, 1, reinterpret_cast<DWORD_PTR>(this));
    }

    bool bDestroyed = false;
    HRESULT hRevoked = S_OK;

private:
    static LRESULT CALLBACK OnMessage(HWND hWindow, UINT lMessage, WPARAM wParam, LPARAM lParam, UINT_PTR lId,
                                      DWORD_PTR pEnd)
    {
        if (lMessage == WM_DESTROY)
        {
            auto& end = *reinterpret_cast<AtItsEnd*>(pEnd);
            end.bDestroyed = true;
            end.hRevoked = ::RevokeDragDrop(hWindow);
            ::RemoveWindowSubclass(hWindow, &OnMessage, lId);
        }
        return ::DefSubclassProc(hWindow, lMessage, wParam, lParam);
    }
};

} // namespace

TEST_F(LibraryDropTargets, NothingTakesDropsWhenTheOwnerIsDestroyed)
{
    cState.Populate();
    std::optional<AtItsEnd> tree;
    std::optional<AtItsEnd> grid;
    OpenAgain([&](const User& user) {
        cHost.Run(user, [&] {
            tree.emplace(hTree);
            grid.emplace(hGrid);
            ::DestroyWindow(cHost.Handle());
        });
        user.WaitUntilGone(hWindow);
    });
    for (const std::optional<AtItsEnd>& end : {tree, grid})
    {
        EXPECT_TRUE(end->bDestroyed);
        EXPECT_EQ(end->hRevoked, DRAGDROP_E_NOTREGISTERED);
    }
}

TEST_F(LibraryDropTargets, AnOwnerMayBeDestroyedWhileRowsAreDraggedOverTheTree)
{
    cState.Populate();
    OpenAgain([&](const User& user) {
        ClickRow(user, 0);
        DragOverNode(user, 0, Item(L"Jazz"));
        cHost.Run(user, [&] { ::DestroyWindow(cHost.Handle()); });
        user.WaitUntilGone(hWindow);
        user.Release();
    });
    EXPECT_FALSE(cState.cSchedMan->UIShowing());
    EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella"}));
    EXPECT_NE(StoredLayout(), L"") << "its columns are remembered";
    // The next window takes drops.
    const HostWindow cSecondHost;
    OpenAgain([&](const User& user) {
        ClickRow(user, 0);
        DropOnNode(user, 0, Item(L"Jazz"));
        EXPECT_EQ(PopUpItems(user).size(), 2u);
        user.Key(VK_ESCAPE);
    });
}

// ---- failures ----

namespace
{

// Fails in one of its operations.
class FailingSite final : public DropSite
{
public:
    bool DragOver(POINT, const std::wstring&) override { return Do("over"), true; }
    void DragLeft() override { Do("left"); }
    void Dropped(POINT, const std::wstring&) override { Do("dropped"); }
    void OnException() noexcept override { ++lExceptions; }

    std::string sFailing;
    int lExceptions = 0;
    int lDropped = 0;

private:
    void Do(const std::string& sWhat)
    {
        if (sWhat == sFailing)
            throw std::runtime_error(sWhat);
        lDropped += sWhat == "dropped" ? 1 : 0;
    }
};

// A text as another program offers it.
class OfferedText
{
public:
    OfferedText()
    {
        const wchar_t sText[] = L"text";
        const HGLOBAL hText = ::GlobalAlloc(GMEM_MOVEABLE, sizeof sText);
        std::memcpy(::GlobalLock(hText), sText, sizeof sText);
        ::GlobalUnlock(hText);
        ::OpenClipboard(nullptr);
        ::EmptyClipboard();
        ::SetClipboardData(CF_UNICODETEXT, hText);
        ::CloseClipboard();
        ::OleGetClipboard(&pData);
    }
    ~OfferedText()
    {
        if (pData)
            pData->Release();
    }
    OfferedText(const OfferedText&) = delete;
    OfferedText& operator=(const OfferedText&) = delete;

    IDataObject* pData = nullptr;
};

} // namespace

TEST(DropTarget, NoExceptionLeavesADropTarget)
{
    ASSERT_GE(::OleInitialize(nullptr), 0);
    {
        const HostWindow cWindow;
        FailingSite cSite;
        const DropRegistration cRegistration(cWindow.Handle(), cSite);
        // Where the system keeps a window's target for drags of its own process.
        auto* const pTarget =
            static_cast<IDropTarget*>(::GetPropW(cWindow.Handle(), L"OleDropTargetInterface"));
        ASSERT_NE(pTarget, nullptr);
        const OfferedText text;
        ASSERT_NE(text.pData, nullptr);
        struct Case
        {
            const char* sFailing;
            HRESULT hEnter, hOver, hLeave, hDrop;
        };
        for (const Case& test :
             {Case{"", S_OK, S_OK, S_OK, S_OK}, Case{"over", E_UNEXPECTED, E_UNEXPECTED, S_OK, S_OK},
              Case{"left", S_OK, S_OK, E_UNEXPECTED, E_UNEXPECTED},
              Case{"dropped", S_OK, S_OK, S_OK, E_UNEXPECTED}, Case{"", S_OK, S_OK, S_OK, S_OK}})
        {
            SCOPED_TRACE(test.sFailing);
            cSite.sFailing = test.sFailing;
            cSite.lExceptions = cSite.lDropped = 0;
            const auto bRefused = [](HRESULT hResult, DWORD lEffect) {
                return SUCCEEDED(hResult) || lEffect == DROPEFFECT_NONE;
            };
            const DWORD lOffered = DROPEFFECT_COPY | DROPEFFECT_MOVE;
            DWORD lEffect = lOffered;
            EXPECT_EQ(pTarget->DragEnter(text.pData, MK_LBUTTON, {1, 1}, &lEffect), test.hEnter);
            EXPECT_TRUE(bRefused(test.hEnter, lEffect));
            lEffect = lOffered;
            EXPECT_EQ(pTarget->DragOver(MK_LBUTTON, {2, 2}, &lEffect), test.hOver);
            EXPECT_TRUE(bRefused(test.hOver, lEffect));
            EXPECT_EQ(pTarget->DragLeave(), test.hLeave);
            lEffect = lOffered;
            pTarget->DragEnter(text.pData, MK_LBUTTON, {1, 1}, &lEffect);
            lEffect = lOffered;
            EXPECT_EQ(pTarget->Drop(text.pData, 0, {2, 2}, &lEffect), test.hDrop);
            EXPECT_EQ(lEffect & DROPEFFECT_MOVE, 0u) << "the source deletes nothing";
            EXPECT_TRUE(bRefused(test.hDrop, lEffect));
            EXPECT_EQ(cSite.lExceptions > 0, *test.sFailing != '\0');
            EXPECT_EQ(cSite.lDropped, *test.sFailing == '\0' ? 1 : 0);
        }
    }
    ::OleUninitialize();
}

} // namespace ravlo::test
