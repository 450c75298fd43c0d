#include "backends/snmp/SNMPRows.h"

#include <utility>

namespace TkPPDUpdating {

void SNMPRows::set(const SNMPColumn& column, const Row& row, Cell cell) {
    if (row.size() == column.rowNumbers) {
        size_ += columns_[column.name].emplace(row, std::move(cell)).second ? 1 : 0;
    }
}

std::vector<SNMPRows::Row> SNMPRows::rowsOf(std::initializer_list<SNMPColumn> columns) const {
    std::set<Row> rows;
    for (const SNMPColumn& column : columns) {
        const auto cells = columns_.find(column.name);
        if (cells != columns_.end()) {
            for (const auto& [row, cell] : cells->second) {
                rows.insert(row);
            }
        }
    }
    return {rows.begin(), rows.end()};
}

std::optional<std::int64_t> SNMPRows::number(const SNMPColumn& column, const Row& row) const {
    const Cell* found = cell(column, row);
    const auto* number = found ? std::get_if<std::int64_t>(found) : nullptr;
    return number ? std::optional(*number) : std::nullopt;
}

std::optional<std::string_view> SNMPRows::text(const SNMPColumn& column, const Row& row) const {
    const Cell* found = cell(column, row);
    const auto* text = found ? std::get_if<std::string>(found) : nullptr;
    if (!text) {
        return std::nullopt;
    }
    constexpr std::string_view kPadding("\0 ", 2);
    const std::string_view whole = *text;
    return whole.substr(0, whole.find_last_not_of(kPadding) + 1);
}

const SNMPRows::Cell* SNMPRows::cell(const SNMPColumn& column, const Row& row) const {
    const auto cells = columns_.find(column.name);
    if (cells == columns_.end()) {
        return nullptr;
    }
    const auto found = cells->second.find(row);
    return found == cells->second.end() ? nullptr : &found->second;
}

}  // namespace TkPPDUpdating
