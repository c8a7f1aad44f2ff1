// SPDX-License-Identifier: BSD-3-Clause
#include "EncryptedTriplet.h"

#include <QUIRE/MXF/KLV.h>

namespace QUIRE {

namespace {

constexpr ui64_t IntegrityPackLength = 56;

void AppendItem(std::vector<ui8_t>& out, std::span<const ui8_t> bytes) {
  MXF::AppendBER(out, bytes.size());
  out.insert(out.end(), bytes.begin(), bytes.end());
}

void AppendItem(std::vector<ui8_t>& out, ui64_t value) {
  MXF::AppendBER(out, sizeof value);
  for (int shift = 56; shift >= 0; shift -= 8) out.push_back(static_cast<ui8_t>(value >> shift));
}

ui32_t LengthSize(ui64_t length) {
  return length > MXF::MaxBER4 ? MXF::BERLength8 : MXF::BERLength4;
}

// Covered are the bytes from the encrypted value up to and with the length field of the code itself (ST 429-6, 9.11).
Result_t AppendIntegrityPack(const TripletFacts& facts, size_t covered_from, HMACContext& integrity,
                             std::vector<ui8_t>& out) {
  AppendItem(out, facts.TrackFileID.Bytes());
  AppendItem(out, facts.SequenceNumber);
  MXF::AppendBER(out, HMAC_SIZE);
  std::array<ui8_t, HMAC_SIZE> code{};
  Result_t result = integrity.Reset();
  if (result.Success()) result = integrity.Update(std::span(out).subspan(covered_from));
  if (result.Success()) result = integrity.Finalize();
  if (result.Success()) result = integrity.GetHMACValue(code);
  out.insert(out.end(), code.begin(), code.end());
  return result;
}

}  // namespace

Result_t MakeTriplet(const TripletFacts& facts, std::span<const ui8_t> source, AESEncContext& encryption,
                     HMACContext* integrity, std::vector<ui8_t>& out) {
  if (facts.PlaintextOffset > source.size()) return RESULT_LARGE_PTO;
  const ui64_t encrypted = EncryptedSourceLength(source.size(), facts.PlaintextOffset);
  const ui64_t value_length = 64 + LengthSize(encrypted) + encrypted + (integrity ? IntegrityPackLength : 0);

  out.clear();
  MXF::AppendKL(out, facts.Key, value_length, LengthSize(value_length));
  AppendItem(out, facts.ContextID.Bytes());
  AppendItem(out, facts.PlaintextOffset);
  AppendItem(out, facts.SourceKey.Bytes());
  AppendItem(out, ui64_t{source.size()});
  MXF::AppendBER(out, encrypted, LengthSize(encrypted));
  const size_t value_start = out.size();
  out.resize(value_start + static_cast<size_t>(encrypted));
  const Result_t result =
      EncryptFrame(source, facts.PlaintextOffset, facts.IVec, encryption, std::span(out).subspan(value_start));
  if (result.Failure() || !integrity) return result;
  return AppendIntegrityPack(facts, value_start, *integrity, out);
}

}  // namespace QUIRE
