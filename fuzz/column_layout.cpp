// SPDX-License-Identifier: MIT
// The layout strings of the library grid: any text gives columns that can be shown, and a stored layout reads
// the same.
#include "fuzz/Fuzz.h"

#include "ui/library/ColumnLayout.h"

#include <set>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    const std::wstring sStored = fuzz::TextOf(fuzz::BytesOf(pBytes, size));
    const ColumnLayout layout(sStored, sStored);
    std::set<int> colOrders;
    for (std::size_t at = 0; at < listColumnCount; ++at)
    {
        const ColumnLayout::Column& column = layout.At(at);
        RAVLO_REQUIRE(column.lWidth >= 0 && column.lWidth <= ColumnLayout::lMaxWidth);
        RAVLO_REQUIRE(column.lOrder >= 1 && column.lOrder <= static_cast<int>(listColumnCount));
        colOrders.insert(column.lOrder);
    }
    RAVLO_REQUIRE(colOrders.size() == listColumnCount);
    const std::vector<std::size_t> colShown = layout.Shown();
    RAVLO_REQUIRE(std::set(colShown.begin(), colShown.end()).size() == colShown.size());

    const std::wstring sText = layout.Text();
    RAVLO_REQUIRE(sText.size() < 500);
    const ColumnLayout again(sText, layout.FurtherText());
    RAVLO_REQUIRE(again.Text() == sText);
    RAVLO_REQUIRE(again.FurtherText() == layout.FurtherText());
    RAVLO_REQUIRE(again.Shown() == colShown);
    return 0;
}
