#include "tools/HTMLReport.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <map>
#include <set>

#include "core_interface/OrbCSStatusValue.h"
#include "core_interface/TkCSKeys.h"
#include "sync/PPDUpdate.h"
#include "sync/StatusValueText.h"
#include "tools/Diagnostics.h"
#include "tools/RunFacts.h"
#include "tools/SyncReport.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kTitle = "Print queues and their printers";

/// Nothing may be run or fetched, even if a text were taken for markup.
constexpr std::string_view kHead = R"(
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="no-referrer">
)";

constexpr std::string_view kStyle = R"(<style>
:root { color-scheme: light dark; --page: #fff; --text: #1c2127; --quiet: #5b6672; --line: #d9dee4;
  --good: #1a6b35; --change: #0b57a4; --wait: #865400; --bad: #b3261e; --chip: #eef1f4; }
@media (prefers-color-scheme: dark) {
  :root { --page: #14171a; --text: #e6e9ec; --quiet: #9aa5b1; --line: #353c44;
    --good: #74c98f; --change: #7db8f5; --wait: #e8b65c; --bad: #ff9d94; --chip: #242a30; } }
body { background: var(--page); color: var(--text); margin: 2rem auto; max-width: 76rem;
  padding: 0 1rem; font: 15px/1.45 system-ui, "DejaVu Sans", sans-serif; }
h1 { font-size: 1.6rem; margin: 0 0 .3rem; }
h2 { font-size: 1.2rem; margin: 2rem 0 .5rem; }
p, ul { margin: 0; padding: 0; }
ul { list-style: none; }
table { border-collapse: collapse; width: 100%; margin-top: .8rem; }
th, td { border-bottom: 1px solid var(--line); padding: .45rem .8rem .45rem 0; text-align: left;
  vertical-align: top; overflow-wrap: anywhere; }
th { color: var(--quiet); font-weight: 600; white-space: nowrap; }
a { color: var(--change); }
.quiet { color: var(--quiet); font-size: .87rem; font-weight: normal; }
.state { font-weight: 600; white-space: nowrap; }
.updated, .unchanged { color: var(--good); }
.would-update { color: var(--change); }
.busy, .unreachable, .unsupported { color: var(--wait); }
.failed, .abandoned, .low { color: var(--bad); }
.ink { background: var(--chip); border-radius: .5rem; display: inline-block; padding: 0 .5rem;
  margin: 0 .25rem .25rem 0; }
details { margin-top: .3rem; }
summary { color: var(--quiet); cursor: pointer; font-size: .87rem; }
details table { font-size: .87rem; margin-top: .2rem; }
@media print { body { margin: 0; max-width: none; } tr { break-inside: avoid; } }
</style>
)";

/// In the order in which a reader looks for them.
constexpr auto kResults = std::to_array<QueueSyncResult>(
    {QueueSyncResult::failed, QueueSyncResult::abandoned, QueueSyncResult::busy,
     QueueSyncResult::unreachable, QueueSyncResult::unsupported, QueueSyncResult::wouldUpdate,
     QueueSyncResult::updated, QueueSyncResult::unchanged, QueueSyncResult::skipped});

/// A stranger's text as text of the page.
std::string escaped(std::string_view text) {
    std::string markup;
    for (const char character : Diagnostics::printable(text)) {
        switch (character) {
            case '&':
                markup += "&amp;";
                break;
            case '<':
                markup += "&lt;";
                break;
            case '>':
                markup += "&gt;";
                break;
            case '"':
                markup += "&quot;";
                break;
            case '\'':
                markup += "&#39;";
                break;
            default:
                markup += character;
        }
    }
    return markup;
}

/// An element with that content, which is markup. The class is one of the style's, or empty.
std::string element(std::string_view name, std::string_view className, const std::string& content) {
    std::string markup = "<" + std::string(name);
    if (!className.empty()) {
        markup += " class=\"" + std::string(className) + "\"";
    }
    return markup + ">" + content + "</" + std::string(name) + ">";
}

/// A paragraph of a stranger's text; nothing for the empty text.
std::string paragraph(std::string_view className, const std::string& text) {
    return text.empty() ? "" : element("p", className, escaped(text));
}

std::string list(const std::vector<std::string>& texts) {
    std::string items;
    for (const std::string& text : texts) {
        items += element("li", "", escaped(text));
    }
    return items.empty() ? "" : element("ul", "", items);
}

std::string headerRow(const std::vector<std::string>& titles) {
    std::string cells;
    for (const std::string& title : titles) {
        cells += element("th", "", escaped(title));
    }
    return element("tr", "", cells) + "\n";
}

std::string cellOfQueue(const QueueReport& queue) {
    return element("strong", "", escaped(Diagnostics::nameOfPlace(queue.queue))) +
           paragraph("quiet", queue.deviceURI) +
           (queue.statusURI == queue.deviceURI || queue.statusURI.empty()
                ? ""
                : paragraph("quiet", "status from " + queue.statusURI));
}

std::string cellOfState(const QueueReport& queue) {
    const std::string words(SyncReport::wordsForResult(queue.result));
    std::string cell = element("p", "state " + std::string(SyncReport::nameOfResult(queue.result)),
                               escaped(words));
    cell += paragraph("", queue.reason);
    cell += paragraph("quiet", queue.cause.empty() ? "" : "cause: " + queue.cause);
    for (const std::string& note : queue.notes) {
        cell += paragraph("", note);
    }
    return cell + paragraph("quiet", PPDUpdate::wordsForKeptEntries(queue.kept));
}

std::string shownValue(const std::optional<std::string>& value) {
    return value ? escaped(*value) : element("span", "quiet", "not there");
}

/// The attributes one by one, folded away below what is for people.
std::string tableOfChanges(const std::vector<QueueReport::Change>& changes) {
    if (changes.empty()) {
        return "";
    }
    std::string rows = headerRow({"Attribute", "Before", "After"});
    for (const QueueReport::Change& change : changes) {
        const std::string name =
            change.keyword + (change.optionKeyword.empty() ? "" : " " + change.optionKeyword);
        rows += element("tr", "",
                        element("td", "", escaped(name)) +
                            element("td", "", shownValue(change.before)) +
                            element("td", "", shownValue(change.after))) +
                "\n";
    }
    const std::string count =
        std::to_string(changes.size()) + (changes.size() == 1 ? " attribute" : " attributes");
    return element("details", "",
                   element("summary", "", count) + element("table", "", "\n" + rows));
}

std::vector<std::string> partsOf(const std::string& text) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

/// The inks by name, and which of them are low, where the printer tells that for each of them.
std::string cellOfInks(const OrbCSDeviceStatus* status) {
    const auto* const pens =
        status
            ? status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey)
            : nullptr;
    const auto valueOf = [&](std::string_view keyword) {
        const auto value = pens->PPDAttributeValues.find(keyword);
        return value == pens->PPDAttributeValues.end() ? std::string() : value->second;
    };
    if (!pens || valueOf(kTkCSPPDPenDyesKey).empty()) {
        return "";
    }
    const auto names = partsOf(valueOf(kTkCSPPDPenDyesKey));
    const auto levels = partsOf(valueOf(kTkCSPPDPenInkSufficientKey));
    std::string items;
    for (std::size_t index = 0; index < names.size(); ++index) {
        const bool isLow = levels.size() == names.size() && levels[index] == "0";
        items += element("li", isLow ? "ink low" : "ink",
                         escaped(names[index] + (isLow ? ": low" : "")));
    }
    return element("ul", "", items);
}

/// What else of the printer a reader may look for: accessories, resolution, media types.
std::string cellOfPrinter(const OrbCSDeviceStatus* status) {
    std::vector<std::string> lines;
    const auto* const accessories =
        status ? status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey)
               : nullptr;
    if (accessories) {
        for (const OrbCSDeviceAccessory& each : *accessories) {
            const std::string entry =
                std::string(kTkCSDeviceAccessoriesKey) + "." + each.name.value_or("");
            lines.push_back(std::string(statusEntryWords(entry)) +
                            (each.isInstalled ? ": installed" : ": not installed"));
        }
    }
    for (const std::string_view key : {kTkCSMaxSupportedResolutionKey, kTkCSCustomMediaTypesKey}) {
        if (status && status->statusValueForKey_error(key, nullptr)) {
            lines.push_back(std::string(statusEntryWords(key)) + ": " +
                            statusValueText(*status, key));
        }
    }
    return list(lines);
}

