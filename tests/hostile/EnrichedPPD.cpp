#include "tests/hostile/EnrichedPPD.h"

namespace TkPPDUpdating::Testing {

namespace {

constexpr std::string_view kAttributes =
    "*ZrCustomMediaSupported: True\n"
    "*ZrMaxSupportedResolution: 600\n"
    "*BPECalibrationDue: Unknown\n"
    "*ZrEPRInfoSupported: True\n"
    "*ZrPensConfigName: Unknown\n"
    "*ZrPenDyes: C,M,Y,K\n"
    "*ZrPenFamilyIDs: 1,1,1,1\n"
    "*ZrPenInkSufficient: 1,1,1,1\n"
    "*ZrDeviceCapabilities: Unknown\n"
    "*ZrAutoDuplexCapability: Unknown\n"
    "*OpenUI *ZrLowerTrayInstalled/Lower Tray: Boolean\n"
    "*DefaultZrLowerTrayInstalled: False\n"
    "*ZrLowerTrayInstalled False/Not Installed: \"\"\n"
    "*ZrLowerTrayInstalled True/Installed: \"\"\n"
    "*CloseUI: *ZrLowerTrayInstalled\n"
    "*OpenUI *ZrICCProfileId2/Color Profile: PickOne\n"
    "*DefaultZrICCProfileId2: Auto\n"
    "*ZrICCProfileId2 Auto/Chosen by Media Type: \"\"\n"
    "*ZrICCProfileId2 sRGB/sRGB: \"\"\n"
    "*CloseUI: *ZrICCProfileId2\n";
constexpr std::string_view kMediaType =
    "*OpenUI *MediaType/Media Type: PickOne\n"
    "*DefaultMediaType: Plain\n"
    "*MediaType Plain/Plain: \"<</MediaType(Plain)>>setpagedevice\"\n"
    "*CloseUI: *MediaType\n";

}  // namespace

std::string enrichedPPD(std::string_view text) {
    const bool hasMediaType = text.find("\n*CloseUI: *MediaType") != std::string_view::npos;
    const bool hasCarriageReturns = text.find("\r\n") != std::string_view::npos;
    std::string added = text.ends_with('\n') ? "" : "\n";
    added += hasMediaType ? std::string_view() : kMediaType;
    added += kAttributes;
    std::string made(text);
    for (const char character : added) {
        made += character == '\n' && hasCarriageReturns ? "\r\n" : std::string(1, character);
    }
    return made;
}

}  // namespace TkPPDUpdating::Testing
