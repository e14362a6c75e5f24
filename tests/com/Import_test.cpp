// SPDX-License-Identifier: MIT
// Imports of folders, playlists and other programs' tables, as hosts call them.
#include "com/Station.h"
#include "support/AudioBytes.h"

#include <fstream>

namespace ravlo
{
namespace
{

class ImportTest : public ComStationTest
{
protected:
    ImportTest()
    {
        std::filesystem::create_directory(Folder() / L"music");
        Put(L"music\\a.flac", audio::Flac({{"ARTIST", "Ann"}, {"TITLE", "One"}, {"GENRE", "Rock"}}));
        Put(L"music\\broken.m4a", "no audio");
        Put(L"list.m3u", "music/a.flac\nlist.m3u\n");
        Put(L"table.csv", "Performer;path\nBob;C:\\b.mp3\n;\n");
    }
    std::wstring Path(const std::wstring& sName) const { return (Folder() / sName).wstring(); }
    void Put(const std::wstring& sName, const std::string& bytes) const
    {
        std::ofstream(Folder() / sName, std::ios::binary) << bytes;
    }
    std::wstring Report() const { return Get(m_cDataBase, &_clsDataBase::get_LastImportReport); }
    // A late-bound call of a method of the database.
    Called CallLate(const wchar_t* sMember, std::vector<VARIANT> colArguments,
                    std::vector<NamedArgument> colNamed = {}) const
    {
        return Call(m_cDataBase.Get(), sMember, DISPATCH_METHOD, std::move(colArguments),
                    std::move(colNamed));
    }
    // What the handler says at each report of progress of an import of the folder; and how that import ends.
    HRESULT ImportHearing(const std::function<void()>& onProgress)
    {
        constexpr DISPID lProgress = 5;
        const auto cSink = NewObject<Sink>(DIID___clsDataBase);
        cSink->m_onEvent = [&](DISPID lEvent, DISPPARAMS&) {
            if (lEvent == lProgress)
                onProgress();
        };
        Advise(PointOf(m_cDataBase, DIID___clsDataBase), cSink);
        LONG lCuts = 0;
        const HRESULT hResult =
            Try(m_cDataBase, &_clsDataBase::ImportFolder, Path(L"music"), L"", false, &lCuts);
        cSink->m_onEvent = nullptr;
        return hResult;
    }
};

TEST_F(ImportTest, EarlyAndLateBoundCallsDoTheSame)
{
    const std::wstring sBroken = Path(L"music\\broken.m4a") + L": is no audio file, or damaged";
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::ImportFolder, Path(L"music"), L"Gold", true), 1);
    EXPECT_EQ(Report(), L"1 cut would be added, 0 changed, 0 unchanged, 1 file rejected.\r\nAdd " +
                            Path(L"music\\a.flac") + L": Ann - One [Gold]\r\n" + sBroken);
    EXPECT_EQ(Titles(AllCuts()), Texts{});
    Variant sFolder = Text(Path(L"music"));
    Called called = CallLate(L"ImportFolder", {ByReference(sFolder)});
    EXPECT_EQ(std::pair(called.hResult, called.cResult.lVal), std::pair(S_OK, LONG{1}));
    EXPECT_EQ(Report(), L"1 cut added, 0 changed, 0 unchanged, 1 file rejected.\r\n" + sBroken);

    Variant sFile = Text(Path(L"list.m3u"));
    Variant bTrial = Long(-1);
    EXPECT_EQ(CallLate(L"ImportPlaylist", {sFile}, {{L"bTrial", bTrial}}).hResult, S_OK);
    EXPECT_EQ(Report(), L"0 cuts would be added, 0 changed, 1 unchanged, 1 file rejected.\r\n" +
                            Path(L"list.m3u") + L": the playlist names itself, or is named twice");
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::ImportPlaylist, Path(L"list.m3u"), L"", false), 0);

    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::ImportMappedCsv, Path(L"table.csv"), L"artist=Performer", true),
              1);
    Variant sTable = Text(Path(L"table.csv"));
    Variant sMap = Text(L"artist=Performer");
    called = CallLate(L"ImportMappedCsv", {sTable, sMap});
    EXPECT_EQ(std::pair(called.hResult, called.cResult.lVal), std::pair(S_OK, LONG{1}));
    Called report = Call(m_cDataBase.Get(), L"LastImportReport", DISPATCH_PROPERTYGET);
    EXPECT_EQ(TextIn(report.cResult), Report());
    EXPECT_EQ(Get(Cut(L"b"), &_clsCut::get_Artist), L"Bob");
}

