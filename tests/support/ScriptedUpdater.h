#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string_view>

#include "manager/ITkPPDUpdater.h"

namespace TkPPDUpdating::Testing {

/// What a scripted updater does. Unset: it applies, changes nothing and has no values.
struct UpdaterScript {
    std::function<bool(const OrbPPDFile*)> isApplicable;
    std::function<PPDText(const PPDText&, std::optional<std::string_view>, OrbDictionary*)>
        updateFromDevice;
    std::function<PPDText(const PPDText&, const OrbPPDFile*, OrbDictionary*)> updateFromPPD;
    std::function<std::optional<OrbPPDUpdatingValues>(
        const OrbPPDFile*, std::optional<std::string_view>, OrbDictionary*)>
        values;

    int instancesMade = 0;
    int instancesAlive = 0;
    int timesAskedIfApplicable = 0;
    int timesRun = 0;
};

/// An updater class for each letter, which does what the test writes into its script.
template <char Letter>
class ScriptedUpdater : public ITkPPDUpdater {
  public:
    static constexpr char kNameCharacters[] = {'S', 'c', 'r', 'i', 'p', 't', 'e', 'd', Letter};
    static constexpr std::string_view kClassName =
        std::string_view(kNameCharacters, sizeof kNameCharacters);

    inline static UpdaterScript script;

    ScriptedUpdater() {
        ++script.instancesMade;
        ++script.instancesAlive;
    }
    ScriptedUpdater(const ScriptedUpdater&) = delete;
    ScriptedUpdater& operator=(const ScriptedUpdater&) = delete;
    ~ScriptedUpdater() override { --script.instancesAlive; }

    bool isApplicableForPPDFile(const OrbPPDFile* PPDFile) override {
        ++script.timesAskedIfApplicable;
        ++timesAsked_;
        return !script.isApplicable || script.isApplicable(PPDFile);
    }
    PPDText updatedPPDContentsForContents_deviceURI_context(
        const PPDText& contents, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override {
        checkedRun();
        return script.updateFromDevice ? script.updateFromDevice(contents, deviceURI, context)
                                       : nullptr;
    }
    PPDText updatedPPDContentsForContents_PPDFile_context(const PPDText& contents,
                                                          const OrbPPDFile* PPDFile,
                                                          OrbDictionary* context) override {
        checkedRun();
        return script.updateFromPPD ? script.updateFromPPD(contents, PPDFile, context) : nullptr;
    }
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForPPDFile_deviceURI_context(
        const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override {
        checkedRun();
        return script.values ? script.values(PPDFile, deviceURI, context) : std::nullopt;
    }

  private:
    /// Every run must be on an instance of its own that was asked once whether it applies.
    void checkedRun() {
        ++script.timesRun;
        EXPECT_EQ(timesAsked_, 1);
        EXPECT_FALSE(hasRun_);
        hasRun_ = true;
    }

    int timesAsked_ = 0;
    bool hasRun_ = false;
};

/// Has the four operations of an updater but does not declare that it is one.
class NotAnUpdater {
  public:
    static constexpr std::string_view kClassName = "NotAnUpdater";

    bool isApplicableForPPDFile(const OrbPPDFile*) { return true; }
    PPDText updatedPPDContentsForContents_deviceURI_context(const PPDText& contents,
                                                            std::optional<std::string_view>,
                                                            OrbDictionary*) {
        return contents;
    }
    PPDText updatedPPDContentsForContents_PPDFile_context(const PPDText& contents,
                                                          const OrbPPDFile*, OrbDictionary*) {
        return contents;
    }
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForPPDFile_deviceURI_context(
        const OrbPPDFile*, std::optional<std::string_view>, OrbDictionary*) {
        return std::nullopt;
    }
};

}  // namespace TkPPDUpdating::Testing
