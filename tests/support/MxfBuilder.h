// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "MxfBytes.h"

#include <map>
#include <optional>
#include <string>

namespace testsupport {

/// A font or image of a timed-text file.
struct Resource {
  Bytes ID;  // 16 bytes
  std::string MIMEType = "image/png";
  Bytes Data;
  ui32_t SID = 10;
  ui64_t BodyOffset = 0;
  bool Listed = true;  // in the header; a further piece of a stream is not
};

/// Builds a track file in memory, byte by byte as ST 377-1 and ST 429-3 describe it, with knobs for what goes wrong in
/// the field. Each Build gives the same bytes for the same knobs.
class MxfBuilder {
 public:
  enum Kind_t { JP2K, JP2KS, MPEG2, PCM, TimedText, DCData, Atmos };

  explicit MxfBuilder(Kind_t kind);

  // What the file holds. A stereoscopic file takes two frames for each edit unit.
  Kind_t Kind;
  bool Interop = false;
  ui32_t RateNumerator = 24;
  ui32_t RateDenominator = 1;
  std::vector<Bytes> Frames;
  std::vector<Resource> Resources;
  ui32_t SampleRate = 48000;
  ui32_t Channels = 2;
  Bytes ChannelAssignment;  // 16 bytes, or none

  // Encryption: none without a key.
  Bytes Key;  // 16 bytes
  bool UseHMAC = true;
  ui64_t PlaintextOffset = 0;
  std::vector<std::optional<ui64_t>>
      SequenceNumbers;     // of the triplets instead of 1, 2, 3; without value an empty item
  Bytes SourceLengthItem;  // replaces the 8-byte form when given

  // Structure.
  Bytes RunIn;
  ui32_t HeaderFill = 200;  // bytes of fill after the header sets; 0 for none
  bool HasRIP = true;
  bool HasFooter = true;
  bool FooterPartitionKnown = true;
  Bytes AfterRIP;
  ui8_t HeaderStatus = 4;  // 1 open incomplete, 2 closed incomplete, 3 open complete, 4 closed complete
  bool HeaderMetadataInFooter = false;
  ui32_t KAGSize = 1;
  size_t EssenceLengthSize = 4;  // bytes of the elements' length field
  Bytes FillBeforeEssence;       // whole KLVs
  Bytes FillBetweenFrames;
  Bytes ElementKey;  // replaces the kind's own
  ui64_t Duration;   // what the header says; the number of edit units by default
  bool DurationGiven = false;

  // Index.
  enum IndexPlace_t { InFooter, InHeader, InBody, Nowhere };
  IndexPlace_t IndexPlace = InFooter;
  ui32_t EntriesPerSegment = 5000;
  ui64_t StreamOffsetOrigin = 0;  // added to each entry
  ui8_t EntrySize = 11;
  bool ZeroIndexDuration = false;
  bool SegmentsTwice = false;
  bool SegmentsReversed = false;
  bool ForceVariableIndex = false;  // also for sound
  ui32_t ExtraEntries = 0;          // after the last, at the end of the essence
  ui32_t EntriesPerEditUnit = 1;    // 2: doubled tables
  ui32_t IndexRateFactor = 1;       // index edit rate over the edit rate
  Bytes ExtraSegments;              // whole KLVs after the index segments

  // Header sets: properties added to, replaced in (same tag), or with an empty value removed from the set of this name.
  // Dynamic tags are those of DynamicTag.
  std::map<std::string, std::map<ui16_t, Bytes>> Overrides;
  std::vector<std::string> OmittedSets;
  Bytes ExtraSets;   // whole KLVs after the sets
  Bytes BeforeSets;  // whole KLVs between primer and preface
  bool SecondPrimer = false;

  [[nodiscard]] Bytes Build();

  // Where things came to lie in the last Build; with a run-in, from the start of the file.
  size_t PrimerAt = 0;
  size_t HeaderEnd = 0;
  size_t BodyAt = 0;
  size_t EssenceAt = 0;
  size_t EssenceEnd = 0;
  size_t FooterAt = 0;
  size_t IndexAt = 0;
  size_t RIPAt = 0;
  std::vector<size_t> ElementAt;
  std::map<std::string, size_t> SetAt;

  /// The instance identifier of a header set.
  [[nodiscard]] static Bytes InstanceID(const std::string& set);
  /// The local tag of a property that has no static one.
  [[nodiscard]] ui16_t DynamicTag(const std::string& label);

  // Fixed identifiers.
  [[nodiscard]] static Bytes AssetID();
  [[nodiscard]] static Bytes ContextID();
  [[nodiscard]] static Bytes KeyID();
  [[nodiscard]] static Bytes DocumentID();

  [[nodiscard]] Bytes EssenceKey() const;
  [[nodiscard]] Bytes ContainerLabel() const;
  [[nodiscard]] Bytes IndexSegments() const;

 private:
  using Properties = std::vector<std::pair<ui16_t, Bytes>>;
  struct PackFields {
    ui64_t This = 0, Previous = 0, Footer = 0, HeaderBytes = 0, IndexBytes = 0, BodyOffset = 0;
    ui32_t IndexSID = 0, BodySID = 0;
  };

  [[nodiscard]] bool Encrypted() const { return !Key.empty(); }
  [[nodiscard]] ui64_t EditUnits() const;
  [[nodiscard]] Bytes Pack(ui8_t kind, ui8_t status, const PackFields& fields) const;
  [[nodiscard]] Bytes Fill(size_t total) const;
  [[nodiscard]] Bytes Primer() const;
  [[nodiscard]] Bytes Metadata();
  [[nodiscard]] Bytes Element(const Bytes& key, const Bytes& value, std::optional<ui64_t> sequence) const;
  [[nodiscard]] Bytes Triplet(const Bytes& key, const Bytes& value, std::optional<ui64_t> sequence) const;
  [[nodiscard]] Bytes Essence();
  [[nodiscard]] std::vector<ui64_t> StreamOffsets() const;
  [[nodiscard]] Bytes IndexSegment(ui64_t start, const std::vector<ui64_t>& offsets) const;
  [[nodiscard]] Bytes GenericStreams(std::vector<std::pair<ui32_t, size_t>>& packs) const;
  void ShiftPlaces(size_t pack);
  void AddSet(Bytes& out, const std::string& name, const Bytes& key, Properties properties);
  void AddPackages(Bytes& out);
  void AddTracks(Bytes& out, const std::string& package, const Bytes& clip_source);
  void AddDescriptor(Bytes& out);
  void AddPictureDescriptor(Bytes& out, Properties properties);
  void AddDataDescriptor(Bytes& out, Properties properties);
  void AddCryptographicTrack(Bytes& out);
  [[nodiscard]] Bytes Rate(ui32_t factor = 1) const { return BE32(RateNumerator * factor) + BE32(RateDenominator); }

  std::vector<Bytes> m_DynamicLabels;
  size_t m_EssenceOrigin = 0;
};

}  // namespace testsupport
