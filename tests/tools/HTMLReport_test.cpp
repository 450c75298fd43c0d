#ifdef TKPPDUPDATING_WITH_CUPS
#include "tools/HTMLReport.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "resources/XMLScanner.h"
#include "tools/Diagnostics.h"

namespace TkPPDUpdating::Testing {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsSubsetOf;
using ::testing::Not;

/// What a reader of markup finds in the body of a page.
struct Body {
    std::set<std::string> names;
    std::set<std::string> attributes;
    std::vector<std::string> texts;

    /// Raises an error for a body that is not well formed.
    explicit Body(const std::string& page) {
        const std::size_t begin = page.find("<body>");
        const std::size_t end = page.find("</body>");
        if (begin == std::string::npos || end == std::string::npos) {
            throw XMLError("there is no body");
        }
        XMLScanner scanner(std::string_view(page).substr(begin, end + 7 - begin));
        std::vector<std::string> open;
        do {
            const auto tag = scanner.nextTag();
            take(tag, open);
            const std::string text = open.empty() ? "" : scanner.characterData();
            if (text.find_first_not_of(" \n") != std::string::npos) {
                texts.push_back(text);
            }
        } while (!open.empty());
    }

    std::string text() const {
        std::string all;
        for (const std::string& each : texts) {
            all += each + "|";
        }
        return all;
    }

  private:
    void take(const XMLScanner::Tag& tag, std::vector<std::string>& open) {
        if (tag.opens) {
            names.emplace(tag.name);
            open.emplace_back(tag.name);
            if (!tag.attributeName.empty()) {
                attributes.emplace(tag.attributeName);
            }
        } else if (open.empty() || open.back() != tag.name) {
            throw XMLError("</" + std::string(tag.name) + "> closes nothing");
        } else {
            open.pop_back();
        }
    }
};

std::string pageOf(const std::string& JSON, const std::string& name = "print1") {
    const auto reports = queueReportsWithText("print1.json", JSON);
    const std::string server = reports.empty() ? "" : reports.front().server;
    return HTMLReportOfServers({{name, server, reports}}, "2026-11-22T11:00:00Z");
}

constexpr const char* kOffice =
    R"({"queue": "office", "result": "would-update", "changed": ["DefaultDuplexer"],
 "changes": [{"keyword": "DefaultDuplexer", "optionKeyword": null, "before": "False", "after": "True"},
             {"keyword": "MediaType", "optionKeyword": "custom1", "before": null, "after": ""}],
 "changedInWords": ["Duplexer: Not Installed -> Installed"],
 "kept": ["LinTable"], "notes": ["the default is another one now"],
 "status": {"DeviceAccessories": [{"name": "Duplexer", "isInstalled": true},
                                  {"name": "Tray2", "isInstalled": false}],
            "InstalledPensConfiguration": {"PPDAttributeValues":
                {"ZrPenDyes": "C,M,Y,K", "ZrPenInkSufficient": "1,0,1,1"}},
            "MaxSupportedResolution": 1200,
            "CustomMediaTypes": [{"name": "Glossy", "mediaID": "7", "parentMediaID": "3"}]},
 "server": "localhost:631", "deviceURI": "socket://printer", "statusURI": "ipp://printer/ipp/print",
 "time": "2026-11-22T10:00:00Z"})";

std::string onOneLine(std::string JSON) {
    std::ranges::replace(JSON, '\n', ' ');
    return JSON + "\n";
}

TEST(HTMLReport, ShowsAQueueItsStateAndWhatWouldChange) {
    const Body body(pageOf(onOneLine(kOffice)));
    for (const char* text :
         {"Print queues and their printers", "print1", "localhost:631", "office",
          "socket://printer", "status from ipp://printer/ipp/print", "would be updated",
          "the default is another one now", "kept: calibration, which the printer did not tell",
          "Duplexer: Not Installed -> Installed", "2 attributes", "DefaultDuplexer", "False",
          "True", "MediaType custom1", "not there", "2026-11-22T10:00:00Z"}) {
        EXPECT_THAT(body.texts, Contains(text));
    }
}

TEST(HTMLReport, ShowsInksTraysResolutionAndMediaTypes) {
    const std::string text = Body(pageOf(onOneLine(kOffice))).text();
    EXPECT_THAT(text, HasSubstr("|C|M: low|Y|K|duplexer: installed|lower tray: not installed|"
                                "highest resolution: 1200|custom media types: Glossy (7)|"));
}

TEST(HTMLReport, CallsNoInkLowWhereLevelsAndInksDiffer) {
    std::string JSON = onOneLine(kOffice);
    JSON.replace(JSON.find("1,0,1,1"), 7, "1,0,0");
    EXPECT_THAT(Body(pageOf(JSON)).text(), HasSubstr("|C|M|Y|K|"));
}

