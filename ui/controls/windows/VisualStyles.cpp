// SPDX-License-Identifier: MIT
#include "ui/controls/windows/VisualStyles.h"

#include "ui/controls/windows/Window.h"

#include <commctrl.h>

namespace ravlo
{

namespace
{

HANDLE CreateContext() noexcept
{
    wchar_t sPath[MAX_PATH * 4] = L"";
    if (::GetModuleFileNameW(ThisModule(), sPath, ARRAYSIZE(sPath)) >= ARRAYSIZE(sPath))
        return INVALID_HANDLE_VALUE;
    ACTCTXW context{};
    context.cbSize = sizeof context;
    context.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
    context.lpSource = sPath;
    context.lpResourceName = MAKEINTRESOURCEW(2); // Controls.rc
    context.hModule = ThisModule();
    return ::CreateActCtxW(&context);
}

} // namespace

VisualStyles::VisualStyles() noexcept : m_hContext(CreateContext())
{
    if (m_hContext != INVALID_HANDLE_VALUE)
        m_bActive = ::ActivateActCtx(m_hContext, &m_lCookie) != FALSE;
    INITCOMMONCONTROLSEX controls{};
    controls.dwSize = sizeof controls;
    controls.dwICC = ICC_STANDARD_CLASSES | ICC_TAB_CLASSES | ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES |
                     ICC_BAR_CLASSES | ICC_PROGRESS_CLASS;
    ::InitCommonControlsEx(&controls);
}

VisualStyles::~VisualStyles()
{
    if (m_bActive)
        ::DeactivateActCtx(0, m_lCookie);
    if (m_hContext != INVALID_HANDLE_VALUE)
        ::ReleaseActCtx(m_hContext);
}

} // namespace ravlo
