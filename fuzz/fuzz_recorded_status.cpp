// Recorded device statuses: any text is read or refused with a reason, and what was read is written
// so that it reads back as the same.
#include "backends/recorded/RecordedDeviceStatus.h"
#include "fuzz/FuzzTarget.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string reason;
    const auto status = RecordedDeviceStatus::statusWithJSON(textOfInput(data, size), reason);
    if (!status) {
        require(!reason.empty(), "a refused recording has a reason");
        return 0;
    }
    const std::string written = RecordedDeviceStatus::JSONForStatus(*status);
    const auto again = RecordedDeviceStatus::statusWithJSON(written, reason);
    require(again != nullptr, "what is written can be read");
    require(again->droppedValues().empty(), "what is written holds no text that is dropped");
    require(RecordedDeviceStatus::JSONForStatus(*again) == written, "it reads back as the same");
    return 0;
}
