// SPDX-License-Identifier: BSD-3-Clause
#include "Damage.h"

#include <cctype>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

namespace testsupport {
namespace {

/// An element as it stands in the text.
struct Element {
  std::string Name;
  size_t Begin = 0;    ///< of its start tag
  size_t Content = 0;  ///< behind the start tag
  size_t Close = 0;    ///< of its end tag; of an empty element its end
  size_t End = 0;
  std::optional<size_t> Parent;  ///< index
  bool IsLeaf = true;

  [[nodiscard]] bool HasText() const { return IsLeaf && Close > Content; }
};

/// The elements of a document that is well-formed and has no comments, in the order of their start tags.
std::vector<Element> ElementsOf(const std::string& xml) {
  std::vector<Element> all;
  std::vector<size_t> open;
  for (size_t at = xml.find('<'); at != xml.npos; at = xml.find('<', at + 1)) {
    const size_t end = xml.find('>', at) + 1;
    if (xml[at + 1] == '?') continue;
    if (xml[at + 1] == '/') {
      all[open.back()].Close = at;
      all[open.back()].End = end;
      open.pop_back();
      continue;
    }
    Element element;
    element.Name = xml.substr(at + 1, xml.find_first_of(" />\n", at + 1) - at - 1);
    element.Begin = at;
    element.Content = element.Close = element.End = end;
    if (!open.empty()) {
      element.Parent = open.back();
      all[open.back()].IsLeaf = false;
    }
    if (xml[end - 2] != '/') open.push_back(all.size());
    all.push_back(element);
  }
  return all;
}

template <class PredicateT>
std::vector<Element> Those(const std::vector<Element>& all, PredicateT&& wanted) {
  std::vector<Element> some;
  for (const Element& element : all)
    if (wanted(element)) some.push_back(element);
  return some;
}

std::string TextOf(const std::string& xml, const Element& element) {
  return xml.substr(element.Begin, element.End - element.Begin);
}

std::string RemoveElement(std::string& xml, const std::vector<Element>& all, Dice& dice) {
  const Element& element = dice.Of(all);
  xml.erase(element.Begin, element.End - element.Begin);
  return "element " + element.Name + " removed at " + std::to_string(element.Begin);
}

std::string RepeatElement(std::string& xml, const std::vector<Element>& all, Dice& dice) {
  const Element& element = dice.Of(all);
  xml.insert(element.End, TextOf(xml, element));
  return "element " + element.Name + " repeated at " + std::to_string(element.Begin);
}

std::string SwapSiblings(std::string& xml, const std::vector<Element>& all, Dice& dice) {
  const Element one = dice.Of(all);
  const auto siblings = Those(all, [&](const Element& each) { return each.Parent == one.Parent; });
  const Element other = dice.Of(siblings);
  const Element& first = one.Begin < other.Begin ? one : other;
  const Element& second = one.Begin < other.Begin ? other : one;
  if (first.Begin == second.Begin) return "";
  const std::string former = TextOf(xml, first);
  const std::string latter = TextOf(xml, second);
  xml.replace(second.Begin, latter.size(), former);
  xml.replace(first.Begin, former.size(), latter);
  return "elements " + first.Name + " at " + std::to_string(first.Begin) + " and " + second.Name + " at " +
         std::to_string(second.Begin) + " swapped";
}

std::string RenameElement(std::string& xml, const std::vector<Element>& all, Dice& dice) {
  const Element& element = dice.Of(all);
  const std::string name = dice.Below(3) == 0 ? "Unknown" : dice.Of(all).Name;
  if (element.Close < element.End) xml.replace(element.Close + 2, element.Name.size(), name);
  xml.replace(element.Begin + 1, element.Name.size(), name);
  return "element " + element.Name + " at " + std::to_string(element.Begin) + " renamed to " + name;
}

/// "Reel/Id": the innermost element at a place, and the one around it.
std::string PathAt(const std::vector<Element>& all, size_t at) {
  const Element* innermost = nullptr;
  for (const Element& element : all)
    if (element.Begin <= at && at < element.End) innermost = &element;
  if (innermost == nullptr) return "no element";
  return (innermost->Parent ? all[*innermost->Parent].Name + '/' : "") + innermost->Name;
}

std::string ChangeValue(std::string& xml, const std::vector<Element>& all, Dice& dice) {
  static constexpr const char* Values[] = {"",   "0",  "1", "-1", "25 1", "4294967297", "24",      "x",
                                           "en", "fr", " ", "12", "true", "2026-01-01", "../a.mxf"};
  const auto leaves = Those(all, [](const Element& each) { return each.HasText(); });
  if (leaves.empty()) return "";
  const Element& element = dice.Of(leaves);
  const Element& other = dice.Of(leaves);
  const std::string value =
      dice.Below(2) == 0 ? dice.Of(Values) : xml.substr(other.Content, other.Close - other.Content);
  xml.replace(element.Content, element.Close - element.Content, value);
  return "value of " + PathAt(all, element.Begin) + " at " + std::to_string(element.Begin) + " changed to \"" + value +
         "\"";
}

/// Changes one character of values or attributes for another of its kind.
std::string ChangeCharacter(std::string& xml, const std::vector<Element>& all, bool is_digit, Dice& dice) {
  std::vector<size_t> places;
  bool is_in_tag = false;
  for (size_t at = xml.find("?>") + 2; at < xml.size(); ++at) {
    if (xml[at] == '<') is_in_tag = true;
    const bool fits = is_digit ? std::isdigit(static_cast<unsigned char>(xml[at])) != 0
                               : std::isalpha(static_cast<unsigned char>(xml[at])) != 0;
    if (fits && (!is_in_tag || is_digit)) places.push_back(at);
    if (xml[at] == '>') is_in_tag = false;
  }
  if (places.empty()) return "";
  const size_t at = dice.Of(places);
  const char before = xml[at];
  if (is_digit)
    xml[at] = static_cast<char>('0' + (before - '0' + 1 + static_cast<int>(dice.Below(9))) % 10);
  else
    xml[at] = static_cast<char>((std::islower(static_cast<unsigned char>(before)) != 0 ? 'a' : 'A') + dice.Below(26));
  return std::string(is_digit ? "digit '" : "letter '") + before + "' in " + PathAt(all, at) + " at " +
         std::to_string(at) + " changed to '" + xml[at] + "'";
}

std::string ChangeAttribute(std::string& xml, const std::vector<Element>& all, Dice& dice) {
  const auto with = Those(all, [&](const Element& each) {
    return xml.substr(each.Begin, each.Content - each.Begin).find("=\"") != xml.npos;
  });
  if (with.empty()) return "";
  const Element& element = dice.Of(with);
  const std::string tag = xml.substr(element.Begin, element.Content - element.Begin);
  std::vector<size_t> places;
  for (size_t at = tag.find("=\""); at != tag.npos; at = tag.find("=\"", at + 1)) places.push_back(at);
  const size_t equals = dice.Of(places);
  const size_t name = tag.rfind(' ', equals) + 1;
  const std::string attribute = tag.substr(name, equals - name);
  const size_t end = tag.find('"', equals + 2);
  if (dice.Below(2) == 0) {
    xml.erase(element.Begin + name - 1, end + 2 - name);
    return "attribute " + attribute + " of " + element.Name + " at " + std::to_string(element.Begin) + " removed";
  }
  static constexpr const char* Values[] = {"", "0", "x", "bottom", "top", "50", "en", "00:00:00:10"};
  const std::string value = dice.Of(Values);
  xml.replace(element.Begin + equals + 2, end - equals - 2, value);
  return "attribute " + attribute + " of " + element.Name + " at " + std::to_string(element.Begin) + " changed to \"" +
         value + "\"";
}

}  // namespace

std::string DamageDocument(std::string& xml, Dice& dice) {
  const std::vector<Element> all = ElementsOf(xml);
  switch (dice.Below(9)) {
    case 0:
      return RemoveElement(xml, all, dice);
    case 1:
      return RepeatElement(xml, all, dice);
    case 2:
      return SwapSiblings(xml, all, dice);
    case 3:
      return RenameElement(xml, all, dice);
    case 4:
      return ChangeAttribute(xml, all, dice);
    case 5:
      return ChangeCharacter(xml, all, false, dice);
    case 6:
      return ChangeCharacter(xml, all, true, dice);
    default:
      return ChangeValue(xml, all, dice);
  }
}

}  // namespace testsupport
