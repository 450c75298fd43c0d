#pragma once

#include <algorithm>
#include <memory>

#include "core_interface/OrbCSStatusValue.h"

namespace TkPPDUpdating::Testing {

/// Whether two custom media types answer the same; null is equal to null only.
inline bool answerTheSame(const std::shared_ptr<const OrbCustomMediaType>& left,
                          const std::shared_ptr<const OrbCustomMediaType>& right) {
    if (!left || !right) {
        return left == right;
    }
    const auto leftProfile = left->ICCProfile();
    const auto rightProfile = right->ICCProfile();
    const bool sameProfile = leftProfile && rightProfile ? leftProfile->isEqual(*rightProfile)
                                                         : leftProfile == rightProfile;
    return sameProfile && left->name() == right->name() && left->mediaID() == right->mediaID() &&
           left->parentMediaID() == right->parentMediaID();
}

/// Whether two status values are equal, custom media types by what they answer.
inline bool answerTheSame(const OrbCSStatusValue& left, const OrbCSStatusValue& right) {
    const auto* leftTypes = std::get_if<OrbCustomMediaTypes>(&left);
    const auto* rightTypes = std::get_if<OrbCustomMediaTypes>(&right);
    if (!leftTypes || !rightTypes) {
        return left == right;
    }
    return std::equal(leftTypes->begin(), leftTypes->end(), rightTypes->begin(), rightTypes->end(),
                      [](const auto& a, const auto& b) { return answerTheSame(a, b); });
}

}  // namespace TkPPDUpdating::Testing
