#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "manager/ITkPPDLineOwnership.h"
#include "manager/ITkPPDUpdater.h"
#include "ppd/PPDStatements.h"

namespace TkPPDUpdating {

/// What the updaters of one run own of a PPD, put together.
class OwnedLines {
  public:
    using Updaters = std::vector<std::unique_ptr<ITkPPDUpdater>>;

    /// The spans outlive the object.
    OwnedLines(const Updaters& updaters, std::span<const PPDStatement> before,
               std::span<const PPDStatement> after);

    /// Whether a statement of the text before may be missing in the text after.
    bool mayTakeAway(const PPDStatement& statement) const;

    /// Whether a statement of the text after may be new.
    bool mayAdd(const PPDStatement& statement) const;

    /// Whether it is an attribute "*KEYWORD: value" of an updater, which there is one of.
    bool isAttribute(const PPDStatement& statement) const;

    /// Whether it is the default of an option that is an updater's.
    bool isDefault(const PPDStatement& statement) const;

  private:
    using Test = std::function<bool(const PPDStatement&)>;
    /// Option and choice.
    using Choice = std::pair<std::string, std::string>;

    void add(OrbPPDOwnedLines lines);
    void readLanguages(std::span<const PPDStatement> before);
    bool isTranslationOfAttribute(const PPDStatement& statement) const;
    const std::string* codeOfChoice(const PPDStatement& statement) const;

    std::set<std::string, std::less<>> defaults_;
    /// Whether an updater does not say what it owns, so that any default may be its own.
    bool ownsAllDefaults_ = false;
    std::set<std::string, std::less<>> attributes_;
    /// Those that updaters take for the languages of translation lines: of `cupsLanguages` (CUPS
    /// PPD extensions) in the text before, and "en". Views into that text.
    std::set<std::string_view> languages_ = {"en"};
    std::map<Choice, std::string> codes_;
    std::vector<Test> mayTakeAway_;
    std::vector<Test> mayAdd_;
};

}  // namespace TkPPDUpdating
