// SPDX-License-Identifier: BSD-3-Clause
#include "DumpSet.h"

#include "metadata/SetDefinition.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/Dump.h>

#include <algorithm>
#include <cstdio>

namespace QUIRE::MXF {
namespace {

// Of values that we do not know, this many bytes are shown.
constexpr size_t ShownBytes = 64;

/// Adds values to a node: to a group the one under the given name, to a list one after another.
class NodePrinter final : public ValuePrinter {
 public:
  NodePrinter(DumpNode& group, std::string name) : m_Target(&group), m_Name(std::move(name)) {}
  void Number(i64_t value) override { m_Target->Add(m_Name, DumpNode::Kind::Word, std::to_string(value)); }
  void Bool(bool value) override { m_Target->Add(m_Name, DumpNode::Kind::Word, value ? "true" : "false"); }
  void Text(const std::string& text) override { m_Target->AddText(m_Name, text); }
  void Label(const UL& label) override { m_Target->AddText(m_Name, DescribeLabel(label)); }
  void BeginList() override {
    m_Target = &m_Target->Add(m_Name, DumpNode::Kind::List);
    m_Name.clear();
  }
  void EndList() override {}

 private:
  DumpNode* m_Target;
  std::string m_Name;
};

// The property's name without that of its set: "SampleRate" of FileDescriptor_SampleRate.
std::string PropertyName(const MDDEntry& entry) {
  const std::string name = entry.Name;
  return name.substr(name.find('_') + 1);
}

std::string Bytes(std::span<const ui8_t> bytes) {
  const std::string shown = Ferro::bin2hex(bytes.first(std::min(bytes.size(), ShownBytes)));
  return bytes.size() <= ShownBytes ? shown : shown + "... " + std::to_string(bytes.size()) + " bytes";
}

std::string UnknownItemName(ui16_t tag, const Primer* primer) {
  char number[8];
  std::snprintf(number, sizeof number, "%04x", tag);
  const Primer::Label_t* label = primer != nullptr ? primer->Find(tag) : nullptr;
  return "Item " + std::string(number) + (label != nullptr ? " " + DescribeLabel(UL(*label)) : "");
}

void DescribeProperty(const InterchangeObject& set, const Property& property, DumpNode& group) {
  NodePrinter printer(group, PropertyName(DefaultSMPTEDict().Type(property.Entry)));
  property.Print(set, printer);
}

}  // namespace

std::string DescribeLabel(const UL& label) {
  const MDDEntry* entry = DefaultSMPTEDict().FindUL(label.Bytes());
  return label.EncodeString() + (entry != nullptr ? " " + std::string(entry->Name) : "");
}

void DescribeSet(const InterchangeObject& set, const Primer* primer, DumpNode& group) {
  const auto* opaque = dynamic_cast<const OpaqueSet*>(&set);
  group.AddText("Set", opaque != nullptr ? "unknown" : set.Name());
  group.AddText("Key", set.Key().EncodeString());
  if (opaque != nullptr) {
    group.AddText("Value", Bytes(opaque->Value));
    return;
  }
  for (const StoredItem& item : set.Items) {
    if (item.Known == nullptr)
      group.AddText(UnknownItemName(item.Tag, primer), Bytes(item.Found));
    else
      DescribeProperty(set, *item.Known, group);
  }
  for (const Property& property : set.Definition().Properties) {
    const auto same = [&property](const StoredItem& item) { return item.Known == &property; };
    const bool left_out = set.WasRead && !property.IsOptional();
    if (!left_out && std::none_of(set.Items.begin(), set.Items.end(), same)) DescribeProperty(set, property, group);
  }
}

std::string DumpSet(const InterchangeObject& set, DumpForm form) {
  DumpNode group;
  DescribeSet(set, nullptr, group);
  return form == DumpForm::JSON ? group.AsJSON() : group.AsText();
}

}  // namespace QUIRE::MXF
