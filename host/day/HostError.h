// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace ravlo
{

// The work cannot be done; the text is one line for the person at the console.
class HostError : public std::runtime_error
{
public:
    explicit HostError(std::wstring sText) : std::runtime_error("host error"), m_sText(std::move(sText)) {}
    const std::wstring& Text() const noexcept { return m_sText; }

private:
    std::wstring m_sText;
};

} // namespace ravlo
