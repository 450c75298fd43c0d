#pragma once

#include <string_view>

/// What the block of custom media types in a PPD is made of.
namespace TkPPDUpdating {

inline constexpr std::string_view kMediaType = "MediaType";
inline constexpr std::string_view kCUPSICCProfile = "cupsICCProfile";
/// The option of the profiles, and the key in a media type's properties.
inline constexpr std::string_view kZrICCProfileId2 = "ZrICCProfileId2";
inline constexpr std::string_view kZrChoiceProperties = "ZrChoiceProperties";
inline constexpr std::string_view kMediaIDKey = "MediaID";
inline constexpr std::string_view kParentMediaIDKey = "ParentMediaID";
inline constexpr std::string_view kZrMediaTypeCategory = "ZrMediaTypeCategory";
inline constexpr std::string_view kCategory = "custom";
inline constexpr std::string_view kCategoryText = "Custom";

/// A choice's name: this and its number.
inline constexpr std::string_view kChoiceNamePrefix = "custom";
/// A choice's code.
inline constexpr std::string_view kChoiceValueFormat = "<</MediaType(%@)>>setpagedevice";
/// The option keyword of a choice's properties: this and its name.
inline constexpr std::string_view kMediaTypePrefix = "MediaType.";
/// The option keyword of a profile: colour model and media type, the first two qualifiers, stay
/// empty; its own qualifier follows.
inline constexpr std::string_view kEmptyQualifiers = "..";

}  // namespace TkPPDUpdating
