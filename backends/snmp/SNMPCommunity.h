#pragma once

#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// The community that printers are asked with (RFC 3584, section 5.2): in versions 1 and 2c of SNMP
/// it stands where a password would, unencrypted. It is never shown.
class SNMPCommunity {
  public:
    static constexpr std::string_view kUsual = "public";

    SNMPCommunity() = delete;

    /// What the scheduler asks printers with: the first "Community" of snmp.conf in its server root
    /// (`CUPS_SERVERROOT` of the environment, /etc/cups when unset or empty); `kUsual` when there
    /// is no such file or line. When there is a file that cannot be read, it is `kUsual` and a
    /// phrase that says so goes to `warning`.
    static std::string configured(std::string& warning);

    /// The community in a text of the format of snmp.conf (snmp.conf(5) of CUPS): directives of one
    /// line, whose names' case does not count, with comments behind "#", which "\#" is none.
    static std::string communityInConfiguration(std::string_view text);
};

}  // namespace TkPPDUpdating
