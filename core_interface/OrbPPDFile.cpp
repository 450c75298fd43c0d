#include "core_interface/OrbPPDFile.h"

#include "core_interface/OrbCoreInterface.h"

namespace TkPPDUpdating {

std::shared_ptr<const OrbPPDFile> OrbPPDFile::PPDFileWithContentsOfFile(const std::string& path) {
    const auto core = OrbCoreInterface::core();
    return core ? core->PPDFileWithContentsOfFile(path) : nullptr;
}

std::shared_ptr<const OrbPPDFile> OrbPPDFile::PPDFileWithContents(const PPDText& contents,
                                                                  const std::string& path) {
    const auto core = OrbCoreInterface::core();
    return core ? core->PPDFileWithContents(contents, path) : nullptr;
}

std::shared_ptr<const OrbPPDFile> OrbPPDFile::PPDFileForQueueWithName(
    const std::string& queueName) {
    const auto core = OrbCoreInterface::core();
    return core ? core->PPDFileForQueueWithName(queueName) : nullptr;
}

const OrbPPDAttribute* OrbPPDFile::firstAttributeForName(const OrbPPDFile* PPDFile,
                                                         std::string_view name) {
    if (!PPDFile) {
        return nullptr;
    }
    const auto attributes = PPDFile->attributesForName(name);
    return attributes.empty() ? nullptr : attributes.front();
}

}  // namespace TkPPDUpdating
