#pragma once

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <mutex>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "backends/ppdmodel/PPDModelAttribute.h"
#include "backends/ppdmodel/PPDModelReader.h"
#include "core_interface/OrbPPDAttribute.h"
#include "ppd/PPDLineKeys.h"
#include "ppd/PPDTextIndex.h"

namespace TkPPDUpdating {

/// The attributes of a PPD, by keyword and option keyword, both compared exactly. A line is read
/// when it is first asked for, and then kept, so that what is handed out stays valid. It may be
/// asked by several threads.
class PPDModelAttributes {
  public:
    using Line = PPDTextIndex::Line;

    explicit PPDModelAttributes(std::shared_ptr<const PPDTextIndex> index);

    /// The first attribute of that keyword, or null.
    const PPDModelAttribute* first(std::string_view keyword) const;
    /// The first attribute of that keyword and option keyword, or null. An attribute without an
    /// option keyword is not found by an empty one.
    const PPDModelAttribute* first(std::string_view keyword, std::string_view spec) const;
    /// The same, added to what the core interface hands out.
    void appendAll(std::string_view keyword, std::vector<const OrbPPDAttribute*>& all) const;
    /// All of them, in file order.
    std::vector<const PPDModelAttribute*> all(std::string_view keyword) const;
    std::vector<const PPDModelAttribute*> all(std::string_view keyword,
                                              std::string_view spec) const;

    /// Every attribute, in file order; read when first asked for.
    std::span<const PPDModelAttribute> inFileOrder() const;

    /// The keywords of all attributes, in no order; one may come several times.
    std::vector<std::string_view> keywords() const;

  private:
    const PPDModelAttribute* attributeAt(Line line) const;
    template <typename Visit>
    void visit(std::string_view keyword, const Visit& visit) const;
    template <typename Visit>
    void visit(std::string_view keyword, std::string_view spec, const Visit& visit) const;

    std::shared_ptr<const PPDTextIndex> index_;
    PPDModelReader reader_;
    mutable std::mutex mutex_;
    /// Room for those that a run of all updaters asks for.
    mutable std::pmr::monotonic_buffer_resource memory_{4096};
    mutable std::pmr::unordered_map<Line, PPDModelAttribute> attributes_{&memory_};
    mutable std::optional<std::vector<PPDModelAttribute>> inFileOrder_;
    /// Made when reading the lines of a keyword has cost more.
    mutable std::optional<PPDLineKeys> keys_;
    mutable std::size_t read_ = 0;
};

}  // namespace TkPPDUpdating
