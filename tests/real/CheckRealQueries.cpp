// Sends the questions of PPDs to Ghostscript, all of a PPD as one job, in their order and reversed;
// run by scripts/check-real-queries. Fails when one is not answered, or otherwise in the other
// order, is not to be sent at all, or when a PPD's own product is taken for another printer's.
//
//   check_real_queries PPD...
//   check_real_queries --queue PPD     syncs a queue of a scheduler of its own with that PPD
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/postscript/PostScriptAnswers.h"
#include "backends/postscript/PostScriptJob.h"
#include "backends/ppdmodel/PPDModelFile.h"
#include "sync/InstalledOptionQuestions.h"
#include "sync/QueuePrinters.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/support/RunProgram.h"
#include "tests/support/SocketPrinter.h"

namespace {

using namespace TkPPDUpdating;

struct Counts {
    int PPDs = 0;
    int questions = 0;
    int choices = 0;
    int notKnown = 0;
    int errors = 0;
    int others = 0;
    int notAnswered = 0;
    int differences = 0;
    int notToBeSent = 0;
    int withoutProduct = 0;
    int strangers = 0;
};

std::string withoutParentheses(std::string_view product) {
    return product.size() < 2 ? "" : std::string(product.substr(1, product.size() - 2));
}

/// What came of each question, by its option: a choice, or why there is none.
using Answers = std::map<std::string, std::string>;

Answers askedAnswersTo(const OrbCSPostScriptQuestions& questions) {
    const PostScriptMark mark = PostScriptMark::random();
    const PostScriptJob job(questions, mark);
    std::string text = job.beginning();
    for (std::size_t index = 0; index < questions.questions.size(); ++index) {
        text += job.question(index);
    }
    Testing::ProgramSurroundings surroundings;
    surroundings.standardInput = text;
    const auto run = Testing::runProgram({"gs", "-q", "-dNOPAUSE", "-dBATCH", "-dSAFER",
                                          "-sDEVICE=ljet4d", "-sOutputFile=/dev/null", "-"},
                                         surroundings);
    Answers answers;
    for (std::size_t index = 0; index < questions.questions.size(); ++index) {
        const OrbCSOptionQuestion& question = questions.questions[index];
        const auto answer = postScriptAnswer(run.standardOutput, mark, PostScriptJob::label(index));
        const auto reason =
            answer ? reasonForNoChoice(*answer, question.choices) : std::optional<std::string>("-");
        answers[question.option] = reason ? "(" + *reason + ")" : answer->text;
    }
    return answers;
}

/// The same; many PPDs have the same questions, which are asked once.
const Answers& answersTo(const OrbCSPostScriptQuestions& questions) {
    static std::map<std::vector<std::string>, Answers> known;
    std::vector<std::string> words;
    for (const OrbCSOptionQuestion& question : questions.questions) {
        words.insert(words.end(), {question.option, question.code});
        words.insert(words.end(), question.choices.begin(), question.choices.end());
    }
    const auto place = known.find(words);
    return place != known.end() ? place->second
                                : known.emplace(words, askedAnswersTo(questions)).first->second;
}

void count(const std::string& answer, Counts& counts) {
    if (!answer.starts_with('(')) {
        ++counts.choices;
    } else if (answer == "(-)") {
        ++counts.notAnswered;
    } else if (answer == "(the printer does not know)") {
        ++counts.notKnown;
    } else if (answer.starts_with("(the question ends in an error")) {
        ++counts.errors;
    } else {
        ++counts.others;
    }
}

/// Whether a printer that says that it is the PPD's own product is asked its questions.
void checkProducts(const std::string& path, const PPDModelFile& PPD, Counts& counts) {
    const auto judge = QueuePrinters({}).judgeOfProduct("real", "socket://printer", PPD);
    if (!judge) {
        ++counts.withoutProduct;
        return;
    }
    for (const OrbPPDAttribute* attribute : PPD.attributesForName("Product")) {
        const auto reason = judge(withoutParentheses(attribute->value().value_or("")));
        if (reason) {
            ++counts.strangers;
            std::printf("%s: %s\n", path.c_str(), reason->c_str());
        }
    }
}

void check(const std::string& path, Counts& counts) {
    std::string reason;
    const auto PPD = PPDModelFile::fileWithContentsOfFile(path, &reason);
    const auto found = PPD ? postScriptQuestionsOfPPD(*PPD, reason) : nullptr;
    if (!found) {
        return;
    }
    checkProducts(path, *PPD, counts);
    counts.notToBeSent += static_cast<int>(
        std::ranges::count_if(found->questions, [](const OrbCSOptionQuestion& question) {
            return !PostScriptJob::operatorNoQuestionMayName(question.code).empty();
        }));
    OrbCSPostScriptQuestions questions{"", "", found->questions};
    const Answers& answers = answersTo(questions);
    std::reverse(questions.questions.begin(), questions.questions.end());
    const Answers& reversed = answersTo(questions);
    ++counts.PPDs;
    for (const auto& [option, answer] : answers) {
        ++counts.questions;
        count(answer, counts);
        if (reversed.at(option) != answer) {
            ++counts.differences;
            std::printf("%s: %s: %s, and reversed %s\n", path.c_str(), option.c_str(),
                        answer.c_str(), reversed.at(option).c_str());
        }
    }
}

/// Whether a queue with that PPD gets what its printer answers, is in step then, and is sent
/// nothing unless the user wants it.
bool checkQueue(const std::string& path) {
    using namespace Testing;
    std::string reason;
    const auto PPD = PPDModelFile::fileWithContentsOfFile(path, &reason);
    const auto products =
        PPD ? PPD->attributesForName("Product") : std::vector<const OrbPPDAttribute*>();
    if (products.empty()) {
        return false;
    }
    // What the PPD says in parentheses is a string of PostScript's.
    const PostScriptPrinter printer(
        "/product " + std::string(products.front()->value().value_or("()")) + " def", 2);
    const PrivateScheduler scheduler;
    scheduler.addQueue("real", printer.URI(), path);
    const auto sync = [&scheduler](std::vector<std::string> more) {
        std::vector<std::string> arguments = {TKPPDUPDATING_TOOL, "sync", "real", "--server",
                                              scheduler.server()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runProgram(arguments, {}).standardOutput;
    };
    (void)sync({});
    const bool isLeftAlone = printer.connectionCount() == 0;
    const std::string first = sync({"--ask-postscript"});
    const std::string second = sync({"--ask-postscript"});
    std::printf("%s\n%s%s", path.c_str(), first.c_str(), second.c_str());
    return isLeftAlone && first.starts_with("real: updated\n") &&
           second.starts_with("real: unchanged\n");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string(argv[1]) == "--queue") {
        return checkQueue(argv[2]) ? 0 : 1;
    }
    Counts counts;
    for (const std::string& path : std::vector<std::string>(argv + 1, argv + argc)) {
        check(path, counts);
    }
    std::printf(
        "%d PPDs, %d questions: %d choices, %d not known, %d errors, %d none of the choices, %d "
        "not answered; %d differ in the other order; %d are not sent; %d PPDs say no product, %d "
        "products are taken for another printer's\n",
        counts.PPDs, counts.questions, counts.choices, counts.notKnown, counts.errors,
        counts.others, counts.notAnswered, counts.differences, counts.notToBeSent,
        counts.withoutProduct, counts.strangers);
    const int wrong =
        counts.notAnswered + counts.differences + counts.notToBeSent + counts.strangers;
    return counts.questions > 0 && wrong == 0 ? 0 : 1;
}
