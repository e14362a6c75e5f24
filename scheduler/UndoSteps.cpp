// SPDX-License-Identifier: MIT
#include "scheduler/UndoSteps.h"

#include "base/CaseFolding.h"
#include "scheduler/PlacedCuts.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sUndoFileName = L"Undo.dat";
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
        if (!(oneWay.*pSteps).empty() && bytes.size() <= UndoSteps::mostStepBytes + UndoSteps::mostTableBytes)
            return bytes;
    }
    return EncodeUndoFile({});
}

} // namespace

// Runs a change of the steps. When it fails, they may be wrong.
template <class Body> void UndoSteps::Attempt(Body&& body) noexcept
{
    try
    {
        body();
    }
    catch (...)
    {
        m_cMod.LogError(sUndoFileName, CurrentError());
        m_content = {};
        EndSeries();
        m_bGrown = false;
        MarkUnsaved();
    }
}

// ---- adding

void UndoSteps::Add(const std::wstring& sWhat, const ChangeRecord& record) noexcept
{
    if (record.IsEmpty())
        return;
    Load();
    Attempt([&] {
        if (IsUnitOpen() && record.settings.colItems.empty())
        {
            m_cParts.Add(record);
            return m_colOpen.back()->TakeIn(sWhat, record);
        }
        Settle();
        EndSeries();
        m_content.colRedo.clear();
        Push(UndoWay::Undo, sWhat, record);
    });
}

void UndoSteps::AddToSeries(const Series& series, const ChangeRecord& record) noexcept
{
    if (record.IsEmpty())
        return;
    Load();
    Attempt([&] {
        if (IsUnitOpen())
        {
            m_cParts.Add(record);
            return m_colOpen.back()->TakeIn(series.textOf(record), record);
        }
        const bool bGoesOn = m_sSeries == series.sName && m_colAfter == record.colOrders;
        m_colAfter = series.colAfter;
        if (bGoesOn)
            return Grow(series, record);
        Settle();
        m_content.colRedo.clear();
        m_content.colUndo.push_back({++m_numbers, series.textOf(record), {}});
        m_growing = {};
        m_growing.Add(record);
        m_bGrown = true;
        m_sSeries = series.sName;
        MarkUnsaved();
        while (m_content.colUndo.size() > mostSteps)
            m_content.colUndo.pop_front();
    });
}

void UndoSteps::Grow(const Series& series, const ChangeRecord& record)
{
    m_growing.Add(record);
    m_bGrown = true;
    MarkUnsaved();
    if (m_growing.Record().colCuts.empty() && m_growing.Record().colOrders == m_colAfter)
    {
        m_content.colUndo.pop_back();
        m_bGrown = false;
        EndSeries();
    }
    else
        m_content.colUndo.back().sWhat = series.textOf(m_growing.Record());
}

// The newest step gets its bytes. Call before the steps' bytes are used.
void UndoSteps::Settle()
{
    if (!std::exchange(m_bGrown, false))
        return;
    m_content.colUndo.back().bytes = EncodeRecord(m_growing.Record(), m_content.cTables);
    DropOldest();
}

void UndoSteps::Push(UndoWay eWay, const std::wstring& sWhat, const ChangeRecord& record)
{
    MarkUnsaved();
    if (record.IsEmpty())
        return;
    Steps(eWay).push_back({++m_numbers, sWhat, EncodeRecord(record, m_content.cTables)});
    DropOldest();
}

void UndoSteps::Renamed(const TextKey& cFrom, const TextKey& cTo) noexcept
{
    Load();
    Attempt([&] {
        for (OpenUnit* pUnit : m_colOpen)
            pUnit->Renamed(cFrom, cTo);
        Settle();
        EndSeries();
        if (m_content.cTables.Exchange(cFrom, cTo))
            MarkUnsaved();
        if (!m_bLoaded)
            m_colRenamed.emplace_back(cFrom, cTo);
    });
}

// ---- work in parts

void UndoSteps::Close(OpenUnit& cUnit) noexcept
{
    std::erase(m_colOpen, &cUnit);
    if (!IsUnitOpen())
        m_cParts.End();
}

// The parts say which Undo.dat they follow: that has to have the steps before them, if it can be written.
void UndoSteps::BeginParts(const std::wstring& sWhat) noexcept
{
    if (m_cParts.IsOpen() || m_sPath.empty() || !m_bMayWrite)
        return;
    Load();
    if (!m_bLoaded)
        return;
    m_lPauseMs = 0;
    Save();
    if (m_cParts.IsLeft())
        return; // of a step that is nowhere else
    Attempt([&] { m_cParts.Begin(PartsPath(), m_check, sWhat); });
}

