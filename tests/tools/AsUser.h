#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

namespace TkPPDUpdating::Testing {

/// A user that has nothing but what a test gives him.
inline constexpr uid_t kNobody = 65534;
/// Another one.
inline constexpr uid_t kStranger = 65533;

/// Whether the tests run as root, who alone can be another user or give files away.
bool isRoot();

/// Runs the action in a process of the user `kNobody`, if the tests run as root, else as the own
/// user. Gives what it gives, or the text of a `Failure`.
std::string asUser(const std::function<std::string()>& action);

/// The same as the user of the tests, in this process.
std::string asMyself(const std::function<std::string()>& action);

/// Gives a file, or a symbolic link itself, to a user and his group of the same number.
void giveTo(uid_t user, const std::string& path);

/// The owner of a file, or of a symbolic link itself.
uid_t ownerOf(const std::string& path);

}  // namespace TkPPDUpdating::Testing
