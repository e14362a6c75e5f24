// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/Console.h"

#include <cstddef>
#include <string>

namespace ravlo
{

// Answers the scheduler's message boxes where nobody can: while this lives, each box of this thread is
// written to standard error and answered at once, so that nothing waits for a click. A question is answered
// with No, an input with Cancel, anything else with OK. One at a time.
class Boxes
{
public:
    explicit Boxes(const Console& cError);
    Boxes(const Boxes&) = delete;
    Boxes& operator=(const Boxes&) = delete;
    ~Boxes();

    // The number of boxes answered so far.
    std::size_t Count() const noexcept { return m_count; }

private:
    static LRESULT CALLBACK OnMessage(int lCode, WPARAM wParam, LPARAM lParam) noexcept;
    void Answer(HWND hBox);

    static Boxes* m_pOnly;
    const Console& m_cError;
    HHOOK m_hHook;
    std::size_t m_count = 0;
};

} // namespace ravlo
