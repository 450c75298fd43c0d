#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ppd/LineChains.h"

namespace TkPPDUpdating {

/// Finds the lines that a look-up can match whose keyword holds a colon or whose spec holds a colon
/// or a slash, the signs that end a keyword and a spec.
///
/// No PPD needs such look-ups by the thousand, but a hostile one can cause them: by its language
/// codes, which become part of the keywords of translations, and by the names of custom media
/// types. Read by themselves, the lines do not tell where such a keyword or spec ends, so every
/// place where one can end makes a key of its own.
class SeparatorIndex {
  public:
    using LineID = LineChains::LineID;
    using Key = std::uint64_t;

    /// The key of a look-up; nothing when this index does not tell: neither keyword nor spec has
    /// such a sign, or the keyword has a space or only one colon, at its end.
    static std::optional<Key> keyOfLookUp(std::string_view keyword,
                                          std::optional<std::string_view> spec);

    /// Adds a line. `comesBefore` tells of two lines whether the first stands before the second.
    template <typename ComesBefore>
    void add(LineID line, std::string_view text, const ComesBefore& comesBefore) {
        for (const Key key : keysOfLine(text)) {
            Lines& lines = lines_[key];
            const auto place =
                lines.IDs.empty() || comesBefore(lines.IDs.back(), line)
                    ? lines.IDs.end()
                    : std::lower_bound(lines.begin(), lines.IDs.end(), line, comesBefore);
            lines.IDs.insert(place, line);
        }
    }

    /// Removes a line, which stands in its place still.
    template <typename ComesBefore>
    void remove(LineID line, std::string_view text, const ComesBefore& comesBefore) {
        for (const Key key : keysOfLine(text)) {
            Lines& lines = lines_[key];
            const auto place = std::lower_bound(lines.begin(), lines.IDs.end(), line, comesBefore);
            if (place == lines.begin()) {
                ++lines.gone;  // The first goes most often.
                if (lines.gone == lines.IDs.size()) {
                    lines_.erase(key);
                }
            } else {
                lines.IDs.erase(place);
            }
        }
    }

    /// The lines that can match a look-up with that key, in line order. Valid until the next edit.
    std::span<const LineID> find(Key key) const;

  private:
    struct Lines {
        std::vector<LineID> IDs;
        std::size_t gone = 0;

        std::vector<LineID>::iterator begin() {
            return IDs.begin() + static_cast<std::ptrdiff_t>(gone);
        }
    };

    static std::vector<Key> keysOfLine(std::string_view line);

    std::unordered_map<Key, Lines> lines_;
};

}  // namespace TkPPDUpdating
