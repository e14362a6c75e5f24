// SPDX-License-Identifier: MIT
#include "scheduler/CategoryList.h"

#include "base/CaseFolding.h"
#include "base/Text.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sListFile = L"Scheduler\\MainCats.txt";
constexpr const wchar_t* sReadTitle = L"Error in GetSavedCatNames [cSchedMan] "; // with a blank, on purpose

} // namespace

// ---- reading

std::shared_ptr<NameCollection> CategoryList::GetSavedCatNames()
{
    List list;
    const std::wstring sAppPath = m_cMod.AppPath();
    if (sAppPath.empty())
        return list.colNames;
    TrapCritical(m_cMod, sReadTitle, [&] {
        if (const std::optional<std::string> bytes = m_cMod.Saved().Peek(sAppPath + sListFile))
            list = Parse(*bytes);
        if (list.cError)
            throw *list.cError;
    });
    return list.colNames;
}

std::shared_ptr<NameCollection> CategoryList::ReadForTree(const std::wstring& sAppPath)
{
    List list;
    m_cRead = {sAppPath + sListFile, {}, {}, {}};
    std::optional<std::string> bytes;
    try
    {
        bytes = m_cMod.Saved().Read(m_cRead.sPath, this);
        if (!bytes)
            return list.colNames;
        list = Parse(*bytes);
        m_cRead.own.bytes = *bytes;
        for (const std::wstring& sName : *list.colNames)
            m_cRead.own.colNames.insert(Folded(sName));
        if (list.cError)
            throw *list.cError;
    }
    catch (...)
    {
        list.bWhole = false;
        m_cMod.ShowCriticalError(sReadTitle, CurrentError());
    }
    if (bytes && !list.bWhole)
        m_cMod.Saved().NotUnderstood(m_cRead.sPath, this);
    return list.colNames;
}

CategoryList::List CategoryList::Parse(const std::string& bytes) const
{
    List list;
    const std::wstring sText = m_cMod.Ports().cCodePage.Decode(bytes);
    if (sText.find(sCrLf) == std::wstring::npos) // the list always begins with a line break
    {
        list.bWhole = sText.empty();
        return list;
    }
    for (const std::wstring& sPiece : Split(sText, sCrLf))
    {
        const std::wstring sName = Trim(sPiece);
        if (sName.empty() || IsNumeric(sName))
            continue;
        if (sName.find_first_of(sCrLf) != std::wstring::npos)
        {
            m_cMod.WriteDebugLog(L"Ignored in the category list, a name with half a line break: " + sName);
            list.bWhole = false;
        }
        else if (!list.colNames->Add(TextKey(sName), sName))
        {
            list.cError.emplace(error::KeyAlreadyExists);
            list.bWhole = false;
            break;
        }
    }
    return list;
}

// ---- writing

bool CategoryList::SaveCatNames(const CatCollection* colMainCats, const std::wstring& sAppPath)
{
    return TrapCritical(m_cMod, L"Error in SaveCatNames [cSchedMan]", false, [&] {
        if (!colMainCats || sAppPath.empty())
            return false;
        Write(*colMainCats, sAppPath);
        return true;
    });
}

void CategoryList::Write(const CatCollection& colMainCats, const std::wstring& sAppPath)
{
    m_cMod.FlushDebugLog();
    SavedFiles& cSaved = m_cMod.Saved();
    const SavedFiles::Stamp stamp = cSaved.Begin();
    Version cNew = LastOf(sAppPath + sListFile);
    const std::string added = MergeOthers(colMainCats, cNew);
    ForgetRemovedWithoutCategory(colMainCats, cNew);
    cNew.own = OwnNamesOf(colMainCats, cNew.colRemoved);
    for (const std::wstring& sName : cNew.own.colLeftOut)
        m_cMod.WriteDebugLog(L"The category list cannot hold the name: " + sName);
    cSaved.Replace(cNew.sPath, stamp, cNew.own.bytes + added, this);
    m_cLast = std::move(cNew);
}

void CategoryList::SaveChangedCatNames(const CatCollection& colMainCats, const std::wstring& sAppPath)
{
    const Version cLast = LastOf(sAppPath + sListFile);
    if (OwnNamesOf(colMainCats, cLast.colRemoved).bytes != cLast.own.bytes)
        SaveCatNames(&colMainCats, sAppPath);
}

void CategoryList::SaveBeforeReading(const CatCollection& colMainCats, const std::wstring& sAppPath)
{
    try
    {
        if (IsUnsaved(colMainCats))
            Write(colMainCats, sAppPath);
    }
    catch (...)
    {
        m_cMod.LogError(L"SaveCatNames", CurrentError());
    }
}

