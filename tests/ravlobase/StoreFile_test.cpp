// SPDX-License-Identifier: MIT
// What the database does with files: foreign and damaged ones, failing disks, sudden ends, other programs.
#include "ravlobase/CutFile.h"

#include "ravlobase/FaultyVfs.h"
#include "ravlobase/Support.h"

#include <csignal>
#include <functional>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace ravlo
{
namespace
{

using namespace std::string_literals;
using Fault = FaultyVfs::Fault;

constexpr int lUnlimited = std::numeric_limits<int>::max();
constexpr std::size_t formatAt = 44; // SQLite's own format of the tables' descriptions, four bytes
constexpr std::size_t versionAt = 60;
constexpr std::size_t applicationAt = 68;

// An open database.
struct OpenStore : Store
{
    explicit OpenStore(const std::wstring& sFile) { Open(sFile); }
    std::shared_ptr<Cut> At(std::size_t position) const { return AllCuts().at(position); }
    void AddNamed(std::initializer_list<const wchar_t*> keys)
    {
        Cuts colCuts;
        for (const auto* sKey : keys)
            colCuts.push_back(CutNamed(*this, sKey));
        AddCuts(colCuts);
    }
    void PlayAll(DateTime dtWhen)
    {
        for (const auto& cCut : AllCuts())
            cCut->SetLastPlayed(dtWhen);
    }
};

void AddMany(Store& cStore, int lCuts, const std::wstring& sFolder)
{
    Cuts colCuts;
    for (int i = 0; i < lCuts; ++i)
    {
        colCuts.push_back(CutNamed(cStore, sFolder + DecimalText(i) + L".mp3",
                                   L"Artist " + DecimalText(i % 7), L"Title " + DecimalText(i)));
        colCuts.back()->SetCategoryText(L"pop/rock");
    }
    cStore.AddCuts(colCuts);
}

// A closed database with some cuts.
std::wstring SmallDatabase(const StoreFolder& cFolder, int lCuts = 20)
{
    OpenStore cStore(cFolder.File("small.rdb"));
    AddMany(cStore, lCuts, L"D:\\Music\\");
    return cStore.FileName();
}

Raised OpenRaises(const std::wstring& sFile)
{
    Store cStore;
    return RaisedBy([&] { cStore.Open(sFile); });
}

class StoreFileTest : public ::testing::Test
{
protected:
    void ExpectStored(const Store& cStore) const { EXPECT_EQ(ContentOf(m_sFile), ContentOf(cStore)); }
    // Replaces the database or its log.
    void Write(const std::string& bytes) const { m_cFolder.WithBytes("small.rdb", bytes); }
    void WriteLog(const std::string& bytes) const { m_cFolder.WithBytes("small.rdb-wal", bytes); }

    StoreFolder m_cFolder;
    std::wstring m_sFile = SmallDatabase(m_cFolder); // 20 cuts
    const std::string m_whole = BytesOf(m_sFile);
};

// Another process, which does its work in End. Its exit code is the number of the error that the work raises.
// Precondition: no database is open in this process (SQLite's own demand for a fork).
class Program
{
public:
    explicit Program(const std::function<void()>& work)
    {
        int pipes[2];
        if (pipe(pipes) != 0)
            std::abort();
        m_lPid = fork();
        if (m_lPid == 0)
        {
            close(pipes[1]);
            char c = 0;
            const auto lRead = read(pipes[0], &c, 1);
            _exit(lRead == 1 ? NumberRaisedBy(work) : 255);
        }
        close(pipes[0]);
        m_lGo = pipes[1];
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program()
    {
        if (m_lGo >= 0)
            End();
    }

    // Runs the work. Returns the number of the error it raised, 0 for none, -1 if the process was killed.
    int End()
    {
        const auto lWritten = write(m_lGo, "g", 1);
        close(std::exchange(m_lGo, -1));
        int lStatus = 0;
        waitpid(m_lPid, &lStatus, 0);
        EXPECT_EQ(lWritten, 1);
        return WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : -1;
    }

private:
    pid_t m_lPid;
    int m_lGo;
};

// --- files that are refused

// An opened file is refused with error 321 and keeps every byte, as do the files next to it.
class RefusedFileTest : public StoreFileTest
{
protected:
    // The description is: The file "..." reason; any if there is no reason given.
    void ExpectRefused(const std::wstring& sFile, const wchar_t* sReason = nullptr) const
    {
        const auto before = m_cFolder.Contents();
        const auto raised = OpenRaises(sFile);
        EXPECT_EQ(raised.lNumber, error::InvalidFileFormat);
        EXPECT_EQ(m_cFolder.Contents(), before);
        if (sReason)
        {
            EXPECT_EQ(raised.sDescription, L"The file \"" + sFile + L"\" " + sReason + L".");
        }
    }
    // A file with these bytes is refused if it cannot be opened. Returns whether it was.
    bool ExpectReadOrRefused(const std::string& bytes) const
    {
        Write(bytes);
        if (OpenRaises(m_sFile).lNumber == 0)
            return false;
        Write(bytes);
        ExpectRefused(m_sFile);
        return true;
    }
    sqlite::Connection Connect() const
    {
        return {m_cFolder.Path("small.rdb").string(), L"", sqlite::Connection::Mode::Existing};
    }
};

TEST_F(RefusedFileTest, NoDatabase)
{
    for (const auto& bytes : {std::string(), "x"s, "path,artist\na,b\n"s, std::string(5000, '\0')})
        ExpectRefused(m_cFolder.WithBytes("foreign", bytes), L"is no media database");
    for (const std::size_t zeros : {0, 83})
        ExpectRefused(m_cFolder.WithBytes("foreign", "SQLite format 3\0"s + std::string(zeros, '\0')),
                      L"is damaged");
}

TEST_F(RefusedFileTest, DatabaseAndLogOfAnotherProgram)
{
    sqlite::Connection cOther(m_cFolder.Path("other.db").string(), L"", sqlite::Connection::Mode::Create);
    cOther.Run("PRAGMA journal_mode = WAL; CREATE TABLE cuts(id INTEGER); INSERT INTO cuts VALUES(1)");
    ASSERT_FALSE(BytesOf(m_cFolder.File("other.db-wal")).empty());
    ExpectRefused(m_cFolder.File("other.db"), L"belongs to another program");
    EXPECT_EQ(cOther.Number("SELECT id FROM cuts"), 1);
}

TEST_F(RefusedFileTest, OtherVersion)
{
    auto bytes = m_whole;
    ASSERT_EQ(bytes.substr(applicationAt, 4), "RAVB");
    ASSERT_EQ(bytes[versionAt + 3], 2);
    const auto expectRefused = [&](char cVersion, const wchar_t* sReason) {
        bytes[versionAt + 3] = cVersion;
        Write(bytes);
        ExpectRefused(m_sFile, sReason);
    };
    expectRefused(3, L"was written by a newer version of this program");
    expectRefused(0, L"is damaged");
}

TEST_F(RefusedFileTest, CutOffAnywhere)
{
    std::vector<std::size_t> lengths = {0, 1, 15, 16, 17, 60, 71, 99, 100, 101, m_whole.size() - 1};
    for (std::size_t length = 512; length < m_whole.size(); length += 509)
        lengths.push_back(length);
    for (const auto length : lengths)
    {
        SCOPED_TRACE(length);
        Write(m_whole.substr(0, length));
        ExpectRefused(m_sFile);
    }
}

TEST_F(RefusedFileTest, WrongBytesAreReadOrRefused)
{
    constexpr unsigned lSeed = 4711;
    std::mt19937 random(lSeed);
    int lRefused = 0;
    for (int lRound = 0; lRound < 300; ++lRound)
    {
        SCOPED_TRACE(testing::Message() << "seed " << lSeed << " round " << lRound);
        auto bytes = m_whole;
        const std::size_t from = random() % bytes.size();
        for (std::size_t i = from; i < std::min(bytes.size(), from + 1 + random() % 40); ++i)
            bytes[i] = static_cast<char>(random());
        lRefused += ExpectReadOrRefused(bytes);
    }
    EXPECT_GT(lRefused, 20);
}

TEST_F(RefusedFileTest, TableAndIndexThatDisagree)
{
    const std::string key = "D:\\MUSIC\\13.MP3"; // in the table and in the index of unique keys
    int lPlaces = 0;
    for (auto at = m_whole.find(key); at != std::string::npos; at = m_whole.find(key, at + 1), ++lPlaces)
    {
        auto bytes = m_whole;
        bytes[at + 9] = '4';
        Write(bytes);
        ExpectRefused(m_sFile);
    }
    EXPECT_EQ(lPlaces, 2);
}

TEST_F(RefusedFileTest, ContentThatNoVersionHasWritten)
{
    for (const char* sChange : {
             "UPDATE cuts SET cut_key = '' WHERE id = 1",
             "PRAGMA ignore_check_constraints = ON; UPDATE cuts SET cat_level = 0 WHERE id = 1",
             "UPDATE cuts SET year = 5000000000 WHERE id = 1",
             "UPDATE cuts SET cut_key = 'd:\\music\\2.MP3' WHERE id = 1",
             "DELETE FROM cut_categories; UPDATE cuts SET id = 5000000000 WHERE id = 1",
             "DELETE FROM cut_categories; UPDATE cuts SET id = -1 WHERE id = 1",
             "PRAGMA foreign_keys = OFF; INSERT INTO cut_categories VALUES(999, 0, 'pop')",
             "PRAGMA foreign_keys = OFF; UPDATE cut_categories SET cut_id = 0 WHERE cut_id = 1",
             "ALTER TABLE cuts ADD COLUMN more TEXT",
             "DROP TABLE cut_categories",
         })
    {
        SCOPED_TRACE(sChange);
        Write(m_whole);
        Connect().Run(sChange);
        ExpectRefused(m_sFile);
    }
    Store cStore;
    EXPECT_EQ(NumberRaisedBy([&] { cStore.Open(m_sFile); }), error::InvalidFileFormat);
    EXPECT_FALSE(cStore.IsOpen());
    cStore.Open(m_cFolder.File("fresh.rdb")); // the object can still be used
    EXPECT_TRUE(cStore.AllCuts().empty());
}

TEST_F(RefusedFileTest, LogOfADamagedDatabase)
{
    {
        sqlite::Connection cOther = Connect();
        cOther.Run("UPDATE cuts SET cut_key = '' WHERE id = 1");
        m_cFolder.WithBytes("copy.rdb", BytesOf(m_sFile));
        m_cFolder.WithBytes("copy.rdb-wal", BytesOf(m_sFile + L"-wal"));
    }
    ASSERT_FALSE(BytesOf(m_cFolder.File("copy.rdb-wal")).empty());
    ExpectRefused(m_cFolder.File("copy.rdb"));
}

// SQLite reports some damage of the head as an error of no kind.
TEST_F(RefusedFileTest, DamagedHead)
{
    for (std::size_t at = 0; at < 100; ++at)
        for (const int lChange : {0x01, 0x5A, 0xFF})
        {
            SCOPED_TRACE(testing::Message() << at << " ^ " << lChange);
            auto bytes = m_whole;
            bytes[at] = static_cast<char>(bytes[at] ^ lChange);
            EXPECT_TRUE(ExpectReadOrRefused(bytes) || at != formatAt + 3);
        }
}

TEST_F(RefusedFileTest, BytesBehindTheEndWithAnyLog)
{
    for (const std::string log : {"", "no log"})
        for (const std::size_t more : {1, 4095, 4096, 10000})
        {
            Write(m_whole + std::string(more, 'x'));
            WriteLog(log);
            ExpectRefused(m_sFile, L"is damaged");
        }
}

// As after copying one station's files over another's.
TEST_F(RefusedFileTest, LogOfAnotherDatabase)
{
    std::filesystem::remove(m_cFolder.Path("small.rdb"));
    std::string log;
    {
        OpenStore cStore(SmallDatabase(m_cFolder, 500));
        cStore.At(400)->SetTitle(L"Other");
        log = BytesOf(m_sFile + L"-wal");
    }
    ASSERT_FALSE(log.empty());
    Write(m_whole);
    WriteLog(log);
    for (int lTime = 0; lTime < 2; ++lTime)
        ExpectRefused(m_sFile, L"and the log next to it do not belong together");
    std::filesystem::remove(m_cFolder.Path("small.rdb-wal"));
    EXPECT_EQ(ContentOf(m_sFile).size(), 20U) << "the database itself is sound";
}

// --- files of an older version

class OlderFileTest : public RefusedFileTest
{
protected:
    // Gives the file the tables of version 1.
    OlderFileTest()
    {
        Connect().Run("DROP TABLE plays; DROP TABLE imported_files; PRAGMA user_version = 1; VACUUM");
        m_old = BytesOf(m_sFile);
    }
    std::int64_t Version() const { return Connect().Number("PRAGMA user_version"); }

    std::string m_old;
};

TEST_F(OlderFileTest, IsBroughtUpToDateAndKeepsItsCuts)
{
    ASSERT_EQ(m_old[versionAt + 3], 1);
    for (int lTime = 0; lTime < 2; ++lTime)
    {
        OpenStore cStore(m_sFile);
        EXPECT_EQ(cStore.AllCuts().size(), 20U);
        cStore.PlayAll(45000 + lTime);
        const std::wstring sReport = cStore.PlaysCsv(0, 90000, L"cut");
        EXPECT_EQ(std::count(sReport.begin(), sReport.end(), L'\n'), 21);
    }
    EXPECT_EQ(Version(), 2);
}

TEST_F(OlderFileTest, ASuddenEndLeavesTheOldVersionOrTheNewOne)
{
    int lOld = 0;
    for (int lGood = 0, lEnd = -1; lEnd != 0; ++lGood)
    {
        Write(m_old);
        WriteLog("");
        Program cOpener([&] {
            FaultyVfs cVfs(lGood, Fault::eKill);
            OpenStore cStore(m_sFile);
        });
        lEnd = cOpener.End();
        lOld += Version() == 1;
        OpenStore cStore(m_sFile); // either way the file is whole
        EXPECT_EQ(cStore.AllCuts().size(), 20U) << lGood;
        EXPECT_NO_THROW(cStore.PlayAll(45000)) << lGood;
    }
    EXPECT_GT(lOld, 3);
}

TEST_F(OlderFileTest, AFileThatCanOnlyBeReadStaysAsItIs)
{
    namespace fs = std::filesystem;
    constexpr uid_t nobody = 65534; // the super-user may write everywhere
    fs::permissions(m_cFolder.Path(""), fs::perms::all);
    fs::permissions(m_cFolder.Path("small.rdb"), fs::perms::owner_read | fs::perms::others_read);
    Program cReader([&] {
        if (geteuid() == 0 && seteuid(nobody) != 0)
            std::abort();
        OpenStore cStore(m_sFile);
        EXPECT_EQ(cStore.PlaysCsv(0, 90000, L"artist"), L"artist,plays,duration,first,last\n");
        cStore.At(0)->SetYear(1);
    });
    EXPECT_EQ(cReader.End(), error::PathFileAccess) << "of the change only";
    EXPECT_EQ(Version(), 1);
}

TEST_F(OlderFileTest, WithATableOfANewerOneIsRefused)
{
    Connect().Run("CREATE TABLE plays(id INTEGER)");
    ExpectRefused(m_sFile);
}

// --- files that are opened

TEST_F(RefusedFileTest, SkipsCategoryNamesThatNoCutCanHave)
{
    Connect().Run("DELETE FROM cut_categories; INSERT INTO cut_categories VALUES"
                  "(1, 1, 'Rock'), (1, 2, ''), (1, 3, 'ROCK'), (1, 4, 'Pop'), (2, 1, 'rock')");
    OpenStore cStore(m_sFile);
    EXPECT_EQ(cStore.At(0)->CategoryNames(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(cStore.At(1)->CategoryNames(), Lines{L"rock"});
}

TEST_F(StoreFileTest, ALogWithoutAValidPageIsSkipped)
{
    for (const std::size_t size : {1, 32, 5000})
    {
        WriteLog(std::string(size, 'x'));
        EXPECT_EQ(ContentOf(m_sFile).size(), 20U) << size;
        EXPECT_EQ(m_cFolder.Names(), std::vector<std::string>{"small.rdb"});
    }
}

// --- names

TEST(StoreFile, TheFileNameMayContainAnyCharacter)
{
    StoreFolder cFolder;
    for (const auto* sName :
         {L"Bj\u00F6rk's \u65E5\u672C \U0001F600.rdb", L":memory:", L"a?mode=ro#x%20.rdb"})
    {
        const auto sFile = cFolder.File("") + sName;
        {
            OpenStore cStore(sFile);
            cStore.AddNamed({L"a"});
            EXPECT_EQ(cStore.FileName(), sFile);
        }
        EXPECT_EQ(ContentOf(sFile).size(), 1U);
    }
    EXPECT_EQ(cFolder.Names(), (std::vector<std::string>{
                                   ":memory:", "Bj\xC3\xB6rk's \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80.rdb",
                                   "a?mode=ro#x%20.rdb"}));
}

TEST(StoreFile, ABareNameMeansTheCurrentFolder)
{
    StoreFolder cFolder;
    const auto cBefore = std::filesystem::current_path();
    std::filesystem::current_path(cFolder.Path(""));
    for (const auto* sName : {L":memory:", L"file:x", L"plain"})
    {
        OpenStore cStore(sName);
    }
    std::filesystem::current_path(cBefore);
    EXPECT_EQ(cFolder.Names(), (std::vector<std::string>{":memory:", "file:x", "plain"}));
}

TEST(StoreFile, ANameThatCanBeNoneIsRefused)
{
    StoreFolder cFolder;
    std::filesystem::create_directory(cFolder.Path("folder"));
    const auto expectRefused = [](const std::wstring& sName, std::int32_t lNumber) {
        EXPECT_EQ(OpenRaises(sName).lNumber, lNumber) << ::testing::PrintToString(sName);
    };
    expectRefused(L"", error::BadFileName);
    expectRefused(cFolder.File("a") + std::wstring(1, L'\0') + L"b", error::BadFileName);
    expectRefused(cFolder.File("a") + wchar_t{0xD800}, error::BadFileName);
    expectRefused(cFolder.File("folder"), error::PathFileAccess);
    expectRefused(cFolder.File("missing/a.rdb"), error::PathNotFound);
    expectRefused(cFolder.File(std::string(300, 'x')), error::PathFileAccess);
    EXPECT_EQ(cFolder.Names(), std::vector<std::string>{"folder"});
}

// --- failing disks and sudden ends

class FailingDiskTest : public StoreFileTest
{
protected:
    // Does the work on the database again and again, the n-th writing operation failing, for every n until
    // none fails. Each time file and memory have to be as before or as after, and agree.
    void FailEverywhere(const std::function<void(OpenStore&)>& work)
    {
        FailEverywhere(SQLITE_IOERR_WRITE, error::DeviceIo, work);
        FailEverywhere(SQLITE_FULL, error::DiskFull, work);
    }

private:
    void FailEverywhere(int lCode, std::int32_t lNumber, const std::function<void(OpenStore&)>& work)
    {
        bool bFaulted = true;
        for (int lGood = 0; bFaulted; ++lGood)
        {
            SCOPED_TRACE(lGood);
            std::filesystem::remove(m_cFolder.Path("small.rdb-wal"));
            std::filesystem::remove(m_cFolder.Path("small.rdb-shm"));
            Write(m_whole);
            FaultyVfs cVfs(lUnlimited, Fault::eFail, lCode);
            Lines colMemory;
            std::int32_t lRaised = 0;
            {
                OpenStore cStore(m_sFile);
                cVfs.FailAfter(lGood);
                lRaised = NumberRaisedBy([&] { work(cStore); });
                colMemory = ContentOf(cStore);
            }
            EXPECT_TRUE(lRaised == 0 || lRaised == lNumber) << lRaised;
            EXPECT_EQ(colMemory == m_colBefore, lRaised != 0);
            bFaulted = cVfs.bFaulted;
            cVfs.Repair();
            EXPECT_EQ(ContentOf(m_sFile), colMemory);
        }
    }

    Lines m_colBefore = ContentOf(m_sFile);
};

std::string ImportBytes(int lRows)
{
    std::string bytes = "path,artist,categories\n";
    for (int i = 0; i < lRows; ++i)
        bytes += "D:\\Music\\" + std::to_string(i) + ".mp3,Other " + std::to_string(i) + ",jazz/blues\n";
    return bytes;
}

TEST_F(FailingDiskTest, LeavesOldOrNew)
{
    FailEverywhere([](OpenStore& cStore) { cStore.At(3)->SetArtist(L"Other"); });
    FailEverywhere([](OpenStore& cStore) { cStore.At(3)->SetCategoryText(L"x/y/z"); });
    FailEverywhere([](OpenStore& cStore) { cStore.AddNamed({L"a", L"b"}); });
    FailEverywhere([](OpenStore& cStore) { cStore.RemoveCuts(cStore.AllCuts()); });
    FailEverywhere([](OpenStore& cStore) {
        const auto cCopy = cStore.At(0)->CloneCut();
        cCopy->SetArtist(L"Other");
        cStore.ModifyCuts({cCopy});
    });
    FailEverywhere([](OpenStore& cStore) {
        Store::Batch cBatch(cStore);
        cStore.PlayAll(45000);
        cBatch.Commit();
    });
    const auto sCsv = m_cFolder.WithBytes("library.csv", ImportBytes(60));
    FailEverywhere([&](OpenStore& cStore) { cStore.ImportCsv(sCsv); });
}

TEST(StoreFile, AFailureThatEndsABatchUndoesAllOfItAndRefusesTheRest)
{
    StoreFolder cFolder;
    const auto sFile = SmallDatabase(cFolder, 3000);
    const auto colBefore = ContentOf(sFile);
    FaultyVfs cVfs(lUnlimited, Fault::eFail, SQLITE_FULL);
    OpenStore cStore(sFile);
    cVfs.FailAfter(0);
    {
        Store::Batch cBatch(cStore);
        sqlite3_soft_heap_limit64(1); // makes SQLite write before the end of the transaction
        std::int32_t lRaised = 0;
        for (const auto& cCut : cStore.AllCuts())
        {
            lRaised = NumberRaisedBy([&] { cCut->SetTitle(std::wstring(500, L'x')); });
            if (lRaised != 0)
                break;
        }
        sqlite3_soft_heap_limit64(0);
        EXPECT_EQ(lRaised, error::DiskFull);
        EXPECT_EQ(ContentOf(cStore), colBefore);
        EXPECT_EQ(NumberRaisedBy([&] { cStore.At(0)->SetYear(1); }), error::DeviceIo);
        EXPECT_EQ(NumberRaisedBy([&] { cBatch.Commit(); }), error::DeviceIo);
    }
    EXPECT_EQ(ContentOf(cStore), colBefore);
    cVfs.Repair();
    EXPECT_EQ(ContentOf(sFile), colBefore);
    cStore.At(0)->SetYear(1); // the batch is over, and the disk works again
    EXPECT_EQ(ContentOf(sFile), ContentOf(cStore));
}

// The shared memory of an open database is mapped, not written. On a full disk a system may still grant the
// mapping and end the program at its first use.
TEST_F(StoreFileTest, AFullDiskIsNoticedBeforeMemoryIsMapped)
{
    FaultyVfs cVfs(0, Fault::eFail, SQLITE_FULL);
    for (const auto& sName : {m_sFile, m_cFolder.File("new.rdb")})
    {
        EXPECT_EQ(OpenRaises(sName),
                  (Raised{error::DiskFull,
                          L"The database \"" + sName + L"\" cannot be opened: the disk is full."}));
        EXPECT_FALSE(cVfs.bMapped);
        EXPECT_EQ(m_cFolder.Names(), std::vector<std::string>{"small.rdb"});
        EXPECT_EQ(BytesOf(m_sFile), m_whole);
    }
    cVfs.FailAfter(1); // as when the last room goes right after the look at it
    EXPECT_EQ(OpenRaises(m_sFile).lNumber, error::DiskFull);
    EXPECT_TRUE(cVfs.bMapped);
    cVfs.Repair();
    EXPECT_EQ(OpenRaises(m_sFile).lNumber, 0);
}

TEST(StoreFile, AFailingDiskLeavesNoHalfMadeDatabase)
{
    for (int lGood = 0;; ++lGood)
    {
        StoreFolder cFolder;
        FaultyVfs cVfs(lGood, Fault::eFail);
        {
            Store cStore;
            const auto lRaised = NumberRaisedBy([&] { cStore.Open(cFolder.File("new.rdb")); });
            const auto lFailure = cVfs.bMapped ? error::DiskFull : error::DeviceIo;
            EXPECT_EQ(lRaised, cStore.IsOpen() ? 0 : lFailure) << lGood;
        }
        if (!cVfs.bFaulted)
            break;
        if (!std::filesystem::exists(cFolder.Path("new.rdb")))
        {
            EXPECT_EQ(cFolder.Names(), std::vector<std::string>{}) << lGood;
        }
        cVfs.Repair();
        EXPECT_EQ(OpenRaises(cFolder.File("new.rdb")).lNumber, 0) << lGood;
    }
}

// The process dies at the n-th writing operation, for every n until it lives.
TEST_F(StoreFileTest, ASuddenEndInTheMiddleOfAnImportLeavesOldOrNew)
{
    const auto sCsv = m_cFolder.WithBytes("library.csv", ImportBytes(200));
    const auto colBefore = ContentOf(m_sFile);
    int lOld = 0;
    for (int lGood = 0;; ++lGood)
    {
        Write(m_whole);
        Program cImporter([&] {
            FaultyVfs cVfs(lGood, Fault::eKill);
            OpenStore cStore(m_sFile);
            cStore.ImportCsv(sCsv);
        });
        const int lEnd = cImporter.End();
        const auto colAfter = ContentOf(m_sFile);
        if (colAfter == colBefore)
        {
            ++lOld;
            ASSERT_EQ(lEnd, -1) << lGood;
        }
        else
        {
            ASSERT_EQ(colAfter.size(), 200U) << lGood;
        }
        if (lEnd == 0)
            break;
    }
    EXPECT_GT(lOld, 3);
}

TEST(StoreFile, ASuddenEndWhileADatabaseIsMadeLeavesNoneOrAWholeOne)
{
    StoreFolder cFolder;
    for (int lGood = 0, lEnd = -1; lEnd != 0; ++lGood)
    {
        Program cMaker([&] {
            FaultyVfs cVfs(lGood, Fault::eKill);
            OpenStore cStore(cFolder.File("new.rdb"));
        });
        lEnd = cMaker.End();
        EXPECT_EQ(ContentOf(cFolder.File("new.rdb")), Lines{}) << lGood;
        EXPECT_EQ(cFolder.Names(), std::vector<std::string>{"new.rdb"})
            << lGood << ": what was left over is gone";
        std::filesystem::remove(cFolder.Path("new.rdb"));
    }
}

TEST_F(StoreFileTest, ChangesInTheLogAloneSurviveASuddenEnd)
{
    Program cPlayer([&] {
        OpenStore cStore(m_sFile);
        AddMany(cStore, 500, L"D:\\New\\");
        cStore.At(0)->SetLastPlayed(45000.5);
        raise(SIGKILL);
    });
    EXPECT_EQ(cPlayer.End(), -1);
    EXPECT_GT(m_cFolder.Names().size(), 1U) << "it is in the log";
    for (int lTime = 0; lTime < 2; ++lTime)
    {
        const Lines colContent = ContentOf(m_sFile);
        EXPECT_EQ(colContent.size(), 520U);
        EXPECT_NE(colContent[0].find(L"|45000.500000|"), std::wstring::npos);
        EXPECT_EQ(m_cFolder.Names(), std::vector<std::string>{"small.rdb"});
    }
}

// --- other programs

TEST_F(StoreFileTest, WhileOneProgramWritesAnotherReadsButItsWritesRaiseError70)
{
    Program cReader([&] { throw RuntimeError(static_cast<std::int32_t>(ContentOf(m_sFile).size())); });
    Program cWriter([&] {
        OpenStore cStore(m_sFile);
        const Raised expected{error::PermissionDenied,
                              L"The database \"" + m_sFile + L"\" is being written to by another program."};
        const auto refused = [&](const std::function<void()>& write) { return RaisedBy(write) == expected; };
        cStore.BeginGathering();
        cStore.At(0)->SetLastPlayed(45000);
        if (refused([&] { cStore.At(0)->SetArtist(L"Second"); }) &&
            refused([&] { Store::Batch cBatch(cStore); }) && refused([&] { cStore.WriteGathered(); }) &&
            cStore.At(0)->Artist() == L"Artist 0" && cStore.At(0)->LastPlayed() == 45000)
            throw RuntimeError(expected.lNumber);
    });
    OpenStore cStore(m_sFile);
    Store::Batch cBatch(cStore);
    cStore.At(0)->SetArtist(L"First");
    EXPECT_EQ(cReader.End(), 20);
    EXPECT_EQ(cWriter.End(), error::PermissionDenied);
    cBatch.Commit();
    ExpectStored(cStore);
}

// --- gathered plays

TEST_F(StoreFileTest, EachChangeIsAFlushAndGatheredPlaysAreOneTogether)
{
    FaultyVfs cVfs(lUnlimited, Fault::eFail);
    OpenStore cStore(m_sFile);
    const auto flushesOf = [&](const std::function<void()>& work) {
        const int lBefore = cVfs.lFlushes;
        work();
        return cVfs.lFlushes - lBefore;
    };
    EXPECT_GT(flushesOf([&] { cStore.At(0)->SetYear(1); }), 0) << "with the head of the log";
    for (int i = 2; i < 5; ++i)
        EXPECT_EQ(flushesOf([&] { cStore.At(0)->SetYear(i); }), 1) << "each change by itself";
    cStore.BeginGathering();
    EXPECT_EQ(flushesOf([&] { cStore.At(0)->SetYear(5); }), 1) << "only plays are gathered";
    EXPECT_EQ(flushesOf([&] { cStore.PlayAll(45000.25); }), 0);
    EXPECT_EQ(cStore.At(7)->LastPlayed(), 45000.25);
    EXPECT_EQ(flushesOf([&] { cStore.WriteGathered(); }), 1);
    EXPECT_EQ(flushesOf([&] { cStore.WriteGathered(); }), 0) << "nothing is left to write";
    cStore.At(3)->SetLastPlayed(45001);
    EXPECT_EQ(flushesOf([&] { cStore.EndGathering(); }), 1);
    EXPECT_EQ(flushesOf([&] { cStore.At(4)->SetLastPlayed(45002); }), 1) << "at once again";
    ExpectStored(cStore);
    cStore.BeginGathering();
    cStore.At(0)->SetLastPlayed(45003);
    const auto colMemory = ContentOf(cStore);
    cStore.Close();
    EXPECT_EQ(ContentOf(m_sFile), colMemory) << "closing writes them";
}

TEST_F(StoreFileTest, AnyFailingWriteKeepsThePlaysGathered)
{
    for (int lGood = 0, lRaised = -1; lRaised != 0; ++lGood)
    {
        Write(m_whole);
        FaultyVfs cVfs(lUnlimited, Fault::eFail);
        OpenStore cStore(m_sFile);
        cStore.BeginGathering();
        cStore.PlayAll(45000.25);
        const auto colMemory = ContentOf(cStore);
        cVfs.FailAfter(lGood);
        lRaised = NumberRaisedBy([&] { cStore.EndGathering(); });
        EXPECT_EQ(ContentOf(cStore), colMemory) << lGood;
        cVfs.Repair();
        cStore.EndGathering();
        EXPECT_EQ(ContentOf(m_sFile), colMemory) << lGood;
    }
}

TEST_F(StoreFileTest, GatheredPlaysLeaveTheFileToOtherProgramsBetweenWrites)
{
    Program cWriter([&] {
        OpenStore cStore(m_sFile);
        cStore.At(1)->SetArtist(L"Second");
        cStore.RemoveCuts({cStore.At(2)});
    });
    OpenStore cStore(m_sFile);
    cStore.BeginGathering();
    cStore.PlayAll(45000);
    EXPECT_EQ(cWriter.End(), 0);
    cStore.EndGathering(); // a cut that is gone keeps none of the others out
    const auto colContent = ContentOf(m_sFile);
    ASSERT_EQ(colContent.size(), 19U);
    for (const auto& sLine : colContent)
        EXPECT_NE(sLine.find(L"|45000.000000|"), std::wstring::npos) << ::testing::PrintToString(sLine);
    EXPECT_NE(colContent[1].find(L"|Second|"), std::wstring::npos);
}

TEST_F(StoreFileTest, TwoProgramsMayWriteInTurn)
{
    Program cWriter([&] {
        OpenStore cStore(m_sFile);
        cStore.At(0)->SetAlbum(L"Second");
        cStore.AddNamed({L"second"});
        cStore.RemoveCuts({cStore.At(1)});
    });
    OpenStore cStore(m_sFile);
    cStore.At(0)->SetArtist(L"First");
    EXPECT_EQ(cWriter.End(), 0);
    cStore.At(0)->SetTitle(L"First");

    const auto Conflict = [&](const std::function<void()>& work) {
        const auto colBefore = ContentOf(cStore);
        const auto lRaised = NumberRaisedBy(work);
        EXPECT_EQ(ContentOf(cStore), colBefore);
        return lRaised;
    };
    const auto cGone = cStore.At(1);
    EXPECT_EQ(Conflict([&] { cGone->SetArtist(L"x"); }), error::PermissionDenied);
    EXPECT_EQ(Conflict([&] { cGone->SetCategoryText(L"x"); }), error::PermissionDenied);
    EXPECT_EQ(Conflict([&] { cStore.AddNamed({L"SECOND"}); }), error::KeyAlreadyExists);
    EXPECT_EQ(cStore.RemoveCuts({cGone}), 1) << "gone is gone";

    cStore.Close();
    cStore.Open(m_sFile);
    EXPECT_EQ(cStore.At(0)->Album(), L"Second");
    EXPECT_EQ(cStore.At(0)->Artist(), L"First");
    EXPECT_EQ(cStore.At(0)->Title(), L"First");
    EXPECT_EQ(cStore.AllCuts().size(), 20U);
}

// --- changes of other programs

class SharedStoreTest : public StoreFileTest
{
protected:
    SharedStoreTest() { m_cStore.Advise(m_cRecorder); }

    Recorder m_cRecorder;
    OpenStore m_cStore{m_sFile};
    OpenStore m_cOther{m_sFile};
};

TEST_F(SharedStoreTest, TakesInAndAnnouncesWhatAnotherProgramChanged)
{
    const auto cChanged = m_cStore.At(3);
    const auto cGone = m_cStore.At(5);
    m_cOther.At(3)->SetArtist(L"Other");
    m_cOther.At(3)->SetCategoryText(L"jazz");
    m_cOther.RemoveCuts({m_cOther.At(5)});
    m_cOther.AddCuts({CutNamed(m_cOther, L"new", L"N", L"T")});
    EXPECT_EQ(m_cStore.TakeInChanges(), 3);
    EXPECT_EQ(ContentOf(m_cStore), ContentOf(m_cOther));
    EXPECT_EQ(m_cRecorder.colLines,
              (Lines{L"removed: D:\\Music\\5.mp3", L"added: new", L"modified: D:\\Music\\3.mp3"}));
    EXPECT_EQ(m_cRecorder.colModified, Cuts{cChanged}) << "the same object as before";
    EXPECT_EQ(m_cRecorder.colRemoved, Cuts{cGone});
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"Other", L"Title 3"), cChanged);
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"N", L"T"), m_cRecorder.colAdded.at(0));
    m_cRecorder.colAdded.at(0)->SetYear(1999); // it is the database's own
    cGone->SetYear(1999);                      // it is nobody's any more
    EXPECT_EQ(ContentOf(m_sFile), ContentOf(m_cStore));
}

TEST_F(SharedStoreTest, OwnChangesAndNoChangesAreNoNewsAndABatchIsNotDisturbed)
{
    EXPECT_EQ(m_cStore.TakeInChanges(), 0);
    m_cStore.At(3)->SetArtist(L"Own");
    EXPECT_EQ(m_cStore.TakeInChanges(), 0);
    m_cOther.At(4)->SetArtist(L"x");
    m_cOther.At(4)->SetArtist(L"Artist 4");
    EXPECT_EQ(m_cStore.TakeInChanges(), 0);
    EXPECT_EQ(m_cRecorder.colLines, Lines{});
    m_cOther.At(4)->SetYear(1999);
    {
        Store::Batch cBatch(m_cStore);
        EXPECT_EQ(m_cStore.TakeInChanges(), 0);
    }
    EXPECT_EQ(m_cStore.TakeInChanges(), 1);
}

TEST_F(SharedStoreTest, CutsHaveTheFilesOrderAndAReplacedOneIsRemovedAndAdded)
{
    m_cOther.AddNamed({L"z"});
    m_cStore.AddNamed({L"a"});
    m_cOther.AddNamed({L"y"});
    EXPECT_EQ(m_cStore.TakeInChanges(), 2);
    ExpectStored(m_cStore);
    const auto cOld = m_cStore.At(0);
    m_cOther.RemoveCuts({m_cOther.At(0)});
    m_cOther.AddNamed({cOld->Key().Text().c_str()});
    EXPECT_EQ(m_cStore.TakeInChanges(), 2);
    EXPECT_NE(m_cStore.CutByKey(cOld->Key()), cOld);
    ExpectStored(m_cStore);
}

TEST_F(SharedStoreTest, GatheredPlaysAreNewerThanTheFile)
{
    m_cStore.BeginGathering();
    m_cStore.At(2)->SetLastPlayed(45000);
    m_cOther.At(2)->SetYear(1999);
    m_cOther.At(4)->SetLastPlayed(44000);
    EXPECT_EQ(m_cStore.TakeInChanges(), 2);
    EXPECT_EQ(m_cStore.At(2)->LastPlayed(), 45000);
    EXPECT_EQ(m_cStore.At(2)->Year(), 1999);
    m_cStore.EndGathering();
    EXPECT_EQ(ContentOf(m_sFile), ContentOf(m_cStore));
}

TEST_F(SharedStoreTest, AListenerMayCloseTheDatabase)
{
    struct Closer : Recorder
    {
        explicit Closer(Store& cStoreIn) : cStore(cStoreIn) {}
        void CutsAdded(const Cuts&) override { cStore.Close(); }
        Store& cStore;
    };
    Closer cCloser(m_cStore);
    m_cStore.Advise(cCloser);
    m_cOther.AddNamed({L"new"});
    m_cOther.At(4)->SetYear(1999);
    EXPECT_EQ(m_cStore.TakeInChanges(), 2);
    EXPECT_FALSE(m_cStore.IsOpen());
    m_cStore.Unadvise(cCloser);
}

} // namespace
} // namespace ravlo
