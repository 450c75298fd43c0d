#include "sync/PrinterAgreement.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

using Words = std::vector<std::string>;

/// The words of a name in lower case (ASCII): runs of letters, digits, what is not ASCII, and the
/// plus that tells "FS-1700+" from "FS-1700".
Words wordsOf(std::string_view name) {
    Words words;
    bool isInWord = false;
    for (const char each : name) {
        const char character = inASCIILowerCase(each);
        const bool isWordCharacter = isASCIILetterOrDigit(character) || character == '+' ||
                                     static_cast<unsigned char>(character) >= 0x80;
        if (isWordCharacter) {
            if (!isInWord) {
                words.emplace_back();
            }
            words.back() += character;
        }
        isInWord = isWordCharacter;
    }
    return words;
}

bool isBeginning(const Words& words, const Words& longer) {
    return words.size() <= longer.size() && std::equal(words.begin(), words.end(), longer.begin());
}

/// The value of a field of a device ID by one of its two names (IEEE 1284-2000, section 7.6);
/// nothing when it has none.
std::optional<std::string_view> fieldOfDeviceID(std::string_view deviceID, std::string_view name,
                                                std::string_view longName) {
    while (!deviceID.empty()) {
        const std::string_view field = deviceID.substr(0, deviceID.find(';'));
        deviceID.remove_prefix(std::min(deviceID.size(), field.size() + 1));
        const std::size_t colon = field.find(':');
        const Words key = wordsOf(field.substr(0, std::min(colon, field.size())));
        if (colon != std::string_view::npos && key.size() == 1 &&
            (key.front() == name || key.front() == longName)) {
            return field.substr(colon + 1);
        }
    }
    return std::nullopt;
}

/// The models of all fields, those of the device IDs last.
std::vector<std::string> modelsOf(const OrbCSPrinterIdentity& identity) {
    std::vector<std::string> models = identity.models;
    for (const std::string& deviceID : identity.deviceIDs) {
        if (const auto model = fieldOfDeviceID(deviceID, "mdl", "model")) {
            models.emplace_back(*model);
        }
    }
    return models;
}

/// What is known of a printer, in words.
struct Names {
    std::vector<Words> makers;
    std::vector<Words> models;
};

Names namesOf(const OrbCSPrinterIdentity& identity) {
    Names names;
    for (const std::string& model : modelsOf(identity)) {
        names.models.push_back(
            wordsOf(std::string_view(model).substr(0, model.find_first_of(",;"))));
    }
    for (const std::string& maker : identity.makers) {
        names.makers.push_back(wordsOf(maker));
    }
    for (const std::string& deviceID : identity.deviceIDs) {
        if (const auto maker = fieldOfDeviceID(deviceID, "mfg", "manufacturer")) {
            names.makers.push_back(wordsOf(*maker));
        }
    }
    std::erase_if(names.makers, [](const Words& words) { return words.empty(); });
    return names;
}

/// How many words of the model are the maker's name: all of it, or its first word, which is often
/// all that a model has.
std::size_t lengthOfMaker(const Words& model, const Words& maker) {
    return isBeginning(maker, model) ? maker.size() : isBeginning({maker.front()}, model) ? 1 : 0;
}

bool haveSameMaker(const std::vector<Words>& some, const std::vector<Words>& others) {
    return std::ranges::any_of(some, [&others](const Words& one) {
        return std::ranges::any_of(others, [&one](const Words& other) {
            return isBeginning(one, other) || isBeginning(other, one);
        });
    });
}

bool haveMakerOf(const std::vector<Words>& models, const std::vector<Words>& makers) {
    return std::ranges::any_of(models, [&makers](const Words& model) {
        return std::ranges::any_of(
            makers, [&model](const Words& maker) { return lengthOfMaker(model, maker) > 0; });
    });
}

bool areSameMakers(const Names& one, const Names& other) {
    return one.makers.empty() || other.makers.empty() || haveSameMaker(one.makers, other.makers) ||
           haveMakerOf(one.models, other.makers) || haveMakerOf(other.models, one.makers);
}

