#include "tools/UsageComplaint.h"

#include <algorithm>
#include <string_view>

#include "tools/SimilarWord.h"

namespace TkPPDUpdating {

namespace {

bool looksLikeOption(std::string_view argument) {
    return argument.size() > 1 && argument.starts_with('-') && argument != "--";
}

std::string complaintAboutCommand(const CLI::App& application, const std::string& name) {
    std::vector<std::string> known = {"--help", "--version"};
    for (const CLI::App* command : application.get_subcommands(nullptr)) {
        known.push_back(command->get_name());
    }
    return "there is no command \"" + name + "\"" + questionForSimilarWord(name, known);
}

/// The options of the command and of its groups of options, which the parser takes for commands
/// without a name.
void addOptionNames(const CLI::App& command, std::vector<std::string>& names) {
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& each : option->get_lnames()) {
            names.push_back("--" + each);
        }
    }
    for (const CLI::App* group :
         command.get_subcommands([](const CLI::App* each) { return each->get_name().empty(); })) {
        addOptionNames(*group, names);
    }
}

std::string complaintAboutOption(const CLI::App& command, const std::string& argument) {
    const std::string name = argument.substr(0, argument.find('='));
    std::vector<std::string> known;
    addOptionNames(command, known);
    return "there is no option \"" + name + "\"" + questionForSimilarWord(name, known);
}

/// The first option of the arguments before "--" that the parser left over; empty when there is
/// none.
std::string unknownOption(const CLI::App& application, const std::vector<std::string>& arguments) {
    const auto left = application.remaining(true);
    const auto end = std::ranges::find(arguments, "--");
    const auto found = std::find_if(arguments.begin(), end, [&](const std::string& argument) {
        return looksLikeOption(argument) && std::ranges::find(left, argument) != left.end();
    });
    return found == end ? "" : *found;
}

}  // namespace

std::string usageComplaint(const CLI::App& application, const std::vector<std::string>& arguments,
                           const std::string& parserSays) {
    const auto named = application.get_subcommands();
    const CLI::App& command = named.empty() ? application : *named.front();
    const std::string hint = " (\"tkppdupdate " + (named.empty() ? "" : command.get_name() + " ") +
                             "--help\" tells the usage)";
    const std::string option = unknownOption(application, arguments);
    if (!option.empty()) {
        return complaintAboutOption(command, option) + hint;
    }
    const bool isNoCommand = named.empty() && !arguments.empty();
    return (isNoCommand ? complaintAboutCommand(application, arguments.front()) : parserSays) +
           hint;
}

}  // namespace TkPPDUpdating
