#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TkPPDUpdating {

/// Why values of a printer's answer were dropped: one phrase each, which begins with the
/// attribute's name and holds none of the printer's own text. Bounded, whatever the printer sends.
class DroppedValues {
  public:
    /// Says of an attribute what it means when one of its values is dropped ("this tray description
    /// is left out"), which is told behind the reason; empty for nothing.
    using Meaning = std::string_view (*)(std::string_view attribute);

    explicit DroppedValues(Meaning meaning = nullptr) : meaning_(meaning) {}

    void add(std::string_view attribute, std::string_view reason) {
        constexpr std::size_t kMost = 100;
        markIncomplete(attribute.substr(0, attribute.find(',')));
        if (reasons_.size() < kMost) {
            reasons_.push_back(std::string(attribute) + ": " + std::string(reason));
        } else if (reasons_.size() == kMost) {
            reasons_.emplace_back("more values were dropped");
        }
    }

    void add(std::string_view attribute, std::size_t valueFromOne, std::string_view reason) {
        const std::string_view meaning = meaning_ ? meaning_(attribute) : std::string_view();
        add(attribute, valueText(valueFromOne) + std::string(reason) +
                           (meaning.empty() ? "" : ", ") + std::string(meaning));
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

    /// Remembers, without a reason, that values of the attribute may be missing.
    void markIncomplete(std::string_view attribute) {
        constexpr std::size_t kMost = 100;  // More than the attributes that are asked for.
        if (incomplete_.size() < kMost) {
            incomplete_.emplace(attribute);
        }
    }

    /// Whether values of one of the attributes, or members of them, were dropped.
    bool areFrom(std::initializer_list<std::string_view> attributes) const {
        return std::any_of(attributes.begin(), attributes.end(),
                           [this](std::string_view each) { return incomplete_.contains(each); });
    }

    std::vector<std::string> takeReasons() { return std::move(reasons_); }

  private:
    static std::string valueText(std::size_t valueFromOne) {
        return "value " + std::to_string(valueFromOne) + " ";
    }

    Meaning meaning_;
    std::vector<std::string> reasons_;
    std::set<std::string, std::less<>> incomplete_;
};

}  // namespace TkPPDUpdating
