#include "sync/ChangeDescription.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "sync/ChangeSubjects.h"
#include "sync/CustomMediaBlock.h"
#include "sync/CustomMediaDifference.h"
#include "sync/PPDLocalizedTexts.h"
#include "text/UTF8.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kPageSize = "PageSize";
constexpr std::string_view kMediaType = "MediaType";
constexpr std::string_view kDuplex = "Duplex";
constexpr std::string_view kPageSizeNoun = "page size";

std::string shortened(std::string_view text) {
    constexpr std::size_t kMostCharacters = 80;
    std::string_view rest = text;
    for (std::size_t count = 0; count < kMostCharacters && !rest.empty(); ++count) {
        const auto character = UTF8CharacterAtStart(rest);
        rest.remove_prefix(character ? character->length : 1);
    }
    return std::string(text.substr(0, text.size() - rest.size())) + (rest.empty() ? "" : "...");
}

std::string transition(const std::string& from, const std::string& to) {
    return shortened(from) + " -> " + shortened(to);
}

std::string counted(std::size_t count, std::string_view noun) {
    return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

/// "2 custom types added, 1 removed"; empty when all are 0.
std::string phraseOf(const DifferenceCounts& counts, std::string_view noun) {
    std::string phrase;
    const auto add = [&](std::size_t count, const char* verb) {
        if (count > 0) {
            phrase += phrase.empty() ? counted(count, noun) : ", " + std::to_string(count);
            phrase += verb;
        }
    };
    add(counts.added, " added");
    add(counts.removed, " removed");
    add(counts.changed, " changed");
    return phrase;
}

std::string shownValue(const std::optional<PPDChange::State>& state) {
    if (!state) {
        return "(none)";
    }
    return state->value.empty() ? "(empty)" : state->value;
}

/// One state of the PPD, and its texts.
struct Side {
    Side(const PPDModelFile& file, const std::vector<std::string>& languages)
        : PPD(file), texts(file, languages), customTypes(customMediaBlock(file)) {
        for (const CustomMediaEntry& type : customTypes) {
            customChoices.insert(type.choice);
        }
    }

    bool hasOption(std::string_view name) const { return PPD.optionForName(name); }

    bool hasChoice(std::string_view name, std::string_view choice) const {
        if (name == kPageSize) {
            return PPD.pageSizeForName(choice);
        }
        const OrbPPDOption* option = PPD.optionForName(name);
        return option && option->choiceForName(choice);
    }

    std::optional<std::string_view> defaultOf(std::string_view name) const {
        const OrbPPDOption* option = PPD.optionForName(name);
        return option ? option->defaultChoiceName() : std::nullopt;
    }

    std::string textOfDefault(std::string_view name) const {
        const auto choice = defaultOf(name);
        return choice ? texts.textOfChoice(name, *choice) : "(none)";
    }

    const PPDModelFile& PPD;
    PPDLocalizedTexts texts;
    std::vector<CustomMediaEntry> customTypes;
    std::set<std::string, std::less<>> customChoices;
};

/// The text of the group in which each option of a PPD stands.
std::map<std::string_view, std::string> groupsOfOptions(const Side& side) {
    std::map<std::string_view, std::string> groups;
    std::string group;
    for (const PPDModelAttribute& attribute : side.PPD.attributes()) {
        const std::string_view value = attribute.value().value_or("");
        if (attribute.keyword() == "OpenGroup") {
            const std::string_view name = value.substr(0, value.find('/'));
            group = side.texts.translationOf(name).value_or(
                decodedPPDText(value.substr(name == value ? 0 : name.size() + 1)));
        } else if (attribute.keyword() == "CloseGroup") {
            group.clear();
        } else if (attribute.keyword() == "OpenUI" && attribute.spec().starts_with('*')) {
            groups.try_emplace(attribute.spec().substr(1), group);
        }
    }
    return groups;
}

class Describer {
  public:
    Describer(const PPDModelFile& before, const PPDModelFile& after,
              const std::vector<std::string>& languages)
        : before_(before, languages), after_(after, languages) {}

    std::vector<std::string> describe(const std::vector<PPDChange>& changes) {
        const ChangeSubjects subjects(before_.PPD, after_.PPD, changes);
        if (subjects.hasOptionComeOrGone()) {
            groups_ = groupsOfOptions(after_);
        }
        noteLostPageSizes(subjects);
        for (const ChangeSubject& subject : subjects.all()) {
            tell(subject);
        }
        if (lines_.empty() && *before_.PPD.text() != *after_.PPD.text()) {
            lines_.emplace_back("no value, only how lines are written");
        }
        return std::move(lines_);
    }

  private:
    void add(const std::string& label, const std::string& phrase) {
        if (!phrase.empty()) {
            lines_.push_back(shortened(label) + ": " + phrase);
        }
    }

    /// Page sizes that go with the duplexer are told with it.
    void noteLostPageSizes(const ChangeSubjects& subjects) {
        if (!subjects.cameOrWent(kDuplex) || after_.hasOption(kDuplex)) {
            return;
        }
        for (const ChangeSubject& subject : subjects.all()) {
            if (subject.option == kPageSize) {
                pageSizesLostWithDuplex_ = countsOfChoices(subject).removed;
            }
        }
    }

    void tell(const ChangeSubject& subject) {
        if (subject.attribute) {
            tellAttribute(*subject.attribute);
        } else if (subject.option.empty()) {
            add("Constraints",
                phraseOf({subject.constraintsAdded, subject.constraintsRemoved, 0}, "line"));
        } else if (!before_.hasOption(subject.option)) {
            tellNewOption(subject);
        } else if (!after_.hasOption(subject.option)) {
            tellLostOption(subject);
        } else {
            tellDefault(subject);
            tellChoices(subject);
        }
    }

    void tellNewOption(const ChangeSubject& subject) {
        const auto group = groups_.find(subject.option);
        std::string phrase = "added";
        if (group != groups_.end() && !group->second.empty()) {
            phrase += " to " + shortened(group->second);
        }
        phrase += " (" + shortened(after_.textOfDefault(subject.option)) + ")";
        if (subject.constraintsAdded > 0) {
            phrase += ", with " + counted(subject.constraintsAdded, "constraint");
        }
        add(after_.texts.textOfOption(subject.option), phrase);
    }

    void tellLostOption(const ChangeSubject& subject) {
        std::string phrase = "removed";
        if (subject.constraintsRemoved > 0) {
            phrase += ", with " + counted(subject.constraintsRemoved, "constraint");
        }
        if (subject.option == kDuplex && pageSizesLostWithDuplex_ > 0) {
            phrase += subject.constraintsRemoved > 0 ? " and " : ", with ";
            phrase += counted(pageSizesLostWithDuplex_, kPageSizeNoun);
        }
        add(before_.texts.textOfOption(subject.option), phrase);
    }

    void tellDefault(const ChangeSubject& subject) {
        if (!subject.isDefaultChanged) {
            return;
        }
        const std::string_view option = subject.option;
        std::string was = before_.textOfDefault(option);
        std::string is = after_.textOfDefault(option);
        if (was == is) {
            was += " (" + std::string(before_.defaultOf(option).value_or("")) + ")";
            is += " (" + std::string(after_.defaultOf(option).value_or("")) + ")";
        }
        add(after_.texts.textOfOption(option), transition(was, is));
    }

    bool isCustomType(std::string_view option, std::string_view choice) const {
        return option == kMediaType && (choice.empty() || before_.customChoices.contains(choice) ||
                                        after_.customChoices.contains(choice));
    }

    DifferenceCounts countsOfChoices(const ChangeSubject& subject) const {
        DifferenceCounts counts;
        for (const std::string_view choice : subject.choices) {
            if (isCustomType(subject.option, choice)) {
                continue;
            }
            const bool was = before_.hasChoice(subject.option, choice);
            const bool is = after_.hasChoice(subject.option, choice);
            ++(was == is ? counts.changed : is ? counts.added : counts.removed);
        }
        return counts;
    }

    void tellChoices(const ChangeSubject& subject) {
        const std::string label = after_.texts.textOfOption(subject.option);
        auto counts = countsOfChoices(subject);
        if (subject.option == kPageSize) {
            counts.removed -= pageSizesLostWithDuplex_;
        }
        add(label, phraseOf(counts, subject.option == kPageSize ? kPageSizeNoun : "choice"));
        for (const std::string_view choice : subject.choices) {
            if (isCustomType(subject.option, choice)) {
                tellCustomTypes(label);
                return;
            }
        }
    }

    void tellCustomTypes(const std::string& label) {
        const auto counts = differenceOfMediaTypes(before_.customTypes, after_.customTypes);
        const std::string phrase = phraseOf(counts, "custom type");
        add(label, phrase.empty() ? "custom types in another order" : phrase);
    }

    void tellAttribute(const PPDChange& change) {
        const bool isTextAlone =
            change.before && change.after && change.before->value == change.after->value;
        if (isTextAlone) {
            add(nameOf(change), transition(decodedPPDText(change.before->text.value_or("(none)")),
                                           decodedPPDText(change.after->text.value_or("(none)"))));
        } else {
            add(labelOf(change), transition(shownValue(change.before), shownValue(change.after)));
        }
    }

    static std::string nameOf(const PPDChange& change) {
        return change.keyword + (change.optionKeyword.empty() ? "" : " " + change.optionKeyword);
    }

    /// A text behind an option keyword is that of the option keyword, not of the attribute.
    std::string labelOf(const PPDChange& change) {
        if (!change.optionKeyword.empty()) {
            return nameOf(change);
        }
        const auto [label, isNew] = labels_.try_emplace(change.keyword);
        if (isNew) {
            const auto& text = (change.after ? change.after : change.before)->text;
            label->second =
                after_.texts.translationOf(change.keyword)
                    .value_or(text && !text->empty() ? decodedPPDText(*text) : change.keyword);
        }
        return label->second;
    }

    Side before_;
    Side after_;
    std::map<std::string_view, std::string> groups_;
    std::size_t pageSizesLostWithDuplex_ = 0;
    /// Of attributes, so that a keyword with many lines is looked up once.
    std::map<std::string, std::string> labels_;
    std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> describedChanges(const PPDModelFile& before, const PPDModelFile& after,
                                          const std::vector<PPDChange>& changes,
                                          const std::vector<std::string>& languages) {
    return Describer(before, after, languages).describe(changes);
}

}  // namespace TkPPDUpdating
