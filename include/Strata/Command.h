// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/CommandType.h>
#include <Strata/Export.h>
#include <Strata/Types.h>

#include <Ferro/IArchive.h>

#include <string>

namespace Strata {

/// One transport request: an action and the arguments that it takes.
///
/// Archive form, in order: type u32, position u32, rate u32, direction u32, filename string; 20 bytes and the name's.
/// The error text is not archived. The cursors must not be null.
class STRATA_API Command : public Ferro::IArchive {
  std::string m_error;

 public:
  CommandType_t type = CMD_NONE;
  ui32_t position = 0;                  ///< target edit unit of CMD_LOCATE
  ui32_t rate = 0;                      ///< multiple of the normal rate for CMD_SHUTTLE
  Direction_t direction = DIR_FORWARD;  ///< of CMD_PLAY and CMD_JOG
  std::string filename;                 ///< travels with the command; never set by ParseCommand

  /// Takes the command from its console form, after white space: `f` or `b` plays forward or backward, `l<n>` locates,
  /// `t<n>` shuttles, `jb` and `jf` jog, `p` pauses, `s` stops, `?` asks for the grammar. Numbers are decimal; their
  /// sign is dropped. Only the fields that the letter concerns change, and a letter whose argument is missing has
  /// already changed the type.
  /// @return true on success; false with the reason, or for `?` the grammar, in LastError().
  [[nodiscard]] bool ParseCommand(const std::string& text);

  /// Why the last ParseCommand failed; empty when it succeeded. Valid until the next ParseCommand.
  [[nodiscard]] const std::string& LastError() const { return m_error; }

  /// True when the type is not CMD_NONE.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;
};

}  // namespace Strata
