#include "tests/hostile/HostileStatuses.h"

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string_view>

#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating::Testing {

namespace {

using nlohmann::json;

/// What ends, begins or continues something in a PPD.
constexpr std::array<std::string_view, 46> kParts = {
    ":",
    "/",
    "\"",
    "\n",
    "\r",
    "\n*",
    "\r\n",
    "*",
    ";",
    "=",
    ",",
    "<0A>",
    "<0a2A>",
    "<",
    ">",
    "<3A",
    " ",
    "  ",
    "\t",
    "\x1A",
    "\x7F",
    "\xC2\x85",
    "\xC2\xA0",
    "\xE2\x80\xA8",
    "\xEF\xBB\xBF",
    "\xF0\x9F\x96\xA8",
    "\xC3\xA9",
    "%",
    "%s",
    "\\",
    "\\\"",
    "(",
    ")",
    "*cupsFilter: \"x 0 /bin/sh\"",
    "*End",
    "*% Duplex <-> ",
    "*UIConstraints: *Duplex x",
    "*CloseUI: *MediaType",
    ":  (/etc/passwd)(r)file 99 string readline pop = % ",
    ";ZrICCProfileId2=Auto;",
    ";ParentMediaID=1;",
    "//",
    "/*",
    "*/",
    "..",
    "\xE3\x80\x80"};

/// What passes for an ordinary word and may be somebody else's.
constexpr std::array<std::string_view, 26> kWords = {"Glossy",  "Auto",
                                                     "auto",    "AUTO",
                                                     "sRGB",    "Plain",
                                                     "Photo",   "a",
                                                     "custom1", "Custom1",
                                                     "custom2", "custom10",
                                                     "custom",  "Custom",
                                                     "1201",    "MediaType",
                                                     "None",    "True",
                                                     "False",   "Unknown",
                                                     "SixPens", "C,M,Y",
                                                     "1200",    "ZrICCProfileId2",
                                                     "en",      "MediaType.custom1"};

constexpr std::array<const char*, 10> kPenKeywords = {
    "ZrPensConfigName",        "ZrPenDyes",
    "ZrPenDropVolumes",        "ZrPenEverydayStatus",
    "ZrPenFamilyIDs",          "ZrPenActualDropVolumes",
    "ZrPenNominalDropVolumes", "ZrPenBriskDropVolumes",
    "ZrPenInkSufficient",      "ZrPenHasPrintheadDefect"};

}  // namespace

std::size_t HostileStatuses::below(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
}

/// Words with a part between them now and then, so that a good deal gets through.
std::string HostileStatuses::text() {
    if (chance(3)) {
        return harmlessText();
    }
    std::string made;
    for (std::size_t count = below(4) + 1; count > 0; --count) {
        made += chance(2) ? oneOf(kWords) : oneOf(kParts);
    }
    return made;
}

std::string HostileStatuses::harmlessText() {
    std::string made(oneOf(kWords));
    if (chance(4)) {
        made += " " + std::string(oneOf(kWords));
    }
    if (chance(12)) {
        made += std::string(below(260), chance(2) ? 'x' : ' ');
    }
    if (chance(12)) {
        for (std::size_t count = below(100); count > 0; --count) {
            made += "\xC3\xA9";
        }
    }
    return made;
}

std::string HostileStatuses::qualifier() {
    if (chance(3)) {
        return text();
    }
    std::string made = chance(4) ? std::string(oneOf(kWords)) : "q" + std::to_string(below(9));
    if (chance(8)) {
        made += std::string(30 + below(12), 'q');
    }
    return made;
}

std::string HostileStatuses::URL() {
    switch (below(6)) {
        case 0:
            return text();
        case 1:
            return "file:///p/" + text();
        case 2:
            return "file:///p/a%3Ab.icc";
        case 3:
            return "file:" + text() + "/.";
        case 4:
            return "file:///p/" + std::string(below(250), 'p') + ".icc";
        default:
            return "file:///profiles/" + std::to_string(below(4)) + ".icc";
    }
}

std::string HostileStatuses::keywordOr(const char* keyword) {
    return chance(6) ? text() : keyword;
}

json HostileStatuses::accessories() {
    json list = json::array();
    for (std::size_t count = below(4); count > 0; --count) {
        list.push_back(
            {{"name", keywordOr(chance(2) ? "Duplexer" : "Tray2")}, {"isInstalled", chance(2)}});
    }
    return list;
}

json HostileStatuses::pens() {
    json values = json::object();
    for (const char* const keyword : kPenKeywords) {
        if (!chance(3)) {
            values[keywordOr(keyword)] = text();
        }
    }
    return {{"codeName", text()}, {"PPDAttributeValues", values}};
}

