#pragma once

#include <chrono>
#include <string>

namespace TkPPDUpdating::Testing {

/// Ends the process with status 1 and a message that names the test when it has used so much
/// processor time; a time of 0 takes the limit away. One at a time.
void limitProcessorTime(const std::string& test, std::chrono::milliseconds time);

}  // namespace TkPPDUpdating::Testing
