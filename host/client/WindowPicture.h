// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace ravlo
{

// Takes a picture of the next window that this thread shows, once it is complete, and closes it: for
// documents, and for machines without a user. Does nothing without a file name.
class WindowPicture
{
public:
    // How the window is to be closed after its picture was taken.
    using Close = void (*)(HWND hWindow);

    WindowPicture(const std::wstring& sFile, Close close);
    WindowPicture(const WindowPicture&) = delete;
    WindowPicture& operator=(const WindowPicture&) = delete;
    ~WindowPicture();

    // Throws HostError when a picture was wanted and could not be written.
    void MustBeTaken() const;

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD);
    void Look();

    static WindowPicture* m_pOnly;
    std::wstring m_sFile;
    Close m_close;
    UINT_PTR m_lTimer = 0;
    int m_lQuiet = 0; // consecutive checks that found nothing left to do
    bool m_bTaken = false;
    bool m_bDone = false;
};

} // namespace ravlo
