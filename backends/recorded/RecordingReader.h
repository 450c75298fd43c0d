#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "backends/recorded/RecordedIgnoredMember.h"
#include "core_interface/OrbCSNumberOrString.h"
#include "ppd/PPDTextSafety.h"

namespace TkPPDUpdating {

/// Reads plain values out of the JSON of a recording, and keeps what is wrong with them: a value of
/// another type than the format says, and texts that would do harm in a PPD. For one recording
/// each.
class RecordingReader {
  public:
    /// Where a value stands: a member or an element of what `parent` names.
    struct Place {
        const Place* parent = nullptr;
        std::string_view key;
        std::optional<std::size_t> index;

        std::string text() const;
    };

    /// The member, or null when it is missing or null.
    static const nlohmann::json* member(const nlohmann::json& object, std::string_view key);

    /// The text under the key, or nothing when it is missing, null, of another type or harmful as a
    /// text of that kind.
    std::optional<std::string> textMember(const nlohmann::json& object, std::string_view key,
                                          const Place& parent, PrinterText kind);
    /// The same for the URL of a profile, whose path is what will stand in the PPD.
    std::optional<std::string> URLMember(const nlohmann::json& object, std::string_view key,
                                         const Place& parent);
    std::optional<OrbCSNumberOrString> numberMember(const nlohmann::json& object,
                                                    std::string_view key, const Place& parent);
    std::optional<std::uint64_t> profileIDMember(const nlohmann::json& object, std::string_view key,
                                                 const Place& parent);
    /// False when it is missing or null.
    bool booleanMember(const nlohmann::json& object, std::string_view key, const Place& parent);

    /// A number in the one form that it has however it was written: 1200, 1200.0 and 1.2e3 are
    /// equal.
    static OrbCSNumberOrString number(const nlohmann::json& value);

    bool isObject(const nlohmann::json& value, const Place& place);
    bool isArray(const nlohmann::json& value, const Place& place);

    /// Keeps the members of an object that are none of these: the first hundred of a recording.
    void noteOtherMembers(const nlohmann::json& object, const Place& place,
                          std::span<const std::string_view> members);
    const std::vector<RecordedIgnoredMember>& ignoredMembers() const { return ignoredMembers_; }

    /// Whether the text may stand in a PPD as one of that kind; the reason is kept when it may not.
    bool isAccepted(PrinterText kind, std::string_view text, const Place& place);

    void wrongType(const nlohmann::json& value, const Place& place, std::string_view expected);

    /// The first value of a wrong type with its place, one phrase; empty when there is none.
    const std::string& error() const { return error_; }

    std::size_t countOfDroppedTexts() const { return countOfDroppedTexts_; }

    /// Why texts were left out, with their places: at most a hundred phrases, then a last one that
    /// counts the others.
    std::vector<std::string> droppedValues() const;

  private:
    void drop(const Place& place, const std::string& reason);

    std::string error_;
    std::vector<std::string> droppedValues_;
    std::size_t countOfDroppedTexts_ = 0;
    std::vector<RecordedIgnoredMember> ignoredMembers_;
};

}  // namespace TkPPDUpdating
