#pragma once

#include <chrono>
#include <string>

namespace TkPPDUpdating::Testing {

/// What a test may take: seconds of the processor, to which a busy machine makes no difference. The
/// environment variable TKPPDUPDATING_LONGEST_TEST has more of them for a run that tries more cases
/// than usual; anything but a positive number there means nothing.
std::chrono::seconds longestTest();

/// Ends the process with status 1 and a message that names the test when it has used so much
/// processor time; a time of 0 takes the limit away. One at a time.
void limitProcessorTime(const std::string& test, std::chrono::milliseconds time);

}  // namespace TkPPDUpdating::Testing
