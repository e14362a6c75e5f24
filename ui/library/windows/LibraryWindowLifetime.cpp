// SPDX-License-Identifier: MIT
#include "ui/library/windows/LibraryWindowLifetime.h"

#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/VisualStyles.h"
#include "ui/library/windows/frmUILibWindow.h"

#include <ole2.h>
#include <utility>

namespace ravlo
{

// Initialises drag and drop on this thread. With a host that uses another threading model there is none; the
// keys still work.
class LibraryWindowLifetime::Surroundings
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

struct LibraryWindowLifetime::Made
{
    Made(const std::shared_ptr<clsSchedMan>& cSchedMan, const std::function<bool()>& CategoryShowing)
        : cWindow(::GetActiveWindow(), cSchedMan->Mod(), CategoryShowing)
    {
        Form().SetSchedMan(cSchedMan);
    }
    frmUILibPresenter& Form() noexcept { return cWindow.Form(); }

    Surroundings cSurroundings; // outlives the window
    frmUILibWindow cWindow;
};

LibraryWindowLifetime::LibraryWindowLifetime(std::weak_ptr<clsSchedMan> cSchedMan,
                                             std::function<bool()> CategoryShowing, LibraryDialogs dialogs)
    : m_cSchedMan(std::move(cSchedMan)), m_CategoryShowing(std::move(CategoryShowing)),
      m_dialogs(std::move(dialogs))
{
}
LibraryWindowLifetime::~LibraryWindowLifetime() = default;

bool LibraryWindowLifetime::Showing() const noexcept { return m_cMade && m_cMade->Form().Showing(); }

void LibraryWindowLifetime::Make()
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    if (!cSchedMan)
        return;
    if (m_cMade)
        m_cMade->Form().SetSchedMan(nullptr); // it may live a little longer
    m_cMade.reset();
    m_cMade = std::make_shared<Made>(cSchedMan, m_CategoryShowing);
    m_cMade->Form().Rotation().SetDialogs(m_dialogs);
}

void LibraryWindowLifetime::Reload()
{
    if (!m_cMade)
    {
        const VisualStyles cStyles;
        const DpiAwareness cAwareness;
        Make();
    }
    if (const std::shared_ptr<Made> cMade = m_cMade)
        cMade->Form().ReloadAll();
}

void LibraryWindowLifetime::Refresh()
{
    if (const std::shared_ptr<Made> cMade = m_cMade)
        cMade->Form().RequestRefresh();
}

void LibraryWindowLifetime::GoTo(const std::wstring& sLevelKey, const TextKey& cCutKey)
{
    Show([&](frmUILibPresenter& cForm) { cForm.GoTo(sLevelKey, cCutKey); });
}

void LibraryWindowLifetime::Show(const std::function<void(frmUILibPresenter& cForm)>& prepare)
{
    if (const std::shared_ptr<Made> cMade = Showing() ? m_cMade : nullptr)
    {
        if (prepare)
            prepare(cMade->Form());
        return cMade->Form().ShowModalUI();
    }
    const VisualStyles cStyles;
    const DpiAwareness cAwareness;
    const HWND hFocus = ::GetFocus();
    Make(); // always: a hidden one may belong to another of the host's windows
    if (!m_cMade)
        return;
    if (prepare)
        prepare(m_cMade->Form());
    m_cMade->Form().ShowModalUI();
    m_cMade.reset();
    if (::IsWindow(hFocus))
        ::SetFocus(hFocus);
}

} // namespace ravlo
