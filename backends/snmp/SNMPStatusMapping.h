#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "backends/snmp/PrinterMIB.h"
#include "backends/snmp/SNMPRows.h"
#include "backends/snmp/SNMPStatusValues.h"

namespace TkPPDUpdating {

/// What the tables of a printer mean as a device status: one table.
class SNMPStatusMapping {
  public:
    /// A status key, or with an accessory's name the part of it, with the columns that it is read
    /// from, and how. `read` adds to `values` what they tell.
    struct MappingRow {
        std::string_view statusKey;
        std::string_view accessory;
        std::span<const SNMPColumn> columns;
        void (*read)(const SNMPRows& rows, SNMPStatusValues& values);
    };

    SNMPStatusMapping() = delete;

    static std::span<const MappingRow> rows();

    /// The columns to ask for, those of one standard table in one list, so that they are walked
    /// together.
    static std::span<const std::span<const SNMPColumn>> tables();

    /// The columns that say which printer it is, to be asked for besides.
    static std::span<const SNMPColumn> identityColumns();

    /// The status that the rows mean, with what other objects say about installable options. What
    /// they do not tell is not told. Null, with the cause in `error`, when no printer answered
    /// (there is none of the rows that are asked for) or more than one did.
    static std::shared_ptr<const ReportedDeviceStatus> statusForRows(
        const SNMPRows& rows, OrbCSError& error, SNMPOptionAnswers options = {});
};

}  // namespace TkPPDUpdating
