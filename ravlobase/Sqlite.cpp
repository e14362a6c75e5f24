// SPDX-License-Identifier: MIT
#include "ravlobase/Sqlite.h"

#include "base/RuntimeError.h"
#include "base/Utf8.h"

#include <algorithm>
#include <utility>

namespace ravlo::sqlite
{

namespace
{

// How long a write waits for another program's write. A play on air must not be delayed, and is retried
// later; an ordinary write of another program has ended by then.
constexpr int onAirmS = 250;
constexpr int commandmS = 5000; // longer than an import of a large library takes to write

// The head of SQLite's index of a write-ahead log (its file format, "WAL-index header"): 32-bit words in the
// byte order of the machine.
constexpr int indexPageSize = 32768;
constexpr std::size_t changeWord = 2;
constexpr std::size_t framesWord = 4;
constexpr std::size_t pagesWord = 5;

RuntimeError ErrorOf(int lCode, const std::wstring& sFile, const char* sMessage)
{
    const std::wstring sName = L"The database \"" + sFile + L"\" ";
    if (lCode == SQLITE_CONSTRAINT_FOREIGNKEY)
        return {error::PermissionDenied, sName + L"has lost this cut: another program has removed it."};
    if (lCode == SQLITE_IOERR_SHMSIZE)
        return ErrorOf(SQLITE_FULL, sFile, sMessage);
    switch (lCode & 0xFF)
    {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {error::PermissionDenied, sName + L"is being written to by another program."};
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return {error::PathFileAccess, sName + L"may not be written to."};
    case SQLITE_CANTOPEN:
        return {error::PathFileAccess, sName + L"cannot be opened."};
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return {error::InvalidFileFormat, sName + L"is damaged."};
    case SQLITE_FULL:
        return {error::DiskFull, sName + L"cannot grow: the disk is full."};
    case SQLITE_IOERR:
        return {error::DeviceIo, sName + L"could not be read or written."};
    case SQLITE_NOMEM:
        return {error::OutOfMemory, L"Out of memory"};
    case SQLITE_CONSTRAINT:
        // The store checks for the key in memory first, so only another program can have added it.
        return {error::KeyAlreadyExists,
                sName + L"has been given a cut with the same key by another program."};
    default:
        return {error::Internal, sName + L"failed: " + TextFromStore(sMessage)};
    }
}

} // namespace

Connection::Connection(const std::string& sPath, std::wstring sShown, Mode eMode)
    : m_sShown(std::move(sShown))
{
    sqlite3* pHandle = nullptr;
    const int lFlags = SQLITE_OPEN_READWRITE | (eMode == Mode::Create ? SQLITE_OPEN_CREATE : 0);
    const int lCode = sqlite3_open_v2(sPath.c_str(), &pHandle, lFlags, nullptr);
    m_pHandle.reset(pHandle);
    Check(lCode);
    sqlite3_extended_result_codes(pHandle, 1);
    sqlite3_busy_timeout(pHandle, onAirmS);
    // The file may come from anywhere: nothing in it may be executed.
    sqlite3_db_config(pHandle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(pHandle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_db_config(pHandle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(pHandle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
}

void Connection::Run(const char* sSql)
{
    Check(sqlite3_exec(m_pHandle.get(), sSql, nullptr, nullptr, nullptr));
}

std::int64_t Connection::Number(const char* sSql)
{
    Statement statement(*this, sSql);
    statement.Step();
    return statement.Number(0);
}

std::wstring Connection::Text(const char* sSql)
{
    Statement statement(*this, sSql);
    statement.Step();
    return statement.Text(0);
}

sqlite3_file* Connection::RawFile()
{
    sqlite3_file* pFile = nullptr;
    Check(sqlite3_file_control(m_pHandle.get(), "main", SQLITE_FCNTL_FILE_POINTER, &pFile));
    return pFile;
}

std::int64_t Connection::RawSize()
{
    sqlite3_file* pFile = RawFile();
    sqlite3_int64 size = 0;
    Check(pFile->pMethods->xFileSize(pFile, &size));
    return size;
}

std::string Connection::RawHead(std::size_t count)
{
    sqlite3_file* pFile = RawFile();
    std::string bytes(static_cast<std::size_t>(std::min(RawSize(), static_cast<std::int64_t>(count))), '\0');
    Check(pFile->pMethods->xRead(pFile, bytes.data(), static_cast<int>(bytes.size()), 0));
    return bytes;
}

std::optional<Connection::Log> Connection::WriteAheadLog()
{
    sqlite3_file* pFile = RawFile();
    void volatile* pIndex = nullptr;
    if (pFile->pMethods->iVersion < 2 ||
        pFile->pMethods->xShmMap(pFile, 0, indexPageSize, 0, &pIndex) != SQLITE_OK || pIndex == nullptr)
        return std::nullopt;
    const auto* pWords = static_cast<const std::uint32_t volatile*>(pIndex);
    return Log{pWords[changeWord], pWords[framesWord], pWords[pagesWord]};
}

void Connection::KeepLogOnClose(bool bKeep)
{
    Check(sqlite3_db_config(m_pHandle.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, bKeep ? 1 : 0, nullptr));
}

void Connection::Fail(int lCode) const
{
    throw ErrorOf(lCode, m_sShown, m_pHandle ? sqlite3_errmsg(m_pHandle.get()) : sqlite3_errstr(lCode));
}

void Connection::Check(int lCode) const
{
    if (lCode != SQLITE_OK)
        Fail(lCode);
}

Statement::Statement(Connection& cConnection, const std::string& sSql) : m_cConnection(cConnection)
{
    sqlite3_stmt* pStatement = nullptr;
    const int lCode = sqlite3_prepare_v3(cConnection.Handle(), sSql.c_str(), static_cast<int>(sSql.size()),
                                         SQLITE_PREPARE_PERSISTENT, &pStatement, nullptr);
    m_pStatement.reset(pStatement);
    cConnection.Check(lCode);
}

Statement& Statement::BindNumber(int position, std::int64_t value)
{
    m_cConnection.Check(sqlite3_bind_int64(m_pStatement.get(), position, value));
    return *this;
}

Statement& Statement::Bind(int position, double dValue)
{
    m_cConnection.Check(sqlite3_bind_double(m_pStatement.get(), position, dValue));
    return *this;
}

Statement& Statement::Bind(int position, std::wstring_view sValue)
{
    const std::string bytes = Utf8Of(sValue);
    m_cConnection.Check(sqlite3_bind_text64(m_pStatement.get(), position, bytes.data(), bytes.size(),
                                            SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

bool Statement::Step()
{
    const int lCode = sqlite3_step(m_pStatement.get());
    if (lCode == SQLITE_ROW)
        return true;
    sqlite3_reset(m_pStatement.get());
    if (lCode != SQLITE_DONE)
        m_cConnection.Fail(lCode);
    return false;
}

void Statement::Run()
{
    while (Step())
    {
    }
}

void Statement::Expect(int column, int lType) const
{
    if (sqlite3_column_type(m_pStatement.get(), column) != lType)
        m_cConnection.Fail(SQLITE_CORRUPT);
}

std::int64_t Statement::Number(int column) const
{
    Expect(column, SQLITE_INTEGER);
    return sqlite3_column_int64(m_pStatement.get(), column);
}

double Statement::Real(int column) const
{
    Expect(column, SQLITE_FLOAT);
    return sqlite3_column_double(m_pStatement.get(), column);
}

std::wstring Statement::Text(int column) const
{
    Expect(column, SQLITE_TEXT);
    const auto* pText = reinterpret_cast<const char*>(sqlite3_column_text(m_pStatement.get(), column));
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(m_pStatement.get(), column));
    return TextFromStore({pText, length});
}

Transaction::Transaction(Connection& cConnection, Wait eWait)
    : m_cConnection(cConnection), m_bOutermost(!cConnection.InTransaction())
{
    // Only the beginning waits: it takes the write lock.
    sqlite3_busy_timeout(cConnection.Handle(), eWait == Wait::Command ? commandmS : onAirmS);
    cConnection.Run(m_bOutermost ? "BEGIN IMMEDIATE" : "SAVEPOINT step");
    m_bOpen = true;
}

Transaction::~Transaction()
{
    if (m_bOpen)
        Undo();
}

void Transaction::Commit()
{
    m_cConnection.Run(m_bOutermost ? "COMMIT" : "RELEASE step");
    m_bOpen = false;
}

void Transaction::Undo() noexcept
{
    // A failing undo is ignored: SQLite undoes what was not committed when the file is next opened.
    sqlite3_exec(m_cConnection.Handle(), m_bOutermost ? "ROLLBACK" : "ROLLBACK TO step; RELEASE step",
                 nullptr, nullptr, nullptr);
}

} // namespace ravlo::sqlite
