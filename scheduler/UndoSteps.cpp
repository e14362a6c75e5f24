// SPDX-License-Identifier: MIT
#include "scheduler/UndoSteps.h"

#include "base/CaseFolding.h"

#include <utility>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sWhere = L"Undo.dat";
constexpr std::uint32_t lMsBetweenReadings = 1'000;

// The file for steps that are too large together: those of one way, if they are not too large alone.
std::string FileOfOneWay(const UndoContent& content)
{
    for (const auto pSteps : {&UndoContent::colUndo, &UndoContent::colRedo})
    {
        UndoContent oneWay;
        for (const UndoStep& step : content.*pSteps)
            if (const std::optional<ChangeRecord> record = DecodeRecord(step.bytes, content.cTables))
                (oneWay.*pSteps).push_back({0, step.sWhat, EncodeRecord(*record, oneWay.cTables)});
        std::string bytes = EncodeUndoFile(oneWay);
        if (!(oneWay.*pSteps).empty() && bytes.size() <= UndoSteps::mostBytes)
            return bytes;
    }
    return EncodeUndoFile({});
}

} // namespace

// ---- steps

void UndoSteps::Add(const std::wstring& sWhat, const ChangeRecord& record) noexcept
{
    if (record.IsEmpty())
        return;
    Load();
    try
    {
        m_content.colRedo.clear();
        Push(UndoWay::Undo, sWhat, record);
    }
    catch (...)
    {
        m_cMod.LogError(sWhere, CurrentError());
    }
}

void UndoSteps::Push(UndoWay eWay, const std::wstring& sWhat, const ChangeRecord& record)
{
    m_eUnsaved = Unsaved::Yes;
    if (record.IsEmpty())
        return;
    Steps(eWay).push_back({++m_lNumbers, sWhat, EncodeRecord(record, m_content.cTables)});
    DropOldest();
}

bool UndoSteps::Has(UndoWay eWay) noexcept
{
    Load();
    return !Steps(eWay).empty();
}

std::wstring UndoSteps::What(UndoWay eWay) { return Has(eWay) ? Steps(eWay).back().sWhat : std::wstring(); }

std::optional<UndoSteps::Step> UndoSteps::Next(UndoWay eWay)
{
    if (!Has(eWay))
        return std::nullopt;
    const UndoStep& step = Steps(eWay).back();
    return Step{step.lNumber, step.sWhat,
                DecodeRecord(step.bytes, m_content.cTables).value_or(ChangeRecord())};
}

void UndoSteps::Reversed(const Step& step, UndoWay eWay, const ChangeRecord& inverse) noexcept
{
    try
    {
        // Others may have added steps while cuts were read.
        std::erase_if(Steps(eWay), [&](const UndoStep& other) { return other.lNumber == step.lNumber; });
        Push(eWay == UndoWay::Undo ? UndoWay::Redo : UndoWay::Undo, step.sWhat, inverse);
    }
    catch (...)
    {
        m_cMod.LogError(sWhere, CurrentError());
    }
}

// ---- the bound

std::size_t UndoSteps::StepBytes() const noexcept
{
    std::size_t bytes = 0;
    for (const std::deque<UndoStep>* pSteps : {&m_content.colUndo, &m_content.colRedo})
        for (const UndoStep& step : *pSteps)
            bytes += step.bytes.size();
    return bytes;
}

std::size_t UndoSteps::Bytes() const noexcept
{
    return StepBytes() + m_content.cTables.KeyBytes().size() + m_content.cTables.TextBytes().size();
}

// Over the bound, forgets what no step needs, then drops the steps that are farthest away, those to undo
// first. Some are dropped at once, so that the tables are made again only now and then.
void UndoSteps::DropOldest()
{
    while (m_content.colUndo.size() > mostSteps)
        m_content.colUndo.pop_front();
    if (Bytes() <= mostBytes)
        return;
    Renumber();
    for (std::deque<UndoStep>* pSteps : {&m_content.colUndo, &m_content.colRedo})
        while (Bytes() > mostBytes / 8 * 7 && pSteps->size() > 1)
        {
            pSteps->erase(pSteps->begin(), pSteps->begin() + std::ssize(*pSteps) / 4 + 1);
            Renumber();
        }
}

