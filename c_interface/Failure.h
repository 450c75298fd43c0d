#pragma once

#include <exception>
#include <string>
#include <utility>

#include "c_interface/TkPPDUpdating.h"

namespace TkPPDUpdating {

/// Ends a call of the C interface: its result, and one line that says what was wrong.
class CFailure : public std::exception {
  public:
    CFailure(TkPPDUpdatingResult result, std::string message)
        : result_(result), message_(std::move(message)) {}

    TkPPDUpdatingResult result() const { return result_; }
    const char* what() const noexcept override { return message_.c_str(); }

  private:
    TkPPDUpdatingResult result_;
    std::string message_;
};

}  // namespace TkPPDUpdating
