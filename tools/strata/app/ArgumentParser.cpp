// SPDX-License-Identifier: BSD-3-Clause
#include "ArgumentParser.h"

#include "HelpText.h"
#include "terminal/Messages.h"

#include <Strata/Version.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

namespace Tool {

namespace {

/// Help pages whose lines end before column HelpWidth.
class HelpFormat : public CLI::Formatter {
 public:
  std::string make_option(const CLI::Option* option, bool is_positional) const override {
    const size_t indent = get_column_width();
    std::string name = "  " + make_option_name(option, is_positional) + make_option_opts(option);
    const std::string line_start(indent, ' ');
    name += name.size() < indent ? std::string(indent - name.size(), ' ') : '\n' + line_start;
    return name + BreakIntoLines(make_option_desc(option), HelpWidth - indent, line_start) + '\n';
  }
};

/// The first option with nothing after its "=", whose value would be taken from the next argument; null: there is none.
const char* OptionWithoutValue(int argc, char** argv) {
  for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
    const char* const sign = std::strchr(argv[i], '=');
    if (std::strncmp(argv[i], "--", 2) == 0 && sign != nullptr && sign[1] == '\0') return argv[i];
  }
  return nullptr;
}

/// A validator whose form the help does not show: it stands in the value's name already.
CLI::Validator Silent(CLI::Validator validator) {
  return validator.description("");
}

/// Adds what takes the value; one overload for each kind of target.
struct AddTarget {
  CLI::Option* operator()(bool* flag) const {
    const std::string negation = From.NegatedBy.empty() ? "" : ",!" + From.NegatedBy;
    return App.add_flag(From.Names + negation, *flag, From.Description);
  }
  CLI::Option* operator()(std::vector<std::string>* list) const {
    CLI::Option* option = App.add_option(From.Names, *list, From.Description);
    return From.IsArgument() ? option : option->allow_extra_args(false);
  }
  CLI::Option* operator()(const TakeText& take) const {
    // Taken while it is checked, so that the first wrong one in the line is reported.
    CLI::Option* option = App.add_option_function<std::string>(
        From.Names, [](const std::string&) {}, From.Description);
    return option->check(take);
  }
  CLI::Option* operator()(const TakeChoice& take) const {
    const auto choose = [&choices = From.Choices, take](const std::string& text) {
      take(static_cast<size_t>(std::ranges::find(choices, text) - choices.begin()));
    };
    CLI::Option* option = App.add_option_function<std::string>(From.Names, choose, From.Description);
    return option->check(Silent(CLI::IsMember(From.Choices)));
  }
  template <class T>
  CLI::Option* operator()(T* value) const {
    return App.add_option(From.Names, *value, From.Description);
  }

  const Option& From;
  CLI::App& App;
};

/// How the help shows the value: its name, and behind a colon what it looks like.
std::string ValueText(const Option& option) {
  std::string text = option.ValueName();
  if (!option.Form.empty()) text += ':' + option.Form;
  if (option.Limits)
    text += ":UINT in [" + std::to_string(option.Limits->first) + " - " + std::to_string(option.Limits->second) + ']';
  std::string separator = ":{";
  for (const std::string& choice : option.Choices) text += std::exchange(separator, ",") + choice;
  return option.Choices.empty() ? text : text + '}';
}

void AddOption(const Option& from, CLI::App& app) {
  CLI::Option* option = std::visit(AddTarget{from, app}, from.Value);
  if (!from.IsFlag()) option->type_name(ValueText(from));
  if (from.IsRequired) option->required();
  if (from.Limits) option->check(Silent(CLI::Range(from.Limits->first, from.Limits->second)));
  if (from.Check) option->check(from.Check);
  if (!from.Default.empty()) option->default_str(from.Default);
  if (!from.Excluded.empty()) option->excludes(app.get_option(from.Excluded));
}

void AddAll(const Command& from, CLI::App& app, const Command*& chosen) {
  for (const Option& option : from.Options()) AddOption(option, app);
  for (const Command& command : from.Commands())
    AddAll(command, *app.add_subcommand(command.Name(), command.Description()), chosen);
  app.footer(from.Footer());
  if (!from.Commands().empty())
    app.require_subcommand(1);
  else
    app.callback([&from, &chosen] { chosen = &from; });
}

}  // namespace

const Command* ParseArguments(const Command& program, int argc, char** argv, ExitCode& code) {
  code = ExitCode::Usage;
  if (const char* option = OptionWithoutValue(argc, argv)) {
    TellError(std::string(option) + ": there is no value behind the sign");
    return nullptr;
  }
  CLI::App app(program.Description(), program.Name());
  app.formatter(std::make_shared<HelpFormat>());
  app.set_version_flag("--version", program.Name() + ' ' + Strata::Version());
  const Command* chosen = nullptr;
  AddAll(program, app, chosen);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (app.exit(error) == 0) code = ExitCode::Fine;
    return nullptr;
  }
  return chosen;
}

}  // namespace Tool
