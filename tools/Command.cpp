#include "tools/Command.h"

#include "tools/AddedModules.h"
#include "tools/Failure.h"

namespace TkPPDUpdating {

Command::Command(CLI::App& application, const std::string& name, const std::string& description)
    : subcommand_(application.add_subcommand(name, description)) {}

void Command::addModules() {
    AddedModules::addOptionTo(*subcommand_, modulePaths_);
    usesModules_ = true;
}

void Command::throwMalformedAttribute(const std::string& place) {
    throw Failure(ExitStatus::noResult, place,
                  "an attribute that an updater looks up has nothing after its colon");
}

void Command::throwMissingResource(const std::string& place, const MissingResourceError& error) {
    throw Failure(ExitStatus::noResult, place, error.what());
}

}  // namespace TkPPDUpdating
