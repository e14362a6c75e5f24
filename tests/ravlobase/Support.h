// SPDX-License-Identifier: MIT
#pragma once

#include "base/Text.h"

#include "ravlobase/Store.h"
#include "support/Raised.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

using Lines = std::vector<std::wstring>;

// A new folder, which is removed at the end.
class StoreFolder
{
public:
    StoreFolder()
    {
        std::string sPattern = (std::filesystem::temp_directory_path() / "ravlobase-XXXXXX").string();
        m_cPath = mkdtemp(sPattern.data());
    }
    StoreFolder(const StoreFolder&) = delete;
    StoreFolder& operator=(const StoreFolder&) = delete;
    ~StoreFolder() { std::filesystem::remove_all(m_cPath); }

    std::filesystem::path Path(const std::string& sName) const { return m_cPath / sName; }
    std::wstring File(const std::string& sName) const
    {
        const auto bytes = Path(sName).string();
        return {bytes.begin(), bytes.end()};
    }
    std::wstring WithBytes(const std::string& sName, std::string_view bytes) const
    {
        std::ofstream(Path(sName), std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return File(sName);
    }
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_cPath))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    // Names and bytes, except those of SQLite's shared memory.
    std::map<std::string, std::string> Contents() const;

private:
    std::filesystem::path m_cPath;
};

inline std::string BytesOf(const std::wstring& sFile)
{
    std::ifstream file(std::filesystem::path(sFile), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline std::map<std::string, std::string> StoreFolder::Contents() const
{
    std::map<std::string, std::string> contents;
    for (const auto& sName : Names())
        if (!sName.ends_with("-shm"))
            contents[sName] = BytesOf(File(sName));
    return contents;
}

// Records what a database announces.
class Recorder : public DataBaseEvents
{
public:
    void CutsAdded(const Cuts& cuts) override { Note(L"added", colAdded, cuts); }
    void CutsModified(const Cuts& cuts) override { Note(L"modified", colModified, cuts); }
    void CutsRemoved(const Cuts& cuts) override { Note(L"removed", colRemoved, cuts); }
    void ProgressStart(const std::wstring& sReason, std::int32_t lMax) override
    {
        colLines.push_back(L"start: " + sReason + L" " + DecimalText(lMax));
    }
    void Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax) override
    {
        colLines.push_back(L"progress: " + strProgress + L" " + DecimalText(lCount) + L"/" +
                           DecimalText(lMax));
    }
    void ProgressDone(const std::wstring& sStatus) override { colLines.push_back(L"done: " + sStatus); }

    Lines colLines; // everything, in order
    Cuts colAdded;
    Cuts colModified;
    Cuts colRemoved;

private:
    void Note(const std::wstring& sWhat, Cuts& colInto, const Cuts& cuts)
    {
        std::wstring sLine = sWhat + L":";
        for (const auto& cCut : cuts)
            sLine += L" " + cCut->Key().Text();
        colLines.push_back(sLine);
        colInto = cuts;
    }
};

// The values of a cut that a database keeps, in one line.
inline std::wstring ValuesText(const Cut& cCut)
{
    std::wstring sText = cCut.Key().Text() + L"|" + cCut.Path() + L"|" + cCut.SecondaryKey() + L"|" +
                         cCut.Artist() + L"|" + cCut.Title() + L"|" + cCut.Album() + L"|" +
                         DecimalText(cCut.Year()) + L"|" + DecimalText(cCut.RunTimemS()) + L"|" +
                         DecimalText(cCut.DurationmS()) + L"|" + std::to_wstring(cCut.LastPlayed()) + L"|" +
                         (cCut.Opener() ? L"Y" : L"N") + L"|" + DecimalText(cCut.CatLevel()) + L"|";
    for (const auto& sName : cCut.CategoryNames())
        sText += L"[" + sName + L"]";
    return sText;
}

inline Lines ContentOf(const Store& cStore)
{
    Lines colLines;
    for (const auto& cCut : cStore.AllCuts())
        colLines.push_back(DecimalText(cCut->ID()) + L": " + ValuesText(*cCut));
    return colLines;
}

inline Lines ContentOf(const std::wstring& sFile)
{
    Store cStore;
    cStore.Open(sFile);
    return ContentOf(cStore);
}

inline Lines KeysOf(const Cuts& colCuts)
{
    Lines colKeys;
    for (const auto& cCut : colCuts)
        colKeys.push_back(cCut->Key().Text());
    return colKeys;
}

inline std::shared_ptr<Cut> CutNamed(const Store& cStore, const std::wstring& sKey,
                                     const std::wstring& sArtist = L"", const std::wstring& sTitle = L"")
{
    auto cCut = cStore.NewCut();
    cCut->SetKey(sKey);
    cCut->SetArtist(sArtist);
    cCut->SetTitle(sTitle);
    return cCut;
}

// A test with a folder and an open, empty database in it.
class StoreTest : public ::testing::Test
{
protected:
    StoreTest() { m_cStore.Open(m_sFile); }

    std::shared_ptr<Cut> Add(const std::wstring& sKey, const std::wstring& sArtist = L"",
                             const std::wstring& sTitle = L"")
    {
        auto cCut = CutNamed(m_cStore, sKey, sArtist, sTitle);
        m_cStore.AddCuts({cCut});
        return cCut;
    }
    std::shared_ptr<Cut> ByKey(const std::wstring& sKey) const { return m_cStore.CutByKey(TextKey(sKey)); }
    Recorder& Listen()
    {
        m_cStore.Advise(m_cRecorder);
        return m_cRecorder;
    }
    void Reopen()
    {
        m_cStore.Close();
        m_cStore.Open(m_sFile);
    }
    // Memory and file have the same cuts.
    void ExpectStored() const { EXPECT_EQ(ContentOf(m_sFile), ContentOf(m_cStore)); }
    Lines Keys() const { return KeysOf(m_cStore.AllCuts()); }
    std::shared_ptr<Cut> ByNames(const std::wstring& sArtist, const std::wstring& sTitle) const
    {
        return m_cStore.CutByArtistTitle(sArtist, sTitle);
    }

    StoreFolder m_cFolder;
    std::wstring m_sFile = m_cFolder.File("library.rdb");
    Recorder m_cRecorder;
    Store m_cStore;
};

} // namespace ravlo
