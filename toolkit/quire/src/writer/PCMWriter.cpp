// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/PCMWriter.h>

#include "essence/SoundLabels.h"
#include "h__Writer.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace QUIRE::PCM {

namespace {

// A channel belongs to at most one soundfield group, a soundfield group to groups of those, and these to nothing.
bool AreLinked(const MCALabelList& labels) {
  return std::all_of(labels.begin(), labels.end(), [&](const MCALabel& label) {
    if (label.Kind == MCA_CHANNEL && label.Groups.size() > 1) return false;
    return std::all_of(label.Groups.begin(), label.Groups.end(),
                       [&](size_t place) { return place < labels.size() && labels[place].Kind == label.Kind + 1; });
  });
}

// What is wrong with the sound's facts; null when nothing is.
const char* FindFault(const AudioDescriptor& sound, const MCALabelList& labels) {
  if (sound.ChannelCount == 0 || sound.QuantizationBits == 0) return "it has no channels or no sample size";
  if (sound.BlockAlign != ui64_t{sound.ChannelCount} * ((ui64_t{sound.QuantizationBits} + 7) / 8) ||
      !std::in_range<ui16_t>(sound.BlockAlign)) {
    return "its block alignment does not follow from channels and sample size";
  }
  const auto cadence = SampleCadence::Make(sound.AudioSamplingRate, sound.EditRate);
  if (!cadence || !std::in_range<ui32_t>(ui64_t{cadence->MaxSampleCount()} * sound.BlockAlign)) {
    return "its samples cannot be dealt out to edit units";
  }
  if (!AreLinked(labels)) return "a channel label refers to a group that is not there";
  return nullptr;
}

template <class T>
T& AddLabel(SetFactory& sets, MXF::FileDescriptor& owner, const MCALabel& label, const Ferro::UUID& link) {
  T& set = sets.AddSubDescriptor<T>(owner);
  set.MCALabelDictionaryID = label.DictionaryID;
  set.MCALinkID = link;
  set.MCATagSymbol = label.TagSymbol;
  if (!label.TagName.empty()) set.MCATagName = label.TagName;
  if (!label.SpokenLanguage.empty()) set.RFC5646SpokenLanguage = label.SpokenLanguage;
  if (label.ChannelID != 0) set.MCAChannelID = label.ChannelID;
  return set;
}

void AddLabels(SetFactory& sets, MXF::FileDescriptor& owner, const MCALabelList& labels) {
  std::vector<Ferro::UUID> links(labels.size());
  std::generate(links.begin(), links.end(), [&] { return sets.NextIdentifier(); });
  for (size_t i = 0; i < labels.size(); ++i) {
    const MCALabel& label = labels[i];
    switch (label.Kind) {
      case MCA_CHANNEL: {
        auto& set = AddLabel<MXF::AudioChannelLabelSubDescriptor>(sets, owner, label, links[i]);
        if (!label.Groups.empty()) set.SoundfieldGroupLinkID = links[label.Groups.front()];
        break;
      }
      case MCA_SOUNDFIELD_GROUP: {
        auto& set = AddLabel<MXF::SoundfieldGroupLabelSubDescriptor>(sets, owner, label, links[i]);
        for (const size_t place : label.Groups) set.GroupOfSoundfieldGroupsLinkID.push_back(links[place]);
        break;
      }
      case MCA_GROUP_OF_SOUNDFIELD_GROUPS:
        AddLabel<MXF::GroupOfSoundfieldGroupsLabelSubDescriptor>(sets, owner, label, links[i]);
        break;
    }
  }
}

ui32_t BytesPerSecond(const AudioDescriptor& sound) {
  if (sound.AvgBps != 0) return sound.AvgBps;
  const i64_t bytes = i64_t{sound.BlockAlign} * sound.AudioSamplingRate.Numerator / sound.AudioSamplingRate.Denominator;
  return std::in_range<ui32_t>(bytes) ? static_cast<ui32_t>(bytes) : 0;
}

MXF::FileDescriptor& MakeDescriptor(SetFactory& sets, const AudioDescriptor& sound, const MCALabelList& labels) {
  auto& set = sets.Add<MXF::WaveAudioDescriptor>();
  set.AudioSamplingRate = sound.AudioSamplingRate;
  set.Locked = sound.Locked;
  set.AudioRefLevel = i8_t{0};
  set.ChannelCount = sound.ChannelCount;
  set.QuantizationBits = sound.QuantizationBits;
  set.DialNorm = i8_t{0};
  set.BlockAlign = static_cast<ui16_t>(sound.BlockAlign);
  set.SequenceOffset = ui8_t{0};
  set.AvgBps = BytesPerSecond(sound);
  set.ChannelAssignment = AssignmentLabel(sound.ChannelFormat);
  AddLabels(sets, set, labels);
  return set;
}

}  // namespace

Result_t MXFWriter::OpenWrite(const std::string& filename, const WriterInfo& info, const AudioDescriptor& descriptor,
                              const MCALabelList& labels, const WriterOptions& options) {
  if (m_Writer) return Ferro::RESULT_STATE;
  if (const char* fault = FindFault(descriptor, labels)) {
    TellWriteFailure(filename, std::string("cannot write the sound: ") + fault + '.', m_FailureReason);
    return Ferro::RESULT_PARAM;
  }
  const auto cadence = SampleCadence::Make(descriptor.AudioSamplingRate, descriptor.EditRate);
  const Result_t result = OpenWriter(m_Writer, m_FailureReason, filename, ESS_PCM, info, descriptor.EditRate, options,
                                     cadence->IsConstant(), MakeDescriptor, descriptor, labels);
  if (result.Failure()) return result;
  m_Cadence = cadence;
  m_BlockAlign = descriptor.BlockAlign;
  m_HasShortFrame = false;
  return result;
}

// Fewer samples than the edit unit has are filled up with silence, and end the track: what followed would be late.
Result_t MXFWriter::WriteFrame(const FrameBuffer& frame, AESEncContext* encryption, HMACContext* integrity) {
  if (!m_Writer) return Ferro::RESULT_INIT;
  if (m_HasShortFrame) return Ferro::RESULT_STATE;
  const ui32_t length = m_Cadence->SampleCount(m_Writer->EditUnitCount()) * m_BlockAlign;
  if (frame.Size() == length) return m_Writer->WriteEditUnit(frame, {}, encryption, integrity);
  if (frame.Size() > length || frame.Size() == 0 || frame.Size() % m_BlockAlign != 0) return Ferro::RESULT_PARAM;

  FrameBuffer padded;
  if (const Result_t result = padded.Capacity(length); result.Failure()) return result;
  std::memcpy(padded.Data(), frame.RoData(), frame.Size());
  std::memset(padded.Data() + frame.Size(), 0, length - frame.Size());
  padded.Size(length);
  padded.PlaintextOffset(frame.PlaintextOffset());
  const Result_t result = m_Writer->WriteEditUnit(padded, {}, encryption, integrity);
  m_HasShortFrame = result.Success();
  return result;
}

}  // namespace QUIRE::PCM
