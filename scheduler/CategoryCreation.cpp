// SPDX-License-Identifier: MIT
#include "scheduler/CategoryCreation.h"

#include "base/Text.h"
#include "modscheduler/FileNames.h"

namespace ravlo
{

namespace
{

constexpr std::int32_t lLevelLimit = 32765; // exclusive; the message names another number, which users know
constexpr const wchar_t* sAskTitle = L"New Category Creation";
const std::wstring sTryAgain = std::wstring(sCrLf) + sCrLf + L"Try Again?";

std::wstring Listed(const NameCollection& colNames)
{
    std::wstring sList;
    for (const std::wstring& sName : colNames)
        sList += (sList.empty() ? L"" : L" ") + sName;
    return sList;
}

} // namespace

// ---- main categories ----

std::shared_ptr<NameCollection> IllegalChars()
{
    auto colChars = std::make_shared<NameCollection>();
    for (const wchar_t c : std::wstring_view(L"*/:<>?\\|\""))
        colChars->Add(std::wstring(1, c));
    return colChars;
}

bool CategoryCreation::CreateMainCat(std::wstring& sName)
{
    std::wstring sTyped = Trim(sName);
    bool bAsk = sTyped.empty();
    for (;; bAsk = true)
    {
        if (bAsk)
            sTyped = Trim(
                m_cState.cMod.Input(sAskTitle, L"Type the name for the new category", sTyped).value_or(L""));
        if (sTyped.empty())
            return false;
        const std::wstring sReplaced = WithoutIllegalChars(sTyped);
        if (const std::optional<Refusal> refusal = RefusalOf(sTyped, sReplaced))
        {
            if (!TryAgain(*refusal))
                return false;
            continue;
        }
        Create(sReplaced);
        sName = sReplaced;
        if (bAsk && sReplaced != sTyped)
            m_cState.cMod.Box(BoxIcon::Information, BoxButtons::Ok, sAskTitle,
                              L"The category is named: " + sReplaced + sCrLf +
                                  L"A file of its name is kept, which cannot contain these characters: " +
                                  Listed(*m_colIllegalChars));
        return true;
    }
}

std::optional<CategoryCreation::Refusal> CategoryCreation::RefusalOf(const std::wstring& sTyped,
                                                                     const std::wstring& sReplaced) const
{
    if (IsNumeric(sTyped))
        return Refusal{L"Invalid Category Name", L"Category Names must not be numeric!" + sTryAgain};
    if (sTyped.size() > maxCatNameLength)
        return Refusal{L"Category Name Too Long! [max 50 chars]", L"Category Name too long!" + sTryAgain};
    if (m_cState.MainCat(sTyped) || m_cState.MainCat(sReplaced))
        return Refusal{L"Category " + sReplaced + L" Already Exists!",
                       L"There is already a category by this name!" + sTryAgain};
    // The list of categories is written in the code page: a name that changes there would lose its order at
    // the next start.
    if (EqualIgnoringCase(sReplaced, sAllAudio) || m_cState.cCategoryList.AsSaved(sReplaced) != sReplaced ||
        !CanBeFile(sReplaced))
        return Refusal{L"Invalid Category Name",
                       L"Unable to create a category with the name: " + sTyped + sTryAgain};
    return std::nullopt;
}

std::wstring CategoryCreation::WithoutIllegalChars(const std::wstring& sName) const
{
    std::wstring sReplaced = sName;
    for (wchar_t& c : sReplaced)
        for (const std::wstring& sIllegal : *m_colIllegalChars)
            if (EqualIgnoringCase(std::wstring_view(&c, 1), sIllegal))
                c = L'_';
    return sReplaced;
}

bool CategoryCreation::CanBeFile(const std::wstring& sName) const
{
    if (!CanBeFileName(sName))
        return false;
    // A library in a protected folder cannot write next to itself; then try the station's folder.
    const std::wstring sAppPath = m_cState.cMod.AppPath();
    return CanWriteIn(m_cState.cMod.Ports().cFiles.LibraryFolder(), sName) ||
           (!sAppPath.empty() && CanWriteIn(sAppPath + L"Scheduler", sName));
}

bool CategoryCreation::CanWriteIn(const std::wstring& sFolder, const std::wstring& sName) const
{
    Files& cFiles = m_cState.cMod.Ports().cFiles;
    const std::wstring sPath = sFolder + L"\\" + sName + L".tst";
    if (cFiles.FileExists(sPath))
        return true; // the existing file shows that the name is possible; it is not ours to overwrite
    bool bWritten = false;
    try
    {
        cFiles.WriteNew(sPath, "Hello");
        bWritten = true;
    }
    catch (const RuntimeError&)
    {
        // The name or the folder does not allow it: a refusal, not an error.
    }
    try
    {
        if (cFiles.FileExists(sPath))
            cFiles.Delete(sPath);
    }
    catch (const RuntimeError&)
    {
        // The answer is known; a file that stays does no harm.
    }
    return bWritten;
}

bool CategoryCreation::TryAgain(const Refusal& refusal) const
{
    return m_cState.cMod.Box(BoxIcon::Question, BoxButtons::YesNo, refusal.sTitle, refusal.sText) ==
           BoxAnswer::Yes;
}

void CategoryCreation::Create(const std::wstring& sName)
{
    if (!m_cState.colMainCats)
        throw RuntimeError(error::ObjectNotSet);
    const auto cMainCat = std::make_shared<clsCat>(m_cState.cMod, sName, 0);
    if (!m_cState.colMainCats->Add(TextKey(CategoryKey(sName, 0)), cMainCat))
        throw RuntimeError(error::KeyAlreadyExists);
    m_cState.cCategoryList.Created(sName);
    cMainCat->AddSubCat(std::make_shared<clsCat>(m_cState.cMod, sName, 1));
    ChangeRecord record;
    record.colMade = {{sName, 0}, {sName, 1}};
    m_cState.cUndo.Add(L"new category " + sName, record);
    m_cState.cCategoryList.SaveCatNames(m_cState.colMainCats.get(), m_cState.AppPath());
    if (m_cState.Contains(cMainCat)) // the host may have reloaded while an error's box was open
        m_cState.cHistoryFiles.Save(cMainCat);
    m_cState.RetrySaves();
}

// ---- levels ----

bool CategoryCreation::CreateCatLevel(const std::shared_ptr<clsCat>& cMainCatIn)
{
    ModScheduler& cMod = m_cState.cMod;
    if (!cMainCatIn)
    {
        cMod.Box(BoxIcon::None, BoxButtons::Ok, L"Impossible!",
                 L"Impossible to create a level is we dont know which main cat it's in!");
        return false;
    }
    const std::wstring sCatName = cMainCatIn->CatName();
    std::wstring sTyped;
    while (true)
    {
        if (!m_cState.MainCat(sCatName))
        {
            cMod.Box(BoxIcon::Critical, BoxButtons::Ok, L"Category Level Creation Aborted",
                     L"Unexpected! - cant find main cat: " + sCatName);
            return false;
        }
        if (EqualIgnoringCase(sCatName, L"ALL SONGS"))
        {
            cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, L"Choose a specific category please.",
                     L"ALL SONGS is not valid here!");
            return false;
        }
        const std::optional<std::int32_t> lLevel = AskForLevel(sCatName, sTyped);
        if (!lLevel)
            return false;
        // Looked up after the question: others may have reloaded or deleted it.
        const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(sCatName);
        if (!cMainCat)
            continue;
        if (cMainCat->AddSubCat(std::make_shared<clsCat>(cMod, cMainCat->CatName(), *lLevel)))
        {
            ChangeRecord record;
            record.colMade = {{cMainCat->CatName(), *lLevel}};
            m_cState.cUndo.Add(L"new level " + cMainCat->CatName() + L" " + DecimalText(*lLevel), record);
            m_cState.cHistoryFiles.Save(cMainCat);
            m_cState.RetrySaves();
            return true;
        }
        if (!TryAgain({L"Category Level Already Present!", L"There is already a category level " +
                                                               DecimalText(*lLevel) + L" under " + sCatName +
                                                               sTryAgain}))
            return false;
    }
}

// A level in the valid range; nothing when the user cancelled.
std::optional<std::int32_t> CategoryCreation::AskForLevel(const std::wstring& sCatName,
                                                          std::wstring& sTyped) const
{
    ModScheduler& cMod = m_cState.cMod;
    while (true)
    {
        sTyped = Trim(cMod.Input(L"Enter The New Category Level",
                                 L"This level will be placed under category: " + sCatName + sCrLf +
                                     L"Valid Values: Greater than zero" + sCrLf +
                                     L"Type the numeric NEW category level",
                                 sTyped)
                          .value_or(L""));
        if (sTyped.empty())
            return std::nullopt;
        const std::optional<double> dTyped = NumericValue(sTyped);
        if (!dTyped)
        {
            cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, L"Must Be a Number!", L"Invalid Entry!");
            continue;
        }
        const std::optional<std::int32_t> lLevel = ToLong(*dTyped);
        if (lLevel && *lLevel > 0 && *lLevel < lLevelLimit)
            return lLevel;
        cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, L"Invalid Category Level Entry",
                 L"Invalid - must be greater than zero and less than 32675!");
    }
}

} // namespace ravlo
