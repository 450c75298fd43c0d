#include "updaters/default_choice/DefaultLineEditor.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <utility>

#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

namespace {

/// The line feed that a searched text begins with counts as the end of the line before, so that the
/// very first line never matches.
constexpr std::size_t kFirstLine = 1;

}  // namespace

DefaultLineEditor::DefaultLineEditor(PPDText contents) : contents_(std::move(contents)) {
    if (contents_) {
        lines_.emplace(contents_);
    }
}

bool DefaultLineEditor::setDefaultChoice(std::string_view optionName, std::string_view choiceName) {
    return setDefaultChoiceIfPossible(optionName, choiceName) || fail();
}

bool DefaultLineEditor::setDefaultChoiceIfPossible(std::string_view optionName,
                                                   std::string_view choiceName) {
    if (!lines_) {
        return false;
    }
    // Only a choice that a user can see, that is one with a translation, may become the default.
    const auto lineThatBegins = [this](std::string_view format,
                                       std::initializer_list<std::string_view> arguments) {
        text_.clear();
        appendPPDFormatted(format, arguments, text_);
        return lines_->indexOfLineBeginning(std::string_view(text_).substr(kTkPPDNewLine.size()),
                                            kFirstLine);
    };
    const auto choice = lineThatBegins(kTkPPDChoiceFormatPrefix, {optionName, choiceName});
    const auto found =
        choice ? lineThatBegins(kTkPPDDefaultChoiceFormatPrefix, {optionName}) : std::nullopt;
    if (!found) {
        return false;
    }
    // One line, unless the name of the option holds line feeds.
    const auto count = static_cast<std::size_t>(std::count(text_.begin(), text_.end(), '\n'));
    if (*found + count == lines_->size() && !lines_->endsWithLineFeed()) {
        return false;
    }
    text_.clear();
    appendPPDFormatted(kTkPPDDefaultChoiceFormatString, {optionName, choiceName}, text_);
    if (lines_->at(*found) != text_) {
        lines_->erase(*found, count);
        lines_->insert(*found, text_);
        isEdited_ = true;
    }
    return true;
}

bool DefaultLineEditor::fail() {
    contents_ = nullptr;
    lines_.reset();
    isEdited_ = false;
    return false;
}

PPDText DefaultLineEditor::takeContents() {
    return isEdited_ ? lines_->text() : std::move(contents_);
}

}  // namespace TkPPDUpdating
