#include "benchmarks/GeneratedPPD.h"

#include <initializer_list>
#include <utility>

namespace TkPPDUpdating::Benchmarks {

namespace {

constexpr int kChoicesOfOption = 6;

std::string keywordOfOption(int option) {
    return "ZrOption" + std::to_string(option);
}

void appendOption(std::string& text, int option) {
    const std::string keyword = keywordOfOption(option);
    text += "*OpenUI *" + keyword + "/Option " + std::to_string(option) + ": PickOne\n";
    text += "*Default" + keyword + ": Choice0\n";
    for (int choice = 0; choice < kChoicesOfOption; ++choice) {
        const std::string name = "Choice" + std::to_string(choice);
        text += "*" + keyword + " " + name + "/Choice number " + std::to_string(choice) +
                ": \"<</Zr" + std::to_string(option) + " " + std::to_string(choice) +
                ">>\n  setpagedevice\"\n*End\n";
        for (const char* language : {"de", "fr", "it", "ja"}) {
            (text += "*") += language;
            text += "." + keyword + " " + name +
                    "/\xC3\x9C"
                    "bersetzung " +
                    std::to_string(choice) + ": \"\"\n";
        }
    }
    text += "*CloseUI: *" + keyword + "\n";
    for (int choice = 1; choice < kChoicesOfOption; ++choice) {
        text += "*UIConstraints: *" + keyword + " Choice" + std::to_string(choice) + " *" +
                keywordOfOption(option + 1) + " Choice0\n";
    }
}

std::pair<std::string, int> textAndOptionCount(std::size_t leastBytes) {
    std::string text = "*PPD-Adobe: \"4.3\"\n*cupsVersion: 2.4\n*cupsLanguages: \"de fr it ja\"\n";
    int options = 0;
    while (text.size() < leastBytes) {
        appendOption(text, options);
        ++options;
    }
    text += "*ZrMaxSupportedResolution: 600\n*ZrPenDyes: \"C,M,Y,K\"\n*BPECalibrationDue: True\n";
    return {std::move(text), options};
}

}  // namespace

PPDText generatedPPD(std::size_t leastBytes) {
    return makePPDText(textAndOptionCount(leastBytes).first);
}

std::string keywordOfMiddleOption(std::size_t leastBytes) {
    return keywordOfOption(textAndOptionCount(leastBytes).second / 2);
}

}  // namespace TkPPDUpdating::Benchmarks
