#include "sync/InstalledOptionQuestions.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <utility>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/OrbCSStatusSources.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDStatements.h"

namespace TkPPDUpdating {

namespace {

using Statements = std::vector<PPDStatement>;

constexpr std::string_view kGroup = "InstallableOptions";
constexpr std::string_view kBlanks = " \t\r\n";

std::vector<std::string_view> wordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    for (std::size_t at = text.find_first_not_of(kBlanks); at != std::string_view::npos;
         at = text.find_first_not_of(kBlanks)) {
        text.remove_prefix(at);
        words.push_back(text.substr(0, text.find_first_of(kBlanks)));
        text.remove_prefix(words.back().size());
    }
    return words;
}

const PPDStatement* firstOf(const Statements& statements, std::string_view keyword) {
    const auto found = std::ranges::find_if(statements, [keyword](const PPDStatement& statement) {
        return statement.keyword == keyword && statement.optionKeyword.empty();
    });
    return found == statements.end() ? nullptr : &*found;
}

/// Whether foomatic-rip hands the document on: without a command line of the driver's it does, and
/// with one when the last of its commands is "cat", behind those that print the printer's own.
bool handsPostScriptOn(const Statements& statements) {
    const auto* const commands = firstOf(statements, "FoomaticRIPCommandLine");
    if (!commands) {
        return true;
    }
    std::string_view line = commands->value;
    const auto dropBlanks = [&line] {
        while (!line.empty() && (kBlanks.find(line.back()) != kBlanks.npos || line.back() == ';')) {
            line.remove_suffix(1);
        }
    };
    dropBlanks();
    if (!line.ends_with("cat")) {
        return false;
    }
    line.remove_suffix(std::string_view("cat").size());
    const std::size_t last = line.find_last_not_of(kBlanks);
    return last == std::string_view::npos || line[last] == ';';
}

bool isOfPostScript(std::string_view type) {
    return type == "application/vnd.cups-postscript" || type == "application/postscript";
}

/// "SOURCE COST PROGRAM", or "SOURCE DESTINATION COST PROGRAM" of cupsFilter2.
bool isFilterForPostScript(const PPDStatement& filter, const Statements& statements) {
    const auto words = wordsOf(filter.value);
    const bool hasDestination = filter.keyword == "cupsFilter2";
    if (words.size() != (hasDestination ? 4U : 3U)) {
        return false;
    }
    if (words.front() == "application/vnd.cups-command") {
        return true;
    }
    const bool isPassed =
        words.back() == "-" || (words.back() == "foomatic-rip" && handsPostScriptOn(statements));
    return isOfPostScript(words.front()) && isPassed &&
           (!hasDestination || isOfPostScript(words[1]));
}

bool isForPostScript(const Statements& statements) {
    return std::ranges::all_of(statements, [&statements](const PPDStatement& statement) {
        const bool isFilter =
            statement.keyword == "cupsFilter" || statement.keyword == "cupsFilter2";
        return !isFilter || isFilterForPostScript(statement, statements);
    });
}

/// The bytes of a JCL attribute, of which "<1B>" is one.
std::string JCL(const Statements& statements, std::string_view keyword) {
    const auto* const statement = firstOf(statements, keyword);
    return statement ? decodedPPDTranslation(statement->value) : std::string();
}

std::vector<OrbCSOptionQuestion> questionsIn(const Statements& statements) {
    std::map<std::string_view, std::vector<std::string>> choices;
    std::set<std::string_view> installable;
    for (const PPDStatement& statement : statements) {
        const bool isOpening = statement.keyword == "OpenUI" || statement.keyword == "JCLOpenUI";
        if (isOpening && statement.group == kGroup) {
            installable.insert(statement.option);
        } else if (!statement.optionKeyword.empty() && installable.contains(statement.keyword)) {
            choices[statement.keyword].emplace_back(statement.optionKeyword);
        }
    }
    std::vector<OrbCSOptionQuestion> questions;
    for (const PPDStatement& statement : statements) {
        const bool isQuestion = statement.keyword.starts_with('?') && statement.isQuoted &&
                                statement.optionKeyword.empty();
        const std::string_view option =
            isQuestion ? statement.keyword.substr(1) : std::string_view();
        // The first question of an option is its question.
        if (isQuestion && installable.erase(option) == 1) {
            questions.push_back(
                {std::string(option), std::string(statement.value), choices[option]});
        }
    }
    return questions;
}

std::string textOr(std::optional<std::string_view> text, std::string_view keyword) {
    return text && !text->empty() ? decodedPPDTranslation(*text) : std::string(keyword);
}

std::string textOfOption(const PPDModelFile& PPD, const std::string& option) {
    for (const char* const keyword : {"OpenUI", "JCLOpenUI"}) {
        const auto opening = PPD.attributesForName_spec(keyword, "*" + option);
        if (!opening.empty()) {
            return textOr(opening.front()->text(), option);
        }
    }
    return option;
}

std::string textOfChoice(const PPDModelFile& PPD, const std::string& option,
                         const std::string& choice) {
    const auto choices = PPD.attributesForName_spec(option, choice);
    return choices.empty() ? choice : textOr(choices.front()->text(), choice);
}

/// Why an option was not answered, as the status tells it behind the option's keyword.
std::string reasonFor(const std::string& option, const std::vector<std::string>& reasons) {
    const std::string beginning = option + ": ";
    const auto found = std::ranges::find_if(
        reasons, [&](const std::string& reason) { return reason.starts_with(beginning); });
    return found == reasons.end() ? "" : found->substr(beginning.size());
}

const OrbCSInstalledOptions* installedOptionsOf(const OrbCSDeviceStatus& status) {
    return status.statusValueForKey<OrbCSInstalledOptions>(kTkCSInstalledOptionsKey);
}

/// Two statuses as one.
class CombinedStatus : public OrbCSDeviceStatus,
                       public OrbCSPartialStatus,
                       public OrbCSStatusSources {
  public:
    CombinedStatus(std::shared_ptr<const OrbCSDeviceStatus> others,
                   std::shared_ptr<const OrbCSDeviceStatus> asked)
        : others_(std::move(others)),
          asked_(std::move(asked)),
          told_(OrbCSPartialStatus::toldEntriesOf(*others_)) {
        if (told_) {
            told_->emplace(kTkCSInstalledOptionsKey);
        }
        if (const auto* const known = dynamic_cast<const OrbCSStatusSources*>(others_.get())) {
            sources_ = known->sources();
        }
    }

    const OrbCSStatusValue* statusValueForKey_error(std::string_view key,
                                                    std::string* error) const override {
        const auto& status = key == kTkCSInstalledOptionsKey ? asked_ : others_;
        return status->statusValueForKey_error(key, error);
    }

    const std::optional<OrbCSToldEntries>& toldEntries() const override { return told_; }

    const std::vector<OrbCSStatusSource>& sources() const override { return sources_; }

  private:
    std::shared_ptr<const OrbCSDeviceStatus> others_;
    std::shared_ptr<const OrbCSDeviceStatus> asked_;
    std::optional<OrbCSToldEntries> told_;
    std::vector<OrbCSStatusSource> sources_;
};

}  // namespace

