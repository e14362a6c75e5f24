// SPDX-License-Identifier: MIT
// The commands options, spread and explain.
#include "host/client/Categories.h"
#include "host/client/Commands.h"
#include "host/client/HostFiles.h"
#include "host/client/Plays.h"
#include "host/client/ProgressLine.h"
#include "host/client/RotationObject.h"

#include "base/Text.h"
#include "comkit/Errors.h"
#include "host/day/HostError.h"

namespace ravlo
{

namespace
{

const wchar_t* OnOff(bool bOn) { return bOn ? L"on" : L"off"; }

void RunOptions(const RotationCommand& options, RotationObject& cRotation, const Console& cOut)
{
    cRotation.Set(options.rotation);
    cOut.Write(std::wstring(L"Fair rotation: ") + OnOff(cRotation.FairRotation()) + L"\n" +
               L"Featured artists: " + OnOff(cRotation.FeaturedArtists()) + L"\n");
}

void RunSpread(const RotationCommand& options, Scheduler& cScheduler, RotationObject& cRotation,
               const Boxes& cBoxes, const Console& cOut)
{
    const Categories categories(cScheduler.Object());
    std::vector<Target> targets;
    const ComPtr<_clsCollection> colCats = NewCollection();
    for (const CategoryName& name : options.levels)
    {
        targets.push_back(categories.TargetOf(name));
        Append(*colCats, *categories.Find(name));
    }
    const std::size_t boxesBefore = cBoxes.Count();
    cRotation.Check(cRotation.Object().SpreadCategories(colCats.Get(), VARIANT_FALSE));
    if (cBoxes.Count() > boxesBefore)
        throw HostError(L"not everything was spread and saved");
    cOut.Write(L"Spread " + TextOf(targets) + L"\n");
}

void RunExplain(const RotationCommand& options, Scheduler& cScheduler, RotationObject& cRotation,
                const MediaLibrary& cLibrary, const Console& cOut)
{
    const CategoryName name = Categories(cScheduler.Object()).TargetOf(options.levels.front()).name;
    if (name.lLevel == 0)
        throw HostError(name.sName + L" is no level");
    const std::vector<MediaLibrary::Entry> entries = cLibrary.Entries();
    const Plays plays(entries);
    Gaps gaps;
    plays.Report(cScheduler, gaps);
    const ComPtr<_clsCut> cPrevious = cLibrary.NewCut();
    ThrowIfFailed(cPrevious->put_LastPlayed(plays.End()));
    ComPtr<_clsExplanation> cExplanation;
    cRotation.Check(cRotation.Object().Explain(Bstr(CategoryKey(name.sName, name.lLevel)).Get(),
                                               BoolOf(options.bOpener), cPrevious.Get(),
                                               cExplanation.Receive()));
    Bstr sText;
    ThrowIfFailed(cExplanation->get_Text(sText.Receive()));
    std::wstring sLines = sText.Text();
    std::erase(sLines, L'\r');
    cOut.Write(sLines + L"\n");
}

} // namespace

void RunRotation(const RotationCommand& options, const Boxes& cBoxes, const Console& cOut,
                 const Console& cError)
{
    MustBeStation(options.sDataBase, options.sAppFolder);
    MediaLibrary library;
    library.Open(FullPath(options.sDataBase));
    const std::wstring sAppFolder = FullPath(options.sAppFolder);
    ProgressLine line(cError, options.bProgress);
    Scheduler scheduler(library, false);
    if (options.eAction == RotationAction::Spread)
        MustBeFree(options.sAppFolder); // right before the scheduler marks it
    scheduler.Populate(sAppFolder, [&](const std::wstring& sText, long, long) { line.Show(sText); });
    line.Clear();
    RotationObject rotation(scheduler);
    switch (options.eAction)
    {
    case RotationAction::Options:
        RunOptions(options, rotation, cOut);
        break;
    case RotationAction::Spread:
        RunSpread(options, scheduler, rotation, cBoxes, cOut);
        break;
    case RotationAction::Explain:
        RunExplain(options, scheduler, rotation, library, cOut);
        break;
    }
}

} // namespace ravlo
