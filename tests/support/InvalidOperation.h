#pragma once

#include <string>

#include "core_interface/OrbInvalidOperationError.h"

namespace TkPPDUpdating::Testing {

/// The message of the invalid-operation error that the operation raises; "nothing was raised" when
/// it raises none.
template <typename Operation>
std::string messageOfInvalidOperation(const Operation& operation) {
    try {
        operation();
    } catch (const OrbInvalidOperationError& error) {
        return error.what();
    }
    return "nothing was raised";
}

}  // namespace TkPPDUpdating::Testing
