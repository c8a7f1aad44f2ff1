// SPDX-License-Identifier: BSD-3-Clause
#include "EncryptedShow.h"

#include "TrackFileMaker.h"

#include <Cairn/AssetMap.h>
#include <Cairn/CompositionPlaylist.h>
#include <Cairn/MIMEType.h>
#include <Cairn/PackingList.h>
#include <Ferro/SHA1Digest.h>

#include <archive.h>
#include <archive_entry.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

using namespace SigilTest;

namespace {

constexpr Ferro::ui32_t Duration = 48;  // edit units

/// Writes the package file by file, and keeps its lists.
class PackageWriter {
 public:
  explicit PackageWriter(std::string folder) : m_Folder(std::move(folder)) {
    std::filesystem::create_directory(m_Folder);
    m_PackingList.ID = ID(30);
    m_Map.ID = ID(31);
    m_PackingList.IssueDate = m_Map.IssueDate = Noon;
    m_PackingList.Issuer = m_PackingList.Creator = m_Map.Issuer = m_Map.Creator = "Issuer";
    AddToMap(m_PackingList.ID, "PKL.xml", true);
  }

  [[nodiscard]] std::string PathOf(const std::string& name) const { return m_Folder + '/' + name; }

  template <class AssetT>
  AssetT Track(testsupport::TrackKind kind, const std::string& name, unsigned char id, unsigned char key_id,
               Sigil::ui8_t key, bool is_encrypted) {
    testsupport::TrackFileSpec spec;
    spec.AssetID = ID(id);
    spec.Duration = Duration;
    if (is_encrypted) {
      spec.Key.emplace().KeyID = ID(key_id);
      spec.Key->Key.fill(key);
    }
    EXPECT_EQ(testsupport::MakeTrackFile(kind, PathOf(name), spec), Ferro::RESULT_OK);
    AssetT asset;
    asset.AssetID = spec.AssetID;
    asset.EditRate = QUIRE::EditRate_24;
    asset.IntrinsicDuration = asset.Duration = Duration;
    if (is_encrypted) asset.KeyID = ID(key_id);
    asset.Digest = Add(spec.AssetID, name, Cairn::FT_QUIRE_PCM);
    return asset;
  }

  void Document(const Ferro::UUID& id, const std::string& name, const std::string& xml) {
    std::ofstream(PathOf(name), std::ios::binary) << xml;
    Add(id, name, Cairn::FT_CPL);
  }

  void Finish(const std::function<std::string(std::string)>& change) {
    std::string xml;
    EXPECT_EQ(m_PackingList.EncodeXML(xml, Cairn::DFT_DCI_SMPTE), Ferro::RESULT_OK);
    std::ofstream(PathOf("PKL.xml"), std::ios::binary) << change(xml);
    EXPECT_EQ(m_Map.EncodeXML(xml, Cairn::DFT_DCI_SMPTE), Ferro::RESULT_OK);
    std::ofstream(PathOf("ASSETMAP.xml"), std::ios::binary) << xml;
  }

 private:
  Ferro::SHA1 Add(const Ferro::UUID& id, const std::string& name, Cairn::FileType_t type) {
    AddToMap(id, name, false);
    Cairn::PackingList::Asset& asset = m_PackingList.AssetList.emplace_back();
    asset.ID = id;
    asset.Type = Cairn::FileTypeToSMPTEMIMEType(type);
    asset.OriginalFileName = name;
    asset.Size = std::filesystem::file_size(PathOf(name));
    EXPECT_EQ(Ferro::DigestFile(PathOf(name), asset.Digest), Ferro::RESULT_OK);
    return asset.Digest;
  }
  void AddToMap(const Ferro::UUID& id, const std::string& name, bool is_packing_list) {
    Cairn::AssetMap::Asset& asset = m_Map.AssetList.emplace_back();
    asset.ID = id;
    asset.IsPackingList = is_packing_list;
    asset.ChunkList.emplace_back().Path = name;
  }

  const std::string m_Folder;
  Cairn::PackingList m_PackingList;
  Cairn::AssetMap m_Map;
};

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

bool IsLeftOut(const std::string& line) {
  const bool is_outline = line.size() > 11 && line[2] == ':' && line[5] == ':' && line[8] == ':';
  return is_outline || line.starts_with("    now: ") || line.starts_with("    asset ");
}

}  // namespace

