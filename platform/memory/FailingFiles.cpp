// SPDX-License-Identifier: MIT
#include "platform/memory/FailingFiles.h"

namespace ravlo
{

Presence FailingFiles::PresenceOf(const std::wstring& sPath) const
{
    return CanLook() ? m_cInner.PresenceOf(sPath) : Presence::Unknown;
}

Presence FailingFiles::PresenceOfFolder(const std::wstring& sPath) const
{
    return CanLook() ? m_cInner.PresenceOfFolder(sPath) : Presence::Unknown;
}

void FailingFiles::CreateFolder(const std::wstring& sPath)
{
    Step();
    m_cInner.CreateFolder(sPath);
}

std::vector<FileEntry> FailingFiles::FilesIn(const std::wstring& sFolder) const
{
    ReadStep();
    return m_cInner.FilesIn(sFolder);
}

std::optional<FileStamp> FailingFiles::StampOf(const std::wstring& sPath) const
{
    if (!CanLook())
        throw RuntimeError(m_lError);
    return m_cInner.StampOf(sPath);
}

std::string FailingFiles::ReadAll(const std::wstring& sPath, Patience ePatience) const
{
    ReadStep();
    return m_cInner.ReadAll(sPath, ePatience);
}

void FailingFiles::WriteNew(const std::wstring& sPath, std::string_view bytes)
{
    Step();
    if (!IsNextStepGood())
    {
        m_cInner.WriteNew(sPath, bytes.substr(0, bytes.size() / 2));
        throw RuntimeError(m_lError);
    }
    m_cInner.WriteNew(sPath, bytes);
    Step();
}

void FailingFiles::Append(const std::wstring& sPath, std::string_view bytes)
{
    Step();
    m_cInner.Append(sPath, bytes);
}

void FailingFiles::Rename(const std::wstring& sFrom, const std::wstring& sTo, Patience ePatience)
{
    Step();
    m_cInner.Rename(sFrom, sTo, ePatience);
}

void FailingFiles::Delete(const std::wstring& sPath)
{
    Step();
    m_cInner.Delete(sPath);
}

std::unique_ptr<HeldFile> FailingFiles::HoldOpen(const std::wstring& sPath)
{
    Step();
    return m_cInner.HoldOpen(sPath);
}

bool FailingFiles::IsNextStepGood() const
{
    if (bAway)
        return false;
    if (bFailed)
        return !bStaysBroken;
    bFailed = m_lGoodSteps == 0;
    --m_lGoodSteps;
    return !bFailed;
}

void FailingFiles::Step() const
{
    if (!IsNextStepGood())
        throw RuntimeError(m_lError);
}

void FailingFiles::ReadStep() const
{
    if (bCountReads || bAway)
        Step();
}

bool FailingFiles::CanLook() const { return bCountLooks ? IsNextStepGood() : !bAway; }

} // namespace ravlo
