// SPDX-License-Identifier: BSD-3-Clause
// Writes certificates, names, signed documents, key messages and an archive of them into the folder given.
#include "CertificateMaker.h"

#include <Sigil/ContentKeys.h>

#include <Cairn/CompositionPlaylist.h>
#include <Cairn/PackingList.h>
#include <Ferro/LogSink.h>

#include <archive.h>
#include <archive_entry.h>

#include <fstream>
#include <string>

namespace {

constexpr char IssueDate[] = "2026-03-01T12:00:00Z";

Cairn::UUID ID(unsigned char last) {
  Cairn::ui8_t bytes[16] = {};
  bytes[15] = last;
  return Cairn::UUID(bytes);
}

class Seeds {
 public:
  explicit Seeds(std::string folder) : m_Folder(std::move(folder)) {}

  void Add(const std::string& text) {
    std::ofstream(m_Folder + "/" + std::to_string(m_Count++), std::ios::binary) << text;
  }
  void Require(Ferro::Result_t result) { m_IsComplete = m_IsComplete && result.Success(); }
  [[nodiscard]] bool IsComplete() const { return m_IsComplete; }

 private:
  std::string m_Folder;
  int m_Count = 0;
  bool m_IsComplete = true;
};

std::string Joined(const std::vector<testsupport::X509Holder>& certificates) {
  std::string pem;
  for (const auto& certificate : certificates) pem += testsupport::EncodePEM(certificate);
  return pem;
}

Cairn::CompositionPlaylist Composition() {
  Cairn::CompositionPlaylist composition;
  composition.ID = ID(1);
  composition.IssueDate = IssueDate;
  composition.ContentTitle = "a";
  composition.ContentKind = Cairn::CK_FEATURE;
  composition.ReelList.emplace_back().ID = ID(2);
  return composition;
}

Cairn::PackingList PackingList() {
  Cairn::PackingList list;
  list.ID = ID(1);
  list.IssueDate = IssueDate;
  const Cairn::ui8_t digest[20] = {1};
  list.AssetList = {{ID(2), "a", Cairn::SHA1(digest), 17, "text/xml", "a.xml"}};
  return list;
}

template <class T>
void AddSigned(Seeds& seeds, const T& document, Cairn::DCPFormat_t format, const Sigil::SignerIdentity& signer) {
  std::string xml;
  seeds.Require(document.EncodeXML(xml, format));
  seeds.Add(xml);
  seeds.Require(Sigil::SignDocument(xml, signer, Ferro::DefaultLogSink()));
  seeds.Add(xml);
}

std::string Message(Seeds& seeds, const Sigil::SignerIdentity& signer, bool is_for_any) {
  Sigil::MessageRequest request;
  Sigil::CertificateList device;
  seeds.Require(Sigil::ReadCertificates(Joined(testsupport::MakeCertificates(testsupport::DeviceRecipes("leaf"))),
                                        device, Ferro::DefaultLogSink()));
  request.Recipient = device.front();
  request.CompositionID = ID(1);
  request.ContentTitle = "a";
  if (!request.IssueDate.DecodeString(IssueDate)) seeds.Require(Ferro::RESULT_FAIL);
  request.NotBefore = request.NotAfter = request.IssueDate;
  if (!is_for_any) request.Devices = {device.front().Thumbprint(), device.back().Thumbprint()};
  if (is_for_any) request.ContentAuthenticator = signer.Chain.front().Thumbprint();
  Sigil::ContentKey& key = request.Keys.emplace_back();
  key.Entry = {ID(3), "MDIK", {}};
  if (!key.Key.Resize(Sigil::ContentKeys::KeySize)) seeds.Require(Ferro::RESULT_ALLOC);
  std::string xml;
  seeds.Require(Sigil::MakeKeyMessage(request, signer, xml, Ferro::DefaultLogSink()));
  return xml;
}

std::string Zip(const std::string& message) {
  std::string bytes(size_t{1} * 1024 * 1024, '\0');
  size_t used = 0;
  archive* writer = archive_write_new();
  archive_write_set_format_zip(writer);
  archive_write_open_memory(writer, bytes.data(), bytes.size(), &used);
  for (const char* name : {"a/b.xml", "c.txt"}) {
    archive_entry* entry = archive_entry_new();
    archive_entry_set_pathname(entry, name);
    archive_entry_set_size(entry, static_cast<la_int64_t>(message.size()));
    archive_entry_set_filetype(entry, AE_IFREG);
    archive_write_header(writer, entry);
    archive_write_data(writer, message.data(), message.size());
    archive_entry_free(entry);
  }
  archive_write_close(writer);
  archive_write_free(writer);
  bytes.resize(used);
  return bytes;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  Seeds seeds(argv[1]);
  const auto made = testsupport::MakeCertificates(testsupport::SoundRecipes());
  seeds.Add(Joined(made));
  for (const auto& certificate : made) seeds.Add(testsupport::EncodeDER(certificate));
  seeds.Add(R"(dnQualifier=a\+b=,CN=CS.\C3\A9 ,OU=x+O=y,2.5.4.6=AT)");

  const std::string key_text = testsupport::TestKeyPEM("leaf");
  std::optional<Sigil::PrivateKey> key;
  Sigil::CertificateList chain;
  seeds.Require(Sigil::PrivateKey::FromPEM({reinterpret_cast<const Sigil::ui8_t*>(key_text.data()), key_text.size()},
                                           {}, key, Ferro::DefaultLogSink()));
  seeds.Require(Sigil::ReadCertificates(Joined(made), chain, Ferro::DefaultLogSink()));
  if (!seeds.IsComplete()) return 1;
  const Sigil::SignerIdentity signer{*key, chain};
  for (const auto format : {Cairn::DFT_DCI_SMPTE, Cairn::DFT_Interop}) {
    AddSigned(seeds, Composition(), format, signer);
    AddSigned(seeds, PackingList(), format, signer);
  }
  seeds.Add(Message(seeds, signer, true));
  const std::string message = Message(seeds, signer, false);
  seeds.Add(message);
  seeds.Add(Zip(message));
  return seeds.IsComplete() ? 0 : 1;
}
