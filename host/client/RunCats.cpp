// SPDX-License-Identifier: MIT
#include "host/client/Categories.h"
#include "host/client/Commands.h"
#include "host/client/HostFiles.h"
#include "host/client/MediaLibrary.h"
#include "host/client/ProgressLine.h"
#include "host/client/Scheduler.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "comkit/Errors.h"
#include "host/day/HostError.h"
#include "host/day/Rotation.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sNotSaved = L", but not everything could be saved";

// One run of the cats command.
class CatsRun
{
public:
    CatsRun(const CatsOptions& options, Scheduler& cScheduler, const Boxes& cBoxes, const Console& cOut,
            const Console& cError)
        : m_options(options), m_cManager(cScheduler.Object()), m_categories(m_cManager), m_cBoxes(cBoxes),
          m_boxesBefore(cBoxes.Count()), m_cOut(cOut), m_cError(cError)
    {
    }

    int Run();

private:
    void List() const;
    void New();
    void Level();
    int Shuffle();
    int Delete();
    int Transfer();

    // Throws the scheduler's error for a call that failed.
    void Check(HRESULT hResult) const { ThrowIfFailed(hResult, m_cManager, __uuidof(_clsSchedMan)); }
    // Throws sFailure when the scheduler has shown a box since the station was opened.
    void NoBoxMustHaveCome(const std::wstring& sFailure) const;
    bool Confirmed(const std::wstring& sQuestion) const;
    std::vector<Target> Targets() const;
    ComPtr<_clsCollection> CatsMeant() const;
    ComPtr<_clsCollection> LevelsMeant() const;
    std::vector<ComPtr<_clsCut>> CutsOfOtherLevels(const std::vector<ComPtr<_clsCut>>& cuts) const;
    void TellRefused(const std::vector<ComPtr<_clsCut>>& refused, const std::wstring& sTo) const;
    std::vector<ComPtr<_clsCut>> CutsMeant(_clsCollection& colLevels) const;

    const CatsOptions& m_options;
    _clsSchedMan& m_cManager;
    Categories m_categories;
    const Boxes& m_cBoxes;
    std::size_t m_boxesBefore;
    const Console& m_cOut;
    const Console& m_cError;
};

int CatsRun::Run()
{
    switch (m_options.eAction)
    {
    case CatsAction::List:
        List();
        break;
    case CatsAction::New:
        New();
        break;
    case CatsAction::Level:
        Level();
        break;
    case CatsAction::Shuffle:
        return Shuffle();
    case CatsAction::Delete:
        return Delete();
    case CatsAction::Move:
    case CatsAction::Copy:
        return Transfer();
    }
    return lExitOk;
}

void CatsRun::NoBoxMustHaveCome(const std::wstring& sFailure) const
{
    if (m_cBoxes.Count() > m_boxesBefore)
        throw HostError(sFailure);
}

bool CatsRun::Confirmed(const std::wstring& sQuestion) const
{
    if (m_options.bYes)
        return true;
    m_cOut.Write(sQuestion + L" [y/N] ");
    const std::optional<std::wstring> sAnswer = ReadAnswer();
    if (!sAnswer)
    {
        m_cOut.Write(L"\n");
        m_cError.Write(L"RavloHost: nobody answered, nothing was changed (--yes does it without asking)\n");
        return false;
    }
    if (!IsYes(*sAnswer))
    {
        m_cOut.Write(L"Nothing was changed.\n");
        return false;
    }
    return true;
}

std::vector<Target> CatsRun::Targets() const
{
    std::vector<Target> targets;
    for (const CategoryName& name : m_options.categories)
        targets.push_back(m_categories.TargetOf(name));
    return targets;
}

// The named categories, main categories as such.
ComPtr<_clsCollection> CatsRun::CatsMeant() const
{
    ComPtr<_clsCollection> colCats = NewCollection();
    for (const CategoryName& name : m_options.categories)
        Append(*colCats, *m_categories.Find(name));
    return colCats;
}

// The named categories, main categories as their levels.
ComPtr<_clsCollection> CatsRun::LevelsMeant() const
{
    ComPtr<_clsCollection> colLevels = NewCollection();
    for (const CategoryName& name : m_options.categories)
        for (const ComPtr<_clsCat>& cLevel : m_categories.LevelsOf(name))
            Append(*colLevels, *cLevel);
    return colLevels;
}

// ---- list ----

void CatsRun::List() const
{
    Rotation rotation = m_categories.Orders();
    const std::vector<CategoryName>& names = m_options.categories;
    for (const CategoryName& name : names)
        m_categories.Find(name);
    const auto isMeant = [](const LevelOrder& order, const CategoryName& name) {
        return FoldCase(order.sCategory) == FoldCase(name.sName) &&
               (name.lLevel == 0 || name.lLevel == order.lLevel);
    };
    std::erase_if(rotation, [&](const LevelOrder& order) {
        return !names.empty() && std::none_of(names.begin(), names.end(),
                                              [&](const auto& name) { return isMeant(order, name); });
    });
    const bool bCuts = m_options.lFirst > 0 || std::any_of(names.begin(), names.end(),
                                                           [](const auto& name) { return name.lLevel > 0; });
    if (!bCuts)
    {
        m_cOut.Write(LevelTable(rotation));
        return;
    }
    for (const LevelOrder& order : rotation)
        m_cOut.Write(TextOf({Target{{order.sCategory, order.lLevel}, order.cuts.size()}}) + L"\n" +
                     OrderLines(order, {}, static_cast<std::size_t>(m_options.lFirst)));
}

