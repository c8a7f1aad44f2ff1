// SPDX-License-Identifier: BSD-3-Clause
#include "SystemError.h"

#include <cerrno>

namespace Ferro {

Result_t ResultOfOpenError(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return RESULT_NOT_FOUND;
    case EACCES:
    case EPERM:
    case EROFS:
      return RESULT_NO_PERM;
    case ENXIO:  // a socket, or a device without its hardware
    case ENODEV:
    case EISDIR:
      return RESULT_NOTAFILE;
    default:
      return RESULT_FILEOPEN;
  }
}

Result_t CheckFilename(const std::string& filename) {
  if (filename.empty()) return RESULT_NULL_STR;
  return filename.find('\0') == std::string::npos ? RESULT_OK : RESULT_NOT_FOUND;
}

}  // namespace Ferro
