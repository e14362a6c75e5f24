// SPDX-License-Identifier: MIT
#pragma once

#include "ports/Files.h"
#include "ports/RuntimeError.h"

#include <cstdint>

namespace ravlo
{

// Files whose n-th step fails. Steps are: creating a folder, appending, renaming, deleting (one each), and
// for WriteNew creating the file, writing to it and flushing it. A failing create changes nothing, a failing
// write leaves the first half of the bytes, a failing flush leaves them all; each throws. Looking whether
// something exists is no step.
//
// A fault loop runs an operation with 0, 1, 2 ... good steps until bFailed stays false.
class FailingFiles final : public Files
{
public:
    FailingFiles(Files& cInner, int lGoodSteps, std::int32_t lError = error::DiskFull)
        : m_cInner(cInner), m_lGoodSteps(lGoodSteps), m_lError(lError)
    {
    }

    bool FileExists(const std::wstring& sPath) const override { return m_cInner.FileExists(sPath); }
    bool FolderExists(const std::wstring& sPath) const override { return m_cInner.FolderExists(sPath); }
    void CreateFolder(const std::wstring& sPath) override;
    std::string ReadAll(const std::wstring& sPath) const override;
    void WriteNew(const std::wstring& sPath, std::string_view bytes) override;
    void Append(const std::wstring& sPath, std::string_view bytes) override;
    void Rename(const std::wstring& sFrom, const std::wstring& sTo) override;
    void Delete(const std::wstring& sPath) override;
    std::wstring LibraryFolder() const override { return m_cInner.LibraryFolder(); }

    // Whether reading a file is a step too.
    bool bCountReads = false;
    // Whether every step after the failing one fails as well, as on a disk that was pulled out.
    bool bStaysBroken = false;
    // Whether the failing step was reached.
    mutable bool bFailed = false;

private:
    bool IsNextStepGood() const;
    void Step() const;

    Files& m_cInner;
    mutable int m_lGoodSteps;
    std::int32_t m_lError;
};

} // namespace ravlo
