#pragma once

#include <cups/ipp.h>

#include <memory>

namespace TkPPDUpdating {

struct IPPMessageDeleter {
    void operator()(ipp_t* message) const { ippDelete(message); }
};

/// An IPP message of libcups that is owned.
using IPPMessage = std::unique_ptr<ipp_t, IPPMessageDeleter>;

}  // namespace TkPPDUpdating
