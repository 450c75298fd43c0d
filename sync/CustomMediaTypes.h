#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "backends/ppdmodel/PPDModelFile.h"

namespace TkPPDUpdating {

/// The custom media types of a PPD, that is the choices of "MediaType" that the line
/// "*ZrMediaTypeCategory custom" names, to be compared with those of another state of it.
class CustomMediaTypes {
  public:
    /// Keeps nothing of the PPD but copies.
    explicit CustomMediaTypes(const PPDModelFile& PPD);

    /// Whether the choice is one of them.
    bool contains(std::string_view choice) const { return choices_.contains(choice); }

    /// How many types came, went, or stayed with another text, parent or profile. A type is the
    /// same one when its media ID is, or its text where it has no ID, whatever its choice.
    struct Difference {
        std::size_t added = 0;
        std::size_t removed = 0;
        std::size_t changed = 0;
    };
    static Difference between(const CustomMediaTypes& before, const CustomMediaTypes& after);

  private:
    std::set<std::string, std::less<>> choices_;
    /// What is known of the types of each identity; sorted, one element a type.
    std::map<std::string, std::multiset<std::string>> types_;
};

}  // namespace TkPPDUpdating
