#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core_interface/OrbCSStatusValue.h"
#include "manager/ITkPPDStatusReading.h"
#include "updaters/attributes/OrbPPDAttributesUpdater.h"

namespace TkPPDUpdating {

/// Writes how many pages can still be printed: the page types, their minimum and maximum counts and
/// their states as four lists that run in parallel, and the time of the update.
///
/// "ZrEPRInfoSupported" belongs to the family but never comes from the device: it makes a PPD
/// applicable and is copied from one PPD to another.
class OrbPPDEstimatedPagesUpdater : public OrbPPDAttributesUpdater, public ITkPPDStatusReading {
  public:
    static constexpr std::string_view kClassName = "OrbPPDEstimatedPagesUpdater";

    using AttributeKeyPaths = std::map<std::string_view, std::string_view>;

    std::span<const std::string_view> attributeNames() const override;

    /// Attribute keyword to the path by which its value is read from one estimation record, for
    /// example "ZrEPRStates" to "state.stringValue".
    const AttributeKeyPaths& attributeKeyPaths() const;

    /// The estimations of the device, in its order (they keep the status alive); null when there is
    /// no status or it reports none.
    static std::shared_ptr<const OrbCSRemainingPagesEstimations> estimatedPagesFromURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context);

    /// Each list has one element a record, separated by ","; a property that a record lacks is an
    /// empty element, so that the lists stay aligned. A list that is empty as a whole (no record,
    /// or one whose element is empty) is no value; "," (two records without the property) is one.
    ///
    /// With at least one list, "ZrEPRLastUpdate" is the environment variable "ZrEPRLastUpdateTime"
    /// as it stands, else the seconds since 1 January 2001 00:00:00 UTC rounded to a whole number
    /// (half to even). Without any, the result is empty, and never nothing.
    std::optional<OrbPPDUpdatingValues> attributesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context) override;

    std::vector<std::string> statusEntriesRead() const override;
};

}  // namespace TkPPDUpdating
