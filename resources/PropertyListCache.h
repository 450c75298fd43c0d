#pragma once

#include <memory>
#include <string>

#include "resources/PropertyList.h"

namespace TkPPDUpdating {

/// The property list that stands in the regular file at `path`, as
/// `PropertyListReader::propertyListWithContentsOfFile` reads it; null when it cannot be read.
///
/// The last one is kept for the process and read anew when the file is another one or has changed
/// (device, inode, size, times of change). May be called from several threads.
std::shared_ptr<const PropertyList> sharedPropertyListWithContentsOfFile(const std::string& path);

}  // namespace TkPPDUpdating
