// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

// Small audio files, made of their bytes.
namespace ravlo::audio
{

inline std::string LittleEndian(std::uint32_t value, int lBytes = 4)
{
    std::string bytes;
    for (int i = 0; i < lBytes; ++i)
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    return bytes;
}
inline std::string BigEndian(std::uint32_t value, int lBytes = 4)
{
    const std::string bytes = LittleEndian(value, lBytes);
    return {bytes.rbegin(), bytes.rend()};
}

// One second of silence, 8 kHz, 8 bits, mono.
inline std::string Wav(int lSeconds = 1)
{
    const std::uint32_t size = 8000U * static_cast<std::uint32_t>(lSeconds);
    return "RIFF" + LittleEndian(36 + size) + "WAVEfmt " + LittleEndian(16) + LittleEndian(1, 2) +
           LittleEndian(1, 2) + LittleEndian(8000) + LittleEndian(8000) + LittleEndian(1, 2) +
           LittleEndian(8, 2) + "data" + LittleEndian(size) + std::string(size, '\x80');
}

using Texts = std::vector<std::pair<std::string, std::string>>;

// An ID3 tag, version 2.4, with frames of UTF-8 text.
inline std::string Id3(const Texts& frames)
{
    const auto syncSafe = [](std::size_t size) {
        std::string bytes;
        for (int lShift = 21; lShift >= 0; lShift -= 7)
            bytes += static_cast<char>(size >> lShift & 0x7F);
        return bytes;
    };
    std::string body;
    for (const auto& [sName, sText] : frames)
        body += sName + syncSafe(sText.size() + 1) + std::string(2, '\0') + '\x03' + sText;
    return std::string("ID3\x04\x00\x00", 6) + syncSafe(body.size()) + body;
}

// A second of silent frames of 128 kbit/s, after the tag.
inline std::string Mp3(const Texts& frames)
{
    std::string bytes = Id3(frames);
    for (int i = 0; i < 39; ++i)
        bytes += "\xFF\xFB\x90" + std::string(414, '\0');
    return bytes;
}

// A FLAC file of a second without frames.
inline std::string Flac(const Texts& fields)
{
    std::string comments = LittleEndian(4) + "test" + LittleEndian(static_cast<std::uint32_t>(fields.size()));
    for (const auto& [sName, sText] : fields)
        comments +=
            LittleEndian(static_cast<std::uint32_t>(sName.size() + 1 + sText.size())) + sName + "=" + sText;
    std::string information = BigEndian(4096, 2) + BigEndian(4096, 2) + std::string(6, '\0') +
                              BigEndian(0x0AC442F0, 4) + BigEndian(44100, 4) + std::string(16, '\0');
    return "fLaC" + std::string(1, '\0') + BigEndian(34, 3) + information + "\x84" +
           BigEndian(static_cast<std::uint32_t>(comments.size()), 3) + comments + std::string(1000, '\0');
}

} // namespace ravlo::audio
