// SPDX-License-Identifier: MIT
#include "ui/category/windows/ShowCategory.h"

#include "ui/category/windows/frmCatWindow.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/VisualStyles.h"

#include <windows.h>

namespace ravlo
{

namespace
{

// Gives the focus back at the end.
class FocusKept
{
public:
    FocusKept() noexcept : m_hBefore(::GetFocus()) {}
    ~FocusKept()
    {
        if (::IsWindow(m_hBefore))
            ::SetFocus(m_hBefore);
    }
    FocusKept(const FocusKept&) = delete;
    FocusKept& operator=(const FocusKept&) = delete;

private:
    HWND m_hBefore;
};

} // namespace

std::int32_t ShowCategoryWindow(const std::shared_ptr<clsSchedMan>& cSchedMan, CategoryRequest& request)
{
    const VisualStyles cStyles;
    const DpiAwareness cAwareness;
    const FocusKept cFocus;
    frmCatWindow cWindow(::GetActiveWindow(), cSchedMan->Mod());
    return cWindow.Presenter().ShowUI(cSchedMan, request);
}

} // namespace ravlo
