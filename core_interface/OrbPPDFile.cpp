#include "core_interface/OrbPPDFile.h"

namespace TkPPDUpdating {

const OrbPPDAttribute* OrbPPDFile::firstAttributeForName(const OrbPPDFile* PPDFile,
                                                         std::string_view name) {
    if (!PPDFile) {
        return nullptr;
    }
    const auto attributes = PPDFile->attributesForName(name);
    return attributes.empty() ? nullptr : attributes.front();
}

}  // namespace TkPPDUpdating
