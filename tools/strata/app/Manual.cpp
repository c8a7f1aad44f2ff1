// SPDX-License-Identifier: BSD-3-Clause
#include "Manual.h"

#include "CommandLine.h"

#include <Strata/Version.h>

#include <sstream>
#include <vector>

namespace {

// Text as roff shows it: backslashes and hyphens as they are, no line taken for a request.
std::string roff(const std::string& text) {
  std::string out;
  bool at_line_start = true;
  for (const char c : text) {
    if (at_line_start && (c == '.' || c == '\'')) out += "\\&";
    if (c == '\\') {
      out += "\\e";
    } else if (c == '-') {
      out += "\\-";
    } else {
      out += c;
    }
    at_line_start = c == '\n';
  }
  return out;
}

// "-v, --verbose"; the name for an argument without hyphens.
std::string names_of(const CLI::Option& option) {
  if (option.get_positional()) return option.get_name();
  std::string names;
  for (const std::string& name : option.get_snames()) names += (names.empty() ? "-" : ", -") + name;
  for (const std::string& name : option.get_lnames()) names += (names.empty() ? "--" : ", --") + name;
  return names;
}

// "FOLDER"; what follows a colon are limits, which the description tells.
std::string value_of(const CLI::Option& option) {
  if (option.get_positional() || option.get_items_expected_max() == 0) return "";
  const std::string type = option.get_type_name();
  return type.substr(0, type.find(':'));
}

/// The values of an option that has a choice: from "TEXT:{a,b}" a and b.
std::vector<std::string> choices_of(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const size_t begin = type.find('{');
  const size_t end = type.find('}');
  std::vector<std::string> choices;
  if (begin == std::string::npos || end == std::string::npos) return choices;
  std::istringstream list(type.substr(begin + 1, end - begin - 1));
  for (std::string choice; std::getline(list, choice, ',');) choices.push_back(choice);
  return choices;
}

void append_option(const CLI::Option& option, std::string& page) {
  page += ".TP\n\\fB" + roff(names_of(option)) + "\\fR";
  if (const std::string value = value_of(option); !value.empty()) page += " \\fI" + roff(value) + "\\fR";
  page += '\n' + roff(option.get_description());
  if (const auto choices = choices_of(option); !choices.empty()) {
    page += "\nOne of";
    for (size_t i = 0; i < choices.size(); ++i) page += (i == 0 ? " " : ", ") + roff(choices[i]);
    page += '.';
  }
  if (!option.get_default_str().empty()) page += "\nDefault: " + roff(option.get_default_str()) + '.';
  if (option.get_required() && !option.get_positional()) page += "\nRequired.";
  page += '\n';
}

// The lines of a footer, each a paragraph; examples as they are typed.
void append_footer(const std::string& footer, std::string& page) {
  std::istringstream lines(footer);
  bool in_example = false;
  std::string paragraph;
  const auto end_paragraph = [&] {
    if (!paragraph.empty()) page += ".PP\n" + roff(paragraph) + '\n';
    paragraph.clear();
  };
  for (std::string line; std::getline(lines, line);) {
    const bool is_example = line.starts_with("  ");
    if (is_example != in_example) {
      end_paragraph();
      page += is_example ? ".PP\n.nf\n.RS\n" : ".RE\n.fi\n";
      in_example = is_example;
    }
    if (is_example) {
      page += roff(line.substr(2)) + '\n';
    } else {
      paragraph += (paragraph.empty() ? "" : "\n") + line;
    }
  }
  end_paragraph();
  if (in_example) page += ".RE\n.fi\n";
}

// "strata store add [OPTIONS] folder..."
std::string synopsis(const CLI::App& command, const std::string& path) {
  std::string text = "\\fB" + roff(path) + "\\fR";
  if (!SubcommandsOf(command).empty()) return text + " \\fICOMMAND\\fR";
  text += " [\\fIOPTIONS\\fR]";
  for (const CLI::Option* option : command.get_options())
    if (option->get_positional())
      text += " \\fI" + roff(option->get_name()) + (option->get_items_expected_max() > 1 ? "\\fR..." : "\\fR");
  return text;
}

void append_command(const CLI::App& command, const std::string& path, std::string& page) {
  page +=
      ".SS \"" + roff(path) + "\"\n" + synopsis(command, path) + "\n.PP\n" + roff(command.get_description()) + ".\n";
  for (const CLI::Option* option : command.get_options())
    if (option != command.get_help_ptr()) append_option(*option, page);
  append_footer(command.get_footer(), page);
  for (const CLI::App* sub : SubcommandsOf(command)) append_command(*sub, path + ' ' + sub->get_name(), page);
}

void replace(std::string& text, const std::string& from, const std::string& to) {
  for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

/// The parts of a completion script that differ from command to command. There a command is known by the words that
/// lead to it, joined by strokes: "strata/store/add".
struct CompletionCases {
  std::string Steps;   ///< from a command and a word to a subcommand
  std::string Values;  ///< what follows an option that takes a value
  std::string Words;   ///< what else a command takes
};

void append_cases(const CLI::App& command, const std::string& path, CompletionCases& cases) {
  std::string options;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      options += (options.empty() ? "--" : " --") + name;
      if (option->get_items_expected_max() == 0) continue;
      std::string choices;
      for (const std::string& choice : choices_of(*option)) choices += (choices.empty() ? "" : " ") + choice;
      const std::string value = value_of(*option);
      const std::string offer = !choices.empty()    ? "_strata_words '" + choices + '\''
                                : value == "FOLDER" ? "_strata_files -d"
                                : value == "FILE"   ? "_strata_files -f"
                                                    : "COMPREPLY=()";
      cases.Values += "    " + path + ":--" + name + ") " + offer + "; return ;;\n";
    }
  }
  std::string names;
  for (const CLI::App* sub : SubcommandsOf(command)) {
    names += sub->get_name() + ' ';
    cases.Steps += "      " + path + ':' + sub->get_name() + ") path=" + path + '/' + sub->get_name() + " ;;\n";
    append_cases(*sub, path + '/' + sub->get_name(), cases);
  }
  cases.Words += "    " + path + ") _strata_offer '" + options + "' '" + names + "' ;;\n";
}

}  // namespace

std::string ManualPage(const CLI::App& app, const std::string& prose) {
  std::string commands;
  for (const CLI::App* command : SubcommandsOf(app))
    append_command(*command, app.get_name() + ' ' + command->get_name(), commands);
  std::string page = prose;
  replace(page, "@COMMANDS@\n", commands);
  replace(page, "@VERSION@", Strata::Version());
  return page;
}

std::string BashCompletion(const CLI::App& app) {
  CompletionCases cases;
  append_cases(app, app.get_name(), cases);
  return R"(# Completion of the strata command for bash. Made with the program, from its command line.
_strata_words() { mapfile -t COMPREPLY < <(compgen -W "$1" -- "$current"); }
_strata_files() { mapfile -t COMPREPLY < <(compgen "$1" -- "$current"); compopt -o filenames 2>/dev/null; }
# Options after a hyphen; else the subcommands, or files where there are none.
_strata_offer() {
  if [[ $current == -* ]]; then _strata_words "$1"; elif [[ -n $2 ]]; then _strata_words "$2"; else _strata_files -f; fi
}
_strata() {
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} path=strata word
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $path:$word in
)" + cases.Steps +
         "    esac\n  done\n  case $path:$before in\n" + cases.Values + "  esac\n  case $path in\n" + cases.Words +
         "  esac\n}\ncomplete -F _strata strata\n";
}
