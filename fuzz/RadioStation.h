// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/Fuzz.h"

#include "platform/memory/MemoryPorts.h"
#include "scheduler/clsSchedMan.h"
#include "support/FakeDataBase.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace ravlo::fuzz
{

// A station in memory: its disk, its database, and a user who answers No to every question. Several programs
// may run on it, one after another.
struct RadioStation
{
    static constexpr const wchar_t* sFolder = L"C:\\Radio\\";
    static std::wstring Path(const std::wstring& sName)
    {
        return std::wstring(sFolder) + L"Scheduler\\" + sName;
    }
    static std::wstring SifPath(const std::wstring& sCat)
    {
        return Path(L"History_and_Ordering\\" + sCat + L".sif");
    }

    MemoryPorts cPorts;
    std::shared_ptr<test::FakeDataBase> cDataBase = std::make_shared<test::FakeDataBase>();

    RadioStation() { cPorts.cFiles.MakeFolders(sFolder); }

    bool Has(const std::wstring& sPath) const { return cPorts.cFiles.FileExists(sPath); }
    const std::string& Bytes(const std::wstring& sPath) const { return cPorts.cFiles.Get(sPath); }

    // Requires that a program has left no temporary file.
    void RequireTidy() const
    {
        for (const std::wstring& sPath : cPorts.cFiles.Paths())
            RAVLO_REQUIRE(!sPath.ends_with(L".tmp"));
    }
};

// One run of a host's program on a station, from the population to the end.
class Program
{
public:
    explicit Program(RadioStation& cStation) : cMod(cStation.cPorts.Ports())
    {
        cStation.cPorts.cMessages.Boxes.clear();
        cSchedMan->PopulateFromDataBase(cStation.cDataBase, RadioStation::sFolder);
        RAVLO_REQUIRE(cSchedMan->colMainCats() != nullptr);
    }

    // The main categories' names, in order.
    std::vector<std::wstring> Names() const
    {
        std::vector<std::wstring> colNames;
        for (const std::shared_ptr<clsCat>& cMainCat : *cSchedMan->colMainCats())
            colNames.push_back(cMainCat->CatName());
        return colNames;
    }
    std::shared_ptr<clsCat> MainCat(const std::wstring& sName) const
    {
        return MainCatByName(cSchedMan->colMainCats().get(), sName);
    }
    // The keys of a category's cuts in rotation order, by level.
    std::map<std::int32_t, std::vector<std::wstring>> Orders(const std::wstring& sName) const
    {
        std::map<std::int32_t, std::vector<std::wstring>> colOrders;
        for (const std::shared_ptr<clsCat>& cSubCat : *MainCat(sName)->SubCats())
        {
            std::vector<std::wstring>& colKeys = colOrders[cSubCat->CatLevel()];
            for (const std::shared_ptr<Cut>& cCut : *cSubCat->SchedCuts())
                colKeys.push_back(cCut->Key().Text());
        }
        return colOrders;
    }

    ModScheduler cMod;
    std::shared_ptr<clsSchedMan> cSchedMan = std::make_shared<clsSchedMan>(cMod);
};

} // namespace ravlo::fuzz
