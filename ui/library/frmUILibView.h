// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The library window on the screen, without its tree and grid.
class frmUILibView
{
public:
    virtual ~frmUILibView() = default;
    // Disables every control and menu, or enables them and gives the focus back.
    virtual void SetBusy(bool bBusy) = 0;
    virtual void SetStatus(const std::wstring& sFirst, const std::wstring& sSecond) = 0;
    // The text in the place of the progress bar, shown while that is hidden.
    virtual void SetResult(const std::wstring& sResult) = 0;
    virtual void ShowProgress(std::int32_t lMax) = 0; // the bar, at 0
    virtual void MoveProgress(std::int32_t lValue) = 0;
    virtual void HideProgress() = 0;
    // Lets the user choose from a pop-up menu at the pointer. Nothing when it is dismissed. "&" is shown
    // as it is.
    virtual std::optional<std::size_t> PopUp(const std::vector<std::wstring>& colItems) = 0;
    // Shows the window and returns when it is closed: after Close, or because the program ends.
    virtual void ShowModal() = 0;
    virtual void BringToFront() = 0;
    // The grid gets the focus, or has it when the window is shown, enabled or active again.
    virtual void FocusCuts() = 0;
    virtual void Close() = 0;
    // Calls RequestRefresh soon, after user input that is already waiting.
    virtual void AskForRefresh() = 0;
    // Calls LibraryResults::ShowSelection soon.
    virtual void AskForSelection() = 0;
    // Calls GridHeadings::Step soon, after user input that is already waiting.
    virtual void AskForSorting() = 0;
};

} // namespace ravlo