// Forgets the keys and texts that no step refers to any more.
void UndoSteps::Renumber()
{
    UndoTables cTables;
    for (std::deque<UndoStep>* pSteps : {&m_content.colUndo, &m_content.colRedo})
        for (UndoStep& step : *pSteps)
            if (const std::optional<ChangeRecord> record = DecodeRecord(step.bytes, m_content.cTables))
                step.bytes = EncodeRecord(*record, cTables);
    m_content.cTables = std::move(cTables);
}

// ---- the file

void UndoSteps::Serve(const std::wstring& sAppPath) noexcept
try
{
    const std::wstring sPath = sAppPath + L"Scheduler\\Undo.dat";
    if (EqualIgnoringCase(sPath, m_sPath))
        return;
    SaveAtEnd();
    m_content = {};
    m_eUnsaved = Unsaved::No;
    m_bLoaded = false;
    m_lReadFailedAt.reset();
    m_sPath = sPath;
}
catch (...)
{
    m_cMod.LogError(sWhere, CurrentError());
}

void UndoSteps::Load() noexcept
{
    const std::uint32_t lNow = m_cMod.Ports().cClock.TickCount();
    if (m_bLoaded || (m_lReadFailedAt && lNow - *m_lReadFailedAt < lMsBetweenReadings))
        return;
    try
    {
        Read();
        m_bLoaded = true;
        m_lReadFailedAt.reset();
    }
    catch (...)
    {
        if (!m_lReadFailedAt)
            m_cMod.LogError(sWhere, CurrentError());
        m_lReadFailedAt = lNow;
    }
}

// Waits for a locked file only at the first attempt: the others are made while a menu opens.
void UndoSteps::Read()
{
    const std::optional<std::string> bytes =
        m_cMod.Saved().Read(m_sPath, this, m_lReadFailedAt ? Patience::None : Patience::UpToASecond);
    if (!bytes)
        return;
    if (std::optional<UndoContent> content = DecodeUndoFile(*bytes))
    {
        PutBefore(std::move(*content));
        return;
    }
    m_cMod.Saved().NotUnderstood(m_sPath, this);
    m_cMod.WriteDebugLog(L"Nothing can be undone, the file is damaged: " + m_sPath);
}

// Puts these steps before those of this program, of which the first one ended redo.
void UndoSteps::PutBefore(UndoContent older)
{
    const bool bNewer = m_eUnsaved != Unsaved::No;
    if (bNewer)
        older.colRedo.clear();
    for (std::deque<UndoStep>* pSteps : {&older.colUndo, &older.colRedo})
        for (UndoStep& step : *pSteps)
            step.lNumber = ++m_lNumbers;
    for (UndoWay eWay : {UndoWay::Undo, UndoWay::Redo})
        for (const UndoStep& step : Steps(eWay))
            if (const std::optional<ChangeRecord> record = DecodeRecord(step.bytes, m_content.cTables))
                (eWay == UndoWay::Undo ? older.colUndo : older.colRedo)
                    .push_back({step.lNumber, step.sWhat, EncodeRecord(*record, older.cTables)});
    m_content = std::move(older);
    if (bNewer)
        DropOldest();
}

void UndoSteps::Save() noexcept
{
    if (m_eUnsaved != Unsaved::Yes || m_sPath.empty())
        return;
    try
    {
        m_eUnsaved = Unsaved::Tried;
        Load();
        if (!m_bLoaded)
            return; // what the file has must not be lost
        const SavedFiles::Stamp lStamp = m_cMod.Saved().Begin();
        const std::string bytes = Bytes() > mostBytes ? FileOfOneWay(m_content) : EncodeUndoFile(m_content);
        m_cMod.Saved().Replace(m_sPath, lStamp, bytes, this, SavedFiles::Unseen::KeepAside, Patience::None);
        m_eUnsaved = Unsaved::No;
    }
    catch (...)
    {
        m_cMod.LogError(sWhere, CurrentError());
    }
}

void UndoSteps::SaveAtEnd() noexcept
{
    if (m_eUnsaved == Unsaved::Tried)
        m_eUnsaved = Unsaved::Yes;
    if (m_lReadFailedAt)
        *m_lReadFailedAt -= lMsBetweenReadings; // one more attempt now
    Save();
}

} // namespace ravlo
