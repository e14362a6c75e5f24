// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/Console.h"

#include <cstddef>
#include <string>

namespace ravlo
{

// Answers the scheduler's message boxes when nobody is at the screen: while one exists, each box of this
// thread is written to standard error and answered at once. Answers a question with No, an input with Cancel,
// anything else with OK. At most one may exist.
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
