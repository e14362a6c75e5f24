// SPDX-License-Identifier: MIT
#pragma once

#include "base/Text.h"
#include "scheduler/SchedulerEvents.h"
#include "scheduler/clsSchedMan.h"
#include "support/EngineTest.h"
#include "support/FakeDataBase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace ravlo::test
{

using Boxes = std::vector<ShownBox>;
using Lines = std::vector<std::wstring>;
using Keys = std::vector<std::wstring>;

constexpr const wchar_t* sOtherFolder = L"C:\\Other\\"; // of a second station

// A host that records the events it gets: "Start 3: reason", "Progress 20/60: text", "Done: status", "Help",
// "Edit key".
class HostEvents final : public SchedulerEvents
{
public:
    Lines colSaid;
    // Called with each line, after it is recorded: a host may do anything inside an event. May replace
    // itself.
    std::function<void(const std::wstring& sLine)> OnEvent;
    std::optional<std::int32_t> lEditAnswer;

    void ShowHelpEvent() override { Say(L"Help"); }
    void ProgressStart(const std::wstring& sReason, std::int32_t lMax) override
    {
        Say(L"Start " + std::to_wstring(lMax) + L": " + sReason);
    }
    void Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax) override
    {
        Say(L"Progress " + std::to_wstring(lCount) + L"/" + std::to_wstring(lMax) + L": " + strProgress);
    }
    void ProgressDone(const std::wstring& sStatus, const std::wstring& sDetail) override
    {
        Say(L"Done: " + sStatus + (sDetail.empty() ? L"" : L"|" + sDetail));
    }
    std::optional<std::int32_t> RequestEditCut(const std::shared_ptr<Cut>& cCut) override
    {
        Say(L"Edit " + cCut->Key().Text());
        return lEditAnswer;
    }

private:
    void Say(const std::wstring& sLine)
    {
        colSaid.push_back(sLine);
        if (const auto hook = OnEvent)
            hook(sLine);
    }
};

// A clock on which each look at the tick count takes some milliseconds.
class TickingClock final : public Clock
{
public:
    TickingClock(MemoryClock& cClock, std::uint32_t lMsALook) : m_cClock(cClock), m_lMsALook(lMsALook) {}
    DateTime Now() const override { return m_cClock.Now(); }
    std::uint32_t TickCount() const override
    {
        m_cClock.Advance(m_lMsALook);
        return m_cClock.TickCount();
    }

private:
    MemoryClock& m_cClock;
    std::uint32_t m_lMsALook;
};

// ---- history/ordering files, put together by hand

inline std::string SifText(const std::string& text) { return text + std::string(255 - text.size(), ' '); }

inline std::string SifLevel(std::int32_t lLevel)
{
    std::string bytes;
    for (int lShift = 0; lShift < 32; lShift += 8)
        bytes += static_cast<char>(static_cast<std::uint32_t>(lLevel) >> lShift & 0xFF);
    return bytes;
}

// The record of a cut.
inline std::string SifCut(const std::string& artist, const std::string& title, const std::string& path,
                          std::int32_t lLevel)
{
    return SifText(artist) + SifText(title) + SifText(path) + SifLevel(lLevel) + std::string(2, '\0') +
           std::string(1212, '\0');
}
// The record of a cut that FakeDataBase::Add has made.
inline std::string SifCut(const std::string& path, std::int32_t lLevel)
{
    return SifCut("Artist of " + path, "Title of " + path, path, lLevel);
}
// The records of such cuts, their paths separated by blanks.
inline std::string SifCuts(const std::string& paths, std::int32_t lLevel = 1)
{
    std::string bytes;
    std::istringstream cPaths(paths);
    for (std::string path; cPaths >> path;)
        bytes += SifCut(path, lLevel);
    return bytes;
}
// The record that only declares a level.
inline std::string SifMarker(std::int32_t lLevel)
{
    return std::string(765, '\0') + SifLevel(lLevel) + "\xFF\xFF" + std::string(1212, '\0');
}

// A file's records without the markers that precede their own level's cuts, as they are written ahead of a
// change.
inline std::string SifWithoutGuards(const std::string& bytes)
{
    constexpr std::size_t recordSize = 1983;
    std::string without;
    for (std::size_t at = 0; at < bytes.size(); at += recordSize)
    {
        const std::string record = bytes.substr(at, recordSize);
        const std::string next = bytes.substr(std::min(at + recordSize, bytes.size()), recordSize);
        const bool bGuards = record[769] != '\0' && next.size() == recordSize && next[769] == '\0' &&
                             record.compare(765, 4, next, 765, 4) == 0;
        if (!bGuards)
            without += record;
    }
    return without;
}

// Every level with its cuts in rotation order: "Rock 1: a b | Rock 2: | Pop 1: a". A main category without
// levels is its name.
inline std::wstring TreeText(const CatCollection& colMainCats)
{
    std::wstring sTree;
    for (const std::shared_ptr<clsCat>& cMainCat : colMainCats)
    {
        if (cMainCat->SubCats()->Empty())
            sTree += L" | " + cMainCat->CatName();
        for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
        {
            sTree += L" | " + cMainCat->CatName() + L" " + cSubCat->CatID() + L":";
            for (const std::shared_ptr<Cut>& cCut : *cSubCat->SchedCuts())
                sTree += L" " + cCut->Key().Text();
        }
    }
    return sTree.empty() ? sTree : sTree.substr(3);
}

