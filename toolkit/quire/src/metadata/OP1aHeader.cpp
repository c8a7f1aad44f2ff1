// SPDX-License-Identifier: BSD-3-Clause
#include "HeaderPack.h"
#include "SetCodec.h"
#include "base/FormatError.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/OP1aHeader.h>

#include <Ferro/Assert.h>

#include <algorithm>

namespace QUIRE::MXF {
namespace {

constexpr ui8_t LabelHead[] = {0x06, 0x0e, 0x2b, 0x34};

bool BeginsLikeALabel(std::span<const ui8_t> bytes) {
  return bytes.size() >= 4 && std::equal(std::begin(LabelHead), std::end(LabelHead), bytes.begin());
}

// Some writers pad the metadata with zeros instead of fill.
bool IsZero(std::span<const ui8_t> bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](ui8_t byte) { return byte == 0; });
}

}  // namespace

OP1aHeader::OP1aHeader() = default;
OP1aHeader::~OP1aHeader() = default;
OP1aHeader::OP1aHeader(OP1aHeader&&) noexcept = default;
OP1aHeader& OP1aHeader::operator=(OP1aHeader&&) noexcept = default;

Result_t OP1aHeader::InitFromFile(const Ferro::FileReader& file) {
  HeaderPack pack;
  Result_t result = ReadHeaderPack(file, pack);
  if (result.Failure()) return result;
  HeaderPartition = pack.Pack;
  std::vector<ui8_t> metadata;
  ui64_t offset = 0;
  result = ReadHeaderMetadata(file, pack, metadata, offset);
  if (result.Failure()) return result;
  return InitFromBuffer(metadata, offset);
}

Result_t OP1aHeader::InitFromPartition(const Ferro::FileReader& file, const Partition& partition) {
  const HeaderPack pack{partition, {}};
  std::vector<ui8_t> metadata;
  ui64_t offset = 0;
  const Result_t result = ReadHeaderMetadata(file, pack, metadata, offset);
  if (result.Failure()) return result;
  HeaderPartition = partition;
  return InitFromBuffer(metadata, offset);
}

Result_t OP1aHeader::InitFromBuffer(std::span<const ui8_t> metadata, ui64_t offset) {
  m_ByID.clear();
  m_Objects.clear();
  Primer = MXF::Primer();
  SetBudget budget(MaxSetMemory);
  for (ui64_t at = 0; at < metadata.size();) {
    const std::span<const ui8_t> rest = metadata.subspan(at);
    const auto packet = ParseKLV(rest, at, metadata.size());
    if (!packet || !BeginsLikeALabel(rest)) {
      if (IsZero(rest)) break;
      return FormatError(offset + at, "header metadata with something that is no whole KLV");
    }
    if (IsPartitionKey(packet->Key)) break;  // the header byte count says too much
    at = packet->End();
    if (IsFillKey(packet->Key)) continue;
    const auto value = rest.subspan(packet->HeaderLength, packet->ValueLength);
    const ui64_t value_offset = offset + packet->ValueOffset();
    if (DefaultSMPTEDict().Is(packet->Key, MDD_Primer)) {
      const Result_t result = Primer.Read(value, value_offset);
      if (result.Failure()) return result;
      continue;
    }
    std::unique_ptr<InterchangeObject> object;
    const Result_t result = ReadSet(packet->Key, value, value_offset, Primer, budget, object);
    if (result.Failure()) return result;
    Own(std::move(object));
  }
  return Ferro::RESULT_OK;
}

Result_t OP1aHeader::GetMDObjectByID(const UUID& id, InterchangeObject** object) const {
  const auto found = id == UUID() ? m_ByID.end() : m_ByID.find(id);
  if (object != nullptr) *object = found == m_ByID.end() ? nullptr : found->second;
  return found == m_ByID.end() ? Ferro::RESULT_NOT_FOUND : Ferro::RESULT_OK;
}

Result_t OP1aHeader::GetMDObjectByType(const UL& type, InterchangeObject** object) const {
  const auto found = std::find_if(m_Objects.begin(), m_Objects.end(),
                                  [&type](const auto& set) { return set->Key().MatchIgnoringVersion(type); });
  if (object != nullptr) *object = found == m_Objects.end() ? nullptr : found->get();
  return found == m_Objects.end() ? Ferro::RESULT_NOT_FOUND : Ferro::RESULT_OK;
}

Result_t OP1aHeader::GetMDObjectByType(const ui8_t* type, InterchangeObject** object) const {
  UL label;
  label.Set(type);
  return GetMDObjectByType(label, object);
}

Result_t OP1aHeader::GetMDObjectByType(MDD_t type, InterchangeObject** object) const {
  return GetMDObjectByType(DefaultSMPTEDict().ul(type), object);
}

Result_t OP1aHeader::GetMDObjectsByType(const UL& type, std::list<InterchangeObject*>& objects) const {
  const size_t before = objects.size();
  for (const auto& set : m_Objects)
    if (set->Key().MatchIgnoringVersion(type)) objects.push_back(set.get());
  return objects.size() == before ? Ferro::RESULT_NOT_FOUND : Ferro::RESULT_OK;
}

Result_t OP1aHeader::GetMDObjectsByType(MDD_t type, std::list<InterchangeObject*>& objects) const {
  return GetMDObjectsByType(DefaultSMPTEDict().ul(type), objects);
}

void OP1aHeader::AddObject(std::unique_ptr<InterchangeObject> object) {
  FERRO_ASSERT(object != nullptr);
  if (!object->InstanceUID.HasValue()) object->InstanceUID = UUID::Random();
  Own(std::move(object));
}

// The list first: the map would otherwise name an object that is gone, should the list find no memory.
void OP1aHeader::Own(std::unique_ptr<InterchangeObject> object) {
  m_Objects.push_back(std::move(object));
  InterchangeObject* owned = m_Objects.back().get();
  m_ByID.emplace(owned->InstanceUID, owned);
}

}  // namespace QUIRE::MXF
