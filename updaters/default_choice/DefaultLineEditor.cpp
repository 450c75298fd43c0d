#include "updaters/default_choice/DefaultLineEditor.h"

#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

std::string_view DefaultLineEditor::text() const {
    return isEdited_ ? std::string_view(edited_) : std::string_view(*contents_);
}

bool DefaultLineEditor::setDefaultChoice(std::string_view optionName, std::string_view choiceName) {
    if (!contents_) {
        return false;
    }
    // Only a choice that a user can see, that is one with a translation, may become the default.
    const std::string choiceLine = PPDFormatted(kTkPPDChoiceFormatPrefix, {optionName, choiceName});
    if (text().find(choiceLine) == std::string_view::npos) {
        return fail();
    }
    const std::string defaultLine = PPDFormatted(kTkPPDDefaultChoiceFormatPrefix, {optionName});
    const std::size_t found = text().find(defaultLine);
    if (found == std::string_view::npos) {
        return fail();
    }
    const std::size_t end = text().find(kTkPPDNewLine, found + defaultLine.size());
    if (end == std::string_view::npos) {
        return fail();
    }
    replace(found + kTkPPDNewLine.size(), end,
            PPDFormatted(kTkPPDDefaultChoiceFormatString, {optionName, choiceName}));
    return true;
}

void DefaultLineEditor::replace(std::size_t from, std::size_t to, std::string_view line) {
    if (text().substr(from, to - from) == line) {
        return;
    }
    if (isEdited_) {
        edited_.replace(from, to - from, line);
        return;
    }
    // Room for the lines of later options, so that they find place without another copy.
    constexpr std::size_t kRoom = 256;
    edited_.reserve(contents_->size() + line.size() + kRoom);
    edited_.append(*contents_, 0, from).append(line).append(*contents_, to);
    isEdited_ = true;
}

bool DefaultLineEditor::fail() {
    contents_ = nullptr;
    edited_.clear();
    isEdited_ = false;
    return false;
}

PPDText DefaultLineEditor::takeContents() {
    return isEdited_ ? makePPDText(std::move(edited_)) : std::move(contents_);
}

}  // namespace TkPPDUpdating
