// SPDX-License-Identifier: MIT
// The commands that open the scheduler's own windows.
#include "base/Text.h"
#include "comkit/Errors.h"
#include "host/client/Categories.h"
#include "host/client/Commands.h"
#include "host/client/CutEditor.h"
#include "host/client/EventListener.h"
#include "host/client/HostFiles.h"
#include "host/client/KeysWindow.h"
#include "host/client/OpeningWindow.h"
#include "host/client/Plays.h"
#include "host/client/ProgressLine.h"
#include "host/client/RotationObject.h"
#include "host/client/WindowActivation.h"
#include "host/client/WindowPicture.h"
#include "host/day/HostError.h"
#include "platform/windows/CentredDialog.h"

namespace ravlo
{

namespace
{

// The scheduler's events that a host with windows answers.
constexpr DISPID lShowHelpEvent = 1;
constexpr DISPID lRequestEditCut = 5;
// RequestEditCut's Result when nothing was changed.
constexpr std::int32_t lCancelled = 2;

// A populated station that answers the windows' events as a playout program does.
class Desk
{
public:
    // bMayBeNew: a station that is missing is made.
    template <class Options>
    Desk(const Options& options, bool bMayBeNew, const Console& cError) : m_cScheduler(m_cLibrary, false)
    {
        (bMayBeNew ? MayBeStation : MustBeStation)(options.sDataBase, options.sAppFolder);
        if (!options.sPicture.empty())
        {
            m_boxes.emplace(cError); // nobody is there to click
            MustBeWritable(FullPath(options.sPicture));
        }
        OpenStation(options, cError);
        m_activation.emplace([this] { m_cLibrary.TakeInChanges(); });
        m_events.emplace(Manager(), DIID___clsSchedMan,
                         [this](DISPID lEvent, const EventArguments& arguments) {
            Answer(lEvent, arguments);
        });
    }

    _clsSchedMan& Manager() const noexcept { return m_cScheduler.Object(); }
    MediaLibrary& Library() noexcept { return m_cLibrary; }
    Scheduler& TheScheduler() noexcept { return m_cScheduler; }

private:
    template <class Options> void OpenStation(const Options& options, const Console& cError)
    {
        std::optional<OpeningWindow> window;
        if (options.sPicture.empty()) // otherwise the picture would be of this window
            window.emplace();
        m_cLibrary.Open(FullPath(options.sDataBase));
        const std::wstring sAppFolder = FullPath(options.sAppFolder);
        cError.Write(MakeStation(options.sAppFolder));
        ProgressLine line(cError, options.bProgress);
        m_cScheduler.Populate(sAppFolder, [&](const std::wstring& sText, long lCount, long lMax) {
            line.Show(sText);
            if (window)
                window->Show(sText, lCount, lMax);
        });
    }

    void Answer(DISPID lEvent, const EventArguments& arguments)
    {
        if (lEvent == lShowHelpEvent)
            ShowKeysAndMouse(::GetActiveWindow());
        else if (lEvent == lRequestEditCut)
        {
            arguments.Expect(2);
            Edit(arguments.At(0), arguments.At(1));
        }
    }

    // Result receives lCancelled when the user cancelled.
    void Edit(const VARIANT& cut, const VARIANT& result)
    {
        const auto cCut = ObjectIn<_clsCut>(cut);
        if (!cCut || result.vt != (VT_BYREF | VT_VARIANT))
            return;
        const HWND hOwner = ::GetActiveWindow();
        bool bEdited = true; // also after an error: the cut may be changed in part
        try
        {
            bEdited = EditCut(hOwner, *cCut, m_cLibrary.Object());
        }
        catch (...)
        {
            const CentredOnOwner centred(hOwner);
            ::MessageBoxW(hOwner, (L"Not everything was saved: " + CurrentErrorText()).c_str(), L"Edit Cut",
                          MB_OK | MB_ICONERROR);
        }
        if (!bEdited)
            StoreThrough(*result.pvarVal, Variant(lCancelled));
    }

