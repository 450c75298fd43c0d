#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/postscript/PostScriptJob.h"

namespace TkPPDUpdating {

/// What came back between the two marker lines of a question.
struct PostScriptAnswer {
    /// Without the printer's messages ("%%[ status: idle ]%%"), and without white space and quotes
    /// around it.
    std::string text;
    /// Whether the question ended without a PostScript error.
    bool isWhole = true;
    /// The name of the error, when it is one of the language's own.
    std::string error;
};

/// The answer with that label in what a printer sent, which may be anything; nothing when its
/// marker lines are not, or not yet, there. For `PostScriptJob::kReady` that is the one line.
std::optional<PostScriptAnswer> postScriptAnswer(std::string_view received,
                                                 const PostScriptMark& mark,
                                                 std::string_view label);

/// Why the answer is none of the choices: one phrase, which holds none of the printer's text.
/// Nothing when it is one.
std::optional<std::string> reasonForNoChoice(const PostScriptAnswer& answer,
                                             const std::vector<std::string>& choices);

}  // namespace TkPPDUpdating
