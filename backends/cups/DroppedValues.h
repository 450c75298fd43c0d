#pragma once

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
        add(attribute, "value " + std::to_string(valueFromOne) + " " + std::string(reason));
    }

    const std::vector<std::string>& reasons() const { return reasons_; }
    std::vector<std::string> takeReasons() { return std::move(reasons_); }

  private:
    std::vector<std::string> reasons_;
};

}  // namespace TkPPDUpdating
