// The PPD processor against a plain list of strings: look-ups and edits in any order give the same
// in both. The input is a list of operations, one a line, an empty line, and the PPD text.
//
//   I keyword|spec|text|value   insert, wrapped (i: not wrapped)
//   D keyword|spec|value        delete
//   N number|line               insert a line
//   E number                    erase a line
//   R keyword|spec|value        range
//   V keyword|spec              value
//   L number                    insert location
//   C                           content
//   G                           languages
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "fuzz/FuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/ICUText.h"
#include "ppd/OrbPPDProcessor.h"
#include "tests/ppd/PPDTextModel.h"
#include "text/UTF8.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;
using Testing::PPDTextModel;

namespace {

using MaybeText = PPDTextModel::MaybeText;

MaybeText owned(Operation::Argument argument) {
    return argument ? MaybeText(std::string(*argument)) : std::nullopt;
}

/// The result, or nothing when it ends in the error that the interface names.
template <typename Function>
auto resultOf(const Function& function) -> std::optional<decltype(function())> {
    try {
        return function();
    } catch (const std::out_of_range&) {
        return std::nullopt;
    }
}

class Comparison {
  public:
    explicit Comparison(std::string_view text)
        : processor_(OrbPPDProcessor::processorWithPPDContent(makePPDText(std::string(text)))),
          model_(std::string(text)) {}

    void run(const Operation& operation) {
        switch (operation.letter) {
            case 'I':
            case 'i':
                return insert(operation);
            case 'D':
                return remove(operation);
            case 'V':
                return value(operation);
            case 'R':
                return range(operation);
            case 'N':
            case 'E':
                return editLine(operation);
            case 'L':
                return setLocation(operation);
            case 'C':
                return require(*processor_->content() == model_.content(), "the same content");
            case 'G':
                return requireSame([&] { return processor_->localizations(); },
                                   [&] { return model_.localizations(); }, "the same languages");
            default:
                return;
        }
    }

    void compareWhole() {
        const OrbPPDLines& lines = *processor_->lines();
        const auto& expected = model_.lines();
        require(lines.size() == expected.size(), "as many lines");
        for (std::size_t index = 0; index < expected.size(); ++index) {
            require(lines.at(index) == expected[index], "the same lines");
        }
        require(*processor_->content() == model_.content(), "the same content in the end");
    }

  private:
    template <typename OfProcessor, typename OfModel>
    static void requireSame(const OfProcessor& ofProcessor, const OfModel& ofModel,
                            const char* what) {
        require(resultOf(ofProcessor) == resultOf(ofModel), what);
    }

    void insert(const Operation& operation) {
        const auto& [keyword, spec, text, value] = operation.arguments;
        const bool wrap = operation.letter == 'I';
        requireSame(
            [&, keyword = keyword, spec = spec, text = text, value = value] {
                return processor_->insertAttributeWithKeyword_spec_text_value_wrap(
                    keyword, spec, text, value, wrap);
            },
            [&, keyword = keyword, spec = spec, text = text, value = value] {
                return model_.insert(owned(keyword), owned(spec), owned(text), owned(value), wrap);
            },
            "inserting ends alike");
        require(processor_->insertLocation() == model_.insertLocation(), "the same location");
    }

    void remove(const Operation& operation) {
        const auto& arguments = operation.arguments;
        requireSame(
            [&] {
                return processor_->deleteAttributeWithKeyword_spec_value(arguments[0], arguments[1],
                                                                         arguments[2]);
            },
            [&] {
                return model_.remove(owned(arguments[0]), owned(arguments[1]), owned(arguments[2]));
            },
            "deleting ends alike");
    }

    void value(const Operation& operation) {
        const auto& arguments = operation.arguments;
        requireSame(
            [&] {
                return processor_->valueForAttributeWithKeyword_spec(arguments[0], arguments[1]);
            },
            [&] { return model_.value(owned(arguments[0]), owned(arguments[1])); },
            "the same value");
    }

    void range(const Operation& operation) {
        const auto& arguments = operation.arguments;
        requireSame(
            [&] {
                const auto range = processor_->rangeOfAttributeWithKeyword_spec_value(
                    arguments[0], arguments[1], arguments[2]);
                return PPDTextModel::Range(range.location, range.length);
            },
            [&] {
                return model_.range(owned(arguments[0]), owned(arguments[1]), owned(arguments[2]));
            },
            "the same range");
    }

    void editLine(const Operation& operation) {
        const std::size_t number = numberIn(operation.arguments[0]);
        const std::size_t size = model_.lines().size();
        if (operation.letter == 'E' && size > 0) {
            processor_->lines()->erase(number % size, 1);
            model_.eraseLine(number % size);
        } else if (operation.letter == 'N') {
            const std::string line = owned(operation.arguments[1]).value_or("");
            processor_->lines()->insert(number % (size + 1), line);
            model_.insertLine(number % (size + 1), line);
        } else {
            return;
        }
        processor_->clearContent();
        model_.clearContent();
    }

    void setLocation(const Operation& operation) {
        const std::size_t number =
            operation.arguments[0] ? numberIn(operation.arguments[0]) : std::size_t{1} << 40U;
        processor_->setInsertLocation(number);
        model_.setInsertLocation(number);
        require(processor_->insertLocation() == model_.insertLocation(), "the same location");
    }

    std::unique_ptr<OrbPPDProcessor> processor_;
    PPDTextModel model_;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMostOperations = 50;
    std::string_view text = textOfInput(data, size);
    if (firstInvalidUTF8Byte(text)) {
        return 0;  // No text of the library; nothing says how case is ignored in it.
    }
    PPDTextModel::folding = foldedByICU;
    const std::string_view operations = takenUpTo(text, "\n\n");
    Comparison comparison(text);
    forEachOperation(operations, kMostOperations,
                     [&](const Operation& operation) { comparison.run(operation); });
    comparison.compareWhole();
    return 0;
}
