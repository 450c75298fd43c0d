#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core_interface/OrbCSError.h"
#include "core_interface/OrbCSStatusValue.h"
#include "core_interface/OrbDictionary.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// What one printer says of itself, by key (`core_interface/TkCSKeys.h`).
///
/// Callers: a null value means that the printer did not report it. Nothing is raised.
///
/// Implementers: the value under a key has the type that `OrbCSStatusValue.h` gives for it. Every
/// text must be harmless where it will stand in a PPD (`ppd/PPDTextSafety.h`); a text that is not
/// is not handed over. Answers never change during the life of the object.
class TKPPDUPDATING_PUBLIC OrbCSDeviceStatus {
  public:
    virtual ~OrbCSDeviceStatus() = default;

    /// Obtains the status of the printer behind a device URI through the communication-services
    /// library that the application has set (`OrbCoreInterface::setCommunicationServices`).
    ///
    /// `parameters` may be null; `kTkCSIsCUPSFilterModeKey` in it governs how the status is
    /// obtained. Null on failure, and also when no URI is given or no library is set; the cause and
    /// reason are then in `*error` when `error` is not null.
    static std::shared_ptr<const OrbCSDeviceStatus> deviceStatusWithURI_parameters_error(
        std::optional<std::string_view> deviceURI, const OrbDictionary* parameters,
        OrbCSError* error);

    /// The value under `key`, owned by the status and valid as long as it is, or null; the reason
    /// for null is in `*error` when there is one to tell and `error` is not null.
    virtual const OrbCSStatusValue* statusValueForKey_error(std::string_view key,
                                                            std::string* error) const = 0;

    /// The value under `key` as the type that stands there, or null when the printer did not report
    /// it (or reported another type).
    template <typename Value>
    const Value* statusValueForKey(std::string_view key) const {
        const OrbCSStatusValue* value = statusValueForKey_error(key, nullptr);
        return value ? std::get_if<Value>(value) : nullptr;
    }
};

}  // namespace TkPPDUpdating
