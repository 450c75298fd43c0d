#include "c_interface/Answer.h"

#include <new>
#include <string_view>

#include "c_interface/Arguments.h"
#include "c_interface/Failure.h"
#include "core_interface/OrbCSStatusValue.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDTextSafety.h"

using namespace TkPPDUpdating;

namespace {

/// Runs a call-back's call; what it raises is its result, and stays in the answer.
template <typename Call>
TkPPDUpdatingResult answered(TkPPDUpdatingAnswer* answer, const Call& call) noexcept {
    if (!answer) {
        return TkPPDUpdatingBadArgument;
    }
    try {
        try {
            call(*answer);
            return TkPPDUpdatingDone;
        } catch (const CFailure& failure) {
            answer->error = failure.what();
            return failure.result();
        }
    } catch (const std::bad_alloc&) {
        return TkPPDUpdatingNoMemory;
    } catch (...) {
        return TkPPDUpdatingInternalError;
    }
}

/// Whether it found something; nothing is raised.
template <typename Call>
int found(const Call& call) noexcept {
    try {
        return call() ? 1 : 0;
    } catch (...) {
        return 0;
    }
}

void checkValue(std::string_view value) {
    const bool isQuoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
    const auto reason = isQuoted ? reasonTextCannotStandInPPDLine(value.substr(1, value.size() - 2))
                                 : reasonPrinterTextIsRefused(PrinterText::unquotedValue, value);
    if (reason) {
        throw CFailure(TkPPDUpdatingBadArgument, "value: " + *reason);
    }
}

std::optional<std::string> accessoryValue(const OrbCSDeviceStatus& status, std::string_view name) {
    const auto* const accessories =
        status.statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
    if (accessories) {
        for (const OrbCSDeviceAccessory& accessory : *accessories) {
            if (accessory.name == name) {
                return accessory.isInstalled ? "True" : "False";
            }
        }
    }
    return std::nullopt;
}

std::optional<std::string> pensValue(const OrbCSDeviceStatus& status, std::string_view part) {
    const auto* const pens =
        status.statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey);
    if (!pens) {
        return std::nullopt;
    }
    if (part == kTkCSPensCodeNamePart) {
        return pens->codeName;
    }
    const auto value = pens->PPDAttributeValues.find(part);
    return value == pens->PPDAttributeValues.end() ? std::nullopt : std::optional(value->second);
}

std::optional<std::string> numberValue(const OrbCSDeviceStatus& status, std::string_view key) {
    const OrbCSStatusValue* const value = status.statusValueForKey_error(key, nullptr);
    if (!value) {
        return std::nullopt;
    }
    if (const auto* const table = std::get_if<OrbCSLinTable>(value)) {
        return table->timestamp ? std::optional(table->timestamp->stringValue()) : std::nullopt;
    }
    const auto* const number = std::get_if<OrbCSNumberOrString>(value);
    return number ? std::optional(number->stringValue()) : std::nullopt;
}

std::optional<std::string> statusValue(const OrbCSDeviceStatus& status, std::string_view entry) {
    const std::size_t dot = entry.find('.');
    if (dot == std::string_view::npos) {
        return numberValue(status, entry);
    }
    const std::string_view key = entry.substr(0, dot);
    const std::string_view part = entry.substr(dot + 1);
    if (key == kTkCSDeviceAccessoriesKey) {
        return accessoryValue(status, part);
    }
    return key == kTkCSInstalledPensConfigurationKey ? pensValue(status, part) : std::nullopt;
}

}  // namespace

TkPPDUpdatingResult TkPPDUpdatingAnswer_setText(TkPPDUpdatingAnswer* answer,
                                                TkPPDUpdatingText text) {
    return answered(answer, [&](TkPPDUpdatingAnswer& own) {
        own.text = std::string(checkedText(text, "answer", TkPPDUpdatingMostBytesOfText));
    });
}

TkPPDUpdatingResult TkPPDUpdatingAnswer_setValue(TkPPDUpdatingAnswer* answer,
                                                 TkPPDUpdatingText keyword,
                                                 TkPPDUpdatingText value) {
    return answered(answer, [&](TkPPDUpdatingAnswer& own) {
        const std::string key(checkedName(keyword, "keyword"));
        const std::string_view text = checkedName(value, "value");
        checkValue(text);
        own.values.insert_or_assign(key, std::string(text));
    });
}

int TkPPDUpdatingStatus_value(const TkPPDUpdatingStatus* status, TkPPDUpdatingText entry,
                              TkPPDUpdatingText* value) {
    return found([&] {
        auto text = status && status->status && value
                        ? statusValue(*status->status, checkedName(entry, "entry"))
                        : std::nullopt;
        if (!text) {
            return false;
        }
        *value = textForC(status->texts.emplace_back(*std::move(text)));
        return true;
    });
}

int TkPPDUpdatingPPD_value(const TkPPDUpdatingPPD* PPD, TkPPDUpdatingText keyword,
                           TkPPDUpdatingText* value) {
    return found([&] {
        const OrbPPDAttribute* const attribute =
            PPD && value
                ? OrbPPDFile::firstAttributeForName(PPD->PPD, checkedName(keyword, "keyword"))
                : nullptr;
        const auto text = attribute ? attribute->value() : std::nullopt;
        if (text) {
            *value = textForC(*text);
        }
        return text.has_value();
    });
}

int TkPPDUpdatingPPD_hasChoice(const TkPPDUpdatingPPD* PPD, TkPPDUpdatingText option,
                               TkPPDUpdatingText choice) {
    return found([&] {
        const OrbPPDOption* const found =
            PPD && PPD->PPD ? PPD->PPD->optionForName(checkedName(option, "option")) : nullptr;
        return found && found->choiceForName(checkedName(choice, "choice"));
    });
}
