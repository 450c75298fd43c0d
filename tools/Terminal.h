#pragma once

namespace TkPPDUpdating {

/// What the tool does only when a person looks on.
class Terminal {
  public:
    Terminal() = delete;

    static bool isBehindStandardOutput();

    /// Whether standard output may be coloured: it is a terminal that is not "dumb", and `NO_COLOR`
    /// is not set to a non-empty value (https://no-color.org).
    static bool standardOutputTakesColour();
};

}  // namespace TkPPDUpdating
