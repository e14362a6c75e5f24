// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// SQLite as this folder uses it: connection, statement, transaction. Every failure is a RuntimeError.
namespace ravlo::sqlite
{

// One connection to one file. Statements must end before it does.
class Connection
{
public:
    // Opens an existing file for reading and writing, or creates one. Writes nothing before the first
    // statement. sPath is UTF-8; sShown is the name for error texts.
    enum class Mode
    {
        Existing,
        Create,
    };
    Connection(const std::string& sPath, std::wstring sShown, Mode eMode);

    // Runs statements that return no rows.
    void Run(const char* sSql);
    // The first column of the first row. Precondition: the statement returns one.
    std::int64_t Number(const char* sSql);
    std::wstring Text(const char* sSql);

    // The size of the file itself, and its first bytes (fewer when it is shorter), without touching a lock, a
    // journal or a page.
    std::int64_t RawSize();
    std::string RawHead(std::size_t count);
    // The state of the write-ahead log for a reader that begins now; nothing without a log. This is SQLite's
    // own index of the log, which other programs may be changing: it belongs to the state of the file that
    // was read between two equal results.
    struct Log
    {
        std::uint32_t changes; // counts the commits
        std::uint32_t frames;  // 0: the log contains nothing that counts
        std::uint32_t pages;   // the size of the database in pages, as of the log's last commit
        bool operator==(const Log&) const = default;
    };
    std::optional<Log> WriteAheadLog();
    // While set, closing keeps a write-ahead log instead of moving it into the file.
    void KeepLogOnClose(bool bKeep);

    sqlite3* Handle() const noexcept { return m_pHandle.get(); }
    bool InTransaction() const noexcept { return sqlite3_get_autocommit(m_pHandle.get()) == 0; }
    std::int64_t LastRowID() const noexcept { return sqlite3_last_insert_rowid(m_pHandle.get()); }
    std::int64_t ChangedRows() const noexcept { return sqlite3_changes(m_pHandle.get()); }

    // Throws the run-time error for a result code.
    [[noreturn]] void Fail(int lCode) const;
    void Check(int lCode) const;

private:
    sqlite3_file* RawFile();
    struct Closer
    {
        void operator()(sqlite3* pHandle) const noexcept { sqlite3_close(pHandle); }
    };
    std::wstring m_sShown;
    std::unique_ptr<sqlite3, Closer> m_pHandle;
};

// A prepared statement, which can run any number of times.
class Statement
{
public:
    Statement(Connection& cConnection, const std::string& sSql);

    // Parameters count from 1. Text is copied.
    template <std::integral Number> Statement& Bind(int position, Number value)
    {
        return BindNumber(position, static_cast<std::int64_t>(value));
    }
    Statement& Bind(int position, double dValue);
    Statement& Bind(int position, std::wstring_view sValue);

    // Returns true when there is a row, false when it is done and ready to run again.
    bool Step();
    // Runs it to its end.
    void Run();

    // Columns count from 0. A value of another type than the requested one means a damaged file: error 321.
    std::int64_t Number(int column) const;
    double Real(int column) const;
    std::wstring Text(int column) const;

private:
    Statement& BindNumber(int position, std::int64_t value);
    void Expect(int column, int lType) const;
    struct Finalizer
    {
        void operator()(sqlite3_stmt* pStatement) const noexcept { sqlite3_finalize(pStatement); }
    };
    Connection& m_cConnection;
    std::unique_ptr<sqlite3_stmt, Finalizer> m_pStatement;
};

// All or nothing: without Commit, everything written since construction is undone, also inside another
// transaction. The outermost one takes the file's write lock at once and throws error 70 when another program
// has it.
class Transaction
{
public:
    // How long the outermost one waits for another program's write to end.
    enum class Wait
    {
        OnAir,   // a quarter of a second: the caller may be on air and retries later
        Command, // five seconds: the work itself takes seconds
    };
    explicit Transaction(Connection& cConnection, Wait eWait = Wait::OnAir);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    void Commit();

private:
    void Undo() noexcept;
    Connection& m_cConnection;
    bool m_bOutermost;
    bool m_bOpen = false;
};

} // namespace ravlo::sqlite
