// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <limits>

namespace ravlo
{

// While it lives, SQLite uses all files through it. After lGood writing operations (writes, flushes,
// truncations) each further one fails, as does shared memory that has to grow; or the process dies, as after
// a power cut. One at a time.
class FaultyVfs
{
public:
    enum class Fault
    {
        eFail,
        eKill,
    };
    FaultyVfs(int lGood, Fault eFault, int lCode = SQLITE_IOERR_WRITE);
    FaultyVfs(const FaultyVfs&) = delete;
    FaultyVfs& operator=(const FaultyVfs&) = delete;
    ~FaultyVfs();

    bool bFaulted = false;
    int lFlushes = 0;
    bool bMapped =
        false; // shared memory had to grow on the failing disk, which ends the program on some systems
    void FailAfter(int lGood) { m_lLeft = lGood; }
    void Repair() { FailAfter(std::numeric_limits<int>::max()); }

    // For SQLite's callbacks.
    int Next(); // the result code of the next writing operation
    void OnFlush() { ++lFlushes; }
    int GrowShared(); // the result code of the next growth
    int Open(const char* sName, sqlite3_file* pFile, int lFlags, int* pOutFlags);

private:
    struct Vfs : sqlite3_vfs
    {
        FaultyVfs* pOwner;
    };
    static int OnOpen(sqlite3_vfs* pVfs, const char* sName, sqlite3_file* pFile, int lFlags, int* pOutFlags);

    sqlite3_vfs* m_pReal;
    Vfs m_vfs;
    int m_lLeft;
    Fault m_eFault;
    int m_lCode;
};

} // namespace ravlo
