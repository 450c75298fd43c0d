#include "updaters/attributes/OrbPPDLinTablesUpdater.h"

#include <array>

#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

namespace {

constexpr std::array<std::string_view, 1> kAttributeNames = {"BPECalibrationDue"};

}  // namespace

std::span<const std::string_view> OrbPPDLinTablesUpdater::attributeNames() const {
    return kAttributeNames;
}

std::optional<OrbPPDUpdatingValues> OrbPPDLinTablesUpdater::attributesFromDeviceWithURI_context(
    std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto status = OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context);
    if (!status) {
        return std::nullopt;
    }
    const auto* linTable = status->statusValueForKey<OrbCSLinTable>(kTkCSLinTableKey);
    const bool isCalibrated =
        linTable && linTable->timestamp && linTable->timestamp->integerValue() != 0;
    return OrbPPDUpdatingValues{{std::string(kAttributeNames.front()),
                                 std::string(isCalibrated ? kTkPPDFalseValue : kTkPPDTrueValue)}};
}

std::vector<std::string> OrbPPDLinTablesUpdater::statusEntriesRead() const {
    return {std::string(kTkCSLinTableKey)};
}

}  // namespace TkPPDUpdating
