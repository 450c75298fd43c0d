#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace TkPPDUpdating {

/// diff(1) of the system: a package of Debian's that is essential, so that every machine has it.
class DiffProgram {
  public:
    /// `path` is absolute: neither the environment nor the working directory has a part in what is
    /// run.
    explicit DiffProgram(std::string path = "/usr/bin/diff") : path_(std::move(path)) {}

    /// The unified diff of two texts (POSIX, diff, "Diff -u or -U Output Format") with three lines
    /// of context, from its first hunk on; empty when they are equal. Bytes are bytes, in any
    /// locale. The texts go there and back in files without a name.
    ///
    /// Raises a `Failure` about the file called `name` when the program is not there or fails.
    std::string hunks(const std::string& name, std::string_view before,
                      std::string_view after) const;

  private:
    std::string path_;
};

}  // namespace TkPPDUpdating