bool CategoryList::IsUnsaved(const CatCollection& colMainCats) const
{
    Names colOwn;
    for (const std::shared_ptr<clsCat>& cMainCat : colMainCats)
    {
        const std::wstring& sName = cMainCat->CatName();
        if (cMainCat->TotalCuts() == 0 && !IsInList(sName) && !IsRemoved(sName))
            return true;
        colOwn.insert(Folded(sName));
    }
    const Names& colListed = m_cLast.own.colNames;
    return std::any_of(colListed.begin(), colListed.end(),
                       [&](const std::wstring& sName) { return !colOwn.contains(sName); });
}

CategoryList::Version CategoryList::LastOf(const std::wstring& sPath) const
{
    return EqualIgnoringCase(sPath, m_cLast.sPath) ? m_cLast : Version{sPath, {}, {}, {}};
}

void CategoryList::Created(const std::wstring& sCatName)
{
    const std::wstring sFolded = Folded(sCatName);
    m_cLast.own.colNames.erase(sFolded);
    m_cLast.colRemoved.erase(sFolded);
}

void CategoryList::Deleted(const std::wstring& sCatName) { m_cLast.colDeleted.insert(Folded(sCatName)); }

// Leaves out the names that another program has removed.
CategoryList::OwnNames CategoryList::OwnNamesOf(const CatCollection& colMainCats,
                                                const Names& colRemoved) const
{
    OwnNames own;
    for (const std::shared_ptr<clsCat>& cMainCat : colMainCats)
    {
        const std::wstring& sName = cMainCat->CatName();
        const std::wstring sFolded = Folded(sName);
        if (colRemoved.contains(sFolded) && cMainCat->TotalCuts() == 0)
            continue;
        if (sName.find_first_of(sCrLf) != std::wstring::npos || !own.colNames.insert(sFolded).second)
        {
            own.colLeftOut.push_back(sName);
            continue;
        }
        own.bytes += "\r\n";
        own.bytes += m_cMod.Ports().cCodePage.Encode(sName);
    }
    return own;
}

// Compares the list on the disk with this manager's last version. Returns the lines of names that another
// program has added, and records those it has removed. A missing or damaged list has removed nothing.
std::string CategoryList::MergeOthers(const CatCollection& colMainCats, Version& cLast)
{
    std::optional<std::string> present;
    try
    {
        present = m_cMod.Saved().Peek(cLast.sPath);
    }
    catch (const RuntimeError&)
    {
        m_cMod.Saved().NotUnderstood(cLast.sPath, this); // the save then keeps it aside, or fails
    }
    if (!present)
        return {};
    const List list = Parse(*present);
    Names colPresent;
    Names colOwn;
    for (const std::shared_ptr<clsCat>& cMainCat : colMainCats)
        colOwn.insert(Folded(cMainCat->CatName()));
    std::string added;
    for (const std::wstring& sName : *list.colNames)
    {
        const std::wstring sFolded = Folded(sName);
        cLast.colRemoved.erase(sFolded);
        if (colPresent.insert(sFolded).second && !cLast.own.colNames.contains(sFolded) &&
            !colOwn.contains(sFolded) && !cLast.colDeleted.contains(sFolded))
            added += "\r\n" + m_cMod.Ports().cCodePage.Encode(sName);
    }
    if (list.bWhole)
        for (const std::wstring& sName : cLast.own.colNames)
            if (!colPresent.contains(sName))
                cLast.colRemoved.insert(sName);
    return added;
}

// A category deleted here and created again is a new one: nobody has removed it.
void CategoryList::ForgetRemovedWithoutCategory(const CatCollection& colMainCats, Version& cLast) const
{
    Names colOwn;
    for (const std::shared_ptr<clsCat>& cMainCat : colMainCats)
        colOwn.insert(Folded(cMainCat->CatName()));
    std::erase_if(cLast.colRemoved, [&](const std::wstring& sName) { return !colOwn.contains(sName); });
}

std::wstring CategoryList::Folded(const std::wstring& sCatName) const { return FoldCase(AsSaved(sCatName)); }

std::wstring CategoryList::AsSaved(const std::wstring& sCatName) const
{
    const CodePage& cCodePage = m_cMod.Ports().cCodePage;
    return Trim(cCodePage.Decode(cCodePage.Encode(sCatName)));
}

} // namespace ravlo
