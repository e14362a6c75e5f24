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

class MemoryFilesWorld : public FilesWorld
{
public:
    MemoryFilesWorld() { m_cMemory.MakeFolders(Root()); }
    Files& All() override { return m_cMemory; }
    std::wstring Root() const override { return L"C:\\Radio"; }
    std::size_t EntriesInRoot() const override { return m_cMemory.Paths().size(); }

protected:
    MemoryFiles m_cMemory;
};

// The decorator must be unnoticeable as long as nothing fails.
class PatientFilesWorld final : public MemoryFilesWorld
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

class SystemFilesWorld final : public FilesWorld
{
public:
    Files& All() override { return m_cFiles; }
    std::wstring Root() const override { return m_cFolder.Path(); }
    std::size_t EntriesInRoot() const override { return m_cFolder.EntryCount(); }

private:
    TempFolder m_cFolder;
    SystemFiles m_cFiles;
};

template <class World> std::unique_ptr<FilesWorld> Make() { return std::make_unique<World>(); }

} // namespace

std::vector<FilesKind> AllFilesKinds()
{
#ifdef _WIN32
    constexpr bool bSystemIgnoresCase = true;
#else
    constexpr bool bSystemIgnoresCase = false;
#endif
    return {{"Memory", true, &Make<MemoryFilesWorld>},
            {"Patient", true, &Make<PatientFilesWorld>},
            {"System", bSystemIgnoresCase, &Make<SystemFilesWorld>}};
}

} // namespace ravlo
