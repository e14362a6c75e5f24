// SPDX-License-Identifier: MIT
// Clock files: refused with the file's name, or read as slots that stay the same when written and read again,
// and that repeat.
#include "fuzz/Slots.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    const std::string_view bytes = fuzz::BytesOf(pBytes, size);
    const auto colRead = fuzz::SlotsIn(ParseClock, bytes);
    if (!colRead)
        return 0;
    RAVLO_REQUIRE(!colRead->empty() && colRead->size() <= CountLines(bytes));
    std::string sWritten;
    for (const Slot& slot : *colRead)
        sWritten += fuzz::LineOf(slot) + "\r\n";
    const auto colAgain = fuzz::SlotsIn(ParseClock, sWritten);
    RAVLO_REQUIRE(colAgain && colAgain->size() == colRead->size());
    for (std::size_t slot = 0; slot < colRead->size(); ++slot)
        RAVLO_REQUIRE(fuzz::SameSlot((*colAgain)[slot], (*colRead)[slot]));

    ClockHand cHand(*colRead);
    for (std::size_t slot = 0; slot <= colRead->size(); ++slot)
        RAVLO_REQUIRE(&cHand.Next(45000) == &(*colRead)[slot % colRead->size()]);
    RAVLO_REQUIRE(&cHand.Next(45000.5) == &colRead->front()); // another hour
    return 0;
}
