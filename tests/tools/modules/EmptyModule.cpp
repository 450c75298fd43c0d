// A module that has nothing, for AddedModules_test.cpp.
#include <TkPPDUpdating/backends/modules/TkPPDUpdatingModule.h>

const TkPPDUpdating::Module TkPPDUpdatingModule = {};