// The keys that are among others too, in their order.
inline Keys Common(Keys colKeys, const Keys& colOthers)
{
    std::erase_if(colKeys, [&](const std::wstring& sKey) {
        return std::find(colOthers.begin(), colOthers.end(), sKey) == colOthers.end();
    });
    return colKeys;
}

// Runs an action at the next call of a hook, and not again.
inline void Once(std::function<void()>& hook, std::function<void()> action)
{
    hook = [&hook, action = std::move(action)] {
        const auto once = action;
        hook = nullptr;
        once();
    };
}

// ---- a manager and what it works on

inline std::wstring SifPath(const std::wstring& sName)
{
    return L"C:\\Radio\\Scheduler\\History_and_Ordering\\" + sName + L".sif";
}
inline constexpr const wchar_t* sMainCatsPath = L"C:\\Radio\\Scheduler\\MainCats.txt";
inline constexpr const wchar_t* sSettingsPath = L"C:\\Radio\\Scheduler\\SchedulerSettings.dat";

// A library with one manager, in the host's folder C:\Radio. Its files are those of cPorts unless others are
// given.
struct Library
{
    explicit Library(MemoryPorts& cPorts) : Library(cPorts, cPorts.cFiles) {}
    Library(MemoryPorts& cPorts, Files& cFiles) : cMod(cPorts.PortsWith(cFiles))
    {
        cSchedMan->SetEvents(&cHost);
    }
    ~Library()
    {
        if (cSchedMan)
            cSchedMan->SetEvents(nullptr);
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    void Populate(const std::wstring& sAppPath = sRadio)
    {
        cSchedMan->PopulateFromDataBase(cDataBase, sAppPath);
    }
    // Ends this manager, as a host does at the end of its day, and starts another one.
    void Restart(const std::wstring& sAppPath = sRadio)
    {
        cSchedMan = std::make_shared<clsSchedMan>(cMod);
        cSchedMan->SetEvents(&cHost);
        Populate(sAppPath);
    }
    // Ends this manager.
    void End()
    {
        if (cSchedMan)
            cSchedMan->SetEvents(nullptr);
        cSchedMan.reset();
    }
    // The cut that plays next from a level, which is named as name, TAB and number.
    std::shared_ptr<Cut> NextCut(const std::wstring& sSubCatKey, bool bMustBeOpener = false,
                                 bool bSave = true)
    {
        return cSchedMan->NextCutFromRotation({sSubCatKey, bMustBeOpener}, bSave).cCut;
    }
    std::wstring Pick(const std::wstring& sSubCatKey, bool bSave = true)
    {
        return NextCut(sSubCatKey, false, bSave)->Key().Text();
    }

    // Moves or copies cuts from one category or level to another.
    void Change(eCatDragOptions eOption, const std::shared_ptr<clsCat>& cFrom,
                const std::shared_ptr<clsCat>& cTo, const Cuts& colCuts)
    {
        bool bCreated = false;
        cSchedMan->DoMassCatChange(eOption, {cFrom}, cTo, colCuts, bCreated);
    }
    bool CreateMainCat(std::wstring sName) { return cSchedMan->CreateMainCat(sName); }
    bool Save(const std::wstring& sName) { return cSchedMan->SaveHistoryAndOrdering(MainCat(sName)); }
    bool SaveAll() { return cSchedMan->SaveHistoryAndOrdering(nullptr); }

    std::shared_ptr<clsCat> MainCat(const std::wstring& sName) const
    {
        const std::shared_ptr<clsCat>* cFound = cSchedMan->colMainCats()->Find(CategoryKey(sName, 0));
        return cFound ? *cFound : nullptr;
    }
    std::shared_ptr<clsCat> Level(const std::wstring& sName, std::int32_t lLevel) const
    {
        const std::shared_ptr<clsCat> cMainCat = MainCat(sName);
        return cMainCat ? cMainCat->SubCat(lLevel) : nullptr;
    }
    // The cuts of a level in rotation order; none when there is no such level.
    Cuts CutsOf(const std::wstring& sName, std::int32_t lLevel = 1) const
    {
        const std::shared_ptr<clsCat> cLevel = Level(sName, lLevel);
        return cLevel ? Cuts(cLevel->SchedCuts()->begin(), cLevel->SchedCuts()->end()) : Cuts();
    }
    // The keys of a level's cuts in rotation order.
    Keys Order(const std::wstring& sName, std::int32_t lLevel) const
    {
        Keys colKeys;
        for (const std::shared_ptr<Cut>& cCut : CutsOf(sName, lLevel))
            colKeys.push_back(cCut->Key().Text());
        return colKeys;
    }
    std::wstring Tree() const { return TreeText(*cSchedMan->colMainCats()); }
    // The names of the main categories, in order.
    Lines MainCatNames() const
    {
        Lines colNames;
        for (const std::shared_ptr<clsCat>& cMainCat : *cSchedMan->colMainCats())
            colNames.push_back(cMainCat->CatName());
        return colNames;
    }

    HostEvents cHost;
    ModScheduler cMod;
    std::shared_ptr<FakeDataBase> cDataBase = std::make_shared<FakeDataBase>();
    std::shared_ptr<clsSchedMan> cSchedMan = std::make_shared<clsSchedMan>(cMod);
};

} // namespace ravlo::test
