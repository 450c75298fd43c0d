#include "sync/FollowedDefaults.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "sync/CustomMediaBlock.h"
#include "sync/PPDLocalizedTexts.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kMediaType = "MediaType";
constexpr std::string_view kProfile = "ZrICCProfileId2";

using Block = std::vector<CustomMediaEntry>;

std::vector<MediaTypeIdentity> identitiesOf(const Block& block) {
    std::vector<MediaTypeIdentity> identities;
    std::transform(block.begin(), block.end(), std::back_inserter(identities),
                   [](const CustomMediaEntry& entry) { return entry.identity; });
    return identities;
}

std::string_view defaultChoice(const PPDModelFile& PPD, std::string_view option) {
    const auto* const found = PPD.optionForName(option);
    return found ? found->defaultChoiceName().value_or("") : std::string_view();
}

bool hasChoice(const PPDModelFile& PPD, std::string_view option, std::string_view choice) {
    const auto* const found = PPD.optionForName(option);
    return found && found->choiceForName(choice);
}

/// The first choice of the option that is none of these; empty when there is none.
std::string firstChoiceBut(const PPDModelFile& PPD, std::string_view option,
                           const std::set<std::string_view>& customChoices) {
    for (const PPDModelAttribute& each : PPD.attributes()) {
        if (each.keyword() == option && !each.spec().empty() &&
            !customChoices.contains(each.spec())) {
            return std::string(each.spec());
        }
    }
    return {};
}

/// The text with that choice in every default line of the option.
PPDText textWithDefault(const std::string& text, std::string_view option, std::string_view choice) {
    const std::string start = "\n*Default" + std::string(option) + ":";
    std::string result;
    std::size_t copied = 0;
    for (std::size_t at = text.find(start); at != std::string::npos; at = text.find(start, at)) {
        at += start.size();
        result.append(text, copied, at - copied).append(" ").append(choice);
        copied = std::min(text.find_first_of("\r\n", at), text.size());
        at = copied;
    }
    return makePPDText(result.append(text, copied));
}

/// What became of the default of an option.
struct Successor {
    /// The choice that it becomes; empty when it stays.
    std::string choice;
    /// Whether that is another thing than before.
    bool isReplacement = false;
};

/// Compares two states of the custom media types.
class MediaTypeMoves {
  public:
    MediaTypeMoves(const PPDModelFile& before, const PPDModelFile& after)
        : before_(before),
          after_(after),
          were_(customMediaBlock(before)),
          are_(customMediaBlock(after)),
          same_(sameMediaTypes(identitiesOf(were_), identitiesOf(are_))) {}

    Successor ofMediaType() const {
        const std::string_view was = defaultChoice(before_, kMediaType);
        const auto type = std::find_if(were_.begin(), were_.end(),
                                       [was](const auto& each) { return each.choice == was; });
        if (type == were_.end() || !hasChoice(before_, kMediaType, was)) {
            return {};
        }
        const CustomMediaEntry* const now = nowOf(type);
        return now ? successor(was, now->choice, kMediaType)
                   : replacement(kMediaType, &CustomMediaEntry::choice);
    }

    Successor ofProfile() const {
        const std::string_view was = defaultChoice(before_, kProfile);
        const auto hadIt = [was](const auto& each) { return each.profileQualifier == was; };
        auto type = std::find_if(were_.begin(), were_.end(), hadIt);
        if (was.empty() || type == were_.end() || !hasChoice(before_, kProfile, was) ||
            hasChoice(after_, kProfile, was)) {
            return {};
        }
        for (; type != were_.end(); type = std::find_if(type + 1, were_.end(), hadIt)) {
            const CustomMediaEntry* const now = nowOf(type);
            if (now && hasChoice(after_, kProfile, now->profileQualifier)) {
                return successor(was, now->profileQualifier, kProfile);
            }
        }
        return replacement(kProfile, &CustomMediaEntry::profileQualifier);
    }

  private:
    const CustomMediaEntry* nowOf(Block::const_iterator type) const {
        const auto& index = same_[static_cast<std::size_t>(type - were_.begin())];
        return index ? &are_[*index] : nullptr;
    }

    Successor successor(std::string_view was, const std::string& is,
                        std::string_view option) const {
        const bool stays = was == is && defaultChoice(after_, option) == is;
        return stays ? Successor() : Successor{is, false};
    }

    Successor replacement(std::string_view option, std::string CustomMediaEntry::*choice) const {
        std::set<std::string_view> custom;
        for (const Block* block : {&were_, &are_}) {
            for (const CustomMediaEntry& entry : *block) {
                custom.insert(entry.*choice);
            }
        }
        return {firstChoiceBut(after_, option, custom), true};
    }

    const PPDModelFile& before_;
    const PPDModelFile& after_;
    Block were_;
    Block are_;
    std::vector<std::optional<std::size_t>> same_;
};

/// Whether the default of either option is a custom type or its profile.
bool isAnyDefaultCustom(const PPDModelFile& PPD) {
    const std::string_view type = defaultChoice(PPD, kMediaType);
    const std::string_view profile = defaultChoice(PPD, kProfile);
    const Block block = customMediaBlock(PPD);
    return std::any_of(block.begin(), block.end(), [&](const CustomMediaEntry& entry) {
        return entry.choice == type || (!profile.empty() && entry.profileQualifier == profile);
    });
}

}  // namespace

FollowedDefaults defaultsFollowingMediaTypes(const PPDModelFile& before, PPDText after) {
    FollowedDefaults result{std::move(after), {}};
    const bool isUnchanged = result.text == before.text() || *result.text == *before.text();
    const auto parsed = !isUnchanged && isAnyDefaultCustom(before)
                            ? PPDModelFile::fileWithText(result.text)
                            : nullptr;
    if (!parsed) {
        return result;
    }
    const MediaTypeMoves moves(before, *parsed);
    const PPDLocalizedTexts textsBefore(before, {});
    const PPDLocalizedTexts textsAfter(*parsed, {});
    for (const auto& [option, successor] :
         {std::pair(kMediaType, moves.ofMediaType()), std::pair(kProfile, moves.ofProfile())}) {
        if (successor.choice.empty()) {
            continue;
        }
        result.text = textWithDefault(*result.text, option, successor.choice);
        if (successor.isReplacement) {
            result.notes.push_back("the default " + textsBefore.textOfOption(option) + " \"" +
                                   textsBefore.textOfChoice(option, defaultChoice(before, option)) +
                                   "\" is gone: it is \"" +
                                   textsAfter.textOfChoice(option, successor.choice) + "\" now");
        }
    }
    return result;
}

}  // namespace TkPPDUpdating
