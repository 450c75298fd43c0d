#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>

namespace TkPPDUpdating {

/// Why a process of `user` must not run code from the file at this path, which is absolute and has
/// no symbolic link in it: one phrase that says what mends it. Nothing when it may.
///
/// It may when the file is a regular one, when it and every folder above it belong to root or to
/// the user, and when nobody else may write to them. A group is somebody else but for root's own; a
/// folder in which only owners may remove (the sticky bit) is no danger to what stands in it.
std::optional<std::string> reasonNotToTrust(const std::filesystem::path& path, uid_t user);

}  // namespace TkPPDUpdating
