// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ravlo
{

// The separation rules of one category, in minutes, tied to one rules file that is read when CatID is set and
// rewritten whenever a rule changes and when the object is released. The file stays in the folder that was
// served when CatID was set. File format: docs/formats/rules.md.
class clsCatRules
{
public:
    // Size of a rules file: 4 + 4 + 2 + 55 + 4 bytes.
    static constexpr std::size_t recordSize = 69;
    // Width of the CatID field: characters in memory, bytes of the code page in the file.
    static constexpr std::size_t catIDWidth = 55;

    explicit clsCatRules(ModScheduler& cMod);
    // Rewrites the file once more, when it is the one this object last read or wrote and no other rules
    // object has written it since: an old object that is released late, or after the library moved to another
    // application folder, must not bring old values back. A file that could not be read, or that has come
    // into being since, is left alone; one that is damaged is kept aside. Errors are only logged.
    ~clsCatRules();
    clsCatRules(const clsCatRules&) = delete;
    clsCatRules& operator=(const clsCatRules&) = delete;

    // As stored, -1 (not set here) included: the album rule has no fall-back to the global one here.
    std::int32_t AlbumSepMins() const noexcept { return m_lAlbum; }
    // Stores the absolute value, then saves.
    void SetAlbumSepMins(std::int32_t lMins);

    // The key without leading and trailing blanks.
    std::wstring CatID() const;
    // An empty value is ignored. Otherwise loads the rules file of that name over the present values and
    // binds the object to the first 55 characters of the key (a longer one is noted in the debug log: its
    // rules are saved under the cut key).
    void SetCatID(const std::wstring& sCatID);

    // The stored value, or the global separation when none is set here.
    std::int32_t ArtistSepMins() const noexcept;
    // A negative value is ignored: nothing stored, nothing saved.
    void SetArtistSepMins(std::int32_t lMins);
    std::int32_t TitleSepMins() const noexcept;
    void SetTitleSepMins(std::int32_t lMins);

    bool IgnoreRules() const noexcept { return m_bIgnore; }
    void SetIgnoreRules(bool bIgnore);

    // Reads a file again that could not be read before, at most once a second, so that a lock that passes
    // does not cost the rules until the next start. Errors are only logged.
    void RetryReading() noexcept;

    // What the rules editor stores in one go, with a single save. Nothing in a field leaves the value alone;
    // the album value is stored as it stands, so that -1 unsets it. Returns SaveRules().
    struct Edit
    {
        std::optional<std::int32_t> lArtist;
        std::optional<std::int32_t> lTitle;
        std::optional<std::int32_t> lAlbum;
        std::optional<bool> bIgnore;
    };
    bool Apply(const Edit& edit);

    // False without a CatID or an application path, and when writing fails (which is shown). A file that
    // could not be read before is read first, so that it keeps the values that have not been set since; when
    // that fails again, or its record is damaged, it is kept aside.
    bool SaveRules();

private:
    enum class Report
    {
        Show,
        LogOnly,
    };
    void GetRules(const std::wstring& sName);
    // The record of the file; nothing when there is none. Throws when it cannot be read or is too short.
    std::optional<std::string> ReadRecord(const std::wstring& sPath);
    void TakeRecord(std::string_view record);
    void ReadAgain() noexcept;
    bool Store(const Edit& edit);
    void Take(const Edit& edit);
    bool Save(Report eReport);
    std::wstring Folder() const;
    std::wstring PathOf(const std::wstring& sName) const;
    std::string Encode() const;

    ModScheduler& m_cMod;
    std::int32_t m_lArtist = 0;
    std::int32_t m_lTitle = 0;
    std::int32_t m_lAlbum = 0;
    bool m_bIgnore = false;
    std::wstring m_sAppPath;       // when CatID was set; empty: none was known
    std::wstring m_sCatID;         // the field without its padding
    std::wstring m_sSeenPath;      // the file SaveRules writes, when CatID was set or it last wrote it
    SavedFiles::Stamp m_lSeen = 0; // of that file's content, then
    // Where the values come from.
    enum class Source
    {
        File,   // the values are those of the file; of a damaged one, none
        NoFile, // there was none
        Unread, // it could not be read
    };
    Source m_eSource = Source::NoFile;
    std::wstring m_sReadPath;    // when CatID was set
    std::uint32_t m_lReadAt = 0; // tick count
    Edit m_cSet;                 // what has been set since, while the values are not the file's
};

} // namespace ravlo
