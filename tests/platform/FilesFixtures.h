// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"
#include "platform/Files.h"

#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace ravlo
{

// One implementation of Files with an empty folder to try it in.
class FilesFixture
{
public:
    virtual ~FilesFixture() = default;
    virtual Files& All() = 0;
    virtual std::wstring Root() const = 0;
    virtual std::size_t EntriesInRoot() const = 0;
};

struct FilesKind
{
    const char* sName;
    bool bIgnoresCase; // and refuses the characters that Windows refuses in names
    std::unique_ptr<FilesFixture> (*make)();
};
inline void PrintTo(const FilesKind& kind, std::ostream* pStream) { *pStream << kind.sName; }

// Every implementation this system has.
std::vector<FilesKind> AllFilesKinds();

class FilesTest : public ::testing::TestWithParam<FilesKind>
{
protected:
    std::wstring In(const std::wstring& sName) const { return m_cPorts->Root() + L"\\" + sName; }

    std::unique_ptr<FilesFixture> m_cPorts = GetParam().make();
    Files& m_cFiles = m_cPorts->All();
};

// The number of the RuntimeError that the action throws; 0 when it throws none.
template <class Action> std::int32_t NumberRaisedBy(Action action)
{
    try
    {
        action();
    }
    catch (const RuntimeError& cError)
    {
        return cError.Number();
    }
    return 0;
}

} // namespace ravlo
