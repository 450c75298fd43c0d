#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <span>
#include <vector>

#include "backends/snmp/PrinterMIB.h"
#include "backends/snmp/SNMPRows.h"
#include "backends/snmp/SNMPSession.h"

namespace TkPPDUpdating {

/// Reads tables of one printer, some columns at once, until each is at its end.
class SNMPTableWalk {
  public:
    struct Limits {
        /// For all tables together.
        std::chrono::steady_clock::time_point deadline;
        /// How long one request is waited for before it is sent again.
        std::chrono::milliseconds oneTry{0};
        int tries = 1;
        /// The most cells of all tables together, those included that are not kept.
        std::size_t cells = 0;
        /// May be null.
        const std::atomic<bool>* isCancelled = nullptr;
    };

    explicit SNMPTableWalk(SNMPSession& session) : session_(session) {}

    /// How the last question ended.
    SNMPSession::End end() const { return end_; }

    /// Whether the printer has answered any question.
    bool hasAnswered() const { return hasAnswered_; }

    /// Adds the cells of the columns to `rows`. False when the printer stopped answering (`end`
    /// tells how) or has more cells than the limit (`hasTooMany`).
    ///
    /// A column that the printer does not have is empty. One that cannot be read to its end,
    /// because its rows do not come in order or the printer answers with an error, is called cut
    /// short, and the others go on.
    bool read(std::span<const SNMPColumn> columns, const Limits& limits, SNMPRows& rows);

    bool hasTooMany() const { return hasTooMany_; }

  private:
    struct Position;

    static std::vector<Position> startsOf(std::span<const SNMPColumn> columns);
    bool ask(const std::vector<Position>& positions, int repetitions, const Limits& limits,
             SNMPAnswer& answer);
    void take(const SNMPVariable& variable, Position& position, SNMPRows& rows);

    SNMPSession& session_;
    SNMPSession::End end_ = SNMPSession::End::answered;
    std::size_t cells_ = 0;
    bool hasAnswered_ = false;
    bool hasTooMany_ = false;
};

}  // namespace TkPPDUpdating
