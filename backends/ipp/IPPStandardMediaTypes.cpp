#include "backends/ipp/IPPStandardMediaTypes.h"

#include <algorithm>
#include <array>

namespace TkPPDUpdating {

namespace {

constexpr std::array kStandardMediaTypes = std::to_array<std::string_view>({
#include "backends/ipp/MediaTypeTable.inc"
});
static_assert(std::is_sorted(kStandardMediaTypes.begin(), kStandardMediaTypes.end()));

}  // namespace

std::span<const std::string_view> standardMediaTypes() {
    return kStandardMediaTypes;
}

bool isStandardMediaType(std::string_view text) {
    return std::binary_search(kStandardMediaTypes.begin(), kStandardMediaTypes.end(), text);
}

}  // namespace TkPPDUpdating
