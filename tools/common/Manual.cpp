#include "Manual.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>

namespace ZQAPI::tools {

namespace {

// The parser's "all of them" is a filter that says nothing.
const std::function<bool(const CLI::App*)> kAllCommands;
const std::function<bool(const CLI::Option*)> kAllOptions;

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

// Text as roff reads it: nothing in it is an instruction.
std::string Roff(const std::string& text) {
    std::string escaped;
    bool isLineStart = true;
    for (const char c : text) {
        if (isLineStart && (c == '.' || c == '\'')) {
            escaped += "\\&";
        }
        isLineStart = c == '\n';
        if (c == '\\') {
            escaped += "\\e";
        } else if (c == '-') {
            escaped += "\\-";
        } else {
            escaped += c;
        }
    }
    return escaped;
}

std::string Bold(const std::string& text) {
    return "\\fB" + Roff(text) + "\\fR";
}

std::string Italic(const std::string& text) {
    return "\\fI" + Roff(text) + "\\fR";
}

// A text of several lines, as it stands.
std::string Lines(const std::string& text) {
    return ".nf\n" + Roff(text) + (text.ends_with('\n') ? "" : "\n") + ".fi\n";
}

bool IsShown(const CLI::Option& option) {
    return !option.get_group().empty();
}

// Every command has them, as the tool itself has.
bool IsAboutHelp(const CLI::Option& option) {
    return option.check_lname("help") || option.check_lname("help-all");
}

bool TakesValue(const CLI::Option& option) {
    return option.get_type_size() != 0;
}

// What stands for the value: the choices where it has names.
std::string ValueOf(const CLI::Option& option) {
    return option.get_option_text().empty() ? option.get_type_name() : option.get_option_text();
}

std::string OptionEntry(const CLI::Option& option) {
    std::string entry = ".TP\n";
    if (option.get_positional()) {
        entry += Italic(option.get_name(true, false));
    } else {
        std::string names;
        for (const std::string& name : CLI::detail::split(option.get_name(false, true), ',')) {
            names += (names.empty() ? "" : ", ") + Bold(name);
        }
        entry += names + (TakesValue(option) ? " " + Italic(ValueOf(option)) : "");
    }
    entry += "\n" + Roff(option.get_description()) + (option.get_description().ends_with('.') ? "" : ".");
    if (!option.get_default_str().empty()) {
        entry += " By default " + Roff(option.get_default_str()) + ".";
    }
    return entry + "\n";
}

std::string OptionEntries(const CLI::App& command, const std::string& group) {
    std::string entries;
    for (const CLI::Option* const option : command.get_options(kAllOptions)) {
        if (option->get_group() == group && (command.get_parent() == nullptr || !IsAboutHelp(*option))) {
            entries += OptionEntry(*option);
        }
    }
    return entries;
}

// The command's options under their headings, those of the parser's own first group without one.
std::string Options(const CLI::App& command) {
    std::string text;
    for (const std::string& group : command.get_groups()) {
        const std::string entries = group.empty() ? "" : OptionEntries(command, group);
        if (!entries.empty()) {
            text += (group == "Options" ? "" : ".SS " + Roff(group) + "\n") + entries;
        }
    }
    return text;
}

bool HasCommands(const CLI::App& command) {
    return !command.get_subcommands(kAllCommands).empty();
}

std::string Usage(const CLI::App& command, const std::string& path) {
    std::string usage = Bold(path) + " [" + Italic("OPTION") + "]...";
    for (const CLI::Option* const option : command.get_options(kAllOptions)) {
        if (option->get_positional() && IsShown(*option)) {
            const std::string name = Italic(option->get_name(true, false));
            usage += " " + (option->get_required() ? name : "[" + name + "]") +
                     (option->get_items_expected_max() > 1 ? "..." : "");
        }
    }
    return usage + (HasCommands(command) ? " " + Italic("COMMAND") + " ..." : "");
}

std::string CommandEntries(const CLI::App& command, const std::string& path) {
    std::string text;
    for (const CLI::App* const inner : command.get_subcommands(kAllCommands)) {
        const std::string innerPath = path + " " + inner->get_name();
        if (HasCommands(*inner)) {
            text += CommandEntries(*inner, innerPath);
            continue;
        }
        text += ".SS " + Usage(*inner, innerPath) + "\n" + Roff(inner->get_description()) + ".\n" +
                Options(*inner);
        // Without its own it has its parent's.
        if (!inner->get_footer().empty() && inner->get_footer() != command.get_footer()) {
            text += ".PP\n" + Lines(inner->get_footer());
        }
    }
    return text;
}

// "Exit status: 0 done." is a section of that name.
std::string FooterSection(const std::string& footer) {
    const std::size_t colon = footer.find(": ");
    return colon == std::string::npos
               ? ".SH NOTES\n" + Roff(footer) + "\n"
               : ".SH \"" + Upper(footer.substr(0, colon)) + "\"\n" + Roff(footer.substr(colon + 2)) + "\n";
}

// In single quotes of the shell's; nothing in a command line's own names needs more.
std::string Quoted(const std::string& words) {
    return "'" + CLI::detail::find_and_replace(words, "'", "") + "'";
}

struct Completion {
    std::string commands;  // one branch for each command: what may follow it
    std::string values;    // one for each option whose values are known
};

void AddCompletion(const CLI::App& command, const std::string& path, const std::string& inherited,
                   Completion& completion) {
    std::string words = inherited;
    for (const CLI::Option* const option : command.get_options(kAllOptions)) {
        if (option->get_positional() || !IsShown(*option)) {
            continue;
        }
        const std::string names = option->get_name(false, true);
        words += " " + CLI::detail::find_and_replace(names, ",", " ");
        const std::string value = ValueOf(*option);
        if (TakesValue(*option)) {
            // Without known values: a file, or the user's own.
            const bool areKnown = value.find('|') != std::string::npos;
            completion.values +=
                "        " + CLI::detail::find_and_replace(names, ",", " | ") + ") " +
                (areKnown ? "words=" + Quoted(CLI::detail::find_and_replace(value, "|", " ")) : "return") +
                " ;;\n";
        }
    }
    const std::string own = words;
    for (const CLI::App* const inner : command.get_subcommands(kAllCommands)) {
        words += " " + inner->get_name();
        // Options of the tool itself may follow a command, too.
        AddCompletion(*inner, path + (path.empty() ? "" : " ") + inner->get_name(), own, completion);
    }
    completion.commands += "        " + Quoted(path) + ") words=" + Quoted(words) + " ;;\n";
}

}  // namespace

std::string ManualPage(const CLI::App& app) {
    const std::string& name = app.get_name();
    std::string description = app.get_description();
    std::string brief = description.substr(0, description.find('.'));
    brief.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(brief.front())));
    return ".TH " + Upper(name) + " 1 \"\" \"" + Roff(app.version()) + "\"\n.ad l\n" +  //
           ".SH NAME\n" + Roff(name) + " \\- " + Roff(brief) + "\n" +                   //
           ".SH SYNOPSIS\n" + Usage(app, name) + "\n" +                                 //
           ".SH DESCRIPTION\n" + Roff(description) + "\n" +                             //
           ".SH OPTIONS\n" + Options(app) +
           (HasCommands(app) ? ".SH COMMANDS\n" + CommandEntries(app, name) : "") +
           (app.get_footer().empty() ? "" : FooterSection(app.get_footer()));
}

std::string BashCompletion(const CLI::App& app) {
    Completion completion;
    AddCompletion(app, "", "", completion);
    const std::string& name = app.get_name();
    return "# Completion for " + name +
           ", made from its command line.\n"
           "_" +
           name +
           "() {\n"
           "    local word words path=\n"
           "    COMPREPLY=()\n"
           "    case ${COMP_WORDS[COMP_CWORD - 1]} in\n" +
           completion.values +
           "    esac\n"
           "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
           "        case \" $(_" +
           name +
           "_words \"$path\") \" in\n"
           "        *\" $word \"*) [[ $word == -* ]] || path=${path:+$path }$word ;;\n"
           "        esac\n"
           "    done\n"
           "    [[ $words ]] || words=$(_" +
           name +
           "_words \"$path\")\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"${COMP_WORDS[COMP_CWORD]}\")\n"
           "}\n"
           "_" +
           name +
           "_words() {\n"
           "    local words=\n"
           "    case $1 in\n" +
           completion.commands +
           "    esac\n"
           "    echo \"$words\"\n"
           "}\n"
           "complete -o default -F _" +
           name + " " + name + "\n";
}

}  // namespace ZQAPI::tools
