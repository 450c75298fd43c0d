#pragma once

#include <cstddef>
#include <string>

#include "ppd/PPDText.h"

namespace TkPPDUpdating {

/// No PPD is larger than this: the largest known ones take less than a hundredth of it.
inline constexpr std::size_t kLargestPPDTextFile = std::size_t{64} * 1024 * 1024;

/// The whole regular file at `path` as text. Null when it cannot be read, is no regular file, is
/// larger than `largestSize` bytes, or is not valid UTF-8; the reason then goes to `*reason` when
/// that is not null: one phrase without the path, for a byte that is not UTF-8 with its offset
/// (from 0).
PPDText PPDTextWithContentsOfFile(const std::string& path, std::string* reason = nullptr,
                                  std::size_t largestSize = kLargestPPDTextFile);

/// The same of a file that is already open, read on from where it stands; it stays open.
PPDText PPDTextWithContentsOfDescriptor(int descriptor, std::string* reason = nullptr,
                                        std::size_t largestSize = kLargestPPDTextFile);

}  // namespace TkPPDUpdating