std::string rowOfQueue(const QueueReport& queue) {
    const auto cell = [](const std::string& content) { return element("td", "", content); };
    return element("tr", "",
                   cell(cellOfQueue(queue)) + cell(cellOfState(queue)) +
                       cell(list(queue.changedInWords) + tableOfChanges(queue.changes)) +
                       cell(cellOfInks(queue.status.get())) +
                       cell(cellOfPrinter(queue.status.get()) + list(queue.answers))) +
           "\n";
}

using Counts = std::map<QueueSyncResult, std::size_t>;

Counts countsOf(const ServerReport& server) {
    Counts counts;
    for (const QueueReport& queue : server.queues) {
        ++counts[queue.result];
    }
    return counts;
}

/// The latest; RFC 3339 in UTC sorts as time does.
std::string timeOf(const ServerReport& server) {
    std::string latest;
    for (const QueueReport& queue : server.queues) {
        latest = std::max(latest, queue.time);
    }
    return latest;
}

const std::string& titleOf(const ServerReport& server) {
    return server.name.empty() ? server.server : server.name;
}

std::string sectionOf(const ServerReport& server, std::size_t number) {
    std::string heading = escaped(titleOf(server));
    if (!server.name.empty() && !server.server.empty()) {
        heading += " " + element("span", "quiet", escaped(server.server));
    }
    std::string section =
        "<section id=\"server-" + std::to_string(number) + "\">\n" + element("h2", "", heading);
    if (server.queues.empty()) {
        section += element("p", "", "Nothing was reported.");
    } else {
        std::string rows = headerRow({"Queue", "State", "Changes", "Inks", "Printer"});
        for (const QueueReport& queue : server.queues) {
            rows += rowOfQueue(queue);
        }
        section += "\n" + element("table", "", "\n" + rows);
    }
    return section + "\n</section>\n";
}

