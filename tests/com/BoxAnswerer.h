// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/ComPtr.h"

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace ravlo
{

// Answers every message box and input box of this process while it lives, and records what they say. A box is
// modal, so only another thread can answer it.
class BoxAnswerer
{
public:
    // What is typed, and the button that is pressed then (OK where the box has no such button).
    struct Answer
    {
        WPARAM lButton = IDOK;
        std::wstring sTyped = {};
    };
    // The answers in order; every further box gets OK.
    explicit BoxAnswerer(std::vector<Answer> colAnswers = {})
        : m_colAnswers(std::move(colAnswers)), m_thread([this] { Run(); })
    {
    }
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
                Reply(hBox);
            SwitchToThread();
        }
    }
    void Reply(HWND hBox)
    {
        const Answer answer =
            m_colSaid.size() < m_colAnswers.size() ? m_colAnswers[m_colSaid.size()] : Answer();
        const HWND hText = FindWindowExW(hBox, nullptr, L"Static", nullptr);
        const HWND hLabel = GetDlgItem(hBox, 0xFFFF) ? GetDlgItem(hBox, 0xFFFF) : hText;
        m_colSaid.push_back(TextOfWindow(hBox) + L": " + TextOfWindow(hLabel));
        if (const HWND hEdit = FindWindowExW(hBox, nullptr, L"Edit", nullptr))
            SendMessageW(hEdit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(answer.sTyped.c_str()));
        const WPARAM lButton = GetDlgItem(hBox, static_cast<int>(answer.lButton)) ? answer.lButton : IDOK;
        PostMessageW(hBox, WM_COMMAND, lButton, 0);
        while (IsWindow(hBox))
            SwitchToThread();
    }
    // By message: GetWindowText does not read another thread's controls.
    static std::wstring TextOfWindow(HWND hWindow)
    {
        std::wstring sText(1024, L'\0');
        const LRESULT lLength =
            SendMessageW(hWindow, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(sText.data()));
        sText.resize(static_cast<std::size_t>(lLength));
        return sText;
    }

    std::vector<Answer> m_colAnswers;
    std::atomic<bool> m_bDone{false};
    std::vector<std::wstring> m_colSaid;
    std::thread m_thread;
};

// What the boxes say that the work shows.
template <class Work>
std::vector<std::wstring> BoxesOf(Work work, std::vector<BoxAnswerer::Answer> colAnswers = {})
{
    BoxAnswerer cAnswerer(std::move(colAnswers));
    work();
    return cAnswerer.Stop();
}

} // namespace ravlo
