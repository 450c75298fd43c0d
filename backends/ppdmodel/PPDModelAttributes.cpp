#include "backends/ppdmodel/PPDModelAttributes.h"

#include <utility>

namespace TkPPDUpdating {

namespace {

/// Sorting all lines by their keys costs about as much as reading so many lines.
constexpr std::size_t kPasses = 8;
constexpr std::size_t kFewLines = 1024;

}  // namespace

PPDModelAttributes::PPDModelAttributes(std::shared_ptr<const PPDTextIndex> index)
    : index_(std::move(index)), reader_(*index_) {}

const PPDModelAttribute* PPDModelAttributes::attributeAt(Line line) const {
    if (const auto known = attributes_.find(line); known != attributes_.end()) {
        return &known->second;
    }
    auto attribute = reader_.attributeAt(line);
    return attribute ? &attributes_.emplace(line, *std::move(attribute)).first->second : nullptr;
}

/// Calls `visit` with each attribute until it gives true.
template <typename Visit>
void PPDModelAttributes::visit(std::string_view keyword, const Visit& visit) const {
    index_->visitRuns(keyword, [&](const PPDTextIndex::Run& run) {
        for (Line line = run.first; run.keyword == keyword && line < run.end; ++line) {
            const PPDModelAttribute* const attribute = attributeAt(line);
            if (attribute && visit(*attribute)) {
                return true;
            }
        }
        return false;
    });
}

template <typename Visit>
void PPDModelAttributes::visit(std::string_view keyword, std::string_view spec,
                               const Visit& visit) const {
    if (spec.empty()) {
        return;
    }
    const auto visitIfMeant = [&](Line line) {
        // Before it is read and kept.
        const std::string_view text = index_->line(line);
        if (text.find(spec, keyword.size() + 1) == std::string_view::npos) {
            return false;
        }
        const PPDModelAttribute* const attribute = attributeAt(line);
        return attribute && attribute->keyword() == keyword && attribute->spec() == spec &&
               visit(*attribute);
    };
    if (!keys_ && read_ > kPasses * index_->size() + kFewLines) {
        keys_.emplace(*index_, PPDLineKeys::Kind::kExact);
    }
    if (keys_) {
        keys_->visitLines(keyword, spec, visitIfMeant);
        return;
    }
    index_->visitRuns(keyword, [&](const PPDTextIndex::Run& run) {
        ++read_;
        for (Line line = run.first; run.keyword == keyword && line < run.end; ++line) {
            ++read_;
            if (visitIfMeant(line)) {
                return true;
            }
        }
        return false;
    });
}

const PPDModelAttribute* PPDModelAttributes::first(std::string_view keyword) const {
    const std::lock_guard lock(mutex_);
    const PPDModelAttribute* first = nullptr;
    visit(keyword, [&](const PPDModelAttribute& each) {
        first = &each;
        return true;
    });
    return first;
}

const PPDModelAttribute* PPDModelAttributes::first(std::string_view keyword,
                                                   std::string_view spec) const {
    const std::lock_guard lock(mutex_);
    const PPDModelAttribute* first = nullptr;
    visit(keyword, spec, [&](const PPDModelAttribute& each) {
        first = &each;
        return true;
    });
    return first;
}

void PPDModelAttributes::appendAll(std::string_view keyword,
                                   std::vector<const OrbPPDAttribute*>& all) const {
    const std::lock_guard lock(mutex_);
    visit(keyword, [&](const PPDModelAttribute& each) {
        all.push_back(&each);
        return false;
    });
}

std::vector<const PPDModelAttribute*> PPDModelAttributes::all(std::string_view keyword) const {
    const std::lock_guard lock(mutex_);
    std::vector<const PPDModelAttribute*> all;
    visit(keyword, [&](const PPDModelAttribute& each) {
        all.push_back(&each);
        return false;
    });
    return all;
}

std::vector<const PPDModelAttribute*> PPDModelAttributes::all(std::string_view keyword,
                                                              std::string_view spec) const {
    const std::lock_guard lock(mutex_);
    std::vector<const PPDModelAttribute*> all;
    visit(keyword, spec, [&](const PPDModelAttribute& each) {
        all.push_back(&each);
        return false;
    });
    return all;
}

std::span<const PPDModelAttribute> PPDModelAttributes::inFileOrder() const {
    const std::lock_guard lock(mutex_);
    if (!inFileOrder_) {
        inFileOrder_.emplace();
        for (Line line = 0; line < index_->size(); ++line) {
            if (auto attribute = reader_.attributeAt(line)) {
                inFileOrder_->push_back(*std::move(attribute));
            }
        }
    }
    return *inFileOrder_;
}

std::vector<std::string_view> PPDModelAttributes::keywords() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string_view> keywords;
    index_->visitAllRuns([&](const PPDTextIndex::Run& run) {
        for (Line line = run.first; line < run.end; ++line) {
            if (reader_.attributeAt(line)) {
                keywords.push_back(run.keyword);
                return;
            }
        }
    });
    return keywords;
}

}  // namespace TkPPDUpdating
