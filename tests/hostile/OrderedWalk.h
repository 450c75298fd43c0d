#pragma once

#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace TkPPDUpdating::Testing {

/// Goes through the things of a list, in order, as those of a later list come.
template <typename Thing>
class OrderedWalk {
  public:
    /// Whether a thing may be missing later; `previous` is the one before it, or null.
    using MayGo = std::function<bool(const Thing* previous, const Thing& thing)>;

    /// `mayGoSoOften` are things of which some may be missing besides. The list outlives the walk.
    OrderedWalk(const std::vector<Thing>& list, MayGo mayGo, std::map<Thing, int> mayGoSoOften)
        : list_(list), mayGo_(std::move(mayGo)), mayGoSoOften_(std::move(mayGoSoOften)) {}

    enum class Step {
        /// It is the next of the list, but for what may go.
        kept,
        added,
        /// It is neither the next nor one that may be new.
        foreign,
    };

    /// With `mayHaveMoved`, a thing that may be new is, where the same comes further on and may go:
    /// to pass over what stands between would lose that.
    Step take(const Thing& thing, bool mayBeNew, bool mayHaveMoved) {
        if (goesTo(&thing, mayBeNew && mayHaveMoved)) {
            ++next_;
            return Step::kept;
        }
        return mayBeNew ? Step::added : Step::foreign;
    }

    /// What is lost when no more things come: the first that may not go, or null.
    const Thing* lost() { return goesTo(nullptr, false) ? nullptr : firstInTheWay_; }

  private:
    /// Whether nothing but what may go stands before the thing (null: before the end); then it is
    /// the next; unless it has moved there, if it may have.
    bool goesTo(const Thing* thing, bool mayHaveMoved) {
        const std::size_t start = next_;
        std::vector<const Thing*> counted;
        while (next_ < list_.size() && !(thing && list_[next_] == *thing)) {
            const Thing& each = list_[next_];
            if (!mayGo_(next_ > 0 ? &list_[next_ - 1] : nullptr, each)) {
                const auto found = mayGoSoOften_.find(each);
                if (found == mayGoSoOften_.end() || found->second == 0) {
                    break;
                }
                --found->second;
                counted.push_back(&each);
            }
            ++next_;
        }
        const bool isThere =
            thing ? next_ < list_.size() && list_[next_] == *thing : next_ == list_.size();
        const bool hasMoved = isThere && mayHaveMoved && next_ != start && counted.empty() &&
                              mayGo_(&list_[next_ - 1], list_[next_]);
        if (!isThere || hasMoved) {
            firstInTheWay_ = next_ < list_.size() ? &list_[next_] : nullptr;
            for (const Thing* const each : counted) {
                ++mayGoSoOften_[*each];
            }
            next_ = start;
        }
        return isThere && !hasMoved;
    }

    const std::vector<Thing>& list_;
    MayGo mayGo_;
    std::map<Thing, int> mayGoSoOften_;
    std::size_t next_ = 0;
    const Thing* firstInTheWay_ = nullptr;
};

}  // namespace TkPPDUpdating::Testing
