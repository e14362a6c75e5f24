// SPDX-License-Identifier: MIT
#include "forecast/Report.h"

#include "forecast/ReportPictures.h"
#include "forecast/ReportText.h"

#include <algorithm>
#include <initializer_list>

namespace ravlo
{

namespace
{

// Light and dark by the reader's setting; paper is always light. The shades of the heat map differ in
// lightness too, so that they can be told apart without colours.
constexpr const char* styleSheet = R"(
:root{color-scheme:light dark;--bg:#fff;--fg:#1b1f24;--soft:#57606a;--edge:#d0d7de;--bar:#4a7fc1;--good:#1a7f37;
--warn:#8a5a00;--bad:#c62828;--h1:#cfe2f7;--h2:#8dbbe8;--h3:#3f83c9;--h4:#123f75}
@media(prefers-color-scheme:dark){:root{--bg:#15181c;--fg:#e6e9ec;--soft:#9aa4ae;--edge:#3a4148;--bar:#6ea8ea;
--good:#56c271;--warn:#e3b341;--bad:#ff7b72;--h1:#16304d;--h2:#28578c;--h3:#4f90d6;--h4:#b8dcff}}
body{margin:0 auto;max-width:64rem;padding:1.5rem;font:15px/1.5 "Segoe UI",system-ui,sans-serif;background:var(--bg);
color:var(--fg)}
h1{font-size:1.7rem}h2{font-size:1.3rem;margin-top:2.5rem;border-top:1px solid var(--edge);padding-top:1rem}
h3{font-size:1rem;margin:1.5rem 0 .5rem}p,li{max-width:50rem}a{color:inherit}
table{border-collapse:collapse;min-width:100%;font-size:.87rem;font-variant-numeric:tabular-nums}caption{text-align:left;
color:var(--soft);padding-bottom:.3rem}
th,td{padding:.2rem .6rem;border-bottom:1px solid var(--edge);text-align:right;vertical-align:top}
th[scope=row],th:first-child,.text{text-align:left}th[scope=row]{font-weight:400;white-space:nowrap}figure{margin:1rem 0}figcaption{color:var(--soft)}thead th{position:sticky;top:0;background:var(--bg)}
.scroll{max-height:24rem;overflow:auto;border:1px solid var(--edge)}.scroll:focus{outline:2px solid var(--bar)}
.light{font-weight:600;white-space:nowrap}.light.green{color:var(--good)}.light.yellow{color:var(--warn)}
.light.red{color:var(--bad)}.soft{color:var(--soft)}section{content-visibility:auto;contain-intrinsic-size:auto 60rem}
svg{display:block;width:100%;height:auto;margin:.5rem 0}svg text{font-size:11px;fill:var(--soft);
unicode-bidi:plaintext}svg path{fill:none;stroke:var(--soft)}svg .bar{fill:var(--bar);stroke:none}
svg .set{stroke:var(--fg)}svg .attainable{stroke:var(--fg);stroke-dasharray:5 4}svg .range{stroke:var(--edge);
stroke-width:3}svg .median{stroke:var(--soft);stroke-width:2}svg .good{fill:var(--good)}svg .bad{fill:var(--bad)}
svg .heat1{stroke:var(--h1)}svg .heat2{stroke:var(--h2)}svg .heat3{stroke:var(--h3)}svg .heat4{stroke:var(--h4)}
@media print{:root{color-scheme:light;--bg:#fff;--fg:#000;--soft:#444;--edge:#bbb;--bar:#4a7fc1;--good:#1a7f37;
--warn:#8a5a00;--bad:#c62828;--h1:#cfe2f7;--h2:#8dbbe8;--h3:#3f83c9;--h4:#123f75}.scroll{max-height:none;
overflow:visible;border:0}section{content-visibility:visible}figure,svg,tr{break-inside:avoid}}
)";

// "Red", to begin a sentence with.
std::string LightName(Light eLight)
{
    std::string sName = NameOf(eLight);
    sName[0] = static_cast<char>(sName[0] - 'a' + 'A');
    return sName;
}

// A light as a shape and a word: not everybody can tell the colours apart.
std::string LightText(Light eLight)
{
    const char* sShape = eLight == Light::Green ? "&#9679;" : eLight == Light::Yellow ? "&#9650;" : "&#9632;";
    return std::string("<span class=\"light ") + NameOf(eLight) + "\"><span aria-hidden=\"true\">" + sShape +
           "</span> " + NameOf(eLight) + "</span>";
}

// A name from the library, isolated from the text around it: it may run from right to left. Shortened, so
// that names of unusual length do not make the page slow.
std::string NameText(const std::wstring& sName)
{
    constexpr std::size_t mostCharacters = 80;
    return "<bdi>" + HtmlText(Shortened(sName, mostCharacters)) + "</bdi>";
}

template <class Named> std::string CutText(const Named& cut)
{
    return NameText(cut.cArtist.Text()) + " - " + NameText(cut.cTitle.Text());
}

std::string CountText(std::size_t count, const char* sOne, const char* sMany)
{
    return std::to_string(count) + ' ' + (count == 1 ? sOne : sMany);
}

const char* OnOff(bool bOn) { return bOn ? "on" : "off"; }

// " of pop 1": the rest of a table's name, which tells it apart from those of other levels.
std::string OfLevel(const LevelHealth& level) { return " of " + HtmlText(LevelText(level.sKey)); }

class Page
{
public:
    explicit Page(const StationHealth& health) : m_health(health) {}

    std::string Text()
    {
        m_sPage = "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><meta name=\"viewport\" "
                  "content=\"width=device-width,initial-scale=1\"><title>Rotation health</title><style>";
        Add(styleSheet);
        Add("</style></head><body><main>\n<h1>Rotation health</h1>\n");
        AddSummary();
        AddLevels();
        for (std::size_t level = 0; level < m_health.levels.size(); ++level)
            if (m_health.levels[level].eLight != Light::Green)
                AddLevel(m_health.levels[level], "level" + std::to_string(level + 1));
        Add("</main></body></html>\n");
        return std::move(m_sPage);
    }

private:
    void Add(std::string_view sText) { m_sPage += sText; }
    void AddSummary();
    void AddLevels();
    void AddLevel(const LevelHealth& level, const std::string& sId);
    void AddFacts(const LevelHealth& level);
    void AddReasons(const LevelHealth& level);
    void AddAdvice(const LevelHealth& level);
    void AddStarved(const LevelHealth& level, const std::vector<StarvedCut>& colStarved, const char* sTitle);
    void AddArtists(const LevelHealth& level, const std::string& sId);
    void AddCuts(const LevelHealth& level, const std::string& sId);
    void AddFigure(const std::string& sPicture, const char* sCaption);
    void AddList(const std::vector<std::wstring>& colTexts);
    void AddCells(std::initializer_list<std::string> colCells);
    void AddDistances(const std::optional<PlayDistances>& distances);
    void BeginTable(const std::string& sLabel, const std::vector<std::string>& colHeads);
    void EndTable() { Add("</tbody></table></div>\n"); }

    const StationHealth& m_health;
    std::string m_sPage;
};

void Page::AddSummary()
{
    std::size_t colLights[3] = {};
    for (const LevelHealth& level : m_health.levels)
        ++colLights[static_cast<std::size_t>(level.eLight)];
    Add("<p>" + CountText(m_health.levels.size(), "level", "levels") + ": " + std::to_string(colLights[2]) +
        ' ' + LightText(Light::Red) + ", " + std::to_string(colLights[1]) + ' ' + LightText(Light::Yellow) +
        ", " + std::to_string(colLights[0]) + ' ' + LightText(Light::Green) +
        ".</p>\n<p class=\"soft\">Plan: " + NameText(m_health.sPlan) + ". Simulated from " +
        MomentText(m_health.dtStart) + ", " + NumberText(m_health.dDays) +
        (m_health.dDays == 1 ? " day, " : " days, ") +
        CountText(static_cast<std::size_t>(m_health.lPicks), "pick", "picks") + ". Fair rotation " +
        OnOff(m_health.options.bFairRotation) + ", featured artists " +
        OnOff(m_health.options.bFeaturedArtists) + ".</p>\n");
    for (const std::wstring& sWarning : m_health.warnings)
        Add("<p>" + HtmlText(sWarning) + "</p>\n");
    if (!m_health.remedies.empty())
    {
        Add("<h3>What helps most</h3>\n");
        AddList(m_health.remedies);
    }
    if (m_health.overAsked.empty())
        return;
    Add("<h3>Artists whose separations cannot be kept in any order</h3>\n<ul>");
    for (const OverAskedArtist& artist : m_health.overAsked)
        Add("<li>" + NameText(artist.sName) + ": " + LoadText(artist.dLoad));
    Add("</ul>\n");
}

void Page::AddLevels()
{
    BeginTable("Levels", {"Level", "Light", "Cuts", "Artists", "Slots asked", "Empty", "Plays, mean",
                          "Never played", "Under half", "Rules broken", "Artist set", "Artist attainable",
                          "Title set", "Title attainable"});
    for (std::size_t index = 0; index < m_health.levels.size(); ++index)
    {
        const LevelHealth& level = m_health.levels[index];
        const std::string sName = NameText(LevelText(level.sKey));
        const std::string sLink = "<a href=\"#level" + std::to_string(index + 1) + "\">" + sName + "</a>";
        Add("<tr><th scope=\"row\">" + (level.eLight == Light::Green ? sName : sLink) +
            "<td class=\"text\">" + LightText(level.eLight));
        AddCells({std::to_string(level.cuts.size()), NumberText(level.lArtists), NumberText(level.lPicks),
                  NumberText(level.lUnfilled), NumberText(level.dMeanPlays, 1),
                  std::to_string(level.neverPlayed.size()), std::to_string(level.underHalf.size()),
                  NumberText(level.lRulesBroken), NumberText(level.lArtistSepMins),
                  AttainableText(level.lAttainableArtistMins), NumberText(level.lTitleSepMins),
                  AttainableText(level.lAttainableTitleMins)});
    }
    EndTable();
}

void Page::AddLevel(const LevelHealth& level, const std::string& sId)
{
    Add("<section id=\"" + sId + "\" aria-labelledby=\"" + sId + "h\">\n<h2 id=\"" + sId + "h\">" +
        NameText(LevelText(level.sKey)) + ": " + LightText(level.eLight) + "</h2>\n");
    AddReasons(level);
    AddFacts(level);
    AddAdvice(level);
    AddStarved(level, level.neverPlayed, "Never played");
    AddStarved(level, level.underHalf, "Played less than half of their due");
    AddArtists(level, sId);
    AddCuts(level, sId);
    Add("</section>\n");
}

void Page::AddReasons(const LevelHealth& level)
{
    std::string sReasons;
    for (const std::wstring& sReason : level.why)
        sReasons += (sReasons.empty() ? ": " : "; ") + HtmlText(sReason);
    if (!sReasons.empty())
        Add("<p>" + LightName(level.eLight) + sReasons + ".</p>\n");
}

void Page::AddFacts(const LevelHealth& level)
{
    Add("<p>" + CountText(level.cuts.size(), "cut", "cuts") + " by " +
        CountText(static_cast<std::size_t>(level.lArtists), "artist", "artists"));
    if (!level.sTopArtist.empty())
        Add(", most by " + NameText(level.sTopArtist) + " (" + NumberText(level.lTopArtistCuts) + ")");
    if (level.lPicks == 0)
        Add(". The plan never asks for it.");
    else
        Add(". Asked every " + NumberText(static_cast<double>(level.sngSlotMins), 1) +
            " minutes; plays per cut " + NumberText(level.lFewestPlays) + " to " +
            NumberText(level.lMostPlays) + ", mean " + NumberText(level.dMeanPlays, 1) + ".");
    Add("</p>\n");
}

void Page::AddAdvice(const LevelHealth& level)
{
    Add("<h3>What to do</h3>\n");
    if (level.advice.empty())
        Add("<p>Nothing that was tried helps.</p>\n");
    else
        AddList(level.advice);
}

void Page::AddStarved(const LevelHealth& level, const std::vector<StarvedCut>& colStarved, const char* sTitle)
{
    if (colStarved.empty())
        return;
    Add(std::string("<h3>") + sTitle + "</h3>\n");
    BeginTable(sTitle + OfLevel(level),
               {"Cut", "Plays", "Times passed over", "Rule, most often", "Blocked most often by"});
    for (const StarvedCut& starved : colStarved)
    {
        Add("<tr><th scope=\"row\">" + CutText(level.cuts[starved.cut]));
        AddCells({NumberText(starved.lPlays), NumberText(starved.lTimesPassedOver)});
        Add(std::string("<td class=\"text\">") + NameOf(starved.eRule) + "<td class=\"text\">" +
            (starved.blockedBy ? CutText(m_health.blockers[*starved.blockedBy]) : ""));
    }
    EndTable();
}

void Page::AddArtists(const LevelHealth& level, const std::string& sId)
{
    if (level.artists.empty())
        return;
    Add("<h3>Artists</h3>\n");
    AddFigure(DistancesPicture(level, sId + "a"),
              "Minutes between plays: smallest, median, largest; the artists that come back soonest");
    BeginTable("Artists" + OfLevel(level), {"Artist", "Cuts", "Plays", "Share of cuts", "Share of picks",
                                            "Smallest gap, min", "Median", "Largest"});
    for (const ArtistUse& artist : level.artists)
    {
        Add("<tr><th scope=\"row\">" + NameText(artist.cName.Text()));
        AddCells({NumberText(artist.lCuts), NumberText(artist.lPlays), PercentText(artist.dShareOfCuts),
                  PercentText(artist.dShareOfPicks)});
        AddDistances(artist.distances);
    }
    EndTable();
}

void Page::AddCuts(const LevelHealth& level, const std::string& sId)
{
    if (level.cuts.empty())
        return;
    Add("<h3>Cuts</h3>\n");
    AddFigure(PlaysPicture(level, sId + "p"), "Plays of every cut, fewest first");
    AddFigure(HoursPicture(level, sId + "h24"),
              "Hours of the day in which each cut played, in rotation order");
    std::vector<std::string> colHeads{"Cut",    "Plays",  "Same hour", "Smallest title gap, min",
                                      "Median", "Largest"};
    for (int lHour = 0; lHour < 24; ++lHour)
        colHeads.push_back(std::to_string(lHour));
    BeginTable("Cuts" + OfLevel(level), colHeads);
    for (const CutUse& cut : level.cuts)
    {
        Add("<tr><th scope=\"row\">" + CutText(cut));
        AddCells({NumberText(cut.lPlays), cut.bLockStep ? "yes" : ""});
        AddDistances(cut.titleDistances);
        for (const std::int32_t lPlays : cut.colByHour)
            Add(lPlays == 0 ? "<td>" : "<td>" + NumberText(lPlays));
    }
    EndTable();
}

void Page::AddFigure(const std::string& sPicture, const char* sCaption)
{
    Add("<figure><figcaption>" + std::string(sCaption) + "</figcaption>" + sPicture + "</figure>\n");
}

void Page::AddList(const std::vector<std::wstring>& colTexts)
{
    Add("<ul>");
    for (const std::wstring& sText : colTexts)
        Add("<li>" + HtmlText(sText));
    Add("</ul>\n");
}

void Page::AddCells(std::initializer_list<std::string> colCells)
{
    for (const std::string& sCell : colCells)
        Add("<td>" + sCell);
}

void Page::AddDistances(const std::optional<PlayDistances>& distances)
{
    if (distances)
        AddCells({NumberText(distances->dSmallest, 0), NumberText(distances->dMedian, 0),
                  NumberText(distances->dLargest, 0)});
    else
        AddCells({"", "", ""});
}

void Page::BeginTable(const std::string& sLabel, const std::vector<std::string>& colHeads)
{
    Add("<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-label=\"" + sLabel +
        "\"><table><thead><tr>");
    for (const std::string& sHead : colHeads)
        Add("<th scope=\"col\">" + sHead);
    Add("</thead><tbody>");
}

} // namespace

std::string HtmlReport(const StationHealth& health) { return Page(health).Text(); }

} // namespace ravlo
