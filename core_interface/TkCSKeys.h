#pragma once

#include <string_view>

/// Key texts of the communication-services library and of the core library.
///
/// Status keys name what a device status can tell; recordings of a device use the same texts.
namespace TkPPDUpdating {
///@{
inline constexpr std::string_view kTkCSDeviceAccessoriesKey = "DeviceAccessories";  ///< Status key
inline constexpr std::string_view kTkCSInstalledPensConfigurationKey = "InstalledPensConfiguration";
inline constexpr std::string_view kTkCSLinTableKey = "LinTable";
inline constexpr std::string_view kTkCSMaxSupportedResolutionKey = "MaxSupportedResolution";
inline constexpr std::string_view kTkCSRemainingPagesEstimationsKey = "RemainingPagesEstimations";
inline constexpr std::string_view kTkCSCustomMediaTypesKey = "CustomMediaTypes";
inline constexpr std::string_view kTkCSInstalledOptionsKey = "InstalledOptions";
///@}
/// The part of the pens' configuration that is no value of a PPD keyword, in entries of what was
/// told
/// (`core_interface/OrbCSPartialStatus.h`).
inline constexpr std::string_view kTkCSPensCodeNamePart = "codeName";

/// The part of the custom media types that tells those that are reported, and not whether there are
/// others, in such entries.
inline constexpr std::string_view kTkCSReportedMediaTypesPart = "reported";
///@{
/// Names of accessories in the list under `kTkCSDeviceAccessoriesKey`.
inline constexpr std::string_view kTkCSDeviceAccessoryDuplexer = "Duplexer";
inline constexpr std::string_view kTkCSDeviceAccessoryTray2 = "Tray2";
///@}
/// Request parameter (a `bool`): true asks for the status as the CUPS filter would obtain it, that
/// is without asking a user for anything and with a short time limit.
inline constexpr std::string_view kTkCSIsCUPSFilterModeKey = "IsCUPSFilterMode";

/// Request parameter (`std::chrono::milliseconds`): the caller waits for the status no longer than
/// this, while a backend's own limit of time may be shorter.
inline constexpr std::string_view kTkCSTimeLimitKey = "TimeLimit";

/// Request parameter (`std::shared_ptr<const OrbCSPostScriptQuestions>`): what the printer is to be
/// asked over PostScript (`core_interface/OrbCSOptionQuestions.h`). Without it such a backend has
/// nothing to ask.
inline constexpr std::string_view kTkCSPostScriptQuestionsKey = "PostScriptQuestions";
///@{
/// Keys into the `PPDAttributeValues` of a pens configuration; each is also the PPD main keyword.
inline constexpr std::string_view kTkCSPPDPensConfigNameKey = "ZrPensConfigName";
inline constexpr std::string_view kTkCSPPDPenDyesKey = "ZrPenDyes";
inline constexpr std::string_view kTkCSPPDPenDropVolumesKey = "ZrPenDropVolumes";
inline constexpr std::string_view kTkCSPPDPenEverydayStatusKey = "ZrPenEverydayStatus";
inline constexpr std::string_view kTkCSPPDPenFamilyIDsKey = "ZrPenFamilyIDs";
inline constexpr std::string_view kTkCSPPDPenActualDropVolumesKey = "ZrPenActualDropVolumes";
inline constexpr std::string_view kTkCSPPDPenNominalDropVolumesKey = "ZrPenNominalDropVolumes";
inline constexpr std::string_view kTkCSPPDPenBriskDropVolumesKey = "ZrPenBriskDropVolumes";
inline constexpr std::string_view kTkCSPPDPenInkSufficientKey = "ZrPenInkSufficient";
inline constexpr std::string_view kTkCSPPDPenHasPrintheadDefectKey = "ZrPenHasPrintheadDefect";
///@}
/// Parameters of `OrbCustomMediaType::customMediaTypeWithPPDParameters`: strings, but for the
/// profile, which is a `std::shared_ptr<const OrbICCProfile>`.
inline constexpr std::string_view kTkPPDCustomMediaTypeCodeNameKey = "CodeName";
inline constexpr std::string_view kTkPPDCustomMediaTypeNameKey = "Name";               ///< A text.
inline constexpr std::string_view kTkPPDCustomMediaTypeIDKey = "MediaID";              ///< A text.
inline constexpr std::string_view kTkPPDCustomMediaTypeParentIDKey = "ParentMediaID";  ///< A text.
inline constexpr std::string_view kTkPPDCustomMediaTypeICCProfileKey = "ICCProfile";   ///< Profile.

/// Parameters of `OrbICCProfile::profileWithPPDParameters`: strings.
inline constexpr std::string_view kTkPPDProfileNameKey = "ProfileName";
inline constexpr std::string_view kTkPPDProfileURLKey = "ProfileURL";               ///< A text.
inline constexpr std::string_view kTkPPDProfileQualifierVer2Key = "QualifierVer2";  ///< A text.

}  // namespace TkPPDUpdating