// ---- making ----

void CatsRun::New()
{
    Bstr sName;
    BSTR* psName = sName.Receive();
    *psName = NewBstr(m_options.sNewName); // in: the wanted name; out: the name as created
    VARIANT_BOOL bMade = VARIANT_FALSE;
    const HRESULT hResult = m_cManager.CreateMainCat(psName, &bMade);
    Check(hResult);
    if (bMade == VARIANT_FALSE)
        throw HostError(L"the category " + m_options.sNewName + L" was not made");
    NoBoxMustHaveCome(L"the category " + sName.Text() + L" was made" + sNotSaved);
    m_cOut.Write(L"Made the category " + sName.Text() + L" with level 1\n");
}

// The scheduler's own member asks the user for the number; a host that knows it creates the level itself.
void CatsRun::Level()
{
    const CategoryName& name = m_options.categories.front();
    const ComPtr<_clsCat> cMainCat = m_categories.Find(name);
    const Target target = m_categories.TargetOf(name);
    for (const ComPtr<_clsCat>& cLevel : m_categories.LevelsOf(name))
    {
        if (LevelOf(*cLevel) == m_options.lLevel)
            throw HostError(target.name.sName + L" has a level " + DecimalText(m_options.lLevel) +
                            L" already");
    }
    void* pvObject = nullptr;
    ThrowIfFailed(
        CoCreateInstance(CLSID_clsCat, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_clsCat), &pvObject));
    const auto cLevel = ComPtr<_clsCat>::Adopt(static_cast<_clsCat*>(pvObject));
    ThrowIfFailed(cLevel->put_CatName(Bstr(target.name.sName).Get()));
    ThrowIfFailed(cLevel->put_CatLevel(m_options.lLevel));
    VARIANT_BOOL bAdded = VARIANT_FALSE;
    ThrowIfFailed(cMainCat->AddSubCat(cLevel.Get(), &bAdded), *cMainCat.Get(), __uuidof(_clsCat));
    VARIANT_BOOL bSaved = VARIANT_FALSE;
    Check(m_cManager.SaveHistoryAndOrdering(cMainCat.Get(), &bSaved));
    const std::wstring sLevel = TextOf(CategoryName{target.name.sName, m_options.lLevel});
    if (bAdded == VARIANT_FALSE)
        throw HostError(L"the level " + sLevel + L" was not made");
    NoBoxMustHaveCome(L"the level " + sLevel + L" was made" + sNotSaved);
    m_cOut.Write(L"Made the level " + sLevel + L"\n");
}

// ---- shuffling, deleting ----

int CatsRun::Shuffle()
{
    const std::wstring sTargets = TextOf(Targets());
    if (!Confirmed(L"Really shuffle " + sTargets + L"?"))
        return lExitDeclined;
    Check(m_cManager.ShuffleCategories(CatsMeant().Get(), VARIANT_FALSE));
    NoBoxMustHaveCome(L"not everything was shuffled and saved");
    m_cOut.Write(L"Shuffled " + sTargets + L"\n");
    return lExitOk;
}

int CatsRun::Delete()
{
    const std::wstring sTargets = TextOf(Targets());
    if (!Confirmed(L"Really delete " + sTargets + L"? The cuts stay in the database."))
        return lExitDeclined;
    VARIANT_BOOL bGone = VARIANT_FALSE;
    Check(m_cManager.DeleteCats(CatsMeant().Get(), &bGone));
    if (bGone == VARIANT_FALSE)
        throw HostError(L"not everything was deleted");
    NoBoxMustHaveCome(sTargets + L" deleted" + sNotSaved);
    m_cOut.Write(L"Deleted " + sTargets + L"\n");
    return lExitOk;
}

// ---- moving, copying ----

// The cuts of the levels, each once, in rotation order. When paths are given, only those; throws when one is
// missing.
std::vector<ComPtr<_clsCut>> CatsRun::CutsMeant(_clsCollection& colLevels) const
{
    Keys asked;
    for (const std::wstring& sPath : m_options.cuts)
        asked.insert(TextKey(sPath));
    Keys taken;
    std::vector<ComPtr<_clsCut>> cuts;
    const auto take = [&](IDispatch& cItem) {
        const auto cCut = ComPtr<IDispatch>(&cItem).As<_clsCut>();
        const TextKey cKey(PathOf(*cCut));
        if ((asked.empty() || asked.contains(cKey)) && taken.insert(cKey).second)
            cuts.push_back(cCut);
    };
    ForEach(colLevels, [&](IDispatch& cItem) {
        ComPtr<_clsCollection> colCuts;
        ThrowIfFailed(ComPtr<IDispatch>(&cItem).As<_clsCat>()->get_SchedCuts(colCuts.Receive()));
        ForEach(*colCuts, take);
    });
    for (const std::wstring& sPath : m_options.cuts)
        if (!taken.contains(TextKey(sPath)))
            throw HostError(sPath + L" is not there");
    return cuts;
}

