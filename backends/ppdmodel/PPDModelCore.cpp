#include "backends/ppdmodel/PPDModelCore.h"

#include <any>
#include <optional>
#include <string_view>
#include <utility>

#include "backends/ppdmodel/PPDModelFile.h"
#include "backends/schemes/PlainCustomMediaType.h"
#include "backends/schemes/PlainICCProfile.h"
#include "backends/schemes/QueueName.h"
#include "core_interface/OrbCoreInterface.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

class DecimalSpecifier : public OrbCUPSICCProfileSpecifier {
  public:
    explicit DecimalSpecifier(std::uint64_t profileID) : profileID_(profileID) {}
    std::string CUPSQualifier() const override { return std::to_string(profileID_); }

  private:
    std::uint64_t profileID_;
};

/// The entry when it is there and of that type, else null.
template <typename Value>
const Value* entry(const OrbDictionary& parameters, std::string_view key) {
    const auto found = parameters.find(key);
    return found == parameters.end() ? nullptr : std::any_cast<Value>(&found->second);
}

std::optional<std::string> text(const OrbDictionary& parameters, std::string_view key) {
    const auto* value = entry<std::string>(parameters, key);
    return value ? std::optional(*value) : std::nullopt;
}

std::string pathOfQueuePPD(const std::string& queueName) {
    const auto serverRoot =
        OrbCoreInterface::environment()->valueForVariable("CUPS_SERVERROOT").value_or("");
    // An empty value names no directory: as when it is not set.
    return (serverRoot.empty() ? "/etc/cups" : serverRoot) + "/ppd/" + queueName + ".ppd";
}

}  // namespace

PPDModelCore::PPDModelCore(QueuePPDSource source) : source_(std::move(source)) {}

std::shared_ptr<const OrbPPDFile> PPDModelCore::PPDFileWithContentsOfFile(
    const std::string& path) const {
    return PPDModelFile::fileWithContentsOfFile(path);
}

std::shared_ptr<const OrbPPDFile> PPDModelCore::PPDFileWithContents(
    const PPDText& contents, const std::string& /*path*/) const {
    return PPDModelFile::fileWithText(contents);
}

std::shared_ptr<const OrbPPDFile> PPDModelCore::PPDFileForQueueWithName(
    const std::string& queueName) const {
    std::string ignored;
    return queuePPDFile(queueName, ignored);
}

std::shared_ptr<const PPDModelFile> PPDModelCore::queuePPDFile(const std::string& queueName,
                                                               std::string& reason) const {
    reason.clear();
    if (!couldBeQueueName(queueName)) {
        reason = kNoQueueName;
        return nullptr;
    }
    std::string fromSource;
    if (auto answer = source_ ? source_(queueName, fromSource) : std::nullopt) {
        if (!*answer) {
            reason = fromSource;
            return nullptr;
        }
        auto file = PPDModelFile::fileWithText(std::move(*answer), &reason);
        if (!file) {
            reason.insert(0, "the queue's PPD ");
        }
        return file;
    }
    const std::string path = pathOfQueuePPD(queueName);
    auto file = PPDModelFile::fileWithContentsOfFile(path, &reason);
    if (!file) {
        reason = (fromSource.empty() ? "" : fromSource + "; ") + path + ": " + reason;
    }
    return file;
}

std::shared_ptr<const OrbCustomMediaType> PPDModelCore::customMediaTypeWithPPDParameters(
    const OrbDictionary& parameters) const {
    const auto* profile =
        entry<std::shared_ptr<const OrbICCProfile>>(parameters, kTkPPDCustomMediaTypeICCProfileKey);
    return std::make_shared<const PlainCustomMediaType>(
        text(parameters, kTkPPDCustomMediaTypeNameKey),
        text(parameters, kTkPPDCustomMediaTypeIDKey),
        text(parameters, kTkPPDCustomMediaTypeParentIDKey), profile ? *profile : nullptr);
}

std::shared_ptr<const OrbICCProfile> PPDModelCore::profileWithPPDParameters(
    const OrbDictionary& parameters) const {
    return std::make_shared<const PlainICCProfile>(text(parameters, kTkPPDProfileURLKey),
                                                   text(parameters, kTkPPDProfileQualifierVer2Key),
                                                   std::nullopt);
}

std::shared_ptr<const OrbCUPSICCProfileSpecifier> PPDModelCore::specifierVer2WithProfileID(
    std::uint64_t profileID) const {
    return std::make_shared<const DecimalSpecifier>(profileID);
}

}  // namespace TkPPDUpdating
