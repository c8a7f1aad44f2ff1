// SPDX-License-Identifier: BSD-3-Clause
#include "FilePackage.h"

#include "SampleDocuments.h"

#include <QUIRE/JP2KWriter.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace testsupport {
namespace {

namespace fs = std::filesystem;

constexpr QUIRE::ui32_t Duration = 240;

std::string KeyOf(TrackKind kind, const TrackFileSpec& spec) {
  std::string key = std::to_string(static_cast<int>(kind)) + '_' + spec.AssetID.EncodeString();
  for (const unsigned number :
       {unsigned(spec.EditRate.Numerator), unsigned(spec.EditRate.Denominator), unsigned(spec.Duration),
        unsigned(spec.LabelSet), unsigned(spec.Width), unsigned(spec.Height), unsigned(spec.SamplingRate.Numerator),
        unsigned(spec.ChannelCount), unsigned(spec.QuantizationBits),
        unsigned(spec.ChannelFormat.value_or(QUIRE::PCM::CF_NONE))})
    key += '_' + std::to_string(number);
  for (const char c : spec.MCAConfiguration) key += c == '(' || c == ')' || c == ',' ? '-' : c;
  if (spec.Key) key += '_' + spec.Key->KeyID.EncodeString();
  return key;
}

/// Pictures of the size that the spec says by their header: codestreams of cinema size take long to encode, and no header
/// tells the difference.
QUIRE::Result_t MakePicture(TrackKind kind, const std::string& filename, const TrackFileSpec& spec) {
  TrackFileSpec small = spec;
  small.Width = 64;
  small.Height = 36;
  const bool is_pair = kind == TrackKind::StereoscopicPicture;
  QUIRE::JP2K::PictureDescriptor descriptor = MakePictureDescriptor(small, is_pair);
  descriptor.StoredWidth = spec.Width;
  descriptor.StoredHeight = spec.Height;
  WriteContexts contexts(spec);
  QUIRE::JP2K::MXFWriter writer;
  QUIRE::JP2K::MXFSWriter pair_writer;
  QUIRE::Result_t result = is_pair
                               ? pair_writer.OpenWrite(filename, MakeWriterInfo(spec), descriptor, MakeWriterOptions())
                               : writer.OpenWrite(filename, MakeWriterInfo(spec), descriptor, MakeWriterOptions());
  for (QUIRE::ui32_t i = 0; i < spec.Duration && result.Success(); ++i) {
    QUIRE::JP2K::SFrameBuffer pair;
    FillBuffer(MakeFrame(TrackKind::Picture, small, i), pair.Left);
    FillBuffer(MakeFrame(TrackKind::Picture, small, i), pair.Right);
    result = is_pair ? pair_writer.WriteFrame(pair, contexts.Encryption(), contexts.Integrity())
                     : writer.WriteFrame(pair.Left, contexts.Encryption(), contexts.Integrity());
  }
  if (result.Failure()) return result;
  return is_pair ? pair_writer.Finalize() : writer.Finalize();
}

/// A file made from the spec, which stays as it is.
std::string Made(TrackKind kind, const TrackFileSpec& spec) {
  static const TemporaryFolder folder;
  const std::string filename = folder.Path(KeyOf(kind, spec));
  if (fs::exists(filename)) return filename;
  const bool is_picture = kind == TrackKind::Picture || kind == TrackKind::StereoscopicPicture;
  const QUIRE::Result_t result = is_picture ? MakePicture(kind, filename, spec) : MakeTrackFile(kind, filename, spec);
  if (result.Failure()) {
    std::cerr << "cannot make " << filename << ": " << result.Label() << '\n';
    std::abort();
  }
  return filename;
}

/// A sound text of the asset whose identifier ends so.
std::string SoundText(const TrackFileSpec& spec, const std::string& id) {
  std::string text = MakeText(spec);
  const auto replace = [&](const std::string& from, const std::string& to) {
    text.replace(text.find(from), from.size(), to);
  };
  replace("<ReelNumber>1", "<ReelNumber>" + id.substr(0, 1));
  replace("<Language>en", std::string("<Language>") + (id[1] == '4' ? "fr" : "en"));
  replace("</TimeCodeRate>", "</TimeCodeRate>\n  <StartTime>00:00:00:00</StartTime>");
  replace("TimeIn=\"00:00:00:01\" TimeOut=\"00:00:01:00\"", "TimeIn=\"00:00:05:00\" TimeOut=\"00:00:07:00\"");
  return text;
}

}  // namespace

