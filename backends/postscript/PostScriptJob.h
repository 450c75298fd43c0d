#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core_interface/OrbCSOptionQuestions.h"

namespace TkPPDUpdating {

/// What marks the answers of one connection as its own. The printer is sent the two halves apart
/// and prints them as one, the second first, so that neither a printer that sends back what it is
/// sent nor another job's answer has the mark in it.
struct PostScriptMark {
    /// Hexadecimal digits, the same number of each.
    std::string first;
    std::string second;

    /// Of random digits that nobody can foresee. Raises `std::system_error` when the system has
    /// none.
    static PostScriptMark random();

    /// What stands at the start of a marker line.
    std::string text() const { return second + first; }
};

/// The text of the job in which a PPD's questions are asked. It prints nothing on paper.
///
/// The code of a question is sent as a hexadecimal string and run between a save and a restore in a
/// stopped context, and operand and dictionary stacks are cleared behind it. So one that breaks, be
/// it in the middle of a string or procedure, takes nothing else along, nor can a byte of it be
/// mistaken for a command of the connection. Operators that print a page, end the job, change the
/// printer beyond it or read the connection stop a question that calls them. They could still be
/// taken out of the dictionary of all operators, so that a question with their names in it is not
/// to be sent (`operatorNoQuestionMayName`). Before and behind what it prints stands a marker line:
/// the mark, a label and "begin", or "end" and the name of the PostScript error that ended it,
/// "none" when none did.
class PostScriptJob {
  public:
    PostScriptJob(const OrbCSPostScriptQuestions& questions, PostScriptMark mark);

    /// Goes first; an interpreter prints a marker line with the label `kReady` for it.
    std::string beginning() const;
    static constexpr std::string_view kReady = "ready";

    /// Asks for the name of the product. Goes before the questions, if at all; the label of its
    /// marker lines is `kProduct`.
    std::string productQuestion() const;
    static constexpr std::string_view kProduct = "product";

    /// The question of that index.
    std::string question(std::size_t index) const;

    /// The first of the operators above whose name stands in the code as a word, whatever it is
    /// there for; empty when none does.
    static std::string_view operatorNoQuestionMayName(std::string_view code);

    /// The label of its marker lines.
    static std::string label(std::size_t index) { return std::to_string(index); }

    /// Goes last.
    std::string end() const { return questions_.end; }

  private:
    /// The code as it is sent, with a label for its marker lines.
    std::string asked(std::string_view label, std::string_view code) const;

    const OrbCSPostScriptQuestions& questions_;
    PostScriptMark mark_;
};

}  // namespace TkPPDUpdating
