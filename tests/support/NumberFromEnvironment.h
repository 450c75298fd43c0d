#pragma once

#include <cstdlib>

namespace TkPPDUpdating::Testing {

/// The whole number in an environment variable, by which somebody makes a test run for longer;
/// `otherwise` when there is no such variable.
inline unsigned long numberFromEnvironment(const char* name, unsigned long otherwise) {
    const char* const value = std::getenv(name);
    return value ? std::strtoul(value, nullptr, 10) : otherwise;
}

}  // namespace TkPPDUpdating::Testing
