// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>

#include <list>
#include <string>
#include <string_view>

namespace Ferro {

// Operations on path texts. None touches the file system; a path is bytes separated by "/".

using PathList_t = std::list<std::string>;

/// `head` + separator + `tail`, with exactly one separator between them; an empty side gives the other.
[[nodiscard]] FERRO_API std::string PathJoin(std::string_view head, std::string_view tail, char separator = '/');
/// All before the last separators: "a/b/c.xml" gives "a/b", "/a" gives "/", "c.xml" gives "".
[[nodiscard]] FERRO_API std::string PathDirname(std::string_view path);
/// All after the last separator.
[[nodiscard]] FERRO_API std::string PathBasename(std::string_view path);
/// The extension without its point: "a/b.PNG" gives "PNG"; "", when the basename has none ("b", ".b", "b.").
[[nodiscard]] FERRO_API std::string PathExtension(std::string_view path);
/// True for a path that begins with a separator.
[[nodiscard]] FERRO_API bool PathIsAbsolute(std::string_view path);
/// Removes empty and "." steps and resolves ".." against the steps before it, as text: "a/./b//../c" gives "a/c".
/// A ".." with nothing before it stays in a relative path and vanishes in an absolute one. A relative path of which
/// nothing is left is "".
[[nodiscard]] FERRO_API std::string PathNormalize(std::string_view path);
/// True when `relative`, taken from a folder, stays inside it: not absolute, no NUL, and no ".." that climbs out. Symbolic
/// links are not considered.
[[nodiscard]] FERRO_API bool PathStaysInside(std::string_view relative);

}  // namespace Ferro
