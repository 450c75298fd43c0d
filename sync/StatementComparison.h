#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ppd/PPDStatements.h"
#include "sync/OwnedLines.h"

namespace TkPPDUpdating {

/// Compares the statements of a PPD before and after an update with what the updaters own. For one
/// pair of texts; the spans and the owned lines outlive it.
class StatementComparison {
  public:
    StatementComparison(std::span<const PPDStatement> had, std::span<const PPDStatement> has,
                        const OwnedLines& owned)
        : had_(had), has_(has), owned_(owned), isAdded_(has.size()) {}

    /// Why the one cannot have become the other by what the updaters own: a statement that would be
    /// lost, changed or new, or is new and would not be read as what it is meant to be. Nothing
    /// when it can.
    std::optional<std::string> reasonNotToMatch();

    /// Once that gave nothing: why the new groups and choices and the defaults do not go
    /// together with the rest, or nothing.
    std::optional<std::string> reasonOfChoicesAndDefaults() const;

  private:
    /// Main keyword and option keyword, in any case of letters, as libcups looks choices up.
    struct Key {
        std::string_view keyword;
        std::string_view optionKeyword;
        bool operator<(const Key& other) const;
    };
    using StatementsOfKeys = std::map<Key, std::vector<const PPDStatement*>>;

    std::size_t nextThatMustStay();
    std::optional<std::size_t> nextEqual(const PPDStatement& statement);
    std::optional<std::string> take(std::size_t place, const PPDStatement& statement);
    std::optional<std::string> add(const PPDStatement& statement);
    std::optional<std::string> match(const PPDStatement& statement);
    void giveUpBefore(std::size_t place);
    std::string reasonOfMismatch(const PPDStatement& statement);

    StatementsOfKeys statementsOfInterest() const;
    std::optional<std::string> reasonOfDoubles(const StatementsOfKeys& statements) const;
    std::optional<std::string> reasonOfGroups() const;
    std::optional<std::string> reasonOfAttributes() const;
    std::optional<std::string> reasonOfNewDefaults(const StatementsOfKeys& statements) const;
    std::optional<std::string> reasonOfLostDefaults(const StatementsOfKeys& statements) const;
    std::optional<std::string> reasonOfNumberOfDefaults() const;
    std::optional<std::string> reasonOfPageSizes() const;
    std::optional<std::string> reasonOfChoicesOutside() const;
    std::map<std::string_view, std::string_view> defaultsAfter() const;

    std::span<const PPDStatement> had_;
    std::span<const PPDStatement> has_;
    const OwnedLines& owned_;

    /// The first statement before that is neither matched nor given up, and the first from there on
    /// that no updater may take away.
    std::size_t at_ = 0;
    std::size_t staying_ = 0;
    std::map<std::string_view, std::vector<std::size_t>> placesOfLines_;

    std::vector<const PPDStatement*> gone_;
    std::vector<const PPDStatement*> added_;
    /// By place among the statements after.
    std::vector<bool> isAdded_;
};

}  // namespace TkPPDUpdating
