// SPDX-License-Identifier: MIT
#include "rotation/NextCut.h"

#include "base/Text.h"
#include "rotation/Placeholder.h"

#include <optional>
#include <utility>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sNextCutFromRotationTitle = L"Error in NextCutFromRotation [cSchedMan]";

// Finds the level of the key. Returns a placeholder kind when there is none, or it must not rotate now.
std::optional<CutKind> Resolve(const CatCollection* colMainCats, const RotationRequest& request,
                               RotationAnswer& answer)
{
    const auto [sName, sLevel] = SplitCategoryKey(request.strSubCatKey);
    if (!sLevel)
        return eKindMainCatNotFound;
    answer.sMainCatKey = CategoryKey(std::wstring(sName), 0);
    answer.cMainCat = CatByKey(colMainCats, answer.sMainCatKey);
    if (!answer.cMainCat)
        return eKindMainCatNotFound;
    answer.cSubCat = CatByKey(answer.cMainCat->SubCats().get(), *sLevel);
    if (!answer.cSubCat)
        return eKindLevelNotFound;
    if (!request.bForEditablePlaylist && !request.bRotatesAllowed)
        return eKindRotationDeferred;
    return std::nullopt;
}

void MarkAsAskedFor(Cut& cCut, const RotationRequest& request)
{
    cCut.SetCategoryKey(request.strSubCatKey);
    cCut.SetMustBeOpener(request.bMustBeOpener);
}

void Answer(const CatCollection* colMainCats, const RotationRequest& request, const SelectionContext& context,
            RotationAnswer& answer)
{
    if (const std::optional<CutKind> eKind = Resolve(colMainCats, request, answer))
    {
        answer.eKind = *eKind;
        answer.cCut = MakePlaceholder(PlaceholderTexts{*eKind, {}, 0}, context.cDataBase.get());
    }
    else
    {
        Pick pick =
            NextCutFromCategory(answer.cSubCat, request.bMustBeOpener, request.cPrevSchedCut, context);
        answer.bMovedCuts = pick.bMovedCuts;
        answer.eKind = pick.eKind;
        answer.cCut = std::move(pick.cCut);
    }
    MarkAsAskedFor(*answer.cCut, request);
}

// Counts the picks that run.
class Running
{
public:
    explicit Running(int& lRunning) noexcept : m_lRunning(lRunning) { ++m_lRunning; }
    ~Running() { --m_lRunning; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    int& m_lRunning;
};

} // namespace

std::shared_ptr<clsCat> LevelByKey(const CatCollection* colMainCats, std::wstring_view strSubCatKey)
{
    const auto [sName, sLevel] = SplitCategoryKey(strSubCatKey);
    const std::shared_ptr<clsCat> cMainCat =
        sLevel ? MainCatByName(colMainCats, std::wstring(sName)) : nullptr;
    return cMainCat ? CatByKey(cMainCat->SubCats().get(), *sLevel) : nullptr;
}

RotationAnswer NextCutFromRotation(const CatCollection* colMainCats, const RotationRequest& request,
                                   const SelectionContext& context)
{
    RotationAnswer answer;
    try
    {
        Answer(colMainCats, request, context, answer);
    }
    catch (...)
    {
        context.report(ErrorReport::Critical, sNextCutFromRotationTitle, CurrentError());
        answer.eKind = eKindNothingSchedulable;
        PlaceholderTexts texts;
        if (answer.cSubCat)
        {
            texts.sCatName = answer.cSubCat->CatName();
            texts.lCatLevel = answer.cSubCat->CatLevel();
        }
        // A cut of the library itself: the database's cut may be what failed.
        answer.cCut = MakePlaceholder(texts, nullptr);
        MarkAsAskedFor(*answer.cCut, request);
    }
    return answer;
}

RotationAnswer PicksOnAir::NextCut(const CatCollection* colMainCats, const RotationRequest& request,
                                   SelectionContext context)
{
    const TextKey cKey(request.strSubCatKey);
    if (m_lRunning == 0)
        m_colChosen.clear();
    context.colChosen = &m_colChosen;
    const Running cRunning(m_lRunning);
    bool bFailed = false;
    context.report = [&, report = std::move(context.report)](ErrorReport eHow, const wchar_t* sWhere,
                                                             const RuntimeError& cError) {
        const bool bShow = eHow != ErrorReport::LogOnly && !m_cFailing;
        bFailed = bFailed || eHow != ErrorReport::LogOnly;
        if (bShow)
            m_cFailing = cKey; // before the box, which may let the host pick again
        report(bShow ? eHow : ErrorReport::LogOnly, sWhere, cError);
    };
    RotationAnswer answer = NextCutExplained(colMainCats, request, context);
    const bool bPicked = request.bForEditablePlaylist || request.bRotatesAllowed;
    if (bPicked && !bFailed && m_cFailing == cKey)
        m_cFailing.reset();
    return answer;
}

RotationAnswer PicksOnAir::NextCutExplained(const CatCollection* colMainCats, const RotationRequest& request,
                                            SelectionContext& context)
{
    ExplanationSink sink;
    context.note = [&sink, note = std::move(context.note)](const TraceStep& step) {
        sink.Note(step);
        note(step);
    };
    RotationAnswer answer = NextCutFromRotation(colMainCats, request, context);
    try
    {
        if (answer.cSubCat && answer.eKind != eKindRotationDeferred)
            m_colExplanations[answer.cSubCat] =
                std::make_shared<const Explanation>(sink.Take(answer.eKind, *answer.cSubCat));
    }
    catch (...)
    {
        context.report(ErrorReport::LogOnly, L"LastExplanation", CurrentError()); // the pick is worth more
    }
    return answer;
}

std::shared_ptr<const Explanation>
PicksOnAir::LastExplanation(const std::shared_ptr<const clsCat>& cSubCat) const
{
    const auto it = m_colExplanations.find(cSubCat);
    return it == m_colExplanations.end() ? nullptr : it->second;
}

void PicksOnAir::MoveExplanations(const CatCollection& colFrom, const CatCollection& colTo)
{
    Explanations colMoved;
    for (const auto& [cWeak, cExplanation] : m_colExplanations)
    {
        const std::shared_ptr<const clsCat> cSubCat = cWeak.lock();
        const std::wstring sKey = cSubCat ? CategoryKey(cSubCat->CatName(), cSubCat->CatLevel()) : L"";
        if (!cSubCat || LevelByKey(&colFrom, sKey) != cSubCat)
            continue; // it was deleted
        if (const std::shared_ptr<clsCat> cSame = LevelByKey(&colTo, sKey))
            colMoved.emplace(cSame, cExplanation);
    }
    m_colExplanations = std::move(colMoved);
}

} // namespace ravlo
