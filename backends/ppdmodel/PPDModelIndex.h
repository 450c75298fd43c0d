#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelAttribute.h"

namespace TkPPDUpdating {

/// Finds attributes by keyword, and by keyword and option keyword, without a scan: two open hash
/// tables that hold the first attribute of each name, which links to the next one.
class PPDModelIndex {
  public:
    /// No attribute may move or change afterwards; their links are set here.
    explicit PPDModelIndex(std::vector<PPDModelAttribute>& attributes);

    /// The first attribute of that keyword, or null.
    const PPDModelAttribute* first(std::string_view keyword) const;

    /// The first attribute of that keyword and option keyword, or null. An attribute without an
    /// option keyword is not found by an empty one.
    const PPDModelAttribute* first(std::string_view keyword, std::string_view spec) const;

    /// All keywords, in no order, each once.
    std::vector<std::string_view> keywords() const;

  private:
    struct Slot {
        std::uint64_t hash = 0;
        const PPDModelAttribute* first = nullptr;
    };
    using Table = std::vector<Slot>;

    static Table tableFor(std::size_t count);
    static std::size_t slotOfKeyword(const Table& table, std::uint64_t hash,
                                     std::string_view keyword);
    static std::size_t slotOfSpec(const Table& table, std::uint64_t hash, std::string_view keyword,
                                  std::string_view spec);

    Table keywords_;
    Table specs_;
};

}  // namespace TkPPDUpdating
