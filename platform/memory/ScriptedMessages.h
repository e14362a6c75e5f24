// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Messages.h"

#include <deque>
#include <functional>
#include <iosfwd>
#include <vector>

namespace ravlo
{

// Everything a box showed.
struct ShownBox
{
    BoxIcon eIcon;
    BoxButtons eButtons;
    std::wstring sTitle;
    std::wstring sText;

    friend bool operator==(const ShownBox&, const ShownBox&) = default;
};
// For test output, found by name.
void PrintTo(const ShownBox& box, std::ostream* pStream);

struct ShownInput
{
    std::wstring sTitle;
    std::wstring sPrompt;
    std::wstring sText = {}; // at first

    friend bool operator==(const ShownInput&, const ShownInput&) = default;
};
void PrintTo(const ShownInput& input, std::ostream* pStream);

// A user with prepared answers. Yes/No boxes and inputs each take the next answer of their queue, or the
// default when it is empty.
class ScriptedMessages final : public Messages
{
public:
    BoxAnswer Box(BoxIcon eIcon, BoxButtons eButtons, const std::wstring& sTitle,
                  const std::wstring& sText) override;
    std::optional<std::wstring> Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                      const std::wstring& sText = {}) override;

    // What was shown, oldest first.
    std::vector<ShownBox> Boxes;
    std::vector<ShownInput> Inputs;

    std::deque<BoxAnswer> Answers;
    BoxAnswer eDefaultAnswer = BoxAnswer::No;
    BoxAnswer eOkAnswer = BoxAnswer::Ok; // what boxes with a single button answer
    std::deque<std::optional<std::wstring>> Typed;
    std::optional<std::wstring> sDefaultTyped; // nothing = cancelled

    // Called while a box or an input is open, after it was recorded. May replace itself.
    std::function<void()> OnShown;
};

} // namespace ravlo
