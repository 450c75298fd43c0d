#pragma once

#include <any>
#include <functional>
#include <map>
#include <string>

namespace TkPPDUpdating {

/// A mutable dictionary with string keys whose values may be of any type: the updating context of a
/// run, and the parameters of a request for a device status.
///
/// The library itself stores `std::shared_ptr<const OrbCSDeviceStatus>` and `bool`; an updater of
/// the application may add entries of its own, visible to the updaters that run after it.
using OrbDictionary = std::map<std::string, std::any, std::less<>>;

}  // namespace TkPPDUpdating
