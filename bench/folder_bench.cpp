// SPDX-License-Identifier: MIT
// The import of a folder of audio files: compared with reading the bytes of the same files. Both from the
// system's cache, where a disk hides nothing.
#include "bench/Ratios.h"
#include "ravlobase/Store.h"
#include "tests/support/AudioBytes.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ravlo::bench
{

namespace
{

namespace fs = std::filesystem;

// A folder of that many files of 64 kB, in folders of 100, made once per size and deleted at the end.
class Music
{
public:
    explicit Music(std::int64_t files)
    {
        std::string sPattern = (fs::temp_directory_path() / "ravlo-music-XXXXXX").string();
        m_folder = mkdtemp(sPattern.data());
        for (std::int64_t i = 0; i < files; ++i)
        {
            const fs::path folder = m_folder / "music" / ("artist " + std::to_string(i / 100));
            fs::create_directories(folder);
            const std::string sTitle = "song " + std::to_string(i);
            std::string bytes = audio::Flac({{"ARTIST", "Artist " + std::to_string(i / 10)},
                                             {"TITLE", sTitle},
                                             {"ALBUM", "Album"},
                                             {"GENRE", "Rock"},
                                             {"DATE", "1999"}});
            bytes.resize(std::size_t{64} * 1024, 'x');
            colFiles.push_back(folder / (sTitle + ".flac"));
            std::ofstream(colFiles.back(), std::ios::binary) << bytes;
        }
    }
    Music(const Music&) = delete;
    Music& operator=(const Music&) = delete;
    ~Music() { fs::remove_all(m_folder); }

    std::wstring Folder() const { return (m_folder / "music").wstring(); }
    // The database of the import, which does not exist yet.
    std::wstring NewDataBase() const
    {
        for (const char* sName : {"music.db", "music.db-wal", "music.db-shm"})
            fs::remove(m_folder / sName);
        return (m_folder / "music.db").wstring();
    }

    std::vector<fs::path> colFiles;

private:
    fs::path m_folder;
};

const Music& MusicOf(std::int64_t files)
{
    static std::map<std::int64_t, std::unique_ptr<Music>> colAll;
    auto& cMusic = colAll[files];
    if (!cMusic)
        cMusic = std::make_unique<Music>(files);
    return *cMusic;
}

void ImportFolder(benchmark::State& state)
{
    const Music& cMusic = MusicOf(state.range(0));
    for (auto _ : state)
    {
        state.PauseTiming();
        auto cStore = std::make_unique<Store>();
        cStore->Open(cMusic.NewDataBase());
        state.ResumeTiming();
        benchmark::DoNotOptimize(cStore->ImportFolder(cMusic.Folder()));
        state.PauseTiming();
        cStore.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Nothing has changed since the last import.
void ImportFolderAgain(benchmark::State& state)
{
    const Music& cMusic = MusicOf(state.range(0));
    Store cStore;
    cStore.Open(cMusic.NewDataBase());
    cStore.ImportFolder(cMusic.Folder());
    for (auto _ : state)
        benchmark::DoNotOptimize(cStore.ImportFolder(cMusic.Folder()));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ReadFiles(benchmark::State& state)
{
    const Music& cMusic = MusicOf(state.range(0));
    std::string buffer(std::size_t{64} * 1024, '\0');
    for (auto _ : state)
        for (const fs::path& file : cMusic.colFiles)
        {
            std::ifstream(file, std::ios::binary)
                .read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
            benchmark::DoNotOptimize(buffer.data());
        }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const bool bFolderAdded = AddRatio({"import of a folder, per file",
                                    "reading the same files of 64 kB, per file",
                                    {2'000, 10'000},
                                    &ImportFolder,
                                    &ReadFiles,
                                    20});
const bool bAgain = AddRatio({"import of an unchanged folder, per file",
                              "reading the same files of 64 kB, per file",
                              {2'000, 10'000},
                              &ImportFolderAgain,
                              &ReadFiles,
                              5});

} // namespace

} // namespace ravlo::bench