TEST(HTMLReport, ShowsWhyAQueueIsNotInStep) {
    const Body body(
        pageOf("{\"queue\": \"lab\", \"result\": \"unreachable\", \"cause\": \"timeout\", "
               "\"reason\": \"its printer did not answer\"}\n"));
    for (const char* text :
         {"lab", "unreachable", "its printer did not answer", "cause: timeout"}) {
        EXPECT_THAT(body.texts, Contains(text));
    }
}

TEST(HTMLReport, CountsTheQueuesOfEachServerByResult) {
    const auto reports = [](const char* JSON) { return queueReportsWithText("", JSON); };
    const std::string page = HTMLReportOfServers(
        {{"print1", "a",
          reports("{\"queue\":\"x\",\"result\":\"failed\"}\n{\"queue\":\"y\",\"result\":"
                  "\"unchanged\"}\n{\"queue\":\"z\",\"result\":\"unchanged\"}\n")},
         {"print2", "b", {}},
         {"", "print3:631", reports("{\"queue\":\"x\",\"result\":\"updated\"}")}},
        "2026-11-22T11:00:00Z");
    EXPECT_THAT(Body(page).text(), HasSubstr("|Server|Queues|failed|updated|unchanged|Last told|"
                                             "print1|3|1|0|2|print2|0|0|0|0|print3:631|1|0|1|0|"));
    EXPECT_THAT(Body(page).texts, Contains("Nothing was reported."));
}

TEST(HTMLReport, HasNoScriptAndFetchesNothing) {
    const std::string page = pageOf(onOneLine(kOffice));
    for (const char* hook : {"<script", "<link", "<img", "<iframe", "http:", "https:", "src=",
                             "url(", "@import", "javascript:", "onload"}) {
        EXPECT_THAT(page, Not(HasSubstr(hook)));
    }
    EXPECT_THAT(page, HasSubstr("default-src 'none'"));
}

/// Every text of a report that may come from a stranger, one after the other.
std::vector<std::string> reportsWith(const std::string& text) {
    using nlohmann::json;
    std::vector<std::string> reports;
    const auto add = [&](const char* member, const json& value) {
        json report = {{"queue", "q"}, {"result", "would-update"}};
        report[member] = value;
        reports.push_back(report.dump() + "\n");
    };
    for (const char* member :
         {"queue", "reason", "cause", "server", "deviceURI", "statusURI", "time"}) {
        add(member, text);
    }
    for (const char* member : {"notes", "kept", "changedInWords"}) {
        add(member, json::array({text}));
    }
    for (const char* member : {"keyword", "optionKeyword", "before", "after"}) {
        json change = {{"keyword", "k"}};
        change[member] = text;
        add("changes", json::array({change}));
    }
    add("answers", json::array({{{"option", text}, {"answer", "True"}}}));
    add("answers", json::array({{{"option", "Stapler"}, {"reason", text}}}));
    return reports;
}

const std::vector<std::string> kHostileTexts = {
    "<script>alert(1)</script>",
    "\"><img src=x onerror=alert(1)>",
    "' onmouseover='alert(1)",
    "</td></tr></table></section></body>",
    "<!-- ",
    "]]>",
    "<![CDATA[",
    "&lt;b&gt; &amp; &#60;",
    "</title></style><script>",
    "\x1B[2J",
    std::string("\0", 1),
    // NOLINTNEXTLINE(misc-misleading-bidirectional): what it is about.
    "\xE2\x80\xAE"
    "reversed",
    "\xF0\x9F\x96\xA8",
};

TEST(HTMLReport, AStrangersTextIsTextWhereverItStands) {
    for (const std::string& hostile : kHostileTexts) {
        for (const std::string& report : reportsWith(hostile)) {
            const Body body(pageOf(report));
            EXPECT_THAT(body.text(), HasSubstr(Diagnostics::printable(hostile))) << report;
            EXPECT_THAT(body.names,
                        IsSubsetOf({"body", "h1", "h2", "p", "table", "tr", "th", "td", "a",
                                    "section", "strong", "span", "ul", "li", "details", "summary"}))
                << report;
            EXPECT_THAT(body.attributes, IsSubsetOf({"class", "id", "href"})) << report;
        }
        const Body body(pageOf("{\"queue\": \"q\", \"result\": \"updated\"}\n", hostile));
        EXPECT_THAT(body.text(), HasSubstr(Diagnostics::printable(hostile)));
    }
}

TEST(HTMLReport, ATextOfAPrinterIsTextToo) {
    nlohmann::json report = {{"queue", "q"}, {"result", "unchanged"}};
    report["status"] = {
        {"DeviceAccessories", {{{"name", "<b>tray</b>"}, {"isInstalled", true}}}},
        {"InstalledPensConfiguration", {{"PPDAttributeValues", {{"ZrPenDyes", "C&amp;,M"}}}}}};
    const Body body(pageOf(report.dump() + "\n"));
    EXPECT_THAT(body.texts, Contains("<b>tray</b>: installed"));
    EXPECT_THAT(body.texts, Contains("C&amp;"));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
#endif