/// One row a server, and a column for each result that there is anywhere.
std::string tableOfServers(const std::vector<ServerReport>& servers) {
    std::set<QueueSyncResult> present;
    for (const ServerReport& server : servers) {
        for (const auto& [result, count] : countsOf(server)) {
            present.insert(result);
        }
    }
    std::vector<QueueSyncResult> columns;
    std::ranges::copy_if(kResults, std::back_inserter(columns),
                         [&](QueueSyncResult each) { return present.contains(each); });
    std::vector<std::string> titles = {"Server", "Queues"};
    for (const QueueSyncResult result : columns) {
        titles.emplace_back(SyncReport::wordsForResult(result));
    }
    titles.emplace_back("Last told");
    std::string rows = headerRow(titles);
    for (std::size_t index = 0; index < servers.size(); ++index) {
        const Counts counts = countsOf(servers[index]);
        std::string cells = element("td", "",
                                    "<a href=\"#server-" + std::to_string(index + 1) + "\">" +
                                        escaped(titleOf(servers[index])) + "</a>") +
                            element("td", "", std::to_string(servers[index].queues.size()));
        for (const QueueSyncResult result : columns) {
            const auto count = counts.find(result);
            cells += count == counts.end() ? element("td", "quiet", "0")
                                           : element("td", SyncReport::nameOfResult(result),
                                                     std::to_string(count->second));
        }
        rows += element("tr", "", cells + element("td", "quiet", escaped(timeOf(servers[index])))) +
                "\n";
    }
    return element("table", "", "\n" + rows) + "\n";
}

}  // namespace

std::string HTMLReportOfServers(const std::vector<ServerReport>& servers, const std::string& made) {
    std::string page(kHTMLBegin);
    page += kHead;
    page += element("title", "", std::string(kTitle)) + "\n";
    page += kStyle;
    page += "</head>\n<body>\n" + element("h1", "", std::string(kTitle)) + "\n" +
            element("p", "quiet",
                    "Made " + escaped(made) + " by tkppdupdate " + escaped(toolVersion()) + ".") +
            "\n" + tableOfServers(servers);
    for (std::size_t index = 0; index < servers.size(); ++index) {
        page += sectionOf(servers[index], index + 1);
    }
    return page + "</body>\n</html>\n";
}

}  // namespace TkPPDUpdating
