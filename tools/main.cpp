// tkppdupdate: the command line of the library.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "tools/AddedModules.h"
#include "tools/Backends.h"
#include "tools/Command.h"
#include "tools/Diagnostics.h"
#include "tools/EndWithoutMemory.h"
#include "tools/Failure.h"
#include "tools/RunFacts.h"
#include "tools/StandardOutput.h"
#include "tools/StatusCommand.h"
#include "tools/UpdateCommand.h"
#include "tools/UpdatersCommand.h"
#include "tools/UsageComplaint.h"
#include "tools/ValuesCommand.h"
#ifdef TKPPDUPDATING_WITH_CUPS
#include "tools/ReportCommand.h"
#include "tools/RestoreCommand.h"
#include "tools/SyncCommand.h"
#endif

namespace {

using namespace TkPPDUpdating;

/// The arguments without the program's name. A "--" goes where it says nothing: of the arguments
/// behind it, the parser takes only as many as the command requires.
std::vector<std::string> operandsInPlace(int argumentCount, char** arguments) {
    std::vector<std::string> all(arguments + std::min(argumentCount, 1), arguments + argumentCount);
    const auto mark = std::ranges::find(all, "--");
    if (mark != all.end() && std::none_of(mark + 1, all.end(), [](const std::string& operand) {
            return operand.starts_with('-');
        })) {
        all.erase(mark);
    }
    return all;
}

using Commands = std::vector<std::unique_ptr<Command>>;

template <typename AnyCommand>
std::unique_ptr<Command> made(CLI::App& application, const Backends& backends) {
    if constexpr (std::is_constructible_v<AnyCommand, CLI::App&, const Backends&>) {
        return std::make_unique<AnyCommand>(application, backends);
    } else {
        return std::make_unique<AnyCommand>(application);
    }
}

/// The command that the first argument names; all of them when it names none, for the help and for
/// what is wrong. The options of one take a tenth of the time of a run on a small file.
template <typename... AllCommands>
Commands commandsNamedBy(std::string_view argument, CLI::App& application,
                         const Backends& backends) {
    const bool isName = ((argument == AllCommands::kName) || ...);
    Commands commands;
    const auto add = [&]<typename AnyCommand>(std::type_identity<AnyCommand>) {
        if (!isName || argument == AnyCommand::kName) {
            commands.push_back(made<AnyCommand>(application, backends));
        }
    };
    (add(std::type_identity<AllCommands>()), ...);
    return commands;
}

Commands commandsFor(std::string_view argument, CLI::App& application, const Backends& backends) {
    return commandsNamedBy<UpdateCommand, ValuesCommand, UpdatersCommand, StatusCommand
#ifdef TKPPDUPDATING_WITH_CUPS
                           ,
                           SyncCommand, RestoreCommand, ReportCommand
#endif
                           >(argument, application, backends);
}

/// Newer CLI11 fills the lines of footers and descriptions anew, which takes the examples apart.
template <typename Formatter>
void keepLinesOfHelp(Formatter& formatter) {
    if constexpr (requires { formatter.enable_footer_formatting(false); }) {
        formatter.enable_footer_formatting(false);
        formatter.enable_description_formatting(false);
    }
}

ExitStatus parseAndRun(int argumentCount, char** arguments) {
    CLI::App application("Keeps the PPD of a CUPS print queue in step with its printer",
                         "tkppdupdate");
    keepLinesOfHelp(*application.get_formatter());
    const std::string version = "tkppdupdate " + toolVersion();
    application.set_version_flag("--version", version);
    application.require_subcommand(1);

    std::vector<std::string> modulePaths;
    AddedModules::addOptionTo(application, modulePaths);
    Backends backends;
    const Commands commands =
        commandsFor(argumentCount > 1 ? arguments[1] : "", application, backends);

    // After the subcommands, which would take it over.
    application.footer(
        "\"tkppdupdate SUBCOMMAND --help\" tells its options; the manual page tkppdupdate(1) tells "
        "the rest.");

    const auto operands = operandsInPlace(argumentCount, arguments);
    try {
        // The parser wants them from the end.
        application.parse(std::vector<std::string>(operands.rbegin(), operands.rend()));
    } catch (const CLI::CallForHelp&) {
        StandardOutput::write(application.help());
        return ExitStatus::done;
    } catch (const CLI::CallForVersion&) {
        StandardOutput::write(version + "\n");
        return ExitStatus::done;
    } catch (const CLI::ParseError& error) {
        throw Failure(ExitStatus::usage, std::nullopt,
                      usageComplaint(application, operands, error.what()));
    }
    for (const auto& command : commands) {
        if (command->wasChosen()) {
            if (command->usesModules()) {
                modulePaths.insert(modulePaths.end(), command->modulePaths().begin(),
                                   command->modulePaths().end());
                backends.loadModules(modulePaths);
            }
            return command->run();
        }
    }
    throw Failure(ExitStatus::usage, std::nullopt,
                  usageComplaint(application, operands, "A subcommand is required"));
}

ExitStatus runReportingFailures(int argumentCount, char** arguments) {
    try {
        return parseAndRun(argumentCount, arguments);
    } catch (const Failure& failure) {
        Diagnostics::error(failure.place(), failure.what());
        return failure.status();
    } catch (const std::bad_alloc&) {
        Diagnostics::outOfMemory();
    } catch (const std::exception& error) {
        Diagnostics::error("", error.what());
    }
    return ExitStatus::noResult;
}

/// The end of the memory may also come while another failure is told.
ExitStatus runToTheEnd(int argumentCount, char** arguments) {
    std::set_terminate(endWithoutMemory);
    try {
        return runReportingFailures(argumentCount, arguments);
    } catch (const std::bad_alloc&) {
        Diagnostics::outOfMemory();
    }
    return ExitStatus::noResult;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    TkPPDUpdating::StandardOutput::reserveClosedStreams();
    return static_cast<int>(runToTheEnd(argumentCount, arguments));
}
