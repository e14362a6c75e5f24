// SPDX-License-Identifier: MIT
#include "ui/health/frmHealthPresenter.h"

#include "base/CaseFolding.h"
#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "forecast/Advice.h"
#include "forecast/Report.h"
#include "forecast/ReportText.h"
#include "platform/Messages.h"
#include "ui/health/HealthTexts.h"

#include <utility>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sSection = L"Settings";
constexpr const wchar_t* sFirstDays = L"28";

// Each station has a clock of its own.
std::wstring ClockKey(const ModScheduler& cMod) { return L"frmHealthClock " + cMod.AppPath(); }

std::wstring StartText(DateTime dtWhen)
{
    std::wstring sText = IsoText(dtWhen).substr(0, 16);
    sText[10] = L' ';
    return sText;
}

bool EndsWith(const std::wstring& sText, const std::wstring& sEnd)
{
    return sText.size() >= sEnd.size() &&
           EqualIgnoringCase(std::wstring_view(sText).substr(sText.size() - sEnd.size()), sEnd);
}

} // namespace

frmHealthPresenter::frmHealthPresenter(frmHealthView& cView, ModScheduler& cMod,
                                       std::weak_ptr<clsSchedMan> cSchedMan, HealthMemory& memory)
    : m_cView(cView), m_cMod(cMod), m_cSchedMan(std::move(cSchedMan)), m_memory(memory)
{
}

frmHealthPresenter::~frmHealthPresenter()
{
    if (m_cFollowed)
        m_cFollowed->Unadvise(*this);
}

// ---- opening and closing ----

std::optional<HealthTarget> frmHealthPresenter::ShowModalUI(std::optional<Plan> hostPlan)
{
    if (m_bShowing)
    {
        m_cView.BringToFront();
        return std::nullopt;
    }
    const ScopedFlag cShowing(m_bShowing);
    m_plan = HealthPlan(std::move(hostPlan));
    ShowPlan();
    if (const std::shared_ptr<HealthForecast> cForecast = m_memory.cForecast)
    {
        m_bStale = true; // changes since the window was closed were not noticed
        TakeForecast(cForecast);
    }
    m_bSimulateNext = true;
    m_bRemembered = true;
    m_cView.AskForWork();
    m_cView.ShowModal();
    m_memory.plan = m_cView.Plan();
    return std::exchange(m_target, std::nullopt);
}

// The host's plan counts when there is one; else what was shown last, else the station's own clock.
void frmHealthPresenter::ShowPlan()
{
    std::vector<std::wstring> colChoices = m_plan.Choices();
    const std::wstring sKept =
        m_cMod.Ports().cUserSettings.Get(sProgramTitle, sSection, ClockKey(m_cMod), L"");
    if (!sKept.empty())
        colChoices.push_back(sKept);
    PlanTexts plan{m_plan.FirstChoice(), StartText(m_cMod.Ports().cClock.Now()), sFirstDays};
    if (plan.sClock == HealthPlan::sEachLevel)
    {
        if (!m_memory.plan.sDays.empty())
            plan = m_memory.plan;
        else if (!sKept.empty())
            plan.sClock = sKept;
    }
    m_cView.ShowClockChoices(colChoices);
    m_cView.ShowPlan(plan);
}

void frmHealthPresenter::RequestClose()
{
    if (!Running())
        return m_cView.Close();
    m_bCloseNext = true;
    m_bCancel = true;
}

void frmHealthPresenter::Listen()
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    const std::shared_ptr<DataBase> cDataBase = cSchedMan ? cSchedMan->DataBase() : nullptr;
    if (cDataBase == m_cFollowed)
        return;
    if (m_cFollowed)
        m_cFollowed->Unadvise(*this);
    m_cFollowed = cDataBase;
    if (m_cFollowed)
        m_cFollowed->Advise(*this);
}

void frmHealthPresenter::NoteChange()
{
    if (std::exchange(m_bStale, true) || m_eRun == Run::Simulation)
        return; // a simulation shows it at its end
    ShowSummary();
}

// ---- work ----

void frmHealthPresenter::Work()
{
    if (Running())
        return;
    if (std::exchange(m_bCloseNext, false))
        return m_cView.Close();
    if (std::exchange(m_bSimulateNext, false))
        Try(Run::Simulation, [this](const SimulationProgress& progress) { Simulate(progress); });
    else if (!m_sReport.empty())
        Try(Run::Report, [this](const SimulationProgress& progress) { WriteReport(progress); });
    else if (NeedsAdvice())
        Try(Run::Advice, [this](const SimulationProgress& progress) { FindAdvice(progress); });
    else
        return;
    m_cView.AskForWork();
}

