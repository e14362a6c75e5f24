// SPDX-License-Identifier: MIT
// The layout string of the library grid: any text gives ten columns that can be shown, and a stored layout
// reads the same.
#include "fuzz/Fuzz.h"

#include "ui/library/ColumnLayout.h"

#include <set>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    const ColumnLayout layout(fuzz::TextOf(fuzz::BytesOf(pBytes, size)));
    std::set<int> colOrders;
    for (std::size_t lColumn = 0; lColumn < colGridColumns.size(); ++lColumn)
    {
        const ColumnLayout::Column& column = layout.At(lColumn);
        RAVLO_REQUIRE(column.lWidth >= 0 && column.lWidth <= ColumnLayout::lMaxWidth);
        RAVLO_REQUIRE(column.lOrder >= 1 && column.lOrder <= static_cast<int>(colGridColumns.size()));
        colOrders.insert(column.lOrder);
    }
    RAVLO_REQUIRE(colOrders.size() == colGridColumns.size());
    const auto colShown = layout.Shown();
    RAVLO_REQUIRE(std::set(colShown.begin(), colShown.end()).size() == colShown.size());

    const std::wstring sText = layout.Text();
    RAVLO_REQUIRE(sText.size() < 500);
    const ColumnLayout again(sText);
    RAVLO_REQUIRE(again.Text() == sText);
    RAVLO_REQUIRE(again.Shown() == colShown);
    return 0;
}
