// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Files.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo::test
{

// Passes everything on to other files: the base of doubles that change one operation.
class ForwardingFiles : public Files
{
public:
    explicit ForwardingFiles(Files& cInner) noexcept : m_cInner(cInner) {}

    Presence PresenceOf(const std::wstring& sPath) const override { return m_cInner.PresenceOf(sPath); }
    Presence PresenceOfFolder(const std::wstring& sPath) const override
    {
        return m_cInner.PresenceOfFolder(sPath);
    }
    void CreateFolder(const std::wstring& sPath) override { m_cInner.CreateFolder(sPath); }
    std::vector<FileEntry> FilesIn(const std::wstring& sFolder) const override
    {
        return m_cInner.FilesIn(sFolder);
    }
    std::optional<FileStamp> StampOf(const std::wstring& sPath) const override
    {
        return m_cInner.StampOf(sPath);
    }
    std::string ReadAll(const std::wstring& sPath, Patience ePatience) const override
    {
        return m_cInner.ReadAll(sPath, ePatience);
    }
    void WriteNew(const std::wstring& sPath, std::string_view bytes) override
    {
        m_cInner.WriteNew(sPath, bytes);
    }
    void Append(const std::wstring& sPath, std::string_view bytes) override { m_cInner.Append(sPath, bytes); }
    void Rename(const std::wstring& sFrom, const std::wstring& sTo, Patience ePatience) override
    {
        m_cInner.Rename(sFrom, sTo, ePatience);
    }
    void Delete(const std::wstring& sPath) override { m_cInner.Delete(sPath); }
    std::unique_ptr<HeldFile> HoldOpen(const std::wstring& sPath) override
    {
        return m_cInner.HoldOpen(sPath);
    }
    std::wstring LibraryFolder() const override { return m_cInner.LibraryFolder(); }

protected:
    Files& m_cInner;
};

} // namespace ravlo::test
