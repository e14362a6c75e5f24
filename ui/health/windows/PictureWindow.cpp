// SPDX-License-Identifier: MIT
#include "ui/health/windows/PictureWindow.h"

#include "ui/controls/windows/Colours.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace ravlo
{

namespace
{

constexpr int lPictureMargin = 8; // at 96 dpi, around the picture

// By Picture::Ink from Bar on, on a light and on a dark background.
struct Inks
{
    COLORREF lOnLight;
    COLORREF lOnDark;
};
constexpr std::array<Inks, 8> inks{{
    {RGB(70, 120, 180), RGB(110, 165, 225)}, // Bar
    {RGB(200, 53, 43), RGB(245, 115, 105)},  // Bad
    {RGB(176, 92, 0), RGB(255, 176, 80)},    // Set
    {RGB(30, 120, 66), RGB(95, 205, 135)},   // Attainable
    {RGB(200, 218, 240), RGB(38, 64, 96)},   // Heat1
    {RGB(140, 178, 222), RGB(56, 102, 156)}, // Heat2
    {RGB(70, 120, 180), RGB(92, 152, 216)},  // Heat3
    {RGB(24, 66, 124), RGB(176, 214, 250)},  // Heat4
}};

bool IsDark(COLORREF lColour) noexcept
{
    return GetRValue(lColour) * 30 + GetGValue(lColour) * 59 + GetBValue(lColour) * 11 < 128 * 100;
}

COLORREF ColourOf(Picture::Ink eInk) noexcept
{
    switch (eInk)
    {
    case Picture::Ink::Text:
        return ::GetSysColor(COLOR_WINDOWTEXT);
    case Picture::Ink::Faint:
        return ::GetSysColor(COLOR_GRAYTEXT);
    case Picture::Ink::Chosen:
        return UnfocusedSelection();
    default:
        break;
    }
    const Inks& both = inks.at(static_cast<std::size_t>(eInk) - static_cast<std::size_t>(Picture::Ink::Bar));
    return IsDark(::GetSysColor(COLOR_WINDOW)) ? both.lOnDark : both.lOnLight;
}

void Fill(HDC hDC, const RECT& rect, COLORREF lColour) noexcept
{
    // Faster than a brush for each of thousands of boxes.
    ::SetBkColor(hDC, lColour);
    ::ExtTextOutW(hDC, 0, 0, ETO_OPAQUE, &rect, nullptr, 0, nullptr);
}

// A flat frame like that of the lists around it.
void DrawFrame(HDC hDC, const RECT& client) noexcept
{
    constexpr int lPercent = 35;
    const COLORREF lColour = Mixed(::GetSysColor(COLOR_WINDOWTEXT), ::GetSysColor(COLOR_WINDOW), lPercent);
    Fill(hDC, {0, 0, client.right, 1}, lColour);
    Fill(hDC, {0, client.bottom - 1, client.right, client.bottom}, lColour);
    Fill(hDC, {0, 0, 1, client.bottom}, lColour);
    Fill(hDC, {client.right - 1, 0, client.right, client.bottom}, lColour);
}

// A disc with a smooth edge.
void DrawDot(HDC hDC, const Picture::Dot& dot) noexcept
{
    constexpr int lFine = 4;
    const COLORREF lColour = ColourOf(dot.eInk);
    for (int lY = -dot.lRadius; lY <= dot.lRadius; ++lY)
        for (int lX = -dot.lRadius; lX <= dot.lRadius; ++lX)
        {
            int lInside = 0;
            for (int i = 0; i < lFine * lFine; ++i)
            {
                const double dX = lX - 0.5 + (i % lFine + 0.5) / lFine;
                const double dY = lY - 0.5 + (static_cast<double>(i / lFine) + 0.5) / lFine;
                lInside += std::hypot(dX, dY) <= dot.lRadius ? 1 : 0;
            }
            if (lInside > 0)
                ::SetPixelV(hDC, dot.lX + lX, dot.lY + lY,
                            Mixed(lColour, ::GetPixel(hDC, dot.lX + lX, dot.lY + lY),
                                  lInside * 100 / (lFine * lFine)));
        }
}

void DrawOneText(HDC hDC, const Picture::Text& text) noexcept
{
    ::SetTextColor(hDC, ColourOf(text.eInk));
    ::SetTextAlign(hDC, TA_TOP | (text.eAnchor == Picture::Anchor::Left    ? TA_LEFT
                                  : text.eAnchor == Picture::Anchor::Right ? TA_RIGHT
                                                                           : TA_CENTER));
    ::ExtTextOutW(hDC, text.lAt, text.lTop, 0, nullptr, text.sText.c_str(),
                  static_cast<UINT>(text.sText.size()), nullptr);
}

// A bitmap of a window's size, copied to the window at once at the end, so that nothing flickers.
class Canvas
{
public:
    Canvas(HDC hTarget, const RECT& client) noexcept
        : m_hTarget(hTarget), m_client(client), m_hDC(::CreateCompatibleDC(hTarget)),
          m_hBitmap(::CreateCompatibleBitmap(hTarget, static_cast<int>(client.right),
                                             static_cast<int>(client.bottom))),
          m_hBefore(::SelectObject(m_hDC, m_hBitmap))
    {
    }
    ~Canvas()
    {
        ::BitBlt(m_hTarget, 0, 0, static_cast<int>(m_client.right), static_cast<int>(m_client.bottom), m_hDC,
                 0, 0, SRCCOPY);
        ::SelectObject(m_hDC, m_hBefore);
        ::DeleteObject(m_hBitmap);
        ::DeleteDC(m_hDC);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    HDC Get() const noexcept { return m_hDC; }

private:
    HDC m_hTarget;
    RECT m_client;
    HDC m_hDC;
    HBITMAP m_hBitmap;
    HGDIOBJ m_hBefore;
};

} // namespace

PictureWindow::PictureWindow(HWND hParent, int lId, const std::wstring& sName, Make make,
                             std::function<void()> OnTrouble)
    : Window(L"RavloPicture", COLOR_WINDOW, CS_HREDRAW | CS_VREDRAW), m_make(std::move(make)),
      m_OnTrouble(std::move(OnTrouble))
{
    WindowStart start;
    start.sTitle = sName.c_str();
    start.lStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS;
    start.hParent = hParent;
    start.lId = lId;
    Create(start);
}

PictureWindow::~PictureWindow() { Destroy(); }

void PictureWindow::SetLook(HFONT hFont, int lDpi)
{
    m_hFont = hFont;
    m_lDpi = lDpi;
    Refresh();
}

LRESULT PictureWindow::OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    switch (lMessage)
    {
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_ERASEBKGND:
        return TRUE; // the canvas covers all
    default:
        return Default(lMessage, wParam, lParam);
    }
}

void PictureWindow::OnPaint()
{
    PAINTSTRUCT paint{};
    const HDC hTarget = ::BeginPaint(Handle(), &paint);
    try
    {
        RECT client{};
        ::GetClientRect(Handle(), &client);
        const Canvas canvas(hTarget, client);
        Draw(canvas.Get(), client);
    }
    catch (...)
    {
        ::EndPaint(Handle(), &paint);
        throw;
    }
    ::EndPaint(Handle(), &paint);
}

void PictureWindow::Draw(HDC hDC, const RECT& client) const
{
    Fill(hDC, client, ::GetSysColor(COLOR_WINDOW));
    const HGDIOBJ hBefore = ::SelectObject(hDC, m_hFont);
    TEXTMETRICW metrics{};
    ::GetTextMetricsW(hDC, &metrics);
    const int lEdge = Scaled(lPictureMargin, m_lDpi);
    const PictureRoom room{static_cast<int>(client.right) - 2 * lEdge,
                           static_cast<int>(client.bottom) - 2 * lEdge, static_cast<int>(metrics.tmHeight),
                           static_cast<int>(metrics.tmAveCharWidth), m_lDpi / 96.0};
    const Picture picture = m_make(room);
    ::SetViewportOrgEx(hDC, lEdge, lEdge, nullptr);
    for (const Picture::Box& box : picture.colBoxes)
        Fill(hDC, {box.lLeft, box.lTop, box.lLeft + box.lWidth, box.lTop + box.lHeight}, ColourOf(box.eInk));
    for (const Picture::Dot& dot : picture.colDots)
        DrawDot(hDC, dot);
    ::SetBkMode(hDC, TRANSPARENT);
    for (const Picture::Text& text : picture.colTexts)
        DrawOneText(hDC, text);
    ::SetViewportOrgEx(hDC, 0, 0, nullptr);
    DrawFrame(hDC, client);
    ::SelectObject(hDC, hBefore);
}

} // namespace ravlo
