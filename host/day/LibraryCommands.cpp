// SPDX-License-Identifier: MIT
// The commands that work on the media database alone.
#include "host/day/CommandParts.h"

#include "base/Utf8.h"

namespace ravlo
{

namespace
{

constexpr std::size_t dateLength = 10; // of yyyy-mm-dd

// The end of a period: a date alone means that the whole day belongs to it.
DateTime EndOf(const std::string& sTime)
{
    const DateTime dtWhen = ParseIso(Wide(sTime)).value_or(0);
    return sTime.size() > dateLength ? dtWhen : dtWhen + 1;
}

} // namespace

void DescribeImport(CLI::App& cImport, ImportOptions& options)
{
    AddText(cImport, "--db", options.sDataBase, "FILE", "the media database; made when it is missing")
        .required();
    CLI::App& cSource = *cImport.add_option_group("source");
    CLI::Option& cCsv = AddText(cSource, "--csv", options.sCsv, "FILE", "the library in CSV form");
    AddText(cSource, "--folder", options.sFolder, "FOLDER",
            "the audio files of a folder and of those in it, with their tags");
    AddText(cSource, "--m3u", options.sPlaylist, "FILE", "the audio files of a playlist, M3U or M3U8");
    cSource.require_option(1);
    AddText(cImport, "--map", options.sMap, "OURS=THEIRS,...",
            "with --csv: the columns' names in a file that another program made, such as "
            "artist=Performer,path=File,duration=Length")
        .needs(&cCsv);
    AddText(cImport, "--category", options.sCategory, "NAME",
            "of audio files: the category of cuts that have none (default: the genre)")
        .excludes(&cCsv);
    cImport.add_flag("--dry-run", options.bTrial, "say what would change, and change nothing");
    DescribeProgress(cImport, options);
}

void DescribePlays(CLI::App& cPlays, PlaysOptions& options)
{
    AddText(cPlays, "--db", options.sDataBase, "FILE", "the media database").required();
    const auto addTime = [&](const char* sName, const char* sHelp, auto store) {
        cPlays.add_option_function<std::string>(sName, store, sHelp)->type_name("TIME")->check(IsTime());
    };
    addTime("--from", "the first moment, or the first day (default: the first play)",
            [&](const std::string& sTime) { options.dtFrom = ParseIso(Wide(sTime)).value_or(0); });
    addTime("--to", "the moment before which it ends, or the last day (default: the last play)",
            [&](const std::string& sTime) { options.dtTo = EndOf(sTime); });
    cPlays
        .add_option_function<std::string>(
            "--by", [&](const std::string& sWord) { options.sBy = Wide(sWord); },
            "sum the plays of each cut, or of each artist (default: one line a play)")
        ->type_name("cut|artist")
        ->check(CLI::IsMember({"cut", "artist"}));
    AddText(cPlays, "--csv", options.sCsv, "FILE", "write the report to this file instead of printing it");
}

} // namespace ravlo