std::shared_ptr<const OrbCSPostScriptQuestions> postScriptQuestionsOfPPD(const PPDModelFile& PPD,
                                                                         std::string& reason) {
    const Statements statements = PPDStatementsOfText(*PPD.text());
    auto questions = std::make_shared<OrbCSPostScriptQuestions>();
    questions->questions = questionsIn(statements);
    if (questions->questions.empty()) {
        reason = "its PPD has no question about what is installed";
        return nullptr;
    }
    if (!isForPostScript(statements)) {
        reason = "its PPD is not for a PostScript printer";
        return nullptr;
    }
    if (firstOf(statements, "JCLToPSInterpreter")) {
        questions->beginning = JCL(statements, "JCLBegin") + JCL(statements, "JCLToPSInterpreter");
        questions->end = JCL(statements, "JCLEnd");
    }
    return questions;
}

std::vector<std::string> wordsForAnswers(const PPDModelFile& PPD,
                                         const OrbCSPostScriptQuestions& questions,
                                         const OrbCSDeviceStatus* answer) {
    const auto* const installed = answer ? installedOptionsOf(*answer) : nullptr;
    const auto reasons =
        answer ? ReportedDeviceStatus::droppedValuesOf(*answer) : std::vector<std::string>();
    std::vector<std::string> lines;
    for (const OrbCSOptionQuestion& question : questions.questions) {
        std::string line = textOfOption(PPD, question.option) + ": asked over PostScript";
        const bool isAnswered = installed && installed->contains(question.option);
        const std::string reason = reasonFor(question.option, reasons);
        if (isAnswered) {
            line += ": " + textOfChoice(PPD, question.option, installed->at(question.option));
        } else {
            line += ", no answer" + (reason.empty() ? "" : ": " + reason);
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

std::shared_ptr<const OrbCSDeviceStatus> statusWithInstalledOptions(
    std::shared_ptr<const OrbCSDeviceStatus> others,
    std::shared_ptr<const OrbCSDeviceStatus> asked) {
    if (!others || !installedOptionsOf(*asked)) {
        return others ? others : asked;
    }
    return std::make_shared<const CombinedStatus>(std::move(others), std::move(asked));
}

}  // namespace TkPPDUpdating
