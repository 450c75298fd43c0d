#include "text/LibraryVersion.h"

namespace TkPPDUpdating {

const char* libraryVersion() noexcept {
    return TKPPDUPDATING_VERSION;
}

}  // namespace TkPPDUpdating
