// SPDX-License-Identifier: MIT
#include "ravlobase/ImportReport.h"

#include "base/Text.h"

namespace ravlo
{

std::wstring ImportReport::Summary() const
{
    if (!sFailure.empty())
        return L"Nothing was imported: " + sFailure;
    return CutsText(static_cast<std::size_t>(lAdded)) + L" added, " + DecimalText(lChanged) + L" changed, " +
           DecimalText(lUnchanged) + L" unchanged, " + CountText(colRejects.size()) +
           (colRejects.size() == 1 ? L" row rejected." : L" rows rejected.");
}

std::wstring ImportReport::Text() const
{
    std::wstring sText = Summary();
    for (const ImportReject& reject : colRejects)
        sText += sCrLf + (L"Line " + CountText(reject.line)) + L": " + reject.sReason;
    return sText;
}

std::wstring CutsText(std::size_t count) { return CountText(count) + (count == 1 ? L" cut" : L" cuts"); }

} // namespace ravlo
