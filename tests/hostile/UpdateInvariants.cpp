#include "tests/hostile/UpdateInvariants.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "core_interface/TkCSKeys.h"
#include "resources/PropertyListReader.h"
#include "resources/ResourceFolder.h"
#include "tests/hostile/OrderedWalk.h"
#include "tests/updaters/capabilities/ConstraintRemovalModel.h"
#include "tests/updaters/capabilities/LineRemovalModels.h"
#include "text/UTF8.h"

namespace TkPPDUpdating::Testing {

namespace {

using Names = std::set<std::string>;
using Lines = std::vector<std::string>;

/// Options whose default an updater sets, or the tool where it follows a media type.
constexpr std::array<std::string_view, 10> kOptionsOfUpdaters = {
    "PageSize",        "PageRegion",        "ImageableArea",        "PaperDimension",
    "MediaType",       "ZrPenConfig",       "ZrLowerTrayInstalled", "ZrAutoDuplexerInstalled",
    "ZrICCProfileId2", "ZrPenConfigOptions"};

/// Attributes that come from no printer's text, but from another PPD or what is known of a
/// duplexer.
constexpr std::array<std::string_view, 4> kOfOtherPPDs = {
    "ZrDeviceCapabilities", "ZrAutoDuplexCapability", "ZrNonInstallableDuplex",
    "ZrEPRInfoSupported"};

template <typename List>
bool contains(const List& list, std::string_view name) {
    return std::find(list.begin(), list.end(), name) != list.end();
}

bool isDefaultOfUpdaters(std::string_view keyword) {
    return keyword.starts_with("Default") && contains(kOptionsOfUpdaters, keyword.substr(7));
}

bool isAttributeOfUpdaters(std::string_view keyword) {
    return isAttributeOfPrinters(keyword) || contains(kOfOtherPPDs, keyword);
}

/// The library's property list: texts by their keys.
const PropertyList::Dictionary& resources() {
    static const PropertyList kList = [] {
        const auto folder = ResourceFolder::path();
        auto list = folder ? PropertyListReader::propertyListWithContentsOfFile(
                                 std::string(*folder) + "/TkPPDUpdatingData.plist")
                           : std::nullopt;
        if (!list || !list->as<PropertyList::Dictionary>()) {
            throw std::runtime_error("the library's property list cannot be read");
        }
        return *std::move(list);
    }();
    return *kList.as<PropertyList::Dictionary>();
}

std::string resource(const std::string& key) {
    const auto found = resources().find(key);
    const std::string* const text =
        found == resources().end() ? nullptr : found->second.as<std::string>();
    return text ? *text : std::string();
}

/// What the property list has for a duplexer that is present, for any version.
std::vector<std::string> blocks() {
    std::vector<std::string> texts;
    for (const auto& [key, value] : resources()) {
        if (key.find("Updater-") != std::string::npos && value.as<std::string>()) {
            texts.push_back(*value.as<std::string>());
        }
    }
    return texts;
}

/// Takes the next line from the text. libcups takes a carriage return for its end, too: the one
/// before a line feed, or the end, is kept with the line, and one without is kept as two.
std::string takenLine(std::string_view& text) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const bool isCarriageReturn = end < text.size() && text[end] == '\r';
    const std::string_view rest = text.substr(std::min(end + 1, text.size()));
    const bool isBoth = isCarriageReturn && (rest.empty() || rest.starts_with('\n'));
    std::string line(text.substr(0, end));
    line += isBoth ? "\r" : isCarriageReturn ? "\r\r" : "";
    text.remove_prefix(std::min(end + (isBoth ? 2 : 1), text.size()));
    return line;
}

/// The lines of a text; those within one value, between its quotes, are one. As libcups reads them,
/// quotes count behind the colon, and not in a comment.
Lines statementsOf(std::string_view text) {
    Lines lines;
    bool isOpen = false;
    while (!text.empty()) {
        const std::string line = takenLine(text);
        std::string_view quoted = line;
        if (isOpen) {
            lines.back().append("\n").append(line);
        } else {
            lines.push_back(line);
            const bool isComment = line.starts_with("*%");
            quoted.remove_prefix(isComment ? line.size() : std::min(line.find(':'), line.size()));
        }
        const bool isOdd = std::count(quoted.begin(), quoted.end(), '"') % 2 == 1;
        isOpen = isOpen != isOdd;
    }
    return lines;
}

/// "*KEYWORD SPEC/..." or "*KEYWORD: ..."; what separates them from the rest may be missing. A
/// "/" does not end a keyword: libcups opens no PPD with such a one.
struct Parts {
    std::string_view keyword;
    std::string_view spec;
};

Parts partsOf(std::string_view line) {
    Parts parts;
    if (line.starts_with('*')) {
        line = line.substr(1, std::min(line.find(':'), line.size()) - 1);
        const std::size_t blank = std::min(line.find_first_of(" \t"), line.size());
        parts.keyword = line.substr(0, blank);
        line.remove_prefix(blank);
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        line = line.substr(0, line.find('/'));
        parts.spec = line.substr(0, line.find_last_not_of(" \t") + 1);
    }
    return parts;
}

/// The text with its lines in it that name custom media: category and properties.
Names namesOfCustomMedia(const std::string& text) {
    Names names;
    for (const std::string& line : statementsOf(text)) {
        const auto [keyword, spec] = partsOf(line);
        const bool isCategory = keyword == "ZrMediaTypeCategory";
        if (!isCategory && keyword != "ZrChoiceProperties") {
            continue;
        }
        // Every word of the value, whatever its role.
        constexpr std::string_view kSeparators = " \t\r\n\"=;";
        std::string_view rest = std::string_view(line).substr(line.find(':') + 1);
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find_first_of(kSeparators), rest.size());
            names.emplace(rest.substr(0, end));
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
    names.erase("");
    return names;
}

bool isEnd(std::string_view line) {
    return line.substr(0, line.find('\r')) == "*End";
}

/// The lines of a text without the blank ones, which libcups passes over.
Lines linesThatCount(const std::string& text) {
    Lines lines = statementsOf(text);
    std::erase_if(lines, [](const std::string& line) {
        return line.find_first_not_of('\r') == std::string::npos;
    });
    return lines;
}

Names linesOfBlocks() {
    Names lines;
    for (const std::string& block : blocks()) {
        for (std::string& line : statementsOf(block)) {
            lines.insert(std::move(line));
        }
    }
    return lines;
}

/// What the blocks are to libcups.
std::set<LibcupsFact> factsOfBlocks() {
    std::set<LibcupsFact> facts;
    for (const std::string& block : blocks()) {
        std::string error;
        const auto read = libcupsReading("*PPD-Adobe: \"4.3\"\n" + block, error);
        for (const LibcupsFact& fact : read.value_or(LibcupsFacts())) {
            facts.insert(fact);
        }
    }
    return facts;
}

template <typename Things>
std::map<typename Things::value_type, int> countsOf(const Things& more, const Things& less) {
    std::map<typename Things::value_type, int> counts;
    for (const auto& thing : more) {
        ++counts[thing];
    }
    for (const auto& thing : less) {
        --counts[thing];
    }
    std::erase_if(counts, [](const auto& each) { return each.second <= 0; });
    return counts;
}

/// Lines of `statementsOf` as a text.
std::string textOf(const Lines& statements) {
    std::string text;
    for (const std::string& line : statements) {
        text += line + "\n";
    }
    // A lone carriage return ends a line within a value, too.
    constexpr std::string_view kLoneCarriageReturn = "\r\r\n";
    for (std::size_t place = text.find(kLoneCarriageReturn); place != std::string::npos;
         place = text.find(kLoneCarriageReturn, place + 1)) {
        text.replace(place, kLoneCarriageReturn.size(), "\r");
    }
    return text;
}

/// The text without the statements that may go.
template <typename MayGo>
std::string withoutStatements(const std::string& text, const MayGo& mayGo) {
    Lines statements = statementsOf(text);
    std::erase_if(statements, mayGo);
    return textOf(statements);
}

/// Without the lines that match and stand within no value.
std::string withoutMatchingStatements(const std::string& text, const std::string& expression) {
    const LineExpression compiled(expression);
    return withoutStatements(text, [&](const std::string& statement) {
        return statement.find('\n') == std::string::npos && compiled.matches(statement);
    });
}

/// Without the constraints of "Duplex" that stand within no value and behind nothing else.
std::string withoutConstraintStatements(const std::string& text) {
    return withoutStatements(text, [](const std::string& statement) {
        return statement.starts_with("*UIConstraints:") &&
               ConstraintRemovalModel::removed(statement + "\n", "Duplex").empty();
    });
}

/// The text without the first group of the duplexer as libcups reads it: another one than that in
/// the text, where that stands within a value.
std::string withoutGroupOfLibcups(const std::string& text) {
    Lines lines = statementsOf(text);
    const auto opens = std::ranges::find_if(lines, [](const std::string& line) {
        return line.starts_with("*OpenGroup: ZrTwoSidedPrinting");
    });
    const auto closes = std::find_if(opens, lines.end(), [](const std::string& line) {
        return line.starts_with("*CloseGroup: ZrTwoSidedPrinting");
    });
    if (closes != lines.end()) {
        lines.erase(opens, closes + 1);
    }
    return textOf(lines);
}

/// The text without what goes with an absent duplexer: its group, the constraints of "Duplex", page
/// sizes; all of them first, then what may go alone. Of a text whose last line has no end: what
/// other updaters insert gives it one.
std::vector<std::string> textsWithoutDuplexer(std::string text) {
    text += text.ends_with('\n') ? "" : "\n";
    const std::string expression = resource("TkPPDDuplexSafeRegularExpression");
    const auto withoutRest = [&](const std::string& withoutGroup) {
        return withoutMatchingLines(ConstraintRemovalModel::removed(withoutGroup, "Duplex"),
                                    expression);
    };
    const std::string group = withoutGroup(text, "ZrTwoSidedPrinting");
    return {
        withoutRest(group), ConstraintRemovalModel::removed(group, "Duplex"), group,
        withoutMatchingLines(text, expression), withoutRest(withoutGroupOfLibcups(text)),
        // And as far as they stand in no value.
        withoutMatchingStatements(withoutConstraintStatements(text), expression),
        withoutMatchingStatements(
            ConstraintRemovalModel::removed(withoutGroupOfLibcups(text), "Duplex"), expression)};
}

bool isOfUpdaters(const LibcupsFact& fact) {
    if (isOfPrinter(fact)) {
        return true;
    }
    if (fact.kind == "attribute") {
        return fact.text.empty() && fact.optionKeyword.empty() &&
               (contains(kOfOtherPPDs, fact.keyword) || isDefaultOfUpdaters(fact.keyword));
    }
    return fact.kind == "default" && contains(kOptionsOfUpdaters, fact.keyword);
}

/// What goes with an absent duplexer, wherever it stands.
bool isConstraintOfDuplex(const LibcupsFact& fact) {
    return fact.kind == "constraint" && (fact.keyword == "Duplex" || fact.text == "Duplex");
}

/// Whether an earlier run of the custom media updater named it.
bool isNamed(const LibcupsFact& fact, const Names& names) {
    const std::string_view spec = fact.optionKeyword;
    const bool hasStops = spec.starts_with("..") && fact.keyword == "cupsICCProfile";
    const std::string name(spec.starts_with("MediaType.") ? spec.substr(10)
                           : hasStops                     ? spec.substr(2)
                                                          : spec);
    const std::string_view keyword = withoutLanguage(fact.keyword);
    const bool isOfIts = keyword == "MediaType" || keyword == "ZrICCProfileId2" ||
                         keyword == "cupsICCProfile" || keyword == "ZrChoiceProperties";
    return keyword == "ZrMediaTypeCategory" || (isOfIts && names.contains(name));
}

/// Whether an updater owns the line; `names` are those of custom media.
bool isOwned(std::string_view line, const Names& names) {
    const auto [whole, spec] = partsOf(line);
    const std::string_view keyword = withoutLanguage(whole);
    if (isAttributeOfUpdaters(keyword) || isDefaultOfUpdaters(whole)) {
        return spec.empty();
    }
    const auto isOfType = [&](std::string_view name) {
        return isCustomName(name) || names.contains(std::string(name));
    };
    if (keyword == "MediaType") {
        return isOfType(spec);
    }
    if (keyword == "ZrChoiceProperties") {
        return spec.starts_with("MediaType.") && isOfType(spec.substr(10));
    }
    if (keyword == "ZrICCProfileId2" || keyword == "cupsICCProfile") {
        // A qualifier may itself be two full stops.
        return names.contains(std::string(spec)) ||
               (spec.starts_with("..") && names.contains(std::string(spec.substr(2))));
    }
    return keyword == "ZrMediaTypeCategory" && spec == "custom";
}

}  // namespace

