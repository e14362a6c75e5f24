// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// A category as the command line names it: "rock" is the main category with all its levels, "rock:2" one of
// its levels. The scheduler creates no category with a colon in its name, but a database may contain one.
// "Talk: News" is a main category, since no number follows its colon. Of "Talk:7" only levels can be named:
// "Talk:7:1".
struct CategoryName
{
    std::wstring sName;
    std::int32_t lLevel = 0; // 0: the main category
    friend bool operator==(const CategoryName&, const CategoryName&) = default;
};

// Throws HostError when there is no name, or the number after the last colon is not a level number (1 or
// more).
CategoryName ParseCategoryName(const std::wstring& sText);

// "rock" or "rock:2", as the command line takes it.
std::wstring TextOf(const CategoryName& name);

// Why the scheduler could not keep a category of that name, as a sentence; empty when it can. The name
// becomes a file name, and a number would be read as a position.
std::wstring WhyNoCategory(const std::wstring& sName);

// The largest level number that a user can create; the smallest is 1.
inline constexpr std::int32_t lMostLevel = 32764;

// A category to shuffle, empty or delete.
struct Target
{
    CategoryName name;
    std::size_t cuts = 0;
};

// "rock:2 (250 cuts), pop (1448 cuts)"
std::wstring TextOf(const std::vector<Target>& targets);

// Whether the input means yes: "y" or "yes" in any case, with blanks around it.
bool IsYes(const std::wstring& sAnswer);

} // namespace ravlo
