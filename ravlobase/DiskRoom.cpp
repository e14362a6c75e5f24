// SPDX-License-Identifier: MIT
#include "ravlobase/DiskRoom.h"

#include "base/RuntimeError.h"

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

namespace ravlo::sqlite
{

namespace
{

// Its shared memory takes 32 kB at first, its log a header; both are twice there for a moment at worst.
constexpr int lRoom = 96 * 1024;

// A name that no other program uses at the same time.
std::string ScratchName(const std::string& sPath)
{
    constexpr char sDigits[] = "0123456789abcdef";
    std::array<unsigned char, 4> bytes{};
    sqlite3_randomness(static_cast<int>(bytes.size()), bytes.data());
    std::string sName = sPath + "-";
    for (const unsigned char byte : bytes)
        sName += {sDigits[byte >> 4], sDigits[byte & 15]};
    return sName + ".room~";
}

// A file name in the form that SQLite's file layer needs.
struct SqliteName
{
    explicit SqliteName(const std::string& sName)
        : pName(sqlite3_create_filename(sName.c_str(), "", "", 0, nullptr))
    {
    }
    SqliteName(const SqliteName&) = delete;
    SqliteName& operator=(const SqliteName&) = delete;
    ~SqliteName() { sqlite3_free_filename(pName); }
    sqlite3_filename pName;
};

// Uses SQLite's own file layer, as all access to a database does.
int FillScratch(sqlite3_vfs& vfs, const std::string& sName)
{
    const SqliteName name(sName);
    if (name.pName == nullptr)
        return SQLITE_NOMEM;
    std::vector<std::max_align_t> place(static_cast<std::size_t>(vfs.szOsFile) / sizeof(std::max_align_t) +
                                        1);
    auto* pFile = reinterpret_cast<sqlite3_file*>(place.data());
    constexpr int lFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_EXCLUSIVE |
                           SQLITE_OPEN_DELETEONCLOSE | SQLITE_OPEN_TEMP_JOURNAL;
    int lCode = vfs.xOpen(&vfs, name.pName, pFile, lFlags, nullptr);
    if (pFile->pMethods == nullptr)
        return lCode;
    if (lCode == SQLITE_OK)
    {
        const std::vector<char> bytes(lRoom, 'r'); // no zeros: a file system may store those without room
        lCode = pFile->pMethods->xWrite(pFile, bytes.data(), lRoom, 0);
    }
    pFile->pMethods->xClose(pFile);
    return lCode;
}

} // namespace

void NeedRoomBeside(const std::string& sPath, const std::wstring& sShown)
{
    sqlite3_vfs* pVfs = sqlite3_vfs_find(nullptr);
    // Any other failure, such as a folder without write permission, is reported by the opening itself.
    if (FillScratch(*pVfs, ScratchName(sPath)) == SQLITE_FULL)
        throw RuntimeError(error::DiskFull,
                           L"The database \"" + sShown + L"\" cannot be opened: the disk is full.");
}

} // namespace ravlo::sqlite