bool isOfTwoMindsAboutTheDuplexer(const OrbCSDeviceStatus& status) {
    const auto* const all =
        status.statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
    std::set<bool> answers;
    for (const OrbCSDeviceAccessory& each : all ? *all : OrbCSDeviceAccessories()) {
        if (each.name == kTkCSDeviceAccessoryDuplexer) {
            answers.insert(each.isInstalled);
        }
    }
    return answers.size() > 1;
}

UpdateInvariants::UpdateInvariants(std::string before)
    : before_(std::move(before)), names_(namesOfCustomMedia(before_)) {
    lines_.all = linesThatCount(before_);
}

/// What `findingsFrom(list, mayGoSoOften)` finds when nothing, all or some has gone of what goes
/// with an absent duplexer; nothing as soon as it finds nothing. Counting alone would not do: of a
/// thing that is there twice, the one outside would be taken for what may go.
template <typename Thing, typename Read, typename FindingsFrom>
UpdateInvariants::Findings UpdateInvariants::findingsAmong(Things<Thing>& things, const Read& read,
                                                           const FindingsFrom& findingsFrom) {
    using Counts = std::map<Thing, int>;
    const auto isFoundFrom = [&](const auto& base) {
        return !findingsFrom(base, Counts()).empty();
    };
    if (!isFoundFrom(*things.all)) {
        return {};
    }
    if (!things.isDuplexerKnown) {
        things.isDuplexerKnown = true;
        for (const std::string& text : textsWithoutDuplexer(before_)) {
            if (auto without = read(text)) {
                things.withoutDuplexer.push_back(*std::move(without));
            }
        }
    }
    const auto& without = things.withoutDuplexer;
    if (!std::ranges::all_of(without, isFoundFrom)) {
        return {};
    }
    // Some of what may go has.
    Findings findings = findingsFrom(*things.all, Counts());
    for (const auto& each : without) {
        findings = findingsFrom(*things.all, countsOf(*things.all, each));
        if (findings.empty()) {
            break;
        }
    }
    return findings;
}

