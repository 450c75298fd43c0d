#include "tools/NextStep.h"

#include <string_view>

namespace TkPPDUpdating {

namespace {

/// Whether what answers has nothing at that path (RFC 8011, appendix B; HTTP).
bool isNotFound(std::string_view reason) {
    return reason.ends_with("client-error-not-found") || reason.ends_with("HTTP status 404");
}

}  // namespace

std::string nextStepAfter(const OrbCSError& error) {
    switch (error.cause) {
        case OrbCSError::Cause::unknownHost:
            return "; check how it is written, or write the address";
        case OrbCSError::Cause::noConnection:
        case OrbCSError::Cause::timeout:
            return "; check that the printer is on, and its address";
        case OrbCSError::Cause::deviceError:
            return isNotFound(error.reason) ? "; check the path, as a rule it is /ipp/print" : "";
        case OrbCSError::Cause::notIPP:
            return "; check the port, for IPP it is 631";
        default:
            return {};
    }
}

std::string nextStepAfter(const QueueSyncCause* cause) {
    if (cause && *cause == queueSyncCause("no-queue")) {
        return kQueuesAreListed;
    }
    return cause && *cause == queueSyncCause("no-scheduler")
               ? "; start it, or name another one with --server"
               : "";
}

}  // namespace TkPPDUpdating
