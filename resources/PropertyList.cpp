#include "resources/PropertyList.h"

namespace TkPPDUpdating {

const std::string* PropertyList::stringForKey(std::string_view key) const {
    const auto* const dictionary = as<Dictionary>();
    if (!dictionary) {
        return nullptr;
    }
    const auto entry = dictionary->find(key);
    return entry == dictionary->end() ? nullptr : entry->second.as<std::string>();
}

bool operator==(const PropertyList& left, const PropertyList& right) {
    return left.value == right.value;
}

}  // namespace TkPPDUpdating
