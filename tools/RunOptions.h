#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "manager/OrbPPDConcreteUpdatingManager.h"

namespace TkPPDUpdating {

/// The options that every command takes that runs updaters: which classes take part.
class RunOptions {
  public:
    void addTo(CLI::App& subcommand);

    /// A manager with the classes that the user wants.
    std::unique_ptr<OrbPPDConcreteUpdatingManager> makeManager() const;

    /// Whether the user asked for this class with --only.
    bool areOnly(std::string_view className) const;

  private:
    std::vector<std::string> only_;
    std::vector<std::string> skip_;
};

}  // namespace TkPPDUpdating
