// SPDX-License-Identifier: MIT
#include "rotation/RotationOrder.h"

#include "rotation/SelectionTrace.h"

namespace ravlo
{

namespace
{

// Usually it is the head that moves, which needs no look-up by key.
bool MoveToBack(CutCollection& colOrder, const TextKey& cKey)
{
    const TextKey* pHead = colOrder.Empty() ? nullptr : colOrder.KeyAt(0);
    if (!pHead || !(*pHead == cKey))
        return colOrder.SendToBack(cKey);
    colOrder.MoveToEnd(0);
    return true;
}

enum class SentToBack
{
    Unknown, // the database knows no such cut: nothing happened
    No,      // the level does not contain the database's cut
    Yes,
};

// Precondition: cKey is cCut's key.
SentToBack SendToBack(clsCat& cSubCat, const Cut& cCut, const TextKey& cKey, const DataBase& cDataBase)
{
    std::shared_ptr<Cut> cOwn = DataBaseCutOf(cCut, cKey, cDataBase);
    if (!cOwn)
        return SentToBack::Unknown;
    const TextKey cOwnKey = cOwn.get() == &cCut ? cKey : cOwn->Key();
    const std::shared_ptr<CutCollection> colOrder = cSubCat.SchedCuts();
    if (!MoveToBack(*colOrder, cOwnKey))
        return SentToBack::No;
    std::shared_ptr<Cut>& cLast = colOrder->At(colOrder->Count() - 1);
    if (cLast != cOwn)
        cLast = std::move(cOwn);
    return SentToBack::Yes;
}

} // namespace

bool SendToBackOfCategory(clsCat* cSubCat, const Cut* cCut, const SelectionContext& context)
{
    try
    {
        if (!cSubCat || !cCut || !context.cDataBase)
            return false;
        const TextKey cKey = cCut->Key();
        const SentToBack eSent = SendToBack(*cSubCat, *cCut, cKey, *context.cDataBase);
        if (eSent == SentToBack::Unknown)
            return false;
        TraceStep step =
            StepInLevel(eSent == SentToBack::Yes ? StepKind::SentToBack : StepKind::NotSentToBack, *cSubCat);
        step.sKey = cKey.Text();
        context.note(step);
        return eSent == SentToBack::Yes;
    }
    catch (...)
    {
        // No box: a pick handles a cut that cannot be moved itself.
        context.report(ErrorReport::LogOnly, L"SendToBackOfCategory [schedman]", CurrentError());
        return false;
    }
}

std::vector<TextKey> OrderOf(const CutCollection& colOrder)
{
    std::vector<TextKey> colKeys;
    colKeys.reserve(colOrder.Count());
    for (std::size_t position = 0; position < colOrder.Count(); ++position)
        if (const TextKey* pKey = colOrder.KeyAt(position))
            colKeys.push_back(*pKey);
    return colKeys;
}

std::vector<std::size_t> PositionsInOrder(const CutCollection& colOrder, const std::vector<TextKey>& colKeys)
{
    std::vector<std::size_t> colPositions;
    colPositions.reserve(colOrder.Count());
    std::vector<bool> colNamed(colOrder.Count());
    for (const TextKey& cKey : colKeys)
    {
        const std::optional<std::size_t> position = colOrder.PositionOf(cKey);
        if (!position || colNamed[*position])
            continue;
        colNamed[*position] = true;
        colPositions.push_back(*position);
    }
    for (std::size_t position = 0; position < colNamed.size(); ++position)
        if (!colNamed[position])
            colPositions.push_back(position);
    return colPositions;
}

void PutInOrder(CutCollection& colOrder, const std::vector<TextKey>& colKeys)
{
    colOrder.Reorder(PositionsInOrder(colOrder, colKeys));
}

} // namespace ravlo
