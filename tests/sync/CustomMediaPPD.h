#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "backends/schemes/PlainCustomMediaType.h"
#include "core_interface/OrbCSStatusValue.h"
#include "tests/support/ParsedPPD.h"

/// PPDs that custom media can be written into.
namespace TkPPDUpdating::Testing {

/// What stands in a PPD before a custom media block was ever written.
inline std::string customMediaLines(std::string_view defaultType = "Plain",
                                    std::string_view defaultProfile = "Auto") {
    return "*ZrCustomMediaSupported: True\n"
           "*OpenUI *MediaType/Media Type: PickOne\n"
           "*DefaultMediaType: " +
           std::string(defaultType) +
           "\n"
           "*MediaType Plain/Plain Paper: \"\"\n"
           "*MediaType Photo/Photo Paper: \"\"\n"
           "*CloseUI: *MediaType\n"
           "*OpenUI *ZrICCProfileId2/Profile: PickOne\n"
           "*DefaultZrICCProfileId2: " +
           std::string(defaultProfile) +
           "\n"
           "*ZrICCProfileId2 Auto/Automatic: \"\"\n"
           "*CloseUI: *ZrICCProfileId2\n";
}

inline std::shared_ptr<const OrbCustomMediaType> mediaType(
    const std::string& name, const std::string& mediaID,
    std::shared_ptr<const OrbICCProfile> profile = nullptr) {
    return std::make_shared<const PlainCustomMediaType>(name, mediaID, std::nullopt,
                                                        std::move(profile));
}

/// The names of types, "-" for none.
inline std::vector<std::string> namesOf(const OrbCustomMediaTypes& types) {
    std::vector<std::string> names;
    for (const auto& type : types) {
        names.emplace_back(type ? type->name().value_or("") : "-");
    }
    return names;
}

}  // namespace TkPPDUpdating::Testing
