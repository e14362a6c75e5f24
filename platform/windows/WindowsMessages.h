// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Messages.h"

namespace ravlo
{

// Message boxes and the input box, each owned by the calling thread's active window; without one, every
// window of the thread is disabled meanwhile.
class WindowsMessages final : public Messages
{
public:
    BoxAnswer Box(BoxIcon eIcon, BoxButtons eButtons, const std::wstring& sTitle,
                  const std::wstring& sText) override;
    std::optional<std::wstring> Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                      const std::wstring& sText = {}) override;
};

} // namespace ravlo
