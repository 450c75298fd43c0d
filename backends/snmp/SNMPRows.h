#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "backends/snmp/PrinterMIB.h"

namespace TkPPDUpdating {

/// The cells of a printer's tables as they came over SNMP: by column, and by the numbers of the
/// row. A plain container, which a test fills without a network.
class SNMPRows {
  public:
    /// The numbers that stand behind the column's identifier.
    using Row = std::vector<std::uint32_t>;
    using Cell = std::variant<std::int64_t, std::string>;

    /// Keeps the cell; one of the same place stays as it is. A row that cannot be one of the
    /// column's, by how many numbers it has, is left out.
    void set(const SNMPColumn& column, const Row& row, Cell cell);

    /// Says that the printer has more of the column than was read.
    void setCutShort(const SNMPColumn& column) { cutShort_.insert(column.name); }

    /// Whether the column was read to its end.
    bool isWhole(const SNMPColumn& column) const { return !cutShort_.contains(column.name); }

    /// The rows that have a cell in one of the columns, in order.
    std::vector<Row> rowsOf(std::initializer_list<SNMPColumn> columns) const;

    /// The cell's number; nothing when the cell is missing or holds another syntax.
    std::optional<std::int64_t> number(const SNMPColumn& column, const Row& row) const;

    /// The cell's text, as bytes, without the zero bytes and spaces behind it, which come of
    /// buffers of a fixed size. Nothing when the cell is missing or holds another syntax.
    std::optional<std::string_view> text(const SNMPColumn& column, const Row& row) const;

    /// How many cells there are.
    std::size_t size() const { return size_; }

  private:
    const Cell* cell(const SNMPColumn& column, const Row& row) const;

    std::map<std::string_view, std::map<Row, Cell>, std::less<>> columns_;
    std::set<std::string_view, std::less<>> cutShort_;
    std::size_t size_ = 0;
};

}  // namespace TkPPDUpdating
