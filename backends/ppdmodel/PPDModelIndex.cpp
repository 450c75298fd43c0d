#include "backends/ppdmodel/PPDModelIndex.h"

#include <bit>
#include <cstddef>

#include "ppd/SeededTextHash.h"

namespace TkPPDUpdating {

PPDModelIndex::Table PPDModelIndex::tableFor(std::size_t count) {
    // At most two thirds full, so that a search always ends at a free slot, and soon.
    return Table(std::bit_ceil(count + count / 2 + 1));
}

std::size_t PPDModelIndex::slotOfKeyword(const Table& table, std::uint64_t hash,
                                         std::string_view keyword) {
    const std::size_t mask = table.size() - 1;
    std::size_t slot = hash & mask;
    while (table[slot].first &&
           (table[slot].hash != hash || table[slot].first->keyword() != keyword)) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

std::size_t PPDModelIndex::slotOfSpec(const Table& table, std::uint64_t hash,
                                      std::string_view keyword, std::string_view spec) {
    const std::size_t mask = table.size() - 1;
    std::size_t slot = hash & mask;
    while (table[slot].first && (table[slot].hash != hash || table[slot].first->spec() != spec ||
                                 table[slot].first->keyword() != keyword)) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

PPDModelIndex::PPDModelIndex(std::vector<PPDModelAttribute>& attributes) {
    std::size_t runs = 0;
    std::size_t specs = 0;
    std::string_view keyword;
    for (const PPDModelAttribute& attribute : attributes) {
        // Attributes of one keyword mostly stand together, so runs are hardly more than keywords.
        runs += runs == 0 || attribute.keyword() != keyword ? 1 : 0;
        specs += attribute.spec().empty() ? 0 : 1;
        keyword = attribute.keyword();
    }
    keywords_ = tableFor(runs);
    specs_ = tableFor(specs);

    // From the last to the first, so that each is put before those that follow it in the file.
    Slot* ofKeyword = nullptr;
    for (std::size_t i = attributes.size(); i-- > 0;) {
        PPDModelAttribute& attribute = attributes[i];
        if (!ofKeyword || attribute.keyword() != ofKeyword->first->keyword()) {
            const std::uint64_t hash = SeededTextHash::of(attribute.keyword());
            ofKeyword = &keywords_[slotOfKeyword(keywords_, hash, attribute.keyword())];
            ofKeyword->hash = hash;
        }
        attribute.nextWithKeyword_ = ofKeyword->first;
        ofKeyword->first = &attribute;
        if (!attribute.spec().empty()) {
            const std::uint64_t hash = SeededTextHash::of(attribute.spec(), ofKeyword->hash);
            Slot& ofSpec = specs_[slotOfSpec(specs_, hash, attribute.keyword(), attribute.spec())];
            ofSpec.hash = hash;
            attribute.nextWithSpec_ = ofSpec.first;
            ofSpec.first = &attribute;
        }
    }
}

const PPDModelAttribute* PPDModelIndex::first(std::string_view keyword) const {
    return keywords_[slotOfKeyword(keywords_, SeededTextHash::of(keyword), keyword)].first;
}

const PPDModelAttribute* PPDModelIndex::first(std::string_view keyword,
                                              std::string_view spec) const {
    const std::uint64_t hash = SeededTextHash::of(spec, SeededTextHash::of(keyword));
    return specs_[slotOfSpec(specs_, hash, keyword, spec)].first;
}

std::vector<std::string_view> PPDModelIndex::keywords() const {
    std::vector<std::string_view> keywords;
    for (const Slot& slot : keywords_) {
        if (slot.first) {
            keywords.push_back(slot.first->keyword());
        }
    }
    return keywords;
}

}  // namespace TkPPDUpdating
