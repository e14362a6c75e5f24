// SPDX-License-Identifier: MIT
#include "host/day/CommandParts.h"

#include "base/Utf8.h"

namespace ravlo
{

std::wstring Wide(const std::string& bytes) { return TextFromStore(bytes); }

CLI::Validator NotEmpty()
{
    return CLI::Validator(
        [](const std::string& sText) { return std::string(sText.empty() ? "must not be empty" : ""); }, "");
}

CLI::Validator IsTime()
{
    return CLI::Validator(
        [](const std::string& sText) {
        const std::optional<DateTime> dtWhen = ParseIso(Wide(sText));
        return dtWhen && *dtWhen > 0 ? std::string()
                                     : "'" + sText + "' is no time (expected yyyy-mm-ddThh:nn:ss)";
        },
        "");
}

CLI::Option& AddText(CLI::App& cCommand, const char* sName, std::wstring& sTarget, const char* sType,
                     const char* sHelp)
{
    const auto store = [&sTarget](const std::string& bytes) { sTarget = Wide(bytes); };
    return *cCommand.add_option_function<std::string>(sName, store, sHelp)
                ->type_name(sType)
                ->check(NotEmpty());
}

} // namespace ravlo