EncryptedShow::EncryptedShow(const Form& form) {
  using testsupport::TrackKind;
  PackageWriter package(Path());
  Cairn::CompositionPlaylist composition;
  composition.ID = ID(1);
  composition.IssueDate = Noon;
  composition.Issuer = composition.Creator = "Issuer";
  composition.ContentTitle = "Secret";
  composition.ContentKind = Cairn::CK_FEATURE;
  composition.StereoscopicImage = form.IsStereoscopic;
  Cairn::Reel& reel = composition.ReelList.emplace_back();
  reel.ID = ID(2);
  reel.MainPicture =
      package.Track<Cairn::PictureAsset>(form.IsStereoscopic ? TrackKind::StereoscopicPicture : TrackKind::Picture,
                                         "picture.mxf", 20, 4, 0x11, form.IsEncrypted);
  reel.MainPicture.FrameRate = QUIRE::Rational(form.IsStereoscopic ? 48 : 24, 1);
  reel.MainPicture.ScreenAspectRatio = QUIRE::Rational(16, 9);
  reel.MainSound = package.Track<Cairn::SoundAsset>(TrackKind::Sound, "sound.mxf", 21, 5, 0x22, form.IsEncrypted);
  std::string xml;
  EXPECT_EQ(composition.EncodeXML(xml, Cairn::DFT_DCI_SMPTE), Ferro::RESULT_OK);
  package.Document(composition.ID, "CPL.xml", form.Composition(xml));
  package.Finish(form.PackingList);
}

std::string EncryptedShow::Sign(std::string xml) {
  return SigilTest::Signed(std::move(xml));
}

std::string EncryptedShow::Path(const std::string& name) const {
  return m_Folder.Path("show") + (name.empty() ? "" : '/' + name);
}

std::string EncryptedShow::Message(const std::string& name, const Sigil::MessageRequest& request) const {
  return Write(name, Made(request));
}

std::string EncryptedShow::DeviceKey() const {
  return Write("device.key", testsupport::TestKeyPEM("device"));
}

std::string EncryptedShow::KeyFile(const std::string& picture, const std::string& sound) const {
  const auto line = [](unsigned char id, const std::string& digits) {
    std::string text = ID(id).EncodeString() + ':';
    for (int i = 0; i < 16; ++i) text += digits;
    return text + '\n';
  };
  return Write("show.keys", "# picture, then sound\n" + line(4, picture) + '\n' + line(5, sound));
}

void EncryptedShow::Alter(const std::string& name) const {
  std::fstream file(Path(name), std::ios::binary | std::ios::in | std::ios::out);
  const auto middle = static_cast<std::streamoff>(std::filesystem::file_size(Path(name)) / 2);
  file.seekg(middle);
  const char byte = static_cast<char>(file.get() ^ 1);
  file.seekp(middle);
  file.put(byte);
  EXPECT_TRUE(file.good()) << name;
}

std::string EncryptedShow::DeviceCertificate() const {
  return Write("device.pem", Device().front().PEM());
}

std::string EncryptedShow::Zip(const std::vector<std::pair<std::string, std::string>>& entries) {
  std::string bytes(size_t{1024} * 1024, '\0');
  size_t used = 0;
  archive* writer = archive_write_new();
  archive_write_set_format_zip(writer);
  EXPECT_EQ(archive_write_open_memory(writer, bytes.data(), bytes.size(), &used), ARCHIVE_OK);
  for (const auto& [name, content] : entries) {
    archive_entry* entry = archive_entry_new();
    archive_entry_set_pathname(entry, name.c_str());
    archive_entry_set_size(entry, static_cast<la_int64_t>(content.size()));
    archive_entry_set_filetype(entry, AE_IFREG);
    archive_entry_set_perm(entry, 0644);
    EXPECT_EQ(archive_write_header(writer, entry), ARCHIVE_OK) << archive_error_string(writer);
    EXPECT_EQ(archive_write_data(writer, content.data(), content.size()), static_cast<la_ssize_t>(content.size()));
    archive_entry_free(entry);
  }
  EXPECT_EQ(archive_write_close(writer), ARCHIVE_OK);
  archive_write_free(writer);
  bytes.resize(used);
  return bytes;
}

std::string EncryptedShow::Run(const std::vector<std::string>& arguments, const std::string& input) const {
  StrataProgram program(arguments, input, "", {"env", "TZ=UTC"});
  std::string answer = std::to_string(program.Wait()) + '\n';
  std::istringstream output(program.Output() + program.Errors());
  for (std::string line; std::getline(output, line);)
    if (!IsLeftOut(line)) answer += line + '\n';
  ReplaceAll(answer, Path(), "SHOW");
  ReplaceAll(answer, m_Folder.Path(""), "BESIDE/");
  return answer;
}

std::string EncryptedShow::Check(std::vector<std::string> arguments) const {
  const bool has_time = std::find(arguments.begin(), arguments.end(), "--at") != arguments.end();
  arguments.insert(arguments.begin(), {"check", Path()});
  if (!has_time) arguments.insert(arguments.end(), {"--at", "2026-03-05T20:00:00Z"});
  return Run(arguments);
}
