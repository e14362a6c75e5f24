// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <windows.h>

#include <oleidl.h>

namespace ravlo
{

// Where text can be dropped. Points are on the screen.
class DropSite
{
public:
    virtual ~DropSite() = default;
    // Whether a drop would be taken at that point; shows where.
    virtual bool DragOver(POINT point, const std::wstring& sText) = 0;
    virtual void DragLeft() = 0;
    virtual void Dropped(POINT point, const std::wstring& sText) = 0;
    // Called inside a catch block when one of these has thrown.
    virtual void OnException() noexcept = 0;
};

// Makes a window a drop target while it lives. The site must outlive it.
class DropRegistration
{
public:
    DropRegistration(HWND hWindow, DropSite& cSite);
    ~DropRegistration();
    DropRegistration(const DropRegistration&) = delete;
    DropRegistration& operator=(const DropRegistration&) = delete;

private:
    HWND m_hWindow;
};

// Drags a text with the left mouse button until it is dropped or the drag is cancelled. Pumps messages; calls
// moved, which must not throw, when the pointer may have moved.
void DragText(
    const std::wstring& sText, const std::function<void()>& moved = [] {});

} // namespace ravlo
