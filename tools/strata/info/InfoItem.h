// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/UUID.h>
#include <QUIRE/Rational.h>

#include <concepts>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace Tool {

struct InfoFacts;
struct InfoValue;
using InfoList = std::vector<InfoValue>;

/// What there is to tell of something, in order: facts under the names that they have in JSON. The text form tells the same
/// in other words where those of JSON are for programs.
struct InfoFacts {
  /// Adds a fact that is always told, or replaces it.
  InfoValue& Set(const char* key, InfoValue value);
  /// Adds a text unless it is empty, an identifier unless it has no value, a rate unless it is unknown.
  void Add(const char* key, const std::string& text);
  void Add(const char* key, const Ferro::UUID& id);
  void Add(const char* key, const QUIRE::Rational& rate, std::string shown);
  /// Adds what only the text form tells.
  void Tell(const char* label, std::string text);
  /// Adds facts of a part, or a list, to be filled before the next fact is added.
  InfoFacts& Group(const char* key);
  InfoList& List(const char* key);

  std::vector<std::pair<const char*, InfoValue>> All;
  std::string Line;  ///< what the text form tells of an element of a list; empty: all facts, one behind the other
};

/// A flag, a number, a text, facts of a part, or a list of them.
struct InfoValue {
  InfoValue(bool flag) : Value(flag) {}
  template <std::integral T>
  InfoValue(T number) : Value(static_cast<Ferro::ui64_t>(number)) {}
  InfoValue(Ferro::ui64_t number, std::string readable) : Value(number), Readable(std::move(readable)) {}
  InfoValue(std::string text, std::string readable) : Value(std::move(text)), Readable(std::move(readable)) {}
  InfoValue(const char* text) : Value(std::string(text)) {}
  InfoValue(std::string text) : Value(std::move(text)) {}
  InfoValue(InfoFacts facts) : Value(std::move(facts)) {}
  InfoValue(InfoList list) : Value(std::move(list)) {}

  /// Sets what the text form shows instead; empty: nothing.
  void ShownAs(std::string text) { Shown = std::move(text); }
  [[nodiscard]] bool IsPlain() const { return Value.index() < 3; }

  std::variant<bool, Ferro::ui64_t, std::string, InfoFacts, InfoList> Value;
  std::string Readable;  ///< a number or label in other words, as "95.9 kB"; empty: there are none
  std::optional<std::string> Shown;
  bool IsForPeople = false;  ///< not in JSON
};

/// What `strata info` tells of one path.
struct InfoItem {
  std::string Path;  ///< as the user gave it
  std::string Kind;
  InfoFacts Facts;
  std::vector<std::string> Problems;      ///< what is wrong, a sentence each
  std::optional<Ferro::ui64_t> Duration;  ///< edit units, of a track file that says so

  void AddProblem(std::string sentence) { Problems.push_back(std::move(sentence)); }
  /// Adds edit units per second, where they are known.
  void AddEditRate(const QUIRE::Rational& rate);
  /// Adds a length in edit units, and as time where the rate is known.
  void AddDuration(Ferro::ui64_t edit_units, const QUIRE::Rational& rate);
};

/// A line for each fact, lists indented below their names.
[[nodiscard]] std::string InfoText(const std::vector<InfoItem>& items);
/// The items as JSON, schema strata-info-1.
[[nodiscard]] std::string InfoJson(const std::vector<InfoItem>& items);

}  // namespace Tool
