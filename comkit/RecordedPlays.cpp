// SPDX-License-Identifier: MIT
#include "comkit/RecordedPlays.h"

#include "comkit/LateBound.h"

namespace ravlo
{

std::optional<std::wstring> RecordedPlaysOf(IDispatch& cDataBase, DateTime dtFrom, DateTime dtTo)
{
    constexpr const wchar_t* sMember = L"PlaysCsv";
    const auto Date = [](DateTime dtWhen) {
        Variant cDate;
        cDate.vt = VT_DATE;
        cDate.date = dtWhen;
        return cDate;
    };
    LateBound cLate(cDataBase);
    if (!cLate.Has(sMember))
        return std::nullopt;
    const Variant cPlays = cLate.Call(sMember, {Date(dtFrom), Date(dtTo)});
    return cPlays.vt == VT_BSTR ? std::optional(TextOf(cPlays.bstrVal)) : std::nullopt;
}

} // namespace ravlo
