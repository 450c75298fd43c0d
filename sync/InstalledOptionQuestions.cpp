#include "sync/InstalledOptionQuestions.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <utility>

#include "ppd/PPDStatements.h"
#include "sync/InstallableOptions.h"

namespace TkPPDUpdating {

namespace {

using Statements = std::vector<PPDStatement>;

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
        while (!line.empty() &&
               (kBlanks.find(line.back()) != std::string_view::npos || line.back() == ';')) {
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
    std::vector<InstallableOption> options = installableOptionsOf(statements);
    std::map<std::string_view, const InstallableOption*> open;
    for (const InstallableOption& option : options) {
        open.emplace(option.keyword, &option);
    }
    std::vector<OrbCSOptionQuestion> questions;
    for (const PPDStatement& statement : statements) {
        const bool isQuestion = statement.keyword.starts_with('?') && statement.isQuoted &&
                                statement.optionKeyword.empty();
        const auto option = isQuestion ? open.find(statement.keyword.substr(1)) : open.end();
        if (option == open.end()) {
            continue;
        }
        OrbCSOptionQuestion question{option->second->keyword, std::string(statement.value), {}};
        for (const InstallableOption::Choice& choice : option->second->choices) {
            question.choices.push_back(choice.keyword);
        }
        questions.push_back(std::move(question));
        // The first question of an option is its question.
        open.erase(option);
    }
    return questions;
}

/// Takes a line that says what the answers to a question mean.
void takeMeaning(const PPDStatement& line, const InstallableOption& option,
                 OrbCSObjectQuestion& question) {
    constexpr std::string_view kAnythingElse = ".*";
    if (!option.choice(line.optionKeyword)) {
        if (option.choice(line.value)) {
            question.choices.emplace(line.optionKeyword, line.value);
        }
    } else if (line.value == kAnythingElse) {
        question.choiceForOthers = line.optionKeyword;
    } else {
        question.choices.emplace(line.value, line.optionKeyword);
    }
}

}  // namespace

std::shared_ptr<const OrbCSPostScriptQuestions> postScriptQuestionsOfPPD(
    const PPDModelFile& PPD, std::string& reason, OrbCSPostScriptQuestions::Judge reasonNotToAsk) {
    const Statements statements = PPDStatementsOfText(*PPD.text());
    auto questions = std::make_shared<OrbCSPostScriptQuestions>();
    questions->questions = questionsIn(statements);
    questions->reasonNotToAsk = std::move(reasonNotToAsk);
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

std::shared_ptr<const OrbCSSNMPQuestions> SNMPQuestionsOfPPD(const PPDModelFile& PPD) {
    // Nearly no PPD has one.
    if (PPD.text()->find("*?OID") == std::string::npos) {
        return nullptr;
    }
    const Statements statements = PPDStatementsOfText(*PPD.text());
    const std::vector<InstallableOption> options = installableOptionsOf(statements);
    std::map<std::string, const InstallableOption*, std::less<>> open;
    for (const InstallableOption& option : options) {
        open.emplace("?OID" + option.keyword, &option);
    }
    auto questions = std::make_shared<OrbCSSNMPQuestions>();
    std::map<std::string, std::pair<const InstallableOption*, std::size_t>, std::less<>> asked;
    for (const PPDStatement& statement : statements) {
        const auto option = open.find(statement.keyword);
        if (option != open.end() && statement.optionKeyword.empty() && statement.isQuoted) {
            const InstallableOption& itself = *option->second;
            asked.emplace("OID" + itself.keyword, std::pair(&itself, questions->questions.size()));
            questions->questions.push_back({itself.keyword, std::string(statement.value), {}, {}});
            // The first question of an option is its question.
            open.erase(option);
        }
    }
    for (const PPDStatement& statement : statements) {
        const auto question = asked.find(statement.keyword);
        if (question != asked.end() && !statement.optionKeyword.empty()) {
            takeMeaning(statement, *question->second.first,
                        questions->questions[question->second.second]);
        }
    }
    return questions->questions.empty() ? nullptr : questions;
}

}  // namespace TkPPDUpdating
