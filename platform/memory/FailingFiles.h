// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"
#include "platform/Files.h"

#include <cstdint>

namespace ravlo
{

// Files whose n-th step fails. Steps are: creating a folder, appending, renaming, deleting, holding open (one
// each), and for WriteNew creating the file, writing to it and flushing it. A failing create changes nothing,
// a failing write leaves the first half of the bytes, a failing flush leaves them all; each throws. Reading,
// listing and checking existence are steps on demand; a failing check is Unknown.
//
// A fault loop runs an operation with 0, 1, 2 ... good steps until bFailed stays false.
class FailingFiles final : public Files
{
public:
    FailingFiles(Files& cInner, int lGoodSteps, std::int32_t lError = error::DiskFull)
        : m_cInner(cInner), m_lGoodSteps(lGoodSteps), m_lError(lError)
    {
    }

    Presence PresenceOf(const std::wstring& sPath) const override;
    Presence PresenceOfFolder(const std::wstring& sPath) const override;
    void CreateFolder(const std::wstring& sPath) override;
    std::vector<FileEntry> FilesIn(const std::wstring& sFolder) const override;
    std::optional<FileStamp> StampOf(const std::wstring& sPath) const override;
    std::string ReadAll(const std::wstring& sPath, Patience ePatience = Patience::UpToASecond) const override;
    void WriteNew(const std::wstring& sPath, std::string_view bytes) override;
    void Append(const std::wstring& sPath, std::string_view bytes) override;
    void Rename(const std::wstring& sFrom, const std::wstring& sTo,
                Patience ePatience = Patience::UpToASecond) override;
    void Delete(const std::wstring& sPath) override;
    std::unique_ptr<HeldFile> HoldOpen(const std::wstring& sPath) override;
    std::wstring LibraryFolder() const override { return m_cInner.LibraryFolder(); }

    // Starts counting again: the step after that many fails.
    void Arm(int lGoodSteps)
    {
        m_lGoodSteps = lGoodSteps;
        bFailed = false;
    }

    // Whether reading a file and listing a folder are steps too.
    bool bCountReads = false;
    // Whether checking existence is one.
    bool bCountLooks = false;
    // Whether every step after the failing one fails as well, as on a disk that is full.
    bool bStaysBroken = false;
    // Whether everything fails, reads and checks included, as when the drive is not available. Counts no
    // steps.
    bool bAway = false;
    // Whether the failing step was reached.
    mutable bool bFailed = false;

private:
    bool IsNextStepGood() const;
    void Step() const;
    void ReadStep() const;
    bool CanLook() const;

    Files& m_cInner;
    mutable int m_lGoodSteps;
    std::int32_t m_lError;
};

} // namespace ravlo
