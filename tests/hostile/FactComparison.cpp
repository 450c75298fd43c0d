#include "tests/hostile/FactComparison.h"

#include <set>

#include "tests/hostile/OrderedWalk.h"

namespace TkPPDUpdating::Testing {

namespace {

using Names = std::set<std::string, std::less<>>;

bool isPensOption(std::string_view option) {
    return option == "ZrPenConfig" || option == "ZrPenConfigOptions";
}

bool hasControlCharacter(const LibcupsFact& fact) {
    for (const std::string* const text :
         {&fact.keyword, &fact.optionKeyword, &fact.text, &fact.value}) {
        for (std::size_t at = 0; at < text->size(); ++at) {
            const auto byte = static_cast<unsigned char>((*text)[at]);
            const bool isC1 = byte == 0xC2 && at + 1 < text->size() &&
                              static_cast<unsigned char>((*text)[at + 1]) < 0xA0;
            if (byte < 0x20 || byte == 0x7F || isC1) {
                return true;
            }
        }
    }
    return false;
}

/// The category of many media types is wrapped, so that its value has line feeds.
bool isWrappedCategory(const LibcupsFact& fact) {
    return fact.keyword == "ZrMediaTypeCategory" &&
           fact.value.find_first_not_of("custom0123456789 \n") == std::string::npos;
}

/// Code that a printer must not have put there, behind a choice that is new.
bool hasForeignCode(const LibcupsFact& choice) {
    const std::string code = choice.keyword == "MediaType"
                                 ? "<</MediaType(" + choice.optionKeyword + ")>>setpagedevice"
                                 : "";
    return choice.value != code;
}

/// Looks at what is new.
class NewFacts {
  public:
    explicit NewFacts(FactDifference& difference) : difference_(difference) {}

    void add(const LibcupsFact& fact) {
        if (hasControlCharacter(fact) && !isWrappedCategory(fact)) {
            difference_.findings.push_back("a control character: " + fact.shown());
        }
        if (fact.kind != "choice" || isOfPrinter(fact) || !isOfCustomMedia(fact)) {
            return;
        }
        const bool isMedia = fact.keyword == "MediaType";
        ++(isMedia ? difference_.mediaTypes : difference_.profiles);
        if (isMedia && !choices_.insert(fact.optionKeyword).second) {
            difference_.findings.push_back("a choice twice: " + fact.shown());
        }
        if (hasForeignCode(fact)) {
            difference_.findings.push_back("foreign code: " + fact.shown());
        }
    }

  private:
    FactDifference& difference_;
    Names choices_;
};

}  // namespace

bool isAttributeOfPrinters(std::string_view keyword) {
    static const Names kNames = {
        "BPECalibrationDue",      "ZrMaxSupportedResolution", "ZrEPRPageTypes",
        "ZrEPRMinPageCounts",     "ZrEPRMaxPageCounts",       "ZrEPRStates",
        "ZrEPRLastUpdate",        "ZrPensConfigName",         "ZrPenDyes",
        "ZrPenDropVolumes",       "ZrPenEverydayStatus",      "ZrPenFamilyIDs",
        "ZrPenActualDropVolumes", "ZrPenNominalDropVolumes",  "ZrPenBriskDropVolumes",
        "ZrPenInkSufficient",     "ZrPenHasPrintheadDefect"};
    return kNames.contains(keyword);
}

bool isCustomName(std::string_view name) {
    return name.starts_with("custom") && name.size() > 6 &&
           name.find_first_not_of("0123456789", 6) == std::string_view::npos;
}

std::string_view withoutLanguage(std::string_view keyword) {
    const std::size_t stop = keyword.find('.');
    return stop == std::string_view::npos ? keyword : keyword.substr(stop + 1);
}

bool isOfCustomMedia(const LibcupsFact& fact) {
    if (fact.kind == "choice") {
        return (fact.keyword == "MediaType" && isCustomName(fact.optionKeyword)) ||
               fact.keyword == "ZrICCProfileId2";
    }
    const std::string_view keyword = withoutLanguage(fact.keyword);
    if (fact.kind != "attribute") {
        return false;
    }
    return (keyword == "MediaType" && isCustomName(fact.optionKeyword)) ||
           (keyword == "ZrICCProfileId2" && !fact.optionKeyword.empty()) ||
           (keyword == "cupsICCProfile" && fact.optionKeyword.starts_with("..")) ||
           (keyword == "ZrChoiceProperties" &&
            fact.optionKeyword.starts_with("MediaType.custom")) ||
           // libcups puts a line before an option keyword that could be taken for custom values.
           (keyword == "ZrMediaTypeCategory" && fact.optionKeyword == "_custom");
}

bool isOfPrinter(const LibcupsFact& fact) {
    if (fact.kind == "attribute") {
        const bool isPensDefault = fact.keyword.starts_with("Default") &&
                                   isPensOption(std::string_view(fact.keyword).substr(7));
        return fact.optionKeyword.empty() && fact.text.empty() &&
               (isAttributeOfPrinters(fact.keyword) || isPensDefault);
    }
    return fact.kind == "default" && isPensOption(fact.keyword);
}

FactDifference differenceOfFacts(const LibcupsFacts& before, const LibcupsFacts& after,
                                 const FactRules& rules) {
    using Step = OrderedWalk<LibcupsFact>::Step;
    FactDifference difference;
    NewFacts added(difference);
    const auto mayGo = [&](const LibcupsFact* /*previous*/, const LibcupsFact& fact) {
        return rules.mayGo(fact);
    };
    OrderedWalk<LibcupsFact> walk(before, mayGo, rules.mayGoSoOften);
    for (const LibcupsFact& fact : after) {
        const Step step = walk.take(fact, rules.mayBeNew(fact), false);
        if (step == Step::added) {
            added.add(fact);
        } else if (step == Step::foreign) {
            difference.findings.push_back("new or another: " + fact.shown());
        }
    }
    if (const LibcupsFact* const lost = walk.lost()) {
        difference.findings.push_back("lost: " + lost->shown());
    }
    return difference;
}

}  // namespace TkPPDUpdating::Testing