std::wstring UndoSteps::PartsPath() const
{
    return m_sPath.substr(0, m_sPath.find_last_of(L'\\') + 1) + sPartsFileName;
}

// A killed program's unit is the newest step, and has ended redo as others do.
void UndoSteps::ReadParts(UndoContent& older, Patience ePatience)
{
    if (!m_bMayWrite)
        return; // they may be of the program that is at work
    const std::optional<StepParts::Found> found = m_cParts.Read(PartsPath(), m_check, ePatience);
    if (!found || found->record.IsEmpty())
        return;
    UndoTables cTables;
    EncodeRecord(found->record, cTables);
    if (IsForeign(cTables))
        return;
    older.colUndo.push_back({0, sInterrupted + found->sWhat, EncodeRecord(found->record, older.cTables)});
    older.colRedo.clear();
    m_cMod.WriteDebugLog(L"Interrupted, and can be undone: " + found->sWhat);
}

// ---- undoing

bool UndoSteps::Has(UndoWay eWay) noexcept
{
    Load();
    return !Steps(eWay).empty();
}

std::wstring UndoSteps::What(UndoWay eWay) { return Has(eWay) ? Steps(eWay).back().sWhat : std::wstring(); }

std::optional<UndoSteps::Step> UndoSteps::Next(UndoWay eWay)
{
    Attempt([&] { Settle(); });
    EndSeries();
    if (!Has(eWay))
        return std::nullopt;
    const UndoStep& step = Steps(eWay).back();
    return Step{step.number, step.sWhat, DecodeRecord(step.bytes, m_content.cTables)};
}

void UndoSteps::Reversed(const Step& step, UndoWay eWay, const ChangeRecord& inverse) noexcept
{
    Attempt([&] {
        Settle();
        EndSeries();
        // Others may have added steps while cuts were read.
        std::erase_if(Steps(eWay), [&](const UndoStep& other) { return other.number == step.number; });
        Push(eWay == UndoWay::Undo ? UndoWay::Redo : UndoWay::Undo, step.sWhat, inverse);
    });
}

// ---- the bounds

std::size_t UndoSteps::StepBytes() const noexcept
{
    std::size_t bytes = 0;
    for (const std::deque<UndoStep>* pSteps : {&m_content.colUndo, &m_content.colRedo})
        for (const UndoStep& step : *pSteps)
            bytes += step.bytes.size();
    return bytes;
}

bool UndoSteps::IsTooLarge() const noexcept
{
    return StepBytes() > mostStepBytes || m_content.cTables.Size() > mostTableBytes;
}

// Over a bound, forgets what no step needs, then drops the steps that are farthest away, those to undo first.
// Some are dropped at once, so that the tables are made again only now and then.
void UndoSteps::DropOldest()
{
    while (m_content.colUndo.size() > mostSteps)
        m_content.colUndo.pop_front();
    if (!IsTooLarge())
        return;
    Renumber();
    for (std::deque<UndoStep>* pSteps : {&m_content.colUndo, &m_content.colRedo})
        while ((StepBytes() > mostStepBytes / 8 * 7 || m_content.cTables.Size() > mostTableBytes / 8 * 7) &&
               pSteps->size() > 1)
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
{
    SaveAtEnd();
    EndSeries();
    Attempt([&] {
        const std::wstring sPath = sAppPath + L"Scheduler\\Undo.dat";
        if (EqualIgnoringCase(sPath, m_sPath))
            return ForgetForeign();
        m_cParts.Leave();
        m_content = {};
        m_colRenamed.clear();
        m_eUnsaved = Unsaved::No;
        m_lPauseMs = 0;
        m_bLoaded = false;
        m_lReadFailedAt.reset();
        m_sPath = sPath;
    });
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
            m_cMod.LogError(sUndoFileName, CurrentError());
        m_lReadFailedAt = lNow;
    }
}

// Waits for a locked file only at the first attempt: the others are made while a menu opens.
void UndoSteps::Read()
{
    const Patience ePatience = m_lReadFailedAt ? Patience::None : Patience::UpToASecond;
    const std::optional<std::string> bytes = m_cMod.Saved().Read(m_sPath, this, ePatience);
    m_check = UndoFileCheck(bytes.value_or(std::string()));
    std::optional<UndoContent> content = bytes ? DecodeUndoFile(*bytes) : UndoContent();
    if (!content || IsForeign(content->cTables))
    {
        m_cMod.Saved().NotUnderstood(m_sPath, this);
        m_cMod.WriteDebugLog((content ? L"Nothing can be undone, the file is of another database: "
                                      : L"Nothing can be undone, the file is damaged: ") +
                             m_sPath);
        content = UndoContent();
    }
    const std::size_t steps = content->colUndo.size();
    ReadParts(*content, ePatience);
    const bool bFound = content->colUndo.size() != steps;
    PutBefore(std::move(*content));
    if (bFound)
        MarkUnsaved();
}

