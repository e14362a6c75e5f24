// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "ravlobase/FilePath.h"
#include "ravlobase/Store.h"

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

// A folder of the test's own, gone with it.
class TempFolder
{
public:
    TempFolder()
    {
        std::string sPattern = (std::filesystem::temp_directory_path() / "ravlobase-XXXXXX").string();
        m_cPath = mkdtemp(sPattern.data());
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() { std::filesystem::remove_all(m_cPath); }

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

    // Names and bytes, but for SQLite's shared memory.
    std::map<std::string, std::string> Contents() const;

private:
    std::filesystem::path m_cPath;
};

inline std::string BytesOf(const std::wstring& sFile)
{
    std::ifstream file(FilePath(sFile), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline std::map<std::string, std::string> TempFolder::Contents() const
{
    std::map<std::string, std::string> contents;
    for (const auto& sName : Names())
        if (!sName.ends_with("-shm"))
            contents[sName] = BytesOf(File(sName));
    return contents;
}

// What the work raised; number 0 when it raised nothing.
struct Raised
{
    std::int32_t lNumber = 0;
    std::wstring sDescription;
};

template <class Work> Raised RaisedBy(Work work)
{
    try
    {
        work();
        return {};
    }
    catch (const RuntimeError& e)
    {
        return {e.Number(), e.Description()};
    }
}

template <class Work> std::int32_t NumberRaisedBy(Work work) { return RaisedBy(work).lNumber; }

// Writes down what a database announces.
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

    std::vector<std::wstring> colLines; // of everything, in order
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

inline std::vector<std::wstring> ContentOf(const Store& cStore)
{
    std::vector<std::wstring> colLines;
    for (const auto& cCut : cStore.AllCuts())
        colLines.push_back(DecimalText(cCut->ID()) + L": " + ValuesText(*cCut));
    return colLines;
}

inline std::vector<std::wstring> ContentOf(const std::wstring& sFile)
{
    Store cStore;
    cStore.Open(sFile);
    return ContentOf(cStore);
}

inline std::vector<std::wstring> KeysOf(const Cuts& colCuts)
{
    std::vector<std::wstring> colKeys;
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

    TempFolder m_cFolder;
    std::wstring m_sFile = m_cFolder.File("library.rdb");
    Recorder m_cRecorder;
    Store m_cStore;
};

} // namespace ravlo
