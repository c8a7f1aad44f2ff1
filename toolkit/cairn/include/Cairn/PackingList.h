// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/Export.h>
#include <Cairn/Result.h>
#include <Cairn/SignatureMode.h>
#include <Cairn/Types.h>
#include <Cairn/X509CertificateList.h>

#include <list>
#include <string>

namespace Cairn {

/// A packing list of either flavour (ST 429-8:2007; Interop): the files of a package with sizes and digests. A plain
/// value.
class CAIRN_API PackingList {
 public:
  struct Asset {
    UUID ID;
    std::string Annotation;
    SHA1 Digest;       ///< of the file as stored; no value when the document has none (Interop)
    fsize_t Size = 0;  ///< bytes of the whole file; 0 when the document has none
    std::string Type;  ///< MIME type as written, trimmed
    std::string OriginalFileName;

    friend bool operator==(const Asset&, const Asset&) = default;
  };

  std::string NamespaceName;  ///< of the document element as read; not written
  UUID ID;
  std::string Annotation;
  UUID IconID;
  std::string IssueDate;  ///< xs:dateTime text as written
  std::string Issuer;
  std::string Creator;
  UUID GroupID;  ///< SMPTE only
  std::list<Asset> AssetList;
  Cairn::DCPFormat_t DCPFormat = DFT_NONE;
  SignatureMode_t SignatureMode = SM_NONE;
  X509CertificateList SignatureChain;

  /// As CompositionPlaylist::DecodeXML; RESULT_NOT_PKL for another document.
  [[nodiscard]] Result_t DecodeXML(const std::string& xml);
  /// As CompositionPlaylist::EncodeXML.
  [[nodiscard]] Result_t EncodeXML(std::string& out, DCPFormat_t format) const;

  friend bool operator==(const PackingList&, const PackingList&) = default;
};

}  // namespace Cairn
