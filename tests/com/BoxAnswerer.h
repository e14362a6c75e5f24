// SPDX-License-Identifier: MIT
#pragma once

#include "com/kit/Com.h"

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace ravlo
{

// Answers OK to every message box of this process while it lives, and notes what they said. A person's
// stand-in: a box is modal, so only another thread can answer it.
class BoxAnswerer
{
public:
    BoxAnswerer() : m_thread([this] { Run(); }) {}
    ~BoxAnswerer()
    {
        if (m_thread.joinable())
            Stop();
    }
    BoxAnswerer(const BoxAnswerer&) = delete;
    BoxAnswerer& operator=(const BoxAnswerer&) = delete;

    // "title: text" of each box, in order; ends the watch.
    std::vector<std::wstring> Stop()
    {
        m_bDone = true;
        m_thread.join();
        return m_colSaid;
    }

private:
    void Run()
    {
        while (!m_bDone)
        {
            const HWND hBox = FindWindowW(L"#32770", nullptr);
            DWORD lProcess = 0;
            if (hBox)
                GetWindowThreadProcessId(hBox, &lProcess);
            if (lProcess == GetCurrentProcessId() && IsWindowVisible(hBox)) // complete once it is shown
                Answer(hBox);
            SwitchToThread();
        }
    }
    void Answer(HWND hBox)
    {
        m_colSaid.push_back(TextOfWindow(hBox) + L": " + TextOfWindow(GetDlgItem(hBox, 0xFFFF)));
        PostMessageW(hBox, WM_COMMAND, IDOK, 0);
        while (IsWindow(hBox))
            SwitchToThread();
    }
    static std::wstring TextOfWindow(HWND hWindow)
    {
        std::wstring sText(1024, L'\0');
        sText.resize(static_cast<std::size_t>(GetWindowTextW(hWindow, sText.data(), 1024)));
        return sText;
    }

    std::atomic<bool> m_bDone{false};
    std::vector<std::wstring> m_colSaid;
    std::thread m_thread;
};

} // namespace ravlo
