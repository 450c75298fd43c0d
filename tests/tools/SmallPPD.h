#pragma once

#include <string_view>

/// A PPD on which exactly one updater has something to do, and recordings of its printer.
namespace TkPPDUpdating::Testing {

inline constexpr std::string_view kSmallPPD =
    "*PPD-Adobe: \"4.3\"\n"
    "*OpenUI *ZrAutoDuplexerInstalled/Duplexer: Boolean\n"
    "*DefaultZrAutoDuplexerInstalled: False\n"
    "*ZrAutoDuplexerInstalled True/Installed: \"\"\n"
    "*ZrAutoDuplexerInstalled False/Not Installed: \"\"\n"
    "*CloseUI: *ZrAutoDuplexerInstalled\n";

inline constexpr std::string_view kSmallPPDWithDuplexer =
    "*PPD-Adobe: \"4.3\"\n"
    "*OpenUI *ZrAutoDuplexerInstalled/Duplexer: Boolean\n"
    "*DefaultZrAutoDuplexerInstalled: True\n"
    "*ZrAutoDuplexerInstalled True/Installed: \"\"\n"
    "*ZrAutoDuplexerInstalled False/Not Installed: \"\"\n"
    "*CloseUI: *ZrAutoDuplexerInstalled\n";

/// Nothing in it depends on a printer.
inline constexpr std::string_view kPlainPPD = "*PPD-Adobe: \"4.3\"\n*ModelName: \"Plain\"\n";

inline constexpr std::string_view kDuplexerIn =
    R"({"DeviceAccessories": [{"name": "Duplexer", "isInstalled": true}]})";
inline constexpr std::string_view kDuplexerOut =
    R"({"DeviceAccessories": [{"name": "Duplexer", "isInstalled": false}]})";

}  // namespace TkPPDUpdating::Testing
