#include "backends/snmp/SNMPTableWalk.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>
#include <variant>
#include <vector>

namespace TkPPDUpdating {

namespace {

/// RFC 3416, section 3: values of "error-status".
enum ErrorStatus { noError = 0, tooBig = 1, noSuchName = 2 };

/// Enough for the tables of nearly all printers in one answer, which stays small.
constexpr int kRepetitions = 10;

SNMPName nameOf(std::string_view dottedNumbers) {
    SNMPName name;
    const char* at = dottedNumbers.data();
    const char* const end = at + dottedNumbers.size();
    while (at < end) {
        std::uint32_t number = 0;
        at = std::from_chars(at, end, number).ptr + 1;
        name.push_back(number);
    }
    return name;
}

bool isBelow(const SNMPName& name, const SNMPName& root) {
    return name.size() > root.size() && std::equal(root.begin(), root.end(), name.begin());
}

}  // namespace

/// How far a column has been read.
struct SNMPTableWalk::Position {
    const SNMPColumn* column = nullptr;
    SNMPName root;
    SNMPName last;
    bool isAtEnd = false;
};

bool SNMPTableWalk::ask(const std::vector<Position>& positions, int repetitions,
                        const Limits& limits, SNMPAnswer& answer) {
    SNMPQuestion question;
    question.repetitions = repetitions;
    for (const Position& position : positions) {
        question.names.push_back(position.last);
    }
    session_.begin(std::move(question));
    for (int attempt = 0; attempt < limits.tries; ++attempt) {
        const auto until =
            std::min(limits.deadline, std::chrono::steady_clock::now() + limits.oneTry);
        end_ = session_.ask(until, limits.isCancelled, answer);
        if (end_ != SNMPSession::End::timeOver) {
            break;
        }
    }
    hasAnswered_ = hasAnswered_ || end_ == SNMPSession::End::answered;
    return end_ == SNMPSession::End::answered;
}

void SNMPTableWalk::take(const SNMPVariable& variable, Position& position, SNMPRows& rows) {
    if (position.isAtEnd) {
        return;  // What follows in the same answer is of the next column.
    }
    if (variable.isEnd || !isBelow(variable.name, position.root)) {
        position.isAtEnd = true;
        return;
    }
    if (variable.name <= position.last) {
        rows.setCutShort(*position.column);
        position.isAtEnd = true;
        return;
    }
    position.last = variable.name;
    ++cells_;
    const SNMPRows::Row row(
        variable.name.begin() + static_cast<std::ptrdiff_t>(position.root.size()),
        variable.name.end());
    if (const auto* number = std::get_if<std::int64_t>(&variable.value)) {
        rows.set(*position.column, row, *number);
    } else if (const auto* text = std::get_if<std::string>(&variable.value)) {
        rows.set(*position.column, row, *text);
    }
}

std::vector<SNMPTableWalk::Position> SNMPTableWalk::startsOf(std::span<const SNMPColumn> columns) {
    std::vector<Position> positions;
    for (const SNMPColumn& column : columns) {
        const SNMPName root = nameOf(column.identifier);
        positions.push_back({&column, root, root, false});
    }
    return positions;
}

bool SNMPTableWalk::read(std::span<const SNMPColumn> columns, const Limits& limits,
                         SNMPRows& rows) {
    std::vector<Position> positions = startsOf(columns);
    int repetitions = session_.version() == SNMPVersion::two ? kRepetitions : 1;
    while (!positions.empty()) {
        SNMPAnswer answer;
        if (!ask(positions, repetitions, limits, answer)) {
            return false;
        }
        if (answer.errorStatus == noSuchName && answer.errorIndex >= 1 &&
            static_cast<std::size_t>(answer.errorIndex) <= positions.size()) {
            // In version 1, nothing follows this one.
            positions.erase(positions.begin() + (answer.errorIndex - 1));
            continue;
        }
        if (answer.errorStatus == tooBig && repetitions > 1) {
            repetitions = 1;
            continue;
        }
        if (answer.errorStatus != noError || answer.variables.empty()) {
            for (const Position& position : positions) {
                rows.setCutShort(*position.column);
            }
            return true;
        }
        for (std::size_t index = 0; index < answer.variables.size(); ++index) {
            take(answer.variables[index], positions[index % positions.size()], rows);
        }
        if (cells_ > limits.cells) {
            hasTooMany_ = true;
            return false;
        }
        std::erase_if(positions, [](const Position& position) { return position.isAtEnd; });
    }
    return true;
}

}  // namespace TkPPDUpdating
