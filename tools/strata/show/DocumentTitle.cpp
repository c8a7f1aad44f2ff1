// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentTitle.h"

#include <Cairn/CompositionPlaylist.h>
#include <Cairn/InitObjectWithFile.h>
#include <Cairn/PackingList.h>
#include <Strata/ShowPlaylist.h>

namespace Tool {

namespace {

template <class Document>
std::string TextOf(const std::string& path, std::string Document::*text) {
  Document document;
  return Cairn::InitObjectWithFile(document, path).Success() ? document.*text : std::string();
}

}  // namespace

std::string DocumentTitle(Cairn::FileType_t type, const std::string& path) {
  switch (type) {
    case Cairn::FT_CPL:
      return TextOf(path, &Cairn::CompositionPlaylist::ContentTitle);
    case Cairn::FT_SHOW:
      return TextOf(path, &Strata::ShowPlaylist::ShowTitle);
    case Cairn::FT_PKL:
      return TextOf(path, &Cairn::PackingList::Annotation);
    default:
      return "";
  }
}

}  // namespace Tool
