// SPDX-License-Identifier: MIT
#pragma once

#include "base/Utf8.h"
#include "platform/common/Latin1252CodePage.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

// What a fuzz target defines. The engine, or the replay of the corpus, calls it with one input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size);

namespace ravlo::fuzz
{

// Ends the program when a rule does not hold: the engine then keeps the input.
inline void Require(bool bTrue, const char* sRule, int lLine)
{
    if (bTrue)
        return;
    std::fprintf(stderr, "broken, line %d: %s\n", lLine, sRule);
    std::abort();
}
#define RAVLO_REQUIRE(condition) ::ravlo::fuzz::Require((condition), #condition, __LINE__)

inline std::string_view BytesOf(const std::uint8_t* pBytes, std::size_t size)
{
    return {reinterpret_cast<const char*>(pBytes), size};
}

// The input as text: UTF-8 if it is valid, so that any letter can occur, else in the code page.
inline std::wstring TextOf(std::string_view bytes)
{
    if (const auto sText = TextFromUtf8(bytes))
        return *sText;
    return Latin1252CodePage().Decode(bytes);
}

} // namespace ravlo::fuzz
