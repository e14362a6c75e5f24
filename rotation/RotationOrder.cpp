// SPDX-License-Identifier: MIT
#include "rotation/RotationOrder.h"

#include "rotation/SelectionTrace.h"

namespace ravlo
{

std::shared_ptr<Cut> DataBaseCutOf(const Cut& cCut, const DataBase& cDataBase)
{
    if (std::shared_ptr<Cut> cOwn = cDataBase.CutByKey(cCut.Key()))
        return cOwn;
    return cDataBase.CutByArtistTitle(cCut.Artist(), cCut.Title());
}

SentToBack SendToBack(clsCat* cSubCat, const Cut* cCut, const DataBase* cDataBase)
{
    if (!cSubCat || !cCut || !cDataBase)
        return SentToBack::Unknown;
    std::shared_ptr<Cut> cOwn = DataBaseCutOf(*cCut, *cDataBase);
    if (!cOwn)
        return SentToBack::Unknown;
    const TextKey cKey = cOwn->Key();
    const std::shared_ptr<CutCollection> colOrder = cSubCat->SchedCuts();
    if (!colOrder->SendToBack(cKey))
        return SentToBack::No;
    colOrder->At(colOrder->Count() - 1) = std::move(cOwn);
    return SentToBack::Yes;
}

bool SendToBackOfCategory(clsCat* cSubCat, const Cut* cCut, const SelectionWorld& world)
{
    try
    {
        const SentToBack eSent = SendToBack(cSubCat, cCut, world.cDataBase.get());
        if (eSent == SentToBack::Unknown)
            return false;
        const TextKey cKey = cCut->Key();
        TraceStep step =
            StepInLevel(eSent == SentToBack::Yes ? StepKind::SentToBack : StepKind::NotSentToBack, *cSubCat);
        step.sKey = cKey.Text();
        world.note(step);
        return eSent == SentToBack::Yes;
    }
    catch (...)
    {
        // No box: a pick has its own way round a cut that cannot be moved.
        world.report(ErrorReport::LogOnly, L"SendToBackOfCategory [schedman]", CurrentError());
        return false;
    }
}

} // namespace ravlo
