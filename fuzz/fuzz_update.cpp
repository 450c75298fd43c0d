// A whole update through the manager: a printer's recorded status ("null" for a silent printer), a
// line "====", a PPD; and perhaps another such line and the PPD of a queue. However hostile they
// are, the only error is the documented one, the same run gives the same text, and what the guard
// before writing lets pass is harmless, also as libcups reads it, and is not changed by what it
// lets pass of a second run.
#include <algorithm>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/BrokenLines.h"
#include "fuzz/UpdateInput.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "ppd/PPDStatements.h"
#include "sync/UpdateGuard.h"
#include "tests/hostile/UpdateInvariants.h"
#include "tests/support/CoreWithQueue.h"
#include "text/UTF8.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

/// The result; nothing when the operation ends in the error that the interface names, at an
/// attribute that has nothing after its colon.
template <typename Function>
auto resultOf(const Function& function) -> std::optional<decltype(function())> {
    try {
        return function();
    } catch (const std::out_of_range&) {
        return std::nullopt;
    }
}

std::optional<PPDText> updated(const OrbPPDConcreteUpdatingManager& manager, const ParsedPPD& PPD,
                               const Status& status) {
    return resultOf([&] {
        return manager.updatedPPDContentsForContents_PPDFile_deviceURI_context(
            PPD->text(), *PPD,
            "file:", OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(status, nullptr));
    });
}

/// What holds of any result.
void requireText(const std::optional<PPDText>& result) {
    require(!result || *result, "a text stays a text");
    require(!result || !firstInvalidUTF8Byte(**result), "the result is UTF-8");
}

/// What is asked of the updates of a PPD.
class Judge {
  public:
    Judge(const OrbPPDConcreteUpdatingManager& manager, const ParsedPPD& PPD)
        : text_(PPD->text()),
          updaters_(manager.applicableUpdatersForPPDFile(PPD.get())),
          invariants_(*text_) {}

    /// Whether the guard lets the result pass; then it is harmless.
    bool passes(const PPDText& result) {
        if (UpdateGuard::reasonNotToWrite(*text_, *result, updaters_)) {
            return false;
        }
        requireNone(invariants_.findingsIn(*result), "what the guard lets pass is harmless");
        return true;
    }

  private:
    PPDText text_;
    std::vector<std::unique_ptr<ITkPPDUpdater>> updaters_;
    Testing::UpdateInvariants invariants_;
};

/// Whether a line of custom media, or one that could be taken for such, is there more than once: a
/// run takes the first of them away. Or a translation of a line that is not there: it goes with the
/// line that a run writes, in the next one.
bool hasStrayLinesOfCustomMedia(const PPDText& text) {
    static const std::set<std::string_view> kKeywords = {"MediaType", "ZrICCProfileId2",
                                                         "cupsICCProfile", "ZrChoiceProperties",
                                                         "ZrMediaTypeCategory"};
    using Names = std::set<std::pair<std::string_view, std::string_view>>;
    Names names;
    Names translated;
    for (const PPDStatement& statement : PPDStatementsOfText(*text)) {
        const std::string_view keyword = Testing::withoutLanguage(statement.keyword);
        if (statement.optionKeyword.empty() || !kKeywords.contains(keyword)) {
            continue;
        }
        if (!names.emplace(statement.keyword, statement.optionKeyword).second) {
            return true;
        }
        translated.emplace(keyword, statement.optionKeyword);
    }
    return !std::ranges::includes(names, translated);
}

/// Whether a comment on the duplexer's constraints stands behind something else in its line. It
/// goes with the line feed, so that the next line, which may be one that was just written, stands
/// behind that something then, and goes too where that is a constraint.
bool hasCommentBehindSomething(std::string_view text) {
    return standsBehindSomething(text, "*% Duplex <-> ");
}

