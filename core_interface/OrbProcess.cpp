#include "core_interface/OrbProcess.h"

#include <chrono>
#include <cstdlib>

namespace TkPPDUpdating {

namespace {

class ProcessEnvironment : public OrbEnvironment {
  public:
    std::optional<std::string> valueForVariable(const std::string& name) const override {
        // The library never changes the environment; an application that does must not run it
        // meanwhile.
        const char* value = std::getenv(name.c_str());  // NOLINT(concurrency-mt-unsafe)
        return value ? std::optional<std::string>(value) : std::nullopt;
    }
};

class SystemClock : public OrbClock {
  public:
    double secondsSinceReferenceDate() const override {
        using namespace std::chrono;
        constexpr sys_days kReferenceDate = year{2001} / January / 1;
        return duration<double>(system_clock::now() - kReferenceDate).count();
    }
};

}  // namespace

std::shared_ptr<const OrbEnvironment> OrbEnvironment::processEnvironment() {
    static const auto environment = std::make_shared<const ProcessEnvironment>();
    return environment;
}

std::shared_ptr<const OrbClock> OrbClock::systemClock() {
    static const auto clock = std::make_shared<const SystemClock>();
    return clock;
}

}  // namespace TkPPDUpdating
