#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace TkPPDUpdating::Testing {

/// What removing an option's constraints means, word by word and without a thought for its cost:
/// every removal edits the whole text, comments are searched for from its start again and again,
/// and constraint lines are gathered into runs. The fast way must give the same.
class ConstraintRemovalModel {
  public:
    static std::string removed(std::string text, const std::string& optionKeyword) {
        removeComments(text, optionKeyword);
        removeConstraintLines(text, optionKeyword);
        return text;
    }

  private:
    struct Run {
        std::size_t start;
        std::size_t end;
    };

    static void removeComments(std::string& text, const std::string& optionKeyword) {
        const std::string comment = "*% " + optionKeyword + " <-> ";
        while (true) {
            const std::size_t start = text.find(comment);
            if (start == std::string::npos) {
                return;
            }
            const std::size_t lineFeed = text.find('\n', start + comment.size());
            if (lineFeed == std::string::npos) {
                return;
            }
            text.erase(start, lineFeed + 1 - start);
        }
    }

    static void removeConstraintLines(std::string& text, const std::string& optionKeyword) {
        const std::string beforeSpace = "*" + optionKeyword + " ";
        const std::string beforeLineFeed = "*" + optionKeyword + "\n";
        std::optional<Run> run;
        std::size_t location = 0;
        while (true) {
            const std::size_t start = text.find("*UIConstraints:", location);
            const std::size_t lineFeed =
                start == std::string::npos ? start : text.find('\n', start);
            const bool walkEnds = lineFeed == std::string::npos;
            const std::string line =
                walkEnds ? std::string() : text.substr(start, lineFeed + 1 - start);
            const bool isHit = line.find(beforeSpace) != std::string::npos ||
                               line.find(beforeLineFeed) != std::string::npos;
            if (run && (!isHit || start != run->end)) {
                text.erase(run->start, run->end - run->start);
                location = run->start == 0 ? 0 : run->start - 1;
                run.reset();
                continue;
            }
            if (walkEnds) {
                return;
            }
            location = lineFeed + 1;
            if (isHit) {
                run = Run{run ? run->start : start, location};
            }
        }
    }
};

}  // namespace TkPPDUpdating::Testing
