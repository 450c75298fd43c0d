// A module that cannot register what it has, for AddedModules_test.cpp.
#include <TkPPDUpdating/backends/modules/TkPPDUpdatingModule.h>

#include <stdexcept>

const TkPPDUpdating::Module TkPPDUpdatingModule = {
    .registerUpdaters = [](TkPPDUpdating::OrbPPDUpdatingManager& /*manager*/) {
        throw std::runtime_error("its licence has expired");
    }};
