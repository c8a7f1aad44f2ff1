// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <string>

namespace QUIRE::MXF {

/// Takes the value of a property for display.
class ValuePrinter {
 public:
  virtual ~ValuePrinter();
  virtual void Number(i64_t value) = 0;
  virtual void Bool(bool value) = 0;
  virtual void Text(const std::string& text) = 0;
  virtual void Label(const UL& label) = 0;
  virtual void BeginList() = 0;
  virtual void EndList() = 0;
};

}  // namespace QUIRE::MXF
