#include "backends/snmp/SNMPStatusValues.h"

#include <cstdint>
#include <initializer_list>
#include <variant>

#include "core_interface/OrbCSNumberOrString.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDTextSafety.h"

namespace TkPPDUpdating {

namespace {

/// A PPD line has at most 255 bytes: asterisk, keyword, colon, space, value.
constexpr std::size_t kLongestLine = 255;
constexpr std::size_t kBesideKeywordAndValue = 3;

/// The row's numbers as they stand in an object identifier.
std::string dottedNumbers(const SNMPRows::Row& row) {
    std::string text;
    for (const std::uint32_t number : row) {
        text += '.' + std::to_string(number);
    }
    return text;
}

}  // namespace

void SNMPStatusValues::addAccessory(std::string_view name, bool isInstalled) {
    auto& value =
        values_.try_emplace(std::string(kTkCSDeviceAccessoriesKey), OrbCSDeviceAccessories())
            .first->second;
    std::get<OrbCSDeviceAccessories>(value).push_back({std::string(name), isInstalled});
    told_.insert(OrbCSPartialStatus::entryForPart(kTkCSDeviceAccessoriesKey, name));
}

void SNMPStatusValues::setHighestResolution(std::int64_t dotsPerInch) {
    values_.insert_or_assign(std::string(kTkCSMaxSupportedResolutionKey),
                             OrbCSNumberOrString(dotsPerInch));
    told_.emplace(kTkCSMaxSupportedResolutionKey);
}

bool SNMPStatusValues::setPensValue(std::string_view keyword, std::string value) {
    if (keyword.size() + value.size() + kBesideKeywordAndValue > kLongestLine) {
        dropped_.add(keyword, "would make a line of more than 255 bytes");
        return false;
    }
    if (const auto reason = reasonPrinterTextIsRefused(PrinterText::unquotedValue, value)) {
        dropped_.add(keyword, *reason);
        return false;
    }
    auto& pens =
        values_
            .try_emplace(std::string(kTkCSInstalledPensConfigurationKey), OrbCSPensConfiguration())
            .first->second;
    std::get<OrbCSPensConfiguration>(pens).PPDAttributeValues.insert_or_assign(std::string(keyword),
                                                                               std::move(value));
    told_.insert(OrbCSPartialStatus::entryForPart(kTkCSInstalledPensConfigurationKey, keyword));
    return true;
}

void SNMPStatusValues::addInstalledOptions(SNMPOptionAnswers answers) {
    reasonsOfOptions_ = std::move(answers.reasons);
    if (!answers.installed.empty()) {
        values_.insert_or_assign(std::string(kTkCSInstalledOptionsKey),
                                 std::move(answers.installed));
        told_.emplace(kTkCSInstalledOptionsKey);
    }
}

void SNMPStatusValues::drop(const SNMPColumn& column, const SNMPRows::Row& row,
                            std::string_view reason) {
    dropped_.add(std::string(column.name) + dottedNumbers(row), reason);
}

void SNMPStatusValues::addSources(const std::string& entry, const SNMPRows& rows,
                                  const SNMPColumn& column) {
    constexpr std::size_t kMost = 200;
    constexpr std::size_t kLongestValue = 80;
    for (const SNMPRows::Row& row : rows.rowsOf({column})) {
        if (sources_.size() == kMost) {
            return;
        }
        const auto number = rows.number(column, row);
        const std::string value =
            number ? std::to_string(*number)
                   : std::string(rows.text(column, row).value_or("").substr(0, kLongestValue));
        sources_.push_back({entry, std::string(column.name) + dottedNumbers(row), value});
    }
}

bool SNMPStatusValues::areWhole(const SNMPRows& rows, std::initializer_list<SNMPColumn> columns) {
    bool areAll = true;
    for (const SNMPColumn& column : columns) {
        if (!rows.isWhole(column)) {
            dropped_.add(column.name, "was not read to its end, so nothing is made of it");
            areAll = false;
        }
    }
    return areAll;
}

std::optional<std::string> SNMPStatusValues::text(const SNMPRows& rows, const SNMPColumn& column,
                                                  const SNMPRows::Row& row) {
    const auto cell = rows.text(column, row);
    if (!cell || cell->empty()) {
        return std::nullopt;
    }
    if (cell->size() > kLongestText) {
        drop(column, row, "is longer than " + std::to_string(kLongestText) + " bytes");
        return std::nullopt;
    }
    if (const auto reason = reasonPrinterTextIsRefused(PrinterText::unquotedValue, *cell)) {
        drop(column, row, *reason);
        return std::nullopt;
    }
    return std::string(*cell);
}

std::shared_ptr<const ReportedDeviceStatus> SNMPStatusValues::takeStatus(
    OrbCSPrinterIdentity identity) {
    auto reasons = dropped_.takeReasons();
    reasons.insert(reasons.end(), reasonsOfOptions_.begin(), reasonsOfOptions_.end());
    return std::make_shared<const ReportedDeviceStatus>(std::move(values_), std::move(reasons),
                                                        std::move(told_), std::move(sources_),
                                                        std::move(identity));
}

}  // namespace TkPPDUpdating
