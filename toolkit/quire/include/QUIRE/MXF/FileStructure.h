// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/MXF/IndexTable.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/MXF/RIP.h>

#include <Ferro/FileReader.h>

#include <optional>
#include <vector>

namespace QUIRE::MXF {

/// A piece of one essence stream that lies in one partition.
struct EssenceRun {
  ui64_t StreamOffset = 0;  ///< of the first byte within the stream
  ui64_t FileOffset = 0;    ///< of the first byte within the file: the key of the first essence KLV
  ui64_t Length = 0;        ///< bytes up to the next partition, or the end of the file
  friend bool operator==(const EssenceRun&, const EssenceRun&) = default;
};

/// What a file consists of: header metadata, partitions, index. ReadHeader comes first; the rest is read when it is asked
/// for. Tolerates what is met in the field: no random index pack or a wrong one, an open header, missing footer, index
/// segments in any partition. The file is the caller's and must stay open. One thread at a time.
class QUIRE_API FileStructure {
 public:
  /// More partitions than this are refused.
  static constexpr size_t MaxPartitions = 32768;
  /// And more essence container labels in all of them.
  static constexpr size_t MaxContainerLabels = 131072;

  OP1aHeader Header;
  /// Bytes before the header partition pack; stored offsets count from there.
  ui64_t RunIn = 0;
  /// The random index pack; empty when the file has none.
  RIP RandomIndex;
  /// All partition packs in file order, the header's first; filled by ReadPartitions.
  std::vector<Partition> Partitions;

  /// Reads the header partition. A header that is not closed and complete is replaced by better metadata in a later
  /// partition, where there are some.
  /// @return RESULT_OK; RESULT_FORMAT with one log line; what the reader returns.
  [[nodiscard]] Result_t ReadHeader(const Ferro::FileReader& file);
  /// Finds all partitions: by the random index pack, else by the chain from the footer, else by walking through the file.
  /// @return RESULT_OK, also for a file that breaks off; RESULT_FORMAT with one log line; what the reader returns.
  [[nodiscard]] Result_t ReadPartitions(const Ferro::FileReader& file);

  /// The runs of a stream in stream order; empty when no partition holds it. Needs ReadPartitions.
  /// @return RESULT_OK; what the reader returns.
  [[nodiscard]] Result_t ReadEssenceRuns(const Ferro::FileReader& file, ui32_t body_sid,
                                         std::vector<EssenceRun>& runs) const;
  /// Reads the index of a stream from the segments of all partitions, into `index`; empty when there is none that can be
  /// used. Needs ReadPartitions.
  /// @return RESULT_OK; RESULT_FORMAT with one log line; what the reader returns.
  [[nodiscard]] Result_t ReadIndex(const Ferro::FileReader& file, ui32_t body_sid, IndexTable& index) const;
  /// The same, made good where the file's index is missing, empty, or does not lead to essence: rebuilt by reading the
  /// keys of the stream. `elements` KLVs make one edit unit (2 for stereoscopic pictures).
  [[nodiscard]] Result_t ReadOrRebuildIndex(const Ferro::FileReader& file, const std::vector<EssenceRun>& runs,
                                            ui32_t body_sid, ui32_t elements, IndexTable& index) const;

 private:
  [[nodiscard]] bool ReadByRandomIndex(const Ferro::FileReader& file);
  [[nodiscard]] bool ReadByFooter(const Ferro::FileReader& file);
  [[nodiscard]] static bool TakeLabels(const Partition& partition, size_t& labels);
  [[nodiscard]] Result_t Walk(const Ferro::FileReader& file);
  [[nodiscard]] Result_t PreferBetterMetadata(const Ferro::FileReader& file);
  /// The end of a partition: the next one, the random index pack, or the end of the file.
  [[nodiscard]] ui64_t EndOf(const Ferro::FileReader& file, size_t partition) const;

  bool m_HasAllPartitions = false;
  std::vector<ui32_t> m_ByBodySID;  // places in Partitions, by stream, then in file order; once all are there
};

/// Where a stream offset lies in the file; no value outside the runs. Constant time for a stream of one run.
[[nodiscard]] QUIRE_API std::optional<ui64_t> FilePosition(const std::vector<EssenceRun>& runs, ui64_t stream_offset);
/// True for the keys of essence elements, encrypted triplets and generic stream data.
[[nodiscard]] QUIRE_API bool IsEssenceKey(const UL& key);

}  // namespace QUIRE::MXF
