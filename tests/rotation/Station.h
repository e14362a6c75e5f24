// SPDX-License-Identifier: MIT
#pragma once

#include "base/Text.h"
#include "model/clsCat.h"
#include "platform/memory/MemoryPorts.h"
#include "rotation/PlayHistory.h"
#include "rotation/Selection.h"
#include "support/FakeDataBase.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ravlo::test
{

struct CutOptions
{
    std::wstring sAlbum = {};
    bool bOpener = false;
    std::int32_t lRunTime = 180'000;
};

// A station with one main category "Pop" that has a level 2, whose rules ask for 60 minutes by artist and
// title and for none by album. It is noon on 21 November 2026 and nothing has played.
class Station
{
public:
    Station()
    {
        m_cPorts.cClock.SetNow(DateTimeOf({2026, 11, 21, 12, 0, 0}));
        m_cPorts.cFiles.MakeFolders(L"C:\\Host\\Debugging Logs\\Scheduler");
        m_cPorts.cFiles.MakeFolders(L"C:\\Host\\Scheduler\\Rules");
        cMod.StoreAppPath(L"C:\\Host");
        colMainCats->Add(TextKey(cMainCat->CatID()), cMainCat);
        cMainCat->AddSubCat(cLevel);
        SetRules({false, 60, 60, -1});
    }

    // ---- the ports
    DateTime Now() const { return m_cPorts.cClock.Now(); }
    void SetNow(DateTime dtNow) { m_cPorts.cClock.SetNow(dtNow); }
    void OnPump(std::function<void()> action) { m_cPorts.cHostLoop.OnPump = std::move(action); }
    void OnBox(std::function<void()> action) { m_cPorts.cMessages.OnShown = std::move(action); }
    int PumpCount() const { return m_cPorts.cHostLoop.lPumps; }
    std::vector<ShownBox>& Boxes() { return m_cPorts.cMessages.Boxes; }

    // ---- cuts
    // A cut of the database that is in no level. Without a title its key is its title.
    std::shared_ptr<FakeCut> NewCut(const std::wstring& sKey, const std::wstring& sArtist = L"Artist",
                                    const std::wstring& sTitle = {}, const CutOptions& options = {})
    {
        auto cCut = std::make_shared<FakeCut>();
        cCut->SetKey(sKey);
        cCut->SetArtist(sArtist);
        cCut->SetTitle(sTitle.empty() ? sKey : sTitle);
        cCut->SetAlbum(options.sAlbum);
        cCut->SetOpener(options.bOpener);
        cCut->SetRunTimemS(options.lRunTime);
        cCut->SetCatLevel(2);
        cDataBase->colCuts.push_back(cCut);
        return cCut;
    }
    // Such a cut, at the end of the level.
    std::shared_ptr<FakeCut> AddCut(const std::wstring& sKey, const std::wstring& sArtist = L"Artist",
                                    const std::wstring& sTitle = {}, const CutOptions& options = {})
    {
        std::shared_ptr<FakeCut> cCut = NewCut(sKey, sArtist, sTitle, options);
        bool bCreated = false;
        cLevel->AddCut(cCut, bCreated);
        return cCut;
    }

    // Up to three cuts: "a", Ash - Sun; "b", Elm - Rain; "c", Fir - Snow.
    void AddCuts(int lCount)
    {
        static constexpr const wchar_t* colCuts[][3] = {
            {L"a", L"Ash", L"Sun"}, {L"b", L"Elm", L"Rain"}, {L"c", L"Fir", L"Snow"}};
        for (int i = 0; i < lCount; ++i)
            AddCut(colCuts[i][0], colCuts[i][1], colCuts[i][2]);
    }
    // Cuts "1" to "n" whose titles are their keys. Every one breaks the artist rule.
    void AddViolators(int lCount)
    {
        for (int i = 1; i <= lCount; ++i)
            AddCut(std::to_wstring(i), L"Ash");
        Played(30, L"Ash", L"Other");
    }

    // ---- the level
    Pick NextCut(bool bMustBeOpener = false, const std::shared_ptr<Cut>& cPrevSchedCut = nullptr)
    {
        const ModScheduler::LogScope cScope(cMod);
        return NextCutFromCategory(cLevel, bMustBeOpener, cPrevSchedCut, Context());
    }
    std::vector<std::wstring> Order() const
    {
        std::vector<std::wstring> colKeys;
        const std::shared_ptr<CutCollection> colOrder = cLevel->SchedCuts();
        for (std::size_t i = 0; i < colOrder->Count(); ++i)
            colKeys.push_back(colOrder->KeyAt(i)->Text());
        return colKeys;
    }
    void SendAllToFront(const std::vector<std::wstring>& colKeys)
    {
        const std::shared_ptr<CutCollection> colOrder = cLevel->SchedCuts();
        for (const std::wstring& sKey : colKeys)
            colOrder->MoveToEnd(*colOrder->PositionOf(sKey));
        for (std::size_t i = colKeys.size(); i < colOrder->Count(); ++i)
            colOrder->MoveToEnd(0);
    }
    // Rules without a file.
    void SetRules(const SeparationRules& rules)
    {
        auto cRules = std::make_shared<clsCatRules>(cMod);
        cRules->Apply({rules.lArtist, rules.lTitle, rules.lAlbum, rules.bIgnore});
        cLevel->SetRules(cRules);
    }
    // The rules the level makes for itself: none set.
    void UseRulesFile() { cLevel->SetRules(nullptr); }
    // Takes the level and its main category away from the station.
    void DeleteMainCat()
    {
        cMainCat->RemoveSubCat(cMainCat->SubCat(2));
        colMainCats->Clear();
        cMainCat = nullptr;
    }

    // ---- plays
    // A cut that plays elsewhere and is in the history.
    std::shared_ptr<FakeCut> PlayedSecondsAgo(std::int64_t seconds, const std::wstring& sArtist,
                                              const std::wstring& sTitle, const std::wstring& sAlbum = {})
    {
        const std::shared_ptr<FakeCut> cCut =
            NewCut(L"played " + DecimalText(++m_lPlays), sArtist, sTitle, {.sAlbum = sAlbum});
        cCut->SetLastPlayed(Now() - static_cast<double>(seconds) / 86400.0);
        cHistory.Record(*cCut, *cDataBase);
        return cCut;
    }
    std::shared_ptr<FakeCut> Played(int lMinutesAgo, const std::wstring& sArtist, const std::wstring& sTitle,
                                    const std::wstring& sAlbum = {})
    {
        return PlayedSecondsAgo(lMinutesAgo * 60, sArtist, sTitle, sAlbum);
    }

    // ---- the debug log: its lines without the one of its creation
    std::vector<std::wstring> Log() const { return Column(stampWidth, std::wstring::npos); }
    std::vector<std::wstring> LogStamps() const { return Column(0, stampWidth); }
    int Count(const std::wstring& sLine) const
    {
        const std::vector<std::wstring> colLines = Log();
        return static_cast<int>(std::count(colLines.begin(), colLines.end(), sLine));
    }

    SelectionContext Context()
    {
        SelectionContext context = LiveContext(cMod, cHistory, cDataBase);
        context.bFairRotation = bFairRotation;
        return context;
    }

private:
    static constexpr std::size_t stampWidth = 18;

    std::vector<std::wstring> Column(std::size_t from, std::size_t width) const
    {
        static const std::wstring sFile = L"C:\\Host\\Debugging Logs\\Scheduler\\Scheduler 21.deb";
        if (!m_cPorts.cFiles.FileExists(sFile))
            return {};
        std::vector<std::wstring> colLines =
            Split(m_cPorts.cCodePage.Decode(m_cPorts.cFiles.Get(sFile)), sCrLf);
        colLines.pop_back(); // the end of the last line
        colLines.erase(colLines.begin());
        for (std::wstring& sLine : colLines)
            sLine = sLine.substr(from, width);
        return colLines;
    }

    MemoryPorts m_cPorts;
    int m_lPlays = 0;

public:
    bool bFairRotation = false;
    ModScheduler cMod{m_cPorts.Ports()};
    PlayHistory cHistory{m_cPorts.cClock, [this](const RuntimeError& cError, bool bFirst) {
                             cMod.DISPLAYERROR(L"Refused", bFirst, cError);
                         }};
    std::shared_ptr<FakeDataBase> cDataBase = std::make_shared<FakeDataBase>();
    std::shared_ptr<CatCollection> colMainCats = std::make_shared<CatCollection>();
    std::shared_ptr<clsCat> cMainCat = std::make_shared<clsCat>(cMod, L"Pop", 0);
    std::shared_ptr<clsCat> cLevel = std::make_shared<clsCat>(cMod, L"Pop", 2);
};

} // namespace ravlo::test
