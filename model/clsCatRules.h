// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace ravlo
{

// The separation rules of one category, in minutes. Bound to one rules file, which is read when CatID is set
// and rewritten when a rule changes and when the object is released. The file stays in the folder that was in
// use when CatID was set. File format: docs/formats/rules.md.
class clsCatRules
{
public:
    // Size of a rules file: 4 + 4 + 2 + 55 + 4 bytes.
    static constexpr std::size_t recordSize = 69;
    // Width of the CatID field: characters in memory, bytes of the code page in the file.
    static constexpr std::size_t catIDWidth = 55;

    explicit clsCatRules(ModScheduler& cMod);
    // Rewrites the file if it is the one this object last read or wrote and no other rules object has written
    // it since: an object that is released late, or after the library moved to another folder, must not
    // restore old values. A file that could not be read, or that was created since, is left alone; a damaged
    // one is kept aside. Errors are only logged.
    ~clsCatRules();
    clsCatRules(const clsCatRules&) = delete;
    clsCatRules& operator=(const clsCatRules&) = delete;

    // The present values of a category's file, in an object that never writes it; none set, and Unread, when
    // it cannot be read. Nothing is remembered, logged or shown.
    static std::shared_ptr<const clsCatRules> Read(ModScheduler& cMod, const std::wstring& sCatID);

    // The stored value, -1 (not set) included: the album rule does not fall back to the global one here.
    std::int32_t AlbumSepMins() const noexcept { return m_lAlbum; }
    // Stores the absolute value, then saves.
    void SetAlbumSepMins(std::int32_t lMins);

    // The key without leading and trailing blanks.
    std::wstring CatID() const;
    // Ignores an empty value. Otherwise loads the rules file of that name over the present values and binds
    // the object to the first 55 characters of the key. A longer key is noted in the debug log: its rules are
    // saved under the shortened key.
    void SetCatID(const std::wstring& sCatID);

    // Binds the object to the file of another name without reading it, when its category is renamed: the
    // values stay.
    void Rebind(const std::wstring& sCatID);
    // Copies the file of a name, if there is one, for another name. Returns whether it did. Throws when it
    // cannot be read or written; an existing file of the new name is kept aside.
    static bool CopyFile(ModScheduler& cMod, const std::wstring& sFromID, const std::wstring& sToID);
    // Deletes the file of a name, if there is one. Throws when it cannot be deleted.
    static void DeleteFile(ModScheduler& cMod, const std::wstring& sCatID);

    // The stored value, or the global separation when none is set here.
    std::int32_t ArtistSepMins() const noexcept;
    // Ignores a negative value: stores and saves nothing.
    void SetArtistSepMins(std::int32_t lMins);
    std::int32_t TitleSepMins() const noexcept;
    void SetTitleSepMins(std::int32_t lMins);
    // Whether none is set here, so that the global separation counts.
    bool InheritsArtist() const noexcept { return m_lArtist < 0; }
    bool InheritsTitle() const noexcept { return m_lTitle < 0; }

    // Whether the file could not be read, so that other separations than its own are in force.
    bool Unread() const noexcept { return m_eSource == Source::Unread; }

    bool IgnoreRules() const noexcept { return m_bIgnore; }
    void SetIgnoreRules(bool bIgnore);

    // Reads the file again when the first attempt failed, at most once a second, so that a temporary lock
    // does not cost the rules until the next start. Errors are only logged.
    void RetryReading() noexcept;

    // The rules editor's changes, stored with a single save. An empty field keeps its value. Values are
    // stored without change: lNotSet unsets one. Returns SaveRules().
    static constexpr std::int32_t lNotSet = -1;
    struct Edit
    {
        std::optional<std::int32_t> lArtist;
        std::optional<std::int32_t> lTitle;
        std::optional<std::int32_t> lAlbum;
        std::optional<bool> bIgnore;
    };
    bool Apply(const Edit& edit);
    // As Apply, whole or not at all: throws when the file cannot be read or saved, and keeps every value
    // then. Returns the values before.
    Edit Change(const Edit& edit);
    // The values as stored, each set; lNotSet for a separation that is not set here.
    Edit Stored() const;

    // Returns false without a CatID or an application path, and when writing fails, which is shown. A file
    // that could not be read before is read first, so that values not set here are kept; when that fails
    // again, or the record is damaged, the file is kept aside.
    bool SaveRules();

private:
    enum class Report
    {
        Show,
        LogOnly,
    };
    void GetRules(const std::wstring& sName);
    // The file's record; nothing when there is no file. Throws when it cannot be read or is too short.
    std::optional<std::string> ReadRecord(const std::wstring& sPath);
    void TakeRecord(std::string_view record);
    void ReadAgain() noexcept;
    bool Store(const Edit& edit);
    void Set(const Edit& edit);
    void Take(const Edit& edit);
    bool IsBound() const;
    void ReadAgainUnlessKnown() noexcept;
    bool Save(Report eReport);
    bool Write(SavedFiles::Unseen eUnseen);
    std::wstring Folder() const;
    static std::wstring PathOf(const std::wstring& sFolder, const std::wstring& sName);
    std::wstring PathOf(const std::wstring& sName) const;
    std::string Encode() const;

    ModScheduler& m_cMod;
    std::int32_t m_lArtist = 0;
    std::int32_t m_lTitle = 0;
    std::int32_t m_lAlbum = 0;
    bool m_bIgnore = false;
    std::wstring m_sAppPath;       // when CatID was set; empty: none was known
    std::wstring m_sCatID;         // without the padding of the field
    std::wstring m_sSeenPath;      // the file that SaveRules writes: set with CatID and by each save
    SavedFiles::Stamp m_lSeen = 0; // of that file's content at that time
    // Where the values come from.
    enum class Source
    {
        File,   // the file's values; none of them when it is damaged
        NoFile, // there was none
        Unread, // it could not be read
    };
    Source m_eSource = Source::NoFile;
    std::wstring m_sReadPath;    // when CatID was set
    std::uint32_t m_lReadAt = 0; // tick count
    Edit m_cSet;                 // what was set since, while the values are not the file's
};

} // namespace ravlo