std::vector<std::string> UpdateInvariants::findingsInLines(const std::string& after) {
    static const Names kLinesOfBlocks = linesOfBlocks();
    Names names = namesOfCustomMedia(after);
    names.insert(names_.begin(), names_.end());
    const Lines linesAfter = linesThatCount(after);
    const auto mayGo = [&](const std::string* previous, const std::string& line) {
        return isOwned(line, names_) || (isEnd(line) && previous && isOwned(*previous, names_)) ||
               line.starts_with("*% Duplex <-> ");
    };
    const auto findingsFrom = [&](const Lines& base, std::map<std::string, int> mayGoSoOften) {
        OrderedWalk<std::string> walk(base, mayGo, std::move(mayGoSoOften));
        Findings findings;
        bool wasOwned = false;
        for (const std::string& line : linesAfter) {
            const bool owned = isOwned(line, names);
            const bool mayBeRead = partsOf(line).keyword.find('/') == std::string_view::npos;
            const bool mayBeNew =
                (owned && mayBeRead) || (wasOwned && isEnd(line)) || kLinesOfBlocks.contains(line);
            if (walk.take(line, mayBeNew, true) == OrderedWalk<std::string>::Step::foreign) {
                findings.push_back("a line that is new or another: " + line);
            }
            wasOwned = owned;
        }
        if (const std::string* const lost = walk.lost()) {
            findings.push_back("a line is lost: " + *lost);
        }
        return findings;
    };
    return findingsAmong(
        lines_, [](const std::string& text) { return std::optional(linesThatCount(text)); },
        findingsFrom);
}

