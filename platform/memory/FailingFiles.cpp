// SPDX-License-Identifier: MIT
#include "platform/memory/FailingFiles.h"

namespace ravlo
{

void FailingFiles::CreateFolder(const std::wstring& sPath)
{
    Step();
    m_cInner.CreateFolder(sPath);
}

std::string FailingFiles::ReadAll(const std::wstring& sPath) const
{
    if (bCountReads)
        Step();
    return m_cInner.ReadAll(sPath);
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

void FailingFiles::Rename(const std::wstring& sFrom, const std::wstring& sTo)
{
    Step();
    m_cInner.Rename(sFrom, sTo);
}

void FailingFiles::Delete(const std::wstring& sPath)
{
    Step();
    m_cInner.Delete(sPath);
}

bool FailingFiles::IsNextStepGood() const
{
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

} // namespace ravlo
