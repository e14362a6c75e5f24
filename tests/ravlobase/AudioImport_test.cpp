// SPDX-License-Identifier: MIT
#include "ravlobase/AudioImport.h"

#include "ravlobase/Support.h"
#include "support/AudioBytes.h"

#include <unistd.h>

namespace ravlo
{
namespace
{

namespace fs = std::filesystem;

std::string Song(const std::string& sArtist, const std::string& sTitle, const std::string& sGenre = "Rock")
{
    return audio::Flac({{"ARTIST", sArtist}, {"TITLE", sTitle}, {"GENRE", sGenre}});
}

class AudioImportTest : public StoreTest
{
protected:
    AudioImportTest() { fs::create_directory(m_cFolder.Path("music")); }

    std::wstring Music(const std::string& sName = "") const { return m_cFolder.File("music/" + sName); }
    void Put(const std::string& sName, const std::string& bytes) const
    {
        fs::create_directories(m_cFolder.Path("music/" + sName).parent_path());
        m_cFolder.WithBytes("music/" + sName, bytes);
    }
    // The summary and what follows it.
    std::wstring Import(const std::wstring& sCategory = L"", bool bTrial = false)
    {
        m_cStore.ImportFolder(Music(), sCategory, bTrial);
        return Report();
    }
    std::wstring ImportList(const std::string& bytes, const std::string& sName = "list.m3u")
    {
        m_cStore.ImportPlaylist(m_cFolder.WithBytes("music/" + sName, bytes));
        return Report();
    }
    // The report, with paths in the folder of music shortened and lines ended with LF.
    std::wstring Report() const { return Short(m_cStore.LastImportReport()); }
    std::wstring Short(std::wstring sText) const
    {
        for (const auto& [sFrom, sTo] : {std::pair<std::wstring, std::wstring>{Music(), L""}, {L"\r", L""}})
            for (auto at = sText.find(sFrom); at != std::wstring::npos; at = sText.find(sFrom))
                sText.replace(at, sFrom.size(), sTo);
        return sText;
    }
    // Artist, title, categories and length of each cut.
    Lines Cuts() const
    {
        Lines colLines;
        for (const auto& cCut : m_cStore.AllCuts())
            colLines.push_back(Short(cCut->Path()) + L": " + cCut->Artist() + L" - " + cCut->Title() + L" [" +
                               cCut->CategoryText() + L"] " + DecimalText(cCut->DurationmS()));
        return colLines;
    }
};

TEST_F(AudioImportTest, AFolderIsImportedInTheOrderOfItsNames)
{
    Put("b/one.flac", Song("Ann", "One"));
    Put("a.flac", Song("Bob", "Two", "Pop/Soul"));
    Put("cover.jpg", "no audio");
    EXPECT_EQ(Import(), L"2 cuts added, 0 changed, 0 unchanged, 0 files rejected.");
    EXPECT_EQ(Cuts(), (Lines{L"a.flac: Bob - Two [Pop-Soul] 1000", L"b/one.flac: Ann - One [Rock] 1000"}));
    ExpectStored();
}

TEST_F(AudioImportTest, TheFilesNameFillsWhatTheTagsLeaveOut)
{
    Put("Ann - One.wav", audio::Wav());
    Put("Bob.wav", audio::Wav());
    Put("12 - Three.flac", audio::Flac({{"TITLE", "Three"}}));
    Import(L"Gold");
    EXPECT_EQ(Cuts(), (Lines{L"12 - Three.flac:  - Three [Gold] 1000",
                             L"Ann - One.wav: Ann - One [Gold] 1000", L"Bob.wav:  - Bob [Gold] 1000"}));
}

TEST_F(AudioImportTest, AnUnchangedFileIsNotReadAgainAlsoAfterARestart)
{
    Put("a.flac", Song("Ann", "One"));
    Import();
    ByKey(Music("a.flac"))->SetTitle(L"By hand");
    Reopen();
    EXPECT_EQ(Import(), L"0 cuts added, 0 changed, 1 unchanged, 0 files rejected.");
    EXPECT_EQ(Cuts(), Lines{L"a.flac: Ann - By hand [Rock] 1000"});
    Put("a.flac", Song("Ann", "Retagged"));
    EXPECT_EQ(Import(), L"0 cuts added, 1 changed, 0 unchanged, 0 files rejected.");
    EXPECT_EQ(Cuts(), Lines{L"a.flac: Ann - Retagged [Rock] 1000"});
    ExpectStored();
}

TEST_F(AudioImportTest, CategoriesThatACutHasAreKept)
{
    Put("a.flac", Song("Ann", "One"));
    Import();
    ByKey(Music("a.flac"))->SetCategoryText(L"Night");
    Put("a.flac", Song("Ann", "Other", "Pop"));
    Import(L"Gold");
    EXPECT_EQ(Cuts(), Lines{L"a.flac: Ann - Other [Night] 1000"});
}

TEST_F(AudioImportTest, ATrialSaysWhatWouldChangeAndChangesNothing)
{
    Put("a.flac", Song("Ann", "One"));
    Import();
    const Lines colBefore = Cuts();
    Put("a.flac", Song("Ann", "Other"));
    Put("b.flac", Song("Bob", "Two"));
    Put("c.flac", "broken");
    auto& cRecorder = Listen();
    EXPECT_EQ(Import(L"", true), L"1 cut would be added, 1 changed, 0 unchanged, 1 file rejected.\n"
                                 L"Add b.flac: Bob - Two [Rock]\n"
                                 L"Change a.flac: Ann - Other [Rock]\n"
                                 L"c.flac: is no audio file, or damaged");
    EXPECT_EQ(Cuts(), colBefore);
    EXPECT_TRUE(cRecorder.colAdded.empty() && cRecorder.colModified.empty());
    EXPECT_EQ(Import(), L"1 cut added, 1 changed, 0 unchanged, 1 file rejected.\n"
                        L"c.flac: is no audio file, or damaged");
}

// Cancels an import at its second report.
class Canceller : public Recorder
{
public:
    explicit Canceller(Store& cStore) : m_cStore(cStore) {}
    void Progress(const std::wstring& sText, std::int32_t lCount, std::int32_t lMax) override
    {
        Recorder::Progress(sText, lCount, lMax);
        if (lCount == 2)
            m_cStore.CancelImport();
    }

private:
    Store& m_cStore;
};

TEST_F(AudioImportTest, ACancelledImportChangesNothing)
{
    for (int i = 0; i < 5; ++i)
        Put(std::to_string(i) + ".flac", Song("Ann", std::to_string(i)));
    {
        Canceller cCanceller(m_cStore);
        m_cStore.Advise(cCanceller);
        EXPECT_EQ(RaisedBy([&] { Import(); }), (Raised{error::UserInterrupt, L"The import was cancelled."}));
        EXPECT_EQ(cCanceller.colLines,
                  (Lines{L"start: Importing cuts 0", L"progress: Reading file 1 of 5 1/5",
                         L"progress: Reading file 2 of 5 2/5",
                         L"done: Importing cuts failed: The import was cancelled."}));
        m_cStore.Unadvise(cCanceller);
    }
    EXPECT_EQ(Report(), L"Nothing was imported: The import was cancelled.");
    EXPECT_EQ(Cuts(), Lines{});
    EXPECT_EQ(Import(), L"5 cuts added, 0 changed, 0 unchanged, 0 files rejected.") << "the next one runs";
}

// Starts another import at each report of one.
class Importer : public Recorder
{
public:
    Importer(Store& cStore, std::wstring sFolder) : m_cStore(cStore), m_sFolder(std::move(sFolder)) {}
    void Progress(const std::wstring&, std::int32_t, std::int32_t) override
    {
        colRaised.push_back(RaisedBy([&] { m_cStore.ImportFolder(m_sFolder); }));
    }
    std::vector<Raised> colRaised;

private:
    Store& m_cStore;
    std::wstring m_sFolder;
};

TEST_F(AudioImportTest, AnImportWithinAnImportIsRefusedAndTheFirstGoesOn)
{
    Put("a.flac", Song("Ann", "One"));
    Importer cImporter(m_cStore, Music());
    m_cStore.Advise(cImporter);
    EXPECT_EQ(Import(), L"1 cut added, 0 changed, 0 unchanged, 0 files rejected.");
    m_cStore.Unadvise(cImporter);
    EXPECT_EQ(cImporter.colRaised,
              (std::vector<Raised>{{error::InvalidProcedureCall, L"An import is running already."}}));
}

TEST_F(AudioImportTest, WhatCannotBeImportedIsOneClearErrorAndChangesNothing)
{
    const std::wstring sMissing = m_cFolder.File("missing");
    EXPECT_EQ(RaisedBy([&] { m_cStore.ImportFolder(sMissing); }),
              (Raised{error::PathNotFound, L"The folder \"" + sMissing + L"\" was not found."}));
    EXPECT_EQ(NumberRaisedBy([&] { m_cStore.ImportFolder(L""); }), error::BadFileName);
    EXPECT_EQ(NumberRaisedBy([&] { m_cStore.ImportFolder(Music(std::string(1000, 'x'))); }),
              error::PathNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { m_cStore.ImportPlaylist(sMissing); }), error::FileNotFound);
    Store::Batch cBatch(m_cStore);
    EXPECT_EQ(NumberRaisedBy([&] { Import(); }), error::InvalidProcedureCall);
    m_cStore.Close();
    EXPECT_EQ(NumberRaisedBy([&] { Import(); }), error::ObjectNotSet);
}

TEST_F(AudioImportTest, AFolderOrFileWithoutRightsIsNamedAndTheOthersAreImported)
{
    Put("a.flac", Song("Ann", "One"));
    Put("b.flac", Song("Ann", "Two"));
    Put("secret/c.flac", Song("Ann", "Three"));
    fs::permissions(m_cFolder.Path(""), fs::perms::all);
    fs::permissions(m_cFolder.Path("music/b.flac"), fs::perms::none);
    fs::permissions(m_cFolder.Path("music/secret"), fs::perms::none);
    constexpr uid_t nobody = 65534; // the super-user may read everything
    const bool bSuper = geteuid() == 0;
    ImportRows rows([](const std::wstring&, std::size_t, std::size_t) {});
    ASSERT_EQ(bSuper ? seteuid(nobody) : 0, 0);
    CollectFolder(Music(), {L"", [](const TextKey&) { return std::nullopt; }}, rows);
    ASSERT_EQ(bSuper ? seteuid(0) : 0, 0);
    fs::permissions(m_cFolder.Path("music/secret"), fs::perms::all);
    ASSERT_EQ(rows.colRows.size(), 1U);
    ASSERT_EQ(rows.colRejects.size(), 2U);
    EXPECT_EQ(Short(rows.colRejects[0].sFile + L": " + rows.colRejects[0].sReason),
              L"secret: the folder cannot be read");
    EXPECT_EQ(Short(rows.colRejects[1].sFile + L": " + rows.colRejects[1].sReason),
              L"b.flac: cannot be opened");
}

TEST_F(AudioImportTest, LongPathsAndTwinsButForTheCaseAreTaken)
{
    std::string sDeep;
    for (int i = 0; i < 5; ++i)
        sDeep += std::string(200, static_cast<char>('a' + i)) + "/";
    Put(sDeep + "one.flac", Song("Ann", "One"));
    Put("Two.flac", Song("Ann", "Two"));
    Put("two.flac", Song("Bob", "Two"));
    EXPECT_EQ(Import(), L"2 cuts added, 0 changed, 0 unchanged, 1 file rejected.\n"
                        L"two.flac: another file has the same name but for the case");
    Reopen();
    EXPECT_EQ(m_cStore.AllCuts().size(), 2U);
}

// --- playlists

TEST_F(AudioImportTest, APlaylistBringsItsFilesAndSaysWhatTheyDoNot)
{
    Put("a.flac", Song("Ann", "One"));
    Put("sub/b.wav", audio::Wav());
    EXPECT_EQ(
        ImportList("#EXTM3U\r\n#EXTINF:1,Other - Name\r\na.flac\r\n#EXTINF:2,Bob - Two\r\nsub\\b.wav\r\n"
                   "a.flac\r\n#EXTINF:205.5,Cid - Three\r\nfar/c.mp3\r\nfar/d.mp3\r\n"
                   "http://radio.example/stream.mp3\r\n"),
        L"3 cuts added, 0 changed, 0 unchanged, 2 files rejected.\n"
        L"far/d.mp3: was not found\n"
        L"http://radio.example/stream.mp3: is an address, not a file");
    EXPECT_EQ(Cuts(), (Lines{L"a.flac: Ann - One [Rock] 1000", L"sub/b.wav: Bob - Two [] 1000",
                             L"far/c.mp3: Cid - Three [] 205500"}));
}

TEST_F(AudioImportTest, APlaylistThatNamesItselfOrOthersIsReadOnce)
{
    Put("a.flac", Song("Ann", "One"));
    Put("other.m3u8", "a.flac\nlist.m3u\nmissing.M3U\n");
    EXPECT_EQ(ImportList("list.m3u\nother.m3u8\n"),
              L"1 cut added, 0 changed, 0 unchanged, 3 files rejected.\n"
              L"list.m3u: the playlist names itself, or is named twice\n"
              L"list.m3u: the playlist names itself, or is named twice\n"
              L"missing.M3U: The file \"missing.M3U\" was not found.");
}

TEST_F(AudioImportTest, APlaylistIsUtf8OrOfTheWesternCodePage)
{
    const auto names = [&](const std::string& bytes) {
        m_cStore.RemoveCuts(m_cStore.AllCuts());
        ImportList(bytes);
        return m_cStore.AllCuts().at(0)->Artist();
    };
    EXPECT_EQ(names("\xEF\xBB\xBF#EXTINF:9,Bj\xC3\xB6rk - X\nx.mp3\n"), L"Bj\u00F6rk");
    EXPECT_EQ(names("#EXTINF:9,Bj\xF6rk\x92s - X\nx.mp3\n"), L"Bj\u00F6rk\u2019s");
}

TEST(CategoryOfGenre, IsANameThatAFileMayHave)
{
    EXPECT_EQ(CategoryOfGenre(L"Pop/Rock: 80's?"), L"Pop-Rock- 80's-");
    EXPECT_EQ(CategoryOfGenre(L"etc. ."), L"etc");
    EXPECT_EQ(CategoryOfGenre(L"Con"), L"Con-");
}

} // namespace
} // namespace ravlo
