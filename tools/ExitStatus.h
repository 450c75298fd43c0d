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
    /// Some queue is not in step with its printer: busy, unreachable or unsupported.
    notInStep = 4,
    /// A dry run that is asked to tell so: something would change.
    wouldChange = 10,
};

}  // namespace TkPPDUpdating
