// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace ravlo
{

enum class BoxIcon
{
    None,
    Critical,
    Question,
    Exclamation,
    Information,
};

enum class BoxButtons
{
    Ok,
    YesNo,
    YesNoDefaultNo, // Enter answers No
};

enum class BoxAnswer
{
    // The box was closed without an answer, or could not be shown. Never treat it as Yes.
    None,
    Ok,
    Yes,
    No,
};

// The title of boxes without one of their own.
inline constexpr const wchar_t* sProgramTitle = L"RavloScheduler";

// The library's messages to the user. Modal: each call pumps messages until the user has answered.
class Messages
{
public:
    virtual ~Messages() = default;
    virtual BoxAnswer Box(BoxIcon eIcon, BoxButtons eButtons, const std::wstring& sTitle,
                          const std::wstring& sText) = 0;
    // Asks for one line of text, initially sText. Returns nothing when the user cancelled.
    virtual std::optional<std::wstring> Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                              const std::wstring& sText = {}) = 0;
};

} // namespace ravlo
