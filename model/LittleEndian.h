// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace ravlo
{

// Fields of fixed-size records, written one by one at explicit offsets, little-endian. The caller sees to it
// that the field lies inside the bytes.

inline void PutLong(std::span<char> bytes, std::size_t lOffset, std::int32_t lValue)
{
    const auto bits = static_cast<std::uint32_t>(lValue);
    for (std::size_t lByte = 0; lByte < 4; ++lByte)
        bytes[lOffset + lByte] = static_cast<char>(bits >> (8 * lByte) & 0xFFu);
}

inline std::int32_t GetLong(std::string_view bytes, std::size_t lOffset)
{
    std::uint32_t bits = 0;
    for (std::size_t lByte = 0; lByte < 4; ++lByte)
        bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[lOffset + lByte])) << (8 * lByte);
    return static_cast<std::int32_t>(bits);
}

inline void PutInteger(std::span<char> bytes, std::size_t lOffset, std::int16_t lValue)
{
    const auto bits = static_cast<std::uint16_t>(lValue);
    bytes[lOffset] = static_cast<char>(bits & 0xFFu);
    bytes[lOffset + 1] = static_cast<char>(bits >> 8);
}

inline std::int16_t GetInteger(std::string_view bytes, std::size_t lOffset)
{
    const auto lLow = static_cast<unsigned char>(bytes[lOffset]);
    const auto lHigh = static_cast<unsigned char>(bytes[lOffset + 1]);
    return static_cast<std::int16_t>(lLow | lHigh << 8);
}

// Left-aligned, padded with blanks, cut off when longer than the field.
inline void PutText(std::span<char> bytes, std::size_t lOffset, std::size_t lWidth, std::string_view text)
{
    const std::size_t lLength = std::min(lWidth, text.size());
    std::copy_n(text.begin(), lLength, bytes.data() + lOffset);
    std::fill_n(bytes.data() + lOffset + lLength, lWidth - lLength, ' ');
}

} // namespace ravlo
