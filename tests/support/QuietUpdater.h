#pragma once

#include <optional>
#include <string_view>

#include "manager/ITkPPDUpdater.h"

namespace TkPPDUpdating::Testing {

/// An updater of an application that applies to every PPD and changes nothing; what it shall do is
/// up to its subclasses.
class QuietUpdater : public ITkPPDUpdater {
  public:
    bool isApplicableForPPDFile(const OrbPPDFile* /*PPDFile*/) override { return true; }
    PPDText updatedPPDContentsForContents_deviceURI_context(
        const PPDText& /*contents*/, std::optional<std::string_view> /*deviceURI*/,
        OrbDictionary* /*context*/) override {
        return nullptr;
    }
    PPDText updatedPPDContentsForContents_PPDFile_context(const PPDText& /*contents*/,
                                                          const OrbPPDFile* /*PPDFile*/,
                                                          OrbDictionary* /*context*/) override {
        return nullptr;
    }
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForPPDFile_deviceURI_context(
        const OrbPPDFile* /*PPDFile*/, std::optional<std::string_view> /*deviceURI*/,
        OrbDictionary* /*context*/) override {
        return std::nullopt;
    }
};

}  // namespace TkPPDUpdating::Testing
