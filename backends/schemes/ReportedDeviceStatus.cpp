#include "backends/schemes/ReportedDeviceStatus.h"

namespace TkPPDUpdating {

const OrbCSStatusValue* ReportedDeviceStatus::statusValueForKey_error(std::string_view key,
                                                                      std::string* error) const {
    const auto value = values_.find(key);
    if (value != values_.end()) {
        return &value->second;
    }
    if (error) {
        *error = "the printer did not report it";
    }
    return nullptr;
}

std::vector<std::string> ReportedDeviceStatus::droppedValuesOf(const OrbCSDeviceStatus& status) {
    const auto* const reported = dynamic_cast<const ReportedDeviceStatus*>(&status);
    return reported ? reported->droppedValues() : std::vector<std::string>();
}

}  // namespace TkPPDUpdating