// Runs one piece of work. What fails leaves everything as it was and says why in the status line.
void frmHealthPresenter::Try(Run eRun, const std::function<void(const SimulationProgress& progress)>& body)
{
    const std::optional<std::size_t> level = m_level;
    m_eRun = eRun;
    m_bCancel = false;
    m_cView.MoveProgress(0);
    m_cView.ShowRunning(true);
    try
    {
        body([this](double dDone, bool& bCancel) { Step(dDone, bCancel); });
    }
    catch (...)
    {
        const RuntimeError cError = CurrentError();
        m_bAdviceFailed |= eRun == Run::Advice && m_level == level;
        if (eRun == Run::Report)
            m_sReport.clear();
        m_cView.ShowStatus(cError.Number() == error::UserInterrupt ? L"Cancelled." : cError.Description());
    }
    m_eRun = Run::None;
    m_cView.ShowRunning(false);
    ShowSummary();
    ShowAdvice();
}

// Lets the host run, and the user, who may cancel.
void frmHealthPresenter::Step(double dDone, bool& bCancel)
{
    m_cView.MoveProgress(dDone);
    {
        const ModScheduler::OthersRun cOthers(m_cMod);
        m_cMod.Pump();
    }
    bCancel = m_bCancel;
}

void frmHealthPresenter::Simulate(const SimulationProgress& progress)
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    if (!cSchedMan || !cSchedMan->colMainCats())
        throw RuntimeError(error::ObjectNotSet, L"The station is not loaded.");
    HealthPlan::Request request = m_plan.Read(m_cView.Plan());
    m_cView.ShowStatus(L"Simulating " + Trim(m_cView.Plan().sDays) + L" days ...");
    Listen();
    const bool bStale = std::exchange(m_bStale, false);
    try
    {
        Pace pace(m_cMod.Ports().cClock, progress);
        pace.Report(0);
        const LetHostRun pump = [&] { pace.PumpIfDue(); };
        const std::shared_ptr<const StationSnapshot> cStation =
            TakeSnapshot(m_cMod, *cSchedMan->colMainCats(), cSchedMan->History(), cSchedMan->Options(),
                         cSchedMan->Names(), pump);
        const Plan plan = PlanFor(request, *cStation);
        constexpr double dRead = 0.1; // parts of the work
        constexpr double dPlayed = 0.9;
        SimulationResult result = ravlo::Simulate(m_cMod, cStation, plan, request.dtStart, request.dDays, {},
                                                  PartOf(progress, dRead, dPlayed));
        pace.Reached(dPlayed);
        TakeForecast(std::make_shared<HealthForecast>(m_cMod, std::move(result), pump));
    }
    catch (...)
    {
        m_bStale |= bStale;
        throw;
    }
    if (!m_plan.IsChoice(request.sClock))
        m_cMod.Ports().cUserSettings.Set(sProgramTitle, sSection, ClockKey(m_cMod), request.sClock);
    m_cView.ShowStatus(std::exchange(m_sDone, L""));
}

// A window that opens shows figures even when the clock it remembers cannot be used any more.
Plan frmHealthPresenter::PlanFor(HealthPlan::Request& request, const StationSnapshot& station)
{
    const Files& cFiles = m_cMod.Ports().cFiles;
    const bool bRemembered = std::exchange(m_bRemembered, false);
    try
    {
        return m_plan.For(request, station, cFiles);
    }
    catch (const RuntimeError& cError)
    {
        if (!bRemembered || m_plan.IsChoice(request.sClock))
            throw;
        m_sDone = cError.Description() + L" Each level is asked in turn instead.";
    }
    request.sClock = HealthPlan::sEachLevel;
    PlanTexts texts = m_cView.Plan();
    texts.sClock = request.sClock;
    m_cView.ShowPlan(texts);
    return m_plan.For(request, station, cFiles);
}

void frmHealthPresenter::TakeForecast(std::shared_ptr<HealthForecast> cForecast)
{
    m_tables.ShowStation(nullptr); // no table refers to the old figures
    m_level.reset();
    m_memory.cForecast = std::move(cForecast);
    m_tables.ShowStation(Station());
    m_cView.ShowTable(HealthTable::Levels);
    ShowSummary();
    const SortedTable& table = Table(HealthTable::Levels);
    std::optional<std::size_t> level = m_memory.cForecast->LevelOf(m_memory.sLevelKey);
    if (!level && table.Rows() > 0)
        level = table.ItemAt(0);
    m_cView.SelectRow(HealthTable::Levels, level ? std::optional(table.RowOf(*level)) : std::nullopt);
    ChooseLevel(level);
}

bool frmHealthPresenter::NeedsAdvice() const
{
    const LevelHealth* pLevel = Level();
    return pLevel && !m_bAdviceFailed && pLevel->eLight != Light::Green &&
           StateOf(*pLevel) == LevelState::Asked && !m_memory.cForecast->adviser.Of(*m_level);
}

