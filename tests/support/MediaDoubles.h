#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/schemes/PlainCustomMediaType.h"
#include "backends/schemes/PlainICCProfile.h"

namespace TkPPDUpdating::Testing {

/// Remembers what media types and profiles are asked to be made of.
class RememberingCore : public PPDModelCore {
  public:
    std::shared_ptr<const OrbCustomMediaType> customMediaTypeWithPPDParameters(
        const OrbDictionary& parameters) const override {
        mediaTypeParameters = parameters;
        return PPDModelCore::customMediaTypeWithPPDParameters(parameters);
    }
    std::shared_ptr<const OrbICCProfile> profileWithPPDParameters(
        const OrbDictionary& parameters) const override {
        profileParameters = parameters;
        ++profiles;
        return PPDModelCore::profileWithPPDParameters(parameters);
    }

    mutable OrbDictionary mediaTypeParameters;
    mutable OrbDictionary profileParameters;
    mutable int profiles = 0;
};

/// A media type that does something when it is asked for its name.
class ActingMediaType : public PlainCustomMediaType {
  public:
    explicit ActingMediaType(std::function<void()> action)
        : PlainCustomMediaType("Name", "1", "1", nullptr), action_(std::move(action)) {}

    std::optional<std::string_view> name() const override {
        action_();
        return PlainCustomMediaType::name();
    }

  private:
    std::function<void()> action_;
};

/// Equal to every profile with the same qualifier.
class ProfileOfQualifier : public PlainICCProfile {
  public:
    using PlainICCProfile::PlainICCProfile;
    bool isEqual(const OrbICCProfile& other) const override {
        return qualifierVer2() == other.qualifierVer2();
    }
};

}  // namespace TkPPDUpdating::Testing
