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

template <auto xMember, class... Arguments> int Forward(sqlite3_file* p, Arguments... arguments)
{
    return (Methods(p).*xMember)(Real(p), arguments...);
}
// As Forward, unless this operation is to fail.
template <auto xMember, class... Arguments> int Written(sqlite3_file* p, Arguments... arguments)
{
    const int lCode = Next(p);
    return lCode != SQLITE_OK ? lCode : Forward<xMember>(p, arguments...);
}
int Sync(sqlite3_file* p, int lFlags)
{
    static_cast<FaultyFile*>(p)->pVfs->OnFlush();
    return Written<&sqlite3_io_methods::xSync>(p, lFlags);
}
int ShmMap(sqlite3_file* p, int lPage, int lSize, int lExtend, void volatile** ppMemory)
{
    const int lThere = Methods(p).xShmMap(Real(p), lPage, lSize, 0, ppMemory);
    if (lThere != SQLITE_OK || lExtend == 0 || *ppMemory != nullptr)
        return lThere;
    const int lCode = static_cast<FaultyFile*>(p)->pVfs->GrowShared();
    return lCode != SQLITE_OK ? lCode : Methods(p).xShmMap(Real(p), lPage, lSize, lExtend, ppMemory);
}
void ShmBarrier(sqlite3_file* p) { Methods(p).xShmBarrier(Real(p)); }

using Io = sqlite3_io_methods;
const Io methods = {2,
                    &Forward<&Io::xClose>,
                    &Forward<&Io::xRead>,
                    &Written<&Io::xWrite>,
                    &Written<&Io::xTruncate>,
                    &Sync,
                    &Forward<&Io::xFileSize>,
                    &Forward<&Io::xLock>,
                    &Forward<&Io::xUnlock>,
                    &Forward<&Io::xCheckReservedLock>,
                    &Forward<&Io::xFileControl>,
                    &Forward<&Io::xSectorSize>,
                    &Forward<&Io::xDeviceCharacteristics>,
                    &ShmMap,
                    &Forward<&Io::xShmLock>,
                    &ShmBarrier,
                    &Forward<&Io::xShmUnmap>,
                    nullptr,
                    nullptr};

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
