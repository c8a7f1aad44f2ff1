// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "MessageSamples.h"
#include "StrataProgram.h"
#include "TemporaryFolder.h"

#include <functional>
#include <string>
#include <vector>

/// A package of one encrypted composition of two seconds, signed, and the key messages that go with it: its identifier,
/// keys and signer are those of SigilTest::SoundRequest.
class EncryptedShow {
 public:
  struct Form {
    std::function<std::string(std::string)> Composition = Sign;  ///< what becomes of the document
    std::function<std::string(std::string)> PackingList = Sign;
    bool IsEncrypted = true;
    bool IsStereoscopic = false;
  };

  EncryptedShow() : EncryptedShow(Form{}) {}
  explicit EncryptedShow(const Form& form);

  /// SigilTest::Signed.
  static std::string Sign(std::string xml);

  [[nodiscard]] std::string Path(const std::string& name = "") const;
  [[nodiscard]] std::string Beside(const std::string& name) const { return m_Folder.Path(name); }
  /// Writes a file beside the show, and returns its path.
  std::string Write(const std::string& name, const std::string& bytes) const { return m_Folder.Write(name, bytes); }
  /// The same for the message of a request, for that of SoundRequest, and for the recipient's key and certificate.
  std::string Message(const std::string& name, const Sigil::MessageRequest& request) const;
  std::string Message() const { return Message("kdm.xml", SigilTest::SoundRequest()); }
  std::string DeviceKey() const;
  /// A key file with both keys, or with others.
  std::string KeyFile(const std::string& picture = "11", const std::string& sound = "22") const;
  /// Changes a byte in the middle of a file.
  void Alter(const std::string& name) const;
  std::string DeviceCertificate() const;
  /// An archive of such files.
  static std::string Zip(const std::vector<std::pair<std::string, std::string>>& entries);

  /// What `strata` answers: its exit code in the first line, then standard output and error. Lines that tell of the
  /// composition, of now and of identifiers are left out; the show's folder is called SHOW, the one around it BESIDE.
  [[nodiscard]] std::string Run(const std::vector<std::string>& arguments, const std::string& input = "") const;
  /// The same for `strata check`, at a time within the window of SoundRequest unless the arguments name another.
  [[nodiscard]] std::string Check(std::vector<std::string> arguments = {}) const;

 private:
  testsupport::TemporaryFolder m_Folder;
};
