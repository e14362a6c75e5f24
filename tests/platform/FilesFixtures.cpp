// SPDX-License-Identifier: MIT
#include "platform/FilesFixtures.h"

#include "platform/TempFolder.h"
#include "platform/memory/FailingFiles.h"
#include "platform/memory/MemoryFiles.h"
#ifdef _WIN32
#include "platform/windows/WindowsFiles.h"
#else
#include "platform/posix/PosixFiles.h"
#endif

namespace ravlo
{

namespace
{

class MemoryFilesFixture : public FilesFixture
{
public:
    MemoryFilesFixture() { m_cMemory.MakeFolders(Root()); }
    Files& All() override { return m_cMemory; }
    std::wstring Root() const override { return L"C:\\Radio"; }
    std::size_t EntriesInRoot() const override { return m_cMemory.Paths().size(); }

protected:
    MemoryFiles m_cMemory;
};

// Without a failure the decorator must make no difference.
class PatientFilesFixture final : public MemoryFilesFixture
{
public:
    Files& All() override { return m_cFailing; }

private:
    FailingFiles m_cFailing{m_cMemory, 1'000'000};
};

#ifdef _WIN32
using SystemFiles = WindowsFiles;
#else
using SystemFiles = PosixFiles;
#endif

class SystemFilesFixture final : public FilesFixture
{
public:
    Files& All() override { return m_cFiles; }
    std::wstring Root() const override { return m_cFolder.Path(); }
    std::size_t EntriesInRoot() const override { return m_cFolder.EntryCount(); }

private:
    TempFolder m_cFolder;
    SystemFiles m_cFiles;
};

template <class Fixture> std::unique_ptr<FilesFixture> Make() { return std::make_unique<Fixture>(); }

} // namespace

std::vector<FilesKind> AllFilesKinds()
{
#ifdef _WIN32
    constexpr bool bSystemIgnoresCase = true;
#else
    constexpr bool bSystemIgnoresCase = false;
#endif
    return {{"Memory", true, &Make<MemoryFilesFixture>},
            {"Patient", true, &Make<PatientFilesFixture>},
            {"System", bSystemIgnoresCase, &Make<SystemFilesFixture>}};
}

} // namespace ravlo
