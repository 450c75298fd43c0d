#include "backends/cups/InstallationChecks.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "updaters/default_choice/OrbPPDDefaultChoiceUpdater.h"

namespace TkPPDUpdating {

namespace {

constexpr std::array<std::string_view, 5> kProgramKeywords = {
    "cupsfilter", "cupsprefilter", "cupsportmonitor", "apprinterpreset", "foomaticrip"};

char lowerCase(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

bool beginsWithIgnoringCase(std::string_view text, std::string_view lowerCasePrefix) {
    return text.size() >= lowerCasePrefix.size() &&
           std::equal(lowerCasePrefix.begin(), lowerCasePrefix.end(), text.begin(),
                      [](char left, char right) { return left == lowerCase(right); });
}

bool namesProgram(std::string_view line) {
    return line.starts_with('*') &&
           std::any_of(kProgramKeywords.begin(), kProgramKeywords.end(),
                       [&line](std::string_view keyword) {
                           return beginsWithIgnoringCase(line.substr(1), keyword);
                       });
}

/// All lines that name programs, whatever stands around them: the scheduler reads line by line and
/// takes a carriage return for an end of line, too.
std::multiset<std::string_view> programLines(std::string_view text) {
    std::multiset<std::string_view> lines;
    for (std::size_t star = text.find('*'); star != std::string_view::npos;
         star = text.find('*', star + 1)) {
        const bool beginsLine = star == 0 || text[star - 1] == '\n' || text[star - 1] == '\r';
        if (beginsLine && namesProgram(text.substr(star))) {
            lines.insert(text.substr(star, text.find_first_of("\r\n", star) - star));
        }
    }
    return lines;
}

std::string keywordOf(std::string_view line) {
    return std::string(line.substr(1, line.find_first_of(" \t:/") - 1));
}

/// The lines of the group that the capability updaters remove; empty when there is none.
std::string_view twoSidedGroup(std::string_view text) {
    const std::size_t begin = text.find("\n*OpenGroup: ZrTwoSidedPrinting");
    const std::size_t end = begin == std::string_view::npos
                                ? std::string_view::npos
                                : text.find("\n*CloseGroup: ZrTwoSidedPrinting", begin);
    return end == std::string_view::npos ? std::string_view() : text.substr(begin, end - begin);
}

bool declaresOption(std::string_view lines, std::string_view option) {
    const std::string declaration = "\n*OpenUI *" + std::string(option);
    for (std::size_t at = lines.find(declaration); at != std::string_view::npos;
         at = lines.find(declaration, at + 1)) {
        const std::string_view rest = lines.substr(at + declaration.size());
        if (rest.empty() ||
            std::string_view("/: \t\r\n").find(rest.front()) != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

std::optional<std::string> reasonDefaultIsLost(const PPDModelFile& before,
                                               const PPDModelFile& after, std::string_view option) {
    const OrbPPDOption* had = before.optionForName(option);
    const auto was = had->defaultChoiceName();
    if (!was) {
        return std::nullopt;
    }
    const OrbPPDOption* kept = after.optionForName(option);
    if (!kept && declaresOption(twoSidedGroup(*before.text()), option)) {
        return std::nullopt;
    }
    const auto is = kept ? kept->defaultChoiceName() : std::nullopt;
    const bool hasChoice = is == was && (!had->choiceForName(*was) || kept->choiceForName(*was));
    return hasChoice ? std::nullopt
                     : std::optional("the default of " + std::string(option) +
                                     " would be lost, which belongs to the user");
}

}  // namespace

std::set<std::string, std::less<>> InstallationChecks::ownedOptions(
    const OrbPPDConcreteUpdatingManager& manager, const OrbPPDFile& PPD) {
    std::set<std::string, std::less<>> owned;
    for (const auto& updater : manager.applicableUpdatersForPPDFile(&PPD)) {
        if (auto* choices = dynamic_cast<OrbPPDDefaultChoiceUpdater*>(updater.get())) {
            for (std::string& name : choices->optionNames()) {
                owned.insert(std::move(name));
            }
        }
    }
    return owned;
}

std::optional<std::string> InstallationChecks::reasonNotToInstall(
    const PPDModelFile& before, const PPDModelFile& after,
    const std::set<std::string, std::less<>>& owned) {
    auto known = programLines(*before.text());
    for (const std::string_view line : programLines(*after.text())) {
        const auto same = known.find(line);
        if (same == known.end()) {
            return "it would get a new line of " + keywordOf(line);
        }
        known.erase(same);
    }
    for (const std::string_view option : before.optionNames()) {
        const auto reason =
            owned.contains(option) ? std::nullopt : reasonDefaultIsLost(before, after, option);
        if (reason) {
            return reason;
        }
    }
    return std::nullopt;
}

}  // namespace TkPPDUpdating
