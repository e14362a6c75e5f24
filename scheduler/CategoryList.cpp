// SPDX-License-Identifier: MIT
#include "scheduler/CategoryList.h"

#include "collections/CaseFolding.h"
#include "collections/Text.h"

#include <unordered_set>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sListFile = L"Scheduler\\MainCats.txt";

} // namespace

std::shared_ptr<NameCollection> CategoryList::GetSavedCatNames()
{
    auto colNames = std::make_shared<NameCollection>();
    const std::wstring sAppPath = m_cMod.AppPath();
    if (sAppPath.empty())
        return colNames;
    const std::wstring sPath = sAppPath + sListFile;
    m_colNotRead.erase(FoldCase(sPath));
    if (!m_cMod.Outside().cFiles.FileExists(sPath))
        return colNames;
    try
    {
        ReadInto(*colNames, sPath);
    }
    catch (...)
    {
        m_colNotRead.insert(FoldCase(sPath));
        m_cMod.ShowCriticalError(L"Error in GetSavedCatNames [cSchedMan] ", CurrentError());
    }
    return colNames;
}

void CategoryList::ReadInto(NameCollection& colNames, const std::wstring& sPath)
{
    const std::wstring sText = m_cMod.Outside().cCodePage.Decode(m_cMod.Outside().cFiles.ReadAll(sPath));
    if (sText.find(sCrLf) == std::wstring::npos)
        return; // the list always begins with a line break
    for (const std::wstring& sPiece : Split(sText, sCrLf))
    {
        const std::wstring sName = Trim(sPiece);
        if (sName.empty() || IsNumeric(sName))
            continue;
        if (!colNames.Add(TextKey(sName), sName))
            throw RuntimeError(error::KeyAlreadyExists);
    }
}

bool CategoryList::SaveCatNames(const CatCollection* colMainCats, const std::wstring& sAppPath)
{
    return TrapCritical(m_cMod, L"Error in SaveCatNames [cSchedMan]", false,
                        [&]
                        {
                            if (!colMainCats || sAppPath.empty())
                                return false;
                            m_cMod.FlushDebugLog();
                            Files& cFiles = m_cMod.Outside().cFiles;
                            const std::wstring sPath = sAppPath + sListFile;
                            if (m_colNotRead.count(FoldCase(sPath)) != 0 && cFiles.FileExists(sPath))
                                KeepAside(cFiles, sPath);
                            ReplaceFile(cFiles, sPath, Content(*colMainCats));
                            m_colNotRead.erase(FoldCase(sPath));
                            return true;
                        });
}

std::string CategoryList::Content(const CatCollection& colMainCats)
{
    std::string bytes;
    std::unordered_set<std::wstring> colWritten;
    for (const std::shared_ptr<clsCat>& cMainCat : colMainCats)
    {
        const std::wstring& sName = cMainCat->CatName();
        if (sName.find_first_of(sCrLf) != std::wstring::npos ||
            !colWritten.insert(FoldCase(AsSaved(sName))).second)
        {
            m_cMod.WriteDebugLog(L"The category list cannot hold the name: " + sName);
            continue;
        }
        bytes += "\r\n";
        bytes += m_cMod.Outside().cCodePage.Encode(sName);
    }
    return bytes;
}

std::wstring CategoryList::AsSaved(const std::wstring& sCatName) const
{
    const CodePage& cCodePage = m_cMod.Outside().cCodePage;
    return Trim(cCodePage.Decode(cCodePage.Encode(sCatName)));
}

void KeepAside(Files& cFiles, const std::wstring& sPath)
{
    std::string bytes;
    try
    {
        bytes = cFiles.ReadAll(sPath);
    }
    catch (const RuntimeError&)
    {
        cFiles.Rename(sPath, sPath + L".bak"); // what cannot be read can still be put away whole
        return;
    }
    ReplaceFile(cFiles, sPath + L".bak", bytes);
}

} // namespace ravlo