/// Whether something that an updater changes stands within the group of the duplexer. Where it does
/// first, a run changes it there before it goes with the group, and the next run the second one.
bool hasLinesOfOthersInGroup(const std::string& text) {
    const std::size_t opens = text.find("\n*OpenGroup: ZrTwoSidedPrinting");
    const std::size_t closes = text.find("\n*CloseGroup: ZrTwoSidedPrinting", opens);
    if (closes == std::string::npos) {
        return false;
    }
    std::string_view group = std::string_view(text).substr(opens + 1, closes - opens);
    while (!group.empty()) {
        const std::string_view line = group.substr(0, group.find('\n'));
        const bool isDefault = line.starts_with("*Default") && !line.starts_with("*DefaultDuplex");
        if (isDefault || line.starts_with("*Zr") || line.starts_with("*BPE")) {
            return true;
        }
        group.remove_prefix(std::min(line.size() + 1, group.size()));
    }
    return false;
}

/// Whether the default of the duplexer's option stands there without the option. A run adds the
/// option behind it, with a default of its own, and the next one changes the first of the two.
bool hasDefaultWithoutItsOption(const PPDModelFile& PPD) {
    return !PPD.optionForName("ZrAutoDuplexerInstalled") &&
           PPD.text()->find("*DefaultZrAutoDuplexerInstalled") != std::string::npos;
}

/// Whether the texts are the same but for the end of the last line. Where a constraint went that
/// stood behind a lone carriage return, that one is the last byte, and a further run adds a line
/// feed; to libcups it ended the line before.
bool isSameText(std::string_view text, std::string_view other) {
    const auto withoutLineFeed = [](std::string_view each) {
        return each.substr(0, each.size() - (each.ends_with('\n') ? 1 : 0));
    };
    return withoutLineFeed(text) == withoutLineFeed(other);
}

void updateFromPrinter(OrbPPDConcreteUpdatingManager& manager, const ParsedPPD& PPD,
                       const Status& status, Judge& judge) {
    const auto result = updated(manager, PPD, status);
    requireText(result);
    const auto again = updated(manager, PPD, status);
    require(result.has_value() == again.has_value(), "the same run ends alike");
    require(!result || **result == **again, "the same run gives the same text");
    const auto values = resultOf([&] {
        return manager.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(status,
                                                                          "file:", PPD.get());
    });
    require(!values || values->has_value() == (status != nullptr), "values need a status");
    if (!result || !judge.passes(*result) || hasStrayLinesOfCustomMedia(PPD->text()) ||
        hasCommentBehindSomething(*PPD->text()) || hasLinesOfOthersInGroup(*PPD->text()) ||
        hasDefaultWithoutItsOption(*PPD) ||
        (status && Testing::isOfTwoMindsAboutTheDuplexer(*status))) {
        return;
    }
    const auto parsed = PPDModelFile::fileWithText(makePPDText(**result));
    require(parsed != nullptr, "the result is a PPD");
    const auto second = updated(manager, parsed, status);
    // In a PPD that was broken before, an updater may not find again what it wrote; and a second
    // run may read an attribute that has nothing after its colon, which the first had no need of.
    require(!second || isSameText(**second, **result) || !Judge(manager, parsed).passes(*second),
            "a second run changes nothing that the guard lets pass");
}

void updateFromQueue(OrbPPDConcreteUpdatingManager& manager, const ParsedPPD& PPD, Judge& judge) {
    const auto result = resultOf([&] {
        return manager.updatedPPDContentsForContents_PPDFile_queueName(PPD->text(), *PPD, "queue");
    });
    requireText(result);
    if (result) {
        (void)judge.passes(*result);
    }
    (void)resultOf(
        [&] { return manager.PPDUpdatingValuesForQueueWithName_deviceURI("queue", "file:"); });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input = textOfInput(data, size);
    const auto status = takenStatus(input);
    const ParsedPPD PPD = takenPPD(input);
    if (!status || !PPD) {
        return 0;
    }
    const ParsedPPD queue = takenPPD(input);
    setTheSameWorld(std::make_shared<const Testing::CoreWithQueue>(queue));
    static OrbPPDConcreteUpdatingManager manager;
    const auto classes = manager.registeredClasses();
    Judge judge(manager, PPD);
    updateFromPrinter(manager, PPD, *status, judge);
    if (queue) {
        updateFromQueue(manager, PPD, judge);
    }
    require(manager.registeredClasses() == classes, "the manager is as it was");
    return 0;
}
