#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core_interface/OrbCustomMediaType.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// A custom media type as a plain value; what PPDs and device backends make.
class TKPPDUPDATING_PUBLIC PlainCustomMediaType : public OrbCustomMediaType {
  public:
    /// Of these members; each may be nothing.
    PlainCustomMediaType(std::optional<std::string> name, std::optional<std::string> mediaID,
                         std::optional<std::string> parentMediaID,
                         std::shared_ptr<const OrbICCProfile> ICCProfile)
        : name_(std::move(name)),
          mediaID_(std::move(mediaID)),
          parentMediaID_(std::move(parentMediaID)),
          ICCProfile_(std::move(ICCProfile)) {}

    std::optional<std::string_view> name() const override { return name_; }
    std::optional<std::string_view> mediaID() const override { return mediaID_; }
    std::optional<std::string_view> parentMediaID() const override { return parentMediaID_; }
    std::shared_ptr<const OrbICCProfile> ICCProfile() const override { return ICCProfile_; }

  private:
    std::optional<std::string> name_;
    std::optional<std::string> mediaID_;
    std::optional<std::string> parentMediaID_;
    std::shared_ptr<const OrbICCProfile> ICCProfile_;
};

}  // namespace TkPPDUpdating
