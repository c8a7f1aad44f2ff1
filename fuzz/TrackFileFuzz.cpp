// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/AtmosReader.h>
#include <QUIRE/ChannelRole.h>
#include <QUIRE/Crypto.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>

#include <Ferro/Assert.h>
#include <Ferro/LogSink.h>

#include <array>
#include <cstdint>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

// Opens a track file with the reader of its kind and reads all there is, as stored and decrypted.

namespace {

using namespace QUIRE;

class Silence : public Ferro::ILogSink {
 public:
  void WriteEntry(const Ferro::LogEntry&) override {}
};

constexpr std::array<ui8_t, KeyLen> Key = {};
constexpr ui32_t Capacity = 65536;
constexpr ui32_t MostFrames = 50;

struct Contexts {
  Contexts() {
    FERRO_ASSERT(Decryption.InitKey(Key).Success());
    FERRO_ASSERT(Integrity.InitKey(Key, LS_MXF_SMPTE).Success());
  }
  AESDecContext Decryption;
  HMACContext Integrity;
};

bool Prepare(FrameBuffer& frame) {
  return frame.Capacity(Capacity).Success();
}
bool Prepare(JP2K::SFrameBuffer& frame) {
  return Prepare(frame.Left) && Prepare(frame.Right);
}

template <class Reader, class Buffer>
void ReadFrames(const std::string& name) {
  Reader reader;
  if (reader.OpenRead(name).Failure()) return;
  WriterInfo info;
  FERRO_ASSERT(reader.FillWriterInfo(info).Success());
  static_cast<void>(reader.RIP());
  Contexts contexts;
  Buffer frame;
  FERRO_ASSERT(Prepare(frame));
  for (ui32_t i = 0; i < MostFrames; ++i) {
    if (reader.ReadFrame(i, frame) == RESULT_RANGE) break;
    static_cast<void>(reader.ReadFrame(i, frame, &contexts.Decryption, &contexts.Integrity));
  }
}

void ReadSound(const std::string& name) {
  PCM::MXFReader reader;
  if (reader.OpenRead(name).Failure()) return;
  PCM::AudioDescriptor sound;
  PCM::MCALabelList labels;
  if (reader.FillAudioDescriptor(sound).Failure() || reader.FillMCALabels(labels).Failure()) return;
  FERRO_ASSERT(PCM::ChannelRolesOf(sound, labels).Roles.size() <= PCM::MaxChannelRoles);
  for (const PCM::MCALabel& label : labels)
    for (const size_t group : label.Groups) FERRO_ASSERT(group < labels.size());
}

void ReadText(const std::string& name) {
  TimedText::MXFReader reader;
  if (reader.OpenRead(name).Failure()) return;
  TimedText::TimedTextDescriptor descriptor;
  FERRO_ASSERT(reader.FillTimedTextDescriptor(descriptor).Success());
  Contexts contexts;
  TimedText::FrameBuffer frame;
  static_cast<void>(reader.ReadTimedTextResource(frame));
  static_cast<void>(reader.ReadTimedTextResource(frame, &contexts.Decryption, &contexts.Integrity));
  for (const auto& resource : descriptor.ResourceList)
    static_cast<void>(reader.ReadAncillaryResource(resource.ResourceID, frame, &contexts.Decryption));
}

void ReadAll(const std::string& name) {
  EssenceType_t type = ESS_UNKNOWN;
  FERRO_ASSERT(EssenceType(name, type).Success());
  switch (type) {
    case ESS_JPEG_2000:
    case ESS_JPEG_2000_S:
      ReadFrames<JP2K::MXFReader, JP2K::FrameBuffer>(name);
      return ReadFrames<JP2K::MXFSReader, JP2K::SFrameBuffer>(name);
    case ESS_MPEG2_VES:
      return ReadFrames<MPEG2::MXFReader, MPEG2::FrameBuffer>(name);
    case ESS_PCM:
      ReadSound(name);
      return ReadFrames<PCM::MXFReader, PCM::FrameBuffer>(name);
    case ESS_DCDATA:
      return ReadFrames<DCData::MXFReader, DCData::FrameBuffer>(name);
    case ESS_ATMOS:
      return ReadFrames<ATMOS::MXFReader, DCData::FrameBuffer>(name);
    case ESS_TIMED_TEXT:
      return ReadText(name);
    default:
      return ReadFrames<PCM::MXFReader, PCM::FrameBuffer>(name);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Silence silence;
  Ferro::SetDefaultLogSink(&silence);
  static const int descriptor = memfd_create("track-file", 0);
  FERRO_ASSERT(descriptor >= 0 && ftruncate(descriptor, 0) == 0);
  FERRO_ASSERT(pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size));
  ReadAll("/proc/self/fd/" + std::to_string(descriptor));
  return 0;
}
