#pragma once

#include <mutex>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/ppdmodel/PPDModelAttributes.h"
#include "ppd/PPDTextIndex.h"

namespace TkPPDUpdating {

/// The groups of a PPD (OpenGroup, OpenSubGroup, PPD specification 4.3, section 5.4), read when
/// somebody first asks for one. It may be asked by several threads.
class PPDModelGroups {
  public:
    /// The attributes must outlive it.
    explicit PPDModelGroups(const PPDModelAttributes& attributes) : attributes_(attributes) {}

    /// The keyword of the innermost group that is open at the line; empty outside of all. A view
    /// into the attributes.
    std::string_view nameAt(PPDTextIndex::Line line) const;

  private:
    /// From which line on, up to the next entry's, which group is open.
    using Entry = std::pair<PPDTextIndex::Line, std::string_view>;

    std::vector<Entry> entries() const;

    const PPDModelAttributes& attributes_;
    mutable std::mutex mutex_;
    mutable std::optional<std::vector<Entry>> entries_;
};

}  // namespace TkPPDUpdating
