// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "scheduler/SchedulerState.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace ravlo
{

// The characters that a category name must not contain, because it becomes a file name. In the order in which
// hosts see them.
std::shared_ptr<NameCollection> IllegalChars();
inline constexpr std::size_t maxCatNameLength = 50; // characters

// Creates main categories and levels: asks the user, refuses, asks again and saves the result. Throws on
// errors.
class CategoryCreation
{
public:
    CategoryCreation(SchedulerState& cState, std::shared_ptr<NameCollection> colIllegalChars) noexcept
        : m_cState(cState), m_colIllegalChars(std::move(colIllegalChars))
    {
    }

    // Creates a main category with level 1. Asks for a name when sName is empty. Refuses a name that the list
    // of categories could not restore after a restart. After a refusal asks again, offering the previous
    // input, until a name is accepted or the user cancels. Replaces characters that a file name must not
    // contain by "_"; a box says so to a user who typed one. sName receives the name as created. Returns
    // false, with nothing changed, when the user cancelled.
    bool CreateMainCat(std::wstring& sName);

    // Asks for a number and creates that level under a main category of the tree. Returns false when the
    // level was refused or the user cancelled.
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

    // sTyped: in, the field's initial text; out, what the user typed.
    std::optional<std::int32_t> AskForLevel(const std::wstring& sCatName, std::wstring& sTyped) const;

    SchedulerState& m_cState;
    std::shared_ptr<NameCollection> m_colIllegalChars;
};

} // namespace ravlo
