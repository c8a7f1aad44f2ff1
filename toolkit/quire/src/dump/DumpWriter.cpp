// SPDX-License-Identifier: BSD-3-Clause
#include "DumpWriter.h"

#include <utility>

namespace QUIRE::MXF {

void DumpWriter::BeginChild(const std::string& name) {
  m_Out += (m_HasChildren ? ",\n" : "{\n") + Indent(1) + Quoted(name) + ": ";
  m_HasChildren = true;
}

void DumpWriter::Add(const DumpNode& child) {
  if (m_Form == DumpForm::Text) return child.AppendText(0, m_Out);
  BeginChild(child.Name);
  child.AppendJSON(1, m_Out);
}

void DumpWriter::BeginList(std::string name) {
  m_List = std::move(name);
  m_HasItems = false;
  if (m_Form == DumpForm::Text) return;
  BeginChild(m_List);
  m_Out += '[';
}

void DumpWriter::AddItem(const DumpNode& group) {
  if (m_Form == DumpForm::Text) {
    if (!m_HasItems) m_Out += m_List + ":\n";
    group.AppendText(1, m_Out);
  } else {
    m_Out += (m_HasItems ? ",\n" : "\n") + Indent(2);
    group.AppendJSON(2, m_Out);
  }
  m_HasItems = true;
}

void DumpWriter::EndList() {
  if (m_Form == DumpForm::Text) {
    if (!m_HasItems) m_Out += m_List + ": []\n";
  } else {
    if (m_HasItems) m_Out += '\n' + Indent(1);
    m_Out += ']';
  }
}

std::string DumpWriter::Finish() {
  if (m_Form == DumpForm::JSON) m_Out += m_HasChildren ? "\n}\n" : "{}\n";
  return std::move(m_Out);
}

}  // namespace QUIRE::MXF
