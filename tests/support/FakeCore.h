#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core_interface/OrbCUPSICCProfileSpecifier.h"
#include "core_interface/OrbPPDOption.h"
#include "core_interface/OrbPPDPageSize.h"
#include "core_interface/TkCore.h"

namespace TkPPDUpdating::Testing {

/// A parsed PPD without any content, for tests that only hand it around.
class EmptyPPDFile : public OrbPPDFile {
  public:
    const OrbPPDOption* optionForName(std::string_view /*name*/) const override { return nullptr; }
    std::vector<const OrbPPDAttribute*> attributesForName(
        std::string_view /*name*/) const override {
        return {};
    }
    std::vector<const OrbPPDAttribute*> attributesForName_spec(
        std::string_view /*name*/, std::string_view /*spec*/) const override {
        return {};
    }
    const OrbPPDPageSize* pageSizeForName(std::string_view /*name*/) const override {
        return nullptr;
    }
};

/// A parsed PPD that has one option, without choices, and every page size; remembers which options
/// it was asked for.
class OneOptionPPDFile : public EmptyPPDFile, OrbPPDOption, OrbPPDPageSize {
  public:
    explicit OneOptionPPDFile(std::string name) : name_(std::move(name)) {}

    const OrbPPDOption* optionForName(std::string_view name) const override {
        askedOptions.emplace_back(name);
        return name == name_ ? this : nullptr;
    }
    const OrbPPDPageSize* pageSizeForName(std::string_view /*name*/) const override { return this; }
    std::optional<std::string_view> defaultChoiceName() const override { return std::nullopt; }
    const OrbPPDChoice* choiceForName(std::string_view /*name*/) const override { return nullptr; }

    mutable std::vector<std::string> askedOptions;

  private:
    std::string name_;
};

/// A specifier whose qualifier the test says.
class FakeSpecifier : public OrbCUPSICCProfileSpecifier {
  public:
    explicit FakeSpecifier(std::string qualifier) : qualifier_(std::move(qualifier)) {}
    std::string CUPSQualifier() const override { return qualifier_; }

  private:
    std::string qualifier_;
};

/// A core library that gives the parsed PPDs that the test puts in, and remembers what it was
/// asked.
class FakeCore : public TkCore {
  public:
    using Files = std::map<std::string, std::shared_ptr<const OrbPPDFile>>;

    FakeCore(Files filesByPath, Files filesByQueueName)
        : filesByPath_(std::move(filesByPath)), filesByQueueName_(std::move(filesByQueueName)) {}

    std::shared_ptr<const OrbPPDFile> PPDFileWithContentsOfFile(
        const std::string& path) const override {
        askedPaths.push_back(path);
        return find(filesByPath_, path);
    }
    std::shared_ptr<const OrbPPDFile> PPDFileForQueueWithName(
        const std::string& queueName) const override {
        askedQueueNames.push_back(queueName);
        return find(filesByQueueName_, queueName);
    }
    std::shared_ptr<const OrbCustomMediaType> customMediaTypeWithPPDParameters(
        const OrbDictionary& parameters) const override {
        askedMediaTypeParameters.push_back(parameters);
        return mediaType;
    }
    std::shared_ptr<const OrbICCProfile> profileWithPPDParameters(
        const OrbDictionary& parameters) const override {
        askedProfileParameters.push_back(parameters);
        return profile;
    }
    std::shared_ptr<const OrbCUPSICCProfileSpecifier> specifierVer2WithProfileID(
        std::uint64_t profileID) const override {
        askedProfileIDs.push_back(profileID);
        return specifier;
    }

    std::shared_ptr<const OrbCustomMediaType> mediaType;
    std::shared_ptr<const OrbICCProfile> profile;
    std::shared_ptr<const OrbCUPSICCProfileSpecifier> specifier;

    mutable std::vector<std::string> askedPaths;
    mutable std::vector<std::string> askedQueueNames;
    mutable std::vector<OrbDictionary> askedMediaTypeParameters;
    mutable std::vector<OrbDictionary> askedProfileParameters;
    mutable std::vector<std::uint64_t> askedProfileIDs;

  private:
    static std::shared_ptr<const OrbPPDFile> find(const Files& files, const std::string& key) {
        const auto file = files.find(key);
        return file == files.end() ? nullptr : file->second;
    }

    Files filesByPath_;
    Files filesByQueueName_;
};

}  // namespace TkPPDUpdating::Testing
