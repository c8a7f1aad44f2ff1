// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Tool {

/// A JSON value as a report fills it; members keep their order. JsonText writes it, with a library that only that
/// function sees, since it takes long to compile.
class Json {
 public:
  struct Member;
  /// An object: each key with its content, in order.
  struct Members {
    std::vector<std::string> Keys;
    std::vector<Json> Contents;
  };

  /// null
  Json() = default;
  template <class T>
  requires std::integral<T> Json(T number) : m_Value(Stored(number)) {}
  Json(double number) : m_Value(number) {}
  Json(const char* text) : m_Value(std::string(text)) {}
  Json(const std::string& text) : m_Value(text) {}
  template <class T>
  Json(const std::vector<T>& list) : m_Value(std::vector<Json>(list.begin(), list.end())) {}
  /// An object.
  Json(std::initializer_list<Member> members);

  [[nodiscard]] static Json Array();
  [[nodiscard]] static Json Object();

  /// The member of that name, added as null where there is none. Null becomes an object.
  Json& operator[](std::string_view key);
  /// Adds to an array, and returns what was added. Null becomes an array.
  Json& push_back(Json value);
  /// Takes over all members of another object.
  void update(const Json& object);

  /// Calls `visit` with std::monostate for null, bool, i64_t, ui64_t, double, std::string, a vector of Json, or Members.
  template <class Visitor>
  decltype(auto) Visit(Visitor&& visit) const {
    return std::visit(visit, m_Value);
  }

 private:
  using Value =
      std::variant<std::monostate, bool, Ferro::i64_t, Ferro::ui64_t, double, std::string, std::vector<Json>, Members>;

  static Value Stored(bool is_true) { return is_true; }
  static Value Stored(std::signed_integral auto number) { return Ferro::i64_t{number}; }
  static Value Stored(std::unsigned_integral auto number) { return Ferro::ui64_t{number}; }

  Value m_Value;
};

struct Json::Member {
  std::string Key;
  Json Content;
};

}  // namespace Tool
