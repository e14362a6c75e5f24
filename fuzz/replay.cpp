// SPDX-License-Identifier: MIT
// replay FOLDER...: passes every file of the folders to the fuzz target that it is linked with. A broken rule
// ends the program; the last file printed is the one. Exit status 0 when there was at least one file.
#include "fuzz/Fuzz.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

int main(int lCount, char** arguments)
{
    std::vector<std::filesystem::path> colFiles;
    for (int lArgument = 1; lArgument < lCount; ++lArgument)
        for (const auto& entry : std::filesystem::directory_iterator(arguments[lArgument]))
            colFiles.push_back(entry.path());
    std::sort(colFiles.begin(), colFiles.end());
    for (const std::filesystem::path& cFile : colFiles)
    {
        std::printf("%s\n", cFile.c_str());
        std::fflush(stdout);
        std::ifstream file(cFile, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs\n", colFiles.size());
    return colFiles.empty() ? 1 : 0;
}
