#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/ppdmodel/PPDModelFile.h"
#include "backends/schemes/PlainCustomMediaType.h"
#include "backends/schemes/PlainICCProfile.h"
#include "core_interface/OrbCSStatusValue.h"
#include "core_interface/OrbCoreInterface.h"
#include "ppd/PPDText.h"
#include "tests/support/TestDoubles.h"
#include "updaters/custom_media/OrbPPDCustomMediaUpdater.h"

/// Media types, profiles and a small PPD for the tests of the custom media updater.
namespace TkPPDUpdating::Testing {

using Profile = std::shared_ptr<const OrbICCProfile>;
using MediaType = std::shared_ptr<const OrbCustomMediaType>;

inline Profile profile(std::optional<std::string> URL, std::optional<std::string> qualifier,
                       std::optional<std::uint64_t> profileID = std::nullopt) {
    return std::make_shared<const PlainICCProfile>(std::move(URL), std::move(qualifier), profileID);
}

inline MediaType mediaType(std::optional<std::string> name,
                           std::optional<std::string> mediaID = "1201",
                           std::optional<std::string> parentMediaID = "3",
                           Profile ICCProfile = nullptr) {
    return std::make_shared<const PlainCustomMediaType>(
        std::move(name), std::move(mediaID), std::move(parentMediaID), std::move(ICCProfile));
}

/// A PPD with the options of custom media and one further language, and room for lines at the three
/// places that the updater writes to. Each argument is lines with their line feeds.
inline std::string PPDWith(std::string_view mediaTypes = "", std::string_view profiles = "",
                           std::string_view atEnd = "") {
    std::string text = R"(*PPD-Adobe: "4.3"
*cupsLanguages: "fr"
*ZrCustomMediaSupported: True
*OpenUI *MediaType/Media Type: PickOne
*DefaultMediaType: Plain
*MediaType Plain/Plain: "<</MediaType(Plain)>>setpagedevice"
*fr.MediaType Plain/Ordinaire: ""
)";
    text += mediaTypes;
    text += R"(*CloseUI: *MediaType
*OpenUI *ZrICCProfileId2/Profile: PickOne
*DefaultZrICCProfileId2: None
*ZrICCProfileId2 None/None: ""
)";
    text += profiles;
    text += "*CloseUI: *ZrICCProfileId2\n*ZrTail: \"end\"\n";
    text += atEnd;
    return text;
}

/// The choice of a media type whose name is ASCII and at most 79 bytes long, as it is written into
/// `PPDWith`.
inline std::string choiceLines(const std::string& choice, const std::string& name) {
    return "*MediaType " + choice + "/" + name + ": \"<</MediaType(" + choice +
           ")>>setpagedevice\"\n*fr.MediaType " + choice + "/" + name + ": \"\"\n";
}

inline std::string categoryLines(const std::string& names) {
    return "*ZrMediaTypeCategory custom/Custom: \"" + names +
           "\"\n*fr.ZrMediaTypeCategory custom/Custom: \"\"\n";
}

/// What a run of a fresh updater over the text gives.
inline PPDText updated(const std::string& text, OrbCustomMediaTypes types) {
    OrbPPDCustomMediaUpdater updater;
    return updater.contentsForContents_updatedWithCustomMediaTypes(makePPDText(text),
                                                                   std::move(types));
}

/// The same as a plain text; "(null)" stands for no text.
inline std::string updatedText(const std::string& text, OrbCustomMediaTypes types) {
    const PPDText result = updated(text, std::move(types));
    return result ? *result : "(null)";
}

/// The parsed text; the test fails when it is no PPD.
inline std::shared_ptr<const PPDModelFile> parsed(const std::string& text) {
    std::string reason;
    auto file = PPDModelFile::fileWithText(makePPDText(text), &reason);
    EXPECT_TRUE(file) << reason;
    return file;
}

/// Sets this project's core library for the test.
class CustomMediaTest : public testing::Test {
  protected:
    CustomMediaTest() { OrbCoreInterface::setCore(std::make_shared<const PPDModelCore>()); }

  private:
    CoreInterfaceScope scope_;
};

}  // namespace TkPPDUpdating::Testing