/// A model without what stands around it.
struct Model {
    /// Its letters and digits, with a blank only between two numbers.
    std::string text;
    std::size_t lastWordLength = 0;
    bool isSeries = false;
};

Model modelOf(Words words, const std::vector<Words>& makers) {
    std::size_t makerLength = 0;
    for (const Words& maker : makers) {
        makerLength = std::max(makerLength, lengthOfMaker(words, maker));
    }
    words.erase(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(makerLength));
    Model model;
    while (!words.empty() && words.back() == "series") {
        words.pop_back();
        model.isSeries = true;
    }
    for (const std::string& word : words) {
        const bool areNumbers =
            !model.text.empty() && isASCIIDigit(model.text.back()) && isASCIIDigit(word.front());
        model.text += (areNumbers ? " " : "") + word;
        model.lastWordLength = word.size();
    }
    return model;
}

/// Whether the model is of the series: it has letters behind the number with which that ends.
bool isOfSeries(const Model& model, const Model& series) {
    if (!series.isSeries || series.text.empty() || !isASCIIDigit(series.text.back()) ||
        !model.text.starts_with(series.text)) {
        return false;
    }
    const std::string_view rest = std::string_view(model.text).substr(series.text.size());
    return rest.size() < model.lastWordLength && std::ranges::all_of(rest, isASCIILowerCaseLetter);
}

bool areSame(const Model& one, const Model& other) {
    return !one.text.empty() &&
           (one.text == other.text || isOfSeries(one, other) || isOfSeries(other, one));
}

void addValues(const OrbPPDFile& PPDFile, std::string_view keyword,
               std::vector<std::string>& values) {
    constexpr std::size_t kMost = 50;  // Every name is compared with every other.
    for (const OrbPPDAttribute* attribute : PPDFile.attributesForName(keyword)) {
        const auto value = attribute->value();
        if (value && !value->empty() && values.size() < kMost) {
            values.emplace_back(*value);
        }
    }
}

}  // namespace

OrbCSPrinterIdentity PrinterAgreement::identityOfPPD(const OrbPPDFile& PPDFile) {
    OrbCSPrinterIdentity identity;
    addValues(PPDFile, "1284DeviceID", identity.deviceIDs);
    addValues(PPDFile, "ModelName", identity.models);
    addValues(PPDFile, "Product", identity.models);
    addValues(PPDFile, "Manufacturer", identity.makers);
    return identity;
}

bool PrinterAgreement::saysProduct(const OrbPPDFile& PPDFile) {
    const auto products = PPDFile.attributesForName("Product");
    return std::ranges::any_of(products, [](const OrbPPDAttribute* product) {
        const auto value = product->value();
        return value && value->starts_with('(') && value->ends_with(')') &&
               !wordsOf(*value).empty();
    });
}

bool PrinterAgreement::agree(const OrbCSPrinterIdentity& one, const OrbCSPrinterIdentity& other) {
    const Names some = namesOf(one);
    const Names others = namesOf(other);
    if (!areSameMakers(some, others)) {
        return false;
    }
    std::vector<Words> makers = some.makers;
    makers.insert(makers.end(), others.makers.begin(), others.makers.end());
    std::vector<Model> otherModels;
    std::ranges::transform(others.models, std::back_inserter(otherModels),
                           [&makers](const Words& words) { return modelOf(words, makers); });
    return std::ranges::any_of(some.models, [&](const Words& words) {
        const Model model = modelOf(words, makers);
        return std::ranges::any_of(otherModels,
                                   [&model](const Model& each) { return areSame(model, each); });
    });
}

std::string PrinterAgreement::shownModel(const OrbCSPrinterIdentity& identity) {
    constexpr std::size_t kLongest = 80;
    constexpr std::string_view kEllipsis = "...";
    for (std::string& model : modelsOf(identity)) {
        if (wordsOf(model).empty()) {
            continue;
        }
        if (model.size() > kLongest) {
            model.resize(kLongest - kEllipsis.size());
            model += kEllipsis;
        }
        return std::move(model);
    }
    return {};
}

}  // namespace TkPPDUpdating
