// SPDX-License-Identifier: MIT
#include "platform/windows/InputBox.h"

#include "platform/windows/CentredDialog.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace ravlo
{

namespace
{

struct InputRequest
{
    HWND hOwner;
    const std::wstring& sTitle;
    const std::wstring& sPrompt;
    std::wstring sText;          // the field's initial text, then the answer
    std::vector<HWND> hDisabled; // windows of the thread that wait for an ownerless dialog
};

// The layout in dialog units; the prompt grows downward from one line and moves the rest.
constexpr short lMargin = 7;
constexpr short lWidth = 240;
constexpr short lLine = 8;
constexpr short lEditHeight = 14;
constexpr short lButtonWidth = 50;
constexpr short lButtonHeight = 14;
constexpr short lEditTop = lMargin + lLine + 4;
constexpr short lButtonTop = lEditTop + lEditHeight + 7;
constexpr short lHeight = lButtonTop + lButtonHeight + lMargin;

// The font in which the user reads messages.
struct DialogFont
{
    std::wstring sName = L"MS Shell Dlg";
    int lPoints = 8;
    int lWeight = FW_NORMAL;
};

DialogFont MessageFont()
{
    DialogFont font;
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (!::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0) ||
        metrics.lfMessageFont.lfHeight >= 0)
        return font;
    const HDC hDC = ::GetDC(nullptr);
    font.lPoints =
        ::MulDiv(static_cast<int>(-metrics.lfMessageFont.lfHeight), 72, ::GetDeviceCaps(hDC, LOGPIXELSY));
    ::ReleaseDC(nullptr, hDC);
    font.sName = metrics.lfMessageFont.lfFaceName;
    font.lWeight = static_cast<int>(metrics.lfMessageFont.lfWeight);
    return font;
}

// Writes a DLGTEMPLATEEX, field by field, into words.
class Template
{
public:
    Template(DWORD lStyle, WORD lItems, short cx, short cy, const DialogFont& font)
    {
        Word(1);
        Word(0xFFFF); // the extended form
        Long(0);
        Long(0);
        Long(lStyle | DS_SETFONT);
        Word(lItems);
        Place(0, 0, cx, cy);
        Word(0); // no menu
        Word(0); // the usual class
        Word(0); // titled later
        Word(static_cast<unsigned>(font.lPoints));
        Word(static_cast<unsigned>(font.lWeight));
        Word(DEFAULT_CHARSET << 8); // not italic
        Text(font.sName);
    }

    void Item(WORD lClass, int lId, DWORD lStyle, short x, short y, short cx, short cy,
              std::wstring_view sText = {})
    {
        if (m_words.size() % 2 != 0)
            Word(0);
        Long(0);
        Long(0);
        Long(lStyle | WS_CHILD | WS_VISIBLE);
        Place(x, y, cx, cy);
        Long(static_cast<DWORD>(lId));
        Word(0xFFFF);
        Word(lClass);
        Text(sText);
        Word(0); // no creation data
    }

    const DLGTEMPLATE* Get() const { return reinterpret_cast<const DLGTEMPLATE*>(m_words.data()); }

private:
    void Word(unsigned lValue) { m_words.push_back(static_cast<WORD>(lValue)); }
    void Long(DWORD lValue)
    {
        Word(lValue & 0xFFFF);
        Word(lValue >> 16);
    }
    void Place(short x, short y, short cx, short cy)
    {
        for (const short lValue : {x, y, cx, cy})
            Word(static_cast<WORD>(lValue));
    }
    void Text(std::wstring_view sText)
    {
        m_words.insert(m_words.end(), sText.begin(), sText.end());
        Word(0);
    }

    std::vector<WORD> m_words; // what new gives is aligned to DWORDs, as the template must be
};

constexpr WORD lButtonClass = 0x80;
constexpr WORD lEditClass = 0x81;
constexpr WORD lStaticClass = 0x82;

Template InputTemplate()
{
    Template cTemplate(DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU, 4, lWidth, lHeight, MessageFont());
    constexpr short lInner = lWidth - 2 * lMargin;
    constexpr short lCancelLeft = lWidth - lMargin - lButtonWidth;
    // The prompt comes right before the field, which makes it the field's name for screen readers.
    cTemplate.Item(lStaticClass, lInputBoxPrompt, SS_NOPREFIX, lMargin, lMargin, lInner, lLine);
    cTemplate.Item(lEditClass, lInputBoxEdit, ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, lMargin, lEditTop,
                   lInner, lEditHeight);
    cTemplate.Item(lButtonClass, IDOK, BS_DEFPUSHBUTTON | WS_TABSTOP, lCancelLeft - 4 - lButtonWidth,
                   lButtonTop, lButtonWidth, lButtonHeight, L"OK");
    cTemplate.Item(lButtonClass, IDCANCEL, BS_PUSHBUTTON | WS_TABSTOP, lCancelLeft, lButtonTop, lButtonWidth,
                   lButtonHeight, L"Cancel");
    return cTemplate;
}

RECT PlaceInDialog(HWND hDialog, int lId)
{
    RECT place{};
    ::GetWindowRect(::GetDlgItem(hDialog, lId), &place);
    ::MapWindowPoints(nullptr, hDialog, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

int PromptHeight(HWND hDialog, const std::wstring& sPrompt, int lPromptWidth)
{
    const HWND hPrompt = ::GetDlgItem(hDialog, lInputBoxPrompt);
    const HDC hDC = ::GetDC(hPrompt);
    const auto hFont = reinterpret_cast<HGDIOBJ>(::SendMessageW(hPrompt, WM_GETFONT, 0, 0));
    const HGDIOBJ hOldFont = ::SelectObject(hDC, hFont);
    RECT needed{0, 0, lPromptWidth, 0};
    ::DrawTextW(hDC, sPrompt.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS);
    ::SelectObject(hDC, hOldFont);
    ::ReleaseDC(hPrompt, hDC);
    return static_cast<int>(needed.bottom);
}

// Makes the prompt as high as it needs to be and moves everything below it.
void FitToPrompt(HWND hDialog, const std::wstring& sPrompt)
{
    const RECT prompt = PlaceInDialog(hDialog, lInputBoxPrompt);
    const int lPromptWidth = static_cast<int>(prompt.right - prompt.left);
    const int lPromptHeight = static_cast<int>(prompt.bottom - prompt.top);
    const int lGrow = std::max(0, PromptHeight(hDialog, sPrompt, lPromptWidth) - lPromptHeight);
    constexpr UINT lFlags = SWP_NOZORDER | SWP_NOACTIVATE;
    ::SetWindowPos(::GetDlgItem(hDialog, lInputBoxPrompt), nullptr, 0, 0, lPromptWidth, lPromptHeight + lGrow,
                   lFlags | SWP_NOMOVE);
    for (const int lId : {lInputBoxEdit, IDOK, IDCANCEL})
    {
        const RECT place = PlaceInDialog(hDialog, lId);
        ::SetWindowPos(::GetDlgItem(hDialog, lId), nullptr, static_cast<int>(place.left),
                       static_cast<int>(place.top) + lGrow, 0, 0, lFlags | SWP_NOSIZE);
    }
    RECT window{};
    ::GetWindowRect(hDialog, &window);
    ::SetWindowPos(hDialog, nullptr, 0, 0, static_cast<int>(window.right - window.left),
                   static_cast<int>(window.bottom - window.top) + lGrow, lFlags | SWP_NOMOVE);
}

std::wstring TextOf(HWND hWindow)
{
    std::wstring sText(static_cast<std::size_t>(::GetWindowTextLengthW(hWindow)) + 1, L'\0');
    sText.resize(
        static_cast<std::size_t>(::GetWindowTextW(hWindow, sText.data(), static_cast<int>(sText.size()))));
    return sText;
}

BOOL CALLBACK DisableVisible(HWND hWindow, LPARAM lParam)
{
    auto& request = *reinterpret_cast<InputRequest*>(lParam);
    if (::IsWindowVisible(hWindow) && ::IsWindowEnabled(hWindow))
    {
        request.hDisabled.push_back(hWindow);
        ::EnableWindow(hWindow, FALSE);
    }
    return TRUE;
}

INT_PTR OnInit(HWND hDialog, const InputRequest& request)
{
    ::SetWindowTextW(hDialog, request.sTitle.c_str());
    ::SetDlgItemTextW(hDialog, lInputBoxPrompt, request.sPrompt.c_str());
    FitToPrompt(hDialog, request.sPrompt);
    CentreDialog(hDialog, request.hOwner);
    const HWND hEdit = ::GetDlgItem(hDialog, lInputBoxEdit);
    ::SetWindowTextW(hEdit, request.sText.c_str());
    ::SendMessageW(hEdit, EM_SETSEL, 0, -1); // typing replaces it
    ::SetFocus(hEdit);
    return FALSE; // the focus is set
}

INT_PTR CALLBACK InputProc(HWND hDialog, UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    if (lMessage == WM_INITDIALOG)
    {
        ::SetWindowLongPtrW(hDialog, DWLP_USER, lParam);
        return OnInit(hDialog, *reinterpret_cast<const InputRequest*>(lParam));
    }
    if (lMessage != WM_COMMAND || (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL))
        return FALSE;
    auto& request = *reinterpret_cast<InputRequest*>(::GetWindowLongPtrW(hDialog, DWLP_USER));
    if (LOWORD(wParam) == IDOK)
        request.sText = TextOf(::GetDlgItem(hDialog, lInputBoxEdit));
    // Enabled before the dialog ends: otherwise another program's window would come to the front.
    for (const HWND hWindow : request.hDisabled)
        ::EnableWindow(hWindow, TRUE);
    ::EndDialog(hDialog, LOWORD(wParam));
    return TRUE;
}

} // namespace

std::optional<std::wstring> ShowInputBox(HWND hOwner, const std::wstring& sTitle, const std::wstring& sPrompt,
                                         const std::wstring& sText)
{
    InputRequest request{hOwner, sTitle, sPrompt, sText, {}};
    if (!hOwner)
        ::EnumThreadWindows(::GetCurrentThreadId(), DisableVisible, reinterpret_cast<LPARAM>(&request));
    const Template cTemplate = InputTemplate();
    const INT_PTR lResult = ::DialogBoxIndirectParamW(::GetModuleHandleW(nullptr), cTemplate.Get(), hOwner,
                                                      InputProc, reinterpret_cast<LPARAM>(&request));
    // Again, in case the dialog could not be shown or ended in another way.
    for (const HWND hWindow : request.hDisabled)
        ::EnableWindow(hWindow, TRUE);
    if (lResult != IDOK)
        return std::nullopt;
    return request.sText;
}

} // namespace ravlo
