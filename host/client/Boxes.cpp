// SPDX-License-Identifier: MIT
#include "host/client/Boxes.h"

#include "platform/windows/WindowContent.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace ravlo
{

namespace
{

std::wstring ClassOf(HWND hWindow)
{
    wchar_t sClass[64] = {};
    return {sClass, static_cast<std::size_t>(GetClassNameW(hWindow, sClass, std::size(sClass)))};
}

// A dialog's text: that of its labels.
std::wstring LabelsOf(HWND hBox)
{
    std::wstring sText;
    for (HWND hChild = GetWindow(hBox, GW_CHILD); hChild; hChild = GetWindow(hChild, GW_HWNDNEXT))
    {
        if (ClassOf(hChild) == L"Static")
        {
            const std::wstring sLabel = TextIn(hChild);
            sText += (sText.empty() || sLabel.empty() ? L"" : L" ") + sLabel;
        }
    }
    return sText;
}

std::wstring OnOneLine(std::wstring sText)
{
    std::replace(sText.begin(), sText.end(), L'\r', L' ');
    std::replace(sText.begin(), sText.end(), L'\n', L' ');
    const auto end = std::unique(sText.begin(), sText.end(),
                                 [](wchar_t left, wchar_t right) { return left == L' ' && right == L' '; });
    sText.erase(end, sText.end());
    return sText;
}

WPARAM CautiousAnswer(HWND hBox)
{
    for (const int lButton : {IDNO, IDCANCEL})
        if (GetDlgItem(hBox, lButton))
            return static_cast<WPARAM>(lButton);
    return IDOK;
}

} // namespace

Boxes* Boxes::m_pOnly = nullptr;

Boxes::Boxes(const Console& cError)
    : m_cError(cError),
      m_hHook(SetWindowsHookExW(WH_CALLWNDPROCRET, OnMessage, nullptr, GetCurrentThreadId()))
{
    m_pOnly = this;
}

Boxes::~Boxes()
{
    m_pOnly = nullptr;
    UnhookWindowsHookEx(m_hHook);
}

LRESULT CALLBACK Boxes::OnMessage(int lCode, WPARAM wParam, LPARAM lParam) noexcept
{
    const auto& message = *reinterpret_cast<const CWPRETSTRUCT*>(lParam);
    // The system's dialog class; after WM_INITDIALOG its texts and buttons exist.
    if (lCode == HC_ACTION && m_pOnly && message.message == WM_INITDIALOG &&
        ClassOf(message.hwnd) == L"#32770")
        m_pOnly->Answer(message.hwnd);
    return CallNextHookEx(nullptr, lCode, wParam, lParam);
}

void Boxes::Answer(HWND hBox)
{
    ++m_count;
    m_cError.Write(std::wstring(m_cError.IsWindow() ? L"\r" : L"") + L"RavloHost: the scheduler says: " +
                   OnOneLine(TextIn(hBox) + L": " + LabelsOf(hBox)) + L"\n");
    PostMessageW(hBox, WM_COMMAND, CautiousAnswer(hBox), 0);
}

} // namespace ravlo
