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
};

enum class BoxAnswer
{
    // The box was closed without any answer, or could not be shown at all. Never to be taken for Yes.
    None,
    Ok,
    Yes,
    No,
};

// The title of boxes that have none of their own.
inline constexpr const wchar_t* sProgramTitle = L"RavloScheduler";

// Everything the library says to a person. Modal: each call returns when the person has answered, and pumps
// messages meanwhile.
class Messages
{
public:
    virtual ~Messages() = default;
    virtual BoxAnswer Box(BoxIcon eIcon, BoxButtons eButtons, const std::wstring& sTitle,
                          const std::wstring& sText) = 0;
    // Asks for one line of text, with sText to start from. Nothing when the person cancelled.
    virtual std::optional<std::wstring> Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                              const std::wstring& sText = {}) = 0;
};

} // namespace ravlo
