// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/Fuzz.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace ravlo::fuzz
{

// A folder of the target's own under TMPDIR, deleted at the end. A file system in memory makes it many times
// faster.
class TempFolder
{
public:
    TempFolder()
    {
        std::string sPattern = (std::filesystem::temp_directory_path() / "ravlo-fuzz-XXXXXX").string();
        RAVLO_REQUIRE(mkdtemp(sPattern.data()) != nullptr);
        m_cPath = sPattern;
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() { std::filesystem::remove_all(m_cPath); }

    std::wstring File(const std::string& sName) const { return (m_cPath / sName).wstring(); }
    // Returns no bytes when there is no file.
    std::string Read(const std::string& sName) const
    {
        std::ifstream file(m_cPath / sName, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // Creates no file for no bytes.
    void Write(const std::string& sName, std::string_view bytes) const
    {
        std::filesystem::remove(m_cPath / sName);
        if (bytes.empty())
            return;
        std::ofstream file(m_cPath / sName, std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        RAVLO_REQUIRE(file.good());
    }

private:
    std::filesystem::path m_cPath;
};

} // namespace ravlo::fuzz
