#include "backends/schemes/InkSupplies.h"

#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace TkPPDUpdating {

namespace {

void addToList(std::string& list, std::string_view value) {
    list += list.empty() ? "" : ",";
    list += value;
}

/// How many supplies have each dye.
std::map<std::string, std::size_t> countsOf(const std::vector<InkDyes>& dyes) {
    std::map<std::string, std::size_t> counts;
    for (const InkDyes& each : dyes) {
        for (const std::string& dye : each) {
            ++counts[dye];
        }
    }
    return counts;
}

/// Gives the supplies of that dye alone their names, if these differ. False, and the place in
/// `nameless`, when one has none.
bool nameSuppliesWithDye(const std::string& dye, const std::vector<InkSupply>& supplies,
                         const std::vector<InkDyes>& before, std::vector<InkDyes>& dyes,
                         std::size_t& nameless) {
    std::map<std::size_t, InkDyes> names;
    std::set<InkDyes> differing;
    for (std::size_t index = 0; index < supplies.size(); ++index) {
        if (before[index] == InkDyes{dye}) {
            InkDyes name = supplies[index].ofName();
            if (name.empty()) {
                nameless = index;
                return false;
            }
            differing.insert(name);
            names.emplace(index, std::move(name));
        }
    }
    if (differing.size() == names.size()) {
        for (auto& [index, name] : names) {
            dyes[index] = std::move(name);
        }
    }
    return true;
}

}  // namespace

std::optional<bool> isInkSufficient(std::optional<std::int64_t> level) {
    constexpr std::int64_t kSomeIsLeft = -3;
    constexpr std::int64_t kUnknown = -2;
    const bool isKnown = level && *level >= kSomeIsLeft && *level != kUnknown;
    return isKnown ? std::optional(*level != 0) : std::nullopt;
}

std::optional<std::vector<InkDyes>> dyesOfInkSupplies(const std::vector<InkSupply>& supplies,
                                                      std::size_t& nameless) {
    std::vector<InkDyes> dyes;
    for (const InkSupply& supply : supplies) {
        dyes.push_back(supply.ofColour.empty() ? supply.ofName() : supply.ofColour);
        if (dyes.back().empty()) {
            nameless = dyes.size() - 1;
            return std::nullopt;
        }
    }
    const std::vector<InkDyes> before = dyes;
    for (const auto& [dye, count] : countsOf(before)) {
        if (count > 1 && !nameSuppliesWithDye(dye, supplies, before, dyes, nameless)) {
            return std::nullopt;
        }
    }
    return dyes;
}

std::string listOfInkDyes(const std::vector<InkDyes>& dyes) {
    std::string list;
    for (const InkDyes& each : dyes) {
        for (const std::string& dye : each) {
            addToList(list, dye);
        }
    }
    return list;
}

std::optional<std::string> listOfInkSufficiency(const std::vector<InkSupply>& supplies,
                                                const std::vector<InkDyes>& dyes) {
    std::string list;
    for (std::size_t index = 0; index < supplies.size(); ++index) {
        if (!supplies[index].isSufficient) {
            return std::nullopt;
        }
        for (std::size_t dye = 0; dye < dyes[index].size(); ++dye) {
            addToList(list, *supplies[index].isSufficient ? "1" : "0");
        }
    }
    return list;
}

}  // namespace TkPPDUpdating
