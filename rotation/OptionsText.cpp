// SPDX-License-Identifier: MIT
#include "rotation/OptionsText.h"

#include "base/CaseFolding.h"
#include "base/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ravlo
{

namespace
{

struct Option
{
    const char* sName;
    bool RotationOptions::*bOn;
};
// In the order in which missing ones are added.
constexpr std::array<Option, 2> knownOptions = {{{"FairRotation", &RotationOptions::bFairRotation},
                                                 {"FeaturedArtists", &RotationOptions::bFeaturedArtists}}};

std::string_view Trimmed(std::string_view bytes)
{
    bytes.remove_prefix(std::min(bytes.find_first_not_of(' '), bytes.size()));
    return bytes.substr(0, bytes.find_last_not_of(' ') + 1);
}

bool IsNameOf(std::string_view sName, const Option& option)
{
    return EqualIgnoringCase(TextFromStore(sName), TextFromStore(option.sName));
}

// The value of an option, as a part of the bytes; nothing when no line has it. The last line of its name
// counts.
std::optional<std::string_view> ValueOf(std::string_view bytes, const Option& option)
{
    std::optional<std::string_view> sValue;
    while (!bytes.empty())
    {
        const std::string_view sLine = bytes.substr(0, bytes.find_first_of("\r\n"));
        const std::size_t equals = sLine.find('=');
        if (equals != std::string_view::npos && IsNameOf(Trimmed(sLine.substr(0, equals)), option))
            sValue = Trimmed(sLine.substr(equals + 1));
        bytes.remove_prefix(std::min(sLine.size() + 1, bytes.size()));
    }
    return sValue;
}

bool IsOn(std::string_view sValue) { return sValue == "1"; }

} // namespace

std::optional<RotationOptions> OptionsIn(std::string_view bytes)
{
    bytes = WithoutByteOrderMark(bytes);
    if (!TextFromUtf8(bytes) || bytes.find('\0') != std::string_view::npos)
        return std::nullopt;
    RotationOptions options;
    for (const Option& option : knownOptions)
        options.*option.bOn = IsOn(ValueOf(bytes, option).value_or("0"));
    return options;
}

std::string WithOptions(std::string_view bytes, const RotationOptions& options)
{
    std::string result(WithoutByteOrderMark(bytes));
    for (const Option& option : knownOptions)
    {
        const bool bOn = options.*option.bOn;
        const char cNewValue = bOn ? '1' : '0';
        if (const std::optional<std::string_view> sValue = ValueOf(result, option))
        {
            if (IsOn(*sValue) != bOn)
                result.replace(static_cast<std::size_t>(sValue->data() - result.data()), sValue->size(), 1,
                               cNewValue);
            continue;
        }
        if (!result.empty() && result.back() != '\n' && result.back() != '\r')
            result += "\r\n";
        result.append(option.sName).append(1, '=').append(1, cNewValue).append("\r\n");
    }
    return result;
}

} // namespace ravlo
