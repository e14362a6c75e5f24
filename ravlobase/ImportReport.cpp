// SPDX-License-Identifier: MIT
#include "ravlobase/ImportReport.h"

#include "base/Text.h"

namespace ravlo
{

std::wstring ImportReport::Summary() const
{
    if (!sFailure.empty())
        return L"Nothing was imported: " + sFailure;
    const std::wstring sRejects =
        std::wstring(bFiles ? L" file" : L" row") + (colRejects.size() == 1 ? L"" : L"s") + L" rejected.";
    return CutsText(static_cast<std::size_t>(lAdded)) + (bTrial ? L" would be added, " : L" added, ") +
           DecimalText(lChanged) + L" changed, " + DecimalText(lUnchanged) + L" unchanged, " +
           CountText(colRejects.size()) + sRejects;
}

std::wstring ImportReport::Text() const
{
    std::wstring sText = Summary();
    for (const std::wstring& sChange : colChanges)
        sText += sCrLf + sChange;
    for (const ImportReject& reject : colRejects)
        sText += sCrLf + (reject.line > 0 ? L"Line " + CountText(reject.line) : reject.sFile) + L": " +
                 reject.sReason;
    return sText;
}

std::wstring CutsText(std::size_t count) { return CountText(count) + (count == 1 ? L" cut" : L" cuts"); }

} // namespace ravlo
