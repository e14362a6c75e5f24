// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Messages.h"

namespace ravlo
{

// Boxes for a program without windows: they go to the standard error output, and nobody answers.
class StandardMessages final : public Messages
{
public:
    BoxAnswer Box(BoxIcon eIcon, BoxButtons eButtons, const std::wstring& sTitle,
                  const std::wstring& sText) override;
    std::optional<std::wstring> Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                      const std::wstring& sText = {}) override;
};

} // namespace ravlo
