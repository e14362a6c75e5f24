// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"
#include "rotation/ArtistNames.h"
#include "rotation/RotationOptions.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ravlo
{

// An option that a station saves.
enum class StationOption
{
    FairRotation,
    FeaturedArtists,
};

// The options and the artists' names of the station that is served: Scheduler\Rotation.cfg and
// Scheduler\Artists.csv. File formats: docs/formats/rotation.md and artists.md. What cannot be read or used
// is logged.
class RotationFiles
{
public:
    explicit RotationFiles(ModScheduler& cMod) noexcept : m_cMod(cMod) {}
    ~RotationFiles() { m_cMod.Saved().Forget(this); }
    RotationFiles(const RotationFiles&) = delete;
    RotationFiles& operator=(const RotationFiles&) = delete;

    // Reads the files under this application path, which has a trailing backslash. When the path changes, a
    // file that cannot be read counts as absent; otherwise what is in force stays.
    void Serve(const std::wstring& sAppPath);
    // Reads again a file whose stamp has changed or that could not be read. Looks at most once a second and
    // does not wait for locked files. What cannot be read stays in force as it was; a file that is gone
    // counts as absent. Throws nothing.
    void Refresh() noexcept;

    // What the overrides leave of the file's options, which are off when it is absent or damaged.
    const RotationOptions& Options() const noexcept { return m_options; }
    // No rows when the file is absent.
    const ArtistNames& Names() const noexcept { return m_cNames; }

    // Options in force instead of the file's, until other ones replace them, the option is set or another
    // path is served. Nothing is saved.
    void Override(const OptionOverrides& overrides);

    // Reads the file again, even when its stamp is unchanged, then saves the option and puts it in force.
    // Writes nothing when the option already has the value. Throws 75 when the file cannot be read, 91 before
    // the first Serve, and the file system's error when it cannot be written; nothing has changed then.
    void Set(StationOption eOption, bool bOn);
    void SetFairRotation(bool bOn) { Set(StationOption::FairRotation, bOn); }
    void SetFeaturedArtists(bool bOn) { Set(StationOption::FeaturedArtists, bOn); }
    // The file's value of an option, without regard to overrides. Reads the file again, and throws as Set.
    bool Saved(StationOption eOption);

private:
    struct File
    {
        const wchar_t* sName;
        bool bRead = false;                  // the last look succeeded; false: read at the next one
        bool bFailed = false;                // the last look failed, which was logged
        std::optional<FileStamp> stamp = {}; // of what was read last; nothing when it was absent
    };
    using Take = void (RotationFiles::*)(std::optional<std::string> bytes); // nothing when absent

    std::wstring PathOf(const File& file) const { return m_sAppPath + file.sName; }
    void Look(Patience ePatience) noexcept;
    void ReadOrLog(File& file, Take take, Patience ePatience) noexcept;
    void ReadIfChanged(File& file, Take take, Patience ePatience);
    void TakeOptions(std::optional<std::string> bytes);
    void TakeArtists(std::optional<std::string> bytes);
    void Use(const RotationOptions& saved, const OptionOverrides& overrides);
    void ReadOptionsAgain();

    ModScheduler& m_cMod;
    std::wstring m_sAppPath;
    std::uint32_t m_lLookedAt = 0; // tick count
    File m_cOptionsFile{L"Scheduler\\Rotation.cfg"};
    File m_cArtistsFile{L"Scheduler\\Artists.csv"};
    std::string m_optionsBytes; // what a save keeps
    RotationOptions m_saved;    // the file's
    OptionOverrides m_overrides;
    RotationOptions m_options; // in force
    ArtistNames m_cNames;
};

} // namespace ravlo