// During the search the user may choose another level. A simulation waits until the search has ended.
void frmHealthPresenter::FindAdvice(const SimulationProgress& progress)
{
    const std::shared_ptr<HealthForecast> cForecast = m_memory.cForecast;
    const std::size_t level = *m_level;
    m_cView.ShowStatus(L"Working out what helps " + LevelText(cForecast->health.levels[level].sKey) +
                       L" ...");
    cForecast->adviser.Find(level, progress);
    m_cView.ShowStatus(L"");
}

// ---- the chosen level ----

const LevelHealth* frmHealthPresenter::Level() const noexcept
{
    return m_level && m_memory.cForecast ? &m_memory.cForecast->health.levels[*m_level] : nullptr;
}

void frmHealthPresenter::ChooseLevel(std::optional<std::size_t> level)
{
    m_level = level;
    m_bAdviceFailed = false;
    if (const LevelHealth* pLevel = Level())
        m_memory.sLevelKey = pLevel->sKey;
    ShowLevel();
}

void frmHealthPresenter::ShowLevel()
{
    m_tables.ShowLevel(Level());
    for (const HealthTable eTable :
         {HealthTable::Seldom, HealthTable::Plays, HealthTable::Gaps, HealthTable::Hours})
        m_cView.ShowTable(eTable);
    m_cView.ShowLevel();
    ShowAdvice();
}

void frmHealthPresenter::ShowAdvice()
{
    const LevelHealth* pLevel = Level();
    const std::vector<LevelRemedy>* pRemedies = pLevel ? m_memory.cForecast->adviser.Of(*m_level) : nullptr;
    m_tables.ShowAdvice(pRemedies);
    m_remedy = pRemedies && !pRemedies->empty() ? std::optional<std::size_t>(0) : std::nullopt;
    m_cView.ShowTable(HealthTable::Advice);
    m_cView.SelectRow(HealthTable::Advice, m_remedy);
    std::wstring sText;
    for (const std::wstring& sReason : pLevel ? ReasonsOf(*pLevel) : std::vector<std::wstring>())
        sText += (sText.empty() ? L"" : L" ") + sReason;
    if (NeedsAdvice())
        sText += L" What helps is being worked out.";
    else if (m_bAdviceFailed)
        sText += L" What helps was not worked out; choose the level again.";
    else if (pRemedies && pRemedies->empty())
        sText += L" No single remedy helps.";
    m_cView.ShowReasons(sText);
    m_cView.EnableCarryOut(ChosenRemedy() != nullptr);
}

void frmHealthPresenter::ShowSummary()
{
    if (!Station())
        return m_cView.ShowSummary(L"");
    std::wstring sText;
    if (m_bStale)
        sText = L"These figures are of before the last change: simulate again. ";
    sText += SummaryText(*Station());
    const std::wstring sOverAsked = OverAskedText(*Station());
    m_cView.ShowSummary(sText + (sOverAsked.empty() ? L"" : L" ") + sOverAsked);
}

// ---- what the user does ----

void frmHealthPresenter::SimulateClick()
{
    m_bSimulateNext = true;
    m_bCancel = true;
    m_cView.AskForWork();
}

void frmHealthPresenter::CancelClick() { m_bCancel = true; }

void frmHealthPresenter::BrowseClick()
{
    PlanTexts plan = m_cView.Plan();
    const std::optional<std::wstring> sFile =
        m_cView.AskClockFile(m_plan.IsChoice(plan.sClock) ? L"" : plan.sClock);
    if (!sFile)
        return;
    plan.sClock = *sFile;
    m_cView.ShowPlan(plan);
    SimulateClick();
}

void frmHealthPresenter::SaveReportClick()
{
    if (!Station())
        return m_cView.ShowStatus(L"There are no figures to save yet.");
    std::optional<std::wstring> sFile = m_cView.AskReportFile(L"Rotation health.html");
    if (!sFile || !Station())
        return;
    m_sReport = std::move(*sFile);
    m_cView.AskForWork();
}

// The same report as a host's, with the advice for every level.
void frmHealthPresenter::WriteReport(const SimulationProgress& progress)
{
    const std::shared_ptr<HealthForecast> cForecast = m_memory.cForecast;
    m_cView.ShowStatus(L"Making the report ...");
    if (!cForecast->bReported)
    {
        StationHealth health = cForecast->health;
        Advise(cForecast->adviser, cForecast->result, health, progress);
        cForecast->health.remedies = std::move(health.remedies);
        for (std::size_t level = 0; level < health.levels.size(); ++level)
            cForecast->health.levels[level].advice = std::move(health.levels[level].advice);
        cForecast->bReported = true;
    }
    const std::wstring sFile = std::exchange(m_sReport, L"");
    ReplaceFile(m_cMod.Ports().cFiles, sFile,
                EndsWith(sFile, L".json") ? JsonReport(cForecast->health) : HtmlReport(cForecast->health));
    m_cView.ShowStatus(L"Saved in " + sFile + L".");
}

