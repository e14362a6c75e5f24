// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/Window.h"
#include "ui/health/Picture.h"

#include <functional>
#include <string>
#include <windows.h>

namespace ravlo
{

// Draws a picture that is made for its present size, sharp at every resolution, in colours that suit the
// desktop's background. Takes no focus: the same figures are in a table next to it.
class PictureWindow final : public Window
{
public:
    using Make = std::function<Picture(const PictureRoom& room)>;

    PictureWindow(HWND hParent, int lId, const std::wstring& sName, Make make,
                  std::function<void()> OnTrouble);
    ~PictureWindow() override;

    // The font is not owned.
    void SetLook(HFONT hFont, int lDpi);
    // Draws again, with other figures.
    void Refresh() noexcept { ::InvalidateRect(Handle(), nullptr, FALSE); }

private:
    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override;
    void OnException() noexcept override { m_OnTrouble(); }
    void OnPaint();
    void Draw(HDC hDC, const RECT& client) const;

    Make m_make;
    std::function<void()> m_OnTrouble;
    HFONT m_hFont = nullptr;
    int m_lDpi = 96;
};

} // namespace ravlo
