// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/Export.h>
#include <Cairn/Result.h>
#include <Cairn/Types.h>

#include <list>
#include <string>

namespace Cairn {

/// An asset map of either flavour (ST 429-9:2014; Interop): where the files of a volume lie. A plain value.
class CAIRN_API AssetMap {
 public:
  /// A file, or a part of one, that holds a stretch of an asset.
  struct Chunk {
    std::string Path;        ///< as written, trimmed; see AssetMapPath.h
    ui64_t VolumeIndex = 1;  ///< counts from 1, which stands for no element too
    ui64_t Offset = 0;       ///< bytes from the start of the asset; 0 stands for no element too
    bool HasLength = false;  ///< false: the length of the file
    fsize_t Length = 0;      ///< bytes

    friend bool operator==(const Chunk&, const Chunk&) = default;
  };

  struct Asset {
    UUID ID;
    std::string Annotation;
    bool IsPackingList = false;  ///< element PackingList: empty, "true" or "1"
    std::list<Chunk> ChunkList;  ///< the asset is their concatenation

    friend bool operator==(const Asset&, const Asset&) = default;
  };

  std::string NamespaceName;  ///< of the document element as read; not written
  UUID ID;
  std::string Annotation;
  std::string Creator;
  ui64_t VolumeCount = 1;  ///< 0: the document that was read does not say
  std::string IssueDate;   ///< xs:dateTime text as written
  std::string Issuer;
  std::list<Asset> AssetList;
  Cairn::DCPFormat_t DCPFormat = DFT_NONE;

  /// As CompositionPlaylist::DecodeXML; RESULT_NOT_ASSETMAP for another document.
  [[nodiscard]] Result_t DecodeXML(const std::string& xml);
  /// As CompositionPlaylist::EncodeXML.
  [[nodiscard]] Result_t EncodeXML(std::string& out, DCPFormat_t format) const;

  friend bool operator==(const AssetMap&, const AssetMap&) = default;
};

/// A volume index of either flavour: the number of a volume, from 1. A plain value.
class CAIRN_API VolumeIndex {
 public:
  std::string NamespaceName;  ///< of the document element as read; not written
  ui64_t Index = 1;           ///< 0: the document that was read does not say
  Cairn::DCPFormat_t DCPFormat = DFT_NONE;

  /// As AssetMap::DecodeXML.
  [[nodiscard]] Result_t DecodeXML(const std::string& xml);
  /// As AssetMap::EncodeXML.
  [[nodiscard]] Result_t EncodeXML(std::string& out, DCPFormat_t format) const;

  friend bool operator==(const VolumeIndex&, const VolumeIndex&) = default;
};

}  // namespace Cairn