Ferro::UUID SampleID(const std::string& end) {
  return *Ferro::UUID::FromHex("0f0f0f0f-1111-4222-8333-0000000000" + end);
}

FilePackage::FilePackage(Kind kind) : SamplePackage(kind), m_IsInterop(kind == Kind::Interop) {
  constexpr std::pair<char, TrackKind> Kinds[] = {{'2', TrackKind::Picture},
                                                  {'3', TrackKind::Sound},
                                                  {'4', TrackKind::Text},
                                                  {'5', TrackKind::Text},
                                                  {'6', TrackKind::Atmos}};
  const bool is_smpte = kind == Kind::SMPTE;
  for (const char* reel : {"1", "2"})
    for (const auto& [number, track] : Kinds) {
      if (!is_smpte && (*reel == '2' || number > '3')) continue;
      const std::string id = std::string(reel) + number;
      Track& made = m_Tracks[id];
      made.Kind = track;
      TrackFileSpec& spec = made.Spec;
      spec.AssetID = SampleID(id);
      spec.Duration = Duration;
      spec.Width = 1998;
      spec.Height = 1080;
      spec.LabelSet = is_smpte ? QUIRE::LS_MXF_SMPTE : QUIRE::LS_MXF_INTEROP;
      if (track == TrackKind::Sound && is_smpte) {
        spec.ChannelCount = 14;
        spec.MCAConfiguration = "51(L,R,C,LFE,Ls,Rs),HI,VIN,-,-,-,-,-,FSKSync";
      }
      if (track == TrackKind::Text) {
        spec.FontSizes = {1000};
        spec.DocumentID = SampleID((*reel == '1' ? "e" : "f") + std::string(1, number));
      }
      Remove("file_" + id + ".mxf");
    }
  if (is_smpte) Edit("CPL.xml", ",HI,VIN</meta", ",HI,VIN,-,-,-,-,-,FSKSync</meta");
}

FilePackage& FilePackage::MakePairs() {
  const bool is_smpte = !m_IsInterop;
  Move("CPL.xml", "<MainPicture>", "</MainPicture>\n", is_smpte ? "<tt:ClosedCaption" : "</AssetList>");
  EditAll("CPL.xml", "<MainPicture>",
          std::string("<msp:MainStereoscopicPicture xmlns:msp=\"") +
              (is_smpte ? "http://www.smpte-ra.org/schemas/429-10/2008/Main-Stereo-Picture-CPL"
                        : "http://www.digicine.com/schemas/437-Y/2007/Main-Stereo-Picture-CPL") +
              "\">");
  EditAll("CPL.xml", "</MainPicture>", "</msp:MainStereoscopicPicture>");
  EditAll("CPL.xml", "<FrameRate>24 1", "<FrameRate>48 1");
  for (const char* document : {"CPL.xml", "PKL.xml"}) {
    EditAll(document, "FTR-1_", "FTR-1-3D_");
    EditAll(document, is_smpte ? "_SMPTE_" : "_IOP_", is_smpte ? "_SMPTE-3D_" : "_IOP-3D_");
  }
  for (auto& [id, track] : m_Tracks)
    if (track.Kind == TrackKind::Picture) track.Kind = TrackKind::StereoscopicPicture;
  return *this;
}

void FilePackage::Prepare(const std::string& folder, FileMap& files) const {
  fs::create_directories(folder);
  for (const auto& [id, track] : m_Tracks) {
    TrackFileSpec spec = track.Spec;
    if (track.Kind == TrackKind::Text) spec.Document = SoundText(spec, id);
    const std::string made = Made(track.Kind, spec);
    const fs::path place = fs::path(folder) / ("file_" + id + ".mxf");
    const auto whole = fs::file_size(made);
    if (track.Cut == 0) {
      fs::create_hard_link(made, place);
    } else {
      fs::copy_file(made, place);
      fs::resize_file(place, whole - track.Cut);
    }
    FitSize(id, m_KeepsSizes ? whole : whole - track.Cut, files);
  }
}

Assay::Finding FindingOf(const Assay::CheckReport& report, Assay::FindingID id) {
  for (const Assay::Finding& finding : report.Findings)
    if (finding.ID == id) return finding;
  ADD_FAILURE() << "there is no " << RuleOf(id).Name;
  return Assay::Finding(id);
}

std::vector<std::string> Without(std::vector<std::string> names, const std::string& prefix) {
  std::erase_if(names, [&](const std::string& name) { return name.starts_with(prefix); });
  return names;
}

}  // namespace testsupport
