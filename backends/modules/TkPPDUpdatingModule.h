#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <utility>

#include "core_interface/OrbCoreInterface.h"
#include "text/LibraryVersion.h"
#include "text/SeededTextHash.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

class DeviceStatusSchemes;
class OrbPPDUpdatingManager;
class QueueScheduler;

/// What a module has: a shared object that brings updaters or device-status schemes into a program
/// that was built without them. Its source defines the one object that is declared below:
///
///     const TkPPDUpdating::Module TkPPDUpdatingModule = {
///         .registerUpdaters = [](TkPPDUpdating::OrbPPDUpdatingManager& manager) {
///             manager.registerUpdaterClass(&TkPPDUpdating::OrbClassOf<MyUpdater>());
///         }};
///
/// Whoever loads a module shares classes with it, so that both must be of one MAJOR.MINOR version.
/// A module stays loaded until the end of the process. A function that is null has nothing to give;
/// what the functions raise must derive from `std::exception`.
struct Module {
    /// Of the library that the module is linked with. It is looked at before anything else, and
    /// remains the first member in every version.
    const char* version = libraryVersion();

    /// Registers the module's updater classes, each of a name that no other one has.
    void (*registerUpdaters)(OrbPPDUpdatingManager& manager) = nullptr;

    /// Registers the module's schemes; one that there is already is replaced. `isCancelled` ends
    /// whatever its backends wait for when anybody sets it; null for never, else it outlives the
    /// last look at a printer.
    void (*registerSchemes)(DeviceStatusSchemes& schemes,
                            const std::atomic<bool>* isCancelled) = nullptr;

    /// For modules of this project only: makes the scheduler of that name, the machine's own for an
    /// empty one. `isCancelled` ends all talks when anybody sets it; null for never, else it
    /// outlives the scheduler.
    void (*makeScheduler)(const std::string& server, const std::atomic<bool>* isCancelled,
                          std::unique_ptr<QueueScheduler>& scheduler) = nullptr;

    /// Makes the module hash texts as the program does, whose texts bring their tables along. Leave
    /// it as it is.
    void (*shareHashSeeds)(const SeededTextHash::Seeds& seeds) = SeededTextHash::setSeeds;

    /// Makes what the program has behind `OrbCoreInterface` stand there for the module, too, which
    /// may be linked with a library of its own. Leave it as it is.
    void (*shareCore)(std::shared_ptr<const TkCore> core,
                      std::shared_ptr<const TkCommunicationServices> services) =
        [](std::shared_ptr<const TkCore> core,
           std::shared_ptr<const TkCommunicationServices> services) {
            OrbCoreInterface::setCore(std::move(core));
            OrbCoreInterface::setCommunicationServices(std::move(services));
        };
};

}  // namespace TkPPDUpdating

/// Defined by each module.
extern "C" TKPPDUPDATING_PUBLIC const TkPPDUpdating::Module TkPPDUpdatingModule;
