#include "core_interface/OrbPPDFile.h"

#include "core_interface/OrbCoreInterface.h"

namespace TkPPDUpdating {

std::shared_ptr<const OrbPPDFile> OrbPPDFile::PPDFileWithContentsOfFile(const std::string& path) {
    const auto core = OrbCoreInterface::core();
    return core ? core->PPDFileWithContentsOfFile(path) : nullptr;
}

std::shared_ptr<const OrbPPDFile> OrbPPDFile::PPDFileForQueueWithName(
    const std::string& queueName) {
    const auto core = OrbCoreInterface::core();
    return core ? core->PPDFileForQueueWithName(queueName) : nullptr;
}

}  // namespace TkPPDUpdating
