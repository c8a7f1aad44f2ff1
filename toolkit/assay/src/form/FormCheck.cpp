// SPDX-License-Identifier: BSD-3-Clause
#include "FormCheck.h"

#include "base/Text.h"

#include <Cairn/Namespace.h>

#include <algorithm>

namespace Assay {
namespace {

bool IsDeclaration(std::string_view attribute) {
  return attribute == "xmlns" || attribute.starts_with("xmlns:") || attribute == "xsi:schemaLocation" ||
         attribute == "xsi:noNamespaceSchemaLocation";
}

/// The choices of a step as a text: "Text, Image or Font".
std::string Names(const Step& step) {
  std::string names;
  for (const ElementForm& choice : step.Choices) {
    if (!names.empty()) names += &choice == &step.Choices.back() ? " or " : ", ";
    names += choice.Name;
  }
  return names;
}

class FormCheck {
 public:
  explicit FormCheck(const Node& root, const Grammar& grammar) : m_Root(root), m_Grammar(grammar) {}

  std::vector<FormFault> Run() {
    Check(m_Root, *m_Grammar.Root.Type, nullptr);
    return std::move(m_Faults);
  }

 private:
  // The parser bounds how deep elements nest.
  void Check(const Node& node, const TypeForm& type, const Node* parent) {
    if (m_Faults.size() >= MaxFormFaults) return;
    if (type.Value == ValueForm::Anything && type.Steps.empty() && type.Attributes.empty()) {
      CheckForeign(node);
      return;
    }
    CheckAttributes(node, type);
    if (type.Steps.empty())
      CheckValue(node, type, parent);
    else
      CheckChildren(node, type);
  }

  void CheckAttributes(const Node& node, const TypeForm& type) {
    for (const Node::Attribute& attribute : node.Attributes) {
      if (IsDeclaration(attribute.Name)) continue;
      const auto form =
          std::ranges::find_if(type.Attributes, [&](const AttributeForm& each) { return attribute.Name == each.Name; });
      if (form == type.Attributes.end())
        Add(FaultKind::UnknownAttribute, &node, &node, attribute.Name, node.Line);
      else if (!HasForm(form->Value, attribute.Value, form->Choices))
        AddValue(&node, &node, attribute.Name, node.Line, DescribeForm(form->Value, form->Choices), attribute.Value);
    }
    for (const AttributeForm& form : type.Attributes)
      if (form.IsRequired && node.Find(form.Name) == nullptr)
        Add(FaultKind::MissingAttribute, &node, nullptr, form.Name, node.Line);
  }

  void CheckValue(const Node& node, const TypeForm& type, const Node* parent) {
    if (!node.Children.empty()) {
      for (const Node& child : node.Children) Add(FaultKind::UnknownElement, &node, &child, child.Name, child.Line);
      return;
    }
    if (type.HasDefault && node.Text.empty()) return;
    if (!HasForm(type.Value, node.Text, type.Choices))
      AddValue(parent, &node, node.Name, node.Line, DescribeForm(type.Value, type.Choices), node.Text);
  }

  /// Where the children of one element stand in its steps.
  struct Position {
    explicit Position(std::span<const Step> steps) : Steps(steps), Counts(steps.size()) {}

    std::span<const Step> Steps;
    std::vector<unsigned> Counts;  // of each step
    size_t At = 0;
  };

  void CheckChildren(const Node& node, const TypeForm& type) {
    if (!type.IsMixed && (node.HasLooseText || (node.Children.empty() && !IsBlank(node.Text))))
      Add(FaultKind::LooseText, &node, &node, node.Name, node.Line);
    Position position(type.Steps);
    for (const Node& child : node.Children) {
      if (const TypeForm* child_type = Place(child, position))
        CheckPlaced(child, *child_type, node);
      else
        AddStray(node, child, position);
    }
    AddMissing(node, position);
  }

  void CheckPlaced(const Node& child, const TypeForm& type, const Node& parent) {
    if (&type == &AnyForeign)
      CheckForeign(child);
    else
      Check(child, type, &parent);
  }

  /// Takes the child as the next one, or gives null where it does not fit from here on.
  const TypeForm* Place(const Node& child, Position& position) {
    for (size_t at = position.At; at < position.Steps.size(); ++at) {
      const TypeForm* type = TypeAt(child, position.Steps[at]);
      if (type == nullptr || position.Counts[at] >= position.Steps[at].Most) continue;
      position.At = at;
      ++position.Counts[at];
      return type;
    }
    return nullptr;
  }