// The cuts whose own level is not the target's: a copy would not stay there.
std::vector<ComPtr<_clsCut>> CatsRun::CutsOfOtherLevels(const std::vector<ComPtr<_clsCut>>& cuts) const
{
    std::vector<ComPtr<_clsCut>> others;
    for (const ComPtr<_clsCut>& cCut : cuts)
    {
        LONG lLevel = 0;
        ThrowIfFailed(cCut->get_CatLevel(&lLevel));
        if (m_options.to.lLevel != 0 && std::max<LONG>(lLevel, 1) != m_options.to.lLevel)
            others.push_back(cCut);
    }
    return others;
}

// Lists the cuts that a copy into a level left out, one per line.
void CatsRun::TellRefused(const std::vector<ComPtr<_clsCut>>& refused, const std::wstring& sTo) const
{
    for (const ComPtr<_clsCut>& cCut : refused)
    {
        LONG lLevel = 0;
        ThrowIfFailed(cCut->get_CatLevel(&lLevel));
        m_cError.Write(PathOf(*cCut) + L" was not copied: its level is " +
                       DecimalText(std::max<LONG>(lLevel, 1)) + L"\n");
    }
    if (!refused.empty())
        throw HostError(CountOf(refused.size(), L"cut was", L"cuts were") + L" not copied to " + sTo +
                        L": a copy keeps its level");
}

int CatsRun::Transfer()
{
    const bool bMove = m_options.eAction == CatsAction::Move;
    const ComPtr<_clsCat> cTo = m_categories.Find(m_options.to);
    const std::wstring sTo = TextOf(m_categories.TargetOf(m_options.to).name);
    const ComPtr<_clsCollection> colLevels = LevelsMeant();
    const std::vector<ComPtr<_clsCut>> cuts = CutsMeant(*colLevels);
    if (cuts.empty())
        throw HostError(L"there is no cut in " + TextOf(Targets()));
    if (bMove &&
        !Confirmed(L"Really move " + CountOf(cuts.size(), L"cut", L"cuts") + L" of " + TextOf(Targets()) +
                   L" to " + sTo + (m_options.bExclusive ? L" and out of every other category?" : L"?")))
        return lExitDeclined;
    const ComPtr<_clsCollection> colCuts = NewCollection();
    for (const ComPtr<_clsCut>& cCut : cuts)
        Append(*colCuts, *cCut);
    const Rotation before = m_categories.Orders();
    VARIANT_BOOL bCreated = VARIANT_FALSE;
    const ::eCatDragOptions eOption = !bMove                 ? ::eCopyHere
                                      : m_options.bExclusive ? ::eMoveExclusiveHere
                                                             : ::eMoveHere;
    const std::vector<ComPtr<_clsCut>> refused =
        bMove ? std::vector<ComPtr<_clsCut>>() : CutsOfOtherLevels(cuts);
    Check(m_cManager.DoMassCatChange(eOption, colLevels.Get(), cTo.Get(), colCuts.Get(), &bCreated));
    if (refused.empty()) // otherwise a box about them was expected
        NoBoxMustHaveCome(std::wstring(L"not every cut was ") + (bMove ? L"moved" : L"copied") +
                          L" and saved");
    const RotationChange change = OnlyChanged(ChangeBetween(before, m_categories.Orders()));
    if (cuts.size() > refused.size())
    {
        const std::wstring sCuts = CountOf(cuts.size() - refused.size(), L"cut", L"cuts");
        m_cOut.Write(change.levels.empty() ? L"They were there already.\n"
                                           : (bMove ? L"Moved " : L"Copied ") + sCuts + L" to " + sTo +
                                                 L"\n" + ChangeTable(change));
    }
    TellRefused(refused, sTo);
    return lExitOk;
}

} // namespace

int RunCats(const CatsOptions& options, const Boxes& cBoxes, const Console& cOut, const Console& cError)
{
    MustBeStation(options.sDataBase, options.sAppFolder);
    MediaLibrary library;
    library.Open(FullPath(options.sDataBase));
    const std::wstring sAppFolder = FullPath(options.sAppFolder);
    ProgressLine line(cError, options.bProgress);
    const auto show = [&](const std::wstring& sText, long, long) { line.Show(sText); };
    Scheduler scheduler(library, false);
    if (options.eAction != CatsAction::List)
        MustBeFree(options.sAppFolder); // right before the scheduler marks it
    scheduler.Populate(sAppFolder, show);
    line.Clear();
    const ProgressListener follow =
        scheduler.Follow({show, show, [&](const std::wstring&) { line.Clear(); }});
    return CatsRun(options, scheduler, cBoxes, cOut, cError).Run();
}

} // namespace ravlo
