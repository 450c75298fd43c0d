#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>
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

    /// Adds a line. `comesBefore` tells of two lines whether the first stands before the second;
    /// false is a quick answer to that while all lines are added in their order.
    template <typename ComesBefore>
    void add(LineID line, std::string_view text, const ComesBefore& comesBefore) {
        if (entriesOfLine_.size() <= line) {
            entriesOfLine_.resize(line + std::size_t{1});
        }
        const std::vector<Key> keys = keysOfLine(text);
        entriesOfLine_[line] = static_cast<EntryID>(entries_.size());
        for (const Key key : keys) {
            EntryID& first = chains_.findOrAdd(key);
            EntryID previous = kNoEntry;
            if (first != kNoEntry && !comesBefore(line, entries_[first].line)) {
                previous = entries_[first].previous;
                while (comesBefore(line, entries_[previous].line)) {
                    previous = entries_[previous].previous;
                }
            }
            link(first, previous, line);
        }
    }

    /// Removes a line, which was added with that text.
    void remove(LineID line, std::string_view text);

    /// The first line, in line order, that `accepts` takes of those that can match a look-up with
    /// that key; nothing when there is none.
    template <typename Accepts>
    std::optional<LineID> find(Key key, const Accepts& accepts) {
        for (EntryID entry = chains_.first(key); entry != kNoEntry; entry = entries_[entry].next) {
            if (accepts(entries_[entry].line)) {
                return entries_[entry].line;
            }
        }
        return std::nullopt;
    }

  private:
    using EntryID = LineChains::LineID;
    static constexpr EntryID kNoEntry = LineChains::kNoLine;

    /// A line under one of its keys. Before the first entry of a chain stands the last.
    struct Entry {
        LineID line = 0;
        EntryID previous = kNoEntry;
        EntryID next = kNoEntry;
    };

    static std::vector<Key> keysOfLine(std::string_view line);

    void link(EntryID& first, EntryID previous, LineID line);

    /// From keys to entries.
    LineChains chains_{0};
    /// Those of one line stand together, in the order of its keys. The ones of removed lines stay:
    /// so does the text of lines that were written.
    std::deque<Entry> entries_;
    /// By line, the first of them.
    std::vector<EntryID> entriesOfLine_;
};

}  // namespace TkPPDUpdating
