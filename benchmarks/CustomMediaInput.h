#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "backends/schemes/PlainCustomMediaType.h"
#include "backends/schemes/PlainICCProfile.h"
#include "core_interface/OrbCSStatusValue.h"
#include "ppd/PPDText.h"

/// PPDs and media types of any size, for measuring the custom media updater.
namespace TkPPDUpdating::Measuring {

enum class Profiles { kNone, kOneEach, kOneForAll };

/// A PPD with that many languages and constraint lines, and the options of custom media.
inline PPDText PPDWithLanguages(std::size_t languages, std::size_t constraints) {
    std::string text = "*PPD-Adobe: \"4.3\"\n*ZrCustomMediaSupported: True\n";
    if (languages > 0) {
        text += "*cupsLanguages: \"";
        for (std::size_t i = 0; i < languages; ++i) {
            text += i > 0 ? " " : "";
            text += {static_cast<char>('a' + i / 26), static_cast<char>('a' + i % 26)};
        }
        text += "\"\n";
    }
    for (const char* option : {"MediaType", "ZrICCProfileId2"}) {
        const std::string name = option;
        text += "*OpenUI *" + name + "/" + name + ": PickOne\n*" + name + " Plain/Plain: \"\"\n";
        text += "*CloseUI: *" + name + "\n";
    }
    for (std::size_t i = 0; i < constraints; ++i) {
        text += "*UIConstraints: *PageSize Size" + std::to_string(i) + " *MediaType Plain\n";
    }
    return makePPDText(std::move(text));
}

inline OrbCustomMediaTypes mediaTypes(std::size_t count, Profiles profiles) {
    const auto profile = [](const std::string& number) {
        return std::make_shared<const PlainICCProfile>(
            "file:///usr/share/color/icc/printer/profile" + number + ".icc", "q" + number,
            std::nullopt);
    };
    const auto shared = profile("0");
    OrbCustomMediaTypes types;
    for (std::size_t i = 1; i <= count; ++i) {
        const std::string number = std::to_string(i);
        types.push_back(std::make_shared<const PlainCustomMediaType>(
            "Glossy Brochure " + number, number, "3",
            profiles == Profiles::kNone      ? nullptr
            : profiles == Profiles::kOneEach ? profile(number)
                                             : shared));
    }
    return types;
}

}  // namespace TkPPDUpdating::Measuring
