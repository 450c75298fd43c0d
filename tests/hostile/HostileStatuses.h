#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <random>
#include <string>
#include <vector>

#include "tests/backends/ipp/IPPTestMessage.h"

namespace TkPPDUpdating::Testing {

/// Makes what a hostile printer could say, the same for the same seed: texts of parts that mean
/// something in a PPD, to libcups, or to an updater.
class HostileStatuses {
  public:
    explicit HostileStatuses(unsigned seed) : random_(seed) {}

    /// A recording, valid JSON.
    std::string recording();

    /// The answer of an IPP printer.
    IPPTestMessage answer();

  private:
    std::size_t below(std::size_t limit);
    bool chance(std::size_t oneIn) { return below(oneIn) == 0; }

    template <typename List>
    const auto& oneOf(const List& list) {
        return list[below(std::size(list))];
    }

    std::string text();
    std::string harmlessText();
    std::string qualifier();
    std::string URL();
    std::string keywordOr(const char* keyword);
    ipp_tag_t textSyntax();
    std::string supply();

    nlohmann::json accessories();
    nlohmann::json pens();
    nlohmann::json estimations();
    nlohmann::json mediaTypes();

    void addTexts(IPPTestMessage& answer, const char* name);
    void addMedia(IPPTestMessage& answer);

    std::mt19937 random_;
};

}  // namespace TkPPDUpdating::Testing
