// SPDX-License-Identifier: MIT
#include "ui/library/windows/LibraryWindow.h"

#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/VisualStyles.h"
#include "ui/library/windows/frmUILibWindow.h"

#include <ole2.h>

namespace ravlo
{

// Drag and drop on this thread. A host that has chosen another threading has no drag and drop, only the keys.
class LibraryWindow::Surroundings
{
public:
    Surroundings() noexcept : m_bOle(SUCCEEDED(::OleInitialize(nullptr))) {}
    ~Surroundings()
    {
        if (m_bOle)
            ::OleUninitialize();
    }
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

private:
    bool m_bOle;
};

LibraryWindow::LibraryWindow(std::weak_ptr<clsSchedMan> cSchedMan) : m_cSchedMan(std::move(cSchedMan)) {}
LibraryWindow::~LibraryWindow() = default;

bool LibraryWindow::Showing() const noexcept { return m_cWindow && m_cWindow->Form().Showing(); }

void LibraryWindow::Make()
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    if (!cSchedMan)
        return;
    m_cWindow.reset();
    m_cSurroundings = std::make_unique<Surroundings>();
    m_cWindow = std::make_unique<frmUILibWindow>(::GetActiveWindow(), cSchedMan->Mod());
    m_cWindow->Form().SetSchedMan(cSchedMan);
}

void LibraryWindow::Reload()
{
    if (!m_cWindow)
    {
        const VisualStyles cStyles;
        const DpiAwareness cAwareness;
        Make();
    }
    if (m_cWindow)
        m_cWindow->Form().ReloadAll();
}

void LibraryWindow::Refresh()
{
    if (m_cWindow)
        m_cWindow->Form().RequestRefresh();
}

void LibraryWindow::Show()
{
    if (Showing())
        return m_cWindow->Form().ShowModalUI();
    const VisualStyles cStyles;
    const DpiAwareness cAwareness;
    const HWND hFocus = ::GetFocus();
    Make(); // anew: a hidden one may belong to another of the host's windows
    if (!m_cWindow)
        return;
    m_cWindow->Form().ShowModalUI();
    m_cWindow.reset();
    m_cSurroundings.reset();
    if (::IsWindow(hFocus))
        ::SetFocus(hFocus);
}

} // namespace ravlo
