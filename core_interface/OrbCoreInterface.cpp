#include "core_interface/OrbCoreInterface.h"

#include <utility>

namespace TkPPDUpdating {

namespace {

struct Settings {
    std::shared_ptr<const TkCore> core;
    std::shared_ptr<const TkCommunicationServices> communicationServices;
    std::shared_ptr<const OrbEnvironment> environment = OrbEnvironment::processEnvironment();
    std::shared_ptr<const OrbClock> clock = OrbClock::systemClock();
};

Settings& settings() {
    static Settings theSettings;
    return theSettings;
}

}  // namespace

void OrbCoreInterface::setCore(std::shared_ptr<const TkCore> core) {
    settings().core = std::move(core);
}

std::shared_ptr<const TkCore> OrbCoreInterface::core() {
    return settings().core;
}

void OrbCoreInterface::setCommunicationServices(
    std::shared_ptr<const TkCommunicationServices> services) {
    settings().communicationServices = std::move(services);
}

std::shared_ptr<const TkCommunicationServices> OrbCoreInterface::communicationServices() {
    return settings().communicationServices;
}

void OrbCoreInterface::setEnvironment(std::shared_ptr<const OrbEnvironment> environment) {
    settings().environment =
        environment ? std::move(environment) : OrbEnvironment::processEnvironment();
}

std::shared_ptr<const OrbEnvironment> OrbCoreInterface::environment() {
    return settings().environment;
}

void OrbCoreInterface::setClock(std::shared_ptr<const OrbClock> clock) {
    settings().clock = clock ? std::move(clock) : OrbClock::systemClock();
}

std::shared_ptr<const OrbClock> OrbCoreInterface::clock() {
    return settings().clock;
}

}  // namespace TkPPDUpdating
