#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TkPPDUpdating {

/// Why values of a printer's answer were dropped: one phrase each, which begins with the
/// attribute's name and holds none of the printer's own text. Bounded, whatever the printer sends.
class DroppedValues {
  public:
    void add(std::string_view attribute, std::string_view reason) {
        constexpr std::size_t kMost = 100;
        if (reasons_.size() < kMost) {
            reasons_.push_back(std::string(attribute) + ": " + std::string(reason));
        } else if (reasons_.size() == kMost) {
            reasons_.emplace_back("more values were dropped");
        }
    }

    void add(std::string_view attribute, std::size_t valueFromOne, std::string_view reason) {
        add(attribute, valueText(valueFromOne) + std::string(reason));
    }

    /// For a reason that also fits the gap of a value that was taken out before: not told when one
    /// for that value is.
    void addUnlessTold(std::string_view attribute, std::size_t valueFromOne,
                       std::string_view reason) {
        const std::string place = std::string(attribute) + ": " + valueText(valueFromOne);
        const bool isTold =
            std::any_of(reasons_.begin(), reasons_.end(),
                        [&place](const std::string& told) { return told.starts_with(place); });
        if (!isTold) {
            add(attribute, valueFromOne, reason);
        }
    }

    const std::vector<std::string>& reasons() const { return reasons_; }
    std::vector<std::string> takeReasons() { return std::move(reasons_); }

  private:
    static std::string valueText(std::size_t valueFromOne) {
        return "value " + std::to_string(valueFromOne) + " ";
    }

    std::vector<std::string> reasons_;
};

}  // namespace TkPPDUpdating
