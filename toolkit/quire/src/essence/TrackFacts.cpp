// SPDX-License-Identifier: BSD-3-Clause
#include "TrackFacts.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/SubDescriptors.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace QUIRE {

namespace {

bool IsSet(const UL& label) {
  return std::any_of(label.Bytes().begin(), label.Bytes().end(), [](ui8_t byte) { return byte != 0; });
}

bool IsProperRate(const Rational& rate) {
  return rate.Numerator > 0 && rate.Denominator > 0;
}

template <class T>
bool HasSubDescriptor(const MXF::OP1aHeader& header, const MXF::FileDescriptor& descriptor) {
  return std::any_of(descriptor.SubDescriptors.begin(), descriptor.SubDescriptors.end(),
                     [&](const Ferro::UUID& id) { return header.Resolve<T>(id) != nullptr; });
}

// By these labels ElementReader and EncryptedTriplet encrypt and authenticate.
bool IsKnownCipher(const UL& label) {
  return DefaultSMPTEDict().Is(label, MDD_CipherAlgorithm_AES);
}
bool IsKnownMIC(const UL& label) {
  const Dictionary& dict = DefaultSMPTEDict();
  return dict.Is(label, MDD_MICAlgorithm_HMAC_SHA1) || dict.Is(label, MDD_MICAlgorithm_HMAC_SHA1_Alternative);
}

// Without a cryptographic context nothing is said: the algorithms are then taken to be those of ST 429-6.
EncryptionInfo FindAlgorithms(const TrackFacts& facts) {
  EncryptionInfo info;
  if (facts.Crypto == nullptr || !facts.Encrypted) return info;
  info.CipherAlgorithm = facts.Crypto->CipherAlgorithm;
  info.KnowsCipher = IsKnownCipher(info.CipherAlgorithm);
  if (!IsSet(facts.Crypto->MICAlgorithm)) return info;
  info.MICAlgorithm = facts.Crypto->MICAlgorithm;
  info.KnowsMIC = IsKnownMIC(info.MICAlgorithm);
  return info;
}

// The container label of the essence in clear, also where the descriptor names the encrypted one.
const UL& ContainerLabel(const TrackFacts& facts) {
  const Dictionary& dict = DefaultSMPTEDict();
  const UL& label = facts.Descriptor->EssenceContainer;
  const bool encrypted =
      dict.Is(label, MDD_EncryptedContainerLabel) || dict.Is(label, MDD_EncryptedContainerLabel_Clip);
  return encrypted && facts.Crypto != nullptr ? facts.Crypto->SourceEssenceContainer : label;
}

// Bytes 14 and 15 of a generic container label tell the kind of essence and the wrapping (ST 379-1).
bool IsContainer(const UL& label, ui8_t kind) {
  static constexpr ui8_t prefix[] = {0x0d, 0x01, 0x03, 0x01, 0x02};
  return std::memcmp(label.Value() + 8, prefix, sizeof(prefix)) == 0 && label.Value()[13] == kind;
}

constexpr ui8_t MPEGContainer = 0x04;
constexpr ui8_t JPEG2000Container = 0x0c;

EssenceType_t FindType(const MXF::OP1aHeader& header, const TrackFacts& facts) {
  const MXF::FileDescriptor& descriptor = *facts.Descriptor;
  const UL& container = facts.EssenceContainer;
  if (dynamic_cast<const MXF::GenericPictureEssenceDescriptor*>(&descriptor) != nullptr) {
    if (IsContainer(container, JPEG2000Container) ||
        HasSubDescriptor<MXF::JPEG2000PictureSubDescriptor>(header, descriptor)) {
      return HasSubDescriptor<MXF::StereoscopicPictureSubDescriptor>(header, descriptor) ? ESS_JPEG_2000_S
                                                                                         : ESS_JPEG_2000;
    }
    const bool mpeg = dynamic_cast<const MXF::MPEG2VideoDescriptor*>(&descriptor) != nullptr;
    return mpeg || IsContainer(container, MPEGContainer) ? ESS_MPEG2_VES : ESS_MXF_OTHER;
  }
  if (dynamic_cast<const MXF::WaveAudioDescriptor*>(&descriptor) != nullptr) return ESS_PCM;
  if (dynamic_cast<const MXF::TimedTextDescriptor*>(&descriptor) != nullptr) return ESS_TIMED_TEXT;
  if (dynamic_cast<const MXF::IADataEssenceDescriptor*>(&descriptor) != nullptr) return ESS_ATMOS;
  if (dynamic_cast<const MXF::DCDataDescriptor*>(&descriptor) != nullptr) return ESS_DCDATA;
  return ESS_MXF_OTHER;
}

// Essence of a clip-wrapped file lies in one element, which holds no edit units that could be found.
bool IsClipWrapped(const UL& container) {
  const Dictionary& dict = DefaultSMPTEDict();
  return dict.Is(container, MDD_WAVWrappingClip) || dict.Is(container, MDD_AES3WrappingClip) ||
         dict.Is(container, MDD_JPEG_2000WrappingClip) ||
         (IsContainer(container, MPEGContainer) && container.Value()[15] == 0x02);
}

// Sound whose edit units are single samples is one clip as well, also where its label says otherwise.
bool CountsSamples(const TrackFacts& facts) {
  const auto* sound = dynamic_cast<const MXF::GenericSoundEssenceDescriptor*>(facts.Descriptor);
  return sound != nullptr && sound->AudioSamplingRate == facts.EditRate;
}

const MXF::Sequence* SequenceOf(const MXF::OP1aHeader& header, const MXF::GenericTrack& track) {
  return header.Resolve<MXF::Sequence>(track.Sequence);
}

// Picture, sound or data, as SMPTE or the older AAF labels have them; not timecode or descriptive metadata.
bool IsEssenceDefinition(const UL& definition) {
  static constexpr std::array<ui8_t, 8> aaf_essence = {0x80, 0x7d, 0x00, 0x60, 0x08, 0x14, 0x3e, 0x6f};
  static constexpr std::array<ui8_t, 5> essence = {0x01, 0x03, 0x02, 0x02, 0x00};
  const ui8_t* value = definition.Value();
  return std::memcmp(value, aaf_essence.data(), aaf_essence.size()) == 0 ||
         (std::memcmp(value + 8, essence.data(), 4) == 0 && value[12] >= 1 && value[12] <= 3);
}

// The timeline track that carries the essence: the one the descriptor links, else the one with an element's number, else
// the one whose data definition says so.
const MXF::Track* EssenceTrack(const MXF::OP1aHeader& header, const MXF::GenericPackage& package,
                               const MXF::FileDescriptor& descriptor, size_t& essence_tracks) {
  const MXF::Track* linked = nullptr;
  const MXF::Track* numbered = nullptr;
  const MXF::Track* defined = nullptr;
  essence_tracks = 0;
  for (const Ferro::UUID& id : package.Tracks) {
    const auto* track = header.Resolve<MXF::Track>(id);
    if (track == nullptr) continue;
    const MXF::Sequence* sequence = SequenceOf(header, *track);
    const bool is_essence = sequence != nullptr && IsEssenceDefinition(sequence->DataDefinition);
    if (is_essence) ++essence_tracks;
    if (is_essence && defined == nullptr) defined = track;
    if (track->TrackNumber != 0 && numbered == nullptr) numbered = track;
    if (descriptor.LinkedTrackID == track->TrackID && track->TrackID != 0) linked = track;
  }
  return linked != nullptr ? linked : numbered != nullptr ? numbered : defined;
}

ui64_t Count(std::optional<i64_t> duration) {
  return static_cast<ui64_t>(std::max<i64_t>(duration.value_or(0), 0));
}

// The descriptor counts in its own sample rate; where that is not the edit rate, the track's sequence is asked first.
ui64_t FindDuration(const MXF::OP1aHeader& header, const MXF::Track* track, const TrackFacts& facts) {
  const MXF::Sequence* sequence = track != nullptr ? SequenceOf(header, *track) : nullptr;
  ui64_t of_sequence = 0;
  if (sequence != nullptr) {
    of_sequence = Count(sequence->Duration);
    for (const Ferro::UUID& id : sequence->StructuralComponents) {
      if (of_sequence != 0) break;
      if (const auto* component = header.Resolve<MXF::StructuralComponent>(id))
        of_sequence = Count(component->Duration);
    }
  }
  const ui64_t of_descriptor = Count(facts.Descriptor->ContainerDuration);
  const bool same_unit = facts.Descriptor->SampleRate == facts.EditRate;
  if (same_unit) return of_descriptor != 0 ? of_descriptor : of_sequence;
  return of_sequence != 0 ? of_sequence : of_descriptor;
}

Rational FindEditRate(const MXF::OP1aHeader& header, const MXF::Track* track, const TrackFacts& facts) {
  if (track != nullptr && IsProperRate(track->EditRate)) return track->EditRate;
  const auto* material = header.First<MXF::MaterialPackage>();
  size_t count = 0;
  const MXF::Track* other = material != nullptr ? EssenceTrack(header, *material, *facts.Descriptor, count) : nullptr;
  if (other != nullptr && IsProperRate(other->EditRate)) return other->EditRate;
  Rational rate = facts.Descriptor->SampleRate;
  if (facts.IsStereoscopic() && rate.Numerator % 2 == 0) rate.Numerator /= 2;
  return rate;
}

// The registry version of OP-Atom's label tells the two families apart; elsewhere, essence in the header partition does.
LabelSet_t FindLabelSet(const MXF::OP1aHeader& header) {
  const auto* preface = header.First<MXF::Preface>();
  const UL& pattern = preface != nullptr ? preface->OperationalPattern : header.HeaderPartition.OperationalPattern;
  if (DefaultSMPTEDict().Is(pattern, MDD_OPAtom)) return pattern.Value()[7] == 0x01 ? LS_MXF_INTEROP : LS_MXF_SMPTE;
  return header.HeaderPartition.BodySID != 0 ? LS_MXF_INTEROP : LS_MXF_SMPTE;
}

bool NamesEncryptedContainer(const MXF::OP1aHeader& header) {
  const Dictionary& dict = DefaultSMPTEDict();
  const auto is_encrypted = [&](const UL& label) {
    return dict.Is(label, MDD_EncryptedContainerLabel) || dict.Is(label, MDD_EncryptedContainerLabel_Clip);
  };
  const auto* preface = header.First<MXF::Preface>();
  const auto& of_pack = header.HeaderPartition.EssenceContainers;
  return std::any_of(of_pack.begin(), of_pack.end(), is_encrypted) ||
         (preface != nullptr &&
          std::any_of(preface->EssenceContainers.begin(), preface->EssenceContainers.end(), is_encrypted));
}

ui32_t FindBodySID(const MXF::OP1aHeader& header, const MXF::SourcePackage& package) {
  const MXF::EssenceContainerData* first = nullptr;
  for (const auto& object : header.Objects()) {
    const auto* data = dynamic_cast<const MXF::EssenceContainerData*>(object.get());
    if (data == nullptr || data->BodySID == 0) continue;
    if (MXF::MaterialNumber(data->LinkedPackageUID) == MXF::MaterialNumber(package.PackageUID)) return data->BodySID;
    if (first == nullptr) first = data;
  }
  return first != nullptr ? first->BodySID : 1;
}

}  // namespace

