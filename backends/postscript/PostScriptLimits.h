#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>

namespace TkPPDUpdating {

/// How much of a printer's time and talk is put up with.
struct PostScriptLimits {
    /// For the connection, for the first sign of an interpreter, and for each question.
    std::chrono::milliseconds questionTime = std::chrono::seconds(5);
    /// For all together.
    std::chrono::milliseconds time = std::chrono::seconds(30);
    /// The most bytes that a printer may send for one question, messages included.
    std::size_t answerBytes = 16'384;
    /// The longest question, in bytes: twice as many digits are a string that every interpreter
    /// takes (PostScript Language Reference, appendix B).
    std::size_t questionBytes = 32'767;
    /// Set by anybody at any time to end all talks early, without a status. Null for none; else it
    /// outlives the last talk.
    const std::atomic<bool>* isCancelled = nullptr;
};

}  // namespace TkPPDUpdating