json HostileStatuses::estimations() {
    json list = json::array();
    for (std::size_t count = below(40) == 0 ? 60 : below(4); count > 0; --count) {
        list.push_back({{"pageTypeName", chance(3) ? text() : "A"},
                        {"minPageCount", -1.5},
                        {"maxPageCount", std::uint64_t{1} << 60U},
                        {"state", below(3)}});
    }
    return list;
}

json HostileStatuses::mediaTypes() {
    json list = json::array();
    for (std::size_t count = chance(30) ? 40 + below(300) : below(5); count > 0; --count) {
        json type = {{"name", chance(20) ? json() : json(text())},
                     {"mediaID", chance(10) ? json() : json(chance(2) ? harmlessText() : text())},
                     {"parentMediaID", chance(4) ? json() : json(harmlessText())}};
        if (!chance(3)) {
            type["ICCProfile"] = {{"URL", URL()},
                                  {"qualifierVer2", chance(4) ? json() : json(qualifier())},
                                  {"profileID", chance(4) ? json() : json(below(4))}};
        }
        list.push_back(type);
    }
    return list;
}

std::string HostileStatuses::recording() {
    json recording = json::object();
    if (!chance(4)) {
        recording["DeviceAccessories"] = accessories();
    }
    if (!chance(3)) {
        recording["InstalledPensConfiguration"] = pens();
    }
    if (!chance(2)) {
        recording["LinTable"] = {{"timestamp", below(2)}};
    }
    if (!chance(2)) {
        recording["MaxSupportedResolution"] = chance(3) ? json(1e300) : json(text());
    }
    if (!chance(2)) {
        recording["RemainingPagesEstimations"] = estimations();
    }
    if (!chance(6)) {
        recording["CustomMediaTypes"] = mediaTypes();
    }
    return recording.dump();
}

ipp_tag_t HostileStatuses::textSyntax() {
    constexpr std::array<ipp_tag_t, 4> kSyntaxes = {IPP_TAG_NAME, IPP_TAG_NAME, IPP_TAG_TEXT,
                                                    IPP_TAG_KEYWORD};
    return oneOf(kSyntaxes);
}

std::string HostileStatuses::supply() {
    return "type=" + keywordOr("inkCartridge") + ";level=" + std::to_string(below(100)) +
           ";class=supplyThatIsConsumed;colorantname=" + text() + ";";
}

void HostileStatuses::addTexts(IPPTestMessage& answer, const char* name) {
    std::vector<std::string> values;
    for (std::size_t count = below(4) + 1; count > 0; --count) {
        values.push_back(text());
    }
    std::vector<const char*> pointers;
    for (const std::string& value : values) {
        pointers.push_back(value.c_str());
    }
    answer.texts(name, textSyntax(), pointers);
}

void HostileStatuses::addMedia(IPPTestMessage& answer) {
    std::vector<std::array<std::string, 3>> texts(below(4) + 1);
    std::vector<IPPTestMessage::Collection> collections;
    for (auto& [type, key, info] : texts) {
        type = text();
        key = text();
        info = text();
        IPPTestMessage::Collection members = {{"media-type", textSyntax(), type.c_str()}};
        if (chance(2)) {
            members.push_back({"media-key", textSyntax(), key.c_str()});
        }
        if (chance(2)) {
            members.push_back({"media-info", textSyntax(), info.c_str()});
        }
        collections.push_back(std::move(members));
    }
    answer.collections("media-col-database", collections);
}

IPPTestMessage HostileStatuses::answer() {
    IPPTestMessage answer;
    for (const char* const name : IPPStatusMapping::requestedAttributes()) {
        const std::string_view attribute = name;
        if (chance(4)) {
            continue;
        }
        if (attribute == "media-col-database") {
            addMedia(answer);
        } else if (attribute == "sides-supported" && !chance(6)) {
            answer.keywords(name, {"one-sided", chance(2) ? "two-sided-long-edge" : "one-sided"});
        } else if (attribute == "printer-supply") {
            answer.octets(name, {supply(), supply(), text()});
        } else if (attribute == "printer-input-tray") {
            answer.octets(name,
                          {"type=sheetFeedAutoNonRemovableTray;name=" + text() + ";", text()});
        } else if (attribute.find("level") != std::string_view::npos) {
            answer.integers(name, {static_cast<int>(below(400)) - 10, -2});
        } else if (attribute.find("resolution") != std::string_view::npos && !chance(6)) {
            answer.resolution(name, static_cast<int>(below(5000)), static_cast<int>(below(5000)));
        } else if (attribute == "marker-types" && !chance(6)) {
            answer.keywords(name, {"ink", "toner"});
        } else {
            addTexts(answer, name);
        }
    }
    return answer;
}

}  // namespace TkPPDUpdating::Testing
