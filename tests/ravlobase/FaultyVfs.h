// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <limits>

namespace ravlo
{

// While it lives, every SQLite file goes through it: the operation after lGood writing ones (writes, flushes,
// truncations) fails, and so do all later ones, as does shared memory that has to grow; or the process dies
// there, as by a power switch. One at a time.
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
        false; // shared memory was to grow on the failing disk, which ends the program on some systems
    void FailAfter(int lGood) { m_lLeft = lGood; }
    void Repair() { m_lLeft = std::numeric_limits<int>::max(); } // from here on nothing fails

    // For SQLite's callbacks.
    int Next(); // the result code of the coming writing operation
    void OnFlush() { ++lFlushes; }
    int GrowShared(); // the result code of the coming growth
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
