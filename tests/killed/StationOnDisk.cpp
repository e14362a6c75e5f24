// SPDX-License-Identifier: MIT
#include "killed/StationOnDisk.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "scheduler/UndoRecords.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>

namespace ravlo::test
{

namespace
{

namespace fs = std::filesystem;

constexpr const char* sDataBase = "station.db";
constexpr int lCuts = 100;

fs::path NewFolder()
{
    std::string sPattern = (fs::temp_directory_path() / "ravlo-killed-XXXXXX").string();
    EXPECT_NE(mkdtemp(sPattern.data()), nullptr);
    return sPattern;
}

std::string BytesOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Everything a kill may not tear apart.
std::wstring TextOf(const Cut& cCut)
{
    return cCut.Artist() + L"|" + cCut.Title() + L"|" + cCut.CategoryText() + L"|" +
           DecimalText(cCut.CatLevel());
}

} // namespace

StationOnDisk::StationOnDisk() : m_folder(NewFolder())
{
    fs::create_directories(m_folder / "Debugging Logs" / "Scheduler");
    static constexpr const wchar_t* categories[] = {L"Pop", L"Rock", L"Soul", L"Rock/Pop", L"Talk"};
    {
        Store cStore;
        cStore.Open((m_folder / sDataBase).wstring());
        Cuts colCuts;
        for (int lCut = 0; lCut < lCuts; ++lCut)
        {
            colCuts.push_back(cStore.NewCut());
            colCuts.back()->SetKey(L"D:\\" + std::to_wstring(lCut) + L".mp3");
            colCuts.back()->SetArtist(L"Artist " + std::to_wstring(lCut % 30));
            colCuts.back()->SetTitle(L"Title " + std::to_wstring(lCut));
            colCuts.back()->SetCategoryText(categories[lCut % 5]);
            colCuts.back()->SetCatLevel(lCut % 7 % 3 + 1);
            colCuts.back()->SetDurationmS(180'000);
        }
        cStore.AddCuts(colCuts);
    }
    const Host host(*this, 1);
    const CatCollection& colMainCats = *host.cSchedMan->colMainCats();
    host.cSchedMan->ShuffleCategories({colMainCats.begin(), colMainCats.end()});
}

StationOnDisk::StationOnDisk(const StationOnDisk& cOther) : m_folder(NewFolder())
{
    fs::copy(cOther.m_folder, m_folder, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

StationOnDisk::~StationOnDisk()
{
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

State StationOnDisk::Read() const
{
    State state;
    const Host host(*this, 1);
    state.orders = host.AllOrders();
    for (const std::shared_ptr<Cut>& cCut : host.cStore->AllCuts())
        state.cuts[cCut->Key().Text()] = TextOf(*cCut);
    for (const std::shared_ptr<clsCat>& cMainCat : *host.cSchedMan->colMainCats())
        state.categories[FoldCase(cMainCat->CatName())] = cMainCat->CatName();
    for (const auto& entry : fs::recursive_directory_iterator(m_folder / "Scheduler"))
        if (const std::string sKind = entry.path().extension().string();
            entry.path().filename() == "Undo.dat") // one of several steps that a work makes
            EXPECT_TRUE(DecodeUndoFile(BytesOf(entry.path())));
        else if (sKind == ".rls" || sKind == ".dat")
            state.files[fs::relative(entry.path(), m_folder).string()] = BytesOf(entry.path());
    state.colBoxes = host.cPorts.cMessages.Boxes;
    return state;
}

void StationOnDisk::ExpectTidy() const
{
    int lTemporary = 0;
    for (const auto& entry : fs::recursive_directory_iterator(m_folder))
    {
        const std::string sName = entry.path().filename().string();
        EXPECT_EQ(sName.find(".bak"), std::string::npos) << sName << ": nothing was unreadable";
        if (!IsTemporaryName(std::wstring(sName.begin(), sName.end())))
            continue;
        ++lTemporary;
        fs::last_write_time(entry.path(), fs::file_time_type::clock::now() - std::chrono::hours(25));
    }
    EXPECT_LE(lTemporary, 1) << "one is at work at a time, and the next start takes old ones away";
}

Host::Host(const StationOnDisk& cState, unsigned lSeed)
    : cMod(cPorts.PortsWith(cFiles)), m_csv(cState.Folder() / "import.csv")
{
    cPorts.cRandom = SeededRandom(lSeed);
    cStore->Open((cState.Folder() / sDataBase).wstring());
    cSchedMan = std::make_shared<clsSchedMan>(cMod);
    cSchedMan->SetRotatesAllowed(true);
    cSchedMan->PopulateFromDataBase(cStore, cState.Folder().wstring());
}

Host::~Host()
{
    cSchedMan.reset();
    cStore->Close();
}

Orders Host::AllOrders() const
{
    Orders orders;
    for (const std::shared_ptr<clsCat>& cMainCat : *cSchedMan->colMainCats())
        for (const std::shared_ptr<clsCat>& cLevel : *cMainCat->SubCats())
        {
            Keys& colKeys = orders[CategoryKey(cMainCat->CatName(), cLevel->CatLevel())];
            for (const std::shared_ptr<Cut>& cCut : *cLevel->SchedCuts())
                colKeys.push_back(cCut->Key().Text());
        }
    return orders;
}

std::shared_ptr<clsCat> Host::MainCat(const std::wstring& sName) const
{
    const std::shared_ptr<clsCat>* cFound = cSchedMan->colMainCats()->Find(CategoryKey(sName, 0));
    return cFound ? *cFound : nullptr;
}

void Host::Import(const std::string& csv)
{
    std::ofstream(m_csv, std::ios::binary) << csv;
    cStore->ImportCsv(m_csv.wstring());
}

} // namespace ravlo::test
