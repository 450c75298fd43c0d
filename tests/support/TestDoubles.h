#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCoreInterface.h"

/// Stand-ins for the outside world: a device, the communication-services library, the environment
/// and the clock, all in memory.
namespace TkPPDUpdating::Testing {

/// A device status that holds what the test puts in.
class FakeDeviceStatus : public OrbCSDeviceStatus {
  public:
    using Values = std::map<std::string, OrbCSStatusValue, std::less<>>;

    FakeDeviceStatus() = default;
    explicit FakeDeviceStatus(Values values) : values_(std::move(values)) {}

    const OrbCSStatusValue* statusValueForKey_error(std::string_view key,
                                                    std::string* /*error*/) const override {
        const auto value = values_.find(key);
        return value == values_.end() ? nullptr : &value->second;
    }

  private:
    Values values_;
};

/// Gives the same status, or none and why, for every URI, and remembers what it was asked. May be
/// asked by several threads at once.
class FakeCommunicationServices : public TkCommunicationServices {
  public:
    struct Request {
        std::optional<std::string> deviceURI;
        std::optional<OrbDictionary> parameters;
        bool hadErrorSlot = false;
    };

    explicit FakeCommunicationServices(std::shared_ptr<const OrbCSDeviceStatus> status)
        : status_(std::move(status)) {}
    explicit FakeCommunicationServices(OrbCSError failure) : failure_(std::move(failure)) {}

    std::shared_ptr<const OrbCSDeviceStatus> deviceStatusWithURI_parameters_error(
        std::optional<std::string_view> deviceURI, const OrbDictionary* parameters,
        OrbCSError* error) const override {
        const std::lock_guard lock(mutex_);
        requests.push_back({deviceURI ? std::optional<std::string>(*deviceURI) : std::nullopt,
                            parameters ? std::optional(*parameters) : std::nullopt,
                            error != nullptr});
        if (error && failure_) {
            *error = *failure_;
        }
        return status_;
    }

    mutable std::vector<Request> requests;

  private:
    std::shared_ptr<const OrbCSDeviceStatus> status_;
    std::optional<OrbCSError> failure_;
    mutable std::mutex mutex_;
};

/// A status that does not report one of its keys.
class StatusWithoutKey : public OrbCSDeviceStatus {
  public:
    StatusWithoutKey(std::shared_ptr<const OrbCSDeviceStatus> status, std::string_view key)
        : status_(std::move(status)), key_(key) {}

    const OrbCSStatusValue* statusValueForKey_error(std::string_view key,
                                                    std::string* error) const override {
        return key == key_ ? nullptr : status_->statusValueForKey_error(key, error);
    }

  private:
    std::shared_ptr<const OrbCSDeviceStatus> status_;
    std::string key_;
};

class FakeEnvironment : public OrbEnvironment {
  public:
    explicit FakeEnvironment(std::map<std::string, std::string> variables)
        : variables_(std::move(variables)) {}

    std::optional<std::string> valueForVariable(const std::string& name) const override {
        const auto variable = variables_.find(name);
        return variable == variables_.end() ? std::nullopt : std::optional(variable->second);
    }

  private:
    std::map<std::string, std::string> variables_;
};

class FakeClock : public OrbClock {
  public:
    explicit FakeClock(double seconds) : seconds_(seconds) {}
    double secondsSinceReferenceDate() const override { return seconds_; }

  private:
    double seconds_;
};

/// Puts what stands behind the interface back as it was, at the end of the scope.
class CoreInterfaceScope {
  public:
    CoreInterfaceScope() = default;
    CoreInterfaceScope(const CoreInterfaceScope&) = delete;
    CoreInterfaceScope& operator=(const CoreInterfaceScope&) = delete;
    ~CoreInterfaceScope() {
        OrbCoreInterface::setCore(core_);
        OrbCoreInterface::setCommunicationServices(services_);
        OrbCoreInterface::setEnvironment(environment_);
        OrbCoreInterface::setClock(clock_);
    }

  private:
    std::shared_ptr<const TkCore> core_ = OrbCoreInterface::core();
    std::shared_ptr<const TkCommunicationServices> services_ =
        OrbCoreInterface::communicationServices();
    std::shared_ptr<const OrbEnvironment> environment_ = OrbCoreInterface::environment();
    std::shared_ptr<const OrbClock> clock_ = OrbCoreInterface::clock();
};

}  // namespace TkPPDUpdating::Testing
