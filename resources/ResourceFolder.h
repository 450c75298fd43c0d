#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Finds the library's own data folder, which holds its resources. The calling program's working
/// directory, arguments and environment have no part in it.
///
/// The folder is looked for from the object file that the library's code runs from: the shared
/// library, or, with the static library, the program or shared library that it is linked into. In
/// this order:
/// 1. the installed data folder, by the way that leads there from an installed library, or from an
///    installed program when the object is one, so that a relocated installation finds its own;
/// 2. the `resources` folder of the sources, when the object lies in the build tree (that of the
///    whole project, where the library is a subproject);
/// 3. the data folder of the prefix that was configured, for the static library, whose place tells
///    nothing when it is linked into a program that is installed elsewhere.
class TKPPDUPDATING_PUBLIC ResourceFolder {
  public:
    ResourceFolder() = delete;

    /// The data folder, or nothing when there is none. The folder set by `setPath` comes before
    /// any other.
    static std::optional<std::string> path();

    /// Sets the folder for this process, for an application that ships the data with itself and
    /// for tests; nothing takes the setting back. To be called before the first manager operation
    /// and not while one runs.
    static void setPath(std::optional<std::string> path);

    /// The data folder for a library whose code runs from the object file at that absolute path;
    /// an empty path is an object whose place is not known.
    static std::optional<std::string> pathForObjectAt(std::string_view objectPath);
};

}  // namespace TkPPDUpdating
