#include "core_interface/OrbCSPartialStatus.h"

namespace TkPPDUpdating {

namespace {

constexpr char kPartSeparator = '.';

}  // namespace

std::optional<OrbCSToldEntries> OrbCSPartialStatus::toldEntriesOf(const OrbCSDeviceStatus& status) {
    const auto* const partial = dynamic_cast<const OrbCSPartialStatus*>(&status);
    return partial ? partial->toldEntries() : std::nullopt;
}

std::string OrbCSPartialStatus::entryForPart(std::string_view key, std::string_view part) {
    std::string entry;
    entry.reserve(key.size() + 1 + part.size());
    entry += key;
    entry += kPartSeparator;
    entry += part;
    return entry;
}

bool OrbCSPartialStatus::isTold(const std::optional<OrbCSToldEntries>& told,
                                std::string_view entry) {
    return !told || told->contains(entry) ||
           told->contains(entry.substr(0, entry.find(kPartSeparator)));
}

}  // namespace TkPPDUpdating
