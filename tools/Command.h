#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "manager/MissingResourceWatch.h"
#include "tools/ExitStatus.h"

namespace TkPPDUpdating {

/// One command of the tool. A concrete command adds its options to the subcommand that it makes and
/// does its work in `run`.
class Command {
  public:
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    virtual ~Command() = default;

    /// Whether the user named this command.
    bool wasChosen() const { return subcommand_->parsed(); }

    /// Whether modules of others take part in its run, and those that the user names behind it.
    bool usesModules() const { return usesModules_; }
    const std::vector<std::string>& modulePaths() const { return modulePaths_; }

    /// Does the work. Raises a `Failure` when there is no result.
    virtual ExitStatus run() = 0;

  protected:
    Command(CLI::App& application, const std::string& name, const std::string& description);

    CLI::App& subcommand() { return *subcommand_; }

    /// Adds --load: for a command that runs updaters or asks devices.
    void addModules();

    /// Runs an operation of the library; its out-of-range error, and data of the library's own that
    /// it could not read, become a `Failure` about `place`.
    template <typename Operation>
    static auto resultOf(const std::string& place, const Operation& operation) {
        try {
            return MissingResourceWatch::resultOf(operation);
        } catch (const std::out_of_range&) {
            throwMalformedAttribute(place);
        } catch (const MissingResourceError& error) {
            throwMissingResource(place, error);
        }
    }

  private:
    [[noreturn]] static void throwMalformedAttribute(const std::string& place);
    [[noreturn]] static void throwMissingResource(const std::string& place,
                                                  const MissingResourceError& error);

    CLI::App* subcommand_;
    bool usesModules_ = false;
    std::vector<std::string> modulePaths_;
};

}  // namespace TkPPDUpdating
