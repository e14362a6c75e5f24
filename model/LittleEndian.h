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

inline void PutLong(std::span<char> bytes, std::size_t offset, std::int32_t lValue)
{
    const auto bits = static_cast<std::uint32_t>(lValue);
    for (std::size_t byte = 0; byte < 4; ++byte)
        bytes[offset + byte] = static_cast<char>(bits >> (8 * byte) & 0xFFu);
}

inline std::int32_t GetLong(std::string_view bytes, std::size_t offset)
{
    std::uint32_t bits = 0;
    for (std::size_t byte = 0; byte < 4; ++byte)
        bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[offset + byte])) << (8 * byte);
    return static_cast<std::int32_t>(bits);
}

inline void PutInteger(std::span<char> bytes, std::size_t offset, std::int16_t lValue)
{
    const auto bits = static_cast<std::uint16_t>(lValue);
    bytes[offset] = static_cast<char>(bits & 0xFFu);
    bytes[offset + 1] = static_cast<char>(bits >> 8);
}

inline std::int16_t GetInteger(std::string_view bytes, std::size_t offset)
{
    const auto lLow = static_cast<unsigned char>(bytes[offset]);
    const auto lHigh = static_cast<unsigned char>(bytes[offset + 1]);
    return static_cast<std::int16_t>(lLow | lHigh << 8);
}

// Left-aligned, padded with blanks, cut off when longer than the field.
inline void PutText(std::span<char> bytes, std::size_t offset, std::size_t width, std::string_view text)
{
    const std::size_t length = std::min(width, text.size());
    std::copy_n(text.begin(), length, bytes.data() + offset);
    std::fill_n(bytes.data() + offset + length, width - length, ' ');
}

} // namespace ravlo
