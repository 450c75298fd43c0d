#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "text/TkPPDUpdatingPublic.h"

/// Texts of the PPD format (PPD specification 4.3, CUPS PPD extensions) and of the suite's own
/// attributes. "%@" in a format stands for one argument; `PPDFormatted` fills it in.
namespace TkPPDUpdating {
///@{
inline constexpr std::string_view kTkPPDDefaultChoiceNameFormat = "Default%@";  ///< Text of PPDs.
inline constexpr std::string_view kTkPPDDefaultChoiceFormatPrefix = "\n*Default%@:";
inline constexpr std::string_view kTkPPDDefaultChoiceFormatString = "*Default%@: %@";
inline constexpr std::string_view kTkPPDChoiceFormatPrefix = "\n*%@ %@/";
inline constexpr std::string_view kTkPPDTrueValue = "True";
inline constexpr std::string_view kTkPPDFalseValue = "False";
inline constexpr std::string_view kTkPPDUnknownValue = "Unknown";
inline constexpr std::string_view kTkPPDNewLine = "\n";
inline constexpr std::string_view kTkPPDQuote = "\"";
inline constexpr std::string_view kTkPPDEnd = "*End";
inline constexpr std::string_view kTkPPDColon = ":";
inline constexpr std::string_view kTkPPDAsterisk = "*";
inline constexpr std::string_view kTkPPDSlash = "/";
inline constexpr std::string_view kTkPPDSpace = " ";
inline constexpr std::string_view kTkPPDEmptyString;
inline constexpr std::string_view kTkPPDCUPSVersionAttributeName = "cupsVersion";
inline constexpr std::string_view kTkPPDCUPSLanguagesAttributeName = "cupsLanguages";
///@}
/// The largest signed machine word: as a line index it means that nothing was found, as an insert
/// location the end of the PPD.
inline constexpr std::size_t kTkPPDProcessorPPDEndLocation = PTRDIFF_MAX;

/// The format with each "%@" replaced by the next of the arguments, which are taken as they stand.
/// A "%@" beyond the last argument is left out.
TKPPDUPDATING_PUBLIC std::string PPDFormatted(std::string_view format,
                                              std::initializer_list<std::string_view> arguments);

/// The same, appended to `text`.
TKPPDUPDATING_PUBLIC void appendPPDFormatted(std::string_view format,
                                             std::initializer_list<std::string_view> arguments,
                                             std::string& text);

}  // namespace TkPPDUpdating
