#pragma once

#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// Writes the tool's lines to standard error: "tkppdupdate: PLACE: REASON", always one line each;
/// and, when a person looks on, how far it has come. Under a service the journal is told how grave
/// a line is (`Journal`).
class Diagnostics {
  public:
    Diagnostics() = delete;

    /// `place` is the file or queue that it is about; left out when empty.
    static void error(std::string_view place, std::string_view reason);

    /// "there is not enough memory", for which it takes none.
    static void outOfMemory() noexcept;

    /// The same as `error`, marked as a warning.
    static void warning(std::string_view place, std::string_view reason);

    /// The same for what is neither wrong nor doubtful.
    static void note(std::string_view place, std::string_view text);

    /// Shows one line of progress on standard error in place of the one before; nothing when that
    /// is no terminal.
    static void showProgress(std::string_view text);

    /// Takes the line of progress away, before anything else is written.
    static void clearProgress();

    /// The text with every control character, those that change the direction of a text among them,
    /// and every byte that is not UTF-8 written as "\xNN", so that a file name or a printer's text
    /// can neither begin a line nor steer a terminal nor make a line read as another.
    static std::string printable(std::string_view text);

    /// A device URI without the user name and password that may stand in it (RFC 3986: userinfo).
    static std::string withoutUserInfo(std::string_view deviceURI);

    /// What a line calls a file or queue: its name, or "" for an empty one.
    static std::string nameOfPlace(const std::string& name);

    /// What a line calls a device: by its URI, without user name and password.
    static std::string nameOfDevice(std::string_view deviceURI);
};

}  // namespace TkPPDUpdating