bool UndoSteps::IsForeign(const UndoTables& cTables) const
{
    if (!m_pPlacedCuts || cTables.Keys() == 0)
        return false;
    for (std::size_t number = 0; number < cTables.Keys(); ++number)
        if (m_pPlacedCuts->Contains(*cTables.Key(number)))
            return false;
    return true;
}

// After another database was read for the same folder. Its steps may come again with a third one.
void UndoSteps::ForgetForeign()
{
    if (m_eUnsaved == Unsaved::No && m_content.colUndo.empty() && m_content.colRedo.empty())
        m_bLoaded = false;
    if (!m_bLoaded || !IsForeign(m_content.cTables))
        return;
    m_content = {};
    m_eUnsaved = Unsaved::No;
    m_cMod.Saved().NotUnderstood(m_sPath, this);
    m_cMod.WriteDebugLog(L"Nothing can be undone, the steps are of another database: " + m_sPath);
}

// Puts these steps before those of this program, of which the first one ended redo.
void UndoSteps::PutBefore(UndoContent older)
{
    Settle();
    for (const auto& [cFrom, cTo] : std::exchange(m_colRenamed, {}))
        older.cTables.Exchange(cFrom, cTo);
    const bool bNewer = m_eUnsaved != Unsaved::No;
    if (bNewer)
        older.colRedo.clear();
    for (std::deque<UndoStep>* pSteps : {&older.colUndo, &older.colRedo})
        for (UndoStep& step : *pSteps)
            step.number = ++m_numbers;
    for (UndoWay eWay : {UndoWay::Undo, UndoWay::Redo})
        for (const UndoStep& step : Steps(eWay))
            if (const std::optional<ChangeRecord> record = DecodeRecord(step.bytes, m_content.cTables))
                (eWay == UndoWay::Undo ? older.colUndo : older.colRedo)
                    .push_back({step.number, step.sWhat, EncodeRecord(*record, older.cTables)});
    m_content = std::move(older);
    if (bNewer)
        DropOldest();
}

void UndoSteps::Save() noexcept
{
    const std::uint32_t lNow = m_cMod.Ports().cClock.TickCount();
    if (m_cParts.IsOpen())
        return;
    if (m_eUnsaved == Unsaved::No && m_bLoaded && m_cParts.IsLeft())
        m_cParts.Delete();
    if (m_eUnsaved != Unsaved::Yes || m_sPath.empty() || !m_bMayWrite || m_bSavedLast ||
        lNow - m_lSavedAt < m_lPauseMs)
        return;
    try
    {
        m_eUnsaved = Unsaved::Tried;
        Load();
        if (m_bLoaded) // otherwise what the file has must not be lost
            Write();
    }
    catch (...)
    {
        m_cMod.LogError(sUndoFileName, CurrentError());
    }
}

void UndoSteps::Write()
{
    const std::uint32_t lBegin = m_cMod.Ports().cClock.TickCount();
    Settle();
    const SavedFiles::Stamp stamp = m_cMod.Saved().Begin();
    const std::string bytes = IsTooLarge() ? FileOfOneWay(m_content) : EncodeUndoFile(m_content);
    m_cMod.Saved().Replace(m_sPath, stamp, bytes, this, SavedFiles::Unseen::KeepAside, Patience::None);
    m_check = UndoFileCheck(bytes);
    m_eUnsaved = Unsaved::No;
    if (m_cParts.IsLeft())
        m_cParts.Delete();
    m_lSavedAt = m_cMod.Ports().cClock.TickCount();
    m_lPauseMs = std::min((m_lSavedAt - lBegin) * lPauseFactor, lLongestPauseMs);
}

void UndoSteps::SaveAtEnd() noexcept
{
    if (m_eUnsaved == Unsaved::Tried)
        m_eUnsaved = Unsaved::Yes;
    if (m_lReadFailedAt)
        *m_lReadFailedAt -= lMsBetweenReadings; // one more attempt now
    m_lPauseMs = 0;
    Save();
}

} // namespace ravlo
