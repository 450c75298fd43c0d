#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "ppd/PPDTextIndex.h"

namespace TkPPDUpdating {

/// Finds the lines of an index by keyword and option keyword ("spec") at once. Made when one text
/// is asked so often that reading the lines of a keyword again and again would cost more.
///
/// Its lines are candidates: whoever asks looks at each.
class PPDLineKeys {
  public:
    using Line = PPDTextIndex::Line;
    using Key = std::uint64_t;

    enum class Kind : std::uint8_t {
        /// By the keyword and the option keyword, as they are written.
        kExact,
        /// Case ignored; translations of a keyword stand with it. An option keyword ends at the
        /// first ":" or "/".
        kIgnoringCase,
        /// Case ignored, for keywords and option keywords that hold what ends them elsewhere.
        /// Where such a one ends, a line does not tell, so that it has a key for every place. A
        /// translation has these for its whole keyword, and for what follows its last full stop. No
        /// PPD needs such look-ups by the thousand, but a hostile one can cause them, by its
        /// language codes and by the names of custom media types.
        kEveryEnd
    };

    PPDLineKeys(const PPDTextIndex& index, Kind kind);

    /// The kind that answers a look-up where case is ignored; nothing when none does (the keyword
    /// holds a space).
    static std::optional<Kind> kindFor(std::string_view keyword,
                                       std::optional<std::string_view> spec);

    /// Calls `visit(Line)`, in line order, until it gives true, for every line that the look-up may
    /// mean, which is one of this kind (`kIgnoringCase` and `kExact`: with a spec). Gives whether
    /// `visit` did.
    template <typename Visit>
    bool visitLines(std::string_view keyword, std::optional<std::string_view> spec,
                    const Visit& visit) const {
        const Key key = keyOfLookUp(keyword, spec);
        for (auto entry = std::lower_bound(entries_.begin(), entries_.end(), Entry(key, 0));
             entry != entries_.end() && entry->first == key; ++entry) {
            if (visit(entry->second)) {
                return true;
            }
        }
        return false;
    }

  private:
    using Entry = std::pair<Key, Line>;

    Key keyOfLookUp(std::string_view keyword, std::optional<std::string_view> spec) const;
    void addFirstEnd(Line line, std::string_view keyword, std::string_view rest);
    void addEveryEnd(Line line, std::string_view text);

    Kind kind_;
    /// Sorted.
    std::vector<Entry> entries_;
};

}  // namespace TkPPDUpdating