TrackFileFault GatherTrackFacts(const MXF::OP1aHeader& header, TrackFacts& facts) {
  const MXF::SourcePackage* package = header.FilePackage();
  facts.Descriptor = header.EssenceDescriptor();
  if (package == nullptr) return TrackFileFault::NoFilePackage;
  if (facts.Descriptor == nullptr) return TrackFileFault::NoDescriptor;
  facts.Crypto = header.First<MXF::CryptographicContext>();
  facts.Encrypted = facts.Crypto != nullptr ? IsSet(facts.Crypto->CipherAlgorithm) : NamesEncryptedContainer(header);
  facts.Algorithms = FindAlgorithms(facts);
  facts.EssenceContainer = ContainerLabel(facts);
  facts.AssetID = MXF::MaterialNumber(package->PackageUID);
  facts.LabelSet = FindLabelSet(header);
  facts.BodySID = FindBodySID(header, *package);

  size_t essence_tracks = 0;
  const MXF::Track* track = EssenceTrack(header, *package, *facts.Descriptor, essence_tracks);
  if (essence_tracks > 1) return TrackFileFault::SeveralTracks;
  if (IsClipWrapped(facts.EssenceContainer)) return TrackFileFault::ClipWrapped;
  facts.Type = FindType(header, facts);
  facts.EditRate = FindEditRate(header, track, facts);
  if (!IsProperRate(facts.EditRate)) return TrackFileFault::NoEditRate;
  if (CountsSamples(facts)) return TrackFileFault::ClipWrapped;
  facts.Duration = FindDuration(header, track, facts);
  return TrackFileFault::None;
}

const FaultWords& WordsOf(TrackFileFault fault) {
  static constexpr FaultWords words[] = {
      {TrackFileFault::None, "nothing is wrong", "sound"},
      {TrackFileFault::NotMXF, "it is not MXF", "not MXF"},
      {TrackFileFault::BrokenHeader, "its header cannot be understood", "broken header"},
      {TrackFileFault::NoFilePackage, "there is no file package", "its essence not described"},
      {TrackFileFault::NoDescriptor, "there is no essence descriptor", "its essence not described"},
      {TrackFileFault::SeveralTracks, "it holds more than one essence track", "several essence tracks"},
      {TrackFileFault::ClipWrapped, "its essence is clip-wrapped", "clip-wrapped"},
      {TrackFileFault::NoEditRate, "its edit rate is not above 0", "no edit rate"},
      {TrackFileFault::UnknownEssence, "it holds essence of an unknown kind", "essence of another kind"},
  };
  const auto* found =
      std::find_if(std::begin(words), std::end(words), [=](const auto& row) { return row.Fault == fault; });
  return found == std::end(words) ? words[0] : *found;
}

}  // namespace QUIRE
