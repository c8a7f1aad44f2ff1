// SPDX-License-Identifier: BSD-3-Clause
#include "IntegrityPack.h"

#include "TripletItems.h"

namespace QUIRE {

namespace {

Result_t TestCode(std::span<const std::span<const ui8_t>> value, std::span<const ui8_t> covered,
                  std::span<const ui8_t, HMAC_SIZE> code, HMACContext& integrity) {
  Result_t result = Ferro::RESULT_OK;
  for (const auto piece : value)
    if (result.Success()) result = integrity.Update(piece);
  if (result.Success()) result = integrity.Update(covered);
  if (result.Success()) result = integrity.Finalize();
  return result.Success() ? integrity.TestHMACValue(code) : result;
}

}  // namespace

IntegrityOutcome TestIntegrity(const IntegrityExpectation& expected, std::span<const std::span<const ui8_t>> value,
                               std::span<const ui8_t> pack, HMACContext& integrity) {
  const auto tail = TripletTail::Parse(pack);
  if (!tail) return {RESULT_FORMAT, "malformed integrity pack of the element"};
  if (!tail->MIC) return {expected.UsesHMAC ? RESULT_HMACFAIL : Ferro::RESULT_OK, "no integrity code in the element"};
  Result_t result = integrity.Reset();
  if (result.Failure()) return {result, "no key in the integrity context for the element"};
  result = TestCode(value, pack.first(tail->CoveredSize), *tail->MIC, integrity);
  if (result == RESULT_HMACFAIL) return {result, "wrong integrity code of the element"};
  if (result.Failure()) return {result, "cannot compute the integrity code of the element"};
  if (tail->TrackFileID.HasValue() && tail->TrackFileID != expected.AssetID)
    return {RESULT_HMACFAIL, "element of another track file"};
  // The code covers the absence of a number, too: nobody but the writer can have left it out.
  if (tail->SequenceNumber && tail->SequenceNumber != expected.SequenceNumber)
    return {RESULT_SEQUENCE, "element of another place in the sequence"};
  return {Ferro::RESULT_OK, ""};
}

}  // namespace QUIRE
