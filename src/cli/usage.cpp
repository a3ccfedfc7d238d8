#include "cli/usage.hpp"

#include <unistd.h>

#include "cli/suggest.hpp"

namespace tolven::cli {

namespace {

std::vector<std::string> option_names(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_group().empty()) continue;  // hidden
        for (const auto& n : option->get_lnames()) names.push_back("--" + n);
        for (const auto& n : option->get_snames()) names.push_back("-" + n);
    }
    return names;
}

std::vector<std::string> command_names(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* sub : app.get_subcommands([](const CLI::App*) { return true; })) names.push_back(sub->get_name());
    return names;
}

std::string command_list(const CLI::App& app) {
    std::string list;
    for (const auto& name : command_names(app)) list += (list.empty() ? "" : ", ") + name;
    return list;
}

// The first argument app did not take, reported in the words of its command.
void reject_extras(const CLI::App& app, const std::string& command) {
    const std::vector<std::string> extras = app.remaining();
    if (extras.empty()) return;
    const std::string& word = extras.front();
    const std::string prefix = command.empty() ? "" : command + ": ";
    if (word.size() > 1 && word[0] == '-') {
        const std::string name = word.substr(0, word.find('='));
        throw CLI::ParseError(prefix + "unknown option '" + name + "'" + did_you_mean(name, option_names(app)),
                              CLI::ExitCodes::ExtrasError);
    }
    if (command.empty())
        throw CLI::ParseError("'" + word + "' is not a command" + did_you_mean(word, command_names(app)) +
                                  " (the commands: " + command_list(app) + ")",
                              CLI::ExitCodes::ExtrasError);
    throw CLI::ParseError(prefix + "unexpected argument '" + word +
                              "': one FILE is read, and an option takes one value each time it is given "
                              "(repeat the option for several values)",
                          CLI::ExitCodes::ExtrasError);
}

}  // namespace

std::string usage_failure(const CLI::App* app, const CLI::Error& error) {
    std::string command;
    for (const CLI::App* sub : app->get_subcommands()) command = " " + sub->get_name();
    return "tolven-xml: error: " + std::string(error.what()) + "\nRun 'tolven-xml" + command +
           " --help' for the options.\n";
}

void reject_unexpected_arguments(CLI::App& app) {
    reject_extras(app, "");
    for (const CLI::App* sub : app.get_subcommands()) reject_extras(*sub, sub->get_name());
}

void require_command(const CLI::App& app) {
    if (app.get_subcommands().empty())
        throw CLI::ParseError("a command is required: " + command_list(app), CLI::ExitCodes::RequiredError);
}

void require_document(CLI::App& app) {
    for (CLI::App* sub : app.get_subcommands()) {
        const CLI::Option* file = sub->get_option_no_throw("file");
        if (file != nullptr && file->count() == 0 && ::isatty(STDIN_FILENO) == 1)
            throw CLI::ParseError(sub->get_name() +
                                      ": no FILE given, and standard input is a terminal: give a FILE, or pipe "
                                      "a document in (tolven-xml " + sub->get_name() + " < FILE)",
                                  CLI::ExitCodes::RequiredError);
    }
}

}  // namespace tolven::cli
