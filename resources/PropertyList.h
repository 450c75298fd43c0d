#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace TkPPDUpdating {

/// One value of a property list; a dictionary or an array holds further ones. A plain record that
/// owns all it holds. Texts are UTF-8.
struct PropertyList {
    using Dictionary = std::map<std::string, PropertyList, std::less<>>;
    using Array = std::vector<PropertyList>;
    using Date = std::chrono::sys_seconds;
    struct Data {
        std::vector<std::uint8_t> bytes;
        friend bool operator==(const Data&, const Data&) = default;
    };

    std::variant<Dictionary, Array, std::string, std::int64_t, double, bool, Date, Data> value;

    /// The value as that type, or null when it is of another.
    template <typename Value>
    const Value* as() const {
        return std::get_if<Value>(&value);
    }

    /// The text under `key`; null when this is no dictionary, it has no such key, or another type
    /// stands there.
    const std::string* stringForKey(std::string_view key) const;
};

/// Equal when type and value are.
bool operator==(const PropertyList& left, const PropertyList& right);

}  // namespace TkPPDUpdating
