#pragma once

#include <string>

namespace TkPPDUpdating {

/// Why the communication-services library gave no status of a device: for programs, and for people.
struct OrbCSError {
    enum class Cause {
        /// The backend does not tell.
        unknown,
        /// No device URI, or one that cannot be taken apart or names nothing that can be asked.
        malformedURI,
        /// No backend for the scheme of the URI.
        noBackend,
        /// A recording that is not there, cannot be read or is malformed.
        unreadableRecording,
        /// The name of the device's host cannot be resolved.
        unknownHost,
        /// The device takes no connection: it is switched off, or does not listen there.
        noConnection,
        /// The limit of time was over before there was a whole answer.
        timeout,
        /// The device wants a password, or another kind of connection.
        accessDenied,
        /// The device answers, with an error.
        deviceError,
        /// The answer ends too early or is longer than any that can be meant.
        brokenAnswer,
        /// What answers does not speak the protocol of the scheme.
        notIPP,
        /// What answers is no printer, or stands for several.
        notAPrinter,
        /// What answers is another printer than the one that is meant.
        anotherPrinter,
        /// The caller no longer waits.
        cancelled,
    };
    /// @enum Cause What went wrong.
    Cause cause = Cause::unknown;  ///< For programs; the rest is for people.
    /// One phrase without the device URI.
    std::string reason;
};

}  // namespace TkPPDUpdating