void frmHealthPresenter::HeadingClick(HealthTable eTable, std::size_t column)
{
    SortedTable& table = m_tables.Of(eTable);
    if (column >= table.Columns().size())
        return;
    table.SortBy(column);
    m_cView.ShowTable(eTable);
    std::optional<std::size_t> row;
    if (eTable == HealthTable::Levels && m_level)
        row = table.RowOf(*m_level);
    if (eTable == HealthTable::Advice && m_remedy)
        row = table.RowOf(*m_remedy);
    m_cView.SelectRow(eTable, row);
}

void frmHealthPresenter::RowSelected(HealthTable eTable, std::optional<std::size_t> row)
{
    const SortedTable& table = Table(eTable);
    if (row && *row >= table.Rows())
        return;
    const std::optional<std::size_t> item = row ? std::optional(table.ItemAt(*row)) : std::nullopt;
    if (eTable == HealthTable::Advice)
    {
        m_remedy = item;
        m_cView.EnableCarryOut(ChosenRemedy() != nullptr);
    }
    if (eTable != HealthTable::Levels || !item || (item == m_level && !m_bAdviceFailed))
        return;
    ChooseLevel(item);
    if (m_eRun == Run::Advice)
        m_bCancel = true; // the search for the previous level
    m_cView.AskForWork();
}

void frmHealthPresenter::GoTo(std::size_t row)
{
    const LevelHealth* pLevel = Level();
    if (!pLevel || row >= Table(HealthTable::Seldom).Rows())
        return;
    const StarvedCut& starved = m_tables.Seldom(Table(HealthTable::Seldom).ItemAt(row));
    m_target = HealthTarget{pLevel->sKey, pLevel->cuts[starved.cut].cKey.Text()};
    RequestClose();
}

// Null when none is selected that can be carried out.
const LevelRemedy* frmHealthPresenter::ChosenRemedy() const
{
    const std::vector<LevelRemedy>* pRemedies = Level() ? m_memory.cForecast->adviser.Of(*m_level) : nullptr;
    if (!pRemedies || !m_remedy || *m_remedy >= pRemedies->size())
        return nullptr;
    const LevelRemedy& remedy = pRemedies->at(*m_remedy);
    const bool bCan = remedy.eKind != RemedyKind::MoreCuts && remedy.eKind != RemedyKind::FewerCuts;
    return bCan ? &remedy : nullptr;
}

void frmHealthPresenter::CarryOutClick()
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    const LevelRemedy* pRemedy = ChosenRemedy();
    if (!cSchedMan || !pRemedy || Running())
        return;
    const LevelRemedy remedy = *pRemedy; // the host may run in between
    m_eRun = Run::CarryOut;
    try
    {
        CarryOut(*cSchedMan, remedy, Level()->sKey);
        m_bSimulateNext = true;
    }
    catch (...)
    {
        m_cView.ShowStatus(CurrentError().Description());
    }
    m_eRun = Run::None;
    m_cView.AskForWork();
}

void frmHealthPresenter::CarryOut(clsSchedMan& cSchedMan, const LevelRemedy& remedy,
                                  const std::wstring& sLevelKey)
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    const std::shared_ptr<clsCat> cSubCat = LevelByKey(colMainCats.get(), sLevelKey);
    if (!cSubCat)
        throw RuntimeError(error::InvalidProcedureCall,
                           LevelText(sLevelKey) + L" is no longer there: simulate again.");
    switch (remedy.eKind)
    {
    case RemedyKind::FairRotation:
        cSchedMan.SetFairRotation(true);
        m_sDone = L"Fair rotation is on.";
        return;
    case RemedyKind::Spread:
        cSchedMan.RememberSpread(*remedy.spread);
        cSchedMan.SpreadCategories({cSubCat}, false);
        m_sDone = LevelText(sLevelKey) + L" is spread.";
        return;
    case RemedyKind::ArtistSeparation:
        cSchedMan.ChangeRules(cSubCat, {remedy.lArtistSepMins, std::nullopt, std::nullopt, std::nullopt});
        m_sDone = L"The artist separation of " + LevelText(sLevelKey) + L" is " +
                  DecimalText(remedy.lArtistSepMins) + L" minutes.";
        return;
    case RemedyKind::TitleSeparation:
        cSchedMan.ChangeRules(cSubCat, {std::nullopt, remedy.lTitleSepMins, std::nullopt, std::nullopt});
        m_sDone = L"The title separation of " + LevelText(sLevelKey) + L" is " +
                  DecimalText(remedy.lTitleSepMins) + L" minutes.";
        return;
    case RemedyKind::MoreCuts:
    case RemedyKind::FewerCuts:
        return;
    }
}

} // namespace ravlo
