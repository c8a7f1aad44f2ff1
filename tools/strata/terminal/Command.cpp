// SPDX-License-Identifier: BSD-3-Clause
#include "Command.h"

#include "CommandError.h"
#include "Messages.h"

#include <charconv>

namespace Tool {

std::string Option::ValueName() const {
  if (!m_ValueName.empty()) return m_ValueName;
  const bool is_number = std::holds_alternative<Ferro::ui32_t*>(Value) || std::holds_alternative<Ferro::ui64_t*>(Value);
  return is_number ? "UINT" : "TEXT";
}

Option& Option::Required() {
  IsRequired = true;
  return *this;
}

Option& Option::Called(std::string value_name) {
  m_ValueName = std::move(value_name);
  return *this;
}

Option& Option::ShowsDefault() {
  if (const auto* text = std::get_if<std::string*>(&Value)) Default = **text;
  if (const auto* number = std::get_if<Ferro::ui32_t*>(&Value)) Default = std::to_string(**number);
  if (const auto* number = std::get_if<Ferro::ui64_t*>(&Value)) Default = std::to_string(**number);
  return *this;
}

Option& Option::Within(Ferro::ui64_t least, Ferro::ui64_t most) {
  Limits = {least, most};
  return *this;
}

Option& Option::CheckedBy(TakeText check) {
  Check = std::move(check);
  return *this;
}

Option& Option::Excludes(const Option& other) {
  Excluded = other.Names;
  return *this;
}

Command::Command(std::string name, std::string description)
    : m_Name(std::move(name)), m_Description(std::move(description)) {}

Option& Command::AddOption(std::string names, Option::Target target, std::string description) {
  Option& option = m_Options.emplace_back();
  option.Names = std::move(names);
  option.Description = std::move(description);
  option.Value = std::move(target);
  return option;
}

Option& Command::AddText(std::string names, TakeText take, std::string description) {
  return AddOption(std::move(names), std::move(take), std::move(description));
}

Command& Command::AddCommand(std::string name, std::string description) {
  return m_Commands.emplace_back(std::move(name), std::move(description));
}

ExitCode Command::Run() const {
  try {
    return m_Work();
  } catch (const CommandError& error) {
    TellError(error.what());
    return error.Code();
  } catch (const CommandStopped& stopped) {
    TellRemark(std::string("interrupted") + stopped.LeftBehind);
    return ExitCode::Interrupted;
  }
}

TakeText WholeNumber(Ferro::ui64_t least, Ferro::ui64_t most) {
  return [least, most](const std::string& text) {
    Ferro::ui64_t number = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    const bool fits = error == std::errc() && end == last && number >= least && number <= most;
    return fits ? "" : text + " is no whole number from " + std::to_string(least) + " to " + std::to_string(most);
  };
}

}  // namespace Tool
