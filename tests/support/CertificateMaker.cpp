// SPDX-License-Identifier: BSD-3-Clause
#include "CertificateMaker.h"

#include <Ferro/FileText.h>
#include <Ferro/SHA1Digest.h>

#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>

namespace testsupport {
namespace {

/// A fixture that cannot be made leaves nothing to test.
void Require(bool is_so, const char* what) {
  if (is_so) return;
  std::cerr << "test certificates: " << what << '\n';
  std::abort();
}

EVP_PKEY* MakeKey(const std::string& name) {
  if (name.starts_with("ec-")) return EVP_EC_gen("P-256");
  EVP_PKEY_CTX* context = EVP_PKEY_CTX_new_id(EVP_PKEY_RSA, nullptr);
  Require(EVP_PKEY_keygen_init(context) == 1, "no RSA");
  int bits = 2048;
  if (name.starts_with("rsa")) bits = std::stoi(name.substr(3));
  Require(EVP_PKEY_CTX_set_rsa_keygen_bits(context, bits) == 1, "size of key");
  BIGNUM* exponent = BN_new();
  BN_set_word(exponent, name.starts_with("e3-") ? 3 : RSA_F4);
  Require(EVP_PKEY_CTX_set1_rsa_keygen_pubexp(context, exponent) == 1, "exponent");
  BN_free(exponent);
  EVP_PKEY* key = nullptr;
  Require(EVP_PKEY_keygen(context, &key) == 1, "key generation");
  EVP_PKEY_CTX_free(context);
  return key;
}

std::string ContentOf(BIO* memory) {
  char* text = nullptr;
  const long length = BIO_get_mem_data(memory, &text);
  std::string content(text, static_cast<size_t>(length));
  BIO_free(memory);
  return content;
}

std::string EncodeKey(EVP_PKEY* key) {
  BIO* memory = BIO_new(BIO_s_mem());
  Require(PEM_write_bio_PKCS8PrivateKey(memory, key, nullptr, nullptr, 0, nullptr, nullptr) == 1, "key to PEM");
  return ContentOf(memory);
}

X509_NAME* MakeName(const std::vector<NamePart>& parts, const std::string& key) {
  X509_NAME* name = X509_NAME_new();
  for (const NamePart& part : parts) {
    const std::string value = part.Keyword == "dnQualifier" && part.Value.empty() ? TestThumbprint(key) : part.Value;
    Require(X509_NAME_add_entry_by_NID(name, OBJ_txt2nid(part.Keyword.c_str()), part.Kind,
                                       reinterpret_cast<const unsigned char*>(value.data()),
                                       static_cast<int>(value.size()), -1, 0) == 1,
            "name");
  }
  return name;
}

void SetName(X509* x, const std::vector<NamePart>& parts, const std::string& key, int (*set)(X509*, const X509_NAME*)) {
  X509_NAME* name = MakeName(parts, key);
  Require(set(x, name) == 1, "name");
  X509_NAME_free(name);
}

void SetSerialNumber(X509* x, const std::string& text) {
  BIGNUM* number = nullptr;
  Require(BN_dec2bn(&number, text.c_str()) > 0, "serial number");
  Require(BN_to_ASN1_INTEGER(number, X509_get_serialNumber(x)) != nullptr, "serial number");
  BN_free(number);
}

void AddExtension(X509* x, X509* issuer, const ExtensionRecipe& recipe) {
  X509V3_CTX context;
  X509V3_set_ctx(&context, issuer, x, nullptr, nullptr, 0);
  X509V3_set_ctx_nodb(&context);
  X509_EXTENSION* extension = X509V3_EXT_nconf(nullptr, &context, recipe.Name.c_str(), recipe.Value.c_str());
  Require(extension != nullptr, recipe.Name.c_str());
  Require(X509_add_ext(x, extension, -1) == 1, "extension");
  X509_EXTENSION_free(extension);
}

X509Holder MakeCertificate(const CertificateRecipe& recipe, const CertificateRecipe& issuer_recipe, X509* issuer) {
  X509Holder holder(X509_new(), X509_free);
  X509* x = holder.get();
  Require(X509_set_version(x, recipe.Version) == 1, "version");
  SetSerialNumber(x, recipe.SerialNumber);
  SetName(x, recipe.Subject, recipe.Key, X509_set_subject_name);
  SetName(x, recipe.Issuer.empty() ? issuer_recipe.Subject : recipe.Issuer, issuer_recipe.Key, X509_set_issuer_name);
  Require(ASN1_TIME_set_string_X509(X509_getm_notBefore(x), recipe.NotBefore.c_str()) == 1, "date");
  Require(ASN1_TIME_set_string_X509(X509_getm_notAfter(x), recipe.NotAfter.c_str()) == 1, "date");
  Require(X509_set_pubkey(x, TestKey(recipe.Key)) == 1, "public key");
  for (const ExtensionRecipe& extension : recipe.Extensions) AddExtension(x, issuer == nullptr ? x : issuer, extension);
  const EVP_MD* digest = EVP_get_digestbyname(recipe.Digest.c_str());
  Require(X509_sign(x, TestKey(recipe.SigningKey), digest) > 0, "signature");
  return holder;
}

CertificateRecipe Recipe(const std::string& key, const std::string& signing_key, const std::string& name,
                         const std::string& constraints, const std::string& usage) {
  CertificateRecipe recipe;
  recipe.Key = key;
  recipe.SigningKey = signing_key;
  recipe.Subject = {{"O", "EXAMPLE.ORG"}, {"OU", "EXAMPLE.ORG"}, {"CN", name}, {"dnQualifier", ""}};
  recipe.Extensions = {{"basicConstraints", "critical," + constraints},
                       {"keyUsage", usage},
                       {"subjectKeyIdentifier", "hash"},
                       {"authorityKeyIdentifier", "keyid:always,issuer:always"}};
  return recipe;
}

}  // namespace

EVP_PKEY* TestKey(const std::string& name) {
  // Never destroyed: OpenSSL may have shut down by then.
  static auto& s_Keys = *new std::map<std::string, EVP_PKEY*>;
  EVP_PKEY*& key = s_Keys[name];
  if (key != nullptr) return key;
  const std::string filename = std::string(TEST_KEY_FOLDER "/") + name + ".pem";
  std::string text;
  if (Ferro::ReadFileIntoString(filename, text).Failure()) {
    // Of two programs that make it at once both use the one that was written last.
    EVP_PKEY* made = MakeKey(name);
    Require(Ferro::WriteStringIntoFile(filename, EncodeKey(made)).Success(), "key not written");
    EVP_PKEY_free(made);
    Require(Ferro::ReadFileIntoString(filename, text).Success(), "key not read");
  }
  BIO* memory = BIO_new_mem_buf(text.data(), static_cast<int>(text.size()));
  key = PEM_read_bio_PrivateKey(memory, nullptr, nullptr, nullptr);
  BIO_free(memory);
  Require(key != nullptr, "key not understood");
  return key;
}

std::string TestKeyPEM(const std::string& name) {
  return EncodeKey(TestKey(name));
}

std::string TestThumbprint(const std::string& key_name) {
  X509_PUBKEY* key = nullptr;
  Require(X509_PUBKEY_set(&key, TestKey(key_name)) == 1, "public key");
  const unsigned char* bytes = nullptr;
  int length = 0;
  X509_PUBKEY_get0_param(nullptr, &bytes, &length, nullptr, key);
  Ferro::SHA1Digest digest;
  digest.Update(std::span<const Ferro::ui8_t>(bytes, static_cast<size_t>(length)));
  X509_PUBKEY_free(key);
  return digest.Finish().EncodeBase64();
}

std::string& CertificateRecipe::Extension(const std::string& name) {
  const auto found = std::ranges::find(Extensions, name, &ExtensionRecipe::Name);
  Require(found != Extensions.end(), name.c_str());
  return found->Value;
}

void CertificateRecipe::RemoveExtension(const std::string& name) {
  std::erase_if(Extensions, [&](const ExtensionRecipe& extension) { return extension.Name == name; });
}

NamePart& CertificateRecipe::SubjectPart(const std::string& keyword) {
  const auto found = std::ranges::find(Subject, keyword, &NamePart::Keyword);
  Require(found != Subject.end(), keyword.c_str());
  return *found;
}

std::vector<CertificateRecipe> SoundRecipes() {
  std::vector<CertificateRecipe> recipes = {
      Recipe("root", "root", ".ROOT", "CA:TRUE,pathlen:2", "keyCertSign,cRLSign"),
      Recipe("authority", "root", ".AUTHORITY", "CA:TRUE,pathlen:0", "keyCertSign"),
      Recipe("leaf", "authority", "CS.SIGNER", "CA:FALSE", "digitalSignature,keyEncipherment")};
  recipes[1].SerialNumber = "2";
  recipes[2].SerialNumber = "9223372036854775808";
  return recipes;
}

std::vector<CertificateRecipe> DeviceRecipes(const std::string& key) {
  std::vector<CertificateRecipe> recipes = SoundRecipes();
  recipes[2].Key = key;
  recipes[2].SubjectPart("CN").Value = "SM LE.SERVER";
  recipes[2].SerialNumber = "77";
  return recipes;
}

std::vector<X509Holder> MakeCertificates(const std::vector<CertificateRecipe>& recipes) {
  std::vector<X509Holder> made;
  for (size_t i = 0; i < recipes.size(); ++i)
    made.push_back(MakeCertificate(recipes[i], recipes[i == 0 ? 0 : i - 1], i == 0 ? nullptr : made.back().get()));
  std::ranges::reverse(made);
  return made;
}

std::string EncodeDER(const X509Holder& certificate) {
  unsigned char* bytes = nullptr;
  const int length = i2d_X509(certificate.get(), &bytes);
  Require(length > 0, "DER");
  std::string der(reinterpret_cast<const char*>(bytes), static_cast<size_t>(length));
  OPENSSL_free(bytes);
  return der;
}

std::string EncodePEM(const X509Holder& certificate) {
  BIO* memory = BIO_new(BIO_s_mem());
  Require(PEM_write_bio_X509(memory, certificate.get()) == 1, "PEM");
  return ContentOf(memory);
}

}  // namespace testsupport
