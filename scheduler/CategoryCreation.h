// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "scheduler/SchedulerState.h"

#include <memory>
#include <optional>
#include <string>

namespace ravlo
{

// Names become file names: the characters that may not stand in one, in the order hosts are shown them.
std::shared_ptr<NameCollection> IllegalChars();

// Creating main categories and levels: asks, refuses, asks again, and saves what was made. Errors are thrown.
class CategoryCreation
{
public:
    CategoryCreation(SchedulerState& cState, std::shared_ptr<NameCollection> colIllegalChars) noexcept
        : m_cState(cState), m_colIllegalChars(std::move(colIllegalChars))
    {
    }

    // Makes a main category with a level 1. An empty name is asked for; one that is refused is asked for
    // again, with what was typed to start from, until one is accepted or the user gives up. sName receives
    // the name as created: characters that may not stand in a file name are replaced by "_", which a user who
    // typed them is told. A name that the list of categories could not bring back after a restart is refused.
    // False, and nothing is changed, when the user gave up.
    bool CreateMainCat(std::wstring& sName);

    // Asks for a number and makes that level under a main category of the tree. False: refused or given up.
    bool CreateCatLevel(const std::shared_ptr<clsCat>& cMainCatIn);

private:
    struct Refusal
    {
        std::wstring sTitle;
        std::wstring sText;
    };
    std::optional<Refusal> RefusalOf(const std::wstring& sTyped, const std::wstring& sReplaced) const;
    std::wstring WithoutIllegalChars(const std::wstring& sName) const;
    bool CanBeFile(const std::wstring& sName) const;
    bool CanWriteIn(const std::wstring& sFolder, const std::wstring& sName) const;
    bool TryAgain(const Refusal& refusal) const;
    void Create(const std::wstring& sName);

    // sTyped: what the field starts with, and what was typed.
    std::optional<std::int32_t> AskForLevel(const std::wstring& sCatName, std::wstring& sTyped) const;

    SchedulerState& m_cState;
    std::shared_ptr<NameCollection> m_colIllegalChars;
};

} // namespace ravlo
