#pragma once

#include <cstddef>
#include <set>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "sync/PPDChange.h"
#include "text/SeededTextHash.h"

namespace TkPPDUpdating {

/// What changes of a PPD are about, and what of it changed: one option, the constraints of options
/// that stay, or one attribute.
struct ChangeSubject {
    /// The option; empty for constraints and for an attribute.
    std::string_view option;
    bool isDefaultChanged = false;
    /// The option's choices of which a line changed; an empty one for the list of custom media.
    std::set<std::string_view> choices;
    /// Lines that constrain the option; all others for the subject of constraints.
    std::size_t constraintsAdded = 0;
    std::size_t constraintsRemoved = 0;
    /// Null but for an attribute.
    const PPDChange* attribute = nullptr;
};

/// Sorts the changes of a PPD by what they are about, in the order of the first change of each.
///
/// - The lines that declare an option or group are told with the option that came or went; so are
///   the constraints that name it.
/// - A choice is its line, its properties, and a profile's path. The four lines of a page size are
///   one choice of "PageSize", and so are its four default lines when they follow it.
class ChangeSubjects {
  public:
    /// None is owned, and all outlive the object.
    ChangeSubjects(const PPDModelFile& before, const PPDModelFile& after,
                   const std::vector<PPDChange>& changes);

    const std::vector<ChangeSubject>& all() const { return subjects_; }

    /// Whether an option is in only one of the two states.
    bool cameOrWent(std::string_view option) const;

    bool hasOptionComeOrGone() const { return hasOptionComeOrGone_; }

  private:
    bool isOption(std::string_view name) const;
    ChangeSubject& subjectOfOption(std::string_view option);
    void sort(const PPDChange& change);
    void sortConstraint(const PPDChange& change);
    bool sortDeclaration(const PPDChange& change);
    bool sortDefault(const PPDChange& change);
    bool followsPageSize(const PPDChange& change) const;
    bool sortChoice(const PPDChange& change);
    bool sortProperties(std::string_view spec);

    const PPDModelFile& before_;
    const PPDModelFile& after_;
    bool hasOptionComeOrGone_ = false;
    std::vector<ChangeSubject> subjects_;
    std::unordered_map<std::string_view, std::size_t, SeededTextHash> places_;
};

}  // namespace TkPPDUpdating
