#pragma once

#include <cstddef>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"
#include "ppd/PPDTextSafety.h"

namespace TkPPDUpdating {

/// Turns the JSON value of a recording into status values. For one recording each.
class RecordingReader {
  public:
    /// The values that are reported. Worth nothing when there is an error.
    ReportedDeviceStatus::Values values(const nlohmann::json& recording);

    /// What the recording says that it tells, its member "Told"; nothing when it tells everything.
    /// To be asked after the values.
    std::optional<OrbCSToldEntries> told(const nlohmann::json& recording);

    /// The first value of a wrong type with its place, one phrase; empty when there is none.
    const std::string& error() const { return error_; }

    /// Why texts were left out, with their places: at most a hundred phrases, then a last one that
    /// counts the others.
    std::vector<std::string> droppedValues() const;

  private:
    /// Where a value stands: a member or an element of what `parent` names.
    struct Place {
        const Place* parent = nullptr;
        std::string_view key;
        std::optional<std::size_t> index;

        std::string text() const;
    };

    using OptionalValue = std::optional<OrbCSStatusValue>;

    OptionalValue accessories(const nlohmann::json& value, const Place& place);
    OptionalValue pensConfiguration(const nlohmann::json& value, const Place& place);
    OptionalValue linTable(const nlohmann::json& value, const Place& place);
    OptionalValue resolution(const nlohmann::json& value, const Place& place);
    OptionalValue estimations(const nlohmann::json& value, const Place& place);
    OptionalValue mediaTypes(const nlohmann::json& value, const Place& place);

    OrbCSDeviceAccessory accessory(const nlohmann::json& value, const Place& place);
    OrbCSRemainingPagesEstimation estimation(const nlohmann::json& value, const Place& place);
    std::shared_ptr<const OrbCustomMediaType> mediaType(const nlohmann::json& value,
                                                        const Place& place);
    std::shared_ptr<const OrbICCProfile> profile(const nlohmann::json& object, const Place& parent);

    std::optional<std::string> textMember(const nlohmann::json& object, std::string_view key,
                                          const Place& parent, PrinterText kind);
    std::optional<std::string> URLMember(const nlohmann::json& object, std::string_view key,
                                         const Place& parent);
    std::optional<OrbCSNumberOrString> numberMember(const nlohmann::json& object,
                                                    std::string_view key, const Place& parent);
    std::optional<std::uint64_t> profileIDMember(const nlohmann::json& object, std::string_view key,
                                                 const Place& parent);
    bool booleanMember(const nlohmann::json& object, std::string_view key, const Place& parent);

    template <typename Element>
    std::vector<Element> elements(const nlohmann::json& value, const Place& place,
                                  Element (RecordingReader::*read)(const nlohmann::json&,
                                                                   const Place&));

    bool isObject(const nlohmann::json& value, const Place& place);
    bool isAccepted(PrinterText kind, std::string_view text, const Place& place);
    void drop(const Place& place, const std::string& reason);
    void wrongType(const nlohmann::json& value, const Place& place, std::string_view expected);

    std::string error_;
    std::vector<std::string> droppedValues_;
    std::size_t countOfDroppedTexts_ = 0;
};

}  // namespace TkPPDUpdating
