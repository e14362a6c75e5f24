// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/Window.h"

#include <functional>
#include <windows.h>

namespace ravlo
{

// A part of a window that holds controls and passes their messages on to it.
class PaneWindow final : public Window
{
public:
    PaneWindow(HWND hParent, int lId, std::function<void()> OnSized);
    ~PaneWindow() override { Destroy(); }

private:
    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override;
    void OnException() noexcept override {}

    std::function<void()> m_OnSized;
};

} // namespace ravlo
