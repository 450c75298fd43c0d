#include "c_interface/OwnUpdater.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <span>

#include "c_interface/Answer.h"
#include "c_interface/Arguments.h"
#include "c_interface/Failure.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "manager/ITkPPDStatusReading.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "updaters/attributes/OrbPPDAttributesUpdater.h"

namespace TkPPDUpdating {

namespace {

/// Raises `CFailure` when a call-back failed, or an answer of it was refused.
void checkCall(std::string_view updater, const char* call, int result,
               const TkPPDUpdatingAnswer& answer) {
    if (result != 0 || !answer.error.empty()) {
        throw CFailure(
            TkPPDUpdatingCallFailed,
            "updater " + std::string(updater) + ", " + call + ": " +
                (answer.error.empty() ? "ended with " + std::to_string(result) : answer.error));
    }
}

/// Calls what the caller gave.
class OwnUpdater : public OrbPPDAttributesUpdater {
  public:
    explicit OwnUpdater(const OwnUpdaterClass& ownClass) : class_(ownClass) {}

    std::span<const std::string_view> attributeNames() const override { return class_.keywords(); }

    bool isApplicableForPPDFile(const OrbPPDFile* PPDFile) override {
        const auto call = class_.calls().isApplicable;
        if (!call || !PPDFile) {
            return OrbPPDAttributesUpdater::isApplicableForPPDFile(PPDFile);
        }
        const TkPPDUpdatingPPD PPD{PPDFile};
        int applies = 0;
        checkCall(class_.theClass().name(), "isApplicable",
                  call(class_.calls().context, &PPD, &applies), {});
        return applies != 0;
    }

    std::optional<OrbPPDUpdatingValues> attributesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context) override {
        const auto status = OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context);
        const TkPPDUpdatingStatus handed{status.get(), {}};
        TkPPDUpdatingAnswer answer;
        const int result =
            class_.calls().values(class_.calls().context, status ? &handed : nullptr, &answer);
        checkCall(class_.theClass().name(), "values", result, answer);
        checkKeywords(answer);
        return std::move(answer.values);
    }

  private:
    void checkKeywords(const TkPPDUpdatingAnswer& answer) const {
        const auto& own = class_.keywords();
        for (const auto& [keyword, value] : answer.values) {
            if (std::find(own.begin(), own.end(), keyword) == own.end()) {
                throw CFailure(TkPPDUpdatingCallFailed,
                               "updater " + std::string(class_.theClass().name()) +
                                   ": the keyword \"" + keyword + "\" is none of its own");
            }
        }
    }

    const OwnUpdaterClass& class_;
};

/// One that says what it reads.
class ReadingOwnUpdater : public OwnUpdater, public ITkPPDStatusReading {
  public:
    explicit ReadingOwnUpdater(const OwnUpdaterClass& ownClass)
        : OwnUpdater(ownClass), entries_(ownClass.entries()) {}

    std::vector<std::string> statusEntriesRead() const override { return entries_; }

  private:
    std::vector<std::string> entries_;
};

std::unique_ptr<ITkPPDUpdater> newOwnUpdater(const void* context) {
    const auto& ownClass = *static_cast<const OwnUpdaterClass*>(context);
    if (ownClass.calls().entries) {
        return std::make_unique<ReadingOwnUpdater>(ownClass);
    }
    return std::make_unique<OwnUpdater>(ownClass);
}

/// The texts of an array whose end is null.
std::vector<std::string> texts(const char* const* array, const char* name) {
    constexpr std::size_t kMost = 1000;
    std::vector<std::string> all;
    for (; array && *array; ++array) {
        if (all.size() == kMost) {
            throw CFailure(TkPPDUpdatingBadArgument,
                           "updater: its " + std::string(name) + " have no null at their end");
        }
        all.emplace_back(checkedName(TkPPDUpdatingTextOfString(*array), name));
    }
    return all;
}

bool isLetterOrDigit(char each) {
    return (each >= '0' && each <= '9') || (each >= 'A' && each <= 'Z') ||
           (each >= 'a' && each <= 'z');
}

/// A main keyword of a PPD (PPD specification 4.3: printable ASCII without what ends it).
bool isMainKeyword(std::string_view keyword) {
    return std::all_of(keyword.begin(), keyword.end(), [](char each) {
        return each > ' ' && each < '\x7F' && std::strchr("*/:\"<>", each) == nullptr;
    });
}

const TkPPDUpdatingUpdater& checked(const TkPPDUpdatingUpdater& updater) {
    if (updater.size != sizeof(TkPPDUpdatingUpdater)) {
        throw CFailure(TkPPDUpdatingBadArgument, "updater: its size is not that of the structure");
    }
    checkNotNull(reinterpret_cast<const void*>(updater.values), "updater: its function values");
    checkNotNull(static_cast<const void*>(updater.keywords), "updater: its list of keywords");
    return updater;
}

}  // namespace

OwnUpdaterClass::OwnUpdaterClass(const TkPPDUpdatingUpdater& updater)
    : calls_(checked(updater)),
      name_(checkedName(updater.name, "updater: its name")),
      keywords_(texts(updater.keywords, "keywords")),
      keywordViews_(keywords_.begin(), keywords_.end()),
      entries_(texts(updater.entries, "entries")),
      class_(name_, &newOwnUpdater, this) {
    if (!std::all_of(name_.begin(), name_.end(), isLetterOrDigit)) {
        throw CFailure(TkPPDUpdatingBadArgument,
                       "updater: its name may have ASCII letters and digits only");
    }
    if (keywords_.empty() || !std::all_of(keywords_.begin(), keywords_.end(), isMainKeyword)) {
        throw CFailure(
            TkPPDUpdatingBadArgument,
            "updater: its keywords are none, or one of them is no main keyword of a PPD");
    }
}

}  // namespace TkPPDUpdating
