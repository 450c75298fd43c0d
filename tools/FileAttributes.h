#pragma once

#include <string>

struct stat;

namespace TkPPDUpdating {

/// Gives the file behind the descriptor `to`, new and still empty, what the file behind `from` has
/// beside its content: owner, group, permissions, POSIX access list and extended attributes
/// (xattr(7); an SELinux label is one). `status` is what fstat(2) says of `from`.
///
/// Left out is what makes more of a file than its content: the bits that set user and group, file
/// capabilities, and the integrity measurements of a content that is replaced. An access list that
/// the new file inherited from its folder is taken away where the old one has none.
///
/// Raises a `Failure` about `path` when something cannot be kept.
void keepFileAttributes(const std::string& path, int from, const struct stat& status, int to);

}  // namespace TkPPDUpdating
