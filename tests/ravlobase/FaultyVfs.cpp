// SPDX-License-Identifier: MIT
#include "ravlobase/FaultyVfs.h"

#include <csignal>

namespace ravlo
{
namespace
{

struct FaultyFile : sqlite3_file
{
    FaultyVfs* pVfs;
    sqlite3_file* Real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

sqlite3_file* Real(sqlite3_file* pFile) { return static_cast<FaultyFile*>(pFile)->Real(); }
const sqlite3_io_methods& Methods(sqlite3_file* pFile) { return *Real(pFile)->pMethods; }
int Next(sqlite3_file* pFile) { return static_cast<FaultyFile*>(pFile)->pVfs->Next(); }

int Close(sqlite3_file* p) { return Methods(p).xClose(Real(p)); }
int Read(sqlite3_file* p, void* pBytes, int lCount, sqlite3_int64 lAt)
{
    return Methods(p).xRead(Real(p), pBytes, lCount, lAt);
}
int Write(sqlite3_file* p, const void* pBytes, int lCount, sqlite3_int64 lAt)
{
    const int lCode = Next(p);
    return lCode != SQLITE_OK ? lCode : Methods(p).xWrite(Real(p), pBytes, lCount, lAt);
}
int Truncate(sqlite3_file* p, sqlite3_int64 lSize)
{
    const int lCode = Next(p);
    return lCode != SQLITE_OK ? lCode : Methods(p).xTruncate(Real(p), lSize);
}
int Sync(sqlite3_file* p, int lFlags)
{
    static_cast<FaultyFile*>(p)->pVfs->OnFlush();
    const int lCode = Next(p);
    return lCode != SQLITE_OK ? lCode : Methods(p).xSync(Real(p), lFlags);
}
int FileSize(sqlite3_file* p, sqlite3_int64* pSize) { return Methods(p).xFileSize(Real(p), pSize); }
int Lock(sqlite3_file* p, int lLock) { return Methods(p).xLock(Real(p), lLock); }
int Unlock(sqlite3_file* p, int lLock) { return Methods(p).xUnlock(Real(p), lLock); }
int CheckReserved(sqlite3_file* p, int* pResult) { return Methods(p).xCheckReservedLock(Real(p), pResult); }
int FileControl(sqlite3_file* p, int lWhat, void* pArgument)
{
    return Methods(p).xFileControl(Real(p), lWhat, pArgument);
}
int SectorSize(sqlite3_file* p) { return Methods(p).xSectorSize(Real(p)); }
int Characteristics(sqlite3_file* p) { return Methods(p).xDeviceCharacteristics(Real(p)); }
int ShmMap(sqlite3_file* p, int lPage, int lSize, int lExtend, void volatile** ppMemory)
{
    const int lThere = Methods(p).xShmMap(Real(p), lPage, lSize, 0, ppMemory);
    if (lThere != SQLITE_OK || lExtend == 0 || *ppMemory != nullptr)
        return lThere;
    const int lCode = static_cast<FaultyFile*>(p)->pVfs->GrowShared();
    return lCode != SQLITE_OK ? lCode : Methods(p).xShmMap(Real(p), lPage, lSize, lExtend, ppMemory);
}
int ShmLock(sqlite3_file* p, int lOffset, int lCount, int lFlags)
{
    return Methods(p).xShmLock(Real(p), lOffset, lCount, lFlags);
}
void ShmBarrier(sqlite3_file* p) { Methods(p).xShmBarrier(Real(p)); }
int ShmUnmap(sqlite3_file* p, int lDelete) { return Methods(p).xShmUnmap(Real(p), lDelete); }

const sqlite3_io_methods methods = {
    2,        Close,         Read,        Write,      Truncate,        Sync,   FileSize, Lock,
    Unlock,   CheckReserved, FileControl, SectorSize, Characteristics, ShmMap, ShmLock,  ShmBarrier,
    ShmUnmap, nullptr,       nullptr};

} // namespace

FaultyVfs::FaultyVfs(int lGood, Fault eFault, int lCode)
    : m_pReal(sqlite3_vfs_find(nullptr)), m_vfs{*m_pReal, this}, m_lLeft(lGood), m_eFault(eFault),
      m_lCode(lCode)
{
    m_vfs.zName = "faulty";
    m_vfs.pNext = nullptr;
    m_vfs.szOsFile = static_cast<int>(sizeof(FaultyFile)) + m_pReal->szOsFile;
    m_vfs.xOpen = &OnOpen;
    sqlite3_vfs_register(&m_vfs, 1);
}

FaultyVfs::~FaultyVfs() { sqlite3_vfs_unregister(&m_vfs); }

int FaultyVfs::OnOpen(sqlite3_vfs* pVfs, const char* sName, sqlite3_file* pFile, int lFlags, int* pOutFlags)
{
    return static_cast<Vfs*>(pVfs)->pOwner->Open(sName, pFile, lFlags, pOutFlags);
}

int FaultyVfs::Open(const char* sName, sqlite3_file* pFile, int lFlags, int* pOutFlags)
{
    auto* pFaulty = static_cast<FaultyFile*>(pFile);
    pFaulty->pVfs = this;
    const int lCode = m_pReal->xOpen(m_pReal, sName, pFaulty->Real(), lFlags, pOutFlags);
    pFaulty->pMethods = pFaulty->Real()->pMethods != nullptr ? &methods : nullptr;
    return lCode;
}

int FaultyVfs::GrowShared()
{
    if (m_eFault == Fault::eKill || m_lLeft > 0)
        return SQLITE_OK;
    bMapped = true;
    return SQLITE_IOERR_SHMSIZE;
}

int FaultyVfs::Next()
{
    if (m_lLeft > 0)
    {
        --m_lLeft;
        return SQLITE_OK;
    }
    if (m_eFault == Fault::eKill)
        raise(SIGKILL);
    bFaulted = true;
    return m_lCode;
}

} // namespace ravlo
