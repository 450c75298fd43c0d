#include "tools/RunFacts.h"

#include <array>
#include <cmath>
#include <ctime>

#include "core_interface/OrbCoreInterface.h"
#include "text/LibraryVersion.h"

namespace TkPPDUpdating {

std::string toolVersion() {
    return libraryVersion();
}

std::string timestampNow() {
    // From 1970 (POSIX) to the clock's reference date, 2001.
    constexpr double kReferenceDate = 978'307'200;
    const double seconds = OrbCoreInterface::clock()->secondsSinceReferenceDate();
    const auto time = static_cast<std::time_t>(std::floor(seconds + kReferenceDate));
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    std::array<char, 32> text{};
    const std::size_t length =
        std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return {text.data(), length};
}

}  // namespace TkPPDUpdating
