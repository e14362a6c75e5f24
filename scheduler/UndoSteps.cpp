// SPDX-License-Identifier: MIT
#include "scheduler/UndoSteps.h"

#include "base/CaseFolding.h"

#include <utility>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sWhere = L"Undo.dat";

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

// Over the bound, drops some steps at once, so that the tables are made again only now and then.
void UndoSteps::DropOldest()
{
    std::deque<UndoStep>& colUndo = m_content.colUndo;
    while (colUndo.size() > mostSteps)
        colUndo.pop_front();
    for (std::size_t most = mostBytes; Bytes() > most && colUndo.size() > 1; most = mostBytes / 8 * 7)
    {
        colUndo.erase(colUndo.begin(), colUndo.begin() + std::ssize(colUndo) / 4 + 1);
        if (Bytes() > mostBytes / 8 * 7)
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
    m_sPath = sPath;
}
catch (...)
{
    m_cMod.LogError(sWhere, CurrentError());
}

void UndoSteps::Load() noexcept
try
{
    if (std::exchange(m_bLoaded, true))
        return;
    const std::optional<std::string> bytes = m_cMod.Saved().Read(m_sPath, this);
    if (!bytes)
        return;
    if (std::optional<UndoContent> content = DecodeUndoFile(*bytes))
    {
        m_content = std::move(*content);
        for (std::deque<UndoStep>* pSteps : {&m_content.colUndo, &m_content.colRedo})
            for (UndoStep& step : *pSteps)
                step.lNumber = ++m_lNumbers;
        return;
    }
    m_cMod.Saved().NotUnderstood(m_sPath, this);
    m_cMod.WriteDebugLog(L"Nothing can be undone, the file is damaged: " + m_sPath);
}
catch (...)
{
    m_cMod.LogError(sWhere, CurrentError());
}

void UndoSteps::Save() noexcept
{
    if (m_eUnsaved != Unsaved::Yes || m_sPath.empty())
        return;
    try
    {
        m_eUnsaved = Unsaved::Tried;
        const SavedFiles::Stamp lStamp = m_cMod.Saved().Begin();
        const std::string bytes =
            Bytes() > mostBytes ? EncodeUndoFile(UndoContent()) : EncodeUndoFile(m_content);
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
    Save();
}

} // namespace ravlo
