// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "model/clsCat.h"
#include "platform/memory/MemoryPorts.h"
#include "rotation/PlayHistory.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

namespace ravlo::bench
{

// A media database with one hash look-up per cut.
class RadioDataBase final : public DataBase
{
public:
    void Add(const std::shared_ptr<Cut>& cCut)
    {
        m_colCuts.push_back(cCut);
        m_colByKey.emplace(cCut->Key(), cCut);
    }
    Cuts AllCuts() const override { return m_colCuts; }
    std::shared_ptr<Cut> CutByKey(const TextKey& cKey) const override
    {
        const auto it = m_colByKey.find(cKey);
        return it == m_colByKey.end() ? nullptr : it->second;
    }
    std::shared_ptr<Cut> CutByArtistTitle(const std::wstring&, const std::wstring&) const override
    {
        return nullptr;
    }
    std::shared_ptr<Cut> NewCut() const override;
    void Advise(DataBaseEvents& cEvents) override { m_cListener = &cEvents; }
    void Unadvise(DataBaseEvents&) noexcept override { m_cListener = nullptr; }
    // Calls the one listener.
    void AnnounceAdded(const Cuts& colCuts) { m_cListener->CutsAdded(colCuts); }

private:
    Cuts m_colCuts;
    std::unordered_map<TextKey, std::shared_ptr<Cut>> m_colByKey;
    DataBaseEvents* m_cListener = nullptr;
};

// Files that accept everything and keep only the last name appended to, so that only the library's own cost
// is measured.
class NoFiles : public Files
{
public:
    Presence PresenceOf(const std::wstring& sPath) const override
    {
        return sPath == m_sAppended ? Presence::Present : Presence::Absent;
    }
    Presence PresenceOfFolder(const std::wstring& sPath) const override
    {
        return sPath.ends_with(L".tmp") ? Presence::Absent : Presence::Present;
    }
    void CreateFolder(const std::wstring&) override {}
    std::vector<FileEntry> FilesIn(const std::wstring&) const override { return {}; }
    std::optional<FileStamp> StampOf(const std::wstring&) const override { return {}; }
    std::string ReadAll(const std::wstring&, Patience = Patience::UpToASecond) const override { return {}; }
    void WriteNew(const std::wstring&, std::string_view) override {}
    void Append(const std::wstring& sPath, std::string_view) override { m_sAppended = sPath; }
    void Rename(const std::wstring&, const std::wstring&, Patience = Patience::UpToASecond) override {}
    void Delete(const std::wstring&) override {}
    std::unique_ptr<HeldFile> HoldOpen(const std::wstring&) override { return std::make_unique<HeldFile>(); }
    std::wstring LibraryFolder() const override { return {}; }

private:
    std::wstring m_sAppended;
};

// A free-standing cut of a made-up library: ten cuts per artist, twelve per album, different titles.
std::shared_ptr<Cut> MadeUpCut(std::int64_t number);

// As MadeUpCut, in a typical station's library: six categories with four levels each, a third of the cuts in
// two categories.
std::shared_ptr<Cut> LibraryCut(std::int64_t number);

// A station with one level; all its cuts played a day ago.
struct Radio
{
    explicit Radio(std::int64_t cuts);
    // One station per size, built on first use and kept: building a large one takes longer than measuring it.
    static Radio& OfSize(std::int64_t cuts);

    MemoryPorts context;
    NoFiles cFiles;
    ModScheduler cMod{context.PortsWith(cFiles)};
    std::shared_ptr<RadioDataBase> cDataBase = std::make_shared<RadioDataBase>();
    PlayHistory cHistory{context.cClock, [](const RuntimeError&, bool) {}};
    std::shared_ptr<clsCat> cLevel = std::make_shared<clsCat>(cMod, L"Pop", 1);
};

} // namespace ravlo::bench