  /// An element that does not fit from here on: repeated, misplaced, or unknown. It is counted where it belongs, so that
  /// it is not missing as well.
  void AddStray(const Node& parent, const Node& child, Position& position) {
    for (size_t at = 0; at < position.Steps.size(); ++at) {
      const TypeForm* type = NamedTypeAt(child, position.Steps[at]);
      if (type == nullptr) continue;
      const bool is_repeated = position.Counts[at] >= position.Steps[at].Most;
      ++position.Counts[at];
      Add(is_repeated ? FaultKind::RepeatedElement : FaultKind::MisplacedElement, &parent, &child, child.Name,
          child.Line);
      Check(child, *type, &parent);
      return;
    }
    Add(FaultKind::UnknownElement, &parent, &child, child.Name, child.Line);
  }

  void AddMissing(const Node& node, const Position& position) {
    for (size_t at = 0; at < position.Steps.size(); ++at)
      if (position.Counts[at] < position.Steps[at].Least)
        Add(FaultKind::MissingElement, &node, nullptr, Names(position.Steps[at]), node.Line);
  }

  [[nodiscard]] std::string_view NamespaceOf(Space space) const {
    switch (space) {
      case Space::Main:
        return m_Root.Namespace;
      case Space::Extension:
        return m_Extension;
      case Space::Signature:
        break;
    }
    return Cairn::NS_XMLDSig;
  }

  /// The type that a child has as one of the step's choices; null where it is none.
  const TypeForm* NamedTypeAt(const Node& child, const Step& step) const {
    for (const ElementForm& choice : step.Choices)
      if (child.Name == choice.Name && child.Namespace == NamespaceOf(choice.Space)) return choice.Type;
    return nullptr;
  }

  const TypeForm* TypeAt(const Node& child, const Step& step) const {
    if (const TypeForm* type = NamedTypeAt(child, step)) return type;
    return IsAdmitted(child, step.Foreign) ? &AnyForeign : nullptr;
  }

  [[nodiscard]] bool IsAdmitted(const Node& child, Others others) const {
    switch (others) {
      case Others::None:
        return false;
      case Others::NotMain:
        return !child.Namespace.empty() && child.Namespace != m_Root.Namespace;
      case Others::NotExtension:
        return !child.Namespace.empty() && child.Namespace != m_Extension;
      case Others::NotSignature:
        return !child.Namespace.empty() && child.Namespace != Cairn::NS_XMLDSig;
      case Others::AnyNamespace:
        return true;
    }
    return false;
  }

  /// A known element is held against its table; of an unknown one, all that is in it.
  void CheckForeign(const Node& node) {
    const auto known = std::ranges::find_if(m_Grammar.Extensions, [&](const GlobalElement& element) {
      return element.Namespace == node.Namespace && element.Name == node.Name;
    });
    if (known == m_Grammar.Extensions.end()) {
      if (const std::string* language = node.Find("xml:lang"))
        if (!HasForm(ValueForm::Language, *language))
          AddValue(&node, &node, "xml:lang", node.Line, DescribeForm(ValueForm::Language), *language);
      for (const Node& child : node.Children) CheckForeign(child);
      return;
    }
    const std::string_view outer = m_Extension;
    m_Extension = node.Namespace;
    Check(node, *known->Type, nullptr);
    m_Extension = outer;
  }

  void Add(FaultKind kind, const Node* parent, const Node* element, const std::string& name, ui64_t line) {
    if (m_Faults.size() < MaxFormFaults) m_Faults.push_back({kind, parent, element, name, line, {}, {}});
  }

  void AddValue(const Node* parent, const Node* element, const std::string& name, ui64_t line,
                const std::string& expected, const std::string& found) {
    if (m_Faults.size() < MaxFormFaults)
      m_Faults.push_back({FaultKind::WrongValue, parent, element, name, line, expected, Quoted(found)});
  }

  static constexpr TypeForm AnyForeign{ValueForm::Anything};

  const Node& m_Root;
  const Grammar& m_Grammar;
  std::string_view m_Extension;  // namespace of the extension element that is looked at
  std::vector<FormFault> m_Faults;
};

}  // namespace

std::vector<FormFault> CheckForm(const Node& root, const Grammar& grammar) {
  return FormCheck(root, grammar).Run();
}

std::string DescribeFault(const FormFault& fault) {
  const std::string parent = fault.Parent == nullptr ? std::string("the document") : fault.Parent->Name;
  switch (fault.Kind) {
    case FaultKind::MissingElement:
      return parent + " has no " + fault.Name;
    case FaultKind::RepeatedElement:
      return fault.Name + " is repeated in " + parent;
    case FaultKind::MisplacedElement:
      return fault.Name + " stands at the wrong place in " + parent;
    case FaultKind::UnknownElement:
      return Quoted(fault.Name) + " is unknown in " + parent;
    case FaultKind::MissingAttribute:
      return parent + " has no attribute " + fault.Name;
    case FaultKind::UnknownAttribute:
      return parent + " has the unknown attribute " + Quoted(fault.Name);
    case FaultKind::WrongValue:
      return fault.Name + " is \"" + fault.Found + '"';
    case FaultKind::LooseText:
      return parent + " has text beside its elements";
  }
  return {};
}

}  // namespace Assay
