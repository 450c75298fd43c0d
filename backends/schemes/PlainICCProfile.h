#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core_interface/OrbICCProfile.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// An ICC profile as a plain value; what PPDs and device backends make.
class TKPPDUPDATING_PUBLIC PlainICCProfile : public OrbICCProfile {
  public:
    /// Of these members; each may be nothing.
    PlainICCProfile(std::optional<std::string> URL, std::optional<std::string> qualifierVer2,
                    std::optional<std::uint64_t> profileID)
        : URL_(std::move(URL)), qualifierVer2_(std::move(qualifierVer2)), profileID_(profileID) {}

    std::optional<std::string_view> URL() const override { return URL_; }
    std::optional<std::string_view> qualifierVer2() const override { return qualifierVer2_; }
    std::optional<std::uint64_t> profileID() const override { return profileID_; }

  private:
    std::optional<std::string> URL_;
    std::optional<std::string> qualifierVer2_;
    std::optional<std::uint64_t> profileID_;
};

}  // namespace TkPPDUpdating
