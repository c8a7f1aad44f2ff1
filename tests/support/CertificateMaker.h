// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace testsupport {

// Certificates for tests, made by OpenSSL. Their keys are made once for each build folder and then kept there, since a key
// takes a tenth of a second.

/// A private key by its name, which tells its kind: "rsa1024-x" and "rsa4096-x" have those bits, "e3-x" the exponent 3,
/// "ec-x" is on the curve P-256, all others are RSA of 2048 bits with exponent 65537. Different names, different keys. Lives
/// as long as the program.
EVP_PKEY* TestKey(const std::string& name);
/// Its PEM text, PKCS#8.
std::string TestKeyPEM(const std::string& name);
/// The dnQualifier that belongs to a key.
std::string TestThumbprint(const std::string& key_name);

struct NamePart {
  std::string Keyword;  // "O"
  std::string Value;
  int Kind = V_ASN1_PRINTABLESTRING;
};
struct ExtensionRecipe {
  std::string Name;   // "keyUsage"
  std::string Value;  // as in OpenSSL's configuration: "critical,CA:TRUE,pathlen:3"
};

/// What a certificate is made of.
struct CertificateRecipe {
  std::string Key;
  std::string SigningKey;
  std::vector<NamePart> Subject;  // a dnQualifier without value gets the thumbprint of Key
  std::vector<NamePart> Issuer;   // empty: the issuer's subject
  std::string SerialNumber = "1";
  std::string NotBefore = "20250101000000Z";
  std::string NotAfter = "20350101000000Z";
  long Version = 2;  // X.509 version 3
  std::string Digest = "SHA256";
  std::vector<ExtensionRecipe> Extensions;

  /// The extension of that name, which must be there.
  std::string& Extension(const std::string& name);
  void RemoveExtension(const std::string& name);
  NamePart& SubjectPart(const std::string& keyword);
};

/// Root first, leaf last; each is the issuer of the next one. As made it breaks no rule.
std::vector<CertificateRecipe> SoundRecipes();
/// The same for a device, whose key may have another name.
std::vector<CertificateRecipe> DeviceRecipes(const std::string& key = "device");

using X509Holder = std::shared_ptr<X509>;

/// Makes the certificates, leaf first.
std::vector<X509Holder> MakeCertificates(const std::vector<CertificateRecipe>& recipes);
std::string EncodeDER(const X509Holder& certificate);
std::string EncodePEM(const X509Holder& certificate);

}  // namespace testsupport
