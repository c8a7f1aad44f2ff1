// SPDX-License-Identifier: BSD-3-Clause
#include "SetCodec.h"

#include "SetDefinition.h"
#include "base/BigEndian.h"
#include "base/FormatError.h"

#include <QUIRE/Dictionary.h>

#include <algorithm>
#include <limits>

namespace QUIRE::MXF {
namespace {

// A set's value is a row of items: tag (2 bytes), length (2), value (ST 336).
constexpr size_t ItemHeaderLength = 4;
constexpr ui16_t InstanceUIDTag = 0x3c0a;

// The primer decides what a tag means; where it does not list the tag, the static tags hold.
const Property* FindProperty(const SetDefinition& set, ui16_t tag, const Primer& primer) {
  const Primer::Label_t* label = primer.Find(tag);
  const Dictionary& dictionary = DefaultSMPTEDict();
  const auto found = std::find_if(set.Properties.begin(), set.Properties.end(), [&](const Property& property) {
    return label != nullptr ? dictionary.Is(UL(*label), property.Entry) : dictionary.Type(property.Entry).Tag == tag;
  });
  return found == set.Properties.end() || tag == 0 ? nullptr : &*found;
}

StoredItem& ItemFor(std::vector<StoredItem>& items, const Property* known, ui16_t tag) {
  const auto same = [known](const StoredItem& item) { return item.Known == known; };
  const auto found = known == nullptr ? items.end() : std::find_if(items.begin(), items.end(), same);
  if (found != items.end()) {
    *found = StoredItem{};
    found->Tag = tag;
    return *found;
  }
  items.emplace_back().Tag = tag;
  return items.back();
}

// Takes one item into the object, and keeps its bytes where we would write it otherwise. Null when it is malformed.
const StoredItem* TakeItem(InterchangeObject& object, const SetItem& item, const Property* known) {
  StoredItem& stored = ItemFor(object.Items, known, item.Tag);
  stored.Known = known;
  if (known == nullptr) {
    stored.Found.assign(item.Value.begin(), item.Value.end());
    return &stored;
  }
  if (!item.Value.empty() && !known->Read(object, item.Value)) return nullptr;
  const bool has_value = known->Write(object, stored.Canonical);
  stored.Verbatim = !has_value || !std::ranges::equal(item.Value, stored.Canonical);
  if (stored.Verbatim)
    stored.Found.assign(item.Value.begin(), item.Value.end());
  else
    stored.Canonical = {};
  return &stored;
}

// Keeps the KLV as it is; where it is a local set with an instance identifier, references find it.
void ReadOpaque(const UL& key, std::span<const ui8_t> value, OpaqueSet& set) {
  set.SetKey = key;
  set.Value.assign(value.begin(), value.end());
  if (key.Value()[4] != 0x02 || key.Value()[5] != 0x53) return;
  for (size_t at = 0; value.size() - at >= ItemHeaderLength;) {
    const ui16_t tag = LoadBE<ui16_t>(value.data() + at);
    const size_t length = LoadBE<ui16_t>(value.data() + at + 2);
    at += ItemHeaderLength;
    if (length > value.size() - at) return;
    if (tag == InstanceUIDTag && length == 16) set.InstanceUID.Set(value.data() + at);
    at += length;
  }
}

Result_t AppendItem(ui16_t tag, std::span<const ui8_t> value, std::vector<ui8_t>& out) {
  if (value.size() > std::numeric_limits<ui16_t>::max()) return Ferro::RESULT_TOOLARGE;
  AppendBE(out, tag);
  AppendBE(out, static_cast<ui16_t>(value.size()));
  AppendBytes(out, value);
  return Ferro::RESULT_OK;
}

Result_t AppendNewItem(const Property& property, std::span<const ui8_t> value, Primer& primer,
                       std::vector<ui8_t>& out) {
  const ui16_t tag = primer.TagFor(property.Entry);
  return tag == 0 ? Ferro::RESULT_TOOLARGE : AppendItem(tag, value, out);
}

// Keeps the item's tag, unless the metadata had several primers and the last one gives the tag another meaning.
Result_t AppendFoundItem(const SetDefinition& set, const StoredItem& item, std::span<const ui8_t> value, Primer& primer,
                         std::vector<ui8_t>& out) {
  const Property* meaning = FindProperty(set, item.Tag, primer);
  if (meaning == item.Known) return AppendItem(item.Tag, value, out);
  // What the tag of an unknown item meant is lost with its primer.
  return item.Known != nullptr ? AppendNewItem(*item.Known, value, primer, out) : Ferro::RESULT_OK;
}

Result_t AppendStoredItem(const InterchangeObject& object, const StoredItem& item, Primer& primer,
                          std::vector<ui8_t>& out) {
  const SetDefinition& set = object.Definition();
  if (item.Known == nullptr) return AppendFoundItem(set, item, item.Found, primer, out);
  std::vector<ui8_t> value;
  const bool has_value = item.Known->Write(object, value);
  if (item.Verbatim && value == item.Canonical) return AppendFoundItem(set, item, item.Found, primer, out);
  return has_value ? AppendFoundItem(set, item, value, primer, out) : Ferro::RESULT_OK;
}

// True where the file left a required property out and nobody gave it a value since.
bool IsLeftOut(const InterchangeObject& object, const Property& property, const std::vector<ui8_t>& value) {
  if (!object.WasRead || property.IsOptional()) return false;
  std::vector<ui8_t> initial;
  (void)property.Write(*object.Definition().Create(), initial);
  return value == initial;
}

Result_t AppendItems(const InterchangeObject& object, Primer& primer, std::vector<ui8_t>& out) {
  for (const StoredItem& item : object.Items) {
    const Result_t result = AppendStoredItem(object, item, primer, out);
    if (result.Failure()) return result;
  }
  for (const Property& property : object.Definition().Properties) {
    const auto same = [&property](const StoredItem& item) { return item.Known == &property; };
    if (std::any_of(object.Items.begin(), object.Items.end(), same)) continue;
    std::vector<ui8_t> value;
    if (!property.Write(object, value) || IsLeftOut(object, property, value)) continue;
    const Result_t result = AppendNewItem(property, value, primer, out);
    if (result.Failure()) return result;
  }
  return Ferro::RESULT_OK;
}

// What an item takes: its fields at most three times its bytes (text in UTF-8, identifiers as objects), and its codings.
size_t MemoryOf(const SetItem& item, const StoredItem& stored) {
  return 3 * item.Value.size() + stored.Found.capacity() + stored.Canonical.capacity();
}

}  // namespace

Result_t NextItem(std::span<const ui8_t>& rest, ui64_t& offset, SetItem& item) {
  if (rest.size() < ItemHeaderLength) return FormatError(offset, "set that ends within an item");
  const size_t length = LoadBE<ui16_t>(rest.data() + 2);
  if (length > rest.size() - ItemHeaderLength)
    return FormatError(offset, "item of %zu bytes that reaches past the end of its set", length);
  item = {LoadBE<ui16_t>(rest.data()), rest.subspan(ItemHeaderLength, length), offset};
  rest = rest.subspan(ItemHeaderLength + length);
  offset += ItemHeaderLength + length;
  return Ferro::RESULT_OK;
}

Result_t ReadSet(const UL& key, std::span<const ui8_t> value, ui64_t offset, const Primer& primer, SetBudget& budget,
                 std::unique_ptr<InterchangeObject>& object) {
  const SetDefinition* definition = FindSetDefinition(key);
  const size_t size = definition != nullptr ? definition->ObjectSize : sizeof(OpaqueSet) + value.size();
  if (!budget.Take(size + SetBudget::Surroundings)) return FormatError(offset, "%s", SetBudget::Exceeded);
  if (definition == nullptr) {
    auto opaque = std::make_unique<OpaqueSet>();
    ReadOpaque(key, value, *opaque);
    object = std::move(opaque);
    return Ferro::RESULT_OK;
  }
  object = definition->Create();
  object->WasRead = true;
  while (!value.empty()) {
    SetItem item;
    const Result_t result = NextItem(value, offset, item);
    if (result.Failure()) return result;
    const size_t capacity = object->Items.capacity();
    const StoredItem* stored = TakeItem(*object, item, FindProperty(*definition, item.Tag, primer));
    if (stored == nullptr)
      return FormatError(item.Offset, "item %04x of %s with a malformed value of %zu bytes", item.Tag, object->Name(),
                         item.Value.size());
    const size_t grown = (object->Items.capacity() - capacity) * sizeof(StoredItem);
    if (!budget.Take(grown + MemoryOf(item, *stored))) return FormatError(item.Offset, "%s", SetBudget::Exceeded);
  }
  return Ferro::RESULT_OK;
}

Result_t WriteSet(const InterchangeObject& object, Primer& primer, std::vector<ui8_t>& out) {
  std::vector<ui8_t> items;
  if (const auto* opaque = dynamic_cast<const OpaqueSet*>(&object)) {
    items = opaque->Value;
  } else {
    const Result_t result = AppendItems(object, primer, items);
    if (result.Failure()) return result;
  }
  AppendKL(out, object.Key(), items.size(), items.size() > MaxBER4 ? BERLength8 : BERLength4);
  AppendBytes(out, items);
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::MXF
