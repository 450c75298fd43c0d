#include "backends/cups/CUPSQueues.h"

#include <memory>
#include <utility>

#include "backends/cups/CUPSScheduler.h"
#include "sync/QueuePPDSource.h"

namespace TkPPDUpdating {

std::function<std::optional<PPDText>(const std::string& queueName, std::string& reason)>
queuePPDsOfCUPS(std::string server) {
    return queuePPDSource(std::make_shared<const CUPSScheduler>(std::move(server)));
}

}  // namespace TkPPDUpdating
