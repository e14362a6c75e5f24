// SPDX-License-Identifier: MIT
#pragma once

#include "platform/memory/MemoryPorts.h"
#include "platform/posix/PosixFiles.h"
#include "ravlobase/Store.h"
#include "scheduler/clsSchedMan.h"

#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace ravlo::test
{

using Keys = std::vector<std::wstring>;
using Orders = std::map<std::wstring, Keys>; // name TAB level -> keys in rotation order
using Boxes = std::vector<ShownBox>;

// What a start of a host finds.
struct State
{
    Orders orders;
    std::map<std::wstring, std::wstring> cuts;       // key -> its values in the database
    std::map<std::wstring, std::wstring> categories; // folded name -> name
    std::map<std::string, std::string> files;        // rules and settings: path -> bytes
    Boxes colBoxes;
};

// A station's folder with its database, on the disk.
class StationOnDisk
{
public:
    // A new one: some cuts in a few categories, in no order of the database's.
    StationOnDisk();
    // A copy of it.
    StationOnDisk(const StationOnDisk& cOther);
    StationOnDisk& operator=(const StationOnDisk&) = delete;
    ~StationOnDisk();

    const std::filesystem::path& Folder() const { return m_folder; }
    State Read() const;
    // No leftovers but what the rules allow: a killed replacement's temporary file. Makes these old, so that
    // the next start has to delete them.
    void ExpectTidy() const;

private:
    std::filesystem::path m_folder;
};

// A host at work on a station, from its population on. Its random numbers come from the seed.
class Host
{
public:
    Host(const StationOnDisk& cState, unsigned lSeed);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    Orders AllOrders() const;
    // The orders of this moment are as valid as those before and after.
    void NoteOrders() { colSteps.push_back(AllOrders()); }
    std::shared_ptr<clsCat> MainCat(const std::wstring& sName) const;
    // Hands the database a library CSV.
    void Import(const std::string& csv);

    MemoryPorts cPorts;
    PosixFiles cFiles;
    ModScheduler cMod;
    std::shared_ptr<Store> cStore = std::make_shared<Store>();
    std::shared_ptr<clsSchedMan> cSchedMan;
    std::vector<Orders> colSteps;

private:
    std::filesystem::path m_csv;
};

} // namespace ravlo::test
