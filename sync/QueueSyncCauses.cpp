#include "sync/QueueSyncCauses.h"

namespace TkPPDUpdating {

const QueueSyncCause& queueSyncCauseForError(OrbCSError::Cause cause) {
    switch (cause) {
        case OrbCSError::Cause::malformedURI:
            return queueSyncCause("bad-uri");
        case OrbCSError::Cause::noBackend:
            return queueSyncCause("no-backend");
        case OrbCSError::Cause::unreadableRecording:
            return queueSyncCause("bad-recording");
        case OrbCSError::Cause::unknownHost:
            return queueSyncCause("unknown-host");
        case OrbCSError::Cause::noConnection:
            return queueSyncCause("refused");
        case OrbCSError::Cause::timeout:
            return queueSyncCause("timeout");
        case OrbCSError::Cause::accessDenied:
            return queueSyncCause("access-denied");
        case OrbCSError::Cause::deviceError:
            return queueSyncCause("printer-error");
        case OrbCSError::Cause::brokenAnswer:
            return queueSyncCause("broken-answer");
        case OrbCSError::Cause::notIPP:
            return queueSyncCause("not-ipp");
        case OrbCSError::Cause::notAPrinter:
            return queueSyncCause("not-a-printer");
        case OrbCSError::Cause::anotherPrinter:
            return queueSyncCause("another-printer");
        case OrbCSError::Cause::cancelled:
            return queueSyncCause("interrupted");
        case OrbCSError::Cause::unknown:
            break;
    }
    return queueSyncCause("no-status");
}

}  // namespace TkPPDUpdating
