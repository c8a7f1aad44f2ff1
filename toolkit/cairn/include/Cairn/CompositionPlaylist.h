// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/CompositionAssets.h>
#include <Cairn/CompositionMetadata.h>
#include <Cairn/ContentKind.h>
#include <Cairn/DCPFormat.h>
#include <Cairn/Export.h>
#include <Cairn/Result.h>
#include <Cairn/SignatureMode.h>
#include <Cairn/X509CertificateList.h>

#include <list>
#include <string>

namespace Cairn {

/// A rating of the content by an agency.
struct Rating {
  std::string Agency;  ///< should be a URI; bare words occur
  std::string Label;

  friend bool operator==(const Rating&, const Rating&) = default;
};

/// A composition playlist of either flavour (ST 429-7:2006 with its extensions; Interop). A plain value. The language
/// attributes of titles and annotations are not kept.
class CAIRN_API CompositionPlaylist {
 public:
  std::string NamespaceName;  ///< of the document element as read; not written
  UUID ID;
  std::string Annotation;
  UUID IconID;
  std::string IssueDate;  ///< xs:dateTime text as written; its zone may be absent
  std::string Issuer;
  std::string Creator;
  std::string ContentTitle;
  ContentKind_t ContentKind = CK_UNKNOWN;
  std::string ContentKindText;   ///< as written, trimmed; when empty the writer takes ContentKind's name
  std::string ContentKindScope;  ///< empty: the standard's default
  Cairn::ContentVersion ContentVersion;
  std::list<Rating> RatingList;
  std::list<Reel> ReelList;
  CompositionMetadata Metadata;
  Cairn::DCPFormat_t DCPFormat = DFT_NONE;  ///< flavour detected when read
  bool StereoscopicImage = false;           ///< some reel's picture is stereoscopic
  SignatureMode_t SignatureMode = SM_NONE;
  X509CertificateList SignatureChain;

  /// Reads a document of either flavour into this object, which is cleared first. Diagnostics go to the default log
  /// sink. Unknown elements and attributes are skipped; values that playing needs are checked strictly.
  /// @return RESULT_OK; RESULT_NOT_CPL for another document; RESULT_CN_UUID_FORMAT or RESULT_CN_VALUE for a malformed or
  /// missing value; RESULT_XML_PARSE, RESULT_XML_NAMESPACE from the parser. On failure the object holds what was read.
  [[nodiscard]] Result_t DecodeXML(const std::string& xml);
  /// Writes the document in `format`'s flavour, without signature.
  /// @return RESULT_OK; RESULT_PARAM for a format other than DFT_Interop and DFT_DCI_SMPTE, or a text that XML cannot
  /// carry; RESULT_CN_VALUE, logged, where a value that the schema requires is missing. On failure `out` is unchanged.
  [[nodiscard]] Result_t EncodeXML(std::string& out, DCPFormat_t format) const;

  friend bool operator==(const CompositionPlaylist&, const CompositionPlaylist&) = default;
};

/// The standard's text for a content kind ("feature"); empty for CK_UNKNOWN and values out of range.
[[nodiscard]] CAIRN_API const char* ContentKindName(ContentKind_t kind);
/// The content kind of a text, whatever its letter case and surrounding blanks; CK_UNKNOWN for none of the known.
[[nodiscard]] CAIRN_API ContentKind_t ContentKindFromName(const std::string& name);

}  // namespace Cairn
