#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "manager/ITkPPDLineOwnership.h"
#include "manager/ITkPPDStatusReading.h"
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

/// One that says what it reads.
class ReadingUpdater : public QuietUpdater, public ITkPPDStatusReading {
  public:
    explicit ReadingUpdater(std::vector<std::string> entries) : entries_(std::move(entries)) {}
    std::vector<std::string> statusEntriesRead() const override { return entries_; }

  private:
    std::vector<std::string> entries_;
};

/// One that says which lines are its own.
class OwningUpdater : public QuietUpdater, public ITkPPDLineOwnership {
  public:
    explicit OwningUpdater(OrbPPDOwnedLines owned) : owned_(std::move(owned)) {}

    OrbPPDOwnedLines ownedLines(std::span<const PPDStatement> /*before*/,
                                std::span<const PPDStatement> /*after*/) override {
        return owned_;
    }

  private:
    OrbPPDOwnedLines owned_;
};

/// One that adds a line with the device URI, and says neither what it reads nor what it owns.
class OwnUpdater : public QuietUpdater {
  public:
    static constexpr std::string_view kClassName = "OwnUpdater";

    PPDText updatedPPDContentsForContents_deviceURI_context(
        const PPDText& contents, std::optional<std::string_view> deviceURI,
        OrbDictionary* /*context*/) override {
        return makePPDText(*contents + "*Own: " + std::string(deviceURI.value_or("")) + "\n");
    }
};

}  // namespace TkPPDUpdating::Testing
