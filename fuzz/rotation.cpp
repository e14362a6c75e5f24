// SPDX-License-Identifier: MIT
// The options file: any bytes give options that a setter can change, and every other line stays.
#include "fuzz/Fuzz.h"

#include "platform/memory/MemoryPorts.h"
#include "rotation/OptionsText.h"
#include "rotation/RotationFiles.h"

#include <algorithm>
#include <vector>

namespace ravlo::fuzz
{

namespace
{

std::vector<std::string> LinesWithoutValue(std::string_view bytes)
{
    std::vector<std::string> colLines;
    while (!bytes.empty())
    {
        const std::string_view sLine = bytes.substr(0, bytes.find_first_of("\r\n"));
        if (!sLine.empty() && sLine.find('=') == std::string_view::npos)
            colLines.emplace_back(sLine);
        bytes.remove_prefix(std::min(sLine.size() + 1, bytes.size()));
    }
    return colLines;
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    static constexpr const wchar_t* sPath = L"C:\\Radio\\Scheduler\\Rotation.cfg";
    const std::string_view bytes = fuzz::BytesOf(pBytes, size);
    MemoryPorts cPorts;
    cPorts.cFiles.Put(sPath, bytes);
    ModScheduler cMod(cPorts.Ports());
    RotationFiles cRotation(cMod);
    cRotation.Serve(L"C:\\Radio\\");
    const RotationOptions read = cRotation.Options();
    cRotation.SetFairRotation(read.bFairRotation);
    RAVLO_REQUIRE(cPorts.cFiles.Get(sPath) == bytes);

    cRotation.SetFeaturedArtists(!read.bFeaturedArtists);
    const RotationOptions set{read.bFairRotation, !read.bFeaturedArtists};
    const std::string written = cPorts.cFiles.Get(sPath);
    RAVLO_REQUIRE(OptionsIn(written) == set);
    RAVLO_REQUIRE(WithOptions(written, set) == written);
    const bool bDamaged = !OptionsIn(bytes);
    RAVLO_REQUIRE(cPorts.cFiles.FileExists(std::wstring(sPath) + L".bak") == bDamaged);
    if (bDamaged)
        return 0;
    RAVLO_REQUIRE(fuzz::LinesWithoutValue(written) == fuzz::LinesWithoutValue(WithoutByteOrderMark(bytes)));
    cRotation.SetFeaturedArtists(read.bFeaturedArtists);
    RAVLO_REQUIRE(OptionsIn(cPorts.cFiles.Get(sPath)) == read);
    return 0;
}
