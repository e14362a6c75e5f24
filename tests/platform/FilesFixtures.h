// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Files.h"
#include "support/Raised.h"

#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace ravlo
{

// An implementation of Files with an empty folder.
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

// Every implementation on this system.
std::vector<FilesKind> AllFilesKinds();

class FilesTest : public ::testing::TestWithParam<FilesKind>
{
protected:
    std::wstring In(const std::wstring& sName) const { return m_cPorts->Root() + L"\\" + sName; }

    std::unique_ptr<FilesFixture> m_cPorts = GetParam().make();
    Files& m_cFiles = m_cPorts->All();
};

} // namespace ravlo