TEST_F(ImportTest, WhatCannotBeImportedIsOneClearSentence)
{
    const std::wstring sLong = Path(L"music\\" + std::wstring(1000, L'x'));
    const std::wstring sFile = Path(L"table.csv");
    const struct
    {
        const wchar_t* sMember;
        std::vector<std::wstring> colArguments;
        int lNumber;
        std::wstring sSentence;
    } cases[] = {
        {L"ImportFolder", {L""}, 52, L"\"\" is no file name."},
        {L"ImportFolder", {Path(L"gone")}, 76, L"The folder \"" + Path(L"gone") + L"\" was not found."},
        {L"ImportFolder", {sLong}, 76, L"The folder \"" + sLong + L"\" was not found."},
        {L"ImportFolder", {sFile}, 76, L"The folder \"" + sFile + L"\" was not found."},
        {L"ImportFolder", {L"CON"}, 52, L"\"CON\" is no file name."},
        {L"ImportPlaylist", {L""}, 52, L"\"\" is no file name."},
        {L"ImportPlaylist", {sLong}, 53, L"The file \"" + sLong + L"\" was not found."},
        {L"ImportPlaylist", {Path(L"music")}, 75, L"The file \"" + Path(L"music") + L"\" cannot be opened."},
        {L"ImportMappedCsv", {L"", L""}, 52, L"\"\" is no file name."},
        {L"ImportMappedCsv", {sLong, L""}, 53, L"The file \"" + sLong + L"\" was not found."},
        {L"ImportMappedCsv",
         {sFile, L"artist"},
         5,
         L"\"artist\" maps no column (expected: artist=Their name)."},
        {L"ImportMappedCsv", {sFile, L"colour=Performer"}, 5, L"\"colour\" is no column of a library."},
    };
    for (const auto& each : cases)
    {
        std::vector<Variant> colOwned;
        for (const std::wstring& sArgument : each.colArguments)
            colOwned.push_back(Text(sArgument));
        const Called called = CallLate(each.sMember, std::vector<VARIANT>(colOwned.begin(), colOwned.end()));
        EXPECT_EQ(called.hError, ErrorResult(each.lNumber)) << each.sSentence;
        EXPECT_EQ(called.sError, each.sSentence);
        EXPECT_EQ(called.sSource, L"RavloBase.clsDataBase");
    }
    LONG lCuts = 0;
    EXPECT_EQ(m_cDataBase->ImportFolder(nullptr, nullptr, VARIANT_FALSE, &lCuts), ErrorResult(52));
    EXPECT_EQ(Report(), L"Nothing was imported: \"\" is no file name.");
    EXPECT_EQ(m_cDataBase->ImportFolder(Bstr(Path(L"music")).Get(), nullptr, VARIANT_FALSE, nullptr),
              E_POINTER);
    EXPECT_EQ(Titles(AllCuts()), Texts{});
    Do(m_cDataBase, &_clsDataBase::CancelImport);
    Do(m_cDataBase, &_clsDataBase::Close);
    EXPECT_EQ(Try(m_cDataBase, &_clsDataBase::ImportFolder, Path(L"music"), L"", false, &lCuts),
              ErrorResult(91));
}

TEST_F(ImportTest, ProgressMayCancelAnImportButNotStartAnother)
{
    EXPECT_EQ(ImportHearing([&] { Do(m_cDataBase, &_clsDataBase::CancelImport); }), ErrorResult(18));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"The import was cancelled.");
    EXPECT_EQ(Report(), L"Nothing was imported: The import was cancelled.");
    EXPECT_EQ(Titles(AllCuts()), Texts{});
    int lRefused = 0;
    EXPECT_EQ(ImportHearing([&] {
                  LONG lCuts = 0;
                  EXPECT_EQ(Try(m_cDataBase, &_clsDataBase::ImportFolder, Path(L"music"), L"", false, &lCuts),
                            ErrorResult(5));
                  EXPECT_EQ(TakeErrorInfo().sDescription, L"An import is running already.");
                  ++lRefused;
              }),
              S_OK);
    EXPECT_EQ(lRefused, 2);
    EXPECT_EQ(Titles(AllCuts()), Texts{L"One"});
}

TEST_F(ImportTest, ClosingWithinAnImportEndsIt)
{
    EXPECT_EQ(ImportHearing([&] { Do(m_cDataBase, &_clsDataBase::Close); }), ErrorResult(91));
    Do(m_cDataBase, &_clsDataBase::Open, File());
    EXPECT_EQ(Titles(AllCuts()), Texts{});
}

TEST_F(ImportTest, PathsOfAnyLengthAreReadAndLockedFilesAreNamed)
{
    std::filesystem::remove(Folder() / L"music\\broken.m4a");
    const std::wstring sRoot = L"\\\\?\\" + Path(L"music");
    std::vector<std::wstring> colFolders{sRoot};
    for (const wchar_t c : {L'p', L'q', L'r', L's', L't'})
    {
        colFolders.push_back(colFolders.back() + L"\\" + std::wstring(200, c));
        ASSERT_TRUE(CreateDirectoryW(colFolders.back().c_str(), nullptr));
    }
    const std::wstring sDeep = colFolders.back() + L"\\b.flac";
    ASSERT_TRUE(CopyFileW(Path(L"music\\a.flac").c_str(), sDeep.c_str(), TRUE));
    const std::wstring sLocked = Path(L"music\\a.flac");
    const HANDLE hLocked =
        CreateFileW(sLocked.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::ImportFolder, Path(L"music"), L"", false), 1);
    CloseHandle(hLocked);
    EXPECT_EQ(Report(),
              L"1 cut added, 0 changed, 0 unchanged, 1 file rejected.\r\n" + sLocked + L": cannot be opened");
    EXPECT_EQ(Get(ItemAt<_clsCut>(AllCuts(), Long(1)), &_clsCut::get_Path), sDeep.substr(4));
    DeleteFileW(sDeep.c_str());
    for (std::size_t i = colFolders.size(); i-- > 1;)
        RemoveDirectoryW(colFolders[i].c_str());
}

} // namespace
} // namespace ravlo
