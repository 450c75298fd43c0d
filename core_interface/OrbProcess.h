#pragma once

#include <memory>
#include <optional>
#include <string>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The process's environment variables, behind an interface so that a test sets them for itself
/// alone.
class TKPPDUPDATING_PUBLIC OrbEnvironment {
  public:
    virtual ~OrbEnvironment() = default;

    /// The value of the variable; nothing when it is not set. An empty value is a value.
    virtual std::optional<std::string> valueForVariable(const std::string& name) const = 0;

    /// The environment of this process.
    static std::shared_ptr<const OrbEnvironment> processEnvironment();
};

/// The clock, behind an interface so that a test sets it.
class TKPPDUPDATING_PUBLIC OrbClock {
  public:
    virtual ~OrbClock() = default;

    /// Seconds since the reference date, 1 January 2001 00:00:00 UTC; negative before it.
    virtual double secondsSinceReferenceDate() const = 0;

    /// The system's clock.
    static std::shared_ptr<const OrbClock> systemClock();
};

}  // namespace TkPPDUpdating
