#pragma once

namespace TkPPDUpdating {

/// How a run of the tool ended, as its callers see it.
enum class ExitStatus {
    done = 0,
    /// The operation gave no result, or its result could not be written.
    noResult = 1,
    usage = 2,
    /// The device gave no status although the caller requires one.
    deviceSilent = 3,
};

}  // namespace TkPPDUpdating
