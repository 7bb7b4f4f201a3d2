// A tool's command line: what may be on it, and what was. CommandLine.cpp alone knows the parser behind it.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace ZQAPI::tools {

// What is wrong with the command line, for its user.
class WrongUsage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// An option, a flag or an argument of a command: a handle to it, for as long as its command line lives.
class Option {
public:
    // What is wrong with a text, or nothing.
    using Checker = std::function<std::string(const std::string& text)>;

    Option() = default;  // of no command: never given
    explicit Option(CLI::Option* option) : m_option(option) {}

    // How it is used.
    Option Required();
    Option Needs(Option other);
    Option TakesValues(int atLeast, int atMost);

    // Which values it takes; the help and the errors tell.
    Option InRange(int from, int to);
    Option InRange(double from, double to);
    Option Positive();
    Option NotNegative();
    Option ExistingFolder();
    Option Check(const Checker& checker, const std::string& kindOfValue = {});

    // How the help shows it.
    Option ValueName(const std::string& name);
    Option ShowDefault();

    // Once the command line is read.
    bool IsGiven() const;

private:
    Option CheckNumber(const std::function<bool(double)>& isAllowed, const std::string& limits);

    CLI::Option* m_option = nullptr;
};

// A command: a handle to it. What its options are read into outlives the reading.
class Command {
public:
    // A name that begins with a dash is an option's, any other one an argument's. Values are std::string, numbers
    // (std::uint16_t, unsigned, std::size_t, double) and vectors of std::string, std::size_t or double.
    template <class Value>
    Option AddOption(const std::string& name, Value& value, const std::string& help);
    Option AddFlag(const std::string& name, bool& value, const std::string& help);
    // An option whose values have names.
    template <class Enum>
    Option AddChoice(const std::string& name, Enum& value, const std::map<std::string, Enum>& choices,
                     const std::string& help) {
        std::map<std::string, int> numbers;
        for (const auto& [choice, meaning] : choices) {
            numbers[choice] = static_cast<int>(meaning);
        }
        return AddChoice(
            name, [&value](int number) { value = static_cast<Enum>(number); }, numbers, help);
    }
    // What is added from now on is listed under this heading.
    void BeginGroup(const std::string& heading);
    // One that was added before.
    Option GetOption(const std::string& name);

    Command AddCommand(const std::string& name, const std::string& description);
    // One of its commands must be named. Its own options may follow that, too.
    void RequireCommand();

    void SetFooter(const std::string& text);
    // Called when the command line that names the command is read.
    void OnUse(const std::function<void()>& call);

protected:
    explicit Command(std::shared_ptr<CLI::App> parser) : m_parser(std::move(parser)) {}

    std::shared_ptr<CLI::App> m_parser;

private:
    Option AddChoice(const std::string& name, const std::function<void(int)>& set,
                     const std::map<std::string, int>& choices, const std::string& help);
};

// The tool itself. It has --help from the start, and --print-manual and --print-completion, which its build asks for and
// the help doesn't name.
class CommandLine : public Command {
public:
    CommandLine(const std::string& description, const std::string& program);

    void AddVersionFlag(const std::string& version);
    // "help [COMMAND...]"
    void AddHelpCommand();
    // --version, and --help-all for the help of all commands at once.
    void AddGeneralFlags(const std::string& version);
    // False when help or the version was asked for, and has been printed. Throws WrongUsage.
    bool Read(int argc, const char* const* argv);

private:
    bool PrintsManual(const std::string& option) const;
    void PrintHelp() const;

    std::vector<std::string> m_helpedCommands;
    bool m_isHelpWanted = false;
};

}  // namespace ZQAPI::tools
