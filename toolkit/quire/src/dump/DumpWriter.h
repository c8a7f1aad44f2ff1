// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DumpNode.h"

#include <QUIRE/MXF/Dump.h>

#include <string>

namespace QUIRE::MXF {

/// Writes the description of a whole file while it is made, so that no tree of it is ever held. The text is what AsText or
/// AsJSON of the group with the same children give.
class DumpWriter {
 public:
  explicit DumpWriter(DumpForm form) : m_Form(form) {}

  void Add(const DumpNode& child);
  /// Begins a list of groups, which the next calls add.
  void BeginList(std::string name);
  void AddItem(const DumpNode& group);
  void EndList();
  /// True from 4 MiB of text on: no more items should be added.
  [[nodiscard]] bool IsFull() const { return m_Out.size() >= FullAt; }
  /// The whole text.
  [[nodiscard]] std::string Finish();

 private:
  static constexpr size_t FullAt = size_t{4} << 20;  // bytes

  void BeginChild(const std::string& name);

  const DumpForm m_Form;
  std::string m_Out;
  std::string m_List;  // the name of the open list
  bool m_HasChildren = false;
  bool m_HasItems = false;  // in the open list
};

}  // namespace QUIRE::MXF