UpdateInvariants::Findings UpdateInvariants::findingsInFacts(const std::string& after) {
    static const std::set<LibcupsFact> kFactsOfBlocks = factsOfBlocks();
    std::string error;
    if (!facts_.all) {
        facts_.all = libcupsReading(before_, error);
    }
    if (!facts_.all) {
        return {};
    }
    const auto facts = libcupsReading(after, error);
    if (!facts) {
        return {"libcups does not open it any more: " + error};
    }
    // A group that opens twice is elsewhere to libcups when the first opening is gone.
    return findingsAmong(
        facts_, [&](const std::string& text) { return libcupsReading(text, error); },
        [&](const LibcupsFacts& base, const std::map<LibcupsFact, int>& mayGoSoOften) {
            const FactRules rules = {[&](const LibcupsFact& fact) {
                                         return isOfUpdaters(fact) || isNamed(fact, names_) ||
                                                isConstraintOfDuplex(fact);
                                     },
                                     mayGoSoOften,
                                     [](const LibcupsFact& fact) {
                                         return isOfUpdaters(fact) || isOfCustomMedia(fact) ||
                                                kFactsOfBlocks.contains(fact);
                                     }};
            return differenceOfFacts(base, *facts, rules).findings;
        });
}

std::vector<std::string> UpdateInvariants::findingsIn(const std::string& after) {
    if (after == before_) {
        return {};
    }
    auto findings = findingsInLines(after);
    if (!firstInvalidUTF8Byte(before_) && firstInvalidUTF8Byte(after)) {
        findings.emplace_back("it is no valid UTF-8 any more");
    }
    const auto ofFacts = findingsInFacts(after);
    findings.insert(findings.end(), ofFacts.begin(), ofFacts.end());
    return findings;
}

}  // namespace TkPPDUpdating::Testing
