// SPDX-License-Identifier: MIT
#include "base/CaseFolding.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cwchar>
#include <iterator>

namespace ravlo
{

namespace
{

struct CaseRange
{
    std::uint16_t first;
    std::uint16_t last;
    std::uint16_t step;
    std::int32_t lDelta;
};

constexpr CaseRange aCaseRanges[] = {
#include "base/CaseTable.inc"
};

wchar_t FoldBeyondAscii(wchar_t c) noexcept
{
    const auto lCode = static_cast<std::uint32_t>(c);
    const CaseRange* pRange = std::lower_bound(std::begin(aCaseRanges), std::end(aCaseRanges), lCode,
                                               [](const CaseRange& cRange, std::uint32_t lWanted) {
        return cRange.last < lWanted;
    });
    if (pRange == std::end(aCaseRanges) || lCode < pRange->first ||
        (lCode - pRange->first) % pRange->step != 0)
        return c;
    return static_cast<wchar_t>(static_cast<std::int32_t>(lCode) + pRange->lDelta);
}

inline wchar_t Fold(wchar_t c) noexcept
{
    if (static_cast<std::uint32_t>(c) < 0x80)
        return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c;
    return FoldBeyondAscii(c);
}

} // namespace

wchar_t FoldCase(wchar_t c) noexcept { return Fold(c); }

std::wstring FoldCase(std::wstring_view sText)
{
    std::wstring sFolded(sText);
    std::transform(sFolded.begin(), sFolded.end(), sFolded.begin(), Fold);
    return sFolded;
}

bool EqualIgnoringCase(std::wstring_view sLeft, std::wstring_view sRight) noexcept
{
    if (sLeft.size() != sRight.size())
        return false;
    // Most equal texts have the same letters, which is much faster to compare.
    return std::wmemcmp(sLeft.data(), sRight.data(), sLeft.size()) == 0 ||
           std::equal(sLeft.begin(), sLeft.end(), sRight.begin(),
                      [](wchar_t a, wchar_t b) { return a == b || Fold(a) == Fold(b); });
}

std::size_t HashIgnoringCase(std::wstring_view sText) noexcept
{
    // FNV-1a's start and prime; two chains, since each multiplication waits for the previous one.
    constexpr std::uint64_t prime = 0x100000001B3u;
    std::uint64_t even = 0xCBF29CE484222325u;
    std::uint64_t odd = even;
    const auto Folded = [sText](std::size_t i) { return static_cast<std::uint32_t>(Fold(sText[i])); };
    std::size_t i = 0;
    for (; i + 1 < sText.size(); i += 2)
    {
        even = (even ^ Folded(i)) * prime;
        odd = (odd ^ Folded(i + 1)) * prime;
    }
    if (i < sText.size())
        even = (even ^ Folded(i)) * prime;
    std::uint64_t hash = even ^ std::rotl(odd, 31);
    // Tables take the low bits, so the high ones are mixed into them.
    hash = (hash ^ (hash >> 32)) * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(hash ^ (hash >> 29));
}

} // namespace ravlo
