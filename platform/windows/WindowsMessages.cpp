// SPDX-License-Identifier: MIT
#include "platform/windows/WindowsPorts.h"

#include "platform/windows/CentredDialog.h"
#include "platform/windows/InputBox.h"

#include <windows.h>

namespace ravlo
{

namespace
{

UINT StyleOf(BoxButtons eButtons)
{
    switch (eButtons)
    {
    case BoxButtons::YesNo:
        return MB_YESNO;
    case BoxButtons::YesNoDefaultNo:
        return MB_YESNO | MB_DEFBUTTON2;
    case BoxButtons::Ok:
        break;
    }
    return MB_OK;
}

UINT StyleOf(BoxIcon eIcon)
{
    switch (eIcon)
    {
    case BoxIcon::Critical:
        return MB_ICONERROR;
    case BoxIcon::Question:
        return MB_ICONQUESTION;
    case BoxIcon::Exclamation:
        return MB_ICONWARNING;
    case BoxIcon::Information:
        return MB_ICONINFORMATION;
    case BoxIcon::None:
        break;
    }
    return 0;
}

// 0 and -1 mean that no box could be shown. A box that another program closed may return any id, so only the
// ids of its own buttons count.
BoxAnswer AnswerOf(int lResult, BoxButtons eButtons)
{
    if (eButtons == BoxButtons::Ok)
        return lResult == IDOK ? BoxAnswer::Ok : BoxAnswer::None;
    if (lResult == IDYES)
        return BoxAnswer::Yes;
    return lResult == IDNO ? BoxAnswer::No : BoxAnswer::None;
}

} // namespace

BoxAnswer WindowsMessages::Box(BoxIcon eIcon, BoxButtons eButtons, const std::wstring& sTitle,
                               const std::wstring& sText)
{
    const HWND hOwner = ::GetActiveWindow();
    const UINT lModality = hOwner ? MB_APPLMODAL : MB_TASKMODAL;
    const CentredOnOwner cCentred(hOwner);
    const int lResult =
        ::MessageBoxW(hOwner, sText.c_str(), sTitle.c_str(), StyleOf(eIcon) | StyleOf(eButtons) | lModality);
    return AnswerOf(lResult, eButtons);
}

std::optional<std::wstring> WindowsMessages::Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                                   const std::wstring& sText)
{
    return ShowInputBox(::GetActiveWindow(), sTitle, sPrompt, sText);
}

} // namespace ravlo
