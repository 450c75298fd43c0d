#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "c_interface/TkPPDUpdating.h"
#include "manager/OrbClass.h"

namespace TkPPDUpdating {

/// The class of an updater that a caller in C has described: what the manager registers.
class OwnUpdaterClass {
  public:
    /// Copies what is described. Raises `CFailure` when that is no updater.
    explicit OwnUpdaterClass(const TkPPDUpdatingUpdater& updater);
    OwnUpdaterClass(const OwnUpdaterClass&) = delete;
    OwnUpdaterClass& operator=(const OwnUpdaterClass&) = delete;
    ~OwnUpdaterClass() = default;

    const OrbClass& theClass() const { return class_; }

    /// The call-backs and their context.
    const TkPPDUpdatingUpdater& calls() const { return calls_; }
    const std::vector<std::string_view>& keywords() const { return keywordViews_; }
    const std::vector<std::string>& entries() const { return entries_; }

  private:
    TkPPDUpdatingUpdater calls_;
    std::string name_;
    std::vector<std::string> keywords_;
    std::vector<std::string_view> keywordViews_;
    std::vector<std::string> entries_;
    OrbClass class_;
};

}  // namespace TkPPDUpdating
