// SPDX-License-Identifier: MIT
// Slot files: refused with the file's name, or read as slots in ascending order of time that stay the same
// when written and read again.
#include "fuzz/Slots.h"

#include "base/DateTime.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    const std::string_view bytes = fuzz::BytesOf(pBytes, size);
    const auto colRead = fuzz::SlotsIn(ParseSlots, bytes);
    if (!colRead)
        return 0;
    RAVLO_REQUIRE(!colRead->empty() && colRead->size() < CountLines(bytes));
    std::string sWritten = "slot_at,category,level,opener\n";
    for (std::size_t at = 0; at < colRead->size(); ++at)
    {
        const TimedSlot& slot = (*colRead)[at];
        RAVLO_REQUIRE(slot.dtAt > 0);
        RAVLO_REQUIRE(at == 0 || (*colRead)[at - 1].dtAt <= slot.dtAt);
        if (WholeSeconds(slot.dtAt) == 0)
            return 0; // a fraction of the first second becomes 0 in whole seconds, which means no time
        sWritten += Utf8Of(IsoText(slot.dtAt)) + "," + fuzz::LineOf(slot.slot) + "\n";
    }
    const auto colAgain = fuzz::SlotsIn(ParseSlots, sWritten);
    RAVLO_REQUIRE(colAgain && colAgain->size() == colRead->size());
    for (std::size_t slot = 0; slot < colRead->size(); ++slot)
        RAVLO_REQUIRE(fuzz::SameSlot((*colAgain)[slot].slot, (*colRead)[slot].slot) &&
                      WholeSeconds((*colAgain)[slot].dtAt) == WholeSeconds((*colRead)[slot].dtAt));
    return 0;
}
