// SPDX-License-Identifier: BSD-3-Clause
#include "Manual.h"

#include <Strata/Version.h>

#include <sstream>
#include <vector>

namespace Tool {

namespace {

// Text as roff shows it: backslashes and hyphens as they are, no line taken for a request.
std::string Roff(const std::string& text) {
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

// "-v,--verbose" comma by comma.
std::vector<std::string> SplitAtCommas(const std::string& text) {
  std::istringstream list(text);
  std::vector<std::string> parts;
  for (std::string part; std::getline(list, part, ',');) parts.push_back(part);
  return parts;
}

/// The names of an option, short ones first; the name of an argument.
std::vector<std::string> NamesOf(const Option& option) {
  std::vector<std::string> names = SplitAtCommas(option.Names);
  if (!option.NegatedBy.empty()) names.push_back(option.NegatedBy);
  return names;
}

std::string Join(const std::vector<std::string>& parts, const char* separator) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
  return text;
}

void AppendOption(const Option& option, std::string& page) {
  page += ".TP\n\\fB" + Roff(Join(NamesOf(option), ", ")) + "\\fR";
  if (!option.IsArgument() && !option.IsFlag()) page += " \\fI" + Roff(option.ValueName()) + "\\fR";
  page += '\n' + Roff(option.Description);
  if (!option.Choices.empty()) page += "\nOne of " + Roff(Join(option.Choices, ", ")) + '.';
  if (!option.Default.empty()) page += "\nDefault: " + Roff(option.Default) + '.';
  if (option.IsRequired && !option.IsArgument()) page += "\nRequired.";
  page += '\n';
}

// The lines of a footer, each a paragraph; examples as they are typed.
void AppendFooter(const std::string& footer, std::string& page) {
  std::istringstream lines(footer);
  bool in_example = false;
  std::string paragraph;
  const auto end_paragraph = [&] {
    if (!paragraph.empty()) page += ".PP\n" + Roff(paragraph) + '\n';
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
      page += Roff(line.substr(2)) + '\n';
    } else {
      paragraph += (paragraph.empty() ? "" : "\n") + line;
    }
  }
  end_paragraph();
  if (in_example) page += ".RE\n.fi\n";
}

// "strata store add [OPTIONS] folder..."
std::string Synopsis(const Command& command, const std::string& path) {
  std::string text = "\\fB" + Roff(path) + "\\fR";
  if (!command.Commands().empty()) return text + " \\fICOMMAND\\fR";
  text += " [\\fIOPTIONS\\fR]";
  for (const Option& option : command.Options())
    if (option.IsArgument()) text += " \\fI" + Roff(option.Names) + (option.IsList() ? "\\fR..." : "\\fR");
  return text;
}

void AppendCommand(const Command& command, const std::string& path, std::string& page) {
  page += ".SS \"" + Roff(path) + "\"\n" + Synopsis(command, path) + "\n.PP\n" + Roff(command.Description()) + ".\n";
  for (const Option& option : command.Options()) AppendOption(option, page);
  AppendFooter(command.Footer(), page);
  for (const Command& sub : command.Commands()) AppendCommand(sub, path + ' ' + sub.Name(), page);
}

void Replace(std::string& text, const std::string& from, const std::string& to) {
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

/// What is offered for the value of an option.
std::string OfferFor(const Option& option) {
  if (!option.Choices.empty()) return "_strata_words '" + Join(option.Choices, " ") + '\'';
  if (option.ValueName() == "FOLDER") return "_strata_files -d";
  return option.ValueName() == "FILE" ? "_strata_files -f" : "COMPREPLY=()";
}

/// @param options  the options that every command has, or the program has by itself.
void AppendCases(const Command& command, const std::string& path, std::string options, CompletionCases& cases) {
  for (const Option& option : command.Options()) {
    for (const std::string& name : NamesOf(option)) {
      if (!name.starts_with("--")) continue;
      options += ' ' + name;
      if (!option.IsFlag()) cases.Values += "    " + path + ':' + name + ") " + OfferFor(option) + "; return ;;\n";
    }
  }
  std::string names;
  for (const Command& sub : command.Commands()) {
    names += sub.Name() + ' ';
    cases.Steps += "      " + path + ':' + sub.Name() + ") path=" + path + '/' + sub.Name() + " ;;\n";
    AppendCases(sub, path + '/' + sub.Name(), "--help", cases);
  }
  cases.Words += "    " + path + ") _strata_offer '" + options + "' '" + names + "' ;;\n";
}

}  // namespace

std::string ManualPage(const Command& program, const std::string& prose) {
  std::string commands;
  for (const Command& command : program.Commands())
    AppendCommand(command, program.Name() + ' ' + command.Name(), commands);
  std::string page = prose;
  Replace(page, "@COMMANDS@\n", commands);
  Replace(page, "@VERSION@", Strata::Version());
  return page;
}

std::string BashCompletion(const Command& program) {
  CompletionCases cases;
  AppendCases(program, program.Name(), "--help --version", cases);
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

}  // namespace Tool