    std::optional<Boxes> m_boxes;
    MediaLibrary m_cLibrary;
    Scheduler m_cScheduler;
    std::optional<EventListener> m_events;
    std::optional<WindowActivation> m_activation;
};

void Check(HRESULT hResult, _clsSchedMan& cManager)
{
    ThrowIfFailed(hResult, cManager, __uuidof(_clsSchedMan));
}

void CloseWithOk(HWND hWindow) { ::PostMessageW(hWindow, WM_COMMAND, IDOK, 0); }
void CloseByItsBox(HWND hWindow) { ::PostMessageW(hWindow, WM_CLOSE, 0, 0); }

// The category window's input and result.
struct Choice
{
    ComPtr<_clsCat> cMainCat;
    ComPtr<_clsCat> cSubCat;
    VARIANT_BOOL bOpener = VARIANT_FALSE;
    ComPtr<_clsCollection> colCuts;
    ComPtr<_clsCut> cCut;
    bool bChosen = false;
};

Choice FirstChoice(const CategoryOptions& options, Desk& cDesk)
{
    Choice choice;
    if (options.category)
    {
        const Categories categories(cDesk.Manager());
        choice.cMainCat = categories.Find({options.category->sName, 0});
        if (options.category->lLevel != 0)
            choice.cSubCat = categories.Find(*options.category);
    }
    if (!options.sCut.empty())
    {
        ThrowIfFailed(cDesk.Library().Object().CutByKey(Bstr(options.sCut).Get(), choice.cCut.Receive()));
        if (!choice.cCut)
            throw HostError(options.sCut + L" is no cut of " + options.sDataBase);
    }
    return choice;
}

void Show(const CategoryOptions& options, Desk& cDesk, Choice& choice)
{
    Variant cAnswer;
    _clsCat* pMainCat = choice.cMainCat.Detach();
    _clsCat* pSubCat = choice.cSubCat.Detach();
    const HRESULT hResult = cDesk.Manager().ShowCatUI(
        &pMainCat, &pSubCat, &choice.bOpener, Bstr(options.sCaption).Get(), choice.colCuts.Receive(),
        BoolOf(options.bAllowNew), BoolOf(options.bMultiSelect), choice.cCut.Get(), &cAnswer);
    choice.cMainCat = ComPtr<_clsCat>::Adopt(pMainCat);
    choice.cSubCat = ComPtr<_clsCat>::Adopt(pSubCat);
    Check(hResult, cDesk.Manager());
    const std::optional<Variant> lAnswer = cAnswer.As(VT_I4);
    choice.bChosen = lAnswer && lAnswer->lVal == 1;
}

void Print(const Choice& choice, const Console& cOut)
{
    if (!choice.bChosen)
    {
        cOut.Write(L"Nothing was chosen\n");
        return;
    }
    std::wstring sText = L"Category: " + (choice.cMainCat ? NameOf(*choice.cMainCat) : L"all") + L"\n";
    sText += L"Level: " + (choice.cSubCat ? DecimalText(LevelOf(*choice.cSubCat)) : L"all") + L"\n";
    sText += std::wstring(L"Opener: ") + (choice.bOpener != VARIANT_FALSE ? L"yes" : L"no") + L"\n";
    if (choice.cCut)
    {
        Bstr sCategories;
        ThrowIfFailed(choice.cCut->get_CategoryText(sCategories.Receive()));
        sText += L"The cut is placed in: " + sCategories.Text() + L"\n";
    }
    if (choice.colCuts)
    {
        ForEach(*choice.colCuts, [&](IDispatch& cItem) {
            const auto cCut = PlayedCutOf(*ComPtr<IDispatch>(&cItem).As<_clsCut>());
            sText += L"Cut: " + cCut.sArtist + L" - " + cCut.sTitle + L"\n";
        });
    }
    cOut.Write(sText);
}

} // namespace

void RunCategory(const CategoryOptions& options, const Console& cOut, const Console& cError)
{
    Desk desk(options, true, cError);
    Choice choice = FirstChoice(options, desk);
    const WindowPicture picture(options.sPicture.empty() ? L"" : FullPath(options.sPicture), CloseWithOk);
    Show(options, desk, choice);
    picture.MustBeTaken();
    Print(choice, cOut);
}

void RunLibrary(const LibraryOptions& options, const Console& cError)
{
    Desk desk(options, true, cError);
    const WindowPicture picture(options.sPicture.empty() ? L"" : FullPath(options.sPicture), CloseByItsBox);
    Check(desk.Manager().ShowLibraryUI(), desk.Manager());
    picture.MustBeTaken();
}

void RunHealthWindow(const ForecastOptions& options, const Console& cError)
{
    Desk desk(options, false, cError);
    Gaps gaps;
    const Plays plays(desk.Library().Entries());
    plays.Report(desk.TheScheduler(), gaps);
    RotationObject rotation(desk.TheScheduler());
    _clsRotation& cObject = rotation.Object();
    rotation.Check(options.sClock.empty() ? cObject.LoadSlots(Bstr(FullPath(options.sSlots)).Get())
                                          : cObject.LoadClock(Bstr(FullPath(options.sClock)).Get()));
    const WindowPicture picture(options.sPicture.empty() ? L"" : FullPath(options.sPicture), CloseByItsBox);
    rotation.Check(cObject.ShowHealthUI());
    picture.MustBeTaken();
}

} // namespace ravlo
