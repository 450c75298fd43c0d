#pragma once

#include <cups/ipp.h>

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "backends/ipp/IPPAnswer.h"
#include "backends/schemes/ReportedDeviceStatus.h"

namespace TkPPDUpdating {

/// What the attributes of an IPP printer mean as a device status: one table.
class IPPStatusMapping {
  public:
    /// One row: an attribute that is asked for, the standard that defines it, and what it means
    /// when one of its values is dropped.
    struct Attribute {
        const char* name;
        std::string_view standard;
        std::string_view meaningOfDrop;
    };

    /// A status key with the attributes that it is read from, and how. `read` adds to `values` what
    /// the printer reported and leaves them alone otherwise, and to `told` the entries of it that
    /// the answer tells: not one of which a value was dropped that could have made it another.
    struct Row {
        std::string_view statusKey;
        /// The part of what stands under the key (`core_interface/OrbCSPartialStatus.h`); empty for
        /// all of it.
        std::string_view part;
        std::span<const Attribute> attributes;
        void (*read)(IPPAnswer& answer, ReportedDeviceStatus::Values& values,
                     OrbCSToldEntries& told);
    };

    /// So much is enough for an explanation (bytes).
    static constexpr std::size_t kLongestSource = 500;

    IPPStatusMapping() = delete;

    static std::span<const Row> rows();

    /// The names of all attributes of the table, for "requested-attributes". They are asked for one
    /// by one, since "all" leaves out "media-col-database" (PWG 5100.7).
    static std::vector<const char*> requestedAttributes();

    /// The names of those that say which printer it is, which are asked for besides: its make and
    /// model (RFC 8011, section 5.4.9) and its IEEE 1284 device ID (PWG 5107.2).
    static std::span<const char* const> identityAttributes();

    /// What it means that a value of the attribute is dropped; empty for one that is not asked for.
    static std::string_view meaningOfDrop(std::string_view attribute);

    /// The status that an answer means. What was not reported is not in it, and a bad value is
    /// dropped with its reason while the rest counts. No answer gives an empty status. The
    /// attributes of the answer are its sources, at most `kLongestSource` bytes of each.
    static std::shared_ptr<const ReportedDeviceStatus> statusForAnswer(IPPAnswer answer);
};

}  // namespace TkPPDUpdating
