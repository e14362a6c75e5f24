// SPDX-License-Identifier: MIT
// How the engine mutates a .sif: half of the time record by record, since random changes of bytes seldom make
// another valid record.
#include "fuzz/Fuzz.h"

#include "model/LittleEndian.h"
#include "scheduler/HistoryFiles.h"

#include <algorithm>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* pBytes, std::size_t size, std::size_t maxSize);

namespace ravlo::fuzz
{

namespace
{

constexpr std::size_t recordSize = HistoryFiles::recordSize;
constexpr std::size_t atPath = 510;
constexpr std::size_t atLevel = 765;
constexpr std::size_t atMarker = 769;

// Duplicates a record, swaps two, or changes a level or a path.
void MutateRecords(std::string& bytes, std::mt19937& cChance)
{
    const std::size_t count = bytes.size() / recordSize;
    const auto any = [&] { return cChance() % count * recordSize; };
    const std::size_t at = any();
    const std::string record = bytes.substr(at, recordSize);
    static constexpr std::int32_t levels[] = {0, 1, 2, 3, 7, -1, 32764, 2147483647};
    switch (cChance() % 6)
    {
    case 0:
        bytes.insert(any(), record);
        break;
    case 1:
        bytes.erase(at, recordSize);
        break;
    case 2:
        bytes.erase(at, recordSize);
        bytes.append(record);
        break;
    case 3:
        PutLong(std::span(bytes.data() + at, recordSize), atLevel, levels[cChance() % std::size(levels)]);
        break;
    case 4:
        PutInteger(std::span(bytes.data() + at, recordSize), atMarker, cChance() % 2 == 0 ? 0 : -1);
        break;
    default:
        bytes.replace(at + atPath, 255, bytes, any() + atPath, 255);
    }
}

} // namespace

} // namespace ravlo::fuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* pBytes, std::size_t size, std::size_t maxSize,
                                               unsigned lSeed)
{
    using namespace ravlo::fuzz;
    std::mt19937 cChance(lSeed);
    if (size < recordSize || cChance() % 2 == 0)
        return LLVMFuzzerMutate(pBytes, size, maxSize);
    std::string bytes(BytesOf(pBytes, size));
    MutateRecords(bytes, cChance);
    bytes.resize(std::min(bytes.size(), maxSize));
    std::copy(bytes.begin(), bytes.end(), pBytes);
    return bytes.size();
}
