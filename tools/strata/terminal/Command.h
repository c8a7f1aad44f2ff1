// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ExitCode.h"

#include <Ferro/Types.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

// The command line as the commands describe it. What understands arguments, writes help, the manual page and the
// completion reads these descriptions; the commands know nothing of it.

namespace Tool {

/// Takes the text of a value. Returns what is wrong with it; empty: nothing.
using TakeText = std::function<std::string(const std::string&)>;

/// Takes the number of one of an option's choices.
using TakeChoice = std::function<void(size_t)>;

/// An option or an argument of a command: what the help tells of it, and where its value goes. A flag goes to a bool. A
/// list of an option has one value each time that it is given; a list of arguments takes all that come.
struct Option {
  using Target = std::variant<bool*, std::string*, std::vector<std::string>*, Ferro::ui32_t*, Ferro::ui64_t*, TakeText,
                              TakeChoice>;

  /// True for "show", false for "--out" and "-v,--verbose".
  [[nodiscard]] bool IsArgument() const { return !Names.starts_with('-'); }
  [[nodiscard]] bool IsFlag() const { return std::holds_alternative<bool*>(Value); }
  [[nodiscard]] bool IsList() const { return std::holds_alternative<std::vector<std::string>*>(Value); }
  /// "FILE": how the help calls the value.
  [[nodiscard]] std::string ValueName() const;

  Option& Required();
  Option& Called(std::string value_name);
  /// The help shows the value that the target has now.
  Option& ShowsDefault();
  Option& Within(Ferro::ui64_t least, Ferro::ui64_t most);
  /// A value is taken only where `check` finds nothing wrong.
  Option& CheckedBy(TakeText check);
  Option& Excludes(const Option& other);

  std::string Names;
  std::string Description;
  Target Value;
  std::string NegatedBy = {};             ///< a flag that takes this one back
  std::vector<std::string> Choices = {};  ///< the only values there are
  std::string Form = {};                  ///< "NUMBER|max": what values look like, where the help shows it
  std::string Default = {};               ///< as the help shows it; empty: not at all
  std::string Excluded = {};              ///< the names of an option that cannot be given together with this one
  std::optional<std::pair<Ferro::ui64_t, Ferro::ui64_t>> Limits = {};  ///< of a number, both allowed
  TakeText Check = {};
  bool IsRequired = false;

 private:
  std::string m_ValueName;
};

/// A command of the program, or one of a command's own commands.
class Command {
 public:
  Command(std::string name, std::string description);

  /// @param names  "--out", "-v,--verbose"; "show" is an argument.
  template <class T>
  Option& Add(const std::string& names, T& value, const std::string& description) {
    return AddOption(names, &value, description);
  }
  /// An option whose text `take` understands.
  Option& AddText(std::string names, TakeText take, std::string description);
  /// An option with a choice of values. The help shows the one that `value` has now as default.
  template <class T>
  Option& AddChoice(const std::string& names, T& value, const std::vector<std::pair<const char*, T>>& choices,
                    const std::string& description) {
    const auto choose = [&value, choices](size_t number) { value = choices[number].second; };
    Option& option = AddOption(names, choose, description);
    for (const auto& [name, choice] : choices) {
      option.Choices.emplace_back(name);
      if (choice == value) option.Default = name;
    }
    return option;
  }
  Command& AddCommand(std::string name, std::string description);
  /// What the help says at its end.
  void SetFooter(std::string text) { m_Footer = std::move(text); }
  /// What the command does. May throw CommandError and CommandStopped.
  void Does(std::function<ExitCode()> work) { m_Work = std::move(work); }

  [[nodiscard]] const std::string& Name() const { return m_Name; }
  [[nodiscard]] const std::string& Description() const { return m_Description; }
  [[nodiscard]] const std::string& Footer() const { return m_Footer; }
  /// In the order in which they were added; so are the commands.
  [[nodiscard]] const std::deque<Option>& Options() const { return m_Options; }
  [[nodiscard]] const std::deque<Command>& Commands() const { return m_Commands; }

  /// Does the work. What it throws is told on standard error.
  [[nodiscard]] ExitCode Run() const;

 private:
  Option& AddOption(std::string names, Option::Target target, std::string description);

  std::string m_Name;
  std::string m_Description;
  std::string m_Footer;
  std::deque<Option> m_Options;    // where others are added, the earlier ones stay in their place
  std::deque<Command> m_Commands;  // the same
  std::function<ExitCode()> m_Work;
};

/// Accepts a whole number in decimal digits, from `least` to `most`.
[[nodiscard]] TakeText WholeNumber(Ferro::ui64_t least, Ferro::ui64_t most);

}  // namespace Tool
