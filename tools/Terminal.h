#pragma once

#include <string_view>

namespace TkPPDUpdating {

/// What the tool does only when a person looks on: colour and progress.
class Terminal {
  public:
    Terminal() = delete;

    static bool isBehindStandardOutput();

    /// Whether standard output may be coloured: it is a terminal that is not "dumb", and `NO_COLOR`
    /// is not set to a non-empty value (https://no-color.org).
    static bool standardOutputTakesColour();

    /// Shows one line of progress on standard error in place of the one before; nothing when that
    /// is no terminal.
    static void showProgress(std::string_view text);

    /// Takes the line of progress away, before anything else is written.
    static void clearProgress();
};

}  // namespace TkPPDUpdating
