// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/FileType.h>

#include <string>
#include <string_view>

namespace Cairn {

/// The MIME type of a file of this type in a SMPTE package or timed-text track file; "application/octet-stream" where
/// there is none.
[[nodiscard]] CAIRN_API std::string FileTypeToSMPTEMIMEType(FileType_t type);
/// The same for an Interop package.
[[nodiscard]] CAIRN_API std::string FileTypeToInteropMIMEType(FileType_t type);

/// The file type a packing list's MIME type tells of, whatever its flavour, letter case and blanks: FT_MXF and FT_XML
/// where the type leaves the kind open, FT_UNKNOWN for one not known. A hint only: files are identified by content.
[[nodiscard]] CAIRN_API FileType_t MIMETypeToFileType(std::string_view mime_type);

}  // namespace Cairn
