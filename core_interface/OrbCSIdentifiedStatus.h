#pragma once

#include <string>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The names under which a printer, or the driver for one, is known. They are as somebody told
/// them, any bytes of any length: for comparing and showing, never for a PPD.
struct OrbCSPrinterIdentity {
    /// IEEE 1284 device IDs ("MFG:...;MDL:...;").
    std::vector<std::string> deviceIDs;
    /// Models, with the maker's name before them or without.
    std::vector<std::string> models;
    std::vector<std::string> makers;  ///< Makers, without a model.
};

/// An optional second interface of an `OrbCSDeviceStatus` that knows which printer it is of.
/// For telling printers apart only: no updater reads it.
class TKPPDUPDATING_PUBLIC OrbCSIdentifiedStatus {
  public:
    virtual ~OrbCSIdentifiedStatus() = default;

    /// What the printer calls itself; empty when it did not tell. Never changes during the life of
    /// the object.
    virtual const OrbCSPrinterIdentity& identity() const = 0;

    /// The same for a status of any class; empty for one without this interface.
    static OrbCSPrinterIdentity identityOf(const OrbCSDeviceStatus& status);
};

}  // namespace TkPPDUpdating
