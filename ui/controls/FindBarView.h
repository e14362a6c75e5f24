// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ravlo
{

// A bar above a list or tree, in which the user types what to find: a field, a count and a button that
// clears. Does not report changes made by its presenter.
class FindBarView
{
public:
    virtual ~FindBarView() = default;
    // Hiding it gives the focus to the list when the bar had it.
    virtual void ShowBar(bool bShow) = 0;
    virtual void SetQuery(const std::wstring& sQuery) = 0;
    // How much is found, such as "37 of 992"; empty for nothing to say.
    virtual void SetCount(const std::wstring& sCount) = 0;
    // The field gets the focus and all its text is marked, so that typing replaces it.
    virtual void FocusQuery() = 0;
    virtual void FocusList() = 0;
    // Calls the listener's Step soon, after user input that is already waiting.
    virtual void AskForStep() = 0;
};

// What the user does in a bar, and when its presenter can go on.
class FindBarListener
{
public:
    virtual ~FindBarListener() = default;
    virtual void QueryChanged(const std::wstring& sQuery) = 0;
    // Esc and the button: the whole list, without a bar. Returns whether the bar was open.
    virtual bool CloseBar() = 0;
    // Enter and the arrow down: the list gets the focus.
    virtual void GoToList() = 0;
    virtual void Step() {}
};

} // namespace ravlo
