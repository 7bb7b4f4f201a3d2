#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "HelpFormatter.h"
#include "Manual.h"

namespace ZQAPI::tools {

namespace {

std::string Shown(double number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.15g", number);
    return text.data();
}

}  // namespace

Option Option::Required() {
    return Option(m_option->required());
}

Option Option::Needs(Option other) {
    return Option(m_option->needs(other.m_option));
}

Option Option::TakesValues(int atLeast, int atMost) {
    return Option(m_option->expected(atLeast, atMost));
}

Option Option::InRange(int from, int to) {
    return InRange(static_cast<double>(from), static_cast<double>(to));
}

Option Option::InRange(double from, double to) {
    return CheckNumber([=](double number) { return from <= number && number <= to; },
                       "from " + Shown(from) + " to " + Shown(to));
}

Option Option::Positive() {
    return CheckNumber([](double number) { return number > 0; }, "above 0");
}

Option Option::NotNegative() {
    return CheckNumber([](double number) { return number >= 0; }, "not below 0");
}

Option Option::CheckNumber(const std::function<bool(double)>& isAllowed, const std::string& limits) {
    return Check(
        [=](const std::string& text) {
            char* end = nullptr;
            const double number = std::strtod(text.c_str(), &end);
            const bool isNumber = !text.empty() && *end == '\0';
            return isNumber && isAllowed(number) ? std::string() : "'" + text + "' is no number " + limits;
        },
        limits);
}

Option Option::ExistingFolder() {
    return Option(m_option->check(CLI::ExistingDirectory));
}

Option Option::Check(const Checker& checker, const std::string& kindOfValue) {
    return Option(m_option->check(checker, kindOfValue));
}

Option Option::ValueName(const std::string& name) {
    return Option(m_option->type_name(name));
}

Option Option::ShowDefault() {
    return Option(m_option->capture_default_str());
}

bool Option::IsGiven() const {
    return m_option != nullptr && m_option->count() > 0;
}

template <class Value>
Option Command::AddOption(const std::string& name, Value& value, const std::string& help) {
    return Option(m_parser->add_option(name, value, help));
}
template Option Command::AddOption(const std::string&, std::string&, const std::string&);
template Option Command::AddOption(const std::string&, std::uint16_t&, const std::string&);
template Option Command::AddOption(const std::string&, unsigned&, const std::string&);
template Option Command::AddOption(const std::string&, std::size_t&, const std::string&);
template Option Command::AddOption(const std::string&, double&, const std::string&);
template Option Command::AddOption(const std::string&, std::vector<std::string>&, const std::string&);
template Option Command::AddOption(const std::string&, std::vector<std::size_t>&, const std::string&);
template Option Command::AddOption(const std::string&, std::vector<double>&, const std::string&);

Option Command::AddFlag(const std::string& name, bool& value, const std::string& help) {
    return Option(m_parser->add_flag(name, value, help));
}

Option Command::AddChoice(const std::string& name, const std::function<void(int)>& set,
                          const std::map<std::string, int>& choices, const std::string& help) {
    std::string names;
    for (const auto& [choice, number] : choices) {
        names += (names.empty() ? "" : "|") + choice;
    }
    return Option(m_parser->add_option_function<int>(name, set, help)
                      ->type_name("ENUM")
                      ->transform(CLI::CheckedTransformer(choices))
                      ->option_text(names));
}

void Command::BeginGroup(const std::string& heading) {
    m_parser->option_defaults()->group(heading);
}

Option Command::GetOption(const std::string& name) {
    return Option(m_parser->get_option(name));
}

Command Command::AddCommand(const std::string& name, const std::string& description) {
    return Command(m_parser->get_subcommand_ptr(m_parser->add_subcommand(name, description)));
}

void Command::RequireCommand() {
    m_parser->require_subcommand(1)->fallthrough();
}

void Command::SetFooter(const std::string& text) {
    m_parser->footer(text);
}

void Command::OnUse(const std::function<void()>& call) {
    m_parser->callback(call);
}

CommandLine::CommandLine(const std::string& description, const std::string& program)
    : Command(std::make_shared<CLI::App>(description, program)) {
    m_parser->formatter(std::make_shared<HelpFormatter>());
}

void CommandLine::AddVersionFlag(const std::string& version) {
    m_parser->set_version_flag("--version", version);
}

void CommandLine::AddGeneralFlags(const std::string& version) {
    AddVersionFlag(version);
    m_parser->set_help_all_flag("--help-all", "Print the help of all commands and exit");
}

void CommandLine::AddHelpCommand() {
    Command help = AddCommand("help", "Print the help of a command, or this one");
    help.AddOption("COMMAND", m_helpedCommands, "Such as: scan; config set");
    help.OnUse([this] { m_isHelpWanted = true; });
}

// As the parser prints it for "COMMAND --help".
void CommandLine::PrintHelp() const {
    m_parser->clear();  // else it would be that of the "help" that was read
    const CLI::App* command = m_parser.get();
    std::string path;
    for (const std::string& name : m_helpedCommands) {
        path += (path.empty() ? "" : " ") + command->get_name();
        try {
            command = command->get_subcommand(name);
        } catch (const CLI::OptionNotFound&) {
            throw WrongUsage("there is no command '" + name + "'");
        }
    }
    std::cout << command->help(path);
}

bool CommandLine::PrintsManual(const std::string& option) const {
    if (option == "--print-manual") {
        std::cout << ManualPage(*m_parser);
    } else if (option == "--print-completion") {
        std::cout << BashCompletion(*m_parser);
    } else {
        return false;
    }
    return true;
}

bool CommandLine::Read(int argc, const char* const* argv) {
    try {
        if (argc == 2 && PrintsManual(argv[1])) {
            return false;
        }
        m_parser->parse(argc, argv);
        if (!m_isHelpWanted) {
            return true;
        }
        PrintHelp();
        return false;
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            m_parser->exit(error);
            return false;
        }
        const std::vector<std::string> rest = m_parser->remaining(true);
        const bool isUnknown = m_parser->get_require_subcommand_min() > 0 &&
                               m_parser->get_subcommands().empty() && !rest.empty();
        throw WrongUsage(isUnknown ? "there is no command '" + rest.front() + "'" : error.what());
    }
}

}  // namespace ZQAPI::tools
